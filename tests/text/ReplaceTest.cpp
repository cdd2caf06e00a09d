#include "text/Replace.h"

#include <gtest/gtest.h>

namespace kvl {
namespace {

struct ReplaceRow {
    const char* name;
    std::string_view text, what, byWhat, expected;
};

constexpr ReplaceRow kReplaceRows[] = {
    {"NoOverlap", "aaa", "aa", "b", "ba"},
    {"ReplacementIsNotScanned", "ab", "a", "aa", "aab"},
    {"JoinedTextIsNotScanned", "aabb", "ab", "", "ab"},
    {"EmptyText", "", "a", "b", ""},
    {"EmptyWhat", "abc", "", "x", "abc"},
    {"Ends", "xax", "x", "", "a"},
    {"BinaryBytes", std::string_view("a\0b\0", 4), std::string_view("\0", 1), "--", "a--b--"},
    {"LongWhat", "<0123456789012345678901234567890123456789>0123456789012345678901234567890123456789",
     "0123456789012345678901234567890123456789", "n", "<n>n"},
};

TEST(ReplaceTest, OnePassFromTheLeft) {
    for (const ReplaceRow& row : kReplaceRows)
        EXPECT_EQ(ReplaceAll(row.text, row.what, row.byWhat), row.expected) << row.name;
}

struct LineEndRow {
    std::string_view text, withCrLf, asValue;
};

constexpr LineEndRow kLineEndRows[] = {
    {"", "", ""},
    {"a\nb\n", "a\r\nb\r\n", "a\r\nb\r\n"},
    {"a\r\nb\r", "a\r\r\nb\r", "a\r\nb"},
    {"\r\r\n\n", "\r\r\r\n\r\n", "\r\n\r\n"},
};

TEST(ReplaceTest, LineEndsBehindWhatIsThere) {
    for (const LineEndRow& row : kLineEndRows) {
        std::string plain = "x", value = "x";
        AppendWithCrLf(plain, row.text);
        AppendValueWithCrLf(value, row.text);
        EXPECT_EQ(plain, "x" + std::string(row.withCrLf)) << row.text;
        EXPECT_EQ(value, "x" + std::string(row.asValue)) << row.text;
    }
}

}  // namespace
}  // namespace kvl
