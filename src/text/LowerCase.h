#pragma once
// Lower case of ASCII letters; all other bytes stay as they are, whatever the locale.

#include <string>
#include <string_view>

namespace kvl {

constexpr char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = LowerCase(c);
    return lower;
}

}  // namespace kvl
