#include "interpreter/WeakLiteralCompiler.h"

#include <utility>

#include "frontend/ScriptFrontEnd.h"
#include "values/TypeIds.h"

namespace kvl {

namespace {

LiteralPiece MakePiece(PatternCommand&& command) {
    LiteralPiece piece;
    piece.kind = command.kind;
    piece.subkind = command.subkind;
    piece.name = std::move(command.commandText);
    piece.text = std::move(command.streamText);
    piece.macroName = std::move(command.macroName);
    piece.arguments = std::move(command.arguments);
    return piece;
}

bool CompileArguments(std::vector<ActualArgument>& arguments, int entityKind);

// A literal within a literal doubles its quotes at each step, so that the nesting stays as low as the logarithm of the
// text.
bool CompileLiterals(std::vector<WeakLiteral>& literals, int entityKind) {
    for (WeakLiteral& literal : literals) {
        CommandList fragment;
        if (!ParseScriptConstant(entityKind, literal.text, fragment)) return false;
        literal.pieces.clear();
        for (PatternCommand& command : fragment.commands) {
            literal.pieces.push_back(MakePiece(std::move(command)));
            if (!CompileArguments(literal.pieces.back().arguments, entityKind)) return false;
        }
    }
    return true;
}

bool CompileArguments(std::vector<ActualArgument>& arguments, int entityKind) {
    for (ActualArgument& argument : arguments) {
        if (argument.typeId == kConstantString && !CompileLiterals(argument.weakLiterals, entityKind)) return false;
    }
    return true;
}

bool CompileCommand(PatternCommand& command, int entityKind) {
    return CompileLiterals(command.weakLiterals, entityKind) &&
           CompileArguments(command.operand1Arguments, entityKind) &&
           CompileArguments(command.operand2Arguments, entityKind) && CompileArguments(command.arguments, entityKind);
}

}  // namespace

bool CompileWeakLiterals(CommandList& list, const CTSEntity& source, int line) {
    for (PatternCommand& command : list.commands) {
        if (CompileCommand(command, source.entityKind)) continue;
        const int shownLine = line == kEachCommandsOwnLine ? command.lineNumber : line;
        return Report(source.Twin(ERR_DECL_SCRIPT_LIT_2), source.GetMessageContext(shownLine));
    }
    return true;
}

}  // namespace kvl
