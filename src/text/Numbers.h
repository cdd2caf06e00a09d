#pragma once
// Numbers as the language reads and prints them. Integers are 32-bit and wrap around.

#include <cstdint>
#include <string>
#include <string_view>

namespace kvl {

// Leading white space, a sign, digits; whatever follows is ignored, no digits give 0. Read as a 64-bit number held at
// its ends, of which the low 32 bits count.
std::int32_t ReadInteger(std::string_view text);
// The longest prefix that is a number in the C notation ("inf", "nan" and hexadecimal forms too); else 0.
double ReadFloat(std::string_view text);
// Truncated; what lies outside the 32-bit integers, and what is no number, becomes -2147483648.
std::int32_t TruncateToInteger(double value);
std::string IntegerText(std::int32_t value);
// Six significant digits, as a stream prints a float by default.
std::string FloatText(float value);

// Would reading a decimal integer (a float) convert anything at the start of the text? Leading white space is skipped.
bool StartsInteger(std::string_view text);
bool StartsFloat(std::string_view text);

}  // namespace kvl
