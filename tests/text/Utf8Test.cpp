#include "text/Utf8.h"

#include <gtest/gtest.h>

namespace kvl {
namespace {

struct FoldRow {
    const char* name;
    std::string_view input, expected;
    bool utf8;
};

constexpr FoldRow kFoldRows[] = {
    {"Ascii", "abc\n", "abc\n", false},
    {"Latin1", "\xC4\xDF\xFF\x80", "\xC4\xDF\xFF\x80", false},
    {"AllLetters", "\xC2\xA7\xC2\xA9\xC2\xB0\xC2\xB5\xC3\x84\xC3\x96\xC3\x9C\xC3\x9F\xC3\xA4\xC3\xB6\xC3\xBC",
     "\xA7\xA9\xB0\xB5\xC4\xD6\xDC\xDF\xE4\xF6\xFC", true},
    {"OtherLetterLosesItsLead", "\xC3\xA9", "\xA9", true},
    {"NoFoldBehindLowLead", "\xC2\x84", "\x84", true},
    {"LeadCountsForOneByte",
     "\xC3"
     "a\x84",
     "a\x84", true},
    {"LastLeadCounts", "\xC2\xC3\x84\xC3", "\xC4", true},
    {"ThreeBytesStay", "\xE2\x82\xAC", "\xE2\x82\xAC", false},
};

TEST(Utf8Test, Fold) {
    for (const FoldRow& row : kFoldRows) {
        bool utf8 = !row.utf8;
        EXPECT_EQ(FoldUtf8(row.input, utf8), row.expected) << row.name;
        EXPECT_EQ(utf8, row.utf8) << row.name;
    }
}

struct EncodeRow {
    const char* name;
    std::string_view input, expected;
};

constexpr EncodeRow kEncodeRows[] = {
    {"Ascii", "abc", "abc"},
    {"AllLetters", "\xA7-\xA9-\xB0-\xB5-\xC4-\xD6-\xDC-\xDF-\xE4-\xF6-\xFC",
     "\xC2\xA7-\xC2\xA9-\xC2\xB0-\xC2\xB5-\xC3\x84-\xC3\x96-\xC3\x9C-\xC3\x9F-\xC3\xA4-\xC3\xB6-\xC3\xBC"},
    {"Neighbours", "\xE4\xF6\xFC", "\xC3\xA4\xC3\xB6\xC3\xBC"},
    {"TwoBytesStay", "\xC3\xA4\xC2\xA7", "\xC3\xA4\xC2\xA7"},
    {"ThreeBytesStay", "\xE4\xB8\xA7", "\xE4\xB8\xA7"},
    {"FourBytesStay", "\xF0\x9F\xA7\xB0", "\xF0\x9F\xA7\xB0"},
    {"CutSequence", "\xE4\xB8", "\xC3\xA4\xB8"},
    {"OverlongForm", "\xC0\xA7\xE0\x80\xA7", "\xC0\xC2\xA7\xE0\x80\xC2\xA7"},
    {"Surrogate", "\xED\xA0\xB0", "\xED\xA0\xC2\xB0"},
    {"BeyondTheLast", "\xF4\x90\x80\xB5\xF5\x80\x80\xB5", "\xF4\x90\x80\xC2\xB5\xF5\x80\x80\xC2\xB5"},
};

TEST(Utf8Test, EncodeOnlyLoneLetters) {
    for (const EncodeRow& row : kEncodeRows) {
        // What lies in front is left alone, and encoding again changes nothing.
        std::string text = "\xC4|" + std::string(row.input);
        EncodeSpecialLetters(text, 2);
        EXPECT_EQ(text, "\xC4|" + std::string(row.expected)) << row.name;
        EncodeSpecialLetters(text, 2);
        EXPECT_EQ(text, "\xC4|" + std::string(row.expected)) << row.name;
    }
}

}  // namespace
}  // namespace kvl
