// The ways into the script front end, and what holds for a list of commands as a whole.

#include <gtest/gtest.h>

#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

TEST_F(ScriptTest, TextIsOneCommandHoweverItIsCut) {
    ASSERT_TRUE(CompileFile("a\r\n$$\x80 b\n$ \r\nc$X$d$$"));
    EXPECT_EQ(list_.DumpCommands(),
              "0 cmd_kind_stream a\\n$ b\\nc\n1 cmd_kind_placeholder_identifier X\n2 cmd_kind_stream d$\n");
}

TEST_F(ScriptTest, CommandsKnowTheirLines) {
    ASSERT_TRUE(CompileFile("\na\n$X$\nb\n$ \n$Y$ $/*\n\n*/$ $BEGIN COMMENT$\n\n$END COMMENT$\n$Z$"));
    std::string lines;
    for (const PatternCommand& command : list_.commands)
        lines += std::string(GetCommandName(command.kind)) + " " + std::to_string(command.lineNumber) + "\n";
    EXPECT_EQ(lines,
              "cmd_kind_stream 1\ncmd_kind_placeholder_identifier 3\ncmd_kind_stream 3\n"
              "cmd_kind_placeholder_identifier 6\ncmd_kind_stream 6\ncmd_kind_new_comment 8\ncmd_kind_stream 8\n"
              "cmd_kind_begin_end_verb_stream 8\ncmd_kind_stream 10\ncmd_kind_begin_end_verb_stream 10\n"
              "cmd_kind_stream 10\ncmd_kind_placeholder_identifier 11\n");
}

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

TEST_F(ScriptTest, Utf8LettersBecomeSingleBytes) {
    ASSERT_TRUE(CompileFile("\xC3\xA4 $X = \"\xC3\xBC\"$"));
    EXPECT_TRUE(list_.utf8Source);
    EXPECT_EQ(list_.commands[0].streamText, "\xE4 ");
    EXPECT_EQ(list_.commands[1].operand2, "\xFC");
}

TEST_F(ScriptTest, FoldingChangesTheStreamItself) {
    std::string text = "\xC3\xA4";
    ASSERT_TRUE(ParseScriptSourceStream(kEntityMacroPattern, "S", text, list_));
    EXPECT_EQ(text, "\xE4");
    std::string latin = "\xE4";
    CommandList other;
    ASSERT_TRUE(ParseScriptSourceStream(kEntityMacroPattern, "S", latin, other));
    EXPECT_EQ(latin, "\xE4");
    EXPECT_FALSE(other.utf8Source);
}

TEST_F(ScriptTest, EmptyFileIsRefused) {
    EXPECT_FALSE(CompileFile(""));
    EXPECT_NE(Shown().find("ERROR: ERR_EXEC_SCRIPT_FILE_8\n"), std::string::npos) << Shown();
    EXPECT_EQ(Shown().find("At line"), std::string::npos) << Shown();
}

TEST_F(ScriptTest, MissingFileIsReported) {
    EXPECT_FALSE(ParseScriptSourceFile(kEntityMacroScript, "no such file.kvl", list_));
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(ScriptTest, EmptyStreamMissesItsHeader) {
    EXPECT_FALSE(CompileStream(""));
    EXPECT_NE(Shown().find("ERROR: ERR_DECL_SCRIPT_HEADER_1\n"), std::string::npos) << Shown();
    EXPECT_NE(Shown().find(" of Script STREAM\n"), std::string::npos) << Shown();
    Shown().clear();
    EXPECT_FALSE(CompileStream("", kEntityMacroPattern));
    EXPECT_NE(Shown().find("ERROR: ERR_DECL_PATTERN_HEADER_1\n"), std::string::npos) << Shown();
}

TEST_F(ScriptTest, ConstantIsAnnouncedInTheLog) {
    ASSERT_TRUE(CompileConstant("a $X$"));
    EXPECT_EQ(Log(), "Parsing Constant String: a $X$ Success. ");
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(list_.entityKind, kEntityMacroScript);
}

TEST_F(ScriptTest, EmptyConstantIsAnEmptySuccess) {
    ASSERT_TRUE(CompileConstant(""));
    EXPECT_TRUE(list_.commands.empty());
    EXPECT_EQ(Log(), "");
}

TEST_F(ScriptTest, RejectedConstantEndsItsLineInTheLog) {
    EXPECT_FALSE(CompileConstant("$x"));
    EXPECT_EQ(Log(), "Parsing Constant String: $x\n");
}

struct FragmentRow {
    const char* name;
    std::string_view source;
    bool accepted;
};
void PrintTo(const FragmentRow& row, std::ostream* stream) {
    *stream << row.source;
}

class ScriptFragmentTest : public ScriptTest, public testing::WithParamInterface<FragmentRow> {};

constexpr FragmentRow kFragmentRows[] = {
    {"Text", "some $$ text", true},
    {"Placeholder", "$A:B$", true},
    {"LineMark", "a$\\n$b", true},
    {"Call", "$M(\"x\", 1)$", true},
    {"Assignment", "$A = 1$", false},
    {"AssignmentOfCall", "$A = M()$", false},
    {"CallAsTarget", "$M() = A$", false},
    {"Declaration", "$A ::STRING$", false},
    {"DeclarationOfScript", "$R() ::KVL:SCRIPT$", false},
    {"Block", "$BEGIN IF A$", false},
    {"BlockOfCall", "$BEGIN IF M()$", false},
    {"QuotedCommand", "$\"M()\"$", false},
    {"DollarComment", "a$/*x*/$", false},
    {"CommentBlock", "$BEGIN COMMENT$$END COMMENT$", false},
};
INSTANTIATE_TEST_SUITE_P(Rows, ScriptFragmentTest, testing::ValuesIn(kFragmentRows), RowName<FragmentRow>);

TEST_P(ScriptFragmentTest, HoldsTextNamesAndCallsOnly) {
    EXPECT_EQ(CompileConstant(GetParam().source), GetParam().accepted);
    EXPECT_EQ(Shown(), GetParam().accepted ? "" : "\n");
    EXPECT_EQ(Process().errorCount, 0);
}

TEST_F(ScriptTest, CallTextShowsItsArguments) {
    ActualArgument name, list, number, text;
    name.name = "A:B";
    list.name = "L";
    list.byValue = true;
    number.typeId = 10;
    number.name = "-1";
    text.typeId = 9;
    text.name = "a b";
    EXPECT_EQ(CallText("M:N", {name, list, number, text}), "M:N(A:B, L[], -1, \"a b\")");
    EXPECT_EQ(CallText("M", {}), "M()");
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
