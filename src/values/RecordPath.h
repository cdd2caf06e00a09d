#pragma once
// The key of a record: one number for each level of lists, topmost first. Paths of one list have one length and compare
// like words; a nested record's path begins with the path of the record above it.

#include <array>
#include <compare>
#include <span>
#include <vector>

namespace kvl {

using PathView = std::span<const int>;

// Is `parent` a proper prefix of `path`?
bool IsChildKey(PathView path, PathView parent);
// Negative, 0 or positive: the first place where the two differ decides; a prefix comes first.
int ComparePaths(PathView a, PathView b);

// A path that owns its numbers; short ones, which is nearly all of them, without allocation.
class RecordPath {
public:
    RecordPath() = default;
    explicit RecordPath(PathView path) { Assign(path); }

    void Assign(PathView path);
    void Append(int number);
    void Clear() { size_ = 0; }
    int& operator[](std::size_t i) { return Data()[i]; }
    int Back() const { return View().back(); }
    std::size_t Size() const { return size_; }
    bool Empty() const { return size_ == 0; }
    PathView View() const { return {size_ <= kInline ? inline_.data() : longer_.data(), size_}; }
    operator PathView() const { return View(); }  // NOLINT(google-explicit-constructor): as a text is seen as a view

private:
    static constexpr std::size_t kInline = 4;
    int* Data() { return size_ <= kInline ? inline_.data() : longer_.data(); }

    std::size_t size_ = 0;
    std::array<int, kInline> inline_{};
    std::vector<int> longer_;  // all numbers, when there are more than kInline
};

}  // namespace kvl
