#pragma once
// The names and texts of compiled commands, one behind the other in blocks that grow. A script has several of them to a
// command, most too short to be worth an allocation of their own.

#include <algorithm>
#include <initializer_list>
#include <memory_resource>
#include <string_view>

namespace kvl {

class CommandTexts {
public:
    // A copy of the pieces, joined; good as long as this object.
    std::string_view Join(std::initializer_list<std::string_view> pieces) {
        std::size_t size = 0;
        for (const std::string_view piece : pieces)
            size += piece.size();
        if (size == 0) return {};
        char* const kept = static_cast<char*>(blocks_.allocate(size, 1));
        char* end = kept;
        for (const std::string_view piece : pieces)
            end = std::ranges::copy(piece, end).out;
        return {kept, size};
    }
    std::string_view Keep(std::string_view text) { return Join({text}); }

private:
    std::pmr::monotonic_buffer_resource blocks_;
};

}  // namespace kvl
