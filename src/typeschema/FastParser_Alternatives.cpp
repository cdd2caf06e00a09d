// The alternatives and repetitions of the input parser: ::CHOICE, ::PERMUTATION and ::LIST.

#include <algorithm>
#include <span>
#include <unordered_map>

#include "typeschema/FastParser.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

namespace {

// A shorter list is as quickly read again.
constexpr std::size_t kWorthKeeping = 8;

}  // namespace

bool FastParser::ParseChoice(const ParseRow& row) {
    const int start = window_.cursor;
    ClearTextsInside(row);
    if (row.number == 0) schema_.rootSpanEnd = start;
    if (row.Inside() == row.InsideEnd()) return true;
    const ParseRow* child = NextAlternative(row, row.Inside());
    for (; child != nullptr; child = NextAlternative(row, child->Behind())) {
        const bool matched = Try(child, child->Behind());
        CloseText(row, start, window_.cursor, matched);
        if (matched) return true;
        window_.cursor = start;
    }
    return IsFailureExpected() ? false : ReportNoAlternative(schema_, row.number, window_);
}

// The first alternative from a row on that may begin at the cursor; null if there is none. Those of a choice inside
// that keeps nothing itself are walked through as if they stood here.
const ParseRow* FastParser::NextAlternative(const ParseRow& choice, const ParseRow* row) const {
    while (row < choice.InsideEnd()) {
        if (row->kind == kElementNone) {
            ++row;  // the end of a choice that was walked through
        } else if (choice.showsText || !row->silent) {
            return row;
        } else if (row->first.Excludes(window_)) {
            row = row->Behind();
        } else if (row->isMereChoice) {
            row = row->Inside();
        } else {
            return row;
        }
    }
    return nullptr;
}

// Depth first in the order of the declaration, which visits the orders as the rule of the next permutation does; an
// order is given up at its first failing prefix, and a set of elements that failed behind a cursor is not tried there
// again.
struct FastParser::PermutationSearch {
    std::vector<const ParseRow*> elements;
    std::vector<bool> used;
    std::size_t matched = 0;

    struct Dead {
        std::vector<bool> used;
        std::vector<RowText> texts;
    };
    std::unordered_multimap<int, Dead> dead;  // by cursor
};

bool FastParser::ParsePermutation(const ParseRow& row) {
    const int start = window_.cursor;
    SetText(row, start, start);
    ClearTextsInside(row);
    if (row.number == 0) schema_.rootSpanEnd = start;
    PermutationSearch search;
    for (const ParseRow* child = row.Inside(); child < row.InsideEnd(); child = child->Behind())
        search.elements.push_back(child);
    if (search.elements.empty()) return true;
    search.used.assign(search.elements.size(), false);

    const Mark mark = Now();
    ++expected_;
    bool matched = Permute(search);
    if (matched && expected_ == 1 && shortcuts_ != mark.shortcuts) {
        TakeBack(mark);
        window_.cursor = start;
        search.used.assign(search.elements.size(), false);
        search.matched = 0;
        shortcutsAllowed_ = false;
        matched = Permute(search);
        shortcutsAllowed_ = true;
    }
    --expected_;
    if (!matched) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportNoPermutation(schema_, row.number, window_);
    }
    if (row.number == 0) schema_.rootSpanEnd = window_.cursor - 1;
    if (!IsFailureExpected()) Commit();
    return true;
}

bool FastParser::Permute(PermutationSearch& search) {
    if (search.matched == search.elements.size()) return true;
    const int start = window_.cursor;
    const auto [first, last] = search.dead.equal_range(start);
    for (auto known = first; known != last; ++known) {
        if (known->second.used != search.used) continue;
        for (const RowText& text : known->second.texts)
            ShowText(text);
        return false;
    }
    const std::size_t textsBefore = MarkTexts();
    for (std::size_t i = 0; i < search.elements.size(); ++i) {
        if (search.used[i]) continue;
        const Mark mark = Now();
        if (ParseElement(*search.elements[i])) {
            search.used[i] = true;
            ++search.matched;
            if (Permute(search)) return true;
            search.used[i] = false;
            --search.matched;
        }
        TakeBack(mark);
        window_.cursor = start;
    }
    search.dead.insert(
        {start, {search.used, {textLog_.begin() + static_cast<std::ptrdiff_t>(textsBefore), textLog_.end()}}});
    return false;
}

bool FastParser::ParseList(const ParseRow& row) {
    ListRun& run = listRuns_[static_cast<std::size_t>(row.number)];
    const bool inTrial = IsFailureExpected();
    if (inTrial && shortcutsAllowed_ && run.HasStart(window_.cursor, window_.end)) {
        window_.cursor = run.end;
        ++shortcuts_;
        return true;
    }
    std::vector<int> starts;
    bool any = false;
    while (ParseRepetition(row, starts, inTrial && row.insideSilent))
        any = true;
    if (starts.size() >= kWorthKeeping) run = {std::move(starts), window_.cursor, window_.end};
    if (row.number == 0) schema_.rootSpanEnd = window_.cursor;
    if (any) return true;
    return inTrial ? false : ReportEmptyList(schema_, row.number, window_);
}

// One more element of the list. A repetition that consumes nothing ends it.
bool FastParser::ParseRepetition(const ParseRow& row, std::vector<int>& starts, bool keepStart) {
    const int start = window_.cursor;
    if (window_.IsAtEnd()) return false;
    if (!row.insidePlain && row.insideSilent && row.insideFirst.Excludes(window_)) return false;
    const std::size_t firstCell = cells_.size();
    const bool matched = row.insidePlain ? TryPlain(row) : Try(row.Inside(), row.InsideEnd());
    if (!matched || window_.cursor == start) {
        DropCells(firstCell);
        window_.cursor = start;
        return false;
    }
    AddRecord(row, firstCell);
    if (keepStart) starts.push_back(start);
    return true;
}

// The cells of the repetition become a record of the list.
void FastParser::AddRecord(const ParseRow& row, std::size_t firstCell) {
    row.list->AddParsedRecord(std::span(cells_).subspan(firstCell), false);
    DropCells(firstCell);
    if (IsFailureExpected()) added_.push_back(row.list);
}

bool FastParser::ListRun::HasStart(int position, int windowEndNow) const {
    return windowEnd == windowEndNow && std::binary_search(starts.begin(), starts.end(), position);
}

}  // namespace kvl
