#pragma once
// The directories that only this user can enter and that go away with the process. For the files of this folder only.

#include <string>
#include <string_view>

namespace kvl {

// Makes one below the directory for temporary files.
int MakePrivateDirectory(std::string& path);
// Removes it with all below it; a directory that was not made here is left alone.
void RemovePrivateDirectory(std::string_view path);
void RemoveAllPrivateDirectories();

}  // namespace kvl
