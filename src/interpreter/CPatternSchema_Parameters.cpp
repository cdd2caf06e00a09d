// Arguments become parameters, and what a call leaves in them goes back.
#include <algorithm>

#include "interpreter/MacroRun.h"
#include "values/ListAssignment.h"

namespace kvl {

namespace {

// The type that a literal has as a parameter.
int ParameterTypeOf(int constantType) {
    switch (constantType) {
        case kConstantString:
            return kTypeStream;
        case kConstantInteger:
            return kTypeInteger;
        case kConstantFloat:
            return kTypeFloat;
        case kConstantBool:
            return kTypeBool;
        default:
            return constantType;
    }
}

constexpr std::string_view kListMark = "[]";  // behind the type name of a list declared in place

// A list fits a parameter of the type of its elements, or of one of its columns.
bool HasElementsOf(const CVariableKVLCategoryList& list, const BoundArgument& actual, std::string_view typeName) {
    std::string_view elementType = actual.typeName;
    if (elementType.ends_with(kListMark)) elementType.remove_suffix(kListMark.size());
    if (elementType == typeName || list.listTypeName == typeName) return true;
    return std::any_of(list.Columns().begin(), list.Columns().end(), [typeName](const CVariable* column) {
        return column->typeName == typeName || column->userTypeName == typeName;
    });
}

bool FitsType(const BoundArgument& actual, std::string_view typeName) {
    if (actual.typeName == typeName || (!actual.userTypeName.empty() && actual.userTypeName == typeName)) return true;
    if (!actual.variable) return false;
    const CVariableKVLCategoryList* list = FindListOf(std::as_const(*actual.variable));
    return list && HasElementsOf(*list, actual, typeName);
}

}  // namespace

// --- binding: faults are the caller's, at the line of the call ---

bool MacroRun::BindParameters() {
    const std::vector<FormalParameter>& formals = *frame_.formalParameters;
    std::vector<BoundArgument>& actuals = frame_.actualArguments;
    const CPatternSchema& caller = *frame_.caller;
    if (formals.size() != actuals.size()) {
        return caller.Fail(ERR_DECL_SCRIPT_MACRO_2, ERRSTR_MACRO_DECLARATION, caller.GetSourceLine(frame_.callerLine));
    }
    for (std::size_t i = 0; i < formals.size(); ++i) {
        if (!BindParameter(formals[i], actuals[i])) return false;
    }
    return true;
}

bool MacroRun::BindParameter(const FormalParameter& formal, BoundArgument& actual) const {
    const CPatternSchema& caller = *frame_.caller;
    const bool isConstant = !actual.variable || actual.variable->isConstant;
    if (isConstant && formal.isReference) {
        const std::string_view typeName = actual.variable ? actual.typeName : GetTypeName(actual.typeId);
        return caller.Fail(ERR_DECL_SCRIPT_MACRO_5, ERRSTR_VAR_TYPE, typeName, ERRSTR_VAR_NAME, actual.name);
    }
    if (!actual.variable) {
        actual.typeId = ParameterTypeOf(actual.typeId);
        actual.typeName = GetTypeName(actual.typeId);
    }
    if (FitsType(actual, formal.typeName)) return true;
    return caller.Fail(ERR_DECL_SCRIPT_MACRO_3, ERRSTR_VAR_TYPE, actual.typeName, ERRSTR_VAR_NAME, actual.name,
                       ERRSTR_VAR_TYPE2, formal.typeName, ERRSTR_VAR_NAME2, formal.name);
}

// --- copying back: values are shared, so that only what is new is told to the caller ---

bool MacroRun::CopyBack() {
    for (std::size_t i = 0; i < frame_.formalParameters->size(); ++i) {
        const FormalParameter& formal = (*frame_.formalParameters)[i];
        const BoundArgument& actual = frame_.actualArguments[i];
        if (actual.typeId == kTypeDirectory && !CopyDirectoriesBack(formal, actual)) return false;
        if (formal.isReference && !CopyListBack(formal, actual)) return false;
    }
    return true;
}

// A file or stream that was read into the parameter left it with a list of its own.
bool MacroRun::CopyListBack(const FormalParameter& formal, const BoundArgument& actual) {
    const CVariable* parameter = callee_->schema->variableTable.Find(formal.name);
    const CVariableKVLCategoryList* list = parameter ? FindListOf(*parameter) : nullptr;
    CVariableKVLCategoryList* callersList = FindListOf(*actual.variable);
    if (!list || !callersList || list == callersList) return true;
    if (AssignFromList(*callersList, *list, run_.loops)) return true;
    MessageContext context = callee_->schema->GetMessageContext();  // a script's: patterns have no references
    context.Set(ERRSTR_MACRO_NAME, std::string(frame_.macroName) + "( " + formal.name + " )");
    return Report(ERR_EXEC_SCRIPT_MACRO_1, context);
}

bool MacroRun::CopyDirectoriesBack(const FormalParameter& formal, const BoundArgument& actual) {
    CPatternSchema& caller = *frame_.caller;
    for (const CVariable* variable : callee_->schema->variableTable.Below(formal.name)) {
        if (variable->elementOf) continue;  // it comes with its instance
        const std::string label = actual.name + variable->label.substr(formal.name.size());
        if (caller.variableTable.Find(label)) continue;
        if (variable->typeId == kTypeInstance) {
            if (!HandOver(*variable, label)) return false;
            continue;
        }
        CVariable* copy = caller.EnterVariable(label, variable->typeName, variable->typeId);
        if (!copy) return false;
        StandFor(*copy, *variable);
    }
    return true;
}

bool MacroRun::HandOver(const CVariable& variable, const std::string& label) {
    const auto instance = std::static_pointer_cast<CTypeSchema>(variable.typeSchema);
    instance->RenameVariables(instance->instanceName, label, nullptr);
    instance->instanceName = label;
    return frame_.caller->EnterInstance(label, variable.typeName, instance, variable.elementTypeId);
}

}  // namespace kvl
