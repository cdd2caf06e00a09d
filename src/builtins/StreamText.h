#pragma once
// The text operations behind the stream macros, as pure functions. Texts are bytes; an empty mark is never found.

#include <cstdint>
#include <string>
#include <string_view>

namespace kvl {

// Merges a new text with an old one. In the new text the marks fence regions; what stands between two regions is an
// anchor. Where an anchor is found in the old text, the old text in front of it, from the previous anchor on, takes the
// place of the new region in front of it. A region that no anchor follows is lost.
std::string Merge(std::string_view newText, std::string_view oldText, std::string_view startMark,
                  std::string_view endMark);
// Every region from a start mark to the next end mark, marks included, becomes `byWhat`.
std::string Replace2(std::string_view text, std::string_view startMark, std::string_view endMark,
                     std::string_view byWhat);
// Invisible bytes go from both ends; each run of them inside shrinks to its first byte.
std::string Clear(std::string_view text);
// ASCII letters only.
std::string UpperCase(std::string_view text);
// The first (last) `width` bytes, filled up with blanks behind (in front). The empty text stays empty; a negative width
// changes nothing.
std::string Left(std::string_view text, std::int32_t width);
std::string Right(std::string_view text, std::int32_t width);

}  // namespace kvl
