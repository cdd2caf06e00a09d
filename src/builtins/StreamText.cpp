// All of them pass over their texts once. Merge looks for each anchor in what is left of the old text: one that is
// there moves on in it, and when too many were missed, AnchorPlaces tells which of the others can still come.
#include "builtins/StreamText.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "builtins/AnchorPlaces.h"
#include "text/ByteClass.h"
#include "text/Replace.h"
#include "text/Trim.h"

namespace kvl {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

std::size_t FindMark(std::string_view text, std::string_view mark, std::size_t position) {
    return mark.empty() ? kNone : FindText(text, mark, position);
}

// The region that begins at or behind `position`: the place of its start mark, and of its end mark behind that one.
struct Region {
    std::size_t start = kNone, innerBegin = kNone, end = kNone;
};

Region FindRegion(std::string_view text, std::size_t position, std::string_view startMark, std::string_view endMark) {
    Region region;
    region.start = FindMark(text, startMark, position);
    if (region.start == kNone) return region;
    region.innerBegin = region.start + startMark.size();
    region.end = FindMark(text, endMark, region.innerBegin);
    return region;
}

std::string_view Between(std::string_view text, std::size_t begin, std::size_t end) {
    return text.substr(begin, end == kNone ? kNone : end - begin);
}

// An anchor of the new text with the region behind it. An empty anchor: a region directly behind another.
struct MergePart {
    std::string_view anchor, inner;
};

std::vector<MergePart> SplitForMerge(std::string_view newText, std::string_view startMark, std::string_view endMark) {
    std::vector<MergePart> parts;
    for (std::size_t position = 0; position < newText.size();) {
        const Region region = FindRegion(newText, position, startMark, endMark);
        const bool hasRegion = region.start != kNone;
        parts.push_back({Between(newText, position, region.start),
                         hasRegion ? Between(newText, region.innerBegin, region.end) : std::string_view()});
        position = region.end == kNone ? newText.size() : region.end + endMark.size();
    }
    return parts;
}

class Merger {
public:
    // Nothing is owned; all outlives this.
    Merger(const std::vector<MergePart>& parts, std::string_view oldText) : parts_(parts), oldText_(oldText) {}

    std::string Merge(std::size_t expectedSize) {
        result_.reserve(expectedSize);
        std::string_view pending;  // the new region in front of the next anchor
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            const std::string_view anchor = parts_[i].anchor;
            if (anchor.empty() || !TakeFromOldText(i)) result_.append(pending).append(anchor);
            pending = parts_[i].inner;
        }
        return std::move(result_);
    }

private:
    // So many bytes may be searched in vain for each byte of the old text before all anchors are looked up at once.
    static constexpr std::size_t kPatience = 4;

    // Copies the old text up to the end of the anchor of the part with this number.
    bool TakeFromOldText(std::size_t number) {
        const std::string_view anchor = parts_[number].anchor;
        if (places_ && !places_->MayBeginBehind(number - firstPlaced_, place_)) return false;
        if (missing_.count(anchor) > 0) return false;
        const std::size_t found = FindText(oldText_, anchor, place_);
        if (found == kNone) {
            NoteMissing(number);
            return false;
        }
        const std::size_t end = found + anchor.size();
        result_ += oldText_.substr(place_, end - place_);
        place_ = end;
        return true;
    }

    void NoteMissing(std::size_t number) {
        missing_.insert(parts_[number].anchor);
        searchedInVain_ += oldText_.size() - place_;
        if (places_ || searchedInVain_ / kPatience < oldText_.size()) return;
        oldText_.remove_prefix(std::exchange(place_, 0));
        std::vector<std::string_view> anchors;
        for (firstPlaced_ = number; number < parts_.size(); ++number)
            anchors.push_back(parts_[number].anchor);
        places_.emplace(anchors, oldText_);
    }

    const std::vector<MergePart>& parts_;
    std::string_view oldText_;
    std::size_t place_ = 0;  // in it, behind the last anchor found
    std::size_t searchedInVain_ = 0;
    std::unordered_set<std::string_view> missing_;
    std::optional<AnchorPlaces> places_;  // of the anchors from the part `firstPlaced_` on
    std::size_t firstPlaced_ = 0;
    std::string result_;
};

}  // namespace

std::string Merge(std::string_view newText, std::string_view oldText, std::string_view startMark,
                  std::string_view endMark) {
    const std::vector<MergePart> parts = SplitForMerge(newText, startMark, endMark);
    return Merger(parts, oldText).Merge(std::max(newText.size(), oldText.size()));
}

std::string Replace2(std::string_view text, std::string_view startMark, std::string_view endMark,
                     std::string_view byWhat) {
    std::string result;
    std::size_t position = 0;
    for (;;) {
        const Region region = FindRegion(text, position, startMark, endMark);
        if (region.end == kNone) break;
        result += Between(text, position, region.start);
        result += byWhat;
        position = region.end + endMark.size();
    }
    result += text.substr(position);
    return result;
}

std::string Clear(std::string_view text) {
    std::string result;
    bool isBehindVisible = true;
    for (const char c : TrimInvisible(text)) {
        const bool isInvisible = IsInvisible(c);
        if (!isInvisible || isBehindVisible) result += c;
        isBehindVisible = !isInvisible;
    }
    return result;
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::string Left(std::string_view text, std::int32_t width) {
    if (text.empty() || width < 0) return std::string(text);
    const auto count = static_cast<std::size_t>(width);
    std::string result(text.substr(0, count));
    result.resize(count, ' ');
    return result;
}

std::string Right(std::string_view text, std::int32_t width) {
    if (text.empty() || width < 0) return std::string(text);
    const auto count = static_cast<std::size_t>(width);
    if (text.size() >= count) return std::string(text.substr(text.size() - count));
    std::string result(count - text.size(), ' ');
    result += text;
    return result;
}

}  // namespace kvl
