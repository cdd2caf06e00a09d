// Arguments become parameters, and what a call leaves in them goes back.
#include <algorithm>
#include <utility>

#include "interpreter/MacroRun.h"

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

// The instance that the variable is or belongs to; null for a plain variable.
const CTypeSchema* InstanceOf(const CVariable& variable) {
    if (variable.typeId == kTypeInstance) return dynamic_cast<const CTypeSchema*>(variable.typeSchema.get());
    return dynamic_cast<const CTypeSchema*>(variable.elementOf);
}

bool IsBelow(std::string_view label, std::string_view prefix) {
    return label.starts_with(prefix) && (label.size() == prefix.size() || label[prefix.size()] == ':');
}

void TakeProperties(CVariable& parameter, const CVariable& actual) {
    parameter.elementTypeId = actual.elementTypeId;
    parameter.typeName = actual.typeName;
    parameter.userTypeName = actual.userTypeName;
    parameter.isConstant = actual.isConstant;
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
        const std::string typeName = actual.variable ? actual.typeName : std::string(GetTypeName(actual.typeId));
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

// --- creating ---

bool MacroRun::CreateParameters() {
    for (std::size_t i = 0; i < frame_.formalParameters->size(); ++i) {
        if (!CreateParameter((*frame_.formalParameters)[i], frame_.actualArguments[i])) return false;
    }
    EnterParameterElements();
    return true;
}

bool MacroRun::CreateParameter(const FormalParameter& formal, const BoundArgument& actual) {
    CVariable* parameter = callee_.EnterVariable(formal.name, actual.typeName, actual.typeId);
    if (!parameter) return false;
    if (!actual.variable) {
        parameter->SetText(actual.name);
        return true;
    }
    TakeProperties(*parameter, *actual.variable);
    parameter->ShareValue(*actual.variable);
    parameter->ownsStorage = false;
    if (const CTypeSchema* type = InstanceOf(*actual.variable)) CollectElements(*type, *actual.variable, formal.name);
    return true;
}

// All names are found before the first label moves: arguments may be parts of one instance, or twice the same.
void MacroRun::CollectElements(const CTypeSchema& type, const CVariable& actual, const std::string& formalName) {
    const bool isElement = actual.typeId != kTypeInstance;
    const int rowCount = static_cast<int>(type.elements.size());
    const int first = isElement ? actual.firstElement : 0;
    const int last = isElement ? actual.lastElement : rowCount - 1;
    if (first < 0 || last >= rowCount) return;

    ParameterElements& group = parameterElements_.emplace_back(ParameterElements{last - first + 1, isElement, {}});
    const std::string& prefix = type.elements[static_cast<std::size_t>(first)].variable->label;
    for (int row = first; row <= last; ++row) {
        const ElementEntry& entry = type.elements[static_cast<std::size_t>(row)];
        const std::string& label = entry.variable->label;
        if (entry.mark == kMarkEnd || label.empty()) continue;
        // An unnamed list has a label of its own that is below nothing.
        const bool moves = IsBelow(label, prefix);
        group.elements.push_back({entry.variable, moves ? formalName + label.substr(prefix.size()) : label});
    }
}

// Of several names for one element the one by the widest argument becomes its label, so that all below one instance or
// category keeps one prefix; the others are further names for it in the table.
void MacroRun::EnterParameterElements() {
    std::stable_sort(parameterElements_.begin(), parameterElements_.end(),
                     [](const ParameterElements& a, const ParameterElements& b) { return a.rowCount > b.rowCount; });
    for (const ParameterElements& group : parameterElements_) {
        for (const NamedElement& element : group.elements) {
            if (!element.variable->relabelled) Relabel(element);
            EnterUnderName(element, group.isElement && &element == &group.elements.front());
        }
    }
    for (const SavedLabel& saved : savedLabels_)
        saved.variable->relabelled = false;
}

void MacroRun::Relabel(const NamedElement& element) {
    CVariable& variable = *element.variable;
    savedLabels_.push_back({&variable, std::move(variable.label), std::move(variable.sourceName), variable.ownerEntity,
                            variable.entityLine});
    variable.label = element.name;
    variable.SetOwnerEntity(&callee_);
    variable.relabelled = true;
    if (variable.ownerList) variable.ownerList->ColumnsRelabelled();
}

// The table takes a variable under its label. `replace`: in the place of the variable that was made for the parameter.
void MacroRun::EnterUnderName(const NamedElement& element, bool replace) {
    CVariable& variable = *element.variable;
    variable.entered = true;
    std::string label = std::exchange(variable.label, element.name);
    if (replace) {
        callee_.variableTable.ReplaceBorrowed(&variable);
    } else {
        callee_.variableTable.InsertBorrowed(&variable);
    }
    variable.label = std::move(label);
    if (variable.ownerList) variable.ownerList->ColumnsRelabelled();
}

void MacroRun::RestoreLabels() {
    while (!savedLabels_.empty()) {
        SavedLabel& saved = savedLabels_.back();
        CVariable& variable = *saved.variable;
        variable.label = std::move(saved.label);
        variable.sourceName = std::move(saved.sourceName);
        variable.ownerEntity = saved.owner;
        variable.entityLine = saved.entityLine;
        if (variable.ownerList) variable.ownerList->ColumnsRelabelled();
        savedLabels_.pop_back();
    }
}

// --- copying back: values are shared, so that only what is new below a directory has to be told to the caller ---

bool MacroRun::CopyBack() {
    for (std::size_t i = 0; i < frame_.formalParameters->size(); ++i) {
        const BoundArgument& actual = frame_.actualArguments[i];
        if (actual.typeId != kTypeDirectory) continue;
        if (!CopyDirectoriesBack((*frame_.formalParameters)[i], actual)) return false;
    }
    return true;
}

bool MacroRun::CopyDirectoriesBack(const FormalParameter& formal, const BoundArgument& actual) {
    CPatternSchema& caller = *frame_.caller;
    for (const CVariable* variable : callee_.variableTable.Below(formal.name)) {
        if (variable->elementOf || variable->typeId == kTypeInstance) continue;  // they end with the call's instances
        const std::string label = actual.name + variable->label.substr(formal.name.size());
        if (caller.variableTable.Find(label)) continue;
        CVariable* copy = caller.EnterVariable(label, variable->typeName, variable->typeId);
        if (!copy) return false;
        TakeProperties(*copy, *variable);
        copy->ShareValue(*variable);
    }
    return true;
}

}  // namespace kvl
