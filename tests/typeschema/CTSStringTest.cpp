#include "typeschema/CTSString.h"

#include <gtest/gtest.h>

namespace kvl {
namespace {

TEST(CTSStringTest, SubstringHasBothEndsAndKeepsTheCursor) {
    struct Row {
        int first, last;
        std::string_view expected;
    };
    constexpr Row kRows[] = {{1, 3, "bcd"}, {4, 4, "e"}, {3, 2, ""},           {0, -1, ""},  {2, -1, "cdef"},
                             {4, 99, "ef"}, {9, -1, ""}, {5, 2147483647, "f"}, {-3, 1, "ab"}};
    CTSString input;
    input.SetText("abcdef");
    input.SetCursor(2);
    for (const Row& row : kRows)
        EXPECT_EQ(input.GetSubstring(row.first, row.last), row.expected) << row.first << " " << row.last;
    EXPECT_EQ(input.GetCursor(), 2);
}

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

TEST(CTSStringTest, ReadingMovesTheCursorUpToTheEnd) {
    CTSString input;
    input.SetText("abc\xFF");
    char c = 0;
    EXPECT_EQ(input.GetChar(c), 1);
    EXPECT_EQ(c, 'a');
    std::string text = "old";
    input.ReadChars(text, 0);
    EXPECT_EQ(text, "");
    input.ReadChars(text, 2);
    EXPECT_EQ(text, "bc");
    input.ReadChars(text, 2147483647);
    EXPECT_EQ(text, "\xFF");
    EXPECT_EQ(input.GetChar(c), 0);
    EXPECT_EQ(c, 0);
    EXPECT_EQ(input.GetCursor(), 4);
    input.MoveCursor(-1);
    EXPECT_EQ(input.GetChar(c), 1);
    EXPECT_EQ(c, '\xFF');
    input.SetCursor(7);
    EXPECT_TRUE(input.IsAtEnd());
    EXPECT_EQ(input.GetChar(c), 0);
}

}  // namespace
}  // namespace kvl
