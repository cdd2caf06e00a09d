#include "text/ByteClass.h"

#include <algorithm>

namespace kvl {

bool IsAllInvisible(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return IsInvisible(c); });
}

bool IsIdentifier(std::string_view text) {
    return !text.empty() && IsLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return IsNameByte(c); });
}

}  // namespace kvl
