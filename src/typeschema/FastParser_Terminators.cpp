// ::DISTANCE and ::STREAM: the text up to a terminator, which is their inside.

#include <algorithm>

#include "text/ByteClass.h"
#include "text/Trim.h"
#include "typeschema/FastParser.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

bool FastParser::ParseText(const ParseRow& row) {
    const int start = window_.cursor;
    if (row.number == 0) schema_.rootSpanEnd = start;
    const Mark mark = Now();
    int textEnd = start;
    if (row.Inside() == row.InsideEnd()) {
        textEnd = start + static_cast<int>(TrimInvisibleEnd(window_.Between(start, window_.end)).size());
        window_.cursor = textEnd;
    } else if (!FindTerminator(row, textEnd)) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportNoTerminator(schema_, row.number, window_);
    }
    if (row.kind == kElementDistance && window_.FirstVisibleFrom(start) >= textEnd) {
        TakeBack(mark);
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportEmptyDistance(schema_, row.number, window_);
    }
    CloseText(row, start, textEnd, true);
    if (!IsFailureExpected()) Commit();
    return true;
}

// The same where nothing but one literal has to be found, for which no trial is needed.
bool FastParser::ReadToBytes(const ParseRow& row) {
    const int start = window_.cursor;
    const ParseRow& terminator = *row.Inside();
    const int found = FindLiteral(terminator, start);
    const bool isEmpty = found >= 0 && window_.FirstVisibleFrom(start) >= found;
    const bool matchesAtOnce = found == start || (isEmpty && terminator.kind == kElementWeakLiteral);
    if (row.showsText && !matchesAtOnce && !window_.IsAtEnd()) SetText(row, start, start);
    if (found < 0) return IsFailureExpected() ? false : ReportNoTerminator(schema_, row.number, window_);
    if (row.kind == kElementDistance && isEmpty) {
        return IsFailureExpected() ? false : ReportEmptyDistance(schema_, row.number, window_);
    }
    window_.cursor = found + terminator.jumpLength;
    if (row.KeepsText()) KeepText(row, start, found, true);
    return true;
}

// The first place from the cursor on at which the terminator matches; the cursor stands behind it then.
bool FastParser::FindTerminator(const ParseRow& row, int& here) {
    const Mark mark = Now();
    const Search& known = searches_[static_cast<std::size_t>(row.number)];
    ++expected_;
    bool matched = row.insideSilent && known.Knows(window_.cursor, window_.end) ? ScanFromKnown(row, known, here)
                                                                                : Scan(row, here);
    const bool outermost = expected_ == 1;
    if (matched && outermost && shortcuts_ != mark.shortcuts) {
        TakeBack(mark);
        window_.cursor = here;
        shortcutsAllowed_ = false;
        matched = ParseInside(row);
        shortcutsAllowed_ = true;
    }
    --expected_;
    if (outermost) DropTexts();
    return matched;
}

bool FastParser::Scan(const ParseRow& row, int& here) {
    Search search{window_.cursor, window_.cursor, -1, window_.end};
    for (int next = window_.cursor;; window_.cursor = next) {
        if (window_.IsAtEnd() || !JumpToCandidate(row, next)) {
            search.last = window_.end;
            break;
        }
        here = search.last = window_.cursor;
        const Mark mark = Now();
        if (ParseInside(row)) {
            search.at = here;
            break;
        }
        TakeBack(mark);
        SetText(row, here, here);
        if (window_.IsAtEnd()) break;
    }
    searches_[static_cast<std::size_t>(row.number)] = search;
    return search.at >= 0;
}

// From here on an earlier search has come to what it came to.
bool FastParser::ScanFromKnown(const ParseRow& row, const Search& known, int& here) {
    const int start = window_.cursor;
    const ParseRow& first = *row.Inside();
    const bool matchesAtOnce = known.at == start || (first.jumpLength > 0 && IsInReach(first, start, known.at));
    if (!matchesAtOnce && !window_.IsAtEnd()) SetText(row, start, start);
    if (known.at < 0) return false;
    here = window_.cursor = known.at;
    return ParseInside(row);
}

// Moves the cursor over places at which the terminator cannot begin. `next` is where to go on when the attempt there
// fails: white space that is skipped in front of the terminator belongs to one and the same attempt. False at the end
// of the window.
bool FastParser::JumpToCandidate(const ParseRow& row, int& next) {
    const ParseRow& first = *row.Inside();
    const int start = window_.cursor;
    next = start + 1;
    if (first.jumpLength > 0) {
        const int found = FindLiteral(first, start);
        next = found < 0 ? window_.end : found + 1;
        if (!IsInReach(first, start, found)) window_.cursor = found < 0 ? window_.end : found;
    } else if (row.insideSilent && !row.insideFirst.readsOn && !row.insideFirst.canBeEmpty) {
        while (!window_.IsAtEnd()) {
            const int place = row.insideFirst.Place(window_);
            const bool isBlankRest = place >= window_.end;  // in which a LINE matches
            next = isBlankRest ? window_.cursor + 1 : place + 1;
            if (isBlankRest || row.insideFirst.Has(window_.At(place))) break;
            window_.cursor = next;
        }
    }
    if (window_.cursor != start) SetText(row, start, start);
    return !window_.IsAtEnd();
}

// Does an attempt at `from` skip white space up to a literal found behind it?
bool FastParser::IsInReach(const ParseRow& literal, int from, int found) const {
    return found >= 0 && literal.kind == kElementWeakLiteral && window_.FirstVisibleFrom(from) >= found;
}

int FastParser::FindLiteral(const ParseRow& literal, int from) {
    const int near = literal.reading == Reading::Bytes ? window_.FindNear(literal.Head(), from) : -1;
    return near >= 0 ? near : FindFarLiteral(literal, from);
}

int FastParser::FindFarLiteral(const ParseRow& literal, int from) {
    const bool isBytes = literal.reading == Reading::Bytes;
    const std::string_view head = literal.Head();
    Search& search = searches_[static_cast<std::size_t>(literal.number)];
    if (search.Knows(from, window_.end)) return search.at;
    int found = window_.Find(head, from);
    while (found >= 0 && !isBytes) {
        InputWindow attempt = window_;
        attempt.cursor = found;
        if (MatchWeak(attempt, literal.literal, MatchPlace::Anchored).found) break;
        found = window_.Find(head, found + 1);
    }
    search = {from, found < 0 ? window_.end : found, found, window_.end};
    return found;
}

}  // namespace kvl
