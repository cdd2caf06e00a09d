#pragma once
// One compiled command: the contract between the parser, which fills it, and the interpreter, which only reads it. Fields
// that a kind does not use hold 0 or the empty string.

#include <string>
#include <vector>

#include "frontend/CommandIds.h"

namespace kvl {

struct ActualArgument;

// A reduced command: one piece of a compiled weak literal.
struct LiteralPiece {
    int kind = 0;
    int subkind = 0;
    std::string name;  // commandText of the piece
    std::string text;  // its streamText
    std::string macroName;
    std::vector<ActualArgument> arguments;
};

// A literal operand that may hold placeholders. `pieces` are made after the parse by compiling `text` as a small script.
struct WeakLiteral {
    std::string name;  // "OPERAND2", "LITERALMACRO", "ACTUALARGUMENT" or an attribute's name such as "VERSION"
    std::string text;  // quotes removed, doubled quotes undone
    std::string sourceText;
    std::vector<LiteralPiece> pieces;
};

// An argument as written. What it is bound to during a call lives with the call.
struct ActualArgument {
    int typeId = 0;        // 0 for a name, 9 to 12 for a literal
    bool byValue = false;  // written with "[]": the list as a whole
    std::string name;      // the name, or the literal's value
    std::vector<WeakLiteral> weakLiterals;
    int sourcePosition = -1;
};

struct FormalParameter {
    std::string typeName;
    bool isList = false;
    std::string name;
    std::string annotation;  // "#", "&" or empty
    bool isReference = false;

    bool operator==(const FormalParameter& other) const {
        return typeName == other.typeName && isList == other.isList && name == other.name &&
               annotation == other.annotation;
    }
};

struct InitialRange {
    std::string literal;  // the decimal literal between the square brackets
    std::string name;     // or the name of an integer variable; at most one is non-empty
};

struct PatternCommand {
    int beginEnd = 0;  // cmd_begin, cmd_end or 0
    int kind = 0;      // cmd_kind_*
    int subkind = 0;
    int asStatement = 0;  // 1 for a macro call that stands alone
    int loopMode = 0;     // cmd_loop_mode_*
    std::string listName1;
    std::string listName2;
    std::string loopSeparator;
    int placeholderKind = 0;
    std::string placeholderName;
    int conditionForm = 0;  // cmd_condition_*
    std::string conditionOperand;
    std::string beginText;
    int blockId = 0;  // of a cmd_begin, unique over the run
    std::string commandText;
    std::string endText;
    std::vector<WeakLiteral> weakLiterals;
    std::string streamText;
    std::string operand1;
    int operand1Type = 0;
    int operand1ListMark = 0;  // 18 when square brackets follow the declared type
    InitialRange initialRange;
    std::string castType;
    std::string typeName;
    int declaredWithValue = 0;  // 1 for `name ::TYPE`, 0 for the constant form with "#"
    int typeWithColons = 0;     // the left operand was written with a leading "::"
    std::string operand2;
    int operand2Kind = 0;  // 0 for a name, 9 to 12 for a literal
    int operand1IsMacro = 0;
    int operand2IsMacro = 0;
    std::string operand1Text;
    std::string operand2Text;
    int operatorId = 0;  // cmd_operator_*
    std::string operatorText;
    std::string conditionText;
    std::string literalMacroText;
    int negation = condition_negation_no;
    int lineNumber = -1;  // 1-based, when the command was appended
    std::string macroName;
    std::vector<ActualArgument> operand1Arguments;
    std::vector<ActualArgument> operand2Arguments;
    std::vector<ActualArgument> arguments;
    std::vector<FormalParameter> formalParameters;
    std::string scriptMacroName;
    std::string patternMacroName;
};

}  // namespace kvl
