#pragma once
// Runs of bytes of one class: white space, words, names, digits.
//
// Attempts of the parser may begin at every byte of a run and read it to its end. Where a long run ends is therefore
// remembered, so that each further attempt inside it costs a bounded number of looks.

#include <array>

#include "text/ByteClass.h"

namespace kvl {

enum class ByteRun { Invisible, Visible, Name, Digits };

class ByteRuns {
public:
    // Where the run of a class that holds the bytes from `at` on ends; `at` itself where there is none.
    template <ByteRun run>
    const char* EndOf(const char* at, const char* end) {
        if (at >= end || !Fits<run>(*at)) return at;
        const char* const near = end - at > kShortRun ? at + kShortRun : end;
        do
            ++at;
        while (at < near && Fits<run>(*at));
        return at < near || near == end ? at : EndOfLong<run>(at, end);
    }

private:
    static constexpr int kShortRun = 64;

    struct Known {
        const char* from = nullptr;
        const char* to = nullptr;
        const char* end = nullptr;  // of the window
    };

    template <ByteRun run>
    static bool Fits(char c) {
        if constexpr (run == ByteRun::Invisible) return IsInvisible(c);
        if constexpr (run == ByteRun::Visible) return !IsInvisible(c);
        if constexpr (run == ByteRun::Name) return IsNameByte(c);
        if constexpr (run == ByteRun::Digits) return IsDigit(c);
    }

    template <ByteRun run>
    const char* EndOfLong(const char* at, const char* end) {
        Known& known = known_[static_cast<std::size_t>(run)];
        if (known.end == end && known.from <= at && at <= known.to) return known.to;
        known = {at, at, end};
        while (known.to < end && Fits<run>(*known.to))
            ++known.to;
        return known.to;
    }

    std::array<Known, 4> known_;
};

}  // namespace kvl
