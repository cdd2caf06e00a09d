// The ways into the script front end: files, streams and fragments.

#include <gtest/gtest.h>

#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

TEST_F(ScriptTest, BlocksAreNumberedOverTheWholeRun) {
    ASSERT_TRUE(CompileStream("$BEGIN IF A$$BEGIN IF B$$END IF B$$END IF A$"));
    ASSERT_TRUE(CompileStream("$BEGIN IF A$$END IF A$"));
    std::string numbers;
    for (const PatternCommand& command : list_.commands) {
        if (command.beginEnd == cmd_begin) numbers += std::to_string(command.blockId) + " ";
    }
    EXPECT_EQ(numbers, "0 1 2 ");
}

TEST_F(ScriptTest, MacroHeadSetsTheKindWhileParsing) {
    CommandList list;
    PatternCommand head;
    head.subkind = cmd_declare_pattern_macro;
    list.AppendCommand(std::move(head), 1, false);
    EXPECT_EQ(list.entityKind, kEntityMacroPattern);
    ASSERT_TRUE(CompileStream("$BEGIN PATTERN P()$", kEntityMainScript));
    EXPECT_EQ(list_.entityKind, kEntityMainScript);
}

TEST_F(ScriptTest, FoldingChangesTheStreamItself) {
    std::string text = "\xC3\xA4";
    ASSERT_TRUE(ParseScriptSourceStream(kEntityMacroPattern, "S", text, list_));
    EXPECT_EQ(text, "\xE4");
    EXPECT_TRUE(list_.utf8Source);
    CommandList latin;
    ASSERT_TRUE(ParseScriptSourceStream(kEntityMacroPattern, "S", text, latin));
    EXPECT_EQ(text, "\xE4");
    EXPECT_FALSE(latin.utf8Source);
}

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
