// A search for many texts at once after Karp and Rabin. Anchors of similar sizes are looked for together, by a window
// of bytes that the shortest of them has room for. A walk over the text in strides looks only at the windows that end
// with a stride. So of each anchor, the last few windows are known, as many as a stride has bytes: wherever it stands,
// one of them ends with a stride. Nearly all places are refused by a bit filter that stays in the cache; where an
// anchor may end, the hash of the whole decides. Equal bytes have equal hashes, so a clash can only claim a place that
// is none, and that costs no more than a search.
#include "builtins/AnchorPlaces.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "builtins/TextHash.h"

namespace kvl {

namespace {

constexpr std::uint32_t kNone = ~std::uint32_t{0};
constexpr std::size_t kAnywhere = ~std::size_t{0};
constexpr std::size_t kFewAnchors = 4;    // are as quickly looked for one by one
constexpr std::size_t kLongest = 131072;  // of a longer anchor, the end is looked for
constexpr std::size_t kMostChecks = 8;    // of whole anchors, for each byte of the text

// Numbers hashes from 0 up. Open addressing with linear probing; the lower halves tell those of nearby slots apart.
class Numbering {
public:
    explicit Numbering(std::size_t most)
        : slots_(std::bit_ceil(2 * most + 2)), shift_(64 - std::countr_zero(slots_.size())) {}

    // kNone if it has none.
    std::uint32_t Find(TextHash hash) const { return slots_[SlotOf(hash)].number; }

    std::uint32_t FindOrAdd(TextHash hash) {
        Slot& slot = slots_[SlotOf(hash)];
        if (slot.number == kNone) slot = {static_cast<std::uint32_t>(hash), count_++};
        return slot.number;
    }

private:
    struct Slot {
        std::uint32_t lowerHalf = 0, number = kNone;
    };

    std::size_t SlotOf(TextHash hash) const {
        std::size_t i = hash >> shift_;
        while (slots_[i].number != kNone && slots_[i].lowerHalf != static_cast<std::uint32_t>(hash))
            i = (i + 1) & (slots_.size() - 1);
        return i;
    }

    std::vector<Slot> slots_;
    int shift_;
    std::uint32_t count_ = 0;
};

// Three bits of one word for each hash; at most a megabyte.
class Filter {
public:
    explicit Filter(std::size_t most)
        : words_(std::bit_ceil(std::clamp(most / 4, kFewestWords, kMostWords))),
          shift_(64 - std::countr_zero(words_.size())) {}

    void Add(TextHash hash) { words_[hash >> shift_] |= Bits(hash); }
    bool MayHave(TextHash hash) const { return (~words_[hash >> shift_] & Bits(hash)) == 0; }

private:
    static constexpr std::size_t kFewestWords = 64, kMostWords = std::size_t{1} << 17;
    static std::uint64_t Bits(TextHash hash) {
        return std::uint64_t{1} << (hash >> 40 & 63) | std::uint64_t{1} << (hash >> 34 & 63) |
               std::uint64_t{1} << (hash >> 28 & 63);
    }

    std::vector<std::uint64_t> words_;
    int shift_;
};

// The part of an anchor that is looked for: its end, if it is very long.
struct Sought {
    std::size_t number;
    std::string_view bytes;
};

// All of similar sizes, none of which is shorter than a window and the rest of a stride.
template <std::size_t kStride>
class Group {
public:
    // Nothing is owned; both outlive this.
    Group(const std::vector<Sought>& members, std::string_view text)
        : members_(members),
          text_(text),
          windowStrides_((ShortestSize() - (kStride - 1)) / kStride),
          windowPower_(HashPower(WindowSize())),
          sums_(std::bit_ceil(LongestSize() / kStride + 2)),
          windowFilter_(kStride * members.size()),
          wholeFilter_(members.size()),
          windowNumbers_((kStride == 1 ? 2 : kStride) * members.size()),
          wholeNumbers_(members.size()),
          checksLeft_(kMostChecks * text.size()) {
        lengths_.reserve(kStride * members.size());
        for (const Sought& member : members)
            Add(member.bytes);
    }

    // Tells of each member the place behind which it doesn't end, 0 if it is nowhere.
    template <class Tell>
    void Search(const Tell& tell) {
        Walk();
        if (checksLeft_ == 0 && kStride > 1) return Group<1>(members_, text_).Search(tell);
        for (std::size_t i = 0; i < members_.size(); ++i)
            tell(members_[i].number, checksLeft_ > 0 ? wholeEnds_[wholes_[i]] : EndOfWindows(i));
    }

private:
    struct Window {
        std::size_t lastEnd = 0;        // in the text; 0: it isn't there
        std::uint32_t lengths = kNone;  // the first of its chain
    };
    // A member that ends `tail` bytes behind a window; those of one window are chained.
    struct Length {
        TextHash power;
        std::uint32_t size, tail, next;
    };

    static bool IsShorter(const Sought& a, const Sought& b) { return a.bytes.size() < b.bytes.size(); }
    std::size_t ShortestSize() const { return std::ranges::min_element(members_, IsShorter)->bytes.size(); }
    std::size_t LongestSize() const { return std::ranges::max_element(members_, IsShorter)->bytes.size(); }
    std::size_t WindowSize() const { return windowStrides_ * kStride; }

    void Add(std::string_view bytes) {
        const std::size_t firstBegin = bytes.size() - WindowSize() - (kStride - 1);
        TextHash begin = ExtendHash(0, bytes.substr(0, firstBegin));
        TextHash end = ExtendHash(begin, bytes.substr(firstBegin, WindowSize()));
        AddWindow(end - begin * windowPower_, bytes.size(), kStride - 1);
        for (std::size_t tail = kStride - 1; tail > 0; --tail) {
            const std::size_t place = bytes.size() - tail;
            begin = ExtendHash(begin, bytes[place - WindowSize()]);
            end = ExtendHash(end, bytes[place]);
            AddWindow(end - begin * windowPower_, bytes.size(), tail - 1);
        }
        if constexpr (kStride == 1) {
            const TextHash front = ExtendHash(0, bytes.substr(0, WindowSize()));
            outerWindows_.push_back({NumberWindow(front), NumberWindow(end - begin * windowPower_)});
        }
        wholeFilter_.Add(MixHash(end));
        wholes_.push_back(wholeNumbers_.FindOrAdd(MixHash(end)));
        if (wholes_.back() == wholeEnds_.size()) wholeEnds_.push_back(0);
    }

    void AddWindow(TextHash window, std::size_t size, std::size_t tail) {
        std::uint32_t& first = windows_[NumberWindow(window)].lengths;
        for (std::uint32_t i = first; i != kNone; i = lengths_[i].next)
            if (lengths_[i].size == size && lengths_[i].tail == tail) return;
        lengths_.push_back(
            {HashPower(size), static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(tail), first});
        first = static_cast<std::uint32_t>(lengths_.size() - 1);
    }

    std::uint32_t NumberWindow(TextHash window) {
        windowFilter_.Add(MixHash(window));
        const std::uint32_t number = windowNumbers_.FindOrAdd(MixHash(window));
        if (number == windows_.size()) windows_.emplace_back();
        return number;
    }

    // What the loop reads is kept in locals, which no store into the ring can change.
    void Walk() {
        const std::size_t strides = text_.size() / kStride, windowStrides = windowStrides_, ring = sums_.size() - 1;
        const TextHash power = windowPower_;
        TextHash* const sums = sums_.data();
        TextHash sum = 0;
        for (std::size_t i = 1; i <= strides; ++i) {
            sum = ExtendHashBy<kStride>(sum, text_.data() + (i - 1) * kStride);
            sums[i & ring] = sum;
            const TextHash window = MixHash(sum - sums[(i - windowStrides) & ring] * power);
            if (windowFilter_.MayHave(window) && i >= windowStrides) CheckWindow(window, i * kStride);
        }
    }

    void CheckWindow(TextHash mixedWindow, std::size_t place) {
        const std::uint32_t number = windowNumbers_.Find(mixedWindow);
        if (number == kNone) return;
        windows_[number].lastEnd = place;
        for (std::uint32_t i = windows_[number].lengths; i != kNone && checksLeft_ > 0; i = lengths_[i].next) {
            const Length& length = lengths_[i];
            const std::size_t end = place + length.tail;
            if (length.size > end || end > text_.size()) continue;
            --checksLeft_;
            const TextHash whole = MixHash(SumAt(end) - SumAt(end - length.size) * length.power);
            if (!wholeFilter_.MayHave(whole)) continue;
            const std::uint32_t wholeNumber = wholeNumbers_.Find(whole);
            if (wholeNumber != kNone) wholeEnds_[wholeNumber] = end;
        }
    }

    // What is known without a check of wholes, where a window ends with the member: its first and its last window must
    // both be there.
    std::size_t EndOfWindows(std::size_t member) const {
        const std::size_t afterFront = members_[member].bytes.size() - WindowSize();
        const auto [front, back] = outerWindows_[member];
        const std::size_t frontEnd = windows_[front].lastEnd, backEnd = windows_[back].lastEnd;
        return frontEnd == 0 ? 0 : std::min(frontEnd + afterFront, backEnd);
    }

    TextHash SumAt(std::size_t place) const {
        const std::size_t stride = place / kStride;
        return ExtendHash(sums_[stride & (sums_.size() - 1)], text_.substr(stride * kStride, place % kStride));
    }

    const std::vector<Sought>& members_;
    std::string_view text_;
    std::size_t windowStrides_;
    TextHash windowPower_;
    std::vector<TextHash> sums_;  // of the text up to the ends of the last strides: a ring
    Filter windowFilter_, wholeFilter_;
    Numbering windowNumbers_, wholeNumbers_;
    std::vector<Window> windows_;
    std::vector<Length> lengths_;
    std::vector<std::array<std::uint32_t, 2>> outerWindows_;  // of each member, where the stride is a byte
    std::vector<std::uint32_t> wholes_;                       // of each member
    std::vector<std::size_t> wholeEnds_;                      // behind the last place of each; 0: it isn't there
    std::size_t checksLeft_;
};

// Each group takes the sizes up to that of the next.
struct SizeRow {
    std::size_t smallest;
    std::size_t stride;
};
constexpr SizeRow kSizes[] = {{1, 1}, {4, 1}, {8, 1}, {16, 4}, {128, 4}, {1024, 4}, {8192, 4}};

std::size_t RowOf(std::size_t size) {
    std::size_t row = std::size(kSizes) - 1;
    while (kSizes[row].smallest > size)
        --row;
    return row;
}

}  // namespace

AnchorPlaces::AnchorPlaces(std::span<const std::string_view> anchors, std::string_view text)
    : ends_(anchors.size(), kAnywhere) {
    std::vector<Sought> groups[std::size(kSizes)];
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const std::string_view anchor = anchors[i];
        if (!anchor.empty())
            groups[RowOf(anchor.size())].push_back(
                {i, anchor.substr(anchor.size() - std::min(anchor.size(), kLongest))});
    }
    const auto tell = [&](std::size_t number, std::size_t end) {
        const std::size_t size = anchors[number].size();
        ends_[number] = end < size ? 0 : end - size + 1;
    };
    for (std::size_t row = 0; row < std::size(kSizes); ++row) {
        if (groups[row].size() <= kFewAnchors) continue;
        if (kSizes[row].stride == 1)
            Group<1>(groups[row], text).Search(tell);
        else
            Group<4>(groups[row], text).Search(tell);
    }
}

}  // namespace kvl
