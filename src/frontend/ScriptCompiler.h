#pragma once
// The actions of the script grammar: one operation for each production that has an effect. They fill the command under
// construction, which the closing dollar hands to the scanner's list.
//
// Fields that a production higher up needs from one further down are kept beside that command: the name being
// assembled, the types read last, the parameter and the call being read. A name is used once: taking it empties it.

#include <string>
#include <string_view>

#include "frontend/PatternCommand.h"
#include "frontend/PoutScanX.h"
#include "values/TypeIds.h"

namespace kvl {

class ScriptCompiler {
public:
    explicit ScriptCompiler(PoutScanX& scanner) : scanner_(scanner) {}

    // Runs the parser over the scanner's source. False if it was not accepted, which has been reported.
    [[nodiscard]] bool Parse();

    // For the parser's frame. Reports give false.
    int NextToken(std::string_view& text);
    bool Report(std::string_view text) { return scanner_.Report(text); }

    // Sources and commands. Those that answer have reported when they say no.
    void AppendText(std::string_view text) { scanner_.AppendText(text); }
    [[nodiscard]] bool EndCommand();
    void SetBegin();
    void SetEnd();
    void SetKind(CommandId kind) { command_.kind = kind; }

    // Block heads
    void EndVersion(std::string_view rawLiteral);
    void EndVerbatimHead(CommandId subkind, std::string_view keyword);
    void EndScriptHead(std::string_view name);
    void EndPatternHead(std::string_view name);
    [[nodiscard]] bool EndParameter(std::string_view name);
    void SetParameterMark(std::string_view mark);
    void SetParameterType(bool isList);

    // Loops
    void SetFirstList() { command_.loop.Make().listName1 = TakeLabel(); }
    void SetSecondList() { command_.loop.Make().listName2 = TakeLabel(); }
    void SetLoopMode(CommandId mode, std::string_view separator);
    void EndSingleLoop();
    void EndDoubleLoop();

    // Conditions
    void SetComparison(CommandId operatorId, CommandId negation, std::string_view text);
    void EndComparison();
    void EndComparisonBlock();
    void EndLineCondition(CommandId negation);
    void EndNameCondition(CommandId negation);
    void EndMacroCondition(CommandId negation);
    void EndConditionBlock(CommandId subkind);

    // Single commands
    void EndPlaceholder();
    void SetLineMark(CommandId subkind, std::string_view text);
    void EndLiteralMacro(std::string_view rawLiteral);
    void EndCallStatement();
    [[nodiscard]] bool EndDeclaration();
    [[nodiscard]] bool EndDeclarationWithValue();
    [[nodiscard]] bool EndDeclarationWithCast();
    [[nodiscard]] bool EndConstant();
    void EndAssignment();
    void EndAssignmentWithCast();

    // Types
    void SetTypeName() { typeBuffer_ = TakeLabel(); }
    void KeepTypeName() { typeName_ = typeBuffer_; }
    void SetListMark(bool isList) { Sides().operand1ListMark = isList ? kCategoryList : 0; }
    void SetListSize(std::string_view integer) { Sides().initialRange = {Keep(integer), {}}; }
    void SetListSizeName() { Sides().initialRange = {{}, TakeLabel()}; }
    void EndCast() { Sides().castType = typeBuffer_; }

    // Operands
    void SetOperator(CommandId operatorId, std::string_view text);
    void SetLeftName(bool withColons);
    void SetLeftMacro();
    void SetRightName();
    void SetRightConstant(TypeId type, std::string_view text);
    void SetRightLiteral(std::string_view rawLiteral);
    void SetRightMacro();

    // Macro calls
    void SetMacroName() { macroName_ = TakeLabel(); }
    void EndCall();
    void AddNameArgument(bool isList);
    void AddConstantArgument(TypeId type, std::string_view text);
    void AddLiteralArgument(std::string_view rawLiteral);

    // Names
    void StartLabel(std::string_view identifier) { label_ = identifier; }
    void ExtendLabel(std::string_view part) { label_ += part; }
    [[nodiscard]] bool EndShortName();

private:
    std::string_view Keep(std::string_view text) { return scanner_.Texts().Keep(text); }
    std::string_view Join(std::initializer_list<std::string_view> pieces) { return scanner_.Texts().Join(pieces); }
    std::string_view TakeLabel();
    OperandSides& Sides() { return command_.sides.Make(); }
    // What is set as a text is kept already.
    void SetSubkind(CommandId subkind, std::string_view commandText);
    std::string_view Signature(std::string_view keyword, std::string_view name);
    [[nodiscard]] bool SetDeclaration(CommandId kind);
    [[nodiscard]] bool CheckDeclarationShape();
    void AddCastToRightText();
    void AddArgument(TypeId type, std::string_view value);
    std::string_view LeftOperatorRightText();

    PoutScanX& scanner_;  // not owned
    PatternCommand command_;
    std::string label_;
    FormalParameter parameter_;
    std::string_view typeBuffer_;
    std::string_view typeName_;
    std::string_view macroName_;
    std::vector<ActualArgument> arguments_;
};

}  // namespace kvl
