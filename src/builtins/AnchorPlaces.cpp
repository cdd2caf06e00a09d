// Each anchor is known by eight bytes of it, those that are the rarest among all anchors: mostly a piece of a name that
// no other has. The text is walked once; where eight such bytes stand the whole anchor is compared. An anchor that is
// too short, or whose rarest bytes many others have too, is left out.
#include "builtins/AnchorPlaces.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kvl {

namespace {

using Gram = std::uint64_t;
constexpr std::size_t kGramSize = sizeof(Gram);
constexpr std::size_t kMostSharing = 16;
constexpr std::size_t kFewestSlots = std::size_t{1} << 10, kMostSlots = std::size_t{1} << 20;

Gram GramAt(std::string_view text, std::size_t position) {
    Gram gram = 0;
    std::memcpy(&gram, text.data() + position, kGramSize);
    return gram;
}

// Small numbers for grams; two of them may share one.
class Slots {
public:
    explicit Slots(std::size_t gramCount)
        : numbers_(std::bit_ceil(std::clamp(gramCount, kFewestSlots, kMostSlots))),
          shift_(64 - std::countr_zero(numbers_.size())) {}
    std::uint32_t& operator[](Gram gram) { return numbers_[(gram * 0x9E3779B97F4A7C15U) >> shift_]; }

private:
    std::vector<std::uint32_t> numbers_;
    int shift_;
};

struct Candidate {
    std::string_view anchor;
    std::size_t offset;  // of its gram
};

std::size_t RarestOffset(std::string_view anchor, Slots& counts) {
    std::size_t rarest = 0;
    for (std::size_t i = 1; i + kGramSize <= anchor.size(); ++i)
        if (counts[GramAt(anchor, i)] < counts[GramAt(anchor, rarest)]) rarest = i;
    return rarest;
}

using CandidateMap = std::unordered_map<Gram, std::vector<Candidate>>;

CandidateMap MakeCandidates(const std::unordered_map<std::string_view, std::size_t>& anchors, std::size_t byteCount) {
    Slots counts(byteCount);
    for (const auto& [anchor, end] : anchors)
        for (std::size_t i = 0; i + kGramSize <= anchor.size(); ++i)
            ++counts[GramAt(anchor, i)];
    CandidateMap candidates;
    for (const auto& [anchor, end] : anchors) {
        const std::size_t offset = RarestOffset(anchor, counts);
        candidates[GramAt(anchor, offset)].push_back({anchor, offset});
    }
    return candidates;
}

}  // namespace

AnchorPlaces::AnchorPlaces(std::span<const std::string_view> anchors, std::string_view text) {
    std::size_t byteCount = 0;
    for (const std::string_view anchor : anchors)
        if (anchor.size() >= kGramSize && ends_.emplace(anchor, 0).second) byteCount += anchor.size();
    CandidateMap candidates = MakeCandidates(ends_, byteCount);
    Slots isWanted(candidates.size() * 8);
    for (auto& [gram, sharing] : candidates) {
        if (sharing.size() > kMostSharing)
            for (const Candidate& left : sharing)
                ends_.erase(left.anchor);
        else
            isWanted[gram] = 1;
    }
    for (std::size_t i = 0; i + kGramSize <= text.size(); ++i) {
        const Gram gram = GramAt(text, i);
        if (isWanted[gram] == 0) continue;
        const auto found = candidates.find(gram);
        if (found == candidates.end() || found->second.size() > kMostSharing) continue;
        for (const Candidate& candidate : found->second)
            if (i >= candidate.offset && text.substr(i - candidate.offset).starts_with(candidate.anchor))
                ends_[candidate.anchor] = i - candidate.offset + 1;
    }
}

bool AnchorPlaces::MayBeginBehind(std::string_view anchor, std::size_t position) const {
    const auto found = ends_.find(anchor);
    return found == ends_.end() || found->second > position;
}

}  // namespace kvl
