// All of them pass over their texts once, apart from Merge, which looks for each anchor in what is left of the old
// text: an anchor that is there moves on in it, and one that was missed once is not looked for again.
#include "builtins/StreamText.h"

#include <unordered_set>

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

class Merger {
public:
    explicit Merger(std::string_view oldText) : rest_(oldText) {}

    // The next anchor of the new text, with the region behind it. An empty anchor: a region directly behind another.
    void Add(std::string_view anchor, std::string_view inner) {
        if (anchor.empty() || !TakeFromOldText(anchor)) {
            result_ += pending_;
            result_ += anchor;
        }
        pending_ = inner;
    }

    std::string Take() { return std::move(result_); }

private:
    bool TakeFromOldText(std::string_view anchor) {
        if (missing_.count(anchor) > 0) return false;
        const std::size_t found = FindText(rest_, anchor, 0);
        if (found == kNone) {
            missing_.insert(anchor);
            return false;
        }
        const std::size_t end = found + anchor.size();
        result_ += rest_.substr(0, end);
        rest_.remove_prefix(end);
        return true;
    }

    std::string_view rest_;     // of the old text, behind the last anchor found
    std::string_view pending_;  // the new region in front of the next anchor
    std::unordered_set<std::string_view> missing_;
    std::string result_;
};

}  // namespace

std::string Merge(std::string_view newText, std::string_view oldText, std::string_view startMark,
                  std::string_view endMark) {
    Merger merger(oldText);
    for (std::size_t position = 0; position < newText.size();) {
        const Region region = FindRegion(newText, position, startMark, endMark);
        const std::string_view anchor = Between(newText, position, region.start);
        if (region.start == kNone) {
            merger.Add(anchor, {});
            break;
        }
        merger.Add(anchor, Between(newText, region.innerBegin, region.end));
        position = region.end == kNone ? newText.size() : region.end + endMark.size();
    }
    return merger.Take();
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
