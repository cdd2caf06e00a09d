// The character source under the scanners: delivery, places, lines for messages; and the table of command identifiers.

#include <gtest/gtest.h>

#include <string>

#include "frontend/CScan.h"
#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

std::string Place(const CScan& scan) {
    int line = 0, column = 0;
    std::string text;
    scan.GetPosition(line, column, text);
    return std::to_string(line) + ":" + std::to_string(column) + " " + text;
}

class ScriptSourceTest : public ScriptTest {
protected:
    void SetFile(std::string_view bytes) {
        outside_.memory.Put("main.kvl", bytes);
        scan_.SetFileSource("main.kvl", std::string(bytes));
    }

    CScan scan_;
};

TEST_F(ScriptSourceTest, EveryByteIsDeliveredThenTheEnd) {
    scan_.SetConstantSource(std::string_view("\0\xFF", 2));
    EXPECT_EQ(scan_.GetChar(), 0);
    EXPECT_EQ(scan_.GetChar(), 255);
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetCharacterCount(), 4);
}

TEST_F(ScriptSourceTest, FileHasLinesAndColumns) {
    SetFile("ab\nc");
    EXPECT_EQ(Place(scan_), "1:0 ab");
    scan_.Take(2);
    EXPECT_EQ(Place(scan_), "1:2 ab");
    scan_.Take(1);
    EXPECT_EQ(Place(scan_), "2:0 c");
    scan_.GetChar();
    EXPECT_EQ(Place(scan_), "2:1 c");
    scan_.GetChar();
    EXPECT_EQ(Place(scan_), "2:1 c");
}

TEST_F(ScriptSourceTest, StreamHasLinesOnlyAndAConstantNothing) {
    std::string text = "ab\nc";
    scan_.SetStreamSource(&text);
    scan_.Take(4);
    EXPECT_EQ(Place(scan_), "2:0 ");
    CScan constant;
    constant.SetConstantSource(text);
    constant.Take(4);
    EXPECT_EQ(Place(constant), "1:0 ");
}

TEST_F(ScriptSourceTest, BytesGivenBackAreCountedOnce) {
    SetFile("a\nbc");
    scan_.Take(3);
    scan_.UngetChars(2);
    EXPECT_EQ(Place(scan_), "2:1 bc");
    EXPECT_EQ(scan_.GetChar(), '\n');
    EXPECT_EQ(scan_.Rest(), "bc");
    EXPECT_EQ(scan_.GetCharacterCount(), 3);
    EXPECT_EQ(scan_.Take(10), "bc");
    EXPECT_EQ(scan_.GetCharacterCount(), 4);
    EXPECT_EQ(Place(scan_), "2:2 bc");
}

TEST_F(ScriptSourceTest, MarkHoldsThePlace) {
    SetFile("abc\ndef");
    scan_.Take(2);
    scan_.SetMark(true);
    scan_.Take(4);
    EXPECT_EQ(Place(scan_), "1:2 abc");
    scan_.SetMark(false);
    EXPECT_EQ(Place(scan_), "2:2 def");
}

TEST_F(ScriptSourceTest, LinesAreReadFromTheFile) {
    SetFile("a\r\n\nlast");
    std::string text;
    const std::pair<int, std::string> lines[] = {{0, ""}, {1, "a\r"}, {2, ""}, {3, "last"}, {4, ""}, {9, ""}};
    for (const auto& [number, expected] : lines) {
        text = "old";
        EXPECT_TRUE(scan_.GetLineText(number, text));
        EXPECT_EQ(text, expected) << number;
    }
    outside_.memory.Remove("main.kvl");
    EXPECT_FALSE(scan_.GetLineText(1, text));
}

struct FoldRow {
    const char* name;
    std::string_view source, text;
    bool utf8;
};
void PrintTo(const FoldRow& row, std::ostream* stream) {
    *stream << row.name;
}

class ScriptFoldTest : public ScriptTest, public testing::WithParamInterface<FoldRow> {};
INSTANTIATE_TEST_SUITE_P(Rows, ScriptFoldTest,
                         testing::Values(FoldRow{"Ascii", "abc", "abc", false},
                                         FoldRow{"Latin1", "\xE4\xFC", "\xE4\xFC", false},
                                         FoldRow{"Umlauts", "\xC3\x84\xC3\xBC\xC3\x9F", "\xC4\xFC\xDF", true},
                                         FoldRow{"Signs", "\xC2\xA7\xC2\xB0", "\xA7\xB0", true},
                                         FoldRow{"LeadAlone", "a\xC3", "a", true}),
                         RowName<FoldRow>);

TEST_P(ScriptFoldTest, SourcesAreFoldedOnce) {
    const FoldRow& row = GetParam();
    CScan constant, stream, file;
    std::string streamText(row.source);
    constant.SetConstantSource(row.source);
    stream.SetStreamSource(&streamText);
    file.SetFileSource("", std::string(row.source));
    for (const CScan* scan : {&constant, &stream, &file}) {
        EXPECT_EQ(scan->Rest(), row.text);
        EXPECT_EQ(scan->IsUtf8Source(), row.utf8);
    }
    EXPECT_EQ(streamText, row.text);
}

TEST(ScriptCommandTableTest, HasAllRowsButTwo) {
    EXPECT_EQ(CommandTable().size(), 101u);
    EXPECT_EQ(CommandTable().back().id, cmd_mark_end);
    EXPECT_EQ(cmd_mark_end, 102);
    for (int id = 0; id <= 102; ++id)
        EXPECT_EQ(GetCommandName(id).empty(), id == 42 || id == 101) << id;
    EXPECT_EQ(GetCommandName(cmd_operator_gte), "cmd_operator_gte");
    EXPECT_TRUE(GetCommandName(-1).empty());
    EXPECT_TRUE(GetCommandName(103).empty());
}

TEST(ScriptCommandTableTest, StaticMacrosAreFoundByName) {
    int staticMacros = 0;
    for (const CommandRow& row : CommandTable()) {
        EXPECT_EQ(row.slot, -1);
        if (row.staticMacro.empty()) continue;
        ++staticMacros;
        EXPECT_EQ(FindStaticMacro(row.staticMacro), &row);
    }
    EXPECT_EQ(staticMacros, 25);
    EXPECT_EQ(FindStaticMacro("KVL:LIST:SORT")->id, 60);
    EXPECT_EQ(FindStaticMacro("FILE")->keyword, "KVL:DIRECTORY");
    EXPECT_EQ(FindStaticMacro("DUMP")->keyword, "hint");
    EXPECT_EQ(FindStaticMacro(""), nullptr);
    EXPECT_EQ(FindStaticMacro("LIST:SORT"), nullptr);
}

}  // namespace
}  // namespace kvl
