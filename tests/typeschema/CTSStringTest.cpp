#include "typeschema/CTSString.h"

#include <gtest/gtest.h>

namespace kvl {
namespace {

struct SubstringRow {
    const char* name;
    int first, last;
    std::string_view expected;
};

class CTSStringSubstringTest : public testing::TestWithParam<SubstringRow> {};

TEST_P(CTSStringSubstringTest, GivesBothEndsAndKeepsTheCursor) {
    CTSString input;
    input.SetText("abcdef");
    input.SetCursor(2);
    EXPECT_EQ(input.GetSubstring(GetParam().first, GetParam().last), GetParam().expected);
    EXPECT_EQ(input.GetCursor(), 2);
}

constexpr SubstringRow kSubstringRows[] = {
    {"Inner", 1, 3, "bcd"},           {"OneByte", 4, 4, "e"},
    {"EmptyInside", 3, 2, ""},        {"EmptyAtTheFront", 0, -1, ""},
    {"ToTheEnd", 2, -1, "cdef"},      {"LastBehindTheEnd", 4, 99, "ef"},
    {"FirstBehindTheEnd", 9, -1, ""}, {"LargestLast", 5, 2147483647, "f"},
    {"NegativeFirst", -3, 1, "ab"},
};
INSTANTIATE_TEST_SUITE_P(Rows, CTSStringSubstringTest, testing::ValuesIn(kSubstringRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CTSStringTest, NewObjectIsNotAtItsEndAndGivesNothing) {
    CTSString input;
    char c = 'x';
    std::string text = "x";
    EXPECT_FALSE(input.IsAtEnd());
    EXPECT_EQ(input.GetChar(c), 0);
    input.ReadChars(text, 3);
    EXPECT_EQ(text, "");
    EXPECT_EQ(input.GetCursor(), -1);
}

TEST(CTSStringTest, CharactersMoveTheCursorUpToTheEnd) {
    CTSString input;
    input.SetText("a\xFF");
    char c = 0;
    EXPECT_EQ(input.GetChar(c), 1);
    EXPECT_EQ(c, 'a');
    EXPECT_EQ(input.GetChar(c), 1);
    EXPECT_EQ(c, '\xFF');
    EXPECT_EQ(input.GetChar(c), 0);
    EXPECT_EQ(c, 0);
    EXPECT_EQ(input.GetCursor(), 2);
    input.MoveCursor(-1);
    EXPECT_FALSE(input.IsAtEnd());
    input.SetCursor(7);
    EXPECT_TRUE(input.IsAtEnd());
    EXPECT_EQ(input.GetChar(c), 0);
}

TEST(CTSStringTest, ReadingTakesWhatIsLeft) {
    CTSString input;
    input.SetText("abcd");
    std::string text = "old";
    input.ReadChars(text, 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(input.GetCursor(), 0);
    input.ReadChars(text, 3);
    EXPECT_EQ(text, "abc");
    input.ReadChars(text, 2147483647);
    EXPECT_EQ(text, "d");
    EXPECT_EQ(input.GetCursor(), 4);
    input.ReadChars(text, 1);
    EXPECT_EQ(text, "");
}

TEST(CTSStringTest, CopyHasItsOwnCursorAndText) {
    CTSString input;
    input.SetText("whole");
    input.SetCursor(3);
    const CTSString kept = input;
    input.SetText("line");
    EXPECT_EQ(input.GetCursor(), 0);
    EXPECT_EQ(kept.GetText(), "whole");
    EXPECT_EQ(kept.GetCursor(), 3);
}

}  // namespace
}  // namespace kvl
