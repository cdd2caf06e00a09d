#include "frontend/ScriptFrontEnd.h"

#include <utility>

#include "frontend/PoutScanX.h"
#include "frontend/ScriptCompiler.h"
#include "messages/FileReports.h"
#include "messages/Log.h"
#include "text/Paths.h"

namespace kvl {

namespace {

// A position that leaves the place out of a message: a file that cannot be read has no line to show.
constexpr int kNoPlace = -2;

// Runs scanner and parser over the source that `setSource` puts into the scanner.
template <class SetSource>
bool Compile(ScannerReport report, CommandList& list, SetSource setSource) {
    const int entityKind = report.entityKind;
    PoutScanX scanner(std::move(report), list);
    setSource(scanner.Source());
    ScriptCompiler compiler(scanner);
    const bool accepted = compiler.Parse();
    list.entityKind = entityKind;
    return accepted;
}

// Do only placeholders, macro calls and literal text stand in the fragment?
bool HoldsPlaceholdersOnly(const CommandList& list) {
    for (const PatternCommand& command : list.commands) {
        const bool allowed = command.kind == cmd_kind_stream || command.kind == cmd_kind_placeholder_normal ||
                             command.kind == cmd_kind_placeholder_identifier ||
                             (command.kind == cmd_kind_macro && command.subkind == cmd_call_macro);
        if (!allowed) return false;
    }
    return true;
}

}  // namespace

bool ParseScriptSourceFile(int entityKind, std::string_view path, CommandList& list) {
    MessageContext context;
    context.entityName = PathPart(path, PathMode::Display);
    context.entityKind = entityKind;
    context.position = kNoPlace;
    std::string text;
    int lineCount = 0;
    if (!ReadSourceFile(path, text, lineCount, context)) return false;
    if (text.empty()) return ReportFileError(ERR_EXEC_SCRIPT_FILE_8, path, context);
    return Compile({entityKind, std::string(path), ""}, list,
                   [&](CScan& scan) { scan.SetFileSource(path, std::move(text)); });
}

bool ParseScriptSourceStream(int entityKind, std::string_view streamName, std::string& text, CommandList& list,
                             int firstLine) {
    if (text.empty()) {
        MessageContext context;
        context.entityName = streamName;
        context.entityKind = entityKind;
        context.lineNumber = firstLine;
        return Report(TwinFor(ERR_DECL_SCRIPT_HEADER_1, entityKind), context);
    }
    return Compile({entityKind, "", std::string(streamName)}, list,
                   [&](CScan& scan) { scan.SetStreamSource(&text, firstLine); });
}

bool ParseScriptConstant(int entityKind, std::string_view text, CommandList& list) {
    if (text.empty()) return true;
    WriteLog("Parsing Constant String: " + std::string(text));
    if (!Compile({entityKind, "", ""}, list, [text](CScan& scan) { scan.SetConstantSource(text); })) {
        WriteLog("\n");  // the console has its line end from the scanner
        return false;
    }
    WriteLog(" Success. ");
    if (HoldsPlaceholdersOnly(list)) return true;
    PrintAndLog("\n");
    return false;
}

}  // namespace kvl
