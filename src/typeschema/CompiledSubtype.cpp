#include "typeschema/CompiledSubtype.h"

#include <algorithm>

#include "typeschema/CTypeSchema.h"

namespace kvl {
namespace {

constexpr TypeExtent kLeafExtent{1, 0};

int AddRows(int rows, int more) {
    return std::min(rows + more, static_cast<int>(kMostElements) + 1);
}

TypeExtent MeasureCategory(const TypeItem& category, RecursiveUses recursiveUses) {
    TypeExtent extent{2, 0};  // begin and end row
    for (const TypeItem& child : category.children) {
        const TypeExtent inside = MeasureItem(child, recursiveUses);
        extent.rows = AddRows(extent.rows, inside.rows);
        extent.depth = std::max(extent.depth, inside.depth);
    }
    extent.depth = std::min(extent.depth, kDeepestElement) + 1;
    return extent;
}

}  // namespace

ItemShape ShapeOf(const TypeItem& item, RecursiveUses recursiveUses) {
    if (item.itemKind == kItemCategory) {
        return {&item, &item.children, item.categoryType, item.subtypeName, recursiveUses};
    }
    if (!item.subtype) return {};
    const TypeItem& root = item.subtype->root;
    if (!item.isRecursiveUse) return {&root, &root.children, root.categoryType, item.typeName, recursiveUses};
    if (recursiveUses == RecursiveUses::Plain) return {};
    return {&item, &root.children, kCategoryRecursion, {}, RecursiveUses::Plain};
}

TypeExtent MeasureItem(const TypeItem& item, RecursiveUses recursiveUses) {
    if (item.itemKind == kItemCategory) return MeasureCategory(item, recursiveUses);
    if (!item.subtype) return kLeafExtent;
    const bool followed = recursiveUses == RecursiveUses::Followed;
    if (item.isRecursiveUse) return followed ? item.subtype->plain : kLeafExtent;
    return followed ? item.subtype->followed : item.subtype->plain;
}

}  // namespace kvl
