#include "driver/CCmd.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

struct ArgumentsRow {
    const char* name;
    std::vector<const char*> arguments;
    const char *program, *mainScript, *mode, *joined;
};
const ArgumentsRow kArgumentsRows[] = {
    {"Nothing", {}, "", "", "", ""},
    {"ProgramOnly", {"kvlRun"}, "kvlRun", "", "", ""},
    {"EmptyScript", {"kvlRun", ""}, "kvlRun", "", "", ""},
    {"Script", {"kvlRun", "x.kvl"}, "kvlRun", "x.kvl", "", "x.kvl"},
    {"Mode", {"kvlRun", "x.kvl", "-overwrite"}, "kvlRun", "x.kvl", "-overwrite", "x.kvl-overwrite"},
    {"EmptyScriptWithMode", {"kvlRun", "", "-overwrite"}, "kvlRun", "", "-overwrite", "-overwrite"},
    {"More", {"kvlRun", "x.kvl", "m", "more", "", "words"}, "kvlRun", "x.kvl", "m", "x.kvlm more  words"},
};

class Arguments : public testing::TestWithParam<ArgumentsRow> {};

TEST_P(Arguments, AreSplit) {
    const ArgumentsRow& row = GetParam();
    std::string program = "old", mainScript = "old", mode = "old";
    EXPECT_EQ(SplitArguments(static_cast<int>(row.arguments.size()), row.arguments.data(), program, mainScript, mode),
              row.joined);
    EXPECT_EQ(program, row.program);
    EXPECT_EQ(mainScript, row.mainScript);
    EXPECT_EQ(mode, row.mode);
}

INSTANTIATE_TEST_SUITE_P(Rows, Arguments, testing::ValuesIn(kArgumentsRows),
                         [](const auto& row) { return std::string(row.param.name); });

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

struct OptionRow {
    const char* test;
    const char* name;
    const char* value;
    std::string EnvironmentOptions::*text;
    OptionValue EnvironmentOptions::*enumerated;
    const char* expectedText;
    OptionValue expected;  // where it is wrong: what it held before
    bool isGood;
};
using Values = EnvironmentOptions;
const OptionRow kOptionRows[] = {
    {"Testdif", "kvlrun_testdif", "yes", &Values::testdifText, &Values::testdif, "yes", OptionValue::yes, true},
    {"Merge", "kvlrun_merge", "YES", &Values::mergeText, &Values::merge, "yes", OptionValue::yes, true},
    {"Runextended", "kvlrun_runextended", "nO", &Values::runextendedText, &Values::runextended, "no", OptionValue::no,
     true},
    {"Logfile", "kvlrun_logfile", "YES", &Values::logfileText, &Values::logfile, "yes", OptionValue::yes, true},
    {"TrailingBlank", "kvlrun_logfile", "Yes ", &Values::logfileText, &Values::logfile, "yes ", OptionValue::yes,
     false},
    {"EmptyLogfile", "kvlrun_logfile", "", &Values::logfileText, &Values::logfile, "", OptionValue::yes, false},
    {"BothChoices", "kvlrun_merge", "yes;no", &Values::mergeText, &Values::merge, "yes;no", OptionValue::no, false},
    {"ChoiceOfAnother", "kvlrun_merge", "vc6", &Values::mergeText, &Values::merge, "vc6", OptionValue::no, false},
    {"OtherPtype", "kvlrun_ptype", "vc6", &Values::ptypeText, &Values::ptype, "vc6", OptionValue::vc6, true},
    {"PtypeInCapitals", "kvlrun_ptype", "VC2008", &Values::ptypeText, &Values::ptype, "VC2008", OptionValue::vc2008,
     false},
};

class OptionValues : public Options, public testing::WithParamInterface<OptionRow> {};

TEST_P(OptionValues, AreJudged) {
    const OptionRow& row = GetParam();
    outside.surroundings.environment[row.name] = row.value;
    EXPECT_EQ(Read(), row.isGood);
    EXPECT_EQ(Values().*row.text, row.expectedText);
    EXPECT_EQ(Values().*row.enumerated, row.expected);
    const std::string message = "\nERROR: ERR_EXEC_ENVIRON_VAR_1\nEnvironment Variable Has Wrong Value ( " +
                                std::string(row.name) + " = " + row.expectedText +
                                " )\n\n\n^\nAt line -1 of Unknown \n\n";
    EXPECT_EQ(outside.console.output, row.isGood ? "" : message);
    EXPECT_EQ(Process().errorCount, row.isGood ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Rows, OptionValues, testing::ValuesIn(kOptionRows),
                         [](const auto& row) { return std::string(row.param.test); });

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
