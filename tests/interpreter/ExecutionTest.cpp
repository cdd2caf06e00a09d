// The walk over commands: order, blocks, quoted commands, and where it stops.
#include "ScriptRun.h"

namespace kvl {
namespace {

class Execution : public testing::TestWithParam<ScriptRow> {};

TEST_P(Execution, Runs) {
    ScriptRun run;
    run.AddPattern("P", "#A::STREAM", "<$A$>");
    run.AddPattern("Q", "", "q");
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kExecutionRows[] = {
    {"CommandsInOrder", "$A ::STREAM = \"1\"$$A$$A = \"2\"$$A$", "12"},
    {"BlocksInBlocks", "$A ::STREAM = \"1\"$$BEGIN IF A$$BEGIN IF A == \"1\"$$A$$END IF A == \"1\"$$A$$END IF A$",
     "11"},
    {"CommentIsNotRun", "$BEGIN COMMENT$ $X$ $END COMMENT$$A ::STREAM = \"1\"$$A$", "1"},
    {"DollarCommentIsNotRun", "$/* $X$ */$$A ::STREAM = \"1\"$$A$", "1"},
    {"StopsAtTheFirstFailure", "$A ::STREAM = \"1\"$$A$\n$X$\n$A$", "1", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"StopsInsideBlocks", "$A ::STREAM = \"1\"$\n$BEGIN IF A$\n$X$\n$END IF A$\n$A$", "", "ERR_DECL_SCRIPT_VAR_5 5"},
    {"AnUntakenBranchIsNeverJudged", "$A ::STREAM$$BEGIN IF A$$X = Y$$END IF A$$A$", ""},
    {"QuotedCall", "$\"Q()\"$", "q"},
    {"QuotedCallWithArgument", "$\"P(\"\"v\"\")\"$", "<v>"},
    {"QuotedCallWithComputedName", "$N ::STREAM = \"P\"$$A ::STREAM = \"v\"$$\"$N$(A)\"$", "<v>"},
    {"QuotedPlaceholderIsNoCall", "$A ::STREAM$\n$\"A\"$", "", "ERR_DECL_SCRIPT_MACRO_1 4"},
    {"QuotedTextIsNoCall", "\n$\"no call\"$", "", "ERR_DECL_SCRIPT_SYNTAX_1 4"},
    {"QuotedUnknownMacro", "$\"X()\"$", "", "ERR_DECL_SCRIPT_MACRO_1 3"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Execution, testing::ValuesIn(kExecutionRows), RowName);

TEST(ExecutionStop, TheInnermostFailingCommandIsRemembered) {
    ScriptRun run;
    run.AddScript("S", "", "\n$A ::STREAM = \"1\"$\n$BEGIN IF A$\n$X$\n$END IF A$\n");
    EXPECT_FALSE(run.Execute("\n\n$S()$"));
    EXPECT_EQ(Process().stoppedLine, 6);
    EXPECT_EQ(Process().stoppedPath, "/work/S.txt");
}

TEST(ExecutionStop, NothingIsRememberedOfAGoodRun) {
    ScriptRun run;
    EXPECT_TRUE(run.Execute("$A ::STREAM$$A$"));
    EXPECT_EQ(Process().stoppedLine, -1);
}

TEST(ExecutionStop, ALineMarkIsNoCondition) {
    ScriptRun run;
    EXPECT_FALSE(run.Execute("$BEGIN IF \\n$$END IF \\n$"));
    EXPECT_EQ(run.faults, "");
    EXPECT_EQ(Process().stoppedLine, 3);
}

}  // namespace
}  // namespace kvl
