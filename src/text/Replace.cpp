#include "text/Replace.h"

#include <cstring>

namespace kvl {
namespace {

constexpr std::size_t kLongText = 32;

void AppendWithoutCr(std::string& output, std::string_view text) {
    for (;;) {
        const std::size_t found = text.find('\r');
        output += text.substr(0, found);
        if (found == std::string_view::npos) return;
        text.remove_prefix(found + 1);
    }
}

}  // namespace

// A short text is found quickest by its first byte; that costs up to its length at each byte of `text`, so a long one
// goes to memmem, whose cost stays linear.
std::size_t FindText(std::string_view text, std::string_view what, std::size_t position) {
    if (what.size() < kLongText || position > text.size()) return text.find(what, position);
    const void* found = memmem(text.data() + position, text.size() - position, what.data(), what.size());
    if (found == nullptr) return std::string_view::npos;
    return static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view byWhat) {
    if (what.empty() || what == byWhat) return std::string(text);
    std::string result;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t found = FindText(text, what, begin);
        if (found == std::string_view::npos) break;
        if (begin == 0) result.reserve(text.size());
        result += text.substr(begin, found - begin);
        result += byWhat;
        begin = found + what.size();
    }
    result += text.substr(begin);
    return result;
}

void AppendWithCrLf(std::string& output, std::string_view text) {
    for (;;) {
        const std::size_t found = text.find('\n');
        output += text.substr(0, found);
        if (found == std::string_view::npos) return;
        output += "\r\n";
        text.remove_prefix(found + 1);
    }
}

void AppendValueWithCrLf(std::string& output, std::string_view text) {
    for (;;) {
        const std::size_t found = text.find('\n');
        AppendWithoutCr(output, text.substr(0, found));
        if (found == std::string_view::npos) return;
        output += "\r\n";
        text.remove_prefix(found + 1);
    }
}

}  // namespace kvl
