#include "typeschema/TrialMemo.h"

#include <algorithm>

namespace kvl {

namespace {

constexpr std::size_t kMostOutcomes = 1U << 17;
constexpr std::size_t kMostTexts = 1U << 20;

}  // namespace

const TrialMemo::Outcome* TrialMemo::Find(int row, int position, int windowEnd) const {
    const auto found = outcomes_.find({row, position, windowEnd});
    return found == outcomes_.end() ? nullptr : &found->second;
}

void TrialMemo::Add(int row, int position, int windowEnd, bool matched, int cursor, const RowText* texts,
                    std::size_t count) {
    if (outcomes_.size() >= kMostOutcomes || texts_.size() >= kMostTexts) Clear();
    const auto first = static_cast<std::ptrdiff_t>(texts_.size());
    std::reverse_copy(texts, texts + count, std::back_inserter(texts_));
    const auto begin = texts_.begin() + first;
    std::stable_sort(begin, texts_.end(), [](const RowText& a, const RowText& b) { return a.row < b.row; });
    texts_.erase(std::unique(begin, texts_.end(), [](const RowText& a, const RowText& b) { return a.row == b.row; }),
                 texts_.end());
    outcomes_[{row, position, windowEnd}] = {
        matched, cursor, static_cast<std::uint32_t>(first),
        static_cast<std::uint32_t>(texts_.size()) - static_cast<std::uint32_t>(first)};
}

void TrialMemo::Clear() {
    outcomes_.clear();
    texts_.clear();
}

}  // namespace kvl
