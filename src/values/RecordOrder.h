#pragma once
// Reordering the records of a list together with everything nested below them.

#include "values/CVariableKVLCategoryList.h"
#include "values/SortKeys.h"

namespace kvl {

// The scope is the whole of a primary list, or the records under `parentKey` of a nested one.
void ReverseRecords(CVariableKVLCategoryList& list, PathView parentKey);
// Stable and ascending. Cells that are no number ("nan") come last, in their order.
void SortRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind);
// Keeps the first record of each value, and every cell that is no number.
void UnifyRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind);

}  // namespace kvl
