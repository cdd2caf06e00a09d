#pragma once
// A scanner as one writes it by hand: a pointer that moves over the text, tokens as views.

#include <cstring>
#include <string_view>

namespace kvl::bench {

class TextScanner {
public:
    explicit TextScanner(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    bool IsAtEnd() {
        SkipSpace();
        return at_ == end_;
    }
    bool Accept(char c) {
        SkipSpace();
        if (at_ == end_ || *at_ != c) return false;
        ++at_;
        return true;
    }
    // The text itself, without a look at what stands behind it.
    bool AcceptText(std::string_view text) {
        SkipSpace();
        if (!std::string_view(at_, static_cast<std::size_t>(end_ - at_)).starts_with(text)) return false;
        at_ += text.size();
        return true;
    }
    // Letters, digits and "_", not beginning with a digit; empty if there are none.
    std::string_view Name() {
        SkipSpace();
        if (at_ != end_ && *at_ >= '0' && *at_ <= '9') return {};
        return Run(IsNameByte);
    }
    std::string_view Digits() {
        SkipSpace();
        return Run([](char c) { return c >= '0' && c <= '9'; });
    }
    std::string_view Decimal() {
        SkipSpace();
        return Run([](char c) { return (c >= '0' && c <= '9') || c == '.'; });
    }
    // Up to the stop, which is passed over; null data if there is none.
    std::string_view Until(char stop) {
        const void* found = std::memchr(at_, stop, static_cast<std::size_t>(end_ - at_));
        if (found == nullptr) return {};
        const std::string_view text(at_, static_cast<std::size_t>(static_cast<const char*>(found) - at_));
        at_ += text.size() + 1;
        return text;
    }
    const char* Place() const { return at_; }
    void GoTo(const char* place) { at_ = place; }
    std::string_view Rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

private:
    static bool IsNameByte(char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    }
    void SkipSpace() {
        while (at_ != end_ && static_cast<unsigned char>(*at_) <= ' ')
            ++at_;
    }
    template <class Fits>
    std::string_view Run(Fits fits) {
        const char* begin = at_;
        while (at_ != end_ && fits(*at_))
            ++at_;
        return {begin, static_cast<std::size_t>(at_ - begin)};
    }

    const char* at_;
    const char* end_;
};

}  // namespace kvl::bench
