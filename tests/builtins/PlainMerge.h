#pragma once
// The merge of two texts as a walk over positions, step by step as it is defined.

#include <string>

namespace kvl {

inline std::string PlainMerge(const std::string& text, const std::string& old, const std::string& start,
                              const std::string& end) {
    constexpr std::size_t kNone = std::string::npos;
    std::string out, pending;
    std::size_t oldPlace = 0;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t begin = start.empty() ? kNone : text.find(start, place);
        const std::size_t inside = begin == kNone ? kNone : begin + start.size();
        const std::size_t close = begin == kNone || end.empty() ? kNone : text.find(end, inside);
        const std::string anchor = text.substr(place, begin == kNone ? kNone : begin - place);
        const std::size_t found = anchor.empty() ? kNone : old.find(anchor, oldPlace);
        if (found == kNone) {
            out += pending + anchor;
        } else {
            out += old.substr(oldPlace, found + anchor.size() - oldPlace);
            oldPlace = found + anchor.size();
        }
        pending = begin == kNone ? "" : text.substr(inside, close == kNone ? kNone : close - inside);
        place = close == kNone ? text.size() : close + end.size();
    }
    return out;
}

}  // namespace kvl
