// The operations on texts, as tables of what they make of their arguments.
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "support/TestPlatform.h"
#include "support/TextTable.h"
#include "text/ByteClass.h"
#include "text/Escapes.h"
#include "text/Numbers.h"
#include "text/Paths.h"
#include "text/ProcessState.h"
#include "text/Replace.h"
#include "text/Trim.h"
#include "text/Utf8.h"

namespace kvl {
namespace {

Texts Encoded(const std::string& text) {
    // What lies in front is left alone, and encoding again changes nothing.
    std::string encoded = "\xC4|" + text;
    EncodeSpecialLetters(encoded, 2);
    std::string again = encoded;
    EncodeSpecialLetters(again, 2);
    EXPECT_EQ(again, encoded);
    EXPECT_TRUE(encoded.starts_with("\xC4|"));
    return {encoded.substr(2)};
}

Texts Folded(const std::string& text) {
    bool isUtf8 = false;
    const std::string folded = FoldUtf8(text, isUtf8);
    return {folded, isUtf8 ? "UTF-8" : ""};
}

Texts WithLineEnds(const std::string& text) {
    std::string plain, value;
    AppendWithCrLf(plain, text);
    AppendValueWithCrLf(value, text);
    return {plain, value};
}

Texts Trimmed(const std::string& text) {
    EXPECT_EQ(IsAllInvisible(text), TrimInvisible(text).empty());
    return {std::string(TrimInvisible(text)), std::string(TrimInvisibleEnd(text)),
            std::string(TrimInvisibleFront(text))};
}

Texts PathParts(const std::string& path) {
    Texts parts;
    for (int mode = 0; mode < 6; ++mode)
        parts.push_back(PathPart(path, PathMode{mode}));
    return parts;
}

Texts Resolved(std::string path) {
    const bool isAbsolute = IsAbsolutePath(path);
    EXPECT_TRUE(ResolveAbsolutePath(path));
    return {path, isAbsolute ? "absolute" : "relative"};
}

Texts FloatIn(const std::string& text) {
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.17g", ReadFloat(text));
    return {digits, StartsFloat(text) ? "starts one" : ""};
}

const TextCalls kCalls = {
    {"ResolveEscapes", [](const Texts& a) { return Texts{ResolveEscapes(a[0])}; }},
    {"UnquoteLiteral", [](const Texts& a) { return Texts{UnquoteLiteral(a[0], a[1][0])}; }},
    {"ReplaceAll", [](const Texts& a) { return Texts{ReplaceAll(a[0], a[1], a[2])}; }},
    {"AppendWithCrLf", [](const Texts& a) { return WithLineEnds(a[0]); }},
    {"Trim", [](const Texts& a) { return Trimmed(a[0]); }},
    {"FoldUtf8", [](const Texts& a) { return Folded(a[0]); }},
    {"EncodeSpecialLetters", [](const Texts& a) { return Encoded(a[0]); }},
    {"PathPart", [](const Texts& a) { return PathParts(a[0]); }},
    {"NormalizePath", [](const Texts& a) { return Texts{NormalizePath(a[0])}; }},
    {"ResolveAbsolutePath", [](const Texts& a) { return Resolved(a[0]); }},
    {"ReadInteger",
     [](const Texts& a) {
         return Texts{std::to_string(ReadInteger(a[0])), StartsInteger(a[0]) ? "starts one" : ""};
     }},
    {"ReadFloat", [](const Texts& a) { return FloatIn(a[0]); }},
    {"TruncateToInteger",
     [](const Texts& a) { return Texts{std::to_string(TruncateToInteger(std::strtod(a[0].c_str(), nullptr)))}; }},
    {"IsIdentifier", [](const Texts& a) { return Texts{IsIdentifier(a[0]) ? "yes" : "no"}; }},
};

class TextsTest : public testing::TestWithParam<TextCase> {
protected:
    TextsTest() {
        ResetProcessState();
        Process().mainScriptDrive = "C:";
    }
    ~TextsTest() override { ResetProcessState(); }

    const ScopedPlatform outside_;
};
KVL_INSTANTIATE_CASES(TextsTest, "text/Texts.cases");

TEST_P(TextsTest, Give) {
    ExpectTable(GetParam(), kCalls);
}

TEST(NumbersTest, FloatTextAsPrintf) {
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        char expected[64];
        std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
        ASSERT_EQ(FloatText(value), expected);
    }
    EXPECT_EQ(FloatText(1000000.0F), "1e+06");
    EXPECT_EQ(FloatText(-0.0F), "-0");
    EXPECT_EQ(ReadFloat(std::string_view("12.5", 2)), 12.0);
}

TEST(PathsTest, AbsolutePathHasALongestLength) {
    const ScopedPlatform outside;
    std::string path = std::string(kLongestPath - std::string_view("/home/").size(), 'x');
    EXPECT_TRUE(ResolveAbsolutePath(path));
    EXPECT_EQ(path.size(), kLongestPath);
    path += 'x';
    const std::string before = path;
    EXPECT_FALSE(ResolveAbsolutePath(path));
    EXPECT_EQ(path, before);
}

TEST(ByteClassTest, EveryByteHasItsClass) {
    const std::string special = "\xA7\xA9\xB0\xB5\xC4\xD6\xDC\xDF\xE4\xF6\xFC";
    for (int value = 0; value < 256; ++value) {
        const char c = static_cast<char>(value);
        const bool isSpecial = special.find(c) != std::string::npos;
        EXPECT_EQ(IsSpecialLetter(c), isSpecial) << value;
        EXPECT_EQ(IsInvisible(c), !isSpecial && (value <= 0x20 || value >= 0x7F)) << value;
        const bool letter = (value >= 65 && value <= 90) || value == 95 || (value >= 97 && value <= 122);
        EXPECT_EQ(IsLetter(c), letter) << value;
        EXPECT_EQ(IsNameByte(c), letter || (value >= 48 && value <= 57)) << value;
    }
}

}  // namespace
}  // namespace kvl
