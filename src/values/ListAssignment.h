#pragma once
// Copying records between lists and between lists and instances, under the rules of the running loops.

#include "values/CVariableKVLCategoryList.h"

namespace kvl {

// The variables of an instance as list assignment pairs them: in order of their labels, the root first.
using InstanceVariables = std::vector<CVariable*>;

// False when the shapes differ; the destination is untouched then.
[[nodiscard]] bool AssignFromList(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source,
                                  const LoopStack& loops);
// One new record takes the texts of the instance's variables (or the loop's current record does).
void AssignFromInstance(CVariableKVLCategoryList& destination, const InstanceVariables& variables,
                        const LoopStack& loops);
// The variables of the instance take the cells of the list's current record.
void AssignToInstance(const CVariableKVLCategoryList& source, const InstanceVariables& variables,
                      const LoopStack& loops);
// The destination becomes a copy of the source, cells matched by column label; a bracket list takes the one cell.
void CopyFromList(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source);

}  // namespace kvl
