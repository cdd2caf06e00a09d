#pragma once
// The bridge between UTF-8 sources and the 8-bit language.

#include <string>
#include <string_view>

namespace kvl {

// Folds the UTF-8 forms of the special letters to single bytes: the lead bytes 0xC2 and 0xC3 vanish and set `utf8`;
// behind 0xC3 the umlauts and the sharp s are mapped, all other bytes stay. Without any lead byte the result equals the
// text.
std::string FoldUtf8(std::string_view text, bool& utf8);

// Puts every special letter into its two-byte form: for text in which each such byte is a letter.
std::string EncodeFolded(std::string_view text);

// Puts each special letter that stands alone in `text` from `from` on into its two-byte form; bytes that are part of a
// well-formed UTF-8 sequence stay. Linear in what lies behind `from`.
void EncodeSpecialLetters(std::string& text, std::size_t from);

}  // namespace kvl
