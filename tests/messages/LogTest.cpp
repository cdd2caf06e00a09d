#include "messages/Log.h"

#include "messages/CMessage.h"
#include "messages/OutsideTest.h"

namespace kvl {
namespace {

constexpr const char* kLogPath = "/home/LogFiles/x.kvl.log.txt";

class Log : public OutsideTest {
protected:
    Log() {
        outside.memory.PutDirectory("/home/LogFiles");
        outside.surroundings.now = 1709967909;  // 2024-03-09 07:05:09
    }

    std::string LogText() { return outside.memory.Get(kLogPath); }
    // What the log holds behind its first lines.
    std::string LogBody() { return LogText().substr(head_.size()); }

    const std::string head_ = "LogFile /home/LogFiles/x.kvl.log.txt. \nCreated: Sat Mar  9 07:05:09 2024\n";
};

using Messages = Log;

TEST_F(Messages, AnErrorIsShownLoggedAndCounted) {
    ASSERT_TRUE(OpenLog(kLogPath));
    EXPECT_FALSE(Report(ERR_EXEC_ENVIRON_FATAL_1, "reason"));
    const std::string text = "\nERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: reason\n\n";
    EXPECT_EQ(outside.console.TextIn(12), text);
    EXPECT_EQ(LogBody(), text);
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_EQ(Process().warningCount, 0);
    EXPECT_TRUE(HasMessages());
}

TEST_F(Messages, AWarningIsCountedForItself) {
    MessageContext context;
    context.Set(ERRSTR_VAR_TYPE, "T");
    CMessage(WARN_DECL_SCRIPT_ELSE_4, context).Report();
    EXPECT_TRUE(outside.console.TextIn(14).starts_with("\nWARNING: WARN_DECL_SCRIPT_ELSE_4\nType ::T declared"));
    EXPECT_EQ(outside.console.TextIn(12), "");
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_EQ(Process().warningCount, 1);
    EXPECT_TRUE(HasMessages());
}

TEST_F(Log, OpensWithItsFirstLines) {
    EXPECT_FALSE(LogIsOpen());
    ASSERT_TRUE(OpenLog(kLogPath));
    EXPECT_TRUE(LogIsOpen());
    EXPECT_EQ(LogText(), head_);
    EXPECT_EQ(outside.console.output, "LogFile /home/LogFiles/x.kvl.log.txt Created Successful. \n");
    EXPECT_EQ(Process().logWriteCount, 0);
}

TEST_F(Log, GoesOnWithoutADate) {
    outside.surroundings.hasLocalTime = false;
    ASSERT_TRUE(OpenLog(kLogPath));
    EXPECT_TRUE(outside.console.output.ends_with("Invalid Arguments for _ctime_s. Error Code: 22\n"));
    EXPECT_TRUE(LogText().ends_with("\nCreated: \n"));
}

TEST_F(Log, ThatCannotBeOpenedIsReported) {
    outside.files.FailAt(FileOperation::OpenWriter, 1, EACCES);
    EXPECT_FALSE(OpenLog(kLogPath));
    EXPECT_FALSE(LogIsOpen());
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_NE(outside.console.output.find("ERR_EXEC_SCRIPT_FILE_1\nFile /home/LogFiles/x.kvl.log.txt can not be found"),
              std::string::npos);
    WriteLog("lost");
    CloseLog();
}

TEST_F(Log, ClosesWithARule) {
    ASSERT_TRUE(OpenLog(kLogPath));
    WriteLog("text\n");
    CloseLog();
    EXPECT_FALSE(LogIsOpen());
    EXPECT_EQ(LogBody(), "text\n" + std::string(77, '/') + "\r\n");
    WriteLog("behind the end");
    CloseLog();
    EXPECT_EQ(LogBody(), "text\n" + std::string(77, '/') + "\r\n");
}

TEST_F(Log, ClosesItselfAboveTheLimit) {
    ASSERT_TRUE(OpenLog(kLogPath));
    const std::size_t consoleSize = outside.console.output.size();
    for (int i = 0; i < 100000; ++i)
        WriteLog("x");
    EXPECT_TRUE(LogIsOpen());
    WriteLog("x");
    EXPECT_FALSE(LogIsOpen());
    WriteLog("lost");
    CloseLog();
    EXPECT_EQ(LogBody(), std::string(100001, 'x') + "\nLogFile Exceeds 100000 lines. \n\nLogFile Is Closing. \n");
    EXPECT_EQ(outside.console.output.size(), consoleSize);
}

TEST_F(Log, TheClosingRuleMayBeTheWriteThatExceeds) {
    ASSERT_TRUE(OpenLog(kLogPath));
    for (int i = 0; i < 100000; ++i)
        WriteLog("");
    CloseLog();
    EXPECT_EQ(LogBody(), std::string(77, '/') + "\nLogFile Exceeds 100000 lines. \n\nLogFile Is Closing. \n");
}

TEST_F(Log, GetsNotesAndProgressLikeTheConsole) {
    ASSERT_TRUE(OpenLog(kLogPath));
    const std::size_t consoleSize = outside.console.output.size();
    WriteNote("A = M()");
    PrintAndLog("File: x\n");
    Print("for the console\n");
    EXPECT_EQ(LogBody(), "\nA = M()\nFile: x\n");
    EXPECT_EQ(outside.console.output.substr(consoleSize), "\nA = M()\nFile: x\nfor the console\n");
    EXPECT_EQ(outside.console.TextIn(10), "\nA = M()\n");
}

TEST_F(Log, TerminalsShowSpecialLettersInUtf8) {
    ASSERT_TRUE(OpenLog(kLogPath));
    for (const bool isTerminal : {false, true}) {
        outside.console.isTerminal = isTerminal;
        outside.console.output.clear();
        PrintAndLog("\xE4 \xC3\xA4 \xFF\n");
        EXPECT_EQ(outside.console.output, isTerminal ? "\xC3\xA4 \xC3\xA4 \xFF\n" : "\xE4 \xC3\xA4 \xFF\n");
    }
    EXPECT_EQ(LogBody(), "\xE4 \xC3\xA4 \xFF\n\xE4 \xC3\xA4 \xFF\n");
}

TEST_F(Log, SummaryIsOnePieceOfThreeLines) {
    Process().warningCount = 2;
    Process().errorCount = 13;
    WriteSummary();
    const std::string rule(78, '=');
    const std::string counters = "Warnings: 2 Errors: 13";
    ASSERT_EQ(outside.console.pieces.size(), 1u);
    EXPECT_EQ(outside.console.pieces[0].colour, 224);
    EXPECT_EQ(outside.console.output,
              rule + "\n" + counters + std::string(78 - counters.size(), ' ') + "\n" + rule + "\n");
}

class Dump : public OutsideTest {
protected:
    Dump() { Process().dumpsEnabled = true; }
};

TEST_F(Dump, SpellsOutEveryByte) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    outside.memory.Put("/home/all.txt", bytes);
    ASSERT_TRUE(WriteDump("/home/all.txt"));

    std::string expected;
    for (int i = 0; i < 256; ++i) {
        const std::string byte(1, static_cast<char>(i));
        const bool isShown =
            (i > 32 && i < 127) ||
            std::string("\xA7\xA9\xB0\xB5\xC4\xD6\xDC\xDF\xE4\xF6\xFC").find(byte) != std::string::npos;
        const std::map<int, std::string> names = {
            {9, "TAB"}, {10, "NEW LINE -------------------- LINE 1"}, {13, "CARRIAGE RETURN"}, {32, "BLANK"}};
        char code[16];
        std::snprintf(code, sizeof code, i < 128 ? "%2X" : "FFFFFF%2X", static_cast<unsigned>(i));
        expected += std::to_string(i) + " ";
        expected += names.count(i) > 0 ? names.at(i) : isShown ? byte : "OTHER WHITESPACE " + byte + " " + code;
        expected += "\n";
    }
    EXPECT_EQ(outside.memory.Get("/home/all.txt.dump"), expected);
}

TEST_F(Dump, CountsLinesAndReplacesAnOlderOne) {
    outside.memory.Put("/home/a.txt.dump", "a much longer dump than the new one, from an earlier run");
    outside.memory.Put("/home/a.txt", "\n\v\n");
    ASSERT_TRUE(WriteDump("/home/a.txt"));
    EXPECT_EQ(outside.memory.Get("/home/a.txt.dump"),
              "0 NEW LINE -------------------- LINE 1\n1 OTHER WHITESPACE \v  B\n"
              "2 NEW LINE -------------------- LINE 2\n");
}

TEST_F(Dump, IsNotWrittenUnlessSwitchedOn) {
    Process().dumpsEnabled = false;
    outside.memory.Put("/home/a.txt", "x");
    EXPECT_TRUE(WriteDump("/home/a.txt"));
    EXPECT_FALSE(outside.memory.Has("/home/a.txt.dump"));
}

TEST_F(Dump, FailuresAreReportedOnce) {
    constexpr std::pair<FileOperation, const char*> kRows[] = {
        {FileOperation::ReadWhole, "ERR_EXEC_SCRIPT_FILE_1\nFile /home/a.txt can not be found"},
        {FileOperation::OpenWriter, "ERR_EXEC_SCRIPT_FILE_1\nFile /home/a.txt.dump can not be found"},
        {FileOperation::Write, "ERR_EXEC_SCRIPT_FILE_12\nWriting file /home/a.txt.dump fails"},
        {FileOperation::Commit, "ERR_EXEC_SCRIPT_FILE_12\nWriting file /home/a.txt.dump fails"},
    };
    outside.memory.Put("/home/a.txt", "x");
    int errors = 0;
    for (const auto& [operation, message] : kRows) {
        outside.console.output.clear();
        outside.files.FailAt(operation, 1, EACCES);
        EXPECT_FALSE(WriteDump("/home/a.txt"));
        EXPECT_NE(outside.console.output.find(message), std::string::npos) << outside.console.output;
        EXPECT_EQ(Process().errorCount, ++errors);
        EXPECT_FALSE(outside.memory.Has("/home/a.txt.dump"));
    }
}

}  // namespace
}  // namespace kvl
