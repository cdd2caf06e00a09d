#include "text/Trim.h"

#include "text/ByteClass.h"

namespace kvl {

std::string_view TrimInvisible(std::string_view text) {
    return TrimInvisibleFront(TrimInvisibleEnd(text));
}

std::string_view TrimInvisibleEnd(std::string_view text) {
    std::size_t end = text.size();
    while (end > 0 && IsInvisible(text[end - 1]))
        --end;
    return text.substr(0, end);
}

std::string_view TrimInvisibleFront(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size() && IsInvisible(text[begin]))
        ++begin;
    return text.substr(begin);
}

}  // namespace kvl
