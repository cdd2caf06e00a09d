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
constexpr const char* kPause = "\n\n\t\t\t\tPlease press [Enter] to continue!\n";

std::string SummaryBox(int warnings, int errors) {
    const std::string rule = std::string(78, '=') + "\n";
    std::string counters = "Warnings: " + std::to_string(warnings) + " Errors: " + std::to_string(errors);
    counters.resize(78, ' ');
    return rule + counters + "\n" + rule;
}

class Program : public testing::Test {
protected:
    Program() { outside.memory.Put("/home/x.kvl", kScript); }
    ~Program() override { ResetProcessState(); }

    bool Run(std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "kvlRun");
        return RunProgram(static_cast<int>(arguments.size()), arguments.data());
    }
    const std::string& Shown() const { return outside.console.output; }
    bool Shows(std::string_view text) const { return Shown().find(text) != std::string::npos; }

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

TEST_F(Program, ModeIsComparedInLowerCase) {
    for (const auto& [mode, isMode] : {std::pair{"-overwrite", true},
                                       {"-OverWrite", true},
                                       {"overwrite", false},
                                       {"-overwrite ", false},
                                       {"-h", false},
                                       {"-OVERWRITES", false}}) {
        EXPECT_EQ(Run({"x.kvl", mode, "more", "words"}), isMode) << mode;
        EXPECT_EQ(Process().overwritePromptEnabled, !isMode) << mode;
    }
}

TEST_F(Program, BadPathsFail) {
    const std::pair<std::vector<const char*>, const char*> rows[] = {
        {{"-h"}, "ERR_EXEC_COMMAND_ARG_1\nFirst command line argument \"-h\""},
        {{"", "-overwrite"}, "ERR_EXEC_COMMAND_ARG_1\nFirst command line argument \"\""},
        {{"none.kvl"}, "ERR_EXEC_SCRIPT_FILE_1\nFile none.kvl can not be found within search path /home/"},
    };
    for (const auto& [arguments, message] : rows) {
        outside.console.output.clear();
        EXPECT_FALSE(Run(arguments));
        EXPECT_TRUE(Shows(message)) << Shown();
        EXPECT_FALSE(Shows("Main Script:"));
        EXPECT_TRUE(Shown().ends_with(SummaryBox(0, 1) + kPause)) << Shown();
    }
}

// Files of which reading the script takes more memory than there is, or ends the process.
class HostileFiles : public MemoryFiles {
public:
    enum class Deed { MemoryUsedUp, ProcessEnds };
    explicit HostileFiles(Deed deed) : deed_(deed) { Put("/home/x.kvl", kScript); }

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

}  // namespace
}  // namespace kvl
