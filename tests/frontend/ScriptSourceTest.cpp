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

// Bytes that were given back are not counted again, and an open mark holds its place.
TEST_F(ScriptSourceTest, PlaceIsThatOfTheFurthestByte) {
    SetFile("ab\ncd");
    EXPECT_EQ(Place(scan_), "1:0 ab");
    scan_.Take(2);
    EXPECT_EQ(Place(scan_), "1:2 ab");
    scan_.SetMark(true);
    scan_.Take(2);
    EXPECT_EQ(Place(scan_), "1:2 ab");
    scan_.SetMark(false);
    scan_.UngetChars(2);
    EXPECT_EQ(Place(scan_), "2:1 cd");
    EXPECT_EQ(scan_.GetChar(), '\n');
    EXPECT_EQ(scan_.Rest(), "cd");
    EXPECT_EQ(scan_.GetCharacterCount(), 4);
    EXPECT_EQ(scan_.Take(10), "cd");
    EXPECT_EQ(scan_.GetChar(), -1);
    EXPECT_EQ(scan_.GetCharacterCount(), 6);
    EXPECT_EQ(Place(scan_), "2:2 cd");
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

TEST_F(ScriptSourceTest, SourcesAreFoldedOnce) {
    const struct {
        std::string source, text;
    } rows[] = {{"abc", "abc"},
                {"\xE4\xFC", "\xE4\xFC"},
                {"\xC3\x84\xC3\xBC\xC3\x9F", "\xC4\xFC\xDF"},
                {"\xC2\xA7\xC2\xB0", "\xA7\xB0"},
                {"a\xC3", "a"}};
    for (const auto& [source, text] : rows) {
        CScan constant, stream, file;
        std::string streamText = source;
        constant.SetConstantSource(source);
        stream.SetStreamSource(&streamText);
        file.SetFileSource("", source);
        for (const CScan* scan : {&constant, &stream, &file}) {
            EXPECT_EQ(scan->Rest(), text);
            EXPECT_EQ(scan->IsUtf8Source(), source != text);
        }
        EXPECT_EQ(streamText, text);
    }
}

TEST(ScriptCommandTableTest, RowsAreFoundByNumberAndByStaticMacro) {
    EXPECT_EQ(CommandTable().size(), 101u);
    EXPECT_EQ(CommandTable().back().id, 102);
    for (int id = -1; id <= 103; ++id)
        EXPECT_EQ(GetCommandName(id).empty(), id < 0 || id == 42 || id == 101 || id > 102) << id;
    EXPECT_EQ(GetCommandName(90), "cmd_operator_gte");
    int staticMacros = 0;
    for (const CommandRow& row : CommandTable()) {
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
