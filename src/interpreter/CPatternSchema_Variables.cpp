// Finding a variable by name, reading it as text, and making one.
#include "interpreter/CPatternSchema.h"

namespace kvl {

bool CPatternSchema::FindVariable(std::string_view name, CVariable*& variable, bool quiet) const {
    variable = variableTable.FindOne(name);
    if (variable) return true;
    const VariableTable::Selection selection = variableTable.Select(name);
    variable = selection.variable;
    if (!selection.ambiguous) return variable != nullptr;
    if (quiet) return false;
    return Fail(ERR_DECL_SCRIPT_VAR_7, ERRSTR_LABEL_SHORT, name, ERRSTR_LABEL_FULL1, selection.labels[0],
                ERRSTR_LABEL_FULL2, selection.labels[1]);
}

bool CPatternSchema::FindDeclaredVariable(std::string_view name, CVariable*& variable) const {
    if (FindVariable(name, variable)) return true;
    return !variable && Fail(ERR_DECL_SCRIPT_VAR_5, ERRSTR_VAR_NAME, name);
}

bool CPatternSchema::GetVariableText(std::string_view name, VariableText& result, const LoopStack& loops,
                                     CreateRecord createRecord, MissingLoop allowMissingLoop) const {
    CVariable* variable = nullptr;
    return FindDeclaredVariable(name, variable) &&
           ReadVariable(*variable, result, loops, createRecord, allowMissingLoop);
}

namespace {

VariableText TextOutsideLists(const CVariable& variable) {
    if (variable.typeId == kTypeInstance && variable.typeSchema) {
        if (const CVariable* root = variable.typeSchema->GetRootVariable()) return {root->GetText(), root->typeId};
    }
    return {variable.GetText(), variable.typeId};
}

// An instance outside its loop has no text of its own, but is no fault unless its one cell is wanted.
bool MayBeReadOutsideLoop(const CVariable& variable, MissingLoop allowMissingLoop) {
    return variable.typeId == kTypeInstance && (variable.elementTypeId == 0 || allowMissingLoop == MissingLoop::Allow);
}

}  // namespace

bool CPatternSchema::ReadVariable(CVariable& variable, VariableText& result, const LoopStack& loops,
                                  CreateRecord createRecord, MissingLoop allowMissingLoop) const {
    CVariableKVLCategoryList* list = variable.ownerList;
    if (!list) {
        result = TextOutsideLists(variable);
        return true;
    }
    result.type = variable.elementTypeId != 0 ? variable.elementTypeId : variable.typeId;
    result.text = {};
    if (RunningLoop* loop = loops.FindLoop(list)) {
        if (variable.IsList()) return true;  // the cell of a nested list says only that there is one
        const int column = list->ColumnIndexFor(variable);
        const Record& record = loop->CursorOn(list).Current();
        if (column < 0 || !record.Has(column)) return Fail(ERR_DECL_SCRIPT_VAR_5, ERRSTR_VAR_NAME, variable.label);
        result.text = record.Get(column);
        return true;
    }
    if (createRecord == CreateRecord::Yes) {
        list->AppendEmptyRecord();
        return true;
    }
    return MayBeReadOutsideLoop(variable, allowMissingLoop) || ReportListOutsideLoop(variable.label, list->label);
}

CVariable* CPatternSchema::CreateVariable(std::string_view label, int typeId, std::string_view typeName) {
    const auto refuse = [this](const std::string& reason) -> CVariable* {
        Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, reason);
        return nullptr;
    };
    if (label.starts_with(':')) return refuse("Cannot Declare variable With Short Label " + std::string(label));
    const bool isValueType = !IsConstantType(typeId) && typeId != kLiteralStrict && typeId != kLiteralWeak;
    std::unique_ptr<CVariable> made = isValueType ? MakeVariable(typeId) : nullptr;
    if (!made) {
        return refuse("Failure To Create Variable: " + std::string(label) + "::" + std::string(typeName));
    }
    CVariable* variable = made.get();
    variable->label = label;
    if (typeId == kTypeInstance) variable->typeName = typeName;
    variable->SetOwnerEntity(this);
    return variableTable.Insert(std::move(made)) ? variable : nullptr;
}

CVariable* CPatternSchema::EnterVariable(std::string_view name, std::string_view typeName, int typeId) {
    if (name.starts_with(':')) return CreateVariable(name, typeId, typeName);  // which refuses it
    if (typeId == kTypeUnknown) typeId = FindTypeId(typeName);
    if (typeId == kTypeUnknown) {
        Fail(ERR_DECL_SCRIPT_VAR_3, ERRSTR_VAR_NAME, name, ERRSTR_VAR_TYPE, typeName);
        return nullptr;
    }
    if (const CVariable* present = variableTable.Find(name)) {
        Fail(ERR_DECL_SCRIPT_VAR_2, ERRSTR_VAR_NAME, name, ERRSTR_LINE_RELATED_NUMBER, present->entityLine);
        return nullptr;
    }
    return CreateVariable(name, typeId, typeName);
}

// Types are global: a macro uses those that the main script has loaded.
CVariable* CPatternSchema::FindDeclaredType(std::string_view name) const {
    for (const CPatternSchema* entity : {this, static_cast<const CPatternSchema*>(&RootSchema())}) {
        CVariable* variable = entity->variableTable.FindOne(name);
        if (variable && variable->typeId == kTypeType) return variable;
    }
    return nullptr;
}

}  // namespace kvl
