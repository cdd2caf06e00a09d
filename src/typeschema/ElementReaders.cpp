#include "typeschema/ElementReaders.h"

#include "text/ByteClass.h"
#include "values/TypeIds.h"

namespace kvl {

namespace {

template <class Fits>
int RunEnd(const InputWindow& window, int from, Fits fits) {
    while (from < window.end && fits(window.At(from)))
        ++from;
    return from;
}

bool IsVisible(char c) {
    return !IsInvisible(c);
}

bool IsSignOrDigit(char c) {
    return IsDigit(c) || c == '+' || c == '-';
}

int NumberEnd(const InputWindow& window, int begin, bool isFloat) {
    int end = RunEnd(window, begin + 1, IsDigit);
    if (isFloat && end < window.end && window.At(end) == '.') end = RunEnd(window, end + 1, IsDigit);
    return end;
}

bool HasDigit(std::string_view text) {
    return text.find_first_of("0123456789") != std::string_view::npos;
}

// Any run of leading "_" is followed by a letter or by nothing.
bool IsName(std::string_view text) {
    if (!IsLetter(text.front())) return false;
    const std::size_t first = text.find_first_not_of('_');
    return first == std::string_view::npos || !IsDigit(text[first]);
}

struct Ending {
    int end;
    bool accepted;
    bool readOn = true;  // the byte behind the token was read, too
};

Ending FindEnding(const InputWindow& window, int elementKind, int begin) {
    switch (elementKind) {
        case kElementString:
            return {RunEnd(window, begin, IsVisible), true};
        case kElementBool: {
            const int end = RunEnd(window, begin, IsVisible);
            const std::string_view token = window.Between(begin, end);
            return {end, token == "TRUE" || token == "FALSE"};
        }
        case kElementInteger:
        case kElementFloat: {
            if (!IsSignOrDigit(window.At(begin))) return {begin + 1, false, false};
            const int end = NumberEnd(window, begin, elementKind == kElementFloat);
            return {end, HasDigit(window.Between(begin, end))};
        }
        default: {
            const int end = RunEnd(window, begin + 1, IsNameByte);
            return {end, IsName(window.Between(begin, end))};
        }
    }
}

Token ReadWhiteSpace(InputWindow& window) {
    const int begin = window.cursor;
    window.SkipInvisible();
    const Token token{window.cursor > begin, begin, window.cursor};
    if (!token.accepted && !window.IsAtEnd()) ++window.cursor;
    return token;
}

}  // namespace

Token ReadElement(InputWindow& window, int elementKind) {
    if (elementKind == kElementWhiteSpace) return ReadWhiteSpace(window);
    window.SkipInvisible();
    if (window.IsAtEnd()) return {};
    const int begin = window.cursor;
    const Ending ending = FindEnding(window, elementKind, begin);
    window.cursor = ending.end;
    if (!ending.accepted && ending.readOn && !window.IsAtEnd()) ++window.cursor;
    return {ending.accepted, begin, ending.end};
}

}  // namespace kvl
