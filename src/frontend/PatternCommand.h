#pragma once
// One compiled command: the contract between the parser, which fills it, and the interpreter, which only reads it.
// Fields that a kind does not use hold 0 or the empty string. Texts are views: the list of commands keeps them.

#include <string>
#include <string_view>
#include <vector>

#include "frontend/CommandIds.h"
#include "frontend/RarePart.h"

namespace kvl {

struct ActualArgument;

// A reduced command: one piece of a compiled weak literal.
struct LiteralPiece {
    int kind = 0;
    int subkind = 0;
    std::string_view name;  // commandText of the piece
    std::string_view text;  // its streamText
    std::string_view macroName;
    std::vector<ActualArgument> arguments;
};

// A literal operand that may hold placeholders. `pieces` are made after the parse by compiling `text` as a small
// script.
struct WeakLiteral {
    std::string_view name;  // "OPERAND2", "LITERALMACRO", "ACTUALARGUMENT" or an attribute's name such as "VERSION"
    std::string_view text;  // quotes removed, doubled quotes undone
    std::vector<LiteralPiece> pieces;
};

// An argument as written. What it is bound to during a call lives with the call.
struct ActualArgument {
    int typeId = 0;         // 0 for a name, 9 to 12 for a literal
    bool byValue = false;   // written with "[]": the list as a whole
    std::string_view name;  // the name, or the literal's value
    std::vector<WeakLiteral> weakLiterals;
};

struct FormalParameter {
    std::string typeName;
    bool isList = false;
    std::string name;
    std::string annotation;  // "#", "&" or empty
    bool isReference = false;

    bool operator==(const FormalParameter& other) const = default;
};

struct InitialRange {
    std::string_view literal;  // the decimal literal between the square brackets
    std::string_view name;     // or the name of an integer variable; at most one is non-empty
};

// The lists of `$BEGIN ALL ...$`.
struct LoopHead {
    int loopMode = 0;  // cmd_loop_mode_*, as the separator says
    std::string_view listName1;
    std::string_view listName2;
    std::string_view loopSeparator;

    bool operator==(const LoopHead& other) const = default;
};

// The condition of `$BEGIN IF ...$`. A comparison has its operands in OperandSides.
struct ConditionHead {
    int conditionForm = 0;  // cmd_condition_*
    std::string_view conditionOperand;
    std::string_view conditionText;  // of a comparison
};

// The head of a script or pattern: one of the two names is empty.
struct MacroHead {
    std::vector<FormalParameter> formalParameters;
    std::string_view scriptMacroName;
    std::string_view patternMacroName;

    std::string_view MacroName() const { return scriptMacroName.empty() ? patternMacroName : scriptMacroName; }
    bool operator==(const MacroHead& other) const = default;
};

// What a declaration, an assignment or a comparison has on its left and on its right.
struct OperandSides {
    std::string_view operand1;
    int operand1Type = 0;
    int operand1ListMark = 0;  // 18 when square brackets follow the declared type
    InitialRange initialRange;
    std::string_view castType;
    std::string_view typeName;
    int declaredWithValue = 0;  // 1 for `name ::TYPE`, 0 for the constant form with "#"
    int typeWithColons = 0;     // the left operand was written with a leading "::"
    std::string_view operand2;
    int operand2Kind = 0;  // 0 for a name, 9 to 12 for a literal
    int operand1IsMacro = 0;
    int operand2IsMacro = 0;
    int operatorId = 0;  // cmd_operator_*
    std::string_view operand1Text;
    std::string_view operand2Text;
    std::string_view operatorText;
    std::vector<ActualArgument> operand1Arguments;
    std::vector<ActualArgument> operand2Arguments;
};

// A macro call as written, or the literal whose text will be one.
struct WrittenCall {
    std::string_view macroName;
    std::vector<ActualArgument> arguments;
    std::string_view literalMacroText;
};

// Most commands are text and placeholders: what only others have stands apart, so that long scripts stay small.
struct PatternCommand {
    int beginEnd = 0;  // cmd_begin, cmd_end or 0
    int kind = 0;      // cmd_kind_*
    int subkind = 0;
    int asStatement = 0;  // 1 for a macro call that stands alone
    int placeholderKind = 0;
    int blockId = 0;  // of a cmd_begin, unique over the run
    int negation = condition_negation_no;
    int lineNumber = -1;  // 1-based, when the command was appended
    std::string_view beginText;
    std::string_view endText;
    std::string_view commandText;
    std::string_view placeholderName;
    std::string streamText;
    std::vector<WeakLiteral> weakLiterals;
    RarePart<LoopHead> loop;
    RarePart<ConditionHead> condition;
    RarePart<MacroHead> macroHead;
    RarePart<OperandSides> sides;
    RarePart<WrittenCall> call;
};

}  // namespace kvl
