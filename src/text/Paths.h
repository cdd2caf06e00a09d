#pragma once
// Paths as texts: nothing here touches the file system, apart from the working directory behind MakeAbsolute.

#include <string>
#include <string_view>

namespace kvl {

constexpr std::size_t kLongestPath = 260;

struct SplitPath {
    std::string_view drive;      // a letter and ":" at the front, else empty
    std::string_view directory;  // up to and including the last separator
    std::string_view name;       // without extension
    std::string_view extension;  // from the last point of the file part, with the point
};
SplitPath SplitPathText(std::string_view path);

enum class PathMode {
    Directory = 0,         // drive and directory, with "/" as separator
    Name = 1,              // file name without extension
    Extension = 2,         // with its point
    NameAndExtension = 3,  //
    Display = 4,           // without the drive when it is the drive of the main script; "/" as separator
    Drive = 5,
};
// An empty path gives "".
std::string PathPart(std::string_view path, PathMode mode);

// "\" becomes "/", runs of "/" become one.
std::string NormalizePath(std::string_view path);

// Begins with a separator or a drive.
bool IsAbsolutePath(std::string_view path);

// Resolves `path` against the working directory, "." and ".." in the text; separators become "/". The empty path is the
// working directory. A trailing separator stays. False when the result is longer than kLongestPath.
[[nodiscard]] bool ResolveAbsolutePath(std::string& path);

}  // namespace kvl
