#pragma once
// File work that ends in messages: classifying a path, reading, copying, making directories. `context` is the place of
// the command at work, as it appears in the messages.

#include <string>
#include <string_view>

#include "messages/CMessage.h"

namespace kvl {

struct FileState {
    bool exists = false;
    bool readable = false;
    bool writable = false;
    bool readWritable = false;
    bool accessDenied = false;
    bool invalidName = false;
    char invalidCharacter = 0;
};

// True if the path exists. An error number that cannot be classified ends the process.
bool CheckFile(std::string_view path, FileState& state);

// True if a piece of the path holds one of \ / : * ? " < > (the drive is not looked at); `character` is it.
bool HasInvalidFileCharacter(std::string_view path, char& character);

// Raises `id` for the file. Takes the file messages 128, 130, 131, 135, 137, 138, 139, 141 and 142; false always.
bool ReportFileError(int id, std::string_view path, const MessageContext& context);
// After a file failed to open for reading; false always.
bool ReportOpenFailure(std::string_view path, const MessageContext& context);
// After a file failed to open for writing with the given error number; false always.
bool ReportCreateFailure(std::string_view path, int errorNumber, const MessageContext& context);

// Reads a file whole. `lineCount` counts the line feeds.
[[nodiscard]] bool ReadSourceFile(std::string_view path, std::string& text, int& lineCount,
                                  const MessageContext& context);
// Line `lineNumber`, from 1, without its line feed. True also behind the end of the file; `text` then stays as it was.
[[nodiscard]] bool ReadSourceLine(std::string_view path, int lineNumber, std::string& text,
                                  const MessageContext& context);

// Copies bytes in blocks; `target` is replaced whole or stays. Reports its own failures. A file copied onto itself
// stays.
[[nodiscard]] bool CopyFileBytes(std::string_view source, std::string_view target, const MessageContext& context);

// Makes a whole chain of directories. Reports what it finds wrong, except a missing drive.
[[nodiscard]] bool MakeDirectory(std::string_view path, const MessageContext& context);
// Makes `path` absolute and makes that directory; `path` takes the absolute form.
[[nodiscard]] bool EnsureDirectory(std::string& path, const MessageContext& context);

// ResolveAbsolutePath with its message ("_fullpath").
[[nodiscard]] bool MakeAbsolutePath(std::string& path, const MessageContext& context);
// The working directory, absolute and lower-cased.
[[nodiscard]] bool GetCurrentPath(std::string& path, const MessageContext& context);

// Keeps the predecessor of a log file beside it, with "_old" in its name.
void KeepOldFile(std::string_view path);

// The system's text for an error number.
std::string ErrorText(int errorNumber);

}  // namespace kvl
