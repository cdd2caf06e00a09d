#pragma once
// Where the anchors of a merge stand in the old text for the last time: one pass over it for all of them, so that those
// that are not to come any more need not be looked for one by one.

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>

namespace kvl {

class AnchorPlaces {
public:
    // Views of `anchors` are kept; nothing else is. Costs time in proportion to all texts.
    AnchorPlaces(std::span<const std::string_view> anchors, std::string_view text);

    // False if the anchor is known not to begin at or behind `position`.
    bool MayBeginBehind(std::string_view anchor, std::size_t position) const;

private:
    // Behind the last place where the anchor begins: 0 for none. An anchor that is not here may stand anywhere.
    std::unordered_map<std::string_view, std::size_t> ends_;
};

}  // namespace kvl
