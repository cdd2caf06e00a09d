// The life of a running script or pattern: made from what is compiled, cloned for a call, cleared.
#include "interpreter/CPatternSchema.h"

namespace kvl {

namespace {

// The declared type that a variable holds, if its name behind the last ":" is `lastName`.
const CTypeSchema* TypeNamed(std::string_view lastName, const CVariable* variable) {
    if (!variable || variable->typeId != kTypeType || !variable->typeSchema) return nullptr;
    const std::string_view name = variable->typeSchema->EntityName();
    const bool fits =
        name.ends_with(lastName) && (name.size() == lastName.size() || name[name.size() - lastName.size() - 1] == ':');
    return fits ? dynamic_cast<const CTypeSchema*>(variable->typeSchema.get()) : nullptr;
}

}  // namespace

CPatternSchema::~CPatternSchema() {
    ClearAll();
}

// Names, commands and blocks are the same object for all clones; variables are each clone's own.
std::unique_ptr<CPatternSchema> CPatternSchema::Clone() const {
    auto clone = std::make_unique<CPatternSchema>(script);
    clone->names = names;
    clone->entityKind = entityKind;
    clone->currentLine = currentLine;
    clone->utf8Source = utf8Source;
    clone->overwriteMode = overwriteMode;
    return clone;
}

// The table looks into instances that the lists behind it keep alive, hence the order.
bool CPatternSchema::TakeBackLocals() {
    const bool isAsBefore = variableTable.TakeBackLocals();
    declaredTypes.clear();
    typeList.clear();
    replacedInstances_.clear();
    lineHasValue = false;
    return isAsBefore;
}

// The table looks into instances that the lists behind it keep alive, hence the order.
void CPatternSchema::ClearAll() {
    variableTable.Clear();
    declaredTypes.clear();
    typeList.clear();
}

void CPatternSchema::ReportDivisionByZero() const {
    Fail(ERR_EXEC_SCRIPT_VAR_1);
}

// A type without a namespace is found at once; only one that was loaded under a longer name is searched for, and then
// the first by label is taken.
const CTypeSchema* CPatternSchema::FindLoadedType(std::string_view lastName) const {
    if (const CTypeSchema* type = TypeNamed(lastName, variableTable.Find(lastName))) return type;
    for (const CVariable* variable : variableTable.InOrder()) {
        if (const CTypeSchema* type = TypeNamed(lastName, variable)) return type;
    }
    return nullptr;
}

}  // namespace kvl
