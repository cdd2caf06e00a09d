// What a run says: coloured console text, and the log file as its transcript. Every log write is one call on the
// stream, which keeps nothing back, so that the log is whole whichever way the process ends.
#include "messages/Log.h"

#include <cerrno>
#include <ctime>

#include "messages/FileReports.h"
#include "platform/Platform.h"
#include "text/Numbers.h"
#include "text/Paths.h"
#include "text/ProcessState.h"
#include "text/Utf8.h"

namespace kvl {
namespace {

constexpr int kNoteColour = 10, kSummaryColour = 224;
constexpr std::size_t kSummaryWidth = 78, kClosingRuleWidth = 77;

void StopLog() {
    Process().logStream->Commit();  // a log that cannot be finished is no fault of the run
    Process().logStream.reset();
}

// Date and time as ctime writes them; empty when the clock's value cannot be converted.
std::string PresentTimeText() {
    std::tm parts{};
    if (!TheSurroundings().LocalTime(TheSurroundings().Now(), parts)) {
        Print("Invalid Arguments for _ctime_s. Error Code: " + IntegerText(EINVAL) + "\n");
        return {};
    }
    char text[64];
    return {text, std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &parts)};
}

}  // namespace

// What comes from a source holds the special letters as single bytes, which a terminal cannot show.
void PrintColoured(std::string_view text, int colour) {
    if (text.empty()) return;
    if (!TheConsole().IsTerminal()) return TheConsole().Write(text, colour);
    std::string shown(text);
    EncodeSpecialLetters(shown, 0);
    TheConsole().Write(shown, colour);
}

void Print(std::string_view text) {
    PrintColoured(text, kPlain);
}

bool LogIsOpen() {
    return Process().logStream != nullptr;
}

void WriteLog(std::string_view text) {
    if (!LogIsOpen()) return;
    ProcessState& process = Process();
    process.logStream->Write(text);
    if (++process.logWriteCount <= kLogWriteLimit) return;
    process.logStream->Write("\nLogFile Exceeds 100000 lines. \n\nLogFile Is Closing. \n");
    StopLog();
}

bool OpenLog(std::string_view path) {
    KeepOldFile(path);
    if (Files().OpenWriter(path, WriteMode::Stream, Process().logStream) != 0) {
        Process().logStream.reset();
        return ReportOpenFailure(path, MessageContext());
    }
    const std::string shown = PathPart(path, PathMode::Display);
    Print("LogFile " + shown + " Created Successful. \n");
    WriteLog("LogFile " + shown + ". \nCreated: " + PresentTimeText() + "\n");
    Process().logWriteCount = 0;
    return true;
}

void CloseLog() {
    WriteLog(std::string(kClosingRuleWidth, '/'));
    WriteLog("\r\n");
    if (LogIsOpen()) StopLog();  // the limit may have closed it in between
}

void WriteNote(std::string_view text) {
    const std::string note = "\n" + std::string(text) + "\n";
    PrintColoured(note, kNoteColour);
    WriteLog(note);
}

void PrintAndLog(std::string_view text) {
    Print(text);
    WriteLog(text);
}

void WriteSummary() {
    const std::string rule = std::string(kSummaryWidth, '=') + "\n";
    std::string counters =
        "Warnings: " + IntegerText(Process().warningCount) + " Errors: " + IntegerText(Process().errorCount);
    if (counters.size() < kSummaryWidth) counters.resize(kSummaryWidth, ' ');
    PrintColoured(rule + counters + "\n" + rule, kSummaryColour);
}

}  // namespace kvl
