// Calls of scripts, patterns and built-in macros. Every call of a script or pattern runs on a callee of its own; calls
// nest through the host's stack, so what lies on it is kept small.
#include <memory>
#include <utility>

#include "interpreter/CPatternSchema.h"
#include "interpreter/MacroRun.h"
#include "messages/Log.h"
#include "text/Escapes.h"
#include "text/Replace.h"

namespace kvl {

namespace {

constexpr int kCallTraceColour = 11;
constexpr std::string_view kNestedTooDeep = "Macro calls are nested deeper than 10000. ";
static_assert(kDeepestMacroCall == 10000, "the limit stands in the message");

struct Callee {
    CVariable* variable = nullptr;
    std::string_view object, method;  // of a method call such as D:MKDIR
};

// A macro is global: its name is found from any depth. A name that is no macro may be a method with its receiver in
// front.
Callee FindCallee(std::string_view name) {
    const VariableTable& macros = RootSchema().variableTable;
    if (CVariable* variable = macros.Find(name)) return {variable, {}, {}};
    const std::size_t colon = name.rfind(':');
    if (colon == std::string_view::npos) return {};
    const std::string_view method = name.substr(colon + 1);
    return {macros.Find(method), name.substr(0, colon), method};
}

bool IsMacro(const CVariable* variable) {
    return variable && (variable->typeId == kTypeScript || variable->typeId == kTypePattern);
}

// The compiled schema of a script or pattern; null while nothing has been loaded into it.
std::shared_ptr<const CPatternSchema> MacroSchemaOf(const CVariable& macro) {
    return std::dynamic_pointer_cast<const CPatternSchema>(static_cast<const CVariableKVLMacro&>(macro).macroSchema);
}

std::string_view LastPart(std::string_view label) {
    const std::size_t colon = label.rfind(':');
    return colon == std::string_view::npos ? label : label.substr(colon + 1);
}

void TraceCall(std::string_view direction, std::string_view text) {
    std::string line;
    line.reserve(direction.size() + text.size() + 4);
    line += '\n';
    line.append(direction).append("  ").append(text).append("\n");
    PrintColoured(line, kCallTraceColour);
    WriteLog(line);
}

class OnCallStack {
public:
    OnCallStack(CallStack& calls, MacroFrame& frame) : calls_(calls) { calls_.push_back(&frame); }
    ~OnCallStack() { calls_.pop_back(); }
    OnCallStack(const OnCallStack&) = delete;
    OnCallStack& operator=(const OnCallStack&) = delete;

private:
    CallStack& calls_;
};

class DepthCount {
public:
    DepthCount() { ++Process().macroDepth; }
    ~DepthCount() { --Process().macroDepth; }
    DepthCount(const DepthCount&) = delete;
    DepthCount& operator=(const DepthCount&) = delete;
};

// A mark takes the line end behind it along.
void AppendWithoutMarks(OutputText& output, OutputText&& body) {
    const std::string& mark = Process().generationMark;
    if (mark.empty() || body.Text().find(mark) == std::string::npos) {
        output.Append(std::move(body));
        return;
    }
    output.AppendOutput(ReplaceAll(ReplaceAll(body.Text(), mark + "\r\n", ""), mark, ""));
}

bool RunMacro(CPatternSchema& caller, const CVariable& macro, CallArguments&& arguments, std::string_view commandText,
              OutputText& output, RunContext& run) {
    if (Process().macroDepth >= kDeepestMacroCall) {
        return caller.Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, kNestedTooDeep);
    }
    if (!caller.MayNest()) return false;
    const DepthCount counted;
    TraceCall("Call   ", commandText);
    const std::shared_ptr<const CPatternSchema> schema = MacroSchemaOf(macro);  // kept, should an argument load another
    MacroFrame frame;
    frame.macroName = LastPart(macro.label);
    frame.caller = &caller;
    frame.callerLine = caller.currentLine;
    if (!caller.EvaluateArguments(arguments, run)) return false;
    frame.actualArguments = std::move(arguments.bound);
    if (!schema) return Report(ERR_DECL_PATTERN_HEADER_1, caller.GetMessageContext());  // as any text without one
    MacroRun call(*schema, frame, run);
    if (!call.Run(output)) return false;
    TraceCall("Return ", call.Script().macroDeclarationText);
    return true;
}

}  // namespace

bool CPatternSchema::ExecuteMacroCall(std::string_view macroName, CallArguments arguments, std::string_view commandText,
                                      bool asStatement, OutputText& output, RunContext& run) {
    const Callee callee = FindCallee(macroName);
    const bool isBuiltIn = callee.variable && callee.variable->typeId == kTypeStatic;
    if (!isBuiltIn) {
        if (!IsMacro(callee.variable)) return Fail(ERR_DECL_SCRIPT_MACRO_1, ERRSTR_MACRO_NAME, macroName);
        return RunMacro(*this, *callee.variable, std::move(arguments), commandText, output, run);
    }

    const int identifier = static_cast<const CVariableKVLStaticMacro&>(*callee.variable).macroCommand;
    const bool isStreamMacro = identifier >= cmd_stream_merge && identifier <= cmd_stream_length;
    if (asStatement && isStreamMacro && IsScript()) {  // its result would be lost
        return Fail(ERR_DECL_SCRIPT_MACRO_4, ERRSTR_MACRO_NAME, macroName);
    }
    std::string text;
    if (!EvaluateBuiltIn(identifier, std::move(arguments), callee.object, callee.method, text, run)) return false;
    output.Append(text);
    return true;
}

bool CPatternSchema::CallForText(CVariable& macro, CallArguments arguments, std::string_view object,
                                 std::string_view method, std::string& text, RunContext& run) {
    text.clear();
    if (macro.typeId == kTypeStatic) {
        const int identifier = static_cast<const CVariableKVLStaticMacro&>(macro).macroCommand;
        return EvaluateBuiltIn(identifier, std::move(arguments), object, method, text, run);
    }
    if (macro.typeId != kTypePattern) return true;  // a script has no text
    OutputText output;
    if (!ExecuteMacroCall(macro.label, std::move(arguments), {}, false, output, run)) return false;
    text = output.Take();
    return true;
}

bool CPatternSchema::EvaluateArguments(CallArguments& arguments, RunContext& run) {
    if (arguments.areBound) return true;
    arguments.areBound = true;
    arguments.bound.reserve(arguments.written.size());
    for (const ActualArgument& argument : arguments.written) {
        BoundArgument& result = arguments.bound.emplace_back();
        result.byValue = argument.byValue;
        if (argument.typeId != 0) {
            result.typeId = argument.typeId;
            result.name = argument.name;
            if (argument.typeId != kConstantString) continue;
            if (!EvaluateWeakLiteral(argument.weakLiterals, "ACTUALARGUMENT", result.name, run)) return false;
            result.name = ResolveEscapes(result.name);
            continue;
        }
        if (!FindDeclaredVariable(argument.name, result.variable)) return false;
        const CVariable& variable = *result.variable;
        result.typeId = variable.typeId;
        result.elementTypeId = variable.elementTypeId;
        result.typeName = variable.typeName;
        result.userTypeName = variable.userTypeName;
        result.name = variable.label;
        result.ownerList = variable.ownerList;
        const bool isNested = variable.IsList() && variable.ownerList;
        if (isNested && !run.loops.FindLoop(variable.ownerList)) {
            return ReportListOutsideLoop(variable.label, variable.ownerList->label);
        }
    }
    return true;
}

bool CPatternSchema::EvaluateBuiltIn(int identifier, CallArguments arguments, std::string_view object,
                                     std::string_view method, std::string& text, RunContext& run) {
    if (!EvaluateArguments(arguments, run)) return false;
    MacroValue value{{}, std::string(object), std::string(method), std::move(arguments.bound), run};
    if (!TheBuiltIns().RunStaticMacro(*this, identifier, value)) return false;
    text = std::move(value.result);
    return true;
}

MacroRun::MacroRun(const CPatternSchema& macro, MacroFrame& frame, RunContext& run)
    : macro_(macro), frame_(frame), run_(run), script_(macro.script), idle_(macro.Idle()) {}

MacroRun::~MacroRun() {
    if (callee_) callee_->RestoreLabels();
}

bool MacroRun::Run(OutputText& output) {
    const bool isOutermost = run_.calls.empty();
    const OnCallStack pushed(run_.calls, frame_);
    if (!PrepareCallee()) return false;
    const MacroText* text = macro_.IsScript() ? nullptr : &script_->TextFor(isOutermost);
    callee_->schema->macroText_ = text;
    if (text) output.Append(text->leading);
    if (!RunBody(output)) return false;
    if (text) output.Append(text->trailing);
    if (!CopyBack()) return false;
    if (callee_->schema->utf8Source) output.EncodeUtf8();
    idle_->Give(std::move(callee_));
    return true;
}

bool MacroRun::PrepareCallee() {
    const PatternCommand& head = script_->Commands()[static_cast<std::size_t>(script_->bodyBegin)];
    if (LogIsOpen()) WriteLog("\n" + script_->macroDeclarationText + "\n");
    frame_.formalParameters = &head.macroHead->formalParameters;
    if (frame_.macroName != script_->macroName) {
        return macro_.Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON,
                           "Actual - Formal Macro/Pattern Name Mismatch. ");
    }
    if (!BindParameters()) return false;
    callee_ = idle_->Take(frame_.actualArguments);
    if (!callee_) callee_ = std::make_unique<MacroCallee>(macro_);
    callee_->schema->currentLine = head.lineNumber;
    callee_->schema->overwriteMode = frame_.caller->overwriteMode;
    return callee_->TakeArguments(head.macroHead->formalParameters, frame_.actualArguments);
}

bool MacroRun::RunBody(OutputText& output) {
    CPatternSchema& schema = *callee_->schema;
    OutputText body;
    if (!schema.Execute(script_->bodyBegin + 1, script_->bodyEnd - 1, body, run_)) return false;
    if (!schema.IsScript()) AppendWithoutMarks(output, std::move(body));
    return true;
}

}  // namespace kvl
