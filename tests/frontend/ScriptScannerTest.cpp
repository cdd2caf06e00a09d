// The script scanner alone: sources and the tokens that they are cut into.

#include <gtest/gtest.h>

#include <string>

#include "frontend/PoutScanX.h"
#include "frontend/ScriptSource.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

// The tokens as `NAME<text>`, ended by "end" or "failed".
std::string Tokens(PoutScanX& scanner) {
    std::string tokens;
    for (;;) {
        const int token = scanner.Lex();
        if (token == 0) return tokens + "end";
        if (token == PoutScanX::kFailed) return tokens + "failed";
        const bool isByte = token < 256;
        tokens += isByte ? "'" + std::string(1, static_cast<char>(token)) + "'" : std::string(ScriptTokenName(token));
        if (!isByte || scanner.TokenText() != std::string(1, static_cast<char>(token)))
            tokens += "<" + std::string(scanner.TokenText()) + ">";
        tokens += " ";
    }
}

class ScriptScannerTest : public ScriptTest {
protected:
    static std::string TokensOf(std::string_view source) {
        CommandList list;
        PoutScanX scanner({kEntityMacroScript, "", "source"}, list);
        scanner.Source().SetConstantSource(source);
        return Tokens(scanner);
    }
};

class ScriptTokenTest : public ScriptScannerTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(ScriptTokenTest, "frontend/ScriptTokens.cases");

TEST_P(ScriptTokenTest, SourceIsCutIntoTokens) {
    ExpectSection(GetParam(), "tokens", Written(TokensOf(BytesOf(GetParam().Line("source")))));
}

TEST_F(ScriptScannerTest, LineStartGoesFromSourceToSource) {
    EXPECT_EQ(TokensOf("$ \nb"), "failed");
    EXPECT_EQ(TokensOf("a\n"), "TEXT<a\n> end");
    EXPECT_EQ(TokensOf("$ \nb"), "TEXT<b> end");
    EXPECT_EQ(TokensOf("$ \nb"), "failed");
    EXPECT_EQ(TokensOf("a\n"), "TEXT<a\n> end");
    ResetProcessState();  // as the next run does
    EXPECT_EQ(TokensOf("$ \nb"), "failed");
}

TEST_F(ScriptScannerTest, SourceBehindUnfinishedCommandStartsAsText) {
    EXPECT_EQ(TokensOf("$x"), "'$' IDENTIFIER<x> end");
    EXPECT_EQ(TokensOf("x"), "TEXT<x> end");
}

TEST_F(ScriptScannerTest, OneByteMoreThanTheLongestTokenIsFatal) {
    constexpr std::size_t kLongest = 1049215;
    const struct {
        std::string before, after;
    } rows[] = {{"a b ", " c"}, {"", ""}, {"$", "$"}, {"$a", ":b$"}, {"$a:", "$"}, {"$1", "$"}};
    for (const auto& [before, after] : rows) {
        const std::size_t begun = before.find_first_of(":1") == std::string::npos ? before == "$a" : 1;
        const std::string longest = before + std::string(kLongest - begun, 'x');
        EXPECT_TRUE(TokensOf(longest + after).ends_with("end")) << before;
        EXPECT_TRUE(TokensOf(longest + "x" + after).ends_with("failed")) << before;
    }
    CommandList list;
    std::string source = "$" + std::string(kLongest + 1, 'x') + "$";
    EXPECT_FALSE(ParseScriptSourceStream(kEntityMacroScript, "S", source, list));
    EXPECT_NE(Shown().find("ERROR: ERR_EXEC_ENVIRON_FATAL_1\nFatal error: Token buffer overflow\n"), std::string::npos);
}

TEST_F(ScriptScannerTest, LiteralsCommentsAndBrokenTextHaveNoLimit) {
    const std::string words(3000000, 'x');
    EXPECT_TRUE(TokensOf("$\"" + words + "\"$").ends_with("end"));
    EXPECT_TRUE(TokensOf("$/*" + words + "*/$").ends_with("end"));
    std::string text;
    for (int word = 0; word < 1000; ++word)
        text += std::string(4000, 'x') + '-';
    EXPECT_TRUE(TokensOf(text).ends_with("end"));
}

}  // namespace
}  // namespace kvl
