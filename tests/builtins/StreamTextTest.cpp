// The text operations behind the stream macros.
#include "builtins/StreamText.h"

#include <gtest/gtest.h>

#include <random>

#include "PlainMerge.h"
#include "support/TextTable.h"

namespace kvl {
namespace {

const TextCalls kCalls = {
    {"Replace2", [](const Texts& a) { return Texts{Replace2(a[0], a[1], a[2], a[3])}; }},
    {"Clear", [](const Texts& a) { return Texts{Clear(a[0])}; }},
    {"UpperCase", [](const Texts& a) { return Texts{UpperCase(a[0])}; }},
    {"Left", [](const Texts& a) { return Texts{Left(a[0], std::stoi(a[1]))}; }},
    {"Right", [](const Texts& a) { return Texts{Right(a[0], std::stoi(a[1]))}; }},
    {"Merge", [](const Texts& a) { return Texts{Merge(a[0], a[1], a[2], a[3])}; }},
};

class StreamText : public testing::TestWithParam<TextCase> {};
KVL_INSTANTIATE_CASES(StreamText, "builtins/StreamText.cases");

TEST_P(StreamText, Gives) {
    ExpectTable(GetParam(), kCalls);
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
