#pragma once
// Where a bracket of ::NESTED closes: its literals are counted, begin literals up and end literals down, until the
// bracket that was open at the start is closed.
//
// From one place on the count always takes the same steps, whichever bracket it is for. So what closes the bracket that
// is open at a place is remembered for every few places, and brackets inside of one that was counted before, closed or
// not, cost a handful of steps each. All brackets of an input together: linear, where counting each for itself is
// quadratic in unclosed brackets.

#include <unordered_map>
#include <vector>

#include "typeschema/WeakMatch.h"

namespace kvl {

// The next occurrence of a literal by the weak rule, asked for from places that mostly ascend.
class LiteralSearch {
public:
    explicit LiteralSearch(std::string_view literal) : literal_(literal) {}

    // From the window's cursor on.
    const LiteralMatch& From(const InputWindow& window);
    // Where the last search ended if it found nothing.
    int EndOfSearch() const { return endOfSearch_; }

private:
    // A place at which the literal begins but does not match, and where the search went on behind it.
    struct FailedStart {
        int start;
        int ended;
    };

    bool IsKnown(const InputWindow& window) const;
    void Search(InputWindow window);
    int FindFirstByte(const InputWindow& window);

    std::string_view literal_;  // not owned; outlives this
    int from_ = 0;
    int windowEnd_ = -1;
    std::vector<FailedStart> failedStarts_;  // of the last search, ascending
    int gapBegin_ = 0;                       // the last long stretch without the literal's first byte
    int gapEnd_ = 0;
    LiteralMatch match_;
    int endOfSearch_ = -1;
};

class BracketSearch {
public:
    // The literals without their quotes; not owned, they outlive this.
    BracketSearch(std::string_view begin, std::string_view end) : begin_(begin), end_(end) {}

    struct Closing {
        bool found;
        int start;   // of the end literal
        int cursor;  // behind it, or where the search ended if nothing closes the bracket
    };
    // What closes the bracket that is open at the window's cursor.
    Closing Find(InputWindow window);

private:
    // A place in which a bracket is open, to be remembered when that is closed.
    struct OpenPlace {
        int cursor;
        int depth;
    };
    enum class Step { Begin, End, None };

    Step TakeStep(InputWindow& window, Closing& closing);
    void ForgetPlacesBefore(const InputWindow& window);
    void Remember(std::vector<OpenPlace>& places, int depth, const Closing& closing);

    LiteralSearch begin_, end_;
    std::unordered_map<int, Closing> known_;  // by the place in which the bracket is open
    int lastKnown_ = -1;
    int windowEnd_ = -1;
};

}  // namespace kvl
