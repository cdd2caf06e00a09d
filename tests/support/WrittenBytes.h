#pragma once
// Bytes that a text file should not hold: case files write "{{80}}" for the byte 0x80.

#include <string>
#include <string_view>

namespace kvl {

// The bytes meant by a written text.
inline std::string BytesOf(std::string_view written) {
    std::string bytes;
    while (!written.empty()) {
        const bool isCode = written.starts_with("{{") && written.size() >= 6;
        bytes += isCode ? static_cast<char>(std::stoi(std::string(written.substr(2, 2)), nullptr, 16)) : written[0];
        written.remove_prefix(isCode ? 6 : 1);
    }
    return bytes;
}

// How bytes are written: printable ones, blanks, tabs and line feeds stand for themselves.
inline std::string Written(std::string_view bytes) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string written;
    for (const char c : bytes) {
        const unsigned byte = static_cast<unsigned char>(c);
        const bool isPlain = (byte >= ' ' && byte < 0x7F) || c == '\n' || c == '\t';
        written += isPlain ? std::string(1, c) : std::string("{{") + kDigits[byte / 16] + kDigits[byte % 16] + "}}";
    }
    return written;
}

// The same on one line, in a table whose columns "|" divides.
inline std::string WrittenInLine(std::string_view bytes) {
    std::string written;
    for (const char c : bytes)
        written += c == '\n' ? "{{0A}}" : c == '\t' ? "{{09}}" : c == '|' ? "{{7C}}" : Written({&c, 1});
    return written;
}

}  // namespace kvl
