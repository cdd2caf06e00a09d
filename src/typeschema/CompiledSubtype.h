#pragma once
// The subtypes of a compiled type. A use of a subtype stands for a copy of its tree; the trees are kept once and
// followed where the element table is built, so that only the table itself grows with the uses.

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "typeschema/TypeItem.h"

namespace kvl {

// How much of the element table a tree takes. All numbers stop one above their limits.
struct TypeExtent {
    int rows = 0;
    int depth = 0;                // nested categories
    std::int64_t labels = 0;      // elements that have one
    std::int64_t labelBytes = 0;  // of all labels, from the names of the tree alone
};

// A use that closes a circle of types is followed once, as a category of its own, and is a plain element inside that.
// Such a type is refused; its table is only shown.
enum class RecursiveUses { Followed, Plain };

struct CompiledSubtype {
    TypeItem root;
    TypeExtent followed, plain;  // equal, unless the type is recursive
};

// The subtypes that one type uses, directly or not. Only the trees of the own text stand here; they point into each
// other and into those of imported types.
struct SubtypeTrees {
    std::vector<CompiledSubtype> own;
    std::vector<std::shared_ptr<const SubtypeTrees>> imported;
};

// What an item of a tree stands for in the element table.
struct ItemShape {
    const TypeItem* category = nullptr;  // where the category is declared; null for what is no category
    const std::vector<TypeItem>* children = nullptr;
    int categoryType = 0;
    std::string_view subtypeName;
    RecursiveUses recursiveUses = RecursiveUses::Followed;  // among the children
};
ItemShape ShapeOf(const TypeItem& item, RecursiveUses recursiveUses);

// Cost: the item's own tree; the extents of the subtypes that it uses must be known.
TypeExtent MeasureItem(const TypeItem& item, RecursiveUses recursiveUses);

}  // namespace kvl
