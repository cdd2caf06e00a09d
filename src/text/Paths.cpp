#include "text/Paths.h"

#include <algorithm>
#include <vector>

#include "platform/Platform.h"
#include "text/LowerCase.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr std::string_view kSeparators = "/\\";

constexpr bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

bool HasDriveLetter(std::string_view path) {
    return path.size() > 1 && path[1] == ':' && LowerCase(path[0]) >= 'a' && LowerCase(path[0]) <= 'z';
}

std::string WithSlashes(std::string_view path) {
    std::string result(path);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

std::string_view WithoutDrive(std::string_view path, const SplitPath& parts) {
    return path.substr(parts.drive.size());
}

// Adds the pieces of `path` to `pieces`; "." vanishes, ".." takes the piece before it, as long as there is one.
void ResolvePieces(std::string_view path, std::vector<std::string_view>& pieces) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(kSeparators), path.size());
        const std::string_view piece = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (piece == "..") {
            if (!pieces.empty()) pieces.pop_back();
        } else if (!piece.empty() && piece != ".") {
            pieces.push_back(piece);
        }
    }
}

}  // namespace

SplitPath SplitPathText(std::string_view path) {
    SplitPath parts;
    if (HasDriveLetter(path)) parts.drive = path.substr(0, 2);
    path.remove_prefix(parts.drive.size());
    const std::size_t separator = path.find_last_of(kSeparators);
    parts.directory = path.substr(0, separator + 1);  // none: npos + 1 is 0
    path.remove_prefix(parts.directory.size());
    const std::size_t point = std::min(path.rfind('.'), path.size());
    parts.name = path.substr(0, point);
    parts.extension = path.substr(point);
    return parts;
}

std::string PathPart(std::string_view path, PathMode mode) {
    const SplitPath parts = SplitPathText(path);
    switch (mode) {
        case PathMode::Directory:
            return WithSlashes(path.substr(0, parts.drive.size() + parts.directory.size()));
        case PathMode::Name:
            return std::string(parts.name);
        case PathMode::Extension:
            return std::string(parts.extension);
        case PathMode::NameAndExtension:
            return std::string(WithoutDrive(path, parts).substr(parts.directory.size()));
        case PathMode::Display:
            return WithSlashes(parts.drive == Process().mainScriptDrive ? WithoutDrive(path, parts) : path);
        case PathMode::Drive:
            return std::string(parts.drive);
    }
    return {};
}

std::string NormalizePath(std::string_view path) {
    std::string result = WithSlashes(path);
    const auto bothSlashes = [](char a, char b) { return a == '/' && b == '/'; };
    result.erase(std::unique(result.begin(), result.end(), bothSlashes), result.end());
    return result;
}

bool IsAbsolutePath(std::string_view path) {
    return HasDriveLetter(path) || (!path.empty() && IsSeparator(path.front()));
}

bool ResolveAbsolutePath(std::string& path) {
    const SplitPath parts = SplitPathText(path);
    const std::string_view rest = WithoutDrive(path, parts);
    std::string workingDirectory;
    if (!IsAbsolutePath(path)) {
        workingDirectory = Files().CurrentDirectory();
        if (workingDirectory.empty()) return false;
    }
    std::vector<std::string_view> pieces;
    ResolvePieces(workingDirectory, pieces);
    ResolvePieces(rest, pieces);

    std::string result(parts.drive);
    for (std::string_view piece : pieces) {
        result += '/';
        result += piece;
    }
    if (pieces.empty() || (!rest.empty() && IsSeparator(rest.back()))) result += '/';
    if (result.size() > kLongestPath) return false;
    path = std::move(result);
    return true;
}

}  // namespace kvl
