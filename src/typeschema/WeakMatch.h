#pragma once
// The window of text that the input parser reads, and how literals are found in it.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "typeschema/ByteRuns.h"

namespace kvl {

// Do the bytes between two places begin with `bytes` (one at least)?
inline bool StartsWith(const char* at, const char* end, std::string_view bytes) {
    const std::size_t length = bytes.size();
    if (static_cast<std::size_t>(end - at) < length || *at != bytes.front()) return false;
    return length == 1 || std::memcmp(at, bytes.data(), length) == 0;
}

// Positions count from the start of the whole input; the window is the input or the line of a ::LINE.
struct InputWindow {
    std::string_view text;  // the whole input
    int begin = 0;
    int end = 0;
    int cursor = 0;
    ByteRuns* runs = nullptr;  // not owned; of the parser

    bool IsAtEnd() const { return cursor >= end; }
    char At(int position) const { return text[static_cast<std::size_t>(position)]; }
    // The byte at the cursor, which moves on; 0 and no move at the end.
    char GetChar() { return IsAtEnd() ? '\0' : At(cursor++); }
    std::string_view Between(int first, int behind) const {
        return first < behind ? std::string_view(text.data() + first, static_cast<std::size_t>(behind - first))
                              : std::string_view();
    }
    // The first visible byte from a position on; the window's end if there is none.
    int FirstVisibleFrom(int position) const {
        if (position >= end) return end;
        const char* const visible = runs->EndOf<ByteRun::Invisible>(text.data() + position, text.data() + end);
        return static_cast<int>(visible - text.data());
    }
    void SkipInvisible() {
        if (!IsAtEnd()) cursor = FirstVisibleFrom(cursor);
    }
    // Where `what` begins at or behind `from` within the window; -1 if nowhere.
    int Find(std::string_view what, int from) const { return FindUpTo(end, what, from); }
    // The same within a few bytes, which are looked through as quickly as a place would be remembered.
    int FindNear(std::string_view what, int from) const { return FindUpTo(std::min(end, from + kNear), what, from); }

private:
    static constexpr int kNear = 64;
    int FindUpTo(int limit, std::string_view what, int from) const {
        if (from >= limit) return -1;
        const auto length = static_cast<std::size_t>(limit - from);
        if (what.size() > 1) return FindText(text.substr(static_cast<std::size_t>(from), length), what, from);
        const void* byte = std::memchr(text.data() + from, what.front(), length);
        return byte == nullptr ? -1 : static_cast<int>(static_cast<const char*>(byte) - text.data());
    }
    static int FindText(std::string_view where, std::string_view what, int offset) {
        const std::size_t found = where.find(what);
        return found == std::string_view::npos ? -1 : offset + static_cast<int>(found);
    }
};

struct LiteralMatch {
    bool found = false;
    int start = -1;
    int end = -1;  // behind the match
};

// Character for character at the cursor, which stands behind the match then; elsewhere otherwise.
LiteralMatch MatchStrict(InputWindow& window, std::string_view literal);

// The weak rule (below) at a place, for a literal of one byte at least: where the match ends, or null.
inline const char* MatchSpaced(ByteRuns& runs, const char* at, const char* end, std::string_view literal) {
    if (!IsInvisible(literal.front())) at = runs.EndOf<ByteRun::Invisible>(at, end);
    for (std::size_t next = 0; next < literal.size();) {
        if (!IsInvisible(literal[next])) {
            if (at == end || *at++ != literal[next++]) return nullptr;
            continue;
        }
        const char* const behind = runs.EndOf<ByteRun::Invisible>(at, end);
        if (behind == at) return nullptr;
        at = behind;
        while (next < literal.size() && IsInvisible(literal[next]))
            ++next;
    }
    return at;
}

enum class MatchPlace { Anchored, Anywhere };
// The weak rule: invisible bytes in front are skipped, unless the literal begins with one, and where the literal has
// white space the input must have some, however much. Anywhere: a failed start is not looked at again, so that a match
// that overlaps it is not seen.
LiteralMatch MatchWeak(InputWindow& window, std::string_view literal, MatchPlace place);

}  // namespace kvl
