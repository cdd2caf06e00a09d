// Making directories, and paths absolute.
#include <algorithm>

#include "messages/FileReports.h"
#include "platform/Platform.h"
#include "text/LowerCase.h"
#include "text/Paths.h"

namespace kvl {
namespace {

bool ReportInvalidDirectory(std::string_view path, char character, const MessageContext& context) {
    MessageContext filled = context;
    filled.Set(ERRSTR_PATH, PathPart(path, PathMode::Display));
    if (character != 0) filled.Set(ERRSTR_CHARACTER, std::string_view(&character, 1));
    return Report(ERR_EXEC_SCRIPT_FILE_7, filled);
}

// A directory that is there already is as good as a new one; a file of that name is not.
bool MakeOneDirectory(std::string_view path, const MessageContext& context) {
    const int error = Files().MakeDirectory(path);
    if (error == 0 || Files().IsDirectory(path)) return true;
    return ReportFatal("MakeDirectory(). " + ErrorText(error), context);
}

// The directory as a message shows it: without the drive where it is the drive at work.
std::string ShownDirectory(std::string_view path, const MessageContext& context) {
    std::string current;
    const bool isOnSameDrive = GetCurrentPath(current, context) && !path.empty() && path.front() == current.front();
    return NormalizePath(isOnSameDrive ? PathPart(path, PathMode::Display) : std::string(path));
}

}  // namespace

bool MakeDirectory(std::string_view path, const MessageContext& context) {
    FileState state;
    if (!CheckFile(path, state) && state.invalidName)
        return ReportInvalidDirectory(path, state.invalidCharacter, context);
    const std::string_view drive = SplitPathText(path).drive;
    if (!drive.empty() && !Files().HasDrive(static_cast<char>(LowerCase(drive.front()) - 'a' + 'A'))) return false;

    // Each step is the path up to its next separator; separators at the front or in a row end no step of their own.
    for (std::size_t end = drive.size(); end < path.size();) {
        const std::size_t begin = path.find_first_not_of("/\\", end);
        if (begin == std::string_view::npos) break;
        end = std::min(path.find_first_of("/\\", begin), path.size());
        if (!MakeOneDirectory(path.substr(0, end), context)) return false;
    }
    return true;
}

bool EnsureDirectory(std::string& path, const MessageContext& context) {
    std::string absolute = path;
    if (!MakeAbsolutePath(absolute, context)) return ReportFatal("MakeAbsolutePath(" + path + ")", context);
    if (!MakeDirectory(absolute, context)) {
        MessageContext filled = context;
        filled.Set(ERRSTR_PATH, ShownDirectory(path, context));
        return Report(ERR_EXEC_SCRIPT_FILE_6, filled);
    }
    path = std::move(absolute);
    return true;
}

bool MakeAbsolutePath(std::string& path, const MessageContext& context) {
    return ResolveAbsolutePath(path) || ReportFatal("_fullpath", context);
}

bool GetCurrentPath(std::string& path, const MessageContext& context) {
    std::string current = ".";
    if (!MakeAbsolutePath(current, context)) return false;
    path = LowerCase(std::string_view(current));
    return true;
}

}  // namespace kvl
