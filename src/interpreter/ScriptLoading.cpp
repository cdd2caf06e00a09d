// The road of a script from its path to its last command.
#include "interpreter/ScriptLoading.h"

#include <utility>

#include "frontend/ScriptFrontEnd.h"
#include "interpreter/StandardScript.h"
#include "interpreter/WeakLiteralCompiler.h"
#include "messages/FileReports.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/LowerCase.h"
#include "text/Paths.h"
#include "text/RandomSource.h"

namespace kvl {

namespace {

constexpr std::string_view kMainScriptExtension = ".kvl";
constexpr std::string_view kUsedUpExtension = ".delete";
constexpr std::size_t kRuleWidth = 77;

// Directories below are composed with a separator of their own, so that the last one is left out here, but for the root.
void SetMainScriptDirectory(std::string_view directory) {
    Process().mainScriptDrive = PathPart(directory, PathMode::Drive);
    if (directory.size() > 1 && directory.ends_with('/')) directory.remove_suffix(1);
    Process().mainScriptDirectory = directory;
}

bool ReportPathFault(std::string_view path, const FileState& state) {
    if (state.accessDenied) return ReportFileError(ERR_EXEC_SCRIPT_FILE_15, path, MessageContext());
    if (state.invalidName) return ReportFileError(ERR_EXEC_SCRIPT_FILE_4, path, MessageContext());
    if (state.exists) return ReportFileError(ERR_EXEC_SCRIPT_FILE_14, path, MessageContext());
    MessageContext context;
    context.Set(ERRSTR_FILE_NAME, PathPart(path, PathMode::NameAndExtension));
    context.Set(ERRSTR_PATH, PathPart(path, PathMode::Directory));
    return Report(ERR_EXEC_SCRIPT_FILE_1, context);
}

// A file that opens but cannot be read is left to the compiler, which says so.
bool FindOutIfEmpty(std::string_view path, bool& isEmpty) {
    std::unique_ptr<FileReader> reader;
    if (Files().OpenReader(path, reader) != 0) return ReportOpenFailure(path, MessageContext());
    char byte = 0;
    std::size_t count = 0;
    isEmpty = reader->Read(&byte, 1, count) == 0 && count == 0;
    return true;
}

std::unique_ptr<CPatternSchema> MakeSchema(int entityKind, CommandList&& list) {
    auto schema = std::make_unique<CPatternSchema>(std::make_shared<CompiledScript>(std::move(list)));
    schema->entityKind = entityKind;
    schema->utf8Source = schema->script->list.utf8Source;
    return schema;
}

// The last step of compiling, when the schema can say where it comes from.
std::unique_ptr<CPatternSchema> FinishSchema(std::unique_ptr<CPatternSchema> schema, ParseInfo& info) {
    if (!CompileWeakLiterals(schema->script->list, *schema)) return nullptr;
    info.kindName = GetEntityKindName(schema->entityKind);
    return schema;
}

void AskOverwrite(CPatternSchema& schema) {
    if (!Process().overwritePromptEnabled) return;
    if (TheBuiltIns().AskOverwriteRun(schema) == kOverwriteAbort) TheSurroundings().EndProcess(1);
}

bool Interpret(CPatternSchema& schema) {
    OutputText output;  // what a main script writes goes nowhere
    if (!CreateStaticMacros(schema)) return false;
    Print(std::string(kRuleWidth, '_') + "\n\nInterpreting " + std::string(GetEntityKindName(schema.entityKind)) + " " +
          schema.GetDisplayPath() + "\n\n");
    AskOverwrite(schema);
    Process().errorCountAtFirstCommand = Process().errorCount;
    RunContext run;
    return schema.Execute(0, static_cast<int>(schema.Commands().size()) - 1, output, run);
}

// Names and types are looked up through the root from anywhere, to the end of the run.
class RootInPlace {
public:
    explicit RootInPlace(CPatternSchema& root) { Process().root = &root; }
    RootInPlace(const RootInPlace&) = delete;
    RootInPlace& operator=(const RootInPlace&) = delete;
    ~RootInPlace() { Process().root = nullptr; }
};

bool CompileAndRun(std::string_view path) {
    ParseInfo info;
    const std::unique_ptr<CPatternSchema> schema = CompileFile(kEntityMainScript, path, info);
    if (!schema) return false;
    schema->entityKind = kEntityMainScript;
    Process().generationMark = "${" + MakeGuidText() + "}$";
    if (!CheckBlocks(*schema)) return false;
    ReportParse(info);
    const RootInPlace root(*schema);
    const bool succeeded = Interpret(*schema);
    schema->ClearAll();
    return succeeded;
}

bool RunStandardScript(std::string_view emptyScript) {
    StandardScript standard;
    if (!standard.Prepare(emptyScript)) return false;
    SetMainScriptDirectory(PathPart(standard.Path(), PathMode::Directory));
    if (!CompileAndRun(standard.Path())) return false;
    // The request is used up; one that stays does no harm.
    Files().Rename(emptyScript, std::string(emptyScript) + std::string(kUsedUpExtension));
    return true;
}

bool RunMainScript(std::string_view path) {
    SetMainScriptDirectory(PathPart(path, PathMode::Directory));
    bool isEmpty = false;
    if (!FindOutIfEmpty(path, isEmpty)) return false;
    return isEmpty ? RunStandardScript(path) : CompileAndRun(path);
}

// No run ends in silence: where nobody has said why it stopped, the place is told.
void NoteStop() {
    const ProcessState& process = Process();
    WriteNote(process.stoppedLine == -1 ? std::string("The run stopped.")
                                        : "The run stopped at line " + std::to_string(process.stoppedLine) + " of " +
                                              process.stoppedPath + ".");
}

}  // namespace

bool CheckMainScriptPath(std::string_view path, std::string& absolutePath) {
    if (!LowerCase(path).ends_with(kMainScriptExtension)) {
        MessageContext context;
        context.Set(ERRSTR_ARGUMENT, path);
        return Report(ERR_EXEC_COMMAND_ARG_1, context);
    }
    absolutePath = NormalizePath(path);
    if (!MakeAbsolutePath(absolutePath, MessageContext())) {
        return ReportFatal("MakeAbsolutePath(" + absolutePath + ")", MessageContext());
    }
    FileState state;
    const bool exists = CheckFile(absolutePath, state);
    const bool isWriteOnly = state.writable && !state.readable;
    return (exists && !isWriteOnly) || ReportPathFault(absolutePath, state);
}

bool LoadAndRun(std::string_view path) {
    const int errorsBefore = Process().errorCount;
    const bool succeeded = RunMainScript(path);
    if (!succeeded && Process().errorCount == errorsBefore) NoteStop();
    return succeeded;
}

void ReportParse(const ParseInfo& info) {
    const bool isFile = !info.fileName.empty();
    if (!info.kindName.empty()) {
        PrintAndLog(info.kindName + (isFile ? " File Parsed Successfully. \n" : " Parsed Successfully. \n"));
    } else if (isFile) {
        PrintAndLog("\nParsing File " + info.fileName + "\n( " + info.displayPath + " )\n");
    } else {
        PrintAndLog("\nParsing Stream " + info.streamName + "\n");
    }
}

std::unique_ptr<CPatternSchema> CompileFile(int entityKind, std::string_view path, ParseInfo& info) {
    info = ParseInfo();
    info.fileName = PathPart(path, PathMode::NameAndExtension);
    info.displayPath = PathPart(path, PathMode::Display);
    ReportParse(info);
    CommandList list;
    if (!ParseScriptSourceFile(entityKind, path, list)) return nullptr;
    std::unique_ptr<CPatternSchema> schema = MakeSchema(entityKind, std::move(list));
    schema->SetSourceFile(path);
    schema->names->name = info.fileName;
    return FinishSchema(std::move(schema), info);
}

std::unique_ptr<CPatternSchema> CompileText(int entityKind, std::string_view name, std::string& text, ParseInfo& info,
                                            const MessageContext& context) {
    info = ParseInfo();
    info.streamName = name;
    ReportParse(info);
    if (text.empty()) {
        Report(TwinFor(ERR_DECL_SCRIPT_HEADER_1, entityKind), context);
        return nullptr;
    }
    CommandList list;
    if (!ParseScriptSourceStream(entityKind, name, text, list)) return nullptr;
    std::unique_ptr<CPatternSchema> schema = MakeSchema(entityKind, std::move(list));
    schema->SetSourceStream(name);
    schema->names->name = name;
    return FinishSchema(std::move(schema), info);
}

std::unique_ptr<CommandList> CompileFragment(const CPatternSchema& schema, std::string_view text) {
    auto list = std::make_unique<CommandList>();
    std::string source(text);
    const bool accepted =
        ParseScriptSourceStream(schema.entityKind, schema.GetDisplayPath(), source, *list, schema.currentLine);
    if (!accepted) return nullptr;
    return CompileWeakLiterals(*list, schema, schema.currentLine) ? std::move(list) : nullptr;
}

bool CreateStaticMacros(CPatternSchema& schema) {
    for (const CommandRow& row : CommandTable()) {
        if (row.staticMacro.empty()) continue;
        CVariable* variable = schema.EnterVariable(row.staticMacro, GetTypeName(kTypeStatic), kTypeStatic);
        auto* macro = dynamic_cast<CVariableKVLStaticMacro*>(variable);
        if (!macro) return false;
        macro->macroCommand = row.id;
    }
    return true;
}

}  // namespace kvl
