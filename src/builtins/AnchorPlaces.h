#pragma once
// Where the anchors of a merge may stand in the old text for the last time: found for all of them together, so that
// those that are not to come any more need not be looked for one by one.

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace kvl {

class AnchorPlaces {
public:
    // Keeps none of the texts. Costs time in proportion to all of them.
    AnchorPlaces(std::span<const std::string_view> anchors, std::string_view text);

    // False if the anchor with this number is known not to begin at or behind `position`.
    bool MayBeginBehind(std::size_t number, std::size_t position) const { return ends_[number] > position; }

private:
    // Of each anchor, a place behind which it doesn't begin.
    std::vector<std::size_t> ends_;
};

}  // namespace kvl
