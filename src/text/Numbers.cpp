#include "text/Numbers.h"

#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "text/ByteClass.h"

namespace kvl {
namespace {

// White space as the C library skips it in front of a number.
constexpr std::string_view kSpace = " \t\n\v\f\r";

std::string_view SkipSpace(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kSpace);
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

// Takes a sign off the front.
bool TakeSign(std::string_view& text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    return negative;
}

bool IsHexadecimal(std::string_view unsignedText) {
    return unsignedText.size() > 2 && unsignedText[0] == '0' && (unsignedText[1] | 0x20) == 'x';
}

// The C library's own reading, for what std::from_chars does not give: hexadecimal forms, and the value of numbers out
// of range. Needs a copy, because it reads up to a zero byte; `length` is known to hold the number.
double ReadRareFloat(std::string_view text) {
    static const locale_t kPlainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(std::string(text).c_str(), nullptr, kPlainLocale);
}

// How many bytes at the front can belong to a hexadecimal number.
std::size_t HexadecimalLength(std::string_view unsignedText) {
    return std::min(unsignedText.find_first_not_of("0123456789abcdefABCDEFxXpP.+-"), unsignedText.size());
}

// The number at the front of `text`; false if there is none.
bool ScanFloat(std::string_view text, double& value) {
    text = SkipSpace(text);
    const bool negative = TakeSign(text);
    // A second sign is no number; std::from_chars would take a minus.
    if (text.empty() || text.front() == '-') return false;
    if (IsHexadecimal(text)) {
        value = ReadRareFloat(text.substr(0, HexadecimalLength(text)));
    } else {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc::invalid_argument) return false;
        if (error == std::errc::result_out_of_range)
            value = ReadRareFloat(text.substr(0, static_cast<std::size_t>(end - text.data())));
    }
    if (negative) value = -value;
    return true;
}

}  // namespace

std::int32_t ReadInteger(std::string_view text) {
    text = SkipSpace(text);
    const bool negative = TakeSign(text);
    if (text.empty() || !IsDigit(text.front())) return 0;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    // The low bits of the largest number are all set, those of the smallest all clear.
    if (error == std::errc::result_out_of_range) return negative ? 0 : -1;
    const auto low = static_cast<std::uint32_t>(value);
    return static_cast<std::int32_t>(negative ? 0U - low : low);
}

double ReadFloat(std::string_view text) {
    double value = 0;
    return ScanFloat(text, value) ? value : 0;
}

std::int32_t TruncateToInteger(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

std::string IntegerText(std::int32_t value) {
    return std::to_string(value);
}

std::string FloatText(float value) {
    char buffer[32];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, static_cast<double>(value), std::chars_format::general, 6);
    return std::string(buffer, result.ptr);
}

bool StartsInteger(std::string_view text) {
    text = SkipSpace(text);
    TakeSign(text);
    return !text.empty() && IsDigit(text.front());
}

bool StartsFloat(std::string_view text) {
    double value = 0;
    return ScanFloat(text, value);
}

}  // namespace kvl
