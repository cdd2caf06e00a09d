#pragma once
// The structure categories of a type, apart from the list: each holds the text that its category matched in the input.

#include "values/CVariable.h"

namespace kvl {

template <int kTypeId>
class CategoryVariable final : public CVariableText {
public:
    CategoryVariable() : CVariableText(kTypeId) {}
};

using CVariableKVLCategorySequence = CategoryVariable<kCategorySequence>;
using CVariableKVLCategoryNested = CategoryVariable<kCategoryNested>;
using CVariableKVLCategoryDistance = CategoryVariable<kCategoryDistance>;
using CVariableKVLCategoryStream = CategoryVariable<kCategoryStream>;
using CVariableKVLCategoryChoice = CategoryVariable<kCategoryChoice>;
using CVariableKVLCategoryOption = CategoryVariable<kCategoryOption>;
using CVariableKVLCategoryLine = CategoryVariable<kCategoryLine>;
using CVariableKVLCategoryPermutation = CategoryVariable<kCategoryPermutation>;
using CVariableKVLCategoryRecursion = CategoryVariable<kCategoryRecursion>;

}  // namespace kvl
