// Operands by name: variables of this entity, and the built-ins and macros that are known everywhere.
#include "interpreter/CPatternSchema.h"

namespace kvl {

namespace {

struct MethodName {
    std::string_view object;
    std::string_view method;
};

// What stands in front of the last ":", and what behind it; no object without one.
MethodName SplitMethod(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    if (colon == std::string_view::npos) return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

bool GivesText(const CVariable& variable) {
    return variable.typeId == kTypePattern || variable.typeId == kTypeStatic;
}

bool IsMacro(const CVariable& variable) {
    return GivesText(variable) || variable.typeId == kTypeScript;
}

// An instance that is one cell in a loop: a list declared in place over an elementary type.
bool IsCell(const CVariable& variable) {
    return variable.typeId == kTypeInstance && variable.elementTypeId >= kTypeStream &&
           variable.elementTypeId <= kTypeWhiteSpace;
}

}  // namespace

CVariable* CPatternSchema::FindGlobal(std::string_view name, std::string_view& object, std::string_view& method) const {
    object = method = {};
    const VariableTable& globals = RootSchema().variableTable;
    CVariable* variable = globals.Find(name);
    if (variable && (IsMacro(*variable) || variable->typeId == kTypeType)) return variable;
    const MethodName split = SplitMethod(name);
    if (split.object.empty()) return nullptr;
    variable = globals.Find(split.method);
    if (!variable || !IsMacro(*variable)) return nullptr;
    object = split.object;
    method = split.method;
    return variable;
}

bool CPatternSchema::ResolveOperand(std::string_view name, bool evaluate, CallArguments arguments, Operand& operand,
                                    RunContext& run) {
    operand = Operand();
    if (!EvaluateArguments(arguments, run)) return false;
    std::string_view object, method;
    const CommandRow* builtIn = nullptr;
    if (FindVariable(name, operand.variable)) {
        const MethodName split = SplitMethod(name);
        const bool isWholeName = operand.variable->typeId == kTypeStatic;
        if (!split.object.empty() && !isWholeName) builtIn = FindStaticMacro(split.method);
        if (builtIn) {
            object = split.object;
            method = split.method;
        }
    } else if (operand.variable) {
        return false;
    } else {
        operand.variable = FindGlobal(name, object, method);
    }

    const bool isCall = operand.variable && GivesText(*operand.variable) && (evaluate || (!object.empty() && !builtIn));
    if (isCall) {
        operand.hasText = true;
        return builtIn ? EvaluateBuiltIn(builtIn->id, std::move(arguments), object, method, operand.text, run)
                       : CallForText(*operand.variable, std::move(arguments), object, method, operand.text, run);
    }
    if (!operand.variable) return Fail(ERR_DECL_SCRIPT_VAR_5, ERRSTR_VAR_NAME, name);
    if (!evaluate || !IsCell(*operand.variable)) return true;

    VariableText cell;
    if (!ReadVariable(*operand.variable, cell, run.loops, CreateRecord::No, MissingLoop::Allow)) return false;
    operand.text = cell.text;
    return true;
}

}  // namespace kvl
