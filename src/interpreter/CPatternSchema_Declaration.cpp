// Declarations: they are commands like any other, so that a name exists from the moment at which its declaration has
// run.
#include "frontend/TypeFrontEnd.h"
#include "interpreter/Assignment.h"
#include "interpreter/CPatternSchema.h"
#include "text/Numbers.h"

namespace kvl {

namespace {

constexpr std::string_view kListMark = "[]";

// Variables of these belong to the main script, unless they stand below a name.
bool IsGlobalType(int typeId) {
    return typeId == kTypeType || typeId == kTypePattern || typeId == kTypeScript || typeId == kTypeDirectory;
}

void SetDefaultValue(CVariable& variable) {
    if (variable.typeId == kTypeInteger || variable.typeId == kTypeFloat) variable.SetText("0");
    if (variable.typeId == kTypeBool) variable.SetText("FALSE");
}

}  // namespace

// Categories are parts of types: as the type of a variable their names can only be those of declared ones.
CVariable* CPatternSchema::DeclareVariable(std::string_view name, std::string_view typeName, int listMark) {
    if (listMark == kCategoryList) return DeclareList(name, typeName);
    const int typeId = FindTypeId(typeName);
    if (typeId == kTypeUnknown || IsCategoryType(typeId)) {
        return CreateInstanceOfLoadedType(name, typeName, false) ? variableTable.Find(name) : nullptr;
    }
    const bool mayBeHere = entityKind == kEntityMainScript || name.find(':') != std::string_view::npos;
    if (IsGlobalType(typeId) && !mayBeHere) {
        Fail(ERR_DECL_SCRIPT_VAR_15, ERRSTR_VAR_NAME, name, ERRSTR_VAR_TYPE, typeName);
        return nullptr;
    }
    return EnterVariable(name, typeName, typeId);
}

// The list is an instance of a type of one column, whose declaration is written and compiled for it.
CVariable* CPatternSchema::DeclareList(std::string_view name, std::string_view typeName) {
    const int typeId = FindTypeId(typeName);
    if (IsCategoryType(typeId) || (typeId == kTypeUnknown && FindDeclaredType(typeName))) {
        return CreateInstanceOfLoadedType(name, typeName, true) ? variableTable.Find(name) : nullptr;
    }
    const bool cannotBeEntered = typeId == kTypeUnknown || name.starts_with(':') || variableTable.Find(name);
    if (cannotBeEntered) return EnterVariable(name, typeName, typeId);  // which reports it

    const std::shared_ptr<CTypeSchema> listType = MakeListType(name, typeName, false);
    if (!listType) return nullptr;
    const auto instance = std::make_shared<CTypeSchema>();
    instance->CopyDeclaration(*listType);
    if (!instance->PrepareInstance(name)) return nullptr;
    const std::string listTypeName = std::string(typeName) + std::string(kListMark);
    return EnterInstance(name, listTypeName, instance, typeId) ? variableTable.Find(name) : nullptr;
}

std::shared_ptr<CTypeSchema> CPatternSchema::MakeListType(std::string_view label, std::string_view typeName,
                                                          bool blankAtEnd) {
    std::string text = "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::LIST_TYPE = ::LIST{";
    text.append(label).append("::").append(typeName);
    if (typeName == GetTypeName(kTypeStream)) text += "{}";
    text += blankAtEnd ? " }$\n$END KVL VERSION=\"1.0.0\"$" : "}$\n$END KVL VERSION=\"1.0.0\"$\n";

    std::shared_ptr<CTypeSchema> type = ParseTypeStream(kEntityType, "DUMMY", text, GetMessageContext());
    std::string mainName;
    if (!type || !type->CompileDeclaration(RootSchema(), mainName)) {
        Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, "GetTypeSchemaFromStream");
        return nullptr;
    }
    type->SetMainTypeName(std::string(typeName) + std::string(kListMark));
    return type;
}

bool CPatternSchema::ExecuteDeclaration(const PatternCommand& command, RunContext& run) {
    const OperandSides& sides = *command.sides;
    CVariable* variable = DeclareVariable(sides.operand1, sides.typeName, sides.operand1ListMark);
    if (!variable) return false;
    SetDefaultValue(*variable);
    if (sides.operand1ListMark != 0 && !AppendDeclaredRecords(sides.initialRange, *variable, run)) return false;
    if (sides.declaredWithValue) return true;
    if (!Assignment(*this, command, cmd_operator_assign, run).Execute()) return false;
    variable->isConstant = true;
    return true;
}

bool CPatternSchema::AppendDeclaredRecords(const InitialRange& range, CVariable& list, RunContext& run) {
    int count = ReadInteger(range.literal);
    if (!range.name.empty()) {
        VariableText size;
        if (!GetVariableText(range.name, size, run.loops)) return false;
        if (size.type != kTypeInteger) return Fail(ERR_DECL_SCRIPT_VAR_14, ERRSTR_VAR_NAME, range.name);
        count = ReadInteger(size.text);
    }
    if (CVariableKVLCategoryList* records = FindListOf(list)) records->AppendDefaultRecords(count);
    return true;
}

bool CPatternSchema::ExecuteDeclarationWithValue(const PatternCommand& command, RunContext& run) {
    const OperandSides& sides = *command.sides;
    return DeclareVariable(sides.operand1, sides.typeName, sides.operand1ListMark) && ExecuteAssignment(command, run);
}

}  // namespace kvl
