// Files read into streams, streams written to files, files copied.
#include <cerrno>
#include <memory>
#include <utility>

#include "builtins/FileOperations.h"
#include "messages/FileReports.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/Paths.h"

namespace kvl {

namespace {

enum class Permission { Write, Skip };

// Where nobody can tell whether a file is there, it is asked about like one that is.
bool IsNewFile(std::string_view path) {
    const int error = Files().CheckAccess(path, Access::Exists);
    return error == ENOENT || error == EINVAL;
}

// A file that exists may need an answer; the answer to abort ends the process.
Permission AskPermission(CPatternSchema& schema, std::string_view path) {
    const bool asks = Process().overwritePromptEnabled && schema.overwriteMode == kOverwriteAsk;
    if (!asks || IsNewFile(path)) return Permission::Write;
    const int answer = AskOverwriteFile(schema, path);
    if (answer == kOverwriteAbort) TheSurroundings().EndProcess(1);
    if (answer != kOverwriteSkip) return Permission::Write;
    schema.overwriteMode = kOverwriteAsk;  // the no was for this file
    return Permission::Skip;
}

bool EnsureDirectoryOf(std::string_view path, const MessageContext& context) {
    std::string directory = PathPart(path, PathMode::Directory);
    return EnsureDirectory(directory, context);
}

// The file appears whole, or the old one stays.
bool WriteWhole(std::string_view path, std::string_view text, const MessageContext& context) {
    std::unique_ptr<FileWriter> writer;
    if (const int error = Files().OpenWriter(path, WriteMode::Replace, writer); error != 0) {
        return ReportCreateFailure(path, error, context);
    }
    const bool written = writer->Write(text) == 0 && writer->Commit() == 0;
    return written || ReportFileError(ERR_EXEC_SCRIPT_FILE_12, path, context);
}

}  // namespace

// The storage is kept: behind a reference parameter it is the caller's.
bool ReadFileToStream(CPatternSchema& schema, std::string_view path, CVariable& variable) {
    std::string text;
    int lineCount = 0;
    if (!ReadSourceFile(path, text, lineCount, schema.GetMessageContext())) return false;
    static_cast<CVariableText&>(variable).SetText(std::move(text));
    return true;
}

bool WriteStreamToFile(CPatternSchema& schema, std::string_view path, std::string_view text) {
    const MessageContext context = schema.GetMessageContext();
    if (!EnsureDirectoryOf(path, context)) return false;
    if (AskPermission(schema, path) == Permission::Skip) return true;
    if (!WriteWhole(path, text, context)) return false;
    PrintAndLog("File: " + PathPart(path, PathMode::Display) + "\n\nCreated Successfully. \n\n");
    static_cast<void>(WriteDump(path));  // has reported; the file itself stands
    return true;
}

bool CopyFileTo(CPatternSchema& schema, std::string_view target, std::string_view source) {
    FileState state;
    if (!CheckFile(source, state)) return true;  // nothing to copy is no fault
    const MessageContext context = schema.GetMessageContext();
    if (state.writable && !state.readable) return ReportFileError(ERR_EXEC_SCRIPT_FILE_14, source, context);
    if (!EnsureDirectoryOf(target, context)) return false;
    static_cast<void>(CopyFileBytes(source, target, context));  // a copy that fails has its message, and stops nothing
    return true;
}

}  // namespace kvl
