#pragma once
// What trials of the input parser have come to, so that no alternative is tried twice at one place.
//
// An entry is keyed by row, position and end of the window, on which alone the outcome of an element depends. It keeps
// where the cursor was left, and the texts that the attempt left behind in elements that a script sees outside of
// lists. The memo may forget at any time; it is emptied whenever nothing read so far can be taken back.

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kvl {

// A text set on a row: a place in the input.
struct RowText {
    int row;
    int begin;
    int end;
};

class TrialMemo {
public:
    struct Outcome {
        bool matched;
        int cursor;  // where the attempt ended
        std::uint32_t firstText;
        std::uint32_t textCount;
    };

    bool Empty() const { return outcomes_.empty(); }
    const Outcome* Find(int row, int position, int windowEnd) const;
    // `texts` are those that the attempt set, in their order; of several for one row the last counts.
    void Add(int row, int position, int windowEnd, bool matched, int cursor, const RowText* texts, std::size_t count);
    const RowText* TextsOf(const Outcome& outcome) const { return texts_.data() + outcome.firstText; }
    void Clear();

private:
    struct Key {
        int row, position, windowEnd;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const {
            const auto mixed =
                static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.position)) * 0x9E3779B97F4A7C15U +
                static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.row)) * 0xC2B2AE3D27D4EB4FU +
                static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.windowEnd));
            return static_cast<std::size_t>(mixed ^ (mixed >> 29));
        }
    };

    std::unordered_map<Key, Outcome, KeyHash> outcomes_;
    std::vector<RowText> texts_;
};

}  // namespace kvl
