#pragma once
// The window of text that the input parser reads, and how literals are found in it.

#include <string_view>

namespace kvl {

// Positions count from the start of the whole input; the window is the input or the line of a ::LINE.
struct InputWindow {
    std::string_view text;  // the whole input
    int begin = 0;
    int end = 0;
    int cursor = 0;

    bool IsAtEnd() const { return cursor >= end; }
    char At(int position) const { return text[static_cast<std::size_t>(position)]; }
    // The byte at the cursor, which moves on; 0 and no move at the end.
    char GetChar() { return IsAtEnd() ? '\0' : At(cursor++); }
    std::string_view Between(int first, int behind) const {
        return first < behind ? text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(behind - first))
                              : std::string_view();
    }
    void SkipInvisible();
    // Where `what` begins at or behind `from` within the window; -1 if nowhere.
    int Find(std::string_view what, int from) const;
};

struct LiteralMatch {
    bool found = false;
    int start = -1;
    int end = -1;  // behind the match
};

// Character for character at the cursor, which stands behind the match then; elsewhere otherwise.
LiteralMatch MatchStrict(InputWindow& window, std::string_view literal);

enum class MatchPlace { Anchored, Anywhere };
// The weak rule: invisible bytes in front are skipped, unless the literal begins with one, and where the literal has
// white space the input must have some, however much. Anywhere: a failed start is not looked at again, so that a match
// that overlaps it is not seen.
LiteralMatch MatchWeak(InputWindow& window, std::string_view literal, MatchPlace place);

}  // namespace kvl
