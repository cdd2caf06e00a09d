#pragma once
// Declared things as variables: types, instances, patterns, scripts and the built-in macros. They hold a schema, no
// text.

#include "values/CVariable.h"

namespace kvl {

// What a value asks of the schema that it holds: a declared type, an instance, a compiled script or pattern.
class HeldEntity {
public:
    virtual ~HeldEntity() = default;
    // The root element of a type or instance; null for scripts and patterns, and while no element table is built.
    virtual CVariable* GetRootVariable() const { return nullptr; }
    // An assignment of one instance to another: the values of `source` are copied over, pairwise in the order of
    // labels.
    [[nodiscard]] virtual bool CopyValues(HeldEntity& /*source*/, const LoopStack& /*loops*/) { return true; }
    // Name of the declared type or macro.
    virtual const std::string& EntityName() const = 0;
};

class CVariableEntity : public CVariable {
public:
    using CVariable::CVariable;
    bool CopyValue(const CVariable& source, const LoopStack& loops) override;
    void ShareValue(const CVariable& source) override;
    void CreateValue() override {}
    void DestroyValue() override { typeSchema.reset(); }
    void SetText(std::string_view) override {}
    std::string_view GetText() const override { return {}; }
    void ClearValue() override {}
};

class CVariableKVLType final : public CVariableEntity {
public:
    CVariableKVLType() : CVariableEntity(kTypeType) {}
    std::string GetSchemaName() const;
};

class CVariableKVLTypeInstance final : public CVariableEntity {
public:
    CVariableKVLTypeInstance() : CVariableEntity(kTypeInstance) {}
    void ShareValue(const CVariable& source) override;
    // Copies the parse result of `source`, lists with their records included.
    bool AssignValue(CVariable& source, const LoopStack& loops) override;
};

// A macro read from a file or stream: its compiled schema is held in typeSchema's place by macroSchema.
class CVariableKVLMacro : public CVariableEntity {
public:
    using CVariableEntity::CVariableEntity;
    void ShareValue(const CVariable& source) override;
    void DestroyValue() override { macroSchema.reset(); }
    std::shared_ptr<HeldEntity> macroSchema;
};
class CVariableKVLPattern final : public CVariableKVLMacro {
public:
    CVariableKVLPattern() : CVariableKVLMacro(kTypePattern) {}
};
class CVariableKVLScript final : public CVariableKVLMacro {
public:
    CVariableKVLScript() : CVariableKVLMacro(kTypeScript) {}
};

class CVariableKVLStaticMacro final : public CVariableEntity {
public:
    CVariableKVLStaticMacro() : CVariableEntity(kTypeStatic) {}
    int macroCommand = 0;  // the cmd_* identifier
};

}  // namespace kvl
