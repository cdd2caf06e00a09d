// The text operations behind the stream macros.
#include "builtins/StreamText.h"

#include <gtest/gtest.h>

#include <random>

#include "PlainMerge.h"
#include "support/CaseFile.h"

namespace kvl {
namespace {

// The words of a call: texts between quotation marks, with escapes, or numbers.
std::vector<std::string> ReadWords(const std::string& line) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ' ') continue;
        std::string& word = words.emplace_back();
        const char end = line[i] == '"' ? '"' : ' ';
        for (i += end == '"' ? 1 : 0; i < line.size() && line[i] != end; ++i) {
            constexpr std::string_view kEscapes = "t\tr\rn\n";
            if (line[i] != '\\') {
                word += line[i];
            } else if (line[++i] == 'x') {
                word += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
                i += 2;
            } else {
                word += kEscapes[kEscapes.find(line[i]) + 1];
            }
        }
    }
    return words;
}

std::string Call(const std::vector<std::string>& words) {
    const std::string &name = words.at(0), &text = words.at(1);
    const auto word = [&](std::size_t i) -> const std::string& { return words.at(i + 1); };
    if (name == "Replace2") return Replace2(text, word(1), word(2), word(3));
    if (name == "Clear") return Clear(text);
    if (name == "UpperCase") return UpperCase(text);
    if (name == "Left") return Left(text, std::stoi(word(1)));
    if (name == "Right") return Right(text, std::stoi(word(1)));
    return name == "Merge" ? Merge(text, word(1), word(2), word(3)) : "no such call";
}

class StreamText : public testing::TestWithParam<TextCase> {};

TEST_P(StreamText, Gives) {
    EXPECT_EQ(Call(ReadWords(GetParam().Line("call"))), ReadWords(GetParam().Line("gives")).at(0));
}

KVL_INSTANTIATE_CASES(StreamText, "builtins/StreamText.cases");

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
