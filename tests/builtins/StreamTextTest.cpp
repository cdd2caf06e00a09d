// The text operations behind the stream macros.
#include "builtins/StreamText.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace kvl {
namespace {

struct TextRow {
    const char* name;
    std::function<std::string()> make;
    std::string expected;
};

class StreamText : public testing::TestWithParam<TextRow> {};

TEST_P(StreamText, Gives) {
    EXPECT_EQ(GetParam().make(), GetParam().expected);
}

constexpr auto kName = [](const auto& row) { return std::string(row.param.name); };

const TextRow kReplace2Rows[] = {
    {"Erases", [] { return Replace2("x[1]y[2]z", "[", "]", ""); }, "xyz"},
    {"Replaces", [] { return Replace2("x[1]y[2]z", "[", "]", "#"); }, "x#y#z"},
    {"DoesNotScanWhatItPutIn", [] { return Replace2("[1]", "[", "]", "[2]"); }, "[2]"},
    {"EndMarkIsBehindTheStartMark", [] { return Replace2("a||b|c", "||", "|", "-"); }, "a-c"},
    {"EqualMarks", [] { return Replace2("a%b%c%d%e", "%", "%", ""); }, "ace"},
    {"StopsWithoutAnEndMark", [] { return Replace2("[1]a[2", "[", "]", "#"); }, "#a[2"},
    {"NoMark", [] { return Replace2("abc", "[", "]", "#"); }, "abc"},
    {"EmptyStartMark", [] { return Replace2("a]b", "", "]", "#"); }, "a]b"},
    {"EmptyEndMark", [] { return Replace2("a[b", "[", "", "#"); }, "a[b"},
    {"EmptyText", [] { return Replace2("", "[", "]", "#"); }, ""},
};
INSTANTIATE_TEST_SUITE_P(Replace2, StreamText, testing::ValuesIn(kReplace2Rows), kName);

const TextRow kClearRows[] = {
    {"TrimsAndCollapses", [] { return Clear("  a   b\t\tc  "); }, "a b\tc"},
    {"OnlyBlanks", [] { return Clear("  \t\r\n"); }, ""},
    {"LineEndKeepsItsFirstByte", [] { return Clear("a\r\nb"); }, "a\rb"},
    {"SpecialLettersAreVisible", [] { return Clear(" \xE4  \xF6 "); }, "\xE4 \xF6"},
    {"Empty", [] { return Clear(""); }, ""},
};
INSTANTIATE_TEST_SUITE_P(Clear, StreamText, testing::ValuesIn(kClearRows), kName);

const TextRow kWidthRows[] = {
    {"LeftPads", [] { return Left("abc", 5); }, "abc  "},
    {"LeftCuts", [] { return Left("abc", 2); }, "ab"},
    {"LeftOfItsOwnWidth", [] { return Left("abc", 3); }, "abc"},
    {"LeftZero", [] { return Left("abc", 0); }, ""},
    {"LeftNegative", [] { return Left("abc", -1); }, "abc"},
    {"LeftOfNothing", [] { return Left("", 5); }, ""},
    {"RightPads", [] { return Right("abc", 5); }, "  abc"},
    {"RightCuts", [] { return Right("abc", 2); }, "bc"},
    {"RightOfItsOwnWidth", [] { return Right("abc", 3); }, "abc"},
    {"RightZero", [] { return Right("abc", 0); }, ""},
    {"RightNegative", [] { return Right("abc", -1); }, "abc"},
    {"RightOfNothing", [] { return Right("", 5); }, ""},
    {"UpperCaseOfAsciiOnly", [] { return UpperCase("aZ1\xE4"); }, "AZ1\xE4"},
};
INSTANTIATE_TEST_SUITE_P(Width, StreamText, testing::ValuesIn(kWidthRows), kName);

const std::string kNew = "head<new 1>middle<new 2>tail";

const TextRow kMergeRows[] = {
    {"SameTextStays", [] { return Merge(kNew, kNew, "<", ">"); }, kNew},
    {"OldRegionsTakeTheirPlaces", [] { return Merge(kNew, "head<kept>middle<also>tail", "<", ">"); },
     "head<kept>middle<also>tail"},
    {"NoOldText", [] { return Merge(kNew, "", "<", ">"); }, "headnew 1middlenew 2tail"},
    {"AnAnchorThatIsGone", [] { return Merge(kNew, "head<kept>tail", "<", ">"); }, "headnew 1middle<kept>tail"},
    {"AnchorsAreLookedForInOrder", [] { return Merge("b<1>a", "a-b", "<", ">"); }, "a-b1a"},
    {"OldTextBehindTheLastAnchorIsLost", [] { return Merge("head<1>tail", "head<2>tail and more", "<", ">"); },
     "head<2>tail"},
    {"ALastRegionIsLost", [] { return Merge("head<1>", "head<2>", "<", ">"); }, "head"},
    {"RegionWithoutEnd", [] { return Merge("head<1", "", "<", ">"); }, "head"},
    {"RegionBehindRegion", [] { return Merge("a<1><2>b", "", "<", ">"); }, "a12b"},
    {"RegionInFront", [] { return Merge("<1>a", "old a", "<", ">"); }, "old a"},
    {"RegionOfOneByte", [] { return Merge("a<1>b", "", "<", ">"); }, "a1b"},
    {"BlankAnchor", [] { return Merge("a<1>\n<2>b", "a<3>\n<4>b", "<", ">"); }, "a<3>\n<4>b"},
    {"RepeatedAnchor", [] { return Merge("x<1>x<2>x", "x[a]x", "<", ">"); }, "x[a]x2x"},
    {"EmptyStartMark", [] { return Merge("a>b", "", "", ">"); }, "a>b"},
    {"EmptyEndMark", [] { return Merge("a<b", "", "<", ""); }, "a"},
    {"NoNewText", [] { return Merge("", "old", "<", ">"); }, ""},
};
INSTANTIATE_TEST_SUITE_P(Merge, StreamText, testing::ValuesIn(kMergeRows), kName);

// The merge as a walk over positions, step by step as it is defined.
std::string PlainMerge(const std::string& t, const std::string& m, const std::string& s, const std::string& e) {
    std::string out, pending;
    std::size_t p = 0, q = 0;
    while (p < t.size()) {
        const std::size_t start = t.find(s, p);
        const std::size_t end = start == std::string::npos ? start : t.find(e, start + s.size());
        const std::string anchor = t.substr(p, start == std::string::npos ? start : start - p);
        std::string inner;
        if (end != std::string::npos) inner = t.substr(start + s.size(), end - start - s.size());
        if (start != std::string::npos && end == std::string::npos) inner = t.substr(start + s.size());
        p = end == std::string::npos ? t.size() : end + e.size();
        const std::size_t found = anchor.empty() ? std::string::npos : m.find(anchor, q);
        if (found == std::string::npos) {
            out += pending + anchor;
        } else {
            out += m.substr(q, found + anchor.size() - q);
            q = found + anchor.size();
        }
        pending = inner;
    }
    return out;
}

// All texts of up to `longest` letters of `alphabet`.
std::vector<std::string> AllTexts(const std::string& alphabet, std::size_t longest) {
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i].size() == longest) continue;
        for (char letter : alphabet)
            texts.push_back(texts[i] + letter);
    }
    return texts;
}

TEST(StreamMerge, EqualsThePlainWalkOnAllSmallTexts) {
    const std::vector<std::string> oldTexts = AllTexts("ab<>", 3);
    for (const std::string& newText : AllTexts("ab<>", 6)) {
        for (const std::string& oldText : oldTexts) {
            ASSERT_EQ(Merge(newText, oldText, "<", ">"), PlainMerge(newText, oldText, "<", ">"))
                << newText << " with " << oldText;
        }
    }
}

// Many anchors of which some are gone, some have moved and some come twice: more misses than are looked for one by one.
TEST(StreamMerge, EqualsThePlainWalkWithManyAnchors) {
    std::mt19937 random(1);
    const auto makeText = [&](std::size_t names, std::size_t regions) {
        std::string text;
        for (std::size_t i = 0; i < regions; ++i) {
            const std::size_t name = random() % 3 == 0 ? random() % names : i;
            text += "void function_" + std::to_string(name) + "() {<body " + std::to_string(random()) + ">}\n";
        }
        return text;
    };
    for (const std::size_t names : {5U, 60U, 1000U}) {
        const std::string newText = makeText(names, 300), oldText = makeText(names, 300);
        EXPECT_EQ(Merge(newText, oldText, "<", ">"), PlainMerge(newText, oldText, "<", ">")) << names;
    }
}

}  // namespace
}  // namespace kvl
