#pragma once
// The log file of a run, console text that also goes there, and dump files.

#include <string>
#include <string_view>

namespace kvl {

constexpr int kLogWriteLimit = 100000;

// Text to the console in a colour (0: plain). The empty text does nothing.
void PrintColoured(std::string_view text, int colour);
void Print(std::string_view text);

bool LogIsOpen();
// Adds text to the log, if one is open; above kLogWriteLimit writes the log closes itself.
void WriteLog(std::string_view text);
// The old log is kept beside the new one. A failure is reported and leaves the run without a log.
[[nodiscard]] bool OpenLog(std::string_view path);
void CloseLog();

// An empty line and `text` in colour 10 on the console, and the same to the log.
void WriteNote(std::string_view text);
// Console (plain) and log alike.
void PrintAndLog(std::string_view text);

// Spells out the bytes of the file at `path` in a file with ".dump" appended, when dumps are switched on.
[[nodiscard]] bool WriteDump(std::string_view path);

// The summary box with the counters.
void WriteSummary();

}  // namespace kvl
