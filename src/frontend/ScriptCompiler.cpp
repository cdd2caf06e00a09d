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

std::string ParameterText(const FormalParameter& parameter) {
    return parameter.annotation + parameter.name + "::" + parameter.typeName + (parameter.isList ? "[]" : "");
}

std::string ArgumentText(const ActualArgument& argument) {
    const std::string_view quote = argument.typeId == kConstantString ? "\"" : "";
    std::string text(quote);
    text.append(argument.name).append(quote).append(argument.byValue ? "[]" : "");
    return text;
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

std::string_view ScriptCompiler::TakeLabel() {
    const std::string_view label = Keep(label_);
    label_.clear();
    return label;
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

void ScriptCompiler::SetBegin() {
    command_.beginEnd = cmd_begin;
    command_.beginText = "BEGIN";
    command_.commandText = Join({"BEGIN ", command_.commandText});
}

void ScriptCompiler::SetEnd() {
    command_.beginEnd = cmd_end;
    command_.endText = "END";
    command_.commandText = Join({"END ", command_.commandText});
}

// Block heads

void ScriptCompiler::EndVersion(std::string_view rawLiteral) {
    SetSubkind(cmd_kvl_file_version, Join({"KVL VERSION ", rawLiteral}));
    command_.weakLiterals.push_back({"VERSION", Keep(LiteralValue(rawLiteral)), {}});
}

void ScriptCompiler::EndVerbatimHead(CommandId subkind, std::string_view keyword) {
    SetSubkind(subkind, Keep(keyword));
}

void ScriptCompiler::SetSubkind(CommandId subkind, std::string_view commandText) {
    command_.subkind = subkind;
    command_.commandText = commandText;
}

void ScriptCompiler::EndScriptHead(std::string_view name) {
    command_.macroHead.Make().scriptMacroName = Keep(name);
    SetSubkind(cmd_declare_script_macro, Signature("SCRIPT ", name));
}

void ScriptCompiler::EndPatternHead(std::string_view name) {
    command_.macroHead.Make().patternMacroName = Keep(name);
    SetSubkind(cmd_declare_pattern_macro, Signature("PATTERN ", name));
}

std::string_view ScriptCompiler::Signature(std::string_view keyword, std::string_view name) {
    return Join({keyword, TextWithList(name, command_.macroHead->formalParameters, ParameterText)});
}

bool ScriptCompiler::EndParameter(std::string_view name) {
    if (name == "void") return scanner_.Report(TwinFor(ERR_DECL_SCRIPT_PARAM_3, scanner_.EntityKind()));
    parameter_.name = name;
    command_.macroHead.Make().formalParameters.push_back(std::exchange(parameter_, FormalParameter()));
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
    command_.loop.Make().loopMode = mode;
    command_.loop.Make().loopSeparator = Keep(separator);
}

void ScriptCompiler::EndSingleLoop() {
    command_.loop.Make().loopMode = cmd_loop_mode_single;
    command_.kind = cmd_kind_begin_end_loop_list;
    SetSubkind(cmd_with_list, Join({"ALL ", command_.loop->listName1}));
}

void ScriptCompiler::EndDoubleLoop() {
    command_.kind = cmd_kind_begin_end_loop_list;
    const LoopHead& loop = *command_.loop;
    SetSubkind(cmd_with_list, Join({"ALL ", loop.listName1, " ", loop.loopSeparator, " ", loop.listName2}));
}

// Conditions

void ScriptCompiler::SetComparison(CommandId operatorId, CommandId negation, std::string_view text) {
    SetOperator(operatorId, text);
    command_.negation = negation;
}

void ScriptCompiler::EndComparison() {
    command_.subkind = cmd_with_condition_operand1_operand2;
    const OperandSides& sides = *command_.sides;
    ConditionHead& condition = command_.condition.Make();
    condition.conditionForm = cmd_condition_operand1_operator_operand2;
    condition.conditionText = Join({"IF ", sides.operand1, " ", sides.operatorText, " ", sides.operand2});
}

// The text of this form is conditionText alone; a macro call among the operands has left its own in commandText.
void ScriptCompiler::EndComparisonBlock() {
    command_.kind = cmd_kind_begin_end_if_condition;
    command_.commandText = {};
}

void ScriptCompiler::EndLineCondition(CommandId negation) {
    command_.condition.Make().conditionForm = cmd_condition_placeholder_normal_is_not_empty;
    command_.negation = negation;
}

void ScriptCompiler::EndNameCondition(CommandId negation) {
    command_.condition.Make().conditionForm = cmd_condition_identifier_is_empty;
    command_.condition.Make().conditionOperand = TakeLabel();
    command_.negation = negation;
}

void ScriptCompiler::EndMacroCondition(CommandId negation) {
    const std::string_view mark = negation == cmd_condition_negation_yes ? "!" : "";
    command_.condition.Make().conditionForm = cmd_condition_macro_return_is_not_empty;
    command_.condition.Make().conditionOperand = Join({mark, command_.commandText});
    command_.negation = negation;
}

void ScriptCompiler::EndConditionBlock(CommandId subkind) {
    command_.kind = cmd_kind_begin_end_if_condition;
    SetSubkind(subkind, Join({"IF ", command_.condition->conditionOperand}));
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
    command_.placeholderName = Keep(text);
    SetSubkind(subkind, command_.placeholderName);
}

void ScriptCompiler::EndLiteralMacro(std::string_view rawLiteral) {
    const std::string_view value = Keep(LiteralValue(rawLiteral));
    command_.call.Make().literalMacroText = value;
    command_.weakLiterals.push_back({"LITERALMACRO", value, {}});
    SetSubkind(cmd_literal_macro, Keep(rawLiteral));
}

void ScriptCompiler::EndCallStatement() {
    command_.asStatement = 1;
}

// A variable of KVL:TYPE alone is written with a leading "::", and a script or pattern is declared like a call without
// arguments.
bool ScriptCompiler::CheckDeclarationShape() {
    const bool isType = typeName_ == "KVL:TYPE";
    const OperandSides& sides = *command_.sides;
    if (isType != (sides.typeWithColons != 0)) return Report("Syntax error");
    const bool isBareCall = sides.operand1IsMacro != 0 && sides.operand1Arguments.empty();
    if (IsMacroType(typeName_) && !isBareCall) return Report("Syntax error");
    return true;
}

bool ScriptCompiler::SetDeclaration(CommandId kind) {
    if (!CheckDeclarationShape()) return false;
    OperandSides& sides = Sides();
    const std::string_view colons = sides.typeWithColons != 0 ? "::" : "";
    const std::string_view name = IsMacroType(typeName_) ? sides.operand1Text : sides.operand1;
    sides.typeName = typeName_;
    sides.operand1Text = Join({colons, name, "::", typeName_});
    command_.kind = kind;
    command_.commandText = sides.operand1Text;
    return true;
}

bool ScriptCompiler::EndDeclaration() {
    Sides().declaredWithValue = 1;
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
    OperandSides& sides = Sides();
    if (sides.operand1IsMacro != 0) return Report("Syntax error");
    sides.typeName = typeName_;
    sides.operand1Text = Join({"#", sides.operand1, "::", typeName_});
    command_.kind = cmd_kind_variable_operand1_type;
    command_.commandText = sides.operand1Text;
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
    OperandSides& sides = Sides();
    sides.operand2Text = Join({"(::", sides.castType, ") ", sides.operand2Text});
}

std::string_view ScriptCompiler::LeftOperatorRightText() {
    const OperandSides& sides = *command_.sides;
    return Join({sides.operand1Text, " ", sides.operatorText, " ", sides.operand2Text});
}

// Operands

void ScriptCompiler::SetOperator(CommandId operatorId, std::string_view text) {
    Sides().operatorId = operatorId;
    Sides().operatorText = Keep(text);
}

void ScriptCompiler::SetLeftName(bool withColons) {
    OperandSides& sides = Sides();
    sides.operand1 = TakeLabel();
    sides.operand1Text = sides.operand1;
    sides.typeWithColons = withColons ? 1 : 0;
}

// The call has just been read: the command's text is its.
void ScriptCompiler::SetLeftMacro() {
    OperandSides& sides = Sides();
    sides.operand1 = command_.call->macroName;
    sides.operand1Text = command_.commandText;
    sides.operand1IsMacro = 1;
    sides.operand1Arguments = std::exchange(command_.call.Make().arguments, {});
}

void ScriptCompiler::SetRightName() {
    OperandSides& sides = Sides();
    sides.operand2 = TakeLabel();
    sides.operand2Text = sides.operand2;
}

void ScriptCompiler::SetRightConstant(TypeId type, std::string_view text) {
    OperandSides& sides = Sides();
    sides.operand2 = Keep(text);
    sides.operand2Text = sides.operand2;
    sides.operand2Kind = type;
}

void ScriptCompiler::SetRightLiteral(std::string_view rawLiteral) {
    OperandSides& sides = Sides();
    SetRightConstant(kConstantString, rawLiteral);
    sides.operand2 = Keep(LiteralValue(rawLiteral));
    command_.weakLiterals.push_back({"OPERAND2", sides.operand2, {}});
}

void ScriptCompiler::SetRightMacro() {
    OperandSides& sides = Sides();
    sides.operand2 = command_.call->macroName;
    sides.operand2Text = command_.commandText;
    sides.operand2IsMacro = 1;
    sides.operand2Arguments = std::exchange(command_.call.Make().arguments, {});
}

// Macro calls

void ScriptCompiler::EndCall() {
    command_.kind = cmd_kind_macro;
    WrittenCall& call = command_.call.Make();
    call.macroName = macroName_;
    call.arguments = std::exchange(arguments_, {});
    SetSubkind(cmd_call_macro, Keep(CallText(call.macroName, call.arguments)));
}

void ScriptCompiler::AddNameArgument(bool isList) {
    AddArgument(kTypeUnknown, TakeLabel());
    arguments_.back().byValue = isList;
}

void ScriptCompiler::AddConstantArgument(TypeId type, std::string_view text) {
    AddArgument(type, Keep(text));
}

void ScriptCompiler::AddLiteralArgument(std::string_view rawLiteral) {
    const std::string_view value = Keep(LiteralValue(rawLiteral));
    AddArgument(kConstantString, value);
    arguments_.back().weakLiterals.push_back({"ACTUALARGUMENT", value, {}});
}

void ScriptCompiler::AddArgument(TypeId type, std::string_view value) {
    ActualArgument& argument = arguments_.emplace_back();
    argument.typeId = type;
    argument.name = value;
}

}  // namespace kvl
