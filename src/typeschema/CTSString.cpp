#include "typeschema/CTSString.h"

#include <algorithm>

namespace kvl {

void CTSString::SetText(std::string text) {
    SetText(std::make_shared<const std::string>(std::move(text)));
}

void CTSString::SetText(std::shared_ptr<const std::string> text) {
    text_ = std::move(text);
    cursor_ = 0;
}

int CTSString::GetChar(char& c) {
    c = 0;
    if (IsAtEnd() || cursor_ < 0) return 0;
    c = (*text_)[static_cast<std::size_t>(cursor_++)];
    return 1;
}

void CTSString::ReadChars(std::string& text, int count) {
    text.clear();
    if (count <= 0 || cursor_ < 0 || IsAtEnd()) return;
    const int taken = std::min(count, GetLength() - cursor_);
    text.assign(*text_, static_cast<std::size_t>(cursor_), static_cast<std::size_t>(taken));
    cursor_ += taken;
}

std::string_view CTSString::GetSubstring(int first, int last) const {
    const int begin = std::max(first, 0);
    const bool toEnd = first > 0 && last == -1;
    const int behind = toEnd ? GetLength() : std::min(last, GetLength() - 1) + 1;
    if (begin >= behind) return {};
    return GetText().substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(behind - begin));
}

}  // namespace kvl
