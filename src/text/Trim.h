#pragma once
// Cutting invisible bytes off the ends of a text. The results are views into the argument.

#include <string_view>

#include "text/ByteClass.h"

namespace kvl {

inline std::string_view TrimInvisibleEnd(std::string_view text) {
    while (!text.empty() && IsInvisible(text.back()))
        text.remove_suffix(1);
    return text;
}

inline std::string_view TrimInvisibleFront(std::string_view text) {
    while (!text.empty() && IsInvisible(text.front()))
        text.remove_prefix(1);
    return text;
}

inline std::string_view TrimInvisible(std::string_view text) {
    return TrimInvisibleFront(TrimInvisibleEnd(text));
}

}  // namespace kvl
