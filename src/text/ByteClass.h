#pragma once
// Classes of bytes, by value. The language is 8-bit: eleven letters above 127 are visible, all other bytes outside the
// printable ASCII range count as white space.

#include <array>
#include <string_view>

namespace kvl {

namespace byte_class {
constexpr unsigned char kSpecialLetters[] = {0xA7, 0xA9, 0xB0, 0xB5, 0xC4, 0xD6, 0xDC, 0xDF, 0xE4, 0xF6, 0xFC};

enum : unsigned char { kInvisible = 1, kLetter = 2, kDigit = 4, kSpecial = 8 };

constexpr std::array<unsigned char, 256> MakeTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        if (i < 0x21 || i > 0x7E) table[i] = kInvisible;
        if ((i >= 'A' && i <= 'Z') || (i >= 'a' && i <= 'z') || i == '_') table[i] = kLetter;
        if (i >= '0' && i <= '9') table[i] = kDigit;
    }
    for (unsigned char letter : kSpecialLetters)
        table[letter] = kSpecial;
    return table;
}
inline constexpr std::array<unsigned char, 256> kTable = MakeTable();
}  // namespace byte_class

// Neither printable ASCII (0x21 to 0x7E) nor one of the eleven special letters.
constexpr bool IsInvisible(char c) {
    return (byte_class::kTable[static_cast<unsigned char>(c)] & byte_class::kInvisible) != 0;
}
// A to Z, a to z and "_".
constexpr bool IsLetter(char c) {
    return (byte_class::kTable[static_cast<unsigned char>(c)] & byte_class::kLetter) != 0;
}
constexpr bool IsDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}
constexpr bool IsNameByte(char c) {
    return (byte_class::kTable[static_cast<unsigned char>(c)] & (byte_class::kLetter | byte_class::kDigit)) != 0;
}
// One of the eleven letters above 127 (umlauts, sharp s, section, copyright, degree and micro sign in Latin-1).
constexpr bool IsSpecialLetter(char c) {
    return (byte_class::kTable[static_cast<unsigned char>(c)] & byte_class::kSpecial) != 0;
}

// Is every byte invisible? True for the empty text.
bool IsAllInvisible(std::string_view text);
// A letter or "_", then letters, digits and "_".
bool IsIdentifier(std::string_view text);

}  // namespace kvl
