// Where in a text a byte stands, as messages show it. Nothing keeps line tables: a place is worked out from the text
// when a message wants it.
#include <algorithm>

#include "messages/FileReports.h"
#include "text/Utf8.h"
#include "typeschema/CTSEntity.h"

namespace kvl {
namespace {

constexpr std::string_view kLeadBytes = "\xC2\xC3";  // of the letters that folding shortens to one byte

int PlaceOfToken(std::string_view text, int offset, std::string_view token) {
    const std::string_view searched = text.substr(0, offset < 0 ? 0 : static_cast<std::size_t>(offset) + 1);
    const std::size_t found = token.empty() ? std::string_view::npos : searched.rfind(token);
    return found == std::string_view::npos ? offset : static_cast<int>(found);
}

// Where the letter stands in `text` that stands at `place` in the folded text.
int Unfolded(std::string_view text, int place) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kLeadBytes.find(text[i]) != std::string_view::npos) continue;
        if (place-- <= 0) return static_cast<int>(start);
        start = i + 1;
    }
    return static_cast<int>(text.size());
}

}  // namespace

TextPlace LocateCursor(const CTSString& input) {
    return LocateCursor(input.GetText(), input.GetCursor());
}

TextPlace LocateCursor(std::string_view text, int cursor) {
    // The empty text has no byte to stand on: its cursor is in front of the first one.
    const auto position = std::clamp(static_cast<std::ptrdiff_t>(cursor), std::ptrdiff_t{-1},
                                     static_cast<std::ptrdiff_t>(text.size()) - 1);
    const std::string_view before = text.substr(0, static_cast<std::size_t>(std::max(position, std::ptrdiff_t{0})));
    const std::size_t lineFeed = before.rfind('\n');
    std::size_t start = lineFeed == std::string_view::npos ? 0 : lineFeed;
    const std::size_t end = text.find('\n', start + 1);
    // A line feed as the very first byte stays part of the line behind it.
    if (start != 0) ++start;

    TextPlace place;
    place.text = text.substr(start, end == std::string_view::npos ? end : end - start);
    const int column = static_cast<int>(position - static_cast<std::ptrdiff_t>(start));
    place.mark = PositionMark(place.text, column);
    place.line = static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1;
    place.column = column + 1;
    return place;
}

TextPlace LocateToken(std::string_view text, int offset, std::string_view token) {
    bool isUtf8 = text.find_first_of(kLeadBytes) != std::string_view::npos;
    if (!isUtf8) return LocateCursor(text, PlaceOfToken(text, offset, token));
    return LocateCursor(text, Unfolded(text, PlaceOfToken(FoldUtf8(text, isUtf8), offset, token)));
}

bool LocateInSource(const std::string& sourcePath, int offset, std::string_view token, TextPlace& place) {
    place = TextPlace();
    if (sourcePath.empty()) {
        place.line = place.column = 1;
        return true;
    }
    std::string text;
    int lineCount = 0;
    if (!ReadSourceFile(sourcePath, text, lineCount, MessageContext())) return false;
    place = LocateToken(text, offset, token);
    return true;
}

}  // namespace kvl
