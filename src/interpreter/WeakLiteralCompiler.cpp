#include "interpreter/WeakLiteralCompiler.h"

#include <utility>

#include "frontend/ScriptFrontEnd.h"
#include "values/TypeIds.h"

namespace kvl {

namespace {

class WeakLiteralCompiler {
public:
    // The texts of the pieces go where those of the commands are kept.
    WeakLiteralCompiler(int entityKind, const std::shared_ptr<CommandTexts>& texts) : entityKind_(entityKind) {
        fragment_.texts = texts;
    }

    bool Compile(PatternCommand& command) {
        if (!CompileLiterals(command.weakLiterals)) return false;
        if (OperandSides* sides = command.sides.Find()) {
            if (!CompileArguments(sides->operand1Arguments)) return false;
            if (!CompileArguments(sides->operand2Arguments)) return false;
        }
        WrittenCall* call = command.call.Find();
        return !call || CompileArguments(call->arguments);
    }

private:
    // A literal within a literal doubles its quotes at each step, so that the nesting stays as low as the logarithm of
    // the text.
    bool CompileLiterals(std::vector<WeakLiteral>& literals) {
        for (WeakLiteral& literal : literals) {
            fragment_.commands.clear();
            if (!ParseScriptConstant(entityKind_, literal.text, fragment_)) return false;
            literal.pieces.clear();
            literal.pieces.reserve(fragment_.commands.size());
            for (PatternCommand& command : fragment_.commands)
                literal.pieces.push_back(MakePiece(command));
            for (LiteralPiece& piece : literal.pieces) {
                if (!CompileArguments(piece.arguments)) return false;
            }
        }
        return true;
    }

    bool CompileArguments(std::vector<ActualArgument>& arguments) {
        for (ActualArgument& argument : arguments) {
            if (argument.typeId == kConstantString && !CompileLiterals(argument.weakLiterals)) return false;
        }
        return true;
    }

    LiteralPiece MakePiece(PatternCommand& command) const {
        LiteralPiece piece;
        piece.kind = command.kind;
        piece.subkind = command.subkind;
        piece.name = command.commandText;
        piece.text = fragment_.texts->Keep(command.streamText);
        if (WrittenCall* call = command.call.Find()) {
            piece.macroName = call->macroName;
            piece.arguments = std::move(call->arguments);
        }
        return piece;
    }

    const int entityKind_;
    CommandList fragment_;  // of the literal at hand
};

}  // namespace

bool CompileWeakLiterals(CommandList& list, const CTSEntity& source, int line) {
    WeakLiteralCompiler compiler(source.entityKind, list.texts);
    for (PatternCommand& command : list.commands) {
        if (compiler.Compile(command)) continue;
        const int shownLine = line == kEachCommandsOwnLine ? command.lineNumber : line;
        return Report(source.Twin(ERR_DECL_SCRIPT_LIT_2), source.GetMessageContext(shownLine));
    }
    return true;
}

}  // namespace kvl
