// The four macros that reorder or empty a list. A nested list is named inside a loop over its parent, and the macro
// then acts on the records under the parent's current one alone.
#include <algorithm>

#include "builtins/StaticMacros.h"
#include "values/RecordOrder.h"

namespace kvl {

namespace {

struct ListMacroRow {
    int id;
    std::string_view declaration;
    std::size_t argumentCount;
};

constexpr ListMacroRow kListMacros[] = {
    {cmd_list_reverse, "KVL:LIST:REVERSE(L)", 1},
    {cmd_list_sort, "KVL:LIST:SORT(L, C)", 2},
    {cmd_list_unify, "KVL:LIST:UNIFY(L, C)", 2},
    {cmd_list_empty, "KVL:LIST:EMPTY(L)", 1},
};

// What a list macro works on once its arguments have been judged.
struct ListArguments {
    CVariableKVLCategoryList* list = nullptr;
    RecordPath parentKey;  // empty for a primary list
    int column = -1;
    CellKind kind = CellKind::None;
};

// The name of a column stands for its list.
CVariableKVLCategoryList* FindArgumentList(CVariable& variable) {
    if (variable.typeId == kTypeInstance || variable.IsList()) return FindListOf(variable);
    return variable.ownerList;
}

// A list of one unnamed column is sorted by itself: KVL:LIST:SORT(L, L).
int FindArgumentColumn(const CVariableKVLCategoryList& list, const BoundArgument& first, const BoundArgument& second) {
    const bool isBracketList = first.elementTypeId != 0 && first.elementTypeId != kTypeType;
    if (isBracketList) return second.name == first.name && !list.Columns().empty() ? 0 : -1;
    const auto found = std::find(list.Columns().begin(), list.Columns().end(), second.variable);
    return found == list.Columns().end() ? -1 : static_cast<int>(found - list.Columns().begin());
}

bool CheckColumn(const CPatternSchema& schema, const MacroValue& value, ListArguments& checked) {
    const BoundArgument& second = value.arguments[1];
    if (!second.variable) return ReportArgumentType(schema, second, GetTypeName(kTypeString), "C");
    checked.column = FindArgumentColumn(*checked.list, value.arguments[0], second);
    if (checked.column < 0) {
        return schema.Fail(ERR_DECL_SCRIPT_MACRO_10, ERRSTR_VAR_NAME, second.name, ERRSTR_LIST_ID, checked.list->label);
    }
    checked.kind = GetCellKind(checked.list->Columns()[static_cast<std::size_t>(checked.column)]->typeId);
    return checked.kind != CellKind::None || ReportArgumentType(schema, second, GetTypeName(kTypeString), "C");
}

bool CheckListArguments(const CPatternSchema& schema, const ListMacroRow& macro, const MacroValue& value,
                        ListArguments& checked) {
    if (value.arguments.empty()) return ReportArgumentCount(schema, macro.declaration);
    const BoundArgument& first = value.arguments[0];
    if (!first.variable) return ReportArgumentType(schema, first, GetTypeName(kCategoryList), "L");
    checked.list = FindArgumentList(*first.variable);
    if (!checked.list) return schema.Fail(ERR_DECL_SCRIPT_MACRO_11, ERRSTR_VAR_NAME, first.name);
    if (checked.list->parentList) {
        const RecordPath* parentKey = schema.GetParentRecord(*checked.list, value.run.loops);
        if (!parentKey) return false;
        checked.parentKey = *parentKey;
    }
    if (value.arguments.size() != macro.argumentCount) return ReportArgumentCount(schema, macro.declaration);
    return macro.argumentCount == 1 || CheckColumn(schema, value, checked);
}

}  // namespace

bool RunListMacro(CPatternSchema& schema, int identifier, MacroValue& value) {
    const ListMacroRow& macro = kListMacros[identifier - cmd_list_reverse];
    ListArguments checked;
    if (!CheckListArguments(schema, macro, value, checked)) return false;
    switch (macro.id) {
        case cmd_list_reverse:
            ReverseRecords(*checked.list, checked.parentKey);
            break;
        case cmd_list_sort:
            SortRecords(*checked.list, checked.parentKey, checked.column, checked.kind);
            break;
        case cmd_list_unify:
            UnifyRecords(*checked.list, checked.parentKey, checked.column, checked.kind);
            break;
        case cmd_list_empty:
            checked.list->RemoveRecords(checked.parentKey);
            break;
    }
    return true;
}

}  // namespace kvl
