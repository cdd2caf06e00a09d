#pragma once
// From the texts that the program calls paths to what the system takes, and from the system's errors to ours. For the
// files of this folder only.

#include <string>
#include <string_view>

namespace kvl {

// The path in the system's form: "\" becomes "/". Answers 0, or the error of a path that can name nothing: ENOENT for
// the empty one and one with a drive letter, EINVAL for one with a zero byte.
int ToSystemPath(std::string_view path, std::string& systemPath);

// "No such directory" on the way and a loop of links count as ENOENT, a name that is too long as EINVAL.
int FoldError(int error);

}  // namespace kvl
