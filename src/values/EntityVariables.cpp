#include "values/EntityVariables.h"

namespace kvl {

// A held schema is never changed once it is compiled, so that a copy is the same schema.
bool CVariableEntity::CopyValue(const CVariable& source, const LoopStack&) {
    ShareValue(source);
    return true;
}

void CVariableEntity::ShareValue(const CVariable& source) {
    typeSchema = source.typeSchema;
}

std::string CVariableKVLType::GetSchemaName() const {
    return typeSchema ? typeSchema->EntityName() : std::string();
}

void CVariableKVLTypeInstance::ShareValue(const CVariable& source) {
    typeSchema = source.typeSchema;
    ownerList = source.ownerList;
}

bool CVariableKVLTypeInstance::AssignValue(CVariable& source, const LoopStack& loops) {
    if (!typeSchema || !source.typeSchema || typeSchema == source.typeSchema) return true;
    return typeSchema->CopyValues(*source.typeSchema, loops);
}

void CVariableKVLMacro::ShareValue(const CVariable& source) {
    if (const auto* macro = dynamic_cast<const CVariableKVLMacro*>(&source)) macroSchema = macro->macroSchema;
}

}  // namespace kvl
