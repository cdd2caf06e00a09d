#pragma once
// The six elementary elements: how each reads its token from a run of bytes. In the header because parsing spends most
// of its time here.

#include <string_view>

#include "text/ByteClass.h"
#include "typeschema/WeakMatch.h"
#include "values/TypeIds.h"

namespace kvl {

// A token between `begin` and `end`. `stop` is where reading stood afterwards: behind an accepted token; behind the
// byte that ended a refused one.
struct Token {
    const char* begin;
    const char* end;
    const char* stop;
    bool accepted;

    std::string_view Text() const { return {begin, static_cast<std::size_t>(end - begin)}; }
};

namespace element_readers {

// A refused token is read on behind the byte that ended it.
inline Token MakeToken(const char* begin, const char* tokenEnd, const char* end, bool accepted) {
    return {begin, tokenEnd, accepted || tokenEnd == end ? tokenEnd : tokenEnd + 1, accepted};
}

inline Token ReadNumber(ByteRuns& runs, const char* begin, const char* end, bool isFloat) {
    const bool startsWithDigit = IsDigit(*begin);
    if (!startsWithDigit && *begin != '+' && *begin != '-') return {begin, begin + 1, begin + 1, false};
    const char* at = runs.EndOf<ByteRun::Digits>(begin + 1, end);
    bool hasDigit = startsWithDigit || at > begin + 1;
    if (isFloat && at < end && *at == '.') {
        const char* const point = at;
        at = runs.EndOf<ByteRun::Digits>(point + 1, end);
        hasDigit = hasDigit || at > point + 1;
    }
    return MakeToken(begin, at, end, hasDigit);
}

inline Token ReadBool(ByteRuns& runs, const char* begin, const char* end) {
    const char* const tokenEnd = runs.EndOf<ByteRun::Visible>(begin, end);
    const std::string_view text(begin, static_cast<std::size_t>(tokenEnd - begin));
    return MakeToken(begin, tokenEnd, end, text == "TRUE" || text == "FALSE");
}

// Any run of leading "_" is followed by a letter or by nothing.
inline bool IsName(std::string_view text) {
    if (!IsLetter(text.front())) return false;
    const std::size_t first = text.front() == '_' ? text.find_first_not_of('_') : 0;
    return first == std::string_view::npos || !IsDigit(text[first]);
}

inline Token ReadIdentifier(ByteRuns& runs, const char* begin, const char* end) {
    const char* const tokenEnd = runs.EndOf<ByteRun::Name>(begin + 1, end);
    return MakeToken(begin, tokenEnd, end, IsName({begin, static_cast<std::size_t>(tokenEnd - begin)}));
}

}  // namespace element_readers

// Reads the token of an element of the given kind (kElementString to kElementWhiteSpace) between `at` and `end`.
inline Token ReadElement(ByteRuns& runs, const char* at, const char* end, int elementKind) {
    using namespace element_readers;
    const char* const begin = runs.EndOf<ByteRun::Invisible>(at, end);
    if (elementKind == kElementWhiteSpace) return MakeToken(at, begin, end, begin > at);
    if (begin == end) return {end, end, end, false};
    switch (elementKind) {
        case kElementInteger:
            return ReadNumber(runs, begin, end, false);
        case kElementFloat:
            return ReadNumber(runs, begin, end, true);
        case kElementBool:
            return ReadBool(runs, begin, end);
        case kElementIdentifier:
            return ReadIdentifier(runs, begin, end);
        default:
            return MakeToken(begin, runs.EndOf<ByteRun::Visible>(begin, end), end, true);
    }
}

}  // namespace kvl
