#include "driver/CCmd.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

TEST(Arguments, AreSplit) {
    const struct {
        std::vector<const char*> arguments;
        const char *program, *mainScript, *mode, *joined;
    } rows[] = {
        {{}, "", "", "", ""},
        {{"kvlRun"}, "kvlRun", "", "", ""},
        {{"kvlRun", ""}, "kvlRun", "", "", ""},
        {{"kvlRun", "x.kvl"}, "kvlRun", "x.kvl", "", "x.kvl"},
        {{"kvlRun", "x.kvl", "-overwrite"}, "kvlRun", "x.kvl", "-overwrite", "x.kvl-overwrite"},
        {{"kvlRun", "", "-overwrite"}, "kvlRun", "", "-overwrite", "-overwrite"},
        {{"kvlRun", "x.kvl", "m", "more", "", "words"}, "kvlRun", "x.kvl", "m", "x.kvlm more  words"},
    };
    for (const auto& row : rows) {
        std::string program = "old", mainScript = "old", mode = "old";
        EXPECT_EQ(
            SplitArguments(static_cast<int>(row.arguments.size()), row.arguments.data(), program, mainScript, mode),
            row.joined);
        EXPECT_EQ(program + "," + mainScript + "," + mode,
                  std::string(row.program) + "," + row.mainScript + "," + row.mode);
    }
}

class Options : public testing::Test {
protected:
    Options() { ResetProcessState(); }

    bool Read() { return CCmd().ReadEnvironmentOptions(); }
    const EnvironmentOptions& Values() { return Process().options; }

    ScopedPlatform outside;
};

TEST_F(Options, HaveDefaults) {
    EXPECT_EQ(Values().logfile, OptionValue::yes);
    EXPECT_TRUE(Read());
    EXPECT_EQ(Values().testdifText + "," + Values().mergeText + "," + Values().first + "," + Values().ptypeText + "," +
                  Values().runextendedText + "," + Values().logfileText,
              "no,no,,vc2008,yes,no");
    EXPECT_EQ(Values().testdif, OptionValue::no);
    EXPECT_EQ(Values().merge, OptionValue::no);
    EXPECT_EQ(Values().ptype, OptionValue::vc2008);
    EXPECT_EQ(Values().runextended, OptionValue::yes);
    EXPECT_EQ(Values().logfile, OptionValue::no);
    EXPECT_EQ(outside.console.output, "");
}

TEST_F(Options, AreJudged) {
    using Values = EnvironmentOptions;
    const struct {
        const char *name, *value;
        std::string Values::*text;
        OptionValue Values::*enumerated;
        const char* expectedText;
        OptionValue expected;  // where it is wrong: what it held before
        bool isGood;
    } rows[] = {
        {"kvlrun_testdif", "yes", &Values::testdifText, &Values::testdif, "yes", OptionValue::yes, true},
        {"kvlrun_merge", "YES", &Values::mergeText, &Values::merge, "yes", OptionValue::yes, true},
        {"kvlrun_runextended", "nO", &Values::runextendedText, &Values::runextended, "no", OptionValue::no, true},
        {"kvlrun_logfile", "YES", &Values::logfileText, &Values::logfile, "yes", OptionValue::yes, true},
        {"kvlrun_logfile", "Yes ", &Values::logfileText, &Values::logfile, "yes ", OptionValue::yes, false},
        {"kvlrun_logfile", "", &Values::logfileText, &Values::logfile, "", OptionValue::yes, false},
        {"kvlrun_merge", "yes;no", &Values::mergeText, &Values::merge, "yes;no", OptionValue::no, false},
        {"kvlrun_merge", "vc6", &Values::mergeText, &Values::merge, "vc6", OptionValue::no, false},
        {"kvlrun_ptype", "vc6", &Values::ptypeText, &Values::ptype, "vc6", OptionValue::vc6, true},
        {"kvlrun_ptype", "VC2008", &Values::ptypeText, &Values::ptype, "VC2008", OptionValue::vc2008, false},
    };
    for (const auto& row : rows) {
        ResetProcessState();
        outside.console.output.clear();
        outside.surroundings.environment = {{row.name, row.value}};
        EXPECT_EQ(Read(), row.isGood) << row.name << row.value;
        EXPECT_EQ(Process().options.*row.text, row.expectedText);
        EXPECT_EQ(Process().options.*row.enumerated, row.expected);
        const std::string message = "\nERROR: ERR_EXEC_ENVIRON_VAR_1\nEnvironment Variable Has Wrong Value ( " +
                                    std::string(row.name) + " = " + row.expectedText +
                                    " )\n\n\n^\nAt line -1 of Unknown \n\n";
        EXPECT_EQ(outside.console.output, row.isGood ? "" : message);
        EXPECT_EQ(Process().errorCount, row.isGood ? 0 : 1);
    }
}

TEST_F(Options, FirstKeepsOneByteOfAnyValue) {
    outside.surroundings.environment["kvlrun_first"] = "Abc";
    EXPECT_TRUE(Read());
    EXPECT_EQ(Values().first, "A");
    outside.surroundings.environment["kvlrun_first"] = "";
    EXPECT_TRUE(Read());
    EXPECT_EQ(Values().first, "");
}

TEST_F(Options, WrongOnesAreReportedInTheOrderOfTheTable) {
    outside.surroundings.environment = {{"kvlrun_logfile", "maybe"}, {"kvlrun_testdif", "perhaps"}};
    EXPECT_FALSE(Read());
    EXPECT_EQ(Process().errorCount, 2);
    EXPECT_LT(outside.console.output.find("( kvlrun_testdif = perhaps )"),
              outside.console.output.find("( kvlrun_logfile = maybe )"));
}

}  // namespace
}  // namespace kvl
