#include "LoadingTest.h"
#include "support/CaseFile.h"
#include "support/WrittenBytes.h"

namespace kvl {
namespace {

class WeakLiteralTest : public LoadingTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(WeakLiteralTest, "interpreter/WeakLiterals.cases");

// What is refused is reported once, at its command: the literals in front are good, the one behind is not looked at any
// more.
TEST_P(WeakLiteralTest, IsRefused) {
    const std::string command = BytesOf(GetParam().Line("command"));
    for (const bool isPattern : {false, true}) {
        ResetProcessState();
        outside.console.output.clear();
        EXPECT_FALSE(Compile("$A = \"x\"$\n" + command + "\n$\"$x\"$", isPattern ? kEntityMacroPattern : 0));
        EXPECT_EQ(Process().errorCount, 1);
        const std::string kind = isPattern ? "PATTERN" : "SCRIPT";
        EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_" + kind + "_LIT_2\n")) << FirstMessage();
        EXPECT_NE(FirstMessage().find("\n" + command + "\n^\nAt line 2 of "), std::string::npos) << FirstMessage();
    }
}

TEST_F(LoadingTest, FaultOfAFragmentIsReportedOnceAtTheCommand) {
    const auto schema = Compile("$A$", kEntityMacroPattern);
    ASSERT_TRUE(schema);
    schema->currentLine = 7;
    EXPECT_FALSE(CompileFragment(*schema, "$M(,)$"));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_PATTERN_SYNTAX_1")) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with("At line 7 near position 0 of Pattern /home/main.kvl")) << FirstMessage();
    outside.console.output.clear();
    EXPECT_FALSE(CompileFragment(*schema, "$M(\"$x\")$"));
    EXPECT_TRUE(FirstMessage().starts_with("ERR_DECL_PATTERN_LIT_2")) << FirstMessage();
    EXPECT_TRUE(FirstMessage().ends_with("At line 7 of Pattern /home/main.kvl")) << FirstMessage();
    EXPECT_EQ(Process().errorCount, 2);
}

}  // namespace
}  // namespace kvl
