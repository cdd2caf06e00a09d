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
// Of all lists together; beyond, what is known of the others is dropped.
constexpr std::size_t kMostStarts = std::size_t{1} << 22;

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
        const bool mayBeSkipped = row->silent && !choice.showsText;
        if (row->kind == kElementNone) {
            ++row;  // the end of a choice that was walked through
        } else if (mayBeSkipped && row->first.Excludes(window_)) {
            row = row->Behind();
        } else if (mayBeSkipped && row->isMereChoice) {
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
    int row = 0;
    std::vector<const ParseRow*> elements;
    std::vector<bool> used;
    std::size_t matched = 0;

    // A cursor, and the elements used in front of it: with them nothing led to the end.
    struct Dead {
        int cursor;
        std::vector<bool> used;
        bool operator==(const Dead&) const = default;
    };
    struct DeadHash {
        std::size_t operator()(const Dead& order) const {
            return std::hash<std::vector<bool>>()(order.used) ^
                   static_cast<std::size_t>(order.cursor) * std::size_t{0x9E3779B97F4A7C15U};
        }
    };
    std::unordered_map<Dead, std::vector<RowText>, DeadHash> dead;  // with the texts that the attempts left behind
};

bool FastParser::ParsePermutation(const ParseRow& row) {
    const int start = window_.cursor;
    SetText(row, start, start);
    ClearTextsInside(row);
    if (row.number == 0) schema_.rootSpanEnd = start;
    PermutationSearch search;
    search.row = row.number;
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
    if (const auto known = search.dead.find({start, search.used}); known != search.dead.end()) {
        for (const RowText& text : known->second)
            ShowText(text);
        return false;
    }
    if (search.dead.size() >= kMostDeadOrders) throw TooManyOrders{search.row};
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
    KeepLastTexts(textsBefore);
    search.dead[{start, search.used}].assign(textLog_.begin() + static_cast<std::ptrdiff_t>(textsBefore),
                                             textLog_.end());
    return false;
}

// Of the texts set from `first` on, the last of each row counts. Without this each order would leave all those of the
// orders tried behind it.
void FastParser::KeepLastTexts(std::size_t first) {
    const auto begin = textLog_.rend() - static_cast<std::ptrdiff_t>(first);
    std::stable_sort(textLog_.rbegin(), begin, [](const RowText& a, const RowText& b) { return a.row < b.row; });
    const auto last =
        std::unique(textLog_.rbegin(), begin, [](const RowText& a, const RowText& b) { return a.row == b.row; });
    textLog_.erase(textLog_.begin() + static_cast<std::ptrdiff_t>(first), last.base());
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
    if (starts.size() >= kWorthKeeping) KeepRun(run, {std::move(starts), window_.cursor, window_.end});
    if (row.number == 0) schema_.rootSpanEnd = window_.cursor;
    if (any) return true;
    return inTrial ? false : ReportEmptyList(schema_, row.number, window_);
}

void FastParser::KeepRun(ListRun& place, ListRun&& run) {
    keptStarts_ += run.starts.size();
    if (keptStarts_ > kMostStarts) {
        for (ListRun& other : listRuns_)
            other = {};
        keptStarts_ = run.starts.size();
    }
    place = std::move(run);
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
