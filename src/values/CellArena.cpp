#include "values/CellArena.h"

#include <algorithm>

namespace kvl {

namespace {

constexpr std::size_t kFirstCells = 16;
constexpr std::size_t kMostCells = std::size_t{1} << 17;  // 2 MiB

}  // namespace

void CellArena::AddBlock(std::size_t count) {
    const std::size_t last = blocks_.empty() ? 0 : static_cast<std::size_t>(end_ - blocks_.back().cells.get());
    const std::size_t size = std::max(count, std::clamp(last * 2, kFirstCells, kMostCells));
    auto cells = std::make_unique_for_overwrite<Cell[]>(size);
    Cell* const first = cells.get();
    blocks_.push_back({std::move(cells), first + size, next_});
    next_ = first;
    end_ = first + size;
}

void CellArena::GiveBack(std::size_t count) {
    next_ -= count;
    if (count == 0 || next_ != blocks_.back().cells.get()) return;
    next_ = blocks_.back().nextOfPrevious;
    blocks_.pop_back();
    end_ = blocks_.empty() ? nullptr : blocks_.back().behind;
}

void CellArena::Clear() {
    blocks_.clear();
    next_ = end_ = nullptr;
}

}  // namespace kvl
