// The walk over a range of commands and the dispatch of one command or one block. Every body, be it of a loop, a
// condition or a macro, is a range for the same walk; the run ends at the first command that fails.
#include "interpreter/CPatternSchema.h"
#include "interpreter/CPatternSchemaCondition.h"
#include "interpreter/ScriptLoading.h"
#include "messages/Log.h"
#include "platform/Surroundings.h"
#include "text/Replace.h"

namespace kvl {

namespace {

constexpr std::size_t kMostFragments = 256;
constexpr std::string_view kNestedBeyondStack = "Blocks and macro calls are nested deeper than the stack holds. ";

// The innermost failing command is the first to come here, while the failure travels up.
void RememberStop(const CPatternSchema& schema, const PatternCommand& command) {
    ProcessState& process = Process();
    if (process.stoppedLine != -1) return;
    process.stoppedLine = command.lineNumber;
    process.stoppedPath = schema.GetDisplayPath();
}

bool MayStandInSeparator(const PatternCommand& command) {
    return command.kind == cmd_kind_placeholder_normal || command.kind == cmd_kind_placeholder_identifier ||
           command.kind == cmd_kind_stream;
}

bool IsOnLastRecord(const LoopStack& loops) {
    const RunningLoop* loop = loops.Innermost();
    return loop && (loop->first.last || loop->second.last);
}

}  // namespace

bool CPatternSchema::Execute(int first, int last, OutputText& output, RunContext& run) {
    for (int index = first; index <= last; ++index) {
        const PatternCommand& command = Commands()[static_cast<std::size_t>(index)];
        bool done = false;
        if (command.beginEnd == cmd_begin) {
            const int end = script->GetBlockEnd(index);
            done = end > index && ExecuteBlock(index, end, output, run);
            index = end;
        } else {
            done = ExecuteCommand(index, output, run);
        }
        if (!done) {
            RememberStop(*this, command);
            return false;
        }
    }
    return true;
}

// The lower half of the stack is left to the parser and the type compiler, which may be called from any depth.
bool CPatternSchema::MayNest() const {
    return !IsStackHalfUsed() || Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, kNestedBeyondStack);
}

bool CPatternSchema::ExecuteBlock(int begin, int end, OutputText& output, RunContext& run) {
    const PatternCommand& command = Commands()[static_cast<std::size_t>(begin)];
    currentLine = command.lineNumber;
    if (!MayNest()) return false;
    switch (command.kind) {
        case cmd_kind_begin_end_loop_list_condition:
        case cmd_kind_begin_end_loop_list:
            return ExecuteLoop(begin, end, output, run);
        case cmd_kind_begin_end_if_condition:
            return ExecuteCondition(begin, end, output, run);
        case cmd_kind_begin_end_verb_constant_string:
            return command.subkind == cmd_kvl_file_version && Execute(begin + 1, end - 1, output, run);
        case cmd_kind_begin_end_verb_stream:
            return ExecuteVerbatimBlock(begin, end, output, run);
        case cmd_kind_begin_end_declare_macro:
            return ExecuteMacroBlock(begin, end, output, run);
        default:
            return false;
    }
}

// The condition object is gone before its body runs, so that nested blocks stay small on the stack.
bool CPatternSchema::ExecuteCondition(int begin, int end, OutputText& output, RunContext& run) {
    const int result = EvaluateCondition(*this, Commands()[static_cast<std::size_t>(begin)], run);
    if (result == condition_error) return false;
    return result == condition_false || Execute(begin + 1, end - 1, output, run);
}

// The body of a separator stands between the passes of the innermost loop: not behind the last one. When it is left
// out, the line end behind its closing command has to go too.
bool CPatternSchema::ExecuteVerbatimBlock(int begin, int end, OutputText& output, RunContext& run) {
    const PatternCommand& command = Commands()[static_cast<std::size_t>(begin)];
    if (command.subkind == cmd_comment) return true;
    for (int index = begin + 1; index < end; ++index) {
        if (!MayStandInSeparator(Commands()[static_cast<std::size_t>(index)])) {
            return Fail(ERR_EXEC_SCRIPT_MACRO_9, ERRSTR_COMMAND, "SEPARATOR");
        }
    }
    if (!IsOnLastRecord(run.loops)) return Execute(begin + 1, end - 1, output, run);
    if (command.lineNumber != Commands()[static_cast<std::size_t>(end)].lineNumber) {
        output.Append(Process().generationMark);
    }
    return true;
}

// The call of a macro has bound its parameters before it comes here; the main script has none.
bool CPatternSchema::ExecuteMacroBlock(int begin, int end, OutputText& output, RunContext& run) {
    return Execute(begin + 1, end - 1, output, run);
}

bool CPatternSchema::ExecuteCommand(int index, OutputText& output, RunContext& run) {
    const PatternCommand& command = Commands()[static_cast<std::size_t>(index)];
    currentLine = command.lineNumber;
    switch (command.kind) {
        case cmd_kind_placeholder_normal:
            return WriteNormalPlaceholder(command, output);
        case cmd_kind_placeholder_identifier:
            return WriteIdentifierPlaceholder(index, output, run);
        case cmd_kind_variable_operand1_type_operand2:
            return ExecuteDeclarationWithValue(command, run);
        case cmd_kind_variable_operand1_operand2:
            return ExecuteAssignment(command, run);
        case cmd_kind_variable_operand1_type:
            return ExecuteDeclaration(command, run);
        case cmd_kind_macro:
            if (command.subkind == cmd_literal_macro) return ExecuteLiteralMacro(command, output, run);
            return ExecuteMacroCall(command.call->macroName, CallArguments(command.call->arguments),
                                    command.commandText, command.asStatement != 0, output, run);
        case cmd_kind_stream:
            return WriteStream(index, output);
        case cmd_kind_dummy_stream:
        case cmd_kind_new_comment:
            return true;
        default:
            return false;
    }
}

// A macro call written as a text, whose name and arguments may be computed.
bool CPatternSchema::ExecuteLiteralMacro(const PatternCommand& command, OutputText& output, RunContext& run) {
    std::string text;
    if (!EvaluateWeakLiteral(command.weakLiterals, "LITERALMACRO", text, run)) return false;
    const int errorsBefore = Process().errorCount;
    const std::shared_ptr<const CommandList> fragment = FragmentOf(text);
    if (!fragment && Process().errorCount != errorsBefore) return false;
    const bool isCall = fragment && !fragment->commands.empty() && fragment->commands.front().kind == cmd_kind_macro &&
                        fragment->commands.front().subkind == cmd_call_macro;
    if (!isCall) return Fail(ERR_DECL_SCRIPT_MACRO_1, ERRSTR_MACRO_NAME, text);
    const WrittenCall& call = *fragment->commands.front().call;
    return ExecuteMacroCall(call.macroName, CallArguments(call.arguments), command.commandText,
                            command.asStatement != 0, output, run);
}

// Null if the text does not compile. What is compiled does not depend on the place: a call has no use for its line. A
// log tells of each compilation.
std::shared_ptr<const CommandList> CPatternSchema::FragmentOf(const std::string& text) {
    FragmentCache& fragments = script->Fragments();
    const auto known = LogIsOpen() ? fragments.end() : fragments.find(text);
    if (known != fragments.end()) {
        Process().atLineStart = known->second.atLineStart;
        return known->second.list;
    }
    std::shared_ptr<const CommandList> fragment = CompileFragment(*this, ReplaceAll('$' + text + '$', "\"\"", "\""));
    if (!fragment) return nullptr;
    if (fragments.size() == kMostFragments) fragments.clear();  // texts that are all different are not worth keeping
    fragments.insert_or_assign(text, CompiledFragment{fragment, Process().atLineStart});
    return fragment;
}

}  // namespace kvl
