#include "frontend/ScriptCompiler.h"

#include <utility>

#include "ScriptGrammar.h"
#include "frontend/ScriptFrontEnd.h"
#include "text/Escapes.h"

namespace kvl {

namespace {

std::string LiteralValue(std::string_view rawLiteral) {
    return UnquoteLiteral(rawLiteral, '"');
}

WeakLiteral MakeWeakLiteral(std::string_view name, std::string_view value) {
    WeakLiteral literal;
    literal.name = name;
    literal.text = value;
    return literal;
}

std::string JoinWithBlanks(std::string_view first, std::string_view second, std::string_view third) {
    std::string text(first);
    text += ' ';
    text += second;
    text += ' ';
    text += third;
    return text;
}

std::string ParameterText(const FormalParameter& parameter) {
    return parameter.annotation + parameter.name + "::" + parameter.typeName + (parameter.isList ? "[]" : "");
}

std::string ArgumentText(const ActualArgument& argument) {
    const std::string text = argument.typeId == kConstantString ? '"' + argument.name + '"' : argument.name;
    return argument.byValue ? text + "[]" : text;
}

// The types whose variables are declared like a call.
bool IsMacroType(std::string_view typeName) {
    return typeName == "KVL:SCRIPT" || typeName == "KVL:PATTERN";
}

// "name(first, second)"
template <class Item>
std::string TextWithList(std::string_view name, const std::vector<Item>& items, std::string (*itemText)(const Item&)) {
    std::string text(name);
    text += '(';
    for (const Item& item : items) {
        if (&item != &items.front()) text += ", ";
        text += itemText(item);
    }
    text += ')';
    return text;
}

}  // namespace

std::string CallText(std::string_view macroName, const std::vector<ActualArgument>& arguments) {
    return TextWithList(macroName, arguments, ArgumentText);
}

bool ScriptCompiler::Parse() {
    return scriptparse(*this) == 0;
}

int ScriptCompiler::NextToken(std::string_view& text) {
    const int token = scanner_.Lex();
    text = scanner_.TokenText();
    return token;
}

std::string ScriptCompiler::TakeLabel() {
    return std::exchange(label_, std::string());
}

bool ScriptCompiler::EndShortName() {
    if (label_.back() != '~') return true;
    return Report("Syntax error");
}

// Sources and commands

bool ScriptCompiler::EndCommand() {
    const bool opensComment = command_.beginEnd == cmd_begin && command_.subkind == cmd_comment;
    scanner_.Append(std::exchange(command_, PatternCommand()));
    return !opensComment || scanner_.ReadCommentBlock();
}

void ScriptCompiler::SetBegin(std::string_view keyword) {
    command_.beginEnd = cmd_begin;
    command_.beginText = keyword;
    command_.commandText = command_.beginText + ' ' + command_.commandText;
}

void ScriptCompiler::SetEnd(std::string_view keyword) {
    command_.beginEnd = cmd_end;
    command_.endText = keyword;
    command_.commandText = command_.endText + ' ' + command_.commandText;
}

// Block heads

void ScriptCompiler::EndVersion(std::string_view rawLiteral) {
    SetSubkind(cmd_kvl_file_version, "KVL VERSION ");
    command_.commandText += rawLiteral;
    command_.weakLiterals.push_back(MakeWeakLiteral("VERSION", LiteralValue(rawLiteral)));
}

void ScriptCompiler::SetSubkind(CommandId subkind, std::string_view keyword) {
    command_.subkind = subkind;
    command_.commandText = keyword;
}

void ScriptCompiler::EndScriptHead(std::string_view name) {
    command_.subkind = cmd_declare_script_macro;
    command_.scriptMacroName = name;
    SetSignature("SCRIPT ", name);
}

void ScriptCompiler::EndPatternHead(std::string_view name) {
    command_.subkind = cmd_declare_pattern_macro;
    command_.patternMacroName = name;
    SetSignature("PATTERN ", name);
}

void ScriptCompiler::SetSignature(std::string_view keyword, std::string_view name) {
    command_.commandText = keyword;
    command_.commandText += TextWithList(name, command_.formalParameters, ParameterText);
}

bool ScriptCompiler::EndParameter(std::string_view name) {
    if (name == "void") return scanner_.Report(TwinFor(ERR_DECL_SCRIPT_PARAM_3, scanner_.EntityKind()));
    parameter_.name = name;
    command_.formalParameters.push_back(std::exchange(parameter_, FormalParameter()));
    return true;
}

void ScriptCompiler::SetParameterMark(std::string_view mark) {
    parameter_.annotation = mark;
    parameter_.isReference = mark == "&";
}

void ScriptCompiler::SetParameterType(bool isList) {
    parameter_.typeName = TakeLabel();
    parameter_.isList = isList;
}

// Loops

void ScriptCompiler::SetLoopMode(CommandId mode, std::string_view separator) {
    command_.loopMode = mode;
    command_.loopSeparator = separator;
}

void ScriptCompiler::EndSingleLoop() {
    command_.loopMode = cmd_loop_mode_single;
    command_.kind = cmd_kind_begin_end_loop_list;
    SetSubkind(cmd_with_list, "ALL " + command_.listName1);
}

void ScriptCompiler::EndDoubleLoop() {
    command_.kind = cmd_kind_begin_end_loop_list;
    const std::string lists = JoinWithBlanks(command_.listName1, command_.loopSeparator, command_.listName2);
    SetSubkind(cmd_with_list, "ALL " + lists);
}

// Conditions

void ScriptCompiler::SetComparison(CommandId operatorId, CommandId negation, std::string_view text) {
    SetOperator(operatorId, text);
    command_.negation = negation;
}

void ScriptCompiler::EndComparison() {
    command_.subkind = cmd_with_condition_operand1_operand2;
    command_.conditionForm = cmd_condition_operand1_operator_operand2;
    command_.conditionText = "IF " + JoinWithBlanks(command_.operand1, command_.operatorText, command_.operand2);
}

// The text of this form is conditionText alone; a macro call among the operands has left its own in commandText.
void ScriptCompiler::EndComparisonBlock() {
    command_.kind = cmd_kind_begin_end_if_condition;
    command_.commandText.clear();
}

void ScriptCompiler::EndLineCondition(CommandId negation) {
    command_.conditionForm = cmd_condition_placeholder_normal_is_not_empty;
    command_.negation = negation;
}

void ScriptCompiler::EndNameCondition(CommandId negation) {
    command_.conditionForm = cmd_condition_identifier_is_empty;
    command_.conditionOperand = TakeLabel();
    command_.negation = negation;
}

void ScriptCompiler::EndMacroCondition(CommandId negation) {
    command_.conditionForm = cmd_condition_macro_return_is_not_empty;
    command_.conditionOperand = CallText(command_.macroName, command_.arguments);
    if (negation == cmd_condition_negation_yes) command_.conditionOperand.insert(0, "!");
    command_.negation = negation;
}

void ScriptCompiler::EndConditionBlock(CommandId subkind) {
    command_.kind = cmd_kind_begin_end_if_condition;
    SetSubkind(subkind, "IF " + command_.conditionOperand);
}

// Single commands

void ScriptCompiler::EndPlaceholder() {
    command_.kind = cmd_kind_placeholder_identifier;
    command_.placeholderKind = cmd_identifier_value;
    command_.placeholderName = TakeLabel();
    SetSubkind(cmd_identifier_value, command_.placeholderName);
}

void ScriptCompiler::SetLineMark(CommandId subkind, std::string_view text) {
    command_.placeholderKind = subkind;
    command_.placeholderName = text;
    SetSubkind(subkind, text);
}

void ScriptCompiler::EndLiteralMacro(std::string_view rawLiteral) {
    command_.literalMacroText = LiteralValue(rawLiteral);
    command_.weakLiterals.push_back(MakeWeakLiteral("LITERALMACRO", command_.literalMacroText));
    SetSubkind(cmd_literal_macro, rawLiteral);
}

void ScriptCompiler::EndCallStatement() {
    command_.asStatement = 1;
}

// A variable of KVL:TYPE alone is written with a leading "::", and a script or pattern is declared like a call without
// arguments.
bool ScriptCompiler::CheckDeclarationShape() {
    const bool isType = typeName_ == "KVL:TYPE";
    if (isType != (command_.typeWithColons != 0)) return Report("Syntax error");
    const bool isBareCall = command_.operand1IsMacro != 0 && command_.operand1Arguments.empty();
    if (IsMacroType(typeName_) && !isBareCall) return Report("Syntax error");
    return true;
}

bool ScriptCompiler::SetDeclaration(CommandId kind) {
    if (!CheckDeclarationShape()) return false;
    command_.kind = kind;
    command_.typeName = typeName_;
    command_.operand1Text = (IsMacroType(typeName_) ? command_.operand1Text : command_.operand1) + "::" + typeName_;
    if (command_.typeWithColons != 0) command_.operand1Text.insert(0, "::");
    command_.commandText = command_.operand1Text;
    return true;
}

bool ScriptCompiler::EndDeclaration() {
    command_.declaredWithValue = 1;
    return SetDeclaration(cmd_kind_variable_operand1_type);
}

bool ScriptCompiler::EndDeclarationWithValue() {
    if (!SetDeclaration(cmd_kind_variable_operand1_type_operand2)) return false;
    command_.commandText = LeftOperatorRightText();
    return true;
}

bool ScriptCompiler::EndDeclarationWithCast() {
    AddCastToRightText();
    return EndDeclarationWithValue();
}

bool ScriptCompiler::EndConstant() {
    if (command_.operand1IsMacro != 0) return Report("Syntax error");
    command_.kind = cmd_kind_variable_operand1_type;
    command_.typeName = typeName_;
    command_.operand1Text = '#' + command_.operand1 + "::" + typeName_;
    command_.commandText = command_.operand1Text;
    return true;
}

void ScriptCompiler::EndAssignment() {
    command_.kind = cmd_kind_variable_operand1_operand2;
    command_.commandText = LeftOperatorRightText();
}

void ScriptCompiler::EndAssignmentWithCast() {
    AddCastToRightText();
    EndAssignment();
}

void ScriptCompiler::AddCastToRightText() {
    command_.operand2Text.insert(0, "(::" + command_.castType + ") ");
}

std::string ScriptCompiler::LeftOperatorRightText() const {
    return JoinWithBlanks(command_.operand1Text, command_.operatorText, command_.operand2Text);
}

// Operands

void ScriptCompiler::SetOperator(CommandId operatorId, std::string_view text) {
    command_.operatorId = operatorId;
    command_.operatorText = text;
}

void ScriptCompiler::SetLeftName(bool withColons) {
    command_.operand1 = TakeLabel();
    command_.operand1Text = command_.operand1;
    command_.typeWithColons = withColons ? 1 : 0;
}

void ScriptCompiler::SetLeftMacro() {
    command_.operand1 = command_.macroName;
    command_.operand1Text = CallText(command_.macroName, command_.arguments);
    command_.operand1IsMacro = 1;
    command_.operand1Arguments = std::exchange(command_.arguments, {});
}

void ScriptCompiler::SetRightName() {
    command_.operand2 = TakeLabel();
    command_.operand2Text = command_.operand2;
}

void ScriptCompiler::SetRightConstant(TypeId type, std::string_view text) {
    command_.operand2 = text;
    command_.operand2Text = text;
    command_.operand2Kind = type;
}

void ScriptCompiler::SetRightLiteral(std::string_view rawLiteral) {
    SetRightConstant(kConstantString, rawLiteral);
    command_.operand2 = LiteralValue(rawLiteral);
    command_.weakLiterals.push_back(MakeWeakLiteral("OPERAND2", command_.operand2));
}

void ScriptCompiler::SetRightMacro() {
    command_.operand2 = command_.macroName;
    command_.operand2Text = CallText(command_.macroName, command_.arguments);
    command_.operand2IsMacro = 1;
    command_.operand2Arguments = std::exchange(command_.arguments, {});
}

// Macro calls

void ScriptCompiler::EndCall() {
    command_.kind = cmd_kind_macro;
    command_.macroName = std::exchange(macroName_, std::string());
    command_.arguments = std::exchange(arguments_, {});
    SetSubkind(cmd_call_macro, CallText(command_.macroName, command_.arguments));
}

void ScriptCompiler::AddNameArgument(bool isList) {
    ActualArgument argument;
    argument.name = TakeLabel();
    argument.byValue = isList;
    arguments_.push_back(std::move(argument));
}

void ScriptCompiler::AddConstantArgument(TypeId type, std::string_view text) {
    ActualArgument argument;
    argument.typeId = type;
    argument.name = text;
    arguments_.push_back(std::move(argument));
}

void ScriptCompiler::AddLiteralArgument(std::string_view rawLiteral) {
    const std::string value = LiteralValue(rawLiteral);
    AddConstantArgument(kConstantString, value);
    arguments_.back().weakLiterals.push_back(MakeWeakLiteral("ACTUALARGUMENT", value));
}

}  // namespace kvl
