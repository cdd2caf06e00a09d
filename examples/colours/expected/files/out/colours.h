#pragma once
// Made by kvlRun from rgb.txt; do not edit.

#include <array>
#include <cstdint>
#include <string_view>

namespace colours {

struct Colour {
    std::string_view name;
    std::uint8_t red, green, blue;
};

inline constexpr auto kColours = std::to_array<Colour>({
    {"snow", 255, 250, 250},
    {"antique white", 250, 235, 215},
    {"AntiqueWhite", 250, 235, 215},
    {"navy", 0, 0, 128},
    {"light slate gray", 119, 136, 153},
    {"gray11", 28, 28, 28},
});

}  // namespace colours
