// ::DISTANCE and ::STREAM: the text up to a terminator, which is their inside.

#include <algorithm>

#include "text/ByteClass.h"
#include "text/Trim.h"
#include "typeschema/FastParser.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

bool FastParser::ParseText(int row) {
    const ParseRow& category = program_[row];
    const int start = window_.cursor;
    if (row == 0) schema_.rootSpanEnd = start;
    const Mark mark = Now();
    int textEnd = start;
    if (row + 1 == category.end) {
        textEnd = start + static_cast<int>(TrimInvisibleEnd(window_.Between(start, window_.end)).size());
        window_.cursor = textEnd;
    } else if (!FindTerminator(row, textEnd)) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportNoTerminator(schema_, row, window_);
    }
    const bool isEmpty = TrimInvisible(window_.Between(start, textEnd)).empty();
    if (category.kind == kElementDistance && isEmpty) {
        TakeBack(mark);
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportEmptyDistance(schema_, row, window_);
    }
    CloseText(row, start, textEnd, true);
    if (!IsFailureExpected()) Commit();
    return true;
}

// The first place from the cursor on at which the terminator matches; the cursor stands behind it then.
bool FastParser::FindTerminator(int row, int& here) {
    const Mark mark = Now();
    const std::size_t shortcutsBefore = shortcuts_;
    ++expected_;
    bool matched = Scan(row, here);
    const bool outermost = expected_ == 1;
    if (matched && outermost && shortcuts_ != shortcutsBefore) {
        TakeBack(mark);
        window_.cursor = here;
        shortcutsAllowed_ = false;
        matched = ParseRange(row + 1, program_[row].end);
        shortcutsAllowed_ = true;
    }
    --expected_;
    if (outermost) DropTexts();
    return matched;
}

bool FastParser::Scan(int row, int& here) {
    const ParseRow& category = program_[row];
    while (!window_.IsAtEnd()) {
        int next = window_.cursor + 1;
        if (!JumpToCandidate(row, next)) return false;
        here = window_.cursor;
        const Mark mark = Now();
        if (ParseRange(row + 1, category.end)) return true;
        TakeBack(mark);
        SetText(row, here, here);
        if (window_.IsAtEnd()) return false;
        window_.cursor = next;
    }
    return false;
}

// Moves the cursor over places at which the terminator cannot begin. `next` is where to go on when the attempt there
// fails: white space in front of a weak literal belongs to one and the same attempt. False at the end of the window.
bool FastParser::JumpToCandidate(int row, int& next) {
    const ParseRow& category = program_[row];
    const ParseRow& first = program_[row + 1];
    const int start = window_.cursor;
    if (first.jumpLength > 0) {
        const int found = FindLiteral(row + 1, start);
        window_.cursor = found < 0 ? window_.end : found;
        next = window_.cursor + 1;
        while (found >= 0 && first.kind == kElementWeakLiteral && window_.cursor > start &&
               IsInvisible(window_.At(window_.cursor - 1))) {
            --window_.cursor;
        }
    } else if (category.insideSilent && !category.insideFirst.readsOn) {
        while (!window_.IsAtEnd() && category.insideFirst.Excludes(window_.At(window_.cursor)))
            ++window_.cursor;
        next = window_.cursor + 1;
    }
    if (window_.cursor != start) SetText(row, start, start);
    return !window_.IsAtEnd();
}

int FastParser::FindLiteral(int row, int from) {
    Search& search = searches_[static_cast<std::size_t>(row)];
    const bool known = search.windowEnd == window_.end && search.from >= 0 && search.from <= from &&
                       (search.at < 0 || from <= search.at);
    if (known) return search.at;
    const ParseRow& literal = program_[row];
    const std::string_view head =
        std::string_view(literal.literal).substr(0, static_cast<std::size_t>(literal.jumpLength));
    int found = window_.Find(head, from);
    while (found >= 0 && head.size() < literal.literal.size()) {
        InputWindow attempt = window_;
        attempt.cursor = found;
        if (MatchWeak(attempt, literal.literal, MatchPlace::Anchored).found) break;
        found = window_.Find(head, found + 1);
    }
    search = {from, found, window_.end};
    return found;
}

}  // namespace kvl
