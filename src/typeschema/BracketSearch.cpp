#include "typeschema/BracketSearch.h"

#include <algorithm>

#include "text/ByteClass.h"

namespace kvl {

namespace {

// Every how many steps a place is remembered: few brackets are as quickly counted again.
constexpr int kStepsBetweenPlaces = 8;
// A shorter stretch is as quickly searched again.
constexpr int kLongGap = 64;

}  // namespace

const LiteralMatch& LiteralSearch::From(const InputWindow& window) {
    if (!IsKnown(window)) Search(window);
    return match_;
}

// A search that comes to a failed start of the last one, or to its match, goes on like that. A literal that begins with
// white space is looked for no further than at the cursor.
bool LiteralSearch::IsKnown(const InputWindow& window) const {
    if (window.end != windowEnd_ || window.cursor < from_ || IsInvisible(literal_.front())) return false;
    if (match_.found && window.cursor > match_.start) return false;
    const auto next = std::lower_bound(failedStarts_.begin(), failedStarts_.end(), window.cursor,
                                       [](const FailedStart& failed, int place) { return failed.start < place; });
    if (next == failedStarts_.begin()) return true;
    // What the start in front of the cursor has read may hide another one.
    return window.Between(window.cursor, std::prev(next)->ended).find(literal_.front()) == std::string_view::npos;
}

void LiteralSearch::Search(InputWindow window) {
    if (window.end != windowEnd_) gapBegin_ = gapEnd_ = 0;
    from_ = window.cursor;
    windowEnd_ = window.end;
    failedStarts_.clear();
    match_ = {};
    while (!IsInvisible(literal_.front())) {
        const int start = FindFirstByte(window);
        window.cursor = start;
        if (start == window.end) break;
        match_ = MatchWeak(window, literal_, MatchPlace::Anchored);
        if (match_.found) return;
        failedStarts_.push_back({start, window.cursor});
        // At the end of the input a literal counts as found without the white space at its own end.
        if (!window.IsAtEnd()) continue;
        window.cursor = start;
        break;
    }
    match_ = MatchWeak(window, literal_, MatchPlace::Anywhere);
    endOfSearch_ = window.cursor;
}

// The window's end if there is none. Places that come again and again in front of the same far byte share its search.
int LiteralSearch::FindFirstByte(const InputWindow& window) {
    if (gapBegin_ <= window.cursor && window.cursor < gapEnd_) return gapEnd_;
    const int found = window.Find(literal_.substr(0, 1), window.cursor);
    const int end = found < 0 ? window.end : found;
    if (end - window.cursor >= kLongGap) {
        gapBegin_ = window.cursor;
        gapEnd_ = end;
    }
    return end;
}

BracketSearch::Closing BracketSearch::Find(InputWindow window) {
    ForgetPlacesBefore(window);
    std::vector<OpenPlace> places;
    Closing closing{};
    int steps = 0;
    for (int depth = 1; depth > 0;) {
        const auto known = known_.empty() ? known_.end() : known_.find(window.cursor);
        Step step = Step::End;
        if (known != known_.end()) {
            closing = known->second;
            if (!closing.found) step = Step::None;
        } else {
            if (++steps % kStepsBetweenPlaces == 0) places.push_back({window.cursor, depth});
            step = TakeStep(window, closing);
        }
        if (step == Step::None) {
            Remember(places, 0, closing);
            return closing;
        }
        if (step == Step::Begin) {
            ++depth;
        } else {
            Remember(places, depth, closing);
            window.cursor = closing.cursor;
            --depth;
        }
    }
    return closing;
}

// Sets the closing unless the next literal is a begin; the window's cursor then stands behind that.
BracketSearch::Step BracketSearch::TakeStep(InputWindow& window, Closing& closing) {
    const LiteralMatch& begin = begin_.From(window);
    const LiteralMatch& end = end_.From(window);
    // Of blanks alone a begin literal is found in nothing, too: that would open brackets for ever.
    const bool beginFound = begin.found && begin.end > window.cursor;
    if (!beginFound && !end.found) {
        closing = {false, -1, end_.EndOfSearch()};
        return Step::None;
    }
    const bool isBegin =
        beginFound && (!end.found || begin.start < end.start || (begin.start == end.start && begin.end < end.end));
    if (isBegin) {
        window.cursor = begin.end;
        return Step::Begin;
    }
    closing = {true, end.start, end.end};
    return Step::End;
}

void BracketSearch::ForgetPlacesBefore(const InputWindow& window) {
    if (window.end == windowEnd_ && window.cursor <= lastKnown_) return;
    windowEnd_ = window.end;
    lastKnown_ = -1;
    if (!known_.empty()) known_ = {};
}

// The places behind which a bracket of at least that depth was open.
void BracketSearch::Remember(std::vector<OpenPlace>& places, int depth, const Closing& closing) {
    for (; !places.empty() && places.back().depth >= depth; places.pop_back()) {
        known_.emplace(places.back().cursor, closing);
        lastKnown_ = std::max(lastKnown_, places.back().cursor);
    }
}

}  // namespace kvl
