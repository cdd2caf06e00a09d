// The ways into the script front end: files, streams and fragments.

#include <gtest/gtest.h>

#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

TEST_F(ScriptTest, SourcesWithoutTextAreRefused) {
    EXPECT_FALSE(CompileFile(""));
    EXPECT_NE(Shown().find("ERROR: ERR_EXEC_SCRIPT_FILE_8\n"), std::string::npos) << Shown();
    EXPECT_EQ(Shown().find("At line"), std::string::npos) << Shown();
    EXPECT_FALSE(ParseScriptSourceFile(kEntityMacroScript, "no such file.kvl", list_));
    EXPECT_FALSE(CompileStream(""));
    EXPECT_NE(Shown().find("ERROR: ERR_DECL_SCRIPT_HEADER_1\n"), std::string::npos) << Shown();
    EXPECT_NE(Shown().find(" of Script STREAM\n"), std::string::npos) << Shown();
    EXPECT_FALSE(CompileStream("", kEntityMacroPattern));
    EXPECT_NE(Shown().find("ERROR: ERR_DECL_PATTERN_HEADER_1\n"), std::string::npos) << Shown();
    EXPECT_EQ(Process().errorCount, 4);
}

TEST_F(ScriptTest, LogFollowsFragments) {
    ASSERT_TRUE(CompileConstant("a $X$"));
    EXPECT_EQ(list_.entityKind, kEntityMacroScript);
    ASSERT_TRUE(CompileConstant(""));
    EXPECT_EQ(Shown(), "");
    EXPECT_FALSE(CompileConstant("$x"));
    EXPECT_EQ(Log(), "Parsing Constant String: a $X$ Success. Parsing Constant String: $x\n");
}

TEST_F(ScriptTest, FragmentHoldsTextNamesAndCallsOnly) {
    for (const char* fragment : {"some $$ text", "$A:B$", "a$\\n$b", "$M(\"x\", 1)$"}) {
        EXPECT_TRUE(CompileConstant(fragment)) << fragment;
        EXPECT_EQ(Shown(), "") << fragment;
    }
    for (const char* fragment :
         {"$A = 1$", "$A = M()$", "$M() = A$", "$A ::STRING$", "$R() ::KVL:SCRIPT$", "$BEGIN IF A$", "$BEGIN IF M()$",
          "$\"M()\"$", "a$/*x*/$", "$BEGIN COMMENT$$END COMMENT$"}) {
        Shown().clear();
        list_ = CommandList();
        EXPECT_FALSE(CompileConstant(fragment)) << fragment;
        EXPECT_EQ(Shown(), "\n") << fragment;
    }
    EXPECT_EQ(Process().errorCount, 0);
}

// The text of a whole source costs one pass, whatever it is cut into.
TEST_F(ScriptTest, LongTextIsOneCommand) {
    std::string text;
    for (int line = 0; line < 200000; ++line)
        text += "a line of text\r\n";
    ASSERT_TRUE(CompileStream(text));
    ASSERT_EQ(list_.commands.size(), 1u);
    EXPECT_EQ(list_.commands[0].streamText.size(), text.size() - 200000);
}

}  // namespace
}  // namespace kvl
