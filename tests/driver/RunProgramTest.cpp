// Runs of the whole program over files in memory: what they show, log and answer.
#include "driver/RunProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "messages/BuildStamp.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr const char* kScript =
    "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN SCRIPT MAIN()$\n$END SCRIPT MAIN()$\n$END KVL VERSION=\"1.0.0\"$\n";
constexpr const char* kScriptWithoutEnd = "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN SCRIPT MAIN()$\n";
constexpr const char* kPause = "\n\n\t\t\t\tPlease press [Enter] to continue!\n";
constexpr const char* kLogPath = "/work/LogFiles/x.kvl.log.txt";

std::string SummaryBox(int warnings, int errors) {
    const std::string rule = std::string(78, '=') + "\n";
    std::string counters = "Warnings: " + std::to_string(warnings) + " Errors: " + std::to_string(errors);
    counters.resize(78, ' ');
    return rule + counters + "\n" + rule;
}

class Program : public testing::Test {
protected:
    Program() { outside.memory.Put("/work/x.kvl", kScript); }
    ~Program() override { ResetProcessState(); }

    bool Run(std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "kvlRun");
        return RunProgram(static_cast<int>(arguments.size()), arguments.data());
    }
    const std::string& Shown() const { return outside.console.output; }
    bool Shows(std::string_view text) const { return Shown().find(text) != std::string::npos; }
    std::string LogText() const { return outside.memory.Get(kLogPath); }

    static std::string Banner() {
        const BuildFacts build = ReadBuildStamp(BuildStamp());
        return "\nkvlRun - structured text in, generated text out\n\nkvlRun - Version 14.0.0 Build(" + build.number +
               ") on " + build.time + "\n       - Executable /program/kvlRun\n";
    }

    ScopedPlatform outside;
};

TEST_F(Program, WithoutArgumentsShowsItsUsage) {
    const std::string usage =
        "\nPlease run kvlRun.exe by double click on a KVL main script file *.kvl.\n"
        "kvlPrep.exe is used to create and edit KVL main script files *.kvl as part of kvlPrep projects.\n";
    EXPECT_TRUE(Run({}));
    EXPECT_EQ(Shown(), Banner() + usage + kPause);
    outside.console.output.clear();
    EXPECT_TRUE(Run({""}));
    EXPECT_EQ(Shown(), Banner() + usage + kPause);
    EXPECT_EQ(outside.console.outputAtInput, Shown());
}

TEST_F(Program, CleanRunEndsWithItsSummaryAndNoPause) {
    EXPECT_TRUE(Run({"x.kvl", "-overwrite"}));
    EXPECT_TRUE(Shown().starts_with(Banner() + "       - Main Script: /work/x.kvl\n\n")) << Shown();
    EXPECT_TRUE(Shown().ends_with(SummaryBox(0, 0))) << Shown();
    EXPECT_EQ(outside.console.TextIn(224), SummaryBox(0, 0));
    EXPECT_FALSE(Shows("elapsed time"));
    EXPECT_FALSE(outside.memory.Has("/work/LogFiles"));
    EXPECT_TRUE(Process().runSucceeded);
}

TEST_F(Program, PauseTakesOneByte) {
    outside.console.input = "\nrest";
    EXPECT_FALSE(Run({"none.kvl"}));
    EXPECT_EQ(outside.console.input, "rest");
    EXPECT_EQ(outside.console.outputAtInput, Shown());
}

struct ModeRow {
    const char* mode;
    bool isMode;
};

TEST_F(Program, ModeIsComparedInLowerCase) {
    constexpr ModeRow kRows[] = {{"-overwrite", true},  {"-OVERWRITE", true},   {"-OverWrite", true},
                                 {"overwrite", false},  {"-overwrite ", false}, {"-h", false},
                                 {"-OVERWRITES", false}};
    for (const ModeRow& row : kRows) {
        EXPECT_EQ(Run({"x.kvl", row.mode, "more", "words"}), row.isMode) << row.mode;
        EXPECT_EQ(Process().overwritePromptEnabled, !row.isMode) << row.mode;
    }
}

TEST_F(Program, BadModeIsShownInLowerCaseAndReadsNoOption) {
    outside.surroundings.environment["kvlrun_merge"] = "wrong";
    EXPECT_FALSE(Run({"x.kvl", "-OwerWrite"}));
    EXPECT_EQ(Shown(), Banner() +
                           "\nERROR: ERR_EXEC_COMMAND_ARG_2\n\"-owerwrite\" is not a valid kvlRun.exe mode.\n\n\n^\n"
                           "At line -1 of Unknown \n\n" +
                           SummaryBox(0, 1) + kPause);
    EXPECT_FALSE(Process().runSucceeded);
}

struct BadPathRow {
    std::vector<const char*> arguments;
    const char* message;
};

TEST_F(Program, BadPathsFail) {
    const BadPathRow kRows[] = {
        {{"-h"}, "ERR_EXEC_COMMAND_ARG_1\nFirst command line argument \"-h\""},
        {{"", "-overwrite"}, "ERR_EXEC_COMMAND_ARG_1\nFirst command line argument \"\""},
        {{"none.kvl"}, "ERR_EXEC_SCRIPT_FILE_1\nFile none.kvl can not be found within search path /work/"},
    };
    for (const BadPathRow& row : kRows) {
        outside.console.output.clear();
        EXPECT_FALSE(Run(row.arguments));
        EXPECT_TRUE(Shows(row.message)) << Shown();
        EXPECT_FALSE(Shows("Main Script:"));
        EXPECT_TRUE(Shown().ends_with(SummaryBox(0, 1) + kPause)) << Shown();
    }
}

TEST_F(Program, WrongOptionsAreReportedAndStopNothing) {
    outside.surroundings.environment = {{"kvlrun_logfile", "maybe"}, {"kvlrun_ptype", "VC6"}};
    EXPECT_TRUE(Run({"x.kvl", "-overwrite"}));
    EXPECT_TRUE(Shows("( kvlrun_ptype = VC6 )"));
    EXPECT_TRUE(Shows("       - Main Script: /work/x.kvl\n"));
    EXPECT_TRUE(Shown().ends_with(SummaryBox(0, 2) + kPause)) << Shown();
    // A wrong word opens no log.
    EXPECT_FALSE(outside.memory.Has("/work/LogFiles"));
    EXPECT_FALSE(Process().dumpsEnabled);
}

TEST_F(Program, FailedScriptFailsTheRun) {
    outside.memory.Put("/work/x.kvl", kScriptWithoutEnd);
    EXPECT_FALSE(Run({"x.kvl", "-overwrite"}));
    EXPECT_TRUE(Shown().ends_with(kPause));
    EXPECT_GE(Process().errorCount, 1);
}

TEST_F(Program, LogHoldsTheRun) {
    outside.surroundings.environment["kvlrun_logfile"] = "Yes";
    EXPECT_TRUE(Run({"x.kvl", "-overwrite"}));
    EXPECT_TRUE(Process().dumpsEnabled);
    EXPECT_TRUE(LogText().starts_with("LogFile " + std::string(kLogPath) + ". \nCreated: Thu Jan  1 00:00:00 1970\n" +
                                      Banner() + "       - Main Script: /work/x.kvl\n\n"))
        << LogText();
    EXPECT_TRUE(LogText().ends_with("\n" + std::string(38, '_') + "\telapsed time: 0 seconds.\n\n\n" +
                                    std::string(77, '/') + "\r\n"))
        << LogText();
    EXPECT_TRUE(Shows("LogFile " + std::string(kLogPath) + " Created Successful. \n"));

    const std::string first = LogText();
    EXPECT_TRUE(Run({"x.kvl", "-overwrite"}));
    EXPECT_EQ(outside.memory.Get("/work/LogFiles/x.kvl.log_old.txt"), first);
}

TEST_F(Program, RunsWithoutALogThatCannotBeMade) {
    outside.surroundings.environment["kvlrun_logfile"] = "yes";
    outside.memory.Put("/work/LogFiles", "a file in the way");
    EXPECT_TRUE(Run({"x.kvl", "-overwrite"}));
    EXPECT_TRUE(Shows("MakeDirectory(). "));
    EXPECT_TRUE(Process().dumpsEnabled);
    EXPECT_TRUE(Shown().ends_with(SummaryBox(0, 1) + kPause)) << Shown();
    EXPECT_EQ(outside.memory.Get("/work/LogFiles"), "a file in the way");
}

// Files of which reading the script takes more memory than there is, or ends the process.
class HostileFiles : public MemoryFiles {
public:
    enum class Deed { MemoryUsedUp, ProcessEnds };
    explicit HostileFiles(Deed deed) : deed_(deed) { Put("/work/x.kvl", kScript); }

    int ReadWhole(std::string_view, std::string&) override { return Act(); }
    int OpenReader(std::string_view, std::unique_ptr<FileReader>&) override { return Act(); }

private:
    int Act() {
        if (deed_ == Deed::MemoryUsedUp) throw std::bad_alloc();
        TheSurroundings().EndProcess(1);
        return EIO;
    }
    Deed deed_;
};

class HostileProgram : public testing::Test {
protected:
    ~HostileProgram() override { ResetProcessState(); }
    static bool Run() {
        const char* arguments[] = {"kvlRun", "x.kvl", "-overwrite"};
        return RunProgram(3, arguments);
    }
};

TEST_F(HostileProgram, OutOfMemoryIsAMessageAndAFailedRun) {
    HostileFiles files(HostileFiles::Deed::MemoryUsedUp);
    ScopedPlatform outside(files);
    EXPECT_FALSE(Run());
    EXPECT_TRUE(outside.console.output.ends_with("\nERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Out of memory. \n\n" +
                                                 SummaryBox(0, 1) + kPause))
        << outside.console.output;
}

TEST_F(HostileProgram, EndOfTheProcessShowsNoSummaryAndNoPause) {
    HostileFiles files(HostileFiles::Deed::ProcessEnds);
    ScopedPlatform outside(files);
    EXPECT_THROW(Run(), ProcessEnded);
    EXPECT_EQ(outside.console.output.find("===="), std::string::npos);
    EXPECT_EQ(outside.console.output.find("[Enter]"), std::string::npos);
}

// The next run in the same process starts from nothing.
TEST_F(Program, RunsDoNotSeeEachOther) {
    EXPECT_FALSE(Run({"none.kvl", "-overwrite"}));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_TRUE(Run({}));
    EXPECT_EQ(Process().errorCount, 0);
    EXPECT_TRUE(Process().overwritePromptEnabled);
    EXPECT_TRUE(Process().usageShown);
}

}  // namespace
}  // namespace kvl
