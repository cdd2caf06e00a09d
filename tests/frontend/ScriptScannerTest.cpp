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
    std::string TokensOf(std::string_view source) {
        CommandList list;
        PoutScanX scanner({kEntityMacroScript, "", "source"}, list);
        scanner.Source().SetConstantSource(source);
        return Tokens(scanner);
    }
};

struct TokenRow {
    const char* name;
    std::string_view source, tokens;
};
void PrintTo(const TokenRow& row, std::ostream* stream) {
    *stream << row.source;
}

// What stands between the dollars of one command.
class ScriptCodeTest : public ScriptScannerTest, public testing::WithParamInterface<TokenRow> {};

constexpr TokenRow kCodeRows[] = {
    {"Name", "Ab_1", "IDENTIFIER<Ab_1>"},
    {"NameParts", "A:B:~:C", "IDENTIFIER<A> NAME_PART<:B> GAP_PART<:~> NAME_PART<:C>"},
    {"PartsBehindBlanks", "A :B", "IDENTIFIER<A> NAME_PART<:B>"},
    {"KeywordInFrontOfColon", "BEGIN:END", "IDENTIFIER<BEGIN> NAME_PART<:END>"},
    {"KeywordInFrontOfBlankAndColon", "BEGIN :X", "BEGIN<BEGIN> NAME_PART<:X>"},
    {"KeywordInFrontOfTypeMark", "SET::X", "IDENTIFIER<SET> TYPE_MARK<::> IDENTIFIER<X>"},
    {"Keywords", "KVL VERSION BEGIN END SCRIPT PATTERN ALL IF",
     "KVL<KVL> VERSION<VERSION> BEGIN<BEGIN> END<END> SCRIPT<SCRIPT> PATTERN<PATTERN> ALL<ALL> IF<IF>"},
    {"MoreKeywords", "CHANGE EXTEND SEPARATOR COMMENT SET GET TRUE FALSE",
     "CHANGE<CHANGE> EXTEND<EXTEND> SEPARATOR<SEPARATOR> COMMENT<COMMENT> SET<SET> GET<GET> BOOLEAN<TRUE> "
     "BOOLEAN<FALSE>"},
    {"KeywordsHaveCase", "begin Begin BEGINS", "IDENTIFIER<begin> IDENTIFIER<Begin> IDENTIFIER<BEGINS>"},
    {"Assignments",
     "= += -= *= /= %=", "ASSIGN<=> ADD_ASSIGN<+=> SUB_ASSIGN<-=> MUL_ASSIGN<*=> DIV_ASSIGN</=> MOD_ASSIGN<%=>"},
    {"Comparisons", "== != < > <= >=", "EQUAL<==> NOT_EQUAL<!=> LESS<<> GREATER<>> LESS_EQUAL<<=> GREATER_EQUAL<>=>"},
    {"ThreeEqualSigns", "===", "EQUAL<==> ASSIGN<=>"},
    {"LineMarks", "\\n/", "NEWLINE_MARK<\\n> CONTINUE_MARK</>"},
    {"Brackets", "[](),#&!", "LBRACKET<[> RBRACKET<]> '(' ')' ',' '#' '&' '!'"},
    {"BytesForThemselves", "+ - * % ' ; ? ~", "'+' '-' '*' '%' ''' ';' '?' '~'"},
    {"BytesWithoutRule", "\\ @ ^ ` { | } : .",
     "TEXT<\\> TEXT<@> TEXT<^> TEXT<`> TEXT<{> TEXT<|> TEXT<}> TEXT<:> TEXT<.>"},
    {"SpecialLetters",
     "\xE4\xF6\xFC"
     "a",
     "TEXT<\xE4\xF6\xFC> IDENTIFIER<a>"},
    {"DroppedBytes", "A\x01\x80\r\tB", "IDENTIFIER<A> IDENTIFIER<B>"},
    {"Integers", "0 12 +12 -12 12u 12uLlU",
     "INTEGER<0> INTEGER<12> INTEGER<+12> INTEGER<-12> INTEGER<12u> INTEGER<12uLlU>"},
    {"Floats", "1. 1.5 .5 1e5 1.e5 1.5e-5 .5E+5",
     "FLOAT<1.> FLOAT<1.5> FLOAT<.5> FLOAT<1e5> FLOAT<1.e5> FLOAT<1.5e-5> FLOAT<.5E+5>"},
    {"FloatSuffixes", "1.f 1.5F .5l 1e5L 1e+5f 1.5fx",
     "FLOAT<1.f> FLOAT<1.5F> FLOAT<.5l> FLOAT<1e5L> FLOAT<1e+5f> FLOAT<1.5f> IDENTIFIER<x>"},
    {"SignMakesInteger", "-1.5 +1e5", "INTEGER<-1> FLOAT<.5> INTEGER<+1> IDENTIFIER<e5>"},
    {"RunsOfLettersAndDigits", "0x1F 12f 12u5 1e5fx 1_", "'0'<0x1F> '1'<12f> '1'<12u5> '1'<1e5fx> '1'<1_>"},
    {"BrokenExponents", "1e+x 1.5e+x 1.5ex",
     "'1'<1e> '+' IDENTIFIER<x> FLOAT<1.5> IDENTIFIER<e> '+' IDENTIFIER<x> FLOAT<1.5> IDENTIFIER<ex>"},
    {"ExponentTwice", "1e5.5 1.5.5", "FLOAT<1e5> FLOAT<.5> FLOAT<1.5> FLOAT<.5>"},
    {"SignInFrontOfEquals", "+=1 +==", "ADD_ASSIGN<+=> INTEGER<1> ADD_ASSIGN<+=> ASSIGN<=>"},
    {"Literals", "\"\" \"a\" \"a\"\"b\"\"\"", "LITERAL<\"\"> LITERAL<\"a\"> LITERAL<\"a\"\"b\"\"\">"},
    {"LiteralHoldsAnything", "\"$x$ /* \\n \x01\xE4\"", "LITERAL<\"$x$ /* \\n \x01\xE4\">"},
    {"LiteralBehindName", "A\"b\"c", "IDENTIFIER<A> LITERAL<\"b\"> IDENTIFIER<c>"},
};

TEST_P(ScriptCodeTest, CutsIntoTokens) {
    EXPECT_EQ(TokensOf("$" + std::string(GetParam().source) + "$"),
              "'$' " + std::string(GetParam().tokens) + " '$' end");
}
INSTANTIATE_TEST_SUITE_P(Rows, ScriptCodeTest, testing::ValuesIn(kCodeRows), RowName<TokenRow>);

// Whole sources, text mode first.
class ScriptTextTest : public ScriptScannerTest, public testing::WithParamInterface<TokenRow> {};

constexpr TokenRow kTextRows[] = {
    {"Empty", "", "end"},
    {"TextIsOneRun", "a b\t1.5\n\nc\"d\\n", "TEXT<a b\t1.5\n\nc\"d\\n> end"},
    {"CarriageReturnsVanish", "a\r\nb\r\n", "TEXT<a> TEXT<\nb> TEXT<\n> end"},
    {"ForeignBytesVanish", std::string_view("\0a\x80\xE4\x7F", 5), "TEXT<a> TEXT<\xE4> end"},
    {"DoubledDollar", "a$$b", "TEXT<a> TEXT<$> TEXT<b> end"},
    {"FourDollars", "$$$$", "TEXT<$> TEXT<$> end"},
    {"LoneDollarAtEnd", "a$", "TEXT<a> end"},
    {"BackslashIsText", "\\$x$", "TEXT<\\> '$' IDENTIFIER<x> '$' end"},
    {"TextBehindCommand", "$x$ y", "'$' IDENTIFIER<x> '$' TEXT< y> end"},
    {"UnfinishedCommand", "$x", "'$' IDENTIFIER<x> end"},
    {"DollarBlankInLine", "a$ b", "TEXT<a> failed"},
    {"DollarBlankAtStart", "$ \n", "failed"},
    {"MarkerLine", "a\n$ \t\r\nb", "TEXT<a\n> TEXT<b> end"},
    {"MarkerLineOfDollarOnly", "a\n$\n$\nb", "TEXT<a\n> TEXT<b> end"},
    {"MarkerLineBehindBlank", "a\n $\n", "TEXT<a\n > failed"},
    {"MarkerLineAtEnd", "a\n$ ", "TEXT<a\n> end"},
    {"MarkerLineWithVisible", "a\n$ x\n", "TEXT<a\n> failed"},
    {"MarkerLineBehindCommand", "\n$x$$ ", "TEXT<\n> '$' IDENTIFIER<x> '$' failed"},
    {"MarkerLineBehindDollars", "\n$$$ \n", "TEXT<\n> TEXT<$> failed"},
    {"MarkerLineBehindDropped", "a\n\r$ \nb", "TEXT<a\n> TEXT<b> end"},
    {"SpecialLetterOpensCommand", "$\xE4$", "'$' TEXT<\xE4> '$' end"},
    {"LineEndInCommand", "$x\n$", "'$' IDENTIFIER<x> failed"},
    {"LineEndInLiteral", "$\"x\n\"$", "'$' failed"},
    {"EndInLiteral", "$\"x\"\"", "'$' failed"},
    {"DollarComment", "a$/*x*/$b", "TEXT<a> TEXT<b> end"},
    {"DollarCommentWithBlanks", "$/* a * / $b", "TEXT<b> end"},
    {"DollarCommentNeedsStar", "$/*/$b*/$c", "TEXT<c> end"},
    {"DollarCommentOverLines", "$/* *\n/\n$\nb", "TEXT<\nb> end"},
    {"DollarCommentKeepsLineStart", "\n$/*x*/$$ \nb", "TEXT<\n> TEXT<b> end"},
    {"DollarCommentNotClosed", "$/* */", "failed"},
    {"SlashAlone", "$/$a", "'$' CONTINUE_MARK</> '$' TEXT<a> end"},
    {"SlashAtEnd", "$/", "'$' CONTINUE_MARK</> end"},
    {"NoCommentInsideCommand", "$a/*b$", "'$' IDENTIFIER<a> CONTINUE_MARK</> '*' IDENTIFIER<b> '$' end"},
};

TEST_P(ScriptTextTest, CutsIntoTokens) {
    EXPECT_EQ(TokensOf(GetParam().source), GetParam().tokens);
}
INSTANTIATE_TEST_SUITE_P(Rows, ScriptTextTest, testing::ValuesIn(kTextRows), RowName<TokenRow>);

TEST_F(ScriptScannerTest, LineStartGoesFromSourceToSource) {
    EXPECT_EQ(TokensOf("$ \nb"), "failed");
    EXPECT_EQ(TokensOf("a\n"), "TEXT<a\n> end");
    EXPECT_EQ(TokensOf("$ \nb"), "TEXT<b> end");
    EXPECT_EQ(TokensOf("$ \nb"), "failed");
}

TEST_F(ScriptScannerTest, SourceBehindUnfinishedCommandStartsAsText) {
    EXPECT_EQ(TokensOf("$x"), "'$' IDENTIFIER<x> end");
    EXPECT_EQ(TokensOf("x"), "TEXT<x> end");
}

struct LimitRow {
    const char* name;
    const char* before;
    const char* after;
    std::size_t longest;
};
void PrintTo(const LimitRow& row, std::ostream* stream) {
    *stream << row.name;
}

class ScriptLimitTest : public ScriptScannerTest, public testing::WithParamInterface<LimitRow> {};

TEST_P(ScriptLimitTest, OneByteMoreIsFatal) {
    const auto source = [](std::size_t length) {
        return GetParam().before + std::string(length, 'x') + GetParam().after;
    };
    EXPECT_TRUE(TokensOf(source(GetParam().longest)).ends_with("end"));
    EXPECT_TRUE(TokensOf(source(GetParam().longest + 1)).ends_with("failed"));
}
INSTANTIATE_TEST_SUITE_P(Rows, ScriptLimitTest,
                         testing::Values(LimitRow{"Text", "a b ", " c", 1049215},
                                         LimitRow{"TextAtEnd", "", "", 1049215}, LimitRow{"Name", "$", "$", 1049215},
                                         LimitRow{"NamePart", "$a:", "$", 1049214}),
                         RowName<LimitRow>);

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
