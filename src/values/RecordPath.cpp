#include "values/RecordPath.h"

#include <algorithm>

namespace kvl {

bool IsChildKey(PathView path, PathView parent) {
    if (path.size() <= parent.size()) return false;
    for (std::size_t i = 0; i < parent.size(); ++i)  // few, so that no call is worth its while
        if (path[i] != parent[i]) return false;
    return true;
}

int ComparePaths(PathView a, PathView b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

void RecordPath::Assign(PathView path) {
    if (path.size() > kInline) {
        std::vector<int> copy(path.begin(), path.end());  // `path` may be a view of this very object
        longer_ = std::move(copy);
    } else {
        for (std::size_t i = 0; i < path.size(); ++i)  // which moves the numbers of such a view to the front
            inline_[i] = path[i];
    }
    size_ = path.size();
}

void RecordPath::Append(int number) {
    if (size_ < kInline) {
        inline_[size_++] = number;
        return;
    }
    if (size_ == kInline) longer_.assign(inline_.begin(), inline_.end());
    longer_.resize(size_);
    longer_.push_back(number);
    ++size_;
}

}  // namespace kvl
