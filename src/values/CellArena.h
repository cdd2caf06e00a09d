#pragma once
// The cells of the records that a list got from the input parser, one behind the other in a few large blocks. They go
// all at once, or from the end.

#include <cstddef>
#include <memory>
#include <vector>

#include "values/Record.h"

namespace kvl {

class CellArena {
public:
    // Room for `count` cells, which the caller fills. Valid until they are given back.
    Cell* Take(std::size_t count) {
        if (static_cast<std::size_t>(end_ - next_) < count) AddBlock(count);
        Cell* const cells = next_;
        next_ += count;
        return cells;
    }
    // Takes back the cells that were taken last: as many as one Take gave.
    void GiveBack(std::size_t count);
    void Clear();

private:
    void AddBlock(std::size_t count);

    struct Block {
        std::unique_ptr<Cell[]> cells;
        Cell* behind;          // its end
        Cell* nextOfPrevious;  // how far the block before it is in use
    };
    std::vector<Block> blocks_;
    Cell* next_ = nullptr;  // in the last block
    Cell* end_ = nullptr;
};

}  // namespace kvl
