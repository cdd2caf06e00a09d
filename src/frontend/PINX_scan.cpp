// The rules are told apart by their first byte. How far the automaton must look to end a match is part of the rule: no
// further byte is fetched where nothing longer can follow ("{", "::"), one where it can (a name, ":", "$"), and as many
// as agreed where a longer rule begins alike and then fails ("KVL:X", "//" without a line end).
#include "frontend/PINX_scan.h"

#include <algorithm>
#include <iterator>

#include "TypeGrammar.h"
#include "text/ByteClass.h"

namespace kvl {

namespace {

struct WordRow {
    std::string_view text;
    int token;
};

constexpr WordRow kWords[] = {
    {"BEGIN", PINX_BEGIN},
    {"BOOL", PINX_BOOL},
    {"CHOICE", PINX_CHOICE},
    {"DISTANCE", PINX_DISTANCE},
    {"END", PINX_END},
    {"FLOAT", PINX_FLOAT},
    {"IDENTIFIER", PINX_IDENTIFIER_TYPE},
    {"INTEGER", PINX_INTEGER},
    {"KVL", PINX_KVL},
    {"LINE", PINX_LINE},
    {"LIST", PINX_LIST},
    {"NESTED", PINX_NESTED},
    {"OPTION", PINX_OPTION},
    {"PERMUTATION", PINX_PERMUTATION},
    {"SEQUENCE", PINX_SEQUENCE},
    {"STREAM", PINX_STREAM},
    {"STRING", PINX_STRING},
    {"VERSION", PINX_VERSION},
    {"WHITESPACES", PINX_WHITESPACE_TYPE},
};
static_assert(std::ranges::is_sorted(kWords, {}, &WordRow::text));

// Types that can be written with their namespace; such a word is one token and ends where it is complete.
constexpr std::string_view kNamespace = "KVL:";
constexpr WordRow kQualifiedTypes[] = {
    {"BOOL", PINX_BOOL},
    {"FLOAT", PINX_FLOAT},
    {"INTEGER", PINX_INTEGER},
    {"STRING", PINX_STRING},
};

constexpr std::string_view kTypeOpen = "$TYPE";

struct NameRow {
    int token;
    std::string_view name;
};

constexpr NameRow kTokenNames[] = {
    {PINX_IDENTIFIER, "IDENTIFIER"},
    {PINX_TYPE_MARK, "TYPE_MARK"},
    {PINX_NAME_MARK, "NAME_MARK"},
    {PINX_KEYWORD_OPEN, "KEYWORD_OPEN"},
    {PINX_KEYWORD_CLOSE, "KEYWORD_CLOSE"},
    {PINX_STRICT_LITERAL, "STRICT_LITERAL"},
    {PINX_WEAK_LITERAL, "WEAK_LITERAL"},
    {PINX_TYPE_OPEN, "TYPE_OPEN"},
    {PINX_BEGIN, "BEGIN"},
    {PINX_END, "END"},
    {PINX_KVL, "KVL"},
    {PINX_VERSION, "VERSION"},
    {PINX_SEQUENCE, "SEQUENCE"},
    {PINX_LIST, "LIST"},
    {PINX_CHOICE, "CHOICE"},
    {PINX_PERMUTATION, "PERMUTATION"},
    {PINX_DISTANCE, "DISTANCE"},
    {PINX_NESTED, "NESTED"},
    {PINX_STREAM, "STREAM"},
    {PINX_OPTION, "OPTION"},
    {PINX_LINE, "LINE"},
    {PINX_STRING, "STRING"},
    {PINX_INTEGER, "INTEGER"},
    {PINX_FLOAT, "FLOAT"},
    {PINX_BOOL, "BOOL"},
    {PINX_IDENTIFIER_TYPE, "IDENTIFIER_TYPE"},
    {PINX_WHITESPACE_TYPE, "WHITESPACE_TYPE"},
};

// The white space of the language; a carriage return is none and is dropped like any other foreign byte.
constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f';
}

template <class Class>
std::size_t CountFront(std::string_view text, Class isMember) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isMember) - text.begin());
}

std::size_t CountAgreeing(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

int ByteToken(char c) {
    return static_cast<unsigned char>(c);
}

}  // namespace

PINX_scan::Match PINX_scan::MatchFront(std::string_view rest) {
    const char first = rest.front();
    const bool isDoubled = rest.size() > 1 && rest[1] == first;
    switch (first) {
        case '/':
            return MatchSlash(rest);
        case '$':
            return MatchDollar(rest);
        case '"':
        case '\'':
            return {kQuote, 1, 1};
        case ':':
            return isDoubled ? Match{PINX_TYPE_MARK, 2, 2} : Match{PINX_NAME_MARK, 1, 2};
        case '<':
            return isDoubled ? Match{PINX_KEYWORD_OPEN, 2, 2} : Match{ByteToken(first), 1, 2};
        case '>':
            return isDoubled ? Match{PINX_KEYWORD_CLOSE, 2, 2} : Match{ByteToken(first), 1, 2};
    }
    if (IsLetter(first)) return MatchWord(rest);
    if (IsBlank(first)) {
        const std::size_t length = CountFront(rest, IsBlank);
        return {kSkipped, length, length + 1};
    }
    if (IsSpecialLetter(first)) {
        const std::size_t length = CountFront(rest, IsSpecialLetter);
        return {ByteToken(first), length, length + 1};
    }
    return {IsInvisible(first) ? int{kSkipped} : ByteToken(first), 1, 1};
}

PINX_scan::Match PINX_scan::MatchWord(std::string_view rest) {
    const std::size_t length = CountFront(rest, IsNameByte);
    const std::string_view word = rest.substr(0, length);
    const auto* row = std::ranges::lower_bound(kWords, word, {}, &WordRow::text);
    if (row == std::end(kWords) || row->text != word) return {PINX_IDENTIFIER, length, length + 1};
    return row->token == PINX_KVL ? MatchNamespace(rest) : Match{row->token, length, length + 1};
}

// "KVL:STRING" is longer than "KVL" and thus wins; "KVL:X" falls back to the word alone.
PINX_scan::Match PINX_scan::MatchNamespace(std::string_view rest) {
    const std::size_t wordLength = kNamespace.size() - 1;
    std::size_t agreeing = CountAgreeing(rest, kNamespace);
    if (agreeing == kNamespace.size()) {
        const std::string_view name = rest.substr(kNamespace.size());
        for (const WordRow& row : kQualifiedTypes) {
            const std::size_t common = CountAgreeing(name, row.text);
            const std::size_t length = kNamespace.size() + common;
            if (common == row.text.size()) return {row.token, length, length};
            agreeing = std::max(agreeing, length);
        }
    }
    return {PINX_KVL, wordLength, agreeing + 1};
}

// A line comment needs its line end, which stays in the source.
PINX_scan::Match PINX_scan::MatchSlash(std::string_view rest) {
    const char second = rest.size() > 1 ? rest[1] : '\0';
    if (second == '*') return {kBlockComment, 2, 2};
    if (second != '/') return {'/', 1, 2};
    const std::size_t lineEnd = rest.find('\n');
    if (lineEnd == std::string_view::npos) return {'/', 1, rest.size() + 1};
    return {kSkipped, lineEnd, lineEnd + 1};
}

PINX_scan::Match PINX_scan::MatchDollar(std::string_view rest) {
    const std::size_t agreeing = CountAgreeing(rest, kTypeOpen);
    if (agreeing == kTypeOpen.size()) return {PINX_TYPE_OPEN, agreeing, agreeing};
    return {kDollar, 1, agreeing + 1};
}

std::string TypeTokenName(int token) {
    if (token == 0) return "END_OF_INPUT";
    if (token > 0 && token < 256) return std::string(1, static_cast<char>(token));
    const auto* row = std::ranges::find(kTokenNames, token, &NameRow::token);
    return std::string(row != std::end(kTokenNames) ? row->name : "");
}

}  // namespace kvl
