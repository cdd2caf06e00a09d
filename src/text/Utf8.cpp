#include "text/Utf8.h"

#include "text/ByteClass.h"

namespace kvl {
namespace {

constexpr char kLeadLow = '\xC2';   // before 0xA7, 0xA9, 0xB0, 0xB5, which keep their value behind it
constexpr char kLeadHigh = '\xC3';  // before the umlauts and the sharp s, lowered by 0x40 behind it

constexpr bool IsLead(char c) {
    return c == kLeadLow || c == kLeadHigh;
}

// The letter whose second byte behind kLeadHigh is `c`; any other byte is itself.
char FoldBehindHighLead(char c) {
    const char letter = static_cast<char>(static_cast<unsigned char>(c) | 0x40);
    const bool isSecondByte = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    return isSecondByte && IsSpecialLetter(letter) ? letter : c;
}

void AppendEncoded(std::string& output, char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    output += byte < 0xC0 ? kLeadLow : kLeadHigh;
    output += static_cast<char>(byte < 0xC0 ? byte : byte - 0x40);
}

// How the sequences of UTF-8 begin: the range of the first byte, the range of the second, the length. The second byte's
// range leaves out overlong forms, surrogates and what lies above 0x10FFFF.
struct SequenceRow {
    unsigned char firstLow, firstHigh, secondLow, secondHigh;
    std::size_t length;
};

constexpr SequenceRow kSequences[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool IsWithin(char c, unsigned char low, unsigned char high) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= low && byte <= high;
}

// Length of the well-formed sequence of several bytes at the front of `text`, 0 if there is none.
std::size_t SequenceLength(std::string_view text) {
    for (const SequenceRow& row : kSequences) {
        if (!IsWithin(text[0], row.firstLow, row.firstHigh)) continue;
        if (text.size() < row.length || !IsWithin(text[1], row.secondLow, row.secondHigh)) return 0;
        for (std::size_t i = 2; i < row.length; ++i)
            if (!IsWithin(text[i], 0x80, 0xBF)) return 0;
        return row.length;
    }
    return 0;
}

// The first special letter of `text` from `position` on that stands alone.
std::size_t FindLoneLetter(std::string_view text, std::size_t position) {
    while (position < text.size()) {
        if (static_cast<unsigned char>(text[position]) < 0x80) {
            ++position;
            continue;
        }
        const std::size_t length = SequenceLength(text.substr(position));
        if (length == 0 && IsSpecialLetter(text[position])) return position;
        position += length == 0 ? 1 : length;
    }
    return std::string_view::npos;
}

}  // namespace

std::string FoldUtf8(std::string_view text, bool& utf8) {
    utf8 = false;
    std::string result;
    result.reserve(text.size());
    char lead = 0;
    for (char c : text) {
        if (IsLead(c)) {
            utf8 = true;
            lead = c;
            continue;
        }
        result += lead == kLeadHigh ? FoldBehindHighLead(c) : c;
        lead = 0;
    }
    return result;
}

std::string EncodeFolded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (IsSpecialLetter(c)) {
            AppendEncoded(result, c);
        } else {
            result += c;
        }
    }
    return result;
}

void EncodeSpecialLetters(std::string& text, std::size_t from) {
    std::size_t found = FindLoneLetter(text, from);
    if (found == std::string::npos) return;
    const std::string tail = text.substr(found);
    text.resize(found);
    std::size_t begin = 0;
    for (found = 0; found != std::string::npos; found = FindLoneLetter(tail, begin)) {
        text.append(tail, begin, found - begin);
        AppendEncoded(text, tail[found]);
        begin = found + 1;
    }
    text.append(tail, begin);
}

}  // namespace kvl
