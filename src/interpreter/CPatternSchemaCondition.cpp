#include "interpreter/CPatternSchemaCondition.h"

#include "messages/FileReports.h"

namespace kvl {

namespace {

// Does any of the candidate paths, separated by ";", exist?
bool AnyFileExists(std::string_view paths) {
    for (bool more = true; more;) {
        const std::size_t separator = paths.find(';');
        FileState state;
        if (CheckFile(paths.substr(0, separator), state)) return true;
        more = separator != std::string_view::npos;
        if (more) paths.remove_prefix(separator + 1);
    }
    return false;
}

}  // namespace

int EvaluateCondition(CPatternSchema& schema, const PatternCommand& command, RunContext& run) {
    CPatternSchemaCondition condition(schema, command, run);
    return condition.BuildCondition() ? condition.Evaluate() : condition_error;
}

bool CPatternSchemaCondition::BuildCondition() {
    switch (command_.subkind) {
        case cmd_with_condition_operand_identifier:
            if (!schema_.FindDeclaredVariable(command_.condition->conditionOperand, variable_)) return false;
            list_ = FindListOf(*variable_);
            form_ = list_ ? cmd_condition_list_is_not_empty : cmd_condition_placeholder_identifier_is_empty;
            return true;
        case cmd_with_condition_operand_macro:
            form_ = cmd_condition_macro_return_is_not_empty;
            return true;
        case cmd_with_condition_operand1_operand2:
            form_ = command_.condition->conditionForm;
            return ReadSides(*command_.sides);
        default:
            return false;
    }
}

bool CPatternSchemaCondition::ReadSides(const OperandSides& sides) {
    if (!(sides.operand1IsMacro ? ReadCall(sides.operand1, sides.operand1Arguments, left_)
                                : ReadName(sides.operand1, left_))) {
        return false;
    }
    if (sides.operand2IsMacro) return ReadCall(sides.operand2, sides.operand2Arguments, right_);
    if (sides.operand2Kind == 0) return ReadName(sides.operand2, right_);
    right_ = {std::string(sides.operand2), sides.operand2Kind};
    return true;
}

bool CPatternSchemaCondition::ReadName(std::string_view name, Side& side) {
    VariableText value;
    if (!schema_.GetVariableText(name, value, run_.loops)) return false;
    side = {std::string(value.text), value.type};
    return true;
}

// A pattern or a built-in gives a text. A script has none.
bool CPatternSchemaCondition::ReadCall(std::string_view name, const std::vector<ActualArgument>& arguments,
                                       Side& side) {
    CPatternSchema::Operand operand;
    if (!schema_.ResolveOperand(name, true, CallArguments(arguments), operand, run_)) return false;
    if (!operand.hasText) return schema_.Fail(ERR_DECL_SCRIPT_VAR_9);
    side = {std::move(operand.text), kTypeStream};
    return true;
}

int CPatternSchemaCondition::Evaluate() {
    bool truth = false;
    bool evaluated = false;
    switch (form_) {
        case cmd_condition_macro_return_is_not_empty:
            evaluated = IsMacroResultNotEmpty(truth);
            break;
        case cmd_condition_placeholder_identifier_is_empty:
            evaluated = IsVariableNotEmpty(truth);
            break;
        case cmd_condition_list_is_not_empty:
            evaluated = IsListNotEmpty(truth);
            break;
        case cmd_condition_operand1_operator_operand2:
            evaluated = Compare(truth);
            break;
        default:
            break;
    }
    if (!evaluated) return condition_error;
    if (command_.negation == cmd_condition_negation_yes) truth = !truth;
    return truth ? condition_true : condition_false;
}

bool CPatternSchemaCondition::IsMacroResultNotEmpty(bool& truth) {
    CPatternSchema::Operand operand;
    if (!schema_.ResolveOperand(command_.call->macroName, true, CallArguments(command_.call->arguments), operand, run_))
        return false;
    const CVariable& macro = *operand.variable;
    if (!operand.hasText) {
        truth = !macro.GetText().empty();
    } else if (macro.typeId == kTypeStatic && macro.label == "FILE") {
        truth = AnyFileExists(operand.text);
    } else {
        truth = !operand.text.empty();
    }
    return true;
}

bool CPatternSchemaCondition::IsVariableNotEmpty(bool& truth) {
    VariableText value;
    if (!schema_.ReadVariable(*variable_, value, run_.loops)) {
        return schema_.Fail(ERR_DECL_SCRIPT_VAR_5, ERRSTR_VAR_NAME, variable_->label);
    }
    truth = value.type == kTypeBool ? value.text == "TRUE" : !value.text.empty();
    return true;
}

// Of a nested list those records count that belong to the current record of the loop over its parent.
bool CPatternSchemaCondition::IsListNotEmpty(bool& truth) {
    if (!list_->parentList) {
        truth = list_->GetRecordCount() > 0;
        return true;
    }
    const RecordPath* parentKey = schema_.GetParentRecord(*list_, run_.loops);
    if (!parentKey) return false;
    RecordStore::Position position;
    truth = list_->FirstInParent(*parentKey, position);
    return true;
}

bool CPatternSchemaCondition::Compare(bool& truth) {
    OperatorResult result;
    if (!schema_.EvaluateOperands(left_.text, left_.type, command_.sides->operatorId, right_.text, right_.type,
                                  result)) {
        return false;
    }
    truth = result.truth;
    return true;
}

}  // namespace kvl
