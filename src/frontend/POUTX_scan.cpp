#include "frontend/POUTX_scan.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>

#include "ScriptGrammar.h"
#include "frontend/ScriptFrontEnd.h"
#include "text/ByteClass.h"

namespace kvl {

namespace {

struct WordRow {
    std::string_view text;
    int token;
};

constexpr WordRow kKeywords[] = {
    {"ALL", SCRIPT_ALL},
    {"BEGIN", SCRIPT_BEGIN},
    {"CHANGE", SCRIPT_CHANGE},
    {"COMMENT", SCRIPT_COMMENT},
    {"END", SCRIPT_END},
    {"EXTEND", SCRIPT_EXTEND},
    {"FALSE", SCRIPT_BOOLEAN},
    {"GET", SCRIPT_GET},
    {"IF", SCRIPT_IF},
    {"KVL", SCRIPT_KVL},
    {"PATTERN", SCRIPT_PATTERN},
    {"SCRIPT", SCRIPT_SCRIPT},
    {"SEPARATOR", SCRIPT_SEPARATOR},
    {"SET", SCRIPT_SET},
    {"TRUE", SCRIPT_BOOLEAN},
    {"VERSION", SCRIPT_VERSION},
};

// Symbols of two bytes. Where one of them can begin, the byte behind is fetched too.
constexpr WordRow kPairs[] = {
    {"\\n", SCRIPT_NEWLINE_MARK}, {"+=", SCRIPT_ADD_ASSIGN}, {"-=", SCRIPT_SUB_ASSIGN},    {"/=", SCRIPT_DIV_ASSIGN},
    {"*=", SCRIPT_MUL_ASSIGN},    {"%=", SCRIPT_MOD_ASSIGN}, {"::", SCRIPT_TYPE_MARK},     {"==", SCRIPT_EQUAL},
    {"!=", SCRIPT_NOT_EQUAL},     {"<=", SCRIPT_LESS_EQUAL}, {">=", SCRIPT_GREATER_EQUAL}, {":~", SCRIPT_GAP_PART},
};

constexpr WordRow kSingles[] = {
    {"/", SCRIPT_CONTINUE_MARK}, {"[", SCRIPT_LBRACKET}, {"]", SCRIPT_RBRACKET},
    {"=", SCRIPT_ASSIGN},        {"<", SCRIPT_LESS},     {">", SCRIPT_GREATER},
};

// Bytes that are a token under their own code.
constexpr std::string_view kOwnCode = "$+-*%!#&'(),;?~";

int FindWord(std::span<const WordRow> rows, std::string_view text) {
    const auto row = std::ranges::find(rows, text, &WordRow::text);
    return row != rows.end() ? row->token : 0;
}

int FindKeyword(std::string_view word) {
    const auto* row = std::ranges::lower_bound(kKeywords, word, {}, &WordRow::text);
    return row != std::end(kKeywords) && row->text == word ? row->token : 0;
}

// The automaton of numbers. Several forms begin alike, and which one it is may show only at the last byte.
enum NumberState : std::uint8_t {
    Dead,
    Point,             // "."
    Sign,              // "+"
    SignedDigits,      // "+12"
    SignedSuffix,      // "+12u"
    Digits,            // "12"
    Suffix,            // "12u"
    Run,               // "12x": letters and digits that are no number
    Exponent,          // "12e", still such a run
    ExponentSign,      // "12e+", "1.2e+"
    Power,             // "12e5"
    PowerSuffix,       // "12e5f"
    Fraction,          // "12.", "1.2", ".2"
    FractionExponent,  // "1.2e"
    SignedPower,       // "12e+5", "1.2e5"
    Float,             // "1.2f", which nothing continues
    kNumberStates
};
enum NumberByte : std::uint8_t {
    kDigitByte,
    kByteE,
    kByteF,
    kByteL,
    kByteU,
    kLetterByte,
    kPointByte,
    kSignByte,
    kOtherByte,
    kNumberBytes
};

// clang-format off
constexpr NumberState kNumberSteps[kNumberStates][kNumberBytes] = {
    //                      digit         e E               f F          l L           u U           letter  point     sign          other
    /* Dead */             {Dead,         Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     Dead,         Dead},
    /* Point */            {Fraction,     Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     Dead,         Dead},
    /* Sign */             {SignedDigits, Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     Dead,         Dead},
    /* SignedDigits */     {SignedDigits, Dead,             Dead,        SignedSuffix, SignedSuffix, Dead,   Dead,     Dead,         Dead},
    /* SignedSuffix */     {Dead,         Dead,             Dead,        SignedSuffix, SignedSuffix, Dead,   Dead,     Dead,         Dead},
    /* Digits */           {Digits,       Exponent,         Run,         Suffix,       Suffix,       Run,    Fraction, Dead,         Dead},
    /* Suffix */           {Run,          Run,              Run,         Suffix,       Suffix,       Run,    Dead,     Dead,         Dead},
    /* Run */              {Run,          Run,              Run,         Run,          Run,          Run,    Dead,     Dead,         Dead},
    /* Exponent */         {Power,        Run,              Run,         Run,          Run,          Run,    Dead,     ExponentSign, Dead},
    /* ExponentSign */     {SignedPower,  Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     Dead,         Dead},
    /* Power */            {Power,        Run,              PowerSuffix, PowerSuffix,  Run,          Run,    Dead,     Dead,         Dead},
    /* PowerSuffix */      {Run,          Run,              Run,         Run,          Run,          Run,    Dead,     Dead,         Dead},
    /* Fraction */         {Fraction,     FractionExponent, Float,       Float,        Dead,         Dead,   Dead,     Dead,         Dead},
    /* FractionExponent */ {SignedPower,  Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     ExponentSign, Dead},
    /* SignedPower */      {SignedPower,  Dead,             Float,       Float,        Dead,         Dead,   Dead,     Dead,         Dead},
    /* Float */            {Dead,         Dead,             Dead,        Dead,         Dead,         Dead,   Dead,     Dead,         Dead},
};
// clang-format on

NumberByte NumberByteOf(char c) {
    switch (c) {
        case 'e':
        case 'E':
            return kByteE;
        case 'f':
        case 'F':
            return kByteF;
        case 'l':
        case 'L':
            return kByteL;
        case 'u':
        case 'U':
            return kByteU;
        case '.':
            return kPointByte;
        case '+':
        case '-':
            return kSignByte;
    }
    if (IsDigit(c)) return kDigitByte;
    return IsLetter(c) ? kLetterByte : kOtherByte;
}

// What a match that ends in the state delivers, 0 where none can end. A run that is no number, and a sign alone,
// deliver their first byte under its own code.
int NumberToken(NumberState state, char first) {
    switch (state) {
        case Digits:
        case Suffix:
        case SignedDigits:
        case SignedSuffix:
            return SCRIPT_INTEGER;
        case Fraction:
        case Power:
        case PowerSuffix:
        case SignedPower:
        case Float:
            return SCRIPT_FLOAT;
        case Run:
        case Exponent:
        case Sign:
            return first;
        case Point:
            return SCRIPT_TEXT;
        case Dead:
        case ExponentSign:
        case FractionExponent:
        case kNumberStates:
            break;
    }
    return 0;
}

NumberState FirstNumberState(char first) {
    if (IsDigit(first)) return Digits;
    if (first == '.') return Point;
    return first == '+' || first == '-' ? Sign : Dead;
}

}  // namespace

// Keywords are a sorted table of constants, so nothing is left to fill; that it is sorted is checked here.
void InitialiseKeywordTable() {
    static_assert(std::ranges::is_sorted(kKeywords, {}, &WordRow::text));
}

POUTX_scan::CodeMatch POUTX_scan::MatchCode(std::string_view rest) {
    const char first = rest.front();
    if (first == '\n') return {kLineEnd, 1, 1};
    if (first == '"') return {kQuote, 1, 1};
    if (IsInvisible(first)) return {kSkipped, 1, 1};
    if (const int pair = FindWord(kPairs, rest.substr(0, 2))) return {pair, 2, 2};
    if (IsLetter(first)) return MatchName(rest);
    if (FirstNumberState(first) != Dead) return MatchNumber(rest);
    return MatchSymbol(rest);
}

// A keyword directly in front of ":" is a name like any other.
POUTX_scan::CodeMatch POUTX_scan::MatchName(std::string_view rest) {
    const std::size_t length = CountFront(rest, IsNameByte);
    const bool qualifies = length < rest.size() && rest[length] == ':';
    const int keyword = qualifies ? 0 : FindKeyword(rest.substr(0, length));
    return {keyword != 0 ? keyword : SCRIPT_IDENTIFIER, length, length + 1};
}

POUTX_scan::CodeMatch POUTX_scan::MatchNumber(std::string_view rest) {
    const char first = rest.front();
    NumberState state = FirstNumberState(first);
    CodeMatch match{NumberToken(state, first), 1, 1};
    while (state != Dead && state != Float) {
        const std::size_t index = match.fetched++;
        state = index < rest.size() ? kNumberSteps[state][NumberByteOf(rest[index])] : Dead;
        if (const int token = NumberToken(state, first)) {
            match.outcome = token;
            match.length = match.fetched;
        }
    }
    return match;
}

POUTX_scan::CodeMatch POUTX_scan::MatchSymbol(std::string_view rest) {
    const char first = rest.front();
    if (IsSpecialLetter(first)) {
        const std::size_t length = CountFront(rest, IsSpecialLetter);
        return {SCRIPT_TEXT, length, length + 1};
    }
    if (first == ':' && rest.size() > 1 && IsLetter(rest[1])) {
        const std::size_t length = 1 + CountFront(rest.substr(1), IsNameByte);
        return {SCRIPT_NAME_PART, length, length + 1};
    }
    const auto startsPair = [first](const WordRow& pair) { return pair.text.front() == first; };
    const std::size_t fetched = std::ranges::any_of(kPairs, startsPair) ? 2 : 1;
    if (kOwnCode.find(first) != std::string_view::npos) return {first, 1, fetched};
    const int single = FindWord(kSingles, rest.substr(0, 1));
    return {single != 0 ? single : SCRIPT_TEXT, 1, fetched};
}

}  // namespace kvl
