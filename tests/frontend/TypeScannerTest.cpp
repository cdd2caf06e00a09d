// The tokens of type files, what the automaton fetches to know them, and its limits.
#include <gtest/gtest.h>

#include "frontend/PinScanX.h"
#include "frontend/TypeSupport.h"

namespace kvl {
namespace {

// All tokens with their texts where these tell more than the name, and the line of each that is not on line 1.
std::string Tokens(std::string_view source) {
    PinScanX scanner({kEntityType, "", ""});
    scanner.Source().SetConstantSource(source);
    std::string result;
    for (;;) {
        const int token = scanner.Lex();
        if (token == 0) return result;
        if (!result.empty()) result += ' ';
        if (token == PinScanX::kFailed) return result += "FAILED";
        result += TypeTokenName(token);
        const std::string_view text = scanner.TokenText();
        if (token >= 256 && text != TypeTokenName(token)) result += "(" + std::string(text) + ")";
        if (scanner.LineNumber() > 1) result += "@" + std::to_string(scanner.LineNumber());
    }
}

std::string FetchedForTheFirst(std::string_view source) {
    PinScanX scanner({kEntityType, "", ""});
    scanner.Source().SetConstantSource(source);
    scanner.Lex();
    return std::to_string(scanner.CharacterCount());
}

class TypeTokenTest : public TypeFrontEndTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(TypeTokenTest, "frontend/TypeTokens.cases");

TEST_P(TypeTokenTest, SourceIsCutIntoTokens) {
    const std::string source = BytesOf(GetParam().Line("source"));
    if (const std::string fetched = GetParam().Line("fetched"); !fetched.empty())
        ExpectSection(GetParam(), "fetched", FetchedForTheFirst(source));
    else
        ExpectSection(GetParam(), "tokens", Written(Tokens(source)));
}

TEST_F(TypeFrontEndTest, LiteralsCommentsAndBlanksHaveNoLimit) {
    const std::string filling(PinScanX::kLongestToken + 10, ' ');
    EXPECT_EQ(Tokens("'" + filling + "'").size(), filling.size() + std::string_view("WEAK_LITERAL('')").size());
    EXPECT_EQ(Tokens("/*" + filling + "*/A//" + filling + "\nB$/*" + filling + "*/$C" + filling + "D"),
              "IDENTIFIER(A) IDENTIFIER(B)@2 IDENTIFIER(C)@2 IDENTIFIER(D)@2");
}

// Each source would take hours if anything were looked at again and again.
TEST_F(TypeFrontEndTest, LongSourcesAreReadOnce) {
    constexpr std::size_t kCount = 400000;
    const auto repeat = [](std::string_view piece) {
        std::string text;
        for (std::size_t i = 0; i < kCount; ++i)
            text += piece;
        return text;
    };
    EXPECT_EQ(Tokens("'" + repeat("''")), "FAILED");
    EXPECT_EQ(Tokens("/*" + repeat("* /")), "FAILED");
    EXPECT_EQ(Tokens("$/*" + repeat("* / ")), "FAILED");
    EXPECT_EQ(Tokens(repeat("\r\x80")), "");
    EXPECT_EQ(Tokens(repeat("$/**/$")), "");
    EXPECT_EQ(Tokens(repeat("//\n/**/")), "");
}

}  // namespace
}  // namespace kvl
