#include "typeschema/WeakMatch.h"

namespace kvl {

LiteralMatch MatchStrict(InputWindow& window, std::string_view literal) {
    const int length = static_cast<int>(literal.size());
    const int start = window.cursor;
    if (window.end - start < length) {
        window.cursor = window.end;
        return {};
    }
    window.cursor = start + length;
    if (std::memcmp(window.text.data() + start, literal.data(), literal.size()) != 0) return {};
    return {true, start, window.cursor};
}

namespace {

// One walk over a literal by runs of visible and of invisible bytes, against the window.
class WeakMatcher {
public:
    WeakMatcher(InputWindow& window, std::string_view literal) : window_(window), literal_(literal) {}

    LiteralMatch Match(MatchPlace place) {
        const bool skipsFirst = !IsInvisible(literal_.front());
        int attempts = window_.end - window_.cursor;
        while (!atEnd_) {
            if (skipsFirst) SkipToFirst(place);
            const int start = window_.cursor;
            if (MatchRuns()) return {matched_, start, window_.cursor};
            if (place == MatchPlace::Anchored) return {};
            next_ = 0;
            // a start that consumed nothing will never get on
            if (--attempts <= 0 || window_.cursor == start) break;
        }
        return {matched_, start_, window_.cursor};
    }

private:
    void SkipToFirst(MatchPlace place) {
        if (place == MatchPlace::Anchored) {
            window_.SkipInvisible();
            return;
        }
        const int found = window_.Find(literal_.substr(0, 1), window_.cursor);
        window_.cursor = found < 0 ? window_.end : found;
    }

    bool MatchRuns() {
        matched_ = false;
        start_ = window_.cursor;
        while (!matched_ && !atEnd_) {
            if (!(IsInvisible(literal_[next_]) ? MatchInvisibleRun() : MatchVisibleRun())) return false;
        }
        return true;
    }

    bool MatchVisibleRun() {
        while (!matched_ && !atEnd_) {
            if (window_.IsAtEnd()) {
                atEnd_ = true;
                return false;
            }
            if (window_.GetChar() != literal_[next_]) return false;
            ++next_;
            if (next_ == literal_.size()) {
                matched_ = true;
            } else if (IsInvisible(literal_[next_])) {
                break;
            }
        }
        return true;
    }

    bool MatchInvisibleRun() {
        while (next_ < literal_.size() && IsInvisible(literal_[next_]))
            ++next_;
        matched_ = next_ == literal_.size();
        const int before = window_.cursor;
        window_.SkipInvisible();
        if (window_.IsAtEnd()) atEnd_ = true;
        return window_.cursor > before;
    }

    InputWindow& window_;
    std::string_view literal_;
    std::size_t next_ = 0;  // in the literal
    int start_ = -1;
    bool matched_ = false;
    bool atEnd_ = false;
};

}  // namespace

LiteralMatch MatchWeak(InputWindow& window, std::string_view literal, MatchPlace place) {
    if (literal.empty()) return {};
    return WeakMatcher(window, literal).Match(place);
}

}  // namespace kvl
