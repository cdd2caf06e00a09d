// What a path is, and the message for what went wrong with it.
#include "messages/FileReports.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/Paths.h"

namespace kvl {
namespace {

// What a file message shows as its file name.
enum class ShownName { AsGiven, Display };
struct FileMessageRow {
    MessageId id;
    ShownName shown;
};
constexpr FileMessageRow kFileMessages[] = {
    {ERR_EXEC_SCRIPT_FILE_1, ShownName::Display},  {ERR_EXEC_SCRIPT_FILE_3, ShownName::Display},
    {ERR_EXEC_SCRIPT_FILE_4, ShownName::Display},  {ERR_EXEC_SCRIPT_FILE_8, ShownName::Display},
    {ERR_EXEC_SCRIPT_FILE_10, ShownName::AsGiven}, {ERR_EXEC_SCRIPT_FILE_11, ShownName::Display},
    {ERR_EXEC_SCRIPT_FILE_12, ShownName::Display}, {ERR_EXEC_SCRIPT_FILE_14, ShownName::Display},
    {ERR_EXEC_SCRIPT_FILE_15, ShownName::AsGiven},
};

std::string ShownDirectory(std::string_view path) {
    const std::string directory = PathPart(PathPart(path, PathMode::Directory), PathMode::Display);
    return directory.empty() ? "." : NormalizePath(directory);
}

bool IsAccessible(std::string_view path, Access access) {
    return Files().CheckAccess(path, access) == 0;
}

}  // namespace

std::string ErrorText(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

bool HasInvalidFileCharacter(std::string_view path, char& character) {
    // Separators end a piece and cannot stand in one, so that the first of the other characters decides.
    const std::string_view behindDrive = path.substr(SplitPathText(path).drive.size());
    const std::size_t place = behindDrive.find_first_of(":*?\"<>");
    if (place == std::string_view::npos) return false;
    character = behindDrive[place];
    return true;
}

bool CheckFile(std::string_view path, FileState& state) {
    state = FileState();
    const int error = Files().CheckAccess(path, Access::Exists);
    if (error == 0) {
        state.exists = true;
        state.writable = IsAccessible(path, Access::Write);
        state.readable = IsAccessible(path, Access::Read);
        state.readWritable = IsAccessible(path, Access::ReadWrite);
        return true;
    }
    if (HasInvalidFileCharacter(path, state.invalidCharacter)) {
        state.invalidName = true;
        return false;
    }
    state.accessDenied = error == EACCES;
    state.invalidName = error == EINVAL;
    if (error != ENOENT && !state.accessDenied && !state.invalidName) {
        Print("Fatal Error: " + ErrorText(error));
        TheSurroundings().EndProcess(1);
    }
    return false;
}

bool ReportFileError(int id, std::string_view path, const MessageContext& context) {
    const auto* row = std::find_if(std::begin(kFileMessages), std::end(kFileMessages),
                                   [id](const FileMessageRow& candidate) { return candidate.id == id; });
    if (row == std::end(kFileMessages)) return false;
    const std::string shown = row->shown == ShownName::Display ? PathPart(path, PathMode::Display) : std::string(path);
    MessageContext filled = context;
    filled.Set(ERRSTR_FILE_NAME, NormalizePath(shown));
    filled.Set(ERRSTR_PATH, ShownDirectory(path));
    if (char character = 0; HasInvalidFileCharacter(path, character)) {
        filled.Set(ERRSTR_CHARACTER, std::string_view(&character, 1));
    }
    return Report(id, filled);
}

bool ReportOpenFailure(std::string_view path, const MessageContext& context) {
    FileState state;
    const bool isWriteOnly = CheckFile(path, state) && !state.readable && state.writable;
    return ReportFileError(isWriteOnly ? ERR_EXEC_SCRIPT_FILE_14 : ERR_EXEC_SCRIPT_FILE_1, path, context);
}

bool ReportCreateFailure(std::string_view path, int errorNumber, const MessageContext& context) {
    FileState state;
    if (CheckFile(path, state) && state.readable && !state.writable) {
        return ReportFileError(ERR_EXEC_SCRIPT_FILE_3, path, context);
    }
    if (errorNumber == EACCES) return ReportFileError(ERR_EXEC_SCRIPT_FILE_10, path, context);
    return ReportFatal(std::string(path) + ", " + ErrorText(errorNumber), context);
}

}  // namespace kvl
