#include <gtest/gtest.h>

#include <cerrno>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"
#include "typeschema/CTSEntity.h"

namespace kvl {
namespace {

// "line:column |text|mark|"
std::string Show(const TextPlace& place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column) + " |" + place.text + "|" + place.mark + "|";
}

struct CursorRow {
    const char* name;
    std::string_view text;
    int cursor;
    const char* expected;
};

class LocateCursorTest : public testing::TestWithParam<CursorRow> {};

TEST_P(LocateCursorTest, TellsLineColumnAndMark) {
    EXPECT_EQ(Show(LocateCursor(GetParam().text, GetParam().cursor)), GetParam().expected);
    CTSString input;
    input.SetText(std::string(GetParam().text));
    input.SetCursor(GetParam().cursor);
    EXPECT_EQ(Show(LocateCursor(input)), GetParam().expected);
}

constexpr CursorRow kCursorRows[] = {
    {"FirstByte", "abc", 0, "1:1 |abc|^|"},
    {"Inside", "abc", 2, "1:3 |abc|  ^|"},
    {"AtTheEndIsTheLastByte", "abc", 3, "1:3 |abc|  ^|"},
    {"FarBehindTheEndToo", "abc", 2147483647, "1:3 |abc|  ^|"},
    {"InFrontOfTheText", "abc", -1, "1:0 |abc|^|"},
    {"Empty", "", 0, "1:0 ||^|"},
    {"FirstOfALaterLine", "ab\ncd\nef", 3, "2:1 |cd|^|"},
    {"LastLine", "ab\ncd\nef", 7, "3:2 |ef| ^|"},
    {"LineFeedEndsItsOwnLine", "ab\ncd", 2, "1:3 |ab|  ^|"},
    {"BehindAFinalLineFeed", "ab\n", 3, "1:3 |ab|  ^|"},
    {"EmptyLine", "ab\n\ncd", 3, "2:1 ||^|"},
    {"TabsAreKept", "x\n\t\tword", 6, "2:5 |\t\tword|\t\t  ^|"},
    {"CarriageReturnIsPartOfTheLine", "ab\r\ncd", 1, "1:2 |ab\r| ^|"},
    {"SpecialLettersAreVisible", "\xC4\x80z", 2, "1:3 |\xC4\x80z| \x80^|"},
    {"LineFeedAtTheFrontStays", "\nabc\nd", 2, "2:3 |\nabc|\n ^|"},
};
INSTANTIATE_TEST_SUITE_P(Rows, LocateCursorTest, testing::ValuesIn(kCursorRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct TokenRow {
    const char* name;
    int offset;
    std::string_view token;
    const char* expected;
};

class LocateTokenTest : public testing::TestWithParam<TokenRow> {};

// Two uses of NAME, at 2 and 12.
constexpr std::string_view kTokenText = "::NAME\n{ X ::NAME }";

TEST_P(LocateTokenTest, GoesBackToTheLastWholeOccurrence) {
    EXPECT_EQ(Show(LocateToken(kTokenText, GetParam().offset, GetParam().token)), GetParam().expected);
}

constexpr TokenRow kTokenRows[] = {
    {"BehindTheToken", 18, "NAME", "2:7 |{ X ::NAME }|      ^|"},
    {"OnItsLastByte", 16, "NAME", "2:7 |{ X ::NAME }|      ^|"},
    {"InsideItTheOneBefore", 15, "NAME", "1:3 |::NAME|  ^|"},
    {"NotFoundIsTheOffset", 9, "OTHER", "2:3 |{ X ::NAME }|  ^|"},
    {"EmptyTokenIsTheOffset", 9, "", "2:3 |{ X ::NAME }|  ^|"},
    {"OffsetBehindTheEnd", 2147483647, "X", "2:3 |{ X ::NAME }|  ^|"},
    {"UnknownOffset", -1, "NAME", "1:0 |::NAME|^|"},
};
INSTANTIATE_TEST_SUITE_P(Rows, LocateTokenTest, testing::ValuesIn(kTokenRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LocateInSourceTest, WithoutAFileIsTheFirstPlace) {
    TextPlace place;
    place.text = "old";
    EXPECT_TRUE(LocateInSource("", 17, "NAME", place));
    EXPECT_EQ(Show(place), "1:1 ||^|");
}

TEST(LocateInSourceTest, ReadsTheFileOnce) {
    ScopedPlatform outside;
    outside.memory.Put("/work/T.txt", kTokenText);
    TextPlace place;
    EXPECT_TRUE(LocateInSource("/work/T.txt", 18, "NAME", place));
    EXPECT_EQ(Show(place), "2:7 |{ X ::NAME }|      ^|");
    EXPECT_EQ(outside.files.CountOf(FileOperation::ReadWhole), 1);
}

TEST(LocateInSourceTest, ReportsAFileThatHasGone) {
    ResetProcessState();
    ScopedPlatform outside;
    TextPlace place;
    EXPECT_FALSE(LocateInSource("/work/T.txt", 18, "NAME", place));
    EXPECT_EQ(Process().errorCount, 1);
    EXPECT_NE(outside.console.output.find("ERR_EXEC_SCRIPT_FILE_1\n"), std::string::npos);
}

}  // namespace
}  // namespace kvl
