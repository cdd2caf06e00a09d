// A search for many texts at once after Karp and Rabin. Anchors whose sizes have the same highest bit are looked for
// together: the widest power of two that is not above the size gives a window that all of them have at their front and
// at their end. One walk over the text rolls the hash of such a window. Nearly all places are refused by a bit filter
// that stays in the cache; where the end of an anchor may stand, the hash of the whole decides. Equal bytes have equal
// hashes, so a clash can only claim a place that is none, and that costs no more than a search.
#include "builtins/AnchorPlaces.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace kvl {

namespace {

using Hash = std::uint64_t;
constexpr Hash kBase = 0xD1342543DE82EF95U, kSpread = 0x9E3779B97F4A7C15U;
constexpr std::uint32_t kNone = ~std::uint32_t{0};
constexpr std::size_t kLevels = 16;     // windows of 1 byte to 32 KB
constexpr std::size_t kFewAnchors = 4;  // are as quickly looked for one by one
constexpr std::size_t kMostChecks = 8;  // of whole anchors, for each byte of the text
constexpr std::size_t kAnywhere = ~std::size_t{0};

Hash Extend(Hash hash, char c) {
    return hash * kBase + static_cast<unsigned char>(c) + 1;
}

Hash Power(std::size_t exponent) {
    Hash power = 1;
    for (Hash square = kBase; exponent > 0; exponent >>= 1, square *= square)
        if ((exponent & 1) != 0) power *= square;
    return power;
}

// Numbers hashes from 0 up. Open addressing with linear probing.
class Numbering {
public:
    explicit Numbering(std::size_t most)
        : slots_(std::bit_ceil(2 * most + 2)), shift_(64 - std::countr_zero(slots_.size())) {}

    // kNone if it has none.
    std::uint32_t Find(Hash hash) const { return slots_[SlotOf(hash)].number; }

    std::uint32_t FindOrAdd(Hash hash) {
        Slot& slot = slots_[SlotOf(hash)];
        if (slot.number == kNone) slot = {hash, count_++};
        return slot.number;
    }

private:
    struct Slot {
        Hash hash = 0;
        std::uint32_t number = kNone;
    };

    std::size_t SlotOf(Hash hash) const {
        std::size_t i = (hash * kSpread) >> shift_;
        while (slots_[i].number != kNone && slots_[i].hash != hash)
            i = (i + 1) & (slots_.size() - 1);
        return i;
    }

    std::vector<Slot> slots_;
    int shift_;
    std::uint32_t count_ = 0;
};

// Two bits of one word for each hash.
class Filter {
public:
    explicit Filter(std::size_t most)
        : words_(std::bit_ceil(std::clamp(most / 4, kFewestWords, kMostWords))),
          shift_(64 - std::countr_zero(words_.size())) {}

    void Add(Hash hash) {
        hash *= kSpread;
        words_[hash >> shift_] |= Bits(hash);
    }
    bool MayHave(Hash hash) const {
        hash *= kSpread;
        return (~words_[hash >> shift_] & Bits(hash)) == 0;
    }

private:
    static constexpr std::size_t kFewestWords = 64, kMostWords = std::size_t{1} << 16;
    static std::uint64_t Bits(Hash hash) {
        return std::uint64_t{1} << (hash >> 40 & 63) | std::uint64_t{1} << (hash >> 34 & 63);
    }

    std::vector<std::uint64_t> words_;
    int shift_;
};

// The anchors that share one size of window.
class Level {
public:
    Level(std::size_t windowSize, std::size_t anchorCount)
        : windowSize_(windowSize),
          windowPower_(Power(windowSize)),
          sums_(4 * windowSize),
          filter_(2 * anchorCount),
          windowNumbers_(2 * anchorCount),
          wholeNumbers_(anchorCount) {
        anchors_.reserve(anchorCount);
    }

    void Add(std::size_t number, std::string_view anchor) {
        Hash sum = 0, front = 0, beforeEnd = 0;
        for (std::size_t i = 0; i < anchor.size(); ++i) {
            if (i + windowSize_ == anchor.size()) beforeEnd = sum;
            sum = Extend(sum, anchor[i]);
            if (i + 1 == windowSize_) front = sum;
        }
        const std::uint32_t whole = wholeNumbers_.FindOrAdd(sum);
        wholeEnds_.resize(std::max<std::size_t>(wholeEnds_.size(), whole + 1));
        const std::uint32_t frontWindow = AddWindow(front), endWindow = AddWindow(sum - beforeEnd * windowPower_);
        AddLength(windows_[endWindow], anchor.size());
        anchors_.push_back({number, anchor.size(), whole, frontWindow, endWindow});
    }

    void Search(std::string_view text) {
        checksLeft_ = kMostChecks * text.size();
        Hash sum = 0;
        for (std::size_t end = 1; end <= text.size(); ++end) {
            sum = Extend(sum, text[end - 1]);
            SumAt(end) = sum;
            if (end < windowSize_) continue;
            const Hash window = sum - SumAt(end - windowSize_) * windowPower_;
            if (filter_.MayHave(window)) NoteWindow(window, end);
        }
    }

    void TellEnds(std::vector<std::size_t>& ends) const {
        for (const Anchor& anchor : anchors_)
            ends[anchor.number] = EndOf(anchor);
    }

private:
    // A size of anchors that end with the window; those of one window are chained.
    struct Length {
        std::size_t size;
        Hash power;
        std::uint32_t next;
    };
    struct Window {
        std::size_t lastEnd = 0;  // in the text; 0: it isn't there
        std::uint32_t lengths = kNone;
    };
    struct Anchor {
        std::size_t number, size;
        std::uint32_t whole, frontWindow, endWindow;
    };

    Hash& SumAt(std::size_t end) { return sums_[end & (sums_.size() - 1)]; }
    bool IsRemembered(std::size_t size) const { return size < sums_.size(); }

    std::uint32_t AddWindow(Hash hash) {
        filter_.Add(hash);
        const std::uint32_t number = windowNumbers_.FindOrAdd(hash);
        windows_.resize(std::max<std::size_t>(windows_.size(), number + 1));
        return number;
    }

    void AddLength(Window& window, std::size_t size) {
        if (!IsRemembered(size)) return;
        for (std::uint32_t i = window.lengths; i != kNone; i = lengths_[i].next)
            if (lengths_[i].size == size) return;
        lengths_.push_back({size, Power(size), window.lengths});
        window.lengths = static_cast<std::uint32_t>(lengths_.size() - 1);
    }

    void NoteWindow(Hash hash, std::size_t end) {
        const std::uint32_t number = windowNumbers_.Find(hash);
        if (number == kNone) return;
        Window& window = windows_[number];
        window.lastEnd = end;
        for (std::uint32_t i = window.lengths; i != kNone && checksLeft_ > 0; i = lengths_[i].next) {
            const Length& length = lengths_[i];
            if (length.size > end) continue;
            --checksLeft_;
            const std::uint32_t whole = wholeNumbers_.Find(SumAt(end) - SumAt(end - length.size) * length.power);
            if (whole != kNone) wholeEnds_[whole] = end;
        }
    }

    // Without a check of all wholes, the front and the end must both be there.
    std::size_t EndOf(const Anchor& anchor) const {
        if (checksLeft_ > 0 && IsRemembered(anchor.size)) return BehindBegin(wholeEnds_[anchor.whole], anchor.size);
        return std::min(BehindBegin(windows_[anchor.frontWindow].lastEnd, windowSize_),
                        BehindBegin(windows_[anchor.endWindow].lastEnd, anchor.size));
    }
    static std::size_t BehindBegin(std::size_t end, std::size_t size) { return end < size ? 0 : end - size + 1; }

    std::size_t windowSize_;
    Hash windowPower_;
    std::vector<Hash> sums_;  // of the text up to each of the last places: a ring
    Filter filter_;
    Numbering windowNumbers_, wholeNumbers_;
    std::vector<Window> windows_;
    std::vector<Length> lengths_;
    std::vector<std::size_t> wholeEnds_;  // behind the last place of each whole anchor; 0: it isn't there
    std::vector<Anchor> anchors_;
    std::size_t checksLeft_ = 0;
};

std::size_t LevelOf(std::string_view anchor) {
    return std::min<std::size_t>(static_cast<std::size_t>(std::bit_width(anchor.size())), kLevels) - 1;
}

}  // namespace

AnchorPlaces::AnchorPlaces(std::span<const std::string_view> anchors, std::string_view text)
    : ends_(anchors.size(), kAnywhere) {
    std::array<std::vector<std::size_t>, kLevels> numbers;
    for (std::size_t i = 0; i < anchors.size(); ++i)
        if (!anchors[i].empty()) numbers[LevelOf(anchors[i])].push_back(i);
    for (std::size_t k = 0; k < kLevels; ++k) {
        if (numbers[k].size() <= kFewAnchors) continue;
        Level level(std::size_t{1} << k, numbers[k].size());
        for (const std::size_t i : numbers[k])
            level.Add(i, anchors[i]);
        level.Search(text);
        level.TellEnds(ends_);
    }
}

}  // namespace kvl
