#pragma once
// The two ways to write a file. For the files of this folder only. Paths are in the system's form; the answers are
// plain error numbers of the system.

#include <memory>
#include <string>

#include "platform/FileSystem.h"

namespace kvl {

// A log: emptied at once, each Write goes to the system at once.
int OpenStreamWriter(const std::string& path, std::unique_ptr<FileWriter>& writer);

// A generated file: whole or not at all, as far as its place allows it. A link is followed to its target. A regular
// file with one link, whose owner and permissions can be kept, is replaced by a new one that takes its name. Everything
// else that exists is written in place: the content is collected, up to a limit, and goes out at Commit.
int OpenReplacingWriter(const std::string& path, std::unique_ptr<FileWriter>& writer);

}  // namespace kvl
