#include "text/Escapes.h"

namespace kvl {
namespace {

struct EscapeRow {
    char letter;
    char byte;
};

constexpr EscapeRow kEscapes[] = {
    {'n', '\n'}, {'r', '\r'},  {'t', '\t'}, {'v', '\v'}, {'b', '\b'},  {'f', '\f'},
    {'a', '\a'}, {'\'', '\''}, {'"', '"'},  {'?', '?'},  {'\\', '\\'},
};

const EscapeRow* FindEscape(char letter) {
    for (const EscapeRow& row : kEscapes)
        if (row.letter == letter) return &row;
    return nullptr;
}

}  // namespace

std::string ResolveEscapes(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const std::size_t found = text.find('\\');
        result += text.substr(0, found);
        if (found == std::string_view::npos) return result;
        text.remove_prefix(found);
        if (const EscapeRow* row = text.size() > 1 ? FindEscape(text[1]) : nullptr) {
            result += row->byte;
            text.remove_prefix(2);
        } else {
            // What follows stays too; it is no backslash, for two of them make an escape.
            result += text.substr(0, 2);
            text.remove_prefix(text.size() > 1 ? 2 : 1);
        }
    }
}

std::string UnquoteLiteral(std::string_view raw, char quote) {
    std::string result;
    if (raw.size() < 2) return result;
    std::string_view text = raw.substr(1, raw.size() - 2);
    result.reserve(text.size());
    for (;;) {
        const std::size_t found = text.find(quote);
        if (found == std::string_view::npos) return result += text;
        result += text.substr(0, found + 1);
        const bool doubled = found + 1 < text.size() && text[found + 1] == quote;
        text.remove_prefix(found + (doubled ? 2 : 1));
    }
}

}  // namespace kvl
