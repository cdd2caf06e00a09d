#pragma once
// Cutting invisible bytes off the ends of a text. The results are views into the argument.

#include <string_view>

namespace kvl {

std::string_view TrimInvisible(std::string_view text);
std::string_view TrimInvisibleEnd(std::string_view text);
std::string_view TrimInvisibleFront(std::string_view text);

}  // namespace kvl
