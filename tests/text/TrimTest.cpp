#include "text/Trim.h"

#include <gtest/gtest.h>

#include "text/ByteClass.h"

namespace kvl {
namespace {

struct TrimRow {
    const char* name;
    std::string_view input, trimmed, withoutEnd, withoutFront;
};

constexpr TrimRow kTrimRows[] = {
    {"Empty", "", "", "", ""},
    {"OnlyInvisible", " \t\r\n\x01\x80", "", "", ""},
    {"KeepsInner", " a b\r\n", "a b", " a b", "a b\r\n"},
    {"SpecialLettersStay", "\xA0\xC4\xFC\xFF", "\xC4\xFC", "\xA0\xC4\xFC", "\xC4\xFC\xFF"},
};

TEST(TrimTest, CutsInvisibleEnds) {
    for (const TrimRow& row : kTrimRows) {
        EXPECT_EQ(TrimInvisible(row.input), row.trimmed) << row.name;
        EXPECT_EQ(TrimInvisibleEnd(row.input), row.withoutEnd) << row.name;
        EXPECT_EQ(TrimInvisibleFront(row.input), row.withoutFront) << row.name;
        EXPECT_EQ(IsAllInvisible(row.input), row.trimmed.empty()) << row.name;
    }
}

}  // namespace
}  // namespace kvl
