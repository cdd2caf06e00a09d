#include "typeschema/CompiledSubtype.h"

#include <algorithm>

#include "typeschema/CTypeSchema.h"

namespace kvl {
namespace {

constexpr TypeExtent kLeafExtent{1, 0, 0, 0};
constexpr auto kRowsBeyond = static_cast<int>(kMostElements) + 1;

TypeExtent MeasureCategory(const TypeItem& category, RecursiveUses recursiveUses) {
    TypeExtent extent{2, 0, 0, 0};  // begin and end row
    for (const TypeItem& child : category.children) {
        const TypeExtent inside = MeasureItem(child, recursiveUses);
        extent.rows = std::min(extent.rows + inside.rows, kRowsBeyond);
        extent.depth = std::max(extent.depth, inside.depth);
        extent.labels = std::min(extent.labels + inside.labels, std::int64_t{kRowsBeyond});
        extent.labelBytes = std::min(extent.labelBytes + inside.labelBytes, kMostLabelBytes + 1);
    }
    extent.depth = std::min(extent.depth, kDeepestElement) + 1;
    return extent;
}

// What the item stands for, without its name.
TypeExtent MeasureShape(const TypeItem& item, RecursiveUses recursiveUses) {
    if (item.itemKind == kItemCategory) return MeasureCategory(item, recursiveUses);
    if (!item.subtype) return kLeafExtent;
    const bool followed = recursiveUses == RecursiveUses::Followed;
    if (item.isRecursiveUse) return followed ? item.subtype->plain : kLeafExtent;
    return followed ? item.subtype->followed : item.subtype->plain;
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

// A name stands in the element's own label and in each one inside, behind a colon.
TypeExtent MeasureItem(const TypeItem& item, RecursiveUses recursiveUses) {
    TypeExtent extent = MeasureShape(item, recursiveUses);
    if (item.elementName.empty()) return extent;
    const auto nameBytes = static_cast<std::int64_t>(item.elementName.size()) + 1;
    ++extent.labels;
    extent.labelBytes = std::min(extent.labelBytes + extent.labels * nameBytes, kMostLabelBytes + 1);
    return extent;
}

}  // namespace kvl
