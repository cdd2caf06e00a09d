// The tokens of type files: the tables of the language, what the automaton fetches, and a plain reference scanner that
// must agree on all short texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frontend/PinScanX.h"
#include "frontend/TypeSupport.h"
#include "text/ByteClass.h"

namespace kvl {
namespace {

class TypeTokenTest : public TypeFrontEndTest {
protected:
    // All tokens with their texts where these tell more than the name, and the line of each that is not on line 1.
    static std::string Tokens(std::string_view source) {
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
};

struct TokenRow {
    const char* name;
    std::string_view source, expected;
};

class TypeTokenTableTest : public TypeTokenTest, public testing::WithParamInterface<TokenRow> {};

TEST_P(TypeTokenTableTest, Tokens) {
    EXPECT_EQ(Tokens(GetParam().source), GetParam().expected);
}

constexpr TokenRow kTokenRows[] = {
    {"Empty", "", ""},
    {"Words", "BEGIN END KVL VERSION", "BEGIN END KVL VERSION"},
    {"Categories", "SEQUENCE LIST CHOICE PERMUTATION DISTANCE NESTED STREAM OPTION LINE",
     "SEQUENCE LIST CHOICE PERMUTATION DISTANCE NESTED STREAM OPTION LINE"},
    {"Types", "STRING INTEGER FLOAT BOOL IDENTIFIER WHITESPACES",
     "STRING INTEGER FLOAT BOOL IDENTIFIER_TYPE(IDENTIFIER) WHITESPACE_TYPE(WHITESPACES)"},
    {"QualifiedTypes", "KVL:STRING KVL:INTEGER KVL:FLOAT KVL:BOOL",
     "STRING(KVL:STRING) INTEGER(KVL:INTEGER) FLOAT(KVL:FLOAT) BOOL(KVL:BOOL)"},
    {"TypesWithoutAQualifiedForm", "KVL:IDENTIFIER KVL:WHITESPACES",
     "KVL NAME_MARK(:) IDENTIFIER_TYPE(IDENTIFIER) KVL NAME_MARK(:) WHITESPACE_TYPE(WHITESPACES)"},
    {"QualifiedTypeEndsWhereItIsComplete", "KVL:STRINGX KVL:BOOLEAN",
     "STRING(KVL:STRING) IDENTIFIER(X) BOOL(KVL:BOOL) IDENTIFIER(EAN)"},
    {"QualifiedTypeCutShort", "KVL:X KVL:STRIN KVL KVL:: KVL:",
     "KVL NAME_MARK(:) IDENTIFIER(X) KVL NAME_MARK(:) IDENTIFIER(STRIN) KVL KVL TYPE_MARK(::) KVL NAME_MARK(:)"},
    {"QualifiedTypeInsideAName", "XKVL:STRING KVLX:STRING",
     "IDENTIFIER(XKVL) NAME_MARK(:) STRING IDENTIFIER(KVLX) NAME_MARK(:) STRING"},
    {"LongerThanAWord", "LISTE STRINGS LIST_ LIST1 WHITESPACE WHITESPACESS",
     "IDENTIFIER(LISTE) IDENTIFIER(STRINGS) IDENTIFIER(LIST_) IDENTIFIER(LIST1) IDENTIFIER(WHITESPACE) "
     "IDENTIFIER(WHITESPACESS)"},
    {"CaseCounts", "list String begin", "IDENTIFIER(list) IDENTIFIER(String) IDENTIFIER(begin)"},
    {"Names", "_ a1_B Z", "IDENTIFIER(_) IDENTIFIER(a1_B) IDENTIFIER(Z)"},
    {"Marks", ":: : ::: :::: << >> {}=",
     "TYPE_MARK(::) NAME_MARK(:) TYPE_MARK(::) NAME_MARK(:) TYPE_MARK(::) TYPE_MARK(::) KEYWORD_OPEN(<<) "
     "KEYWORD_CLOSE(>>) { } ="},
    {"HalfAMark", "< > <<<", "< > KEYWORD_OPEN(<<) <"},
    {"TypeOpen", "$TYPE$TYPEX$TYP $T$",
     "TYPE_OPEN($TYPE) TYPE_OPEN($TYPE) IDENTIFIER(X) $ IDENTIFIER(TYP) $ "
     "IDENTIFIER(T) $"},
    {"Dollar", "$ $$ $/ $/x", "$ $ $ $ / $ / IDENTIFIER(x)"},
    {"DigitsAreNoNumber", "123 1A", "1 2 3 1 IDENTIFIER(A)"},
    {"OtherVisibleBytes", "!#%&()*+,-.;?@[\\]^`|~", "! # % & ( ) * + , - . ; ? @ [ \\ ] ^ ` | ~"},
    {"SpecialLettersAreOneToken", "\xE4\xF6\xFC\xDF\xE4", "\xE4"},
    {"SpecialLettersAreNoNameBytes", "A\xE4\xE4\x42", "IDENTIFIER(A) \xE4 IDENTIFIER(B)"},
    {"Utf8LettersAreFolded", "\xC3\xA4", "\xE4"},
    {"BlanksAreSkipped", " \t\v\fA \n\n B\n", "IDENTIFIER(A) IDENTIFIER(B)@3"},
    {"ForeignBytesAreDropped", {"A\r\0\x01\x7F\x80\xFF\rB", 9}, "IDENTIFIER(A) IDENTIFIER(B)"},
    {"ForeignBytesEndAName", "A\r\x42", "IDENTIFIER(A) IDENTIFIER(B)"},

    {"StrictLiteral", R"("" "a" "a""b" """" "it's")",
     R"(STRICT_LITERAL("") STRICT_LITERAL("a") STRICT_LITERAL("a""b") STRICT_LITERAL("""") STRICT_LITERAL("it's"))"},
    {"WeakLiteral", R"('' 'it''s' '"')", R"(WEAK_LITERAL('') WEAK_LITERAL('it''s') WEAK_LITERAL('"'))"},
    {"LiteralsSideBySide", R"("a"'b'"c")", R"(STRICT_LITERAL("a") WEAK_LITERAL('b') STRICT_LITERAL("c"))"},
    {"LiteralOverLines", "\"a\n$x\r\n\"B", "STRICT_LITERAL(\"a\n$x\r\n\")@3 IDENTIFIER(B)@3"},
    {"CommentMarksInALiteral", "'//' '/*' '$/*'", "WEAK_LITERAL('//') WEAK_LITERAL('/*') WEAK_LITERAL('$/*')"},
    {"BackslashIsNoEscape", R"("\"A)", R"(STRICT_LITERAL("\") IDENTIFIER(A))"},
    {"StrictLiteralOpen", "A \"b", "IDENTIFIER(A) FAILED"},
    {"DoubledQuoteDoesNotClose", R"("a"")", "FAILED"},
    {"WeakLiteralOpen", "'b\n", "FAILED"},

    {"LineComment", "A//B\nC", "IDENTIFIER(A) IDENTIFIER(C)@2"},
    {"LineCommentsInARow", "//\n///* x\n//$/*\nC", "IDENTIFIER(C)@4"},
    {"LineCommentNeedsItsLineEnd", "//A", "/ / IDENTIFIER(A)"},
    {"BlockComment", "A/*B\n'*/C", "IDENTIFIER(A) IDENTIFIER(C)@2"},
    {"BlockCommentWithStars", "/* a **/B/***/C/**/D", "IDENTIFIER(B) IDENTIFIER(C) IDENTIFIER(D)"},
    {"BlockCommentsDoNotNest", "/* /* */ */", "* /"},
    {"BlockCommentIsNotClosedByItsOwnStar", "/*/", "FAILED"},
    {"BlockCommentOpen", "A/* *", "IDENTIFIER(A) FAILED"},
    {"DollarComment", "A$/* $x$ '\n */$B", "IDENTIFIER(A) IDENTIFIER(B)@2"},
    {"DollarCommentEndsAcrossInvisibleBytes", "$/**\t/ \n\r$B", "IDENTIFIER(B)@2"},
    {"DollarCommentEndsAtTheThirdByteAlone", "$/*/$ */x$ **/$B", "IDENTIFIER(B)"},
    {"DollarCommentNeedsItsOwnStar", "$/*/$", "FAILED"},
    {"DollarCommentOpen", "A$/* */", "IDENTIFIER(A) FAILED"},
    {"NoDollarCommentInsideTypeOpen", "$TYPE/**/$", "TYPE_OPEN($TYPE) $"},
};

INSTANTIATE_TEST_SUITE_P(Rows, TypeTokenTableTest, testing::ValuesIn(kTokenRows),
                         [](const auto& row) { return std::string(row.param.name); });

// --- what is fetched to see the end of a token ---

struct FetchRow {
    const char* name;
    std::string_view source;
    int fetched;  // after the first token
};

class TypeFetchTest : public testing::TestWithParam<FetchRow> {};

TEST_P(TypeFetchTest, FirstToken) {
    PinScanX scanner({kEntityType, "", ""});
    scanner.Source().SetConstantSource(GetParam().source);
    scanner.Lex();
    EXPECT_EQ(scanner.CharacterCount(), GetParam().fetched);
}

constexpr FetchRow kFetchRows[] = {
    {"NameLooksAtOneMore", "AB}}}", 3},
    {"NameAsksOnceMoreAtTheEnd", "AB", 3},
    {"WordLooksAtOneMore", "LIST}}", 5},
    {"BraceNeedsNoLook", "{}}}", 1},
    {"DoubledMarkNeedsNoLook", "::::", 2},
    {"SingleMarkLooks", ":A}}", 2},
    {"AngleLooks", "<A}}", 2},
    {"QualifiedTypeNeedsNoLook", "KVL:STRING}}", 10},
    {"QualifiedTypeGivenUpAtOnce", "KVL:X}}", 5},
    {"QualifiedTypeGivenUpLate", "KVL:STRINX}}", 10},
    {"KvlAlone", "KVL }}", 4},
    {"DollarLooks", "$BEGIN", 2},
    {"DollarGivenUpLate", "$TYX}}", 4},
    {"DollarLooksForAComment", "$/X}}", 3},
    {"TypeOpenNeedsNoLook", "$TYPE }}", 5},
    {"LiteralLooksBehindItsQuote", "'a'}}", 4},
    {"LiteralWithDoubledQuote", "'a''b'}}", 7},
    {"DigitNeedsNoLook", "11", 1},
    {"SlashLooks", "/A}", 2},
    {"SlashesWithoutLineEndReadAll", "//ABC", 6},
    {"BehindAComment", "//A\n{}", 5},
};

INSTANTIATE_TEST_SUITE_P(Rows, TypeFetchTest, testing::ValuesIn(kFetchRows),
                         [](const auto& row) { return std::string(row.param.name); });

// --- limits and length ---

TEST_F(TypeTokenTest, LongestNameIsDelivered) {
    const std::string longest(PinScanX::kLongestToken, 'A');
    EXPECT_EQ(Tokens(longest), "IDENTIFIER(" + longest + ")");
    EXPECT_EQ(Tokens(longest + "A"), "FAILED");
}

TEST_F(TypeTokenTest, LiteralsCommentsAndBlanksHaveNoLimit) {
    const std::string filling(PinScanX::kLongestToken + 10, ' ');
    EXPECT_EQ(Tokens("'" + filling + "'").size(), filling.size() + std::string_view("WEAK_LITERAL('')").size());
    EXPECT_EQ(Tokens("/*" + filling + "*/A//" + filling + "\nB$/*" + filling + "*/$C" + filling + "D"),
              "IDENTIFIER(A) IDENTIFIER(B)@2 IDENTIFIER(C)@2 IDENTIFIER(D)@2");
}

// Each source would take hours if anything were looked at again and again.
TEST_F(TypeTokenTest, LongSourcesAreReadOnce) {
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

// --- the reference: every rule tried at every place, byte by byte ---

class ReferenceScanner {
public:
    explicit ReferenceScanner(std::string_view text) : text_(text) {}

    std::string Tokens() {
        std::string result;
        while (place_ < text_.size()) {
            const auto [name, length] = Longest();
            const std::size_t start = place_;
            place_ += length;
            if (name == "skip") continue;
            const bool isLiteral = name == "STRICT_LITERAL" || name == "WEAK_LITERAL";
            bool isDone = true;
            bool isToken = true;
            if (isLiteral) isDone = ReadLiteral(text_[start]);
            if (name == "block comment") isDone = ReadUntil("*/", false), isToken = false;
            if (name == "$" && text_.substr(place_, 2) == "/*") {
                place_ += 2;
                isDone = ReadUntil("*/$", true);
                isToken = false;
            }
            if (isDone && !isToken) continue;
            if (!result.empty()) result += ' ';
            if (!isDone) return result += "FAILED";
            result += name;
            const std::string text(text_.substr(start, place_ - start));
            if (name.size() > 1 && text != name) result += "(" + text + ")";
        }
        return result;
    }

private:
    using Found = std::pair<std::string, std::size_t>;

    Found Longest() const {
        static const std::vector<Found> kFixed = [] {
            std::vector<Found> rules;
            for (const char* text :
                 {"/*", "$TYPE", "$", "KVL", "STRING", "KVL:STRING", "<<", ">>", "'", "\"", "::", ":"}) {
                rules.emplace_back(text, 0);
            }
            return rules;
        }();
        const std::string_view rest = text_.substr(place_);
        Found best{"skip", 0};
        const auto offer = [&best](const std::string& name, std::size_t length) {
            if (length > best.second) best = {name, length};
        };
        if (const auto end = rest.find('\n'); rest.starts_with("//") && end != rest.npos) offer("skip", end);
        for (const Found& rule : kFixed) {
            if (rest.starts_with(rule.first)) offer(NameOf(rule.first), rule.first.size());
        }
        offer("IDENTIFIER", IsLetter(rest[0]) ? Run(rest, IsNameByte) : 0);
        offer("skip", Run(rest, [](char c) { return c == ' ' || c == '\n'; }));
        if (!IsInvisible(rest[0])) offer(std::string(1, rest[0]), 1);
        offer("skip", 1);
        return best;
    }

    static std::string NameOf(const std::string& rule) {
        static const std::pair<const char*, const char*> kNames[] = {
            {"/*", "block comment"},  {"$TYPE", "TYPE_OPEN"},  {"KVL:STRING", "STRING"},
            {"<<", "KEYWORD_OPEN"},   {">>", "KEYWORD_CLOSE"}, {"'", "WEAK_LITERAL"},
            {"\"", "STRICT_LITERAL"}, {"::", "TYPE_MARK"},     {":", "NAME_MARK"}};
        for (const auto& [text, name] : kNames) {
            if (rule == text) return name;
        }
        return rule;
    }

    template <class Class>
    static std::size_t Run(std::string_view text, Class isMember) {
        std::size_t length = 0;
        while (length < text.size() && isMember(text[length]))
            ++length;
        return length;
    }

    bool ReadLiteral(char quote) {
        while (place_ < text_.size()) {
            if (text_[place_++] != quote) continue;
            if (place_ == text_.size() || text_[place_] != quote) return true;
            ++place_;
        }
        return false;
    }

    bool ReadUntil(std::string_view end, bool visibleOnly) {
        std::string seen;
        while (place_ < text_.size()) {
            const char c = text_[place_++];
            if (!visibleOnly || !IsInvisible(c)) seen += c;
            if (seen.ends_with(end)) return true;
        }
        return false;
    }

    std::string_view text_;
    std::size_t place_ = 0;
};

struct PiecesRow {
    const char* name;
    std::vector<std::string_view> pieces;
    int most;  // pieces in a text
};

class TypeReferenceTest : public TypeTokenTest, public testing::WithParamInterface<PiecesRow> {
protected:
    void CompareAllFrom(const std::string& text, int left) {
        std::string tokens = Tokens(text);
        for (std::size_t mark; (mark = tokens.find('@')) != std::string::npos;) {
            tokens.erase(mark, std::min(tokens.find(' ', mark), tokens.size()) - mark);
        }
        ASSERT_EQ(tokens, ReferenceScanner(text).Tokens()) << "source: " << text;
        if (left == 0) return;
        for (const std::string_view piece : GetParam().pieces)
            CompareAllFrom(text + std::string(piece), left - 1);
    }
};

TEST_P(TypeReferenceTest, AgreesOnAllShortTexts) {
    CompareAllFrom("", GetParam().most);
}

INSTANTIATE_TEST_SUITE_P(Rows, TypeReferenceTest,
                         testing::Values(PiecesRow{"Comments", {"/", "*", "$", "\n", "A", " "}, 6},
                                         PiecesRow{"Literals", {"'", "\"", "/", "*", "$", "\n"}, 5},
                                         PiecesRow{
                                             "Words", {"KVL", ":", "STRING", "S", "$", "TYPE", "<", ">", " "}, 4}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
