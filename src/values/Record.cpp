#include "values/Record.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace kvl {

namespace {

constexpr std::size_t kInlineBytes = 8;

}  // namespace

Record& Record::operator=(Record&& other) noexcept {
    if (this == &other) return *this;
    Release();
    cells_ = other.cells_;
    count_ = other.count_;
    capacity_ = other.capacity_;
    provisional_ = other.provisional_;
    partial_ = other.partial_;
    other.Forget();
    return *this;
}

Record Record::Copy() const {
    Record copy;
    copy.partial_ = partial_;
    if (count_ == 0) return copy;
    copy.Own(count_);
    for (std::uint32_t i = 0; i < count_; ++i) {
        Cell& cell = copy.cells_[i];
        cell.column_ = cells_[i].column_;
        cell.kind_ = Cell::kInline;
        cell.length_ = 0;
        SetCell(cell, cells_[i].Text());
        copy.count_ = i + 1;
    }
    SortByColumn(copy.cells_, copy.count_);
    return copy;
}

void Record::Set(int column, std::string_view text) {
    Cell* cell = Find(column);
    if (!cell) {
        if (text.empty() && !partial_) return;
        cell = InsertCell(column);
    } else if (capacity_ == 0) {
        Own(count_);
        cell = Find(column);
    }
    SetCell(*cell, text);
}

void Record::MoveCells(Cell* place) {
    for (std::uint32_t i = 0; i < count_; ++i) {
        place[i] = cells_[i];
        if (place[i].kind_ != Cell::kPlace || place[i].length_ > kInlineBytes) continue;
        const char* const text = cells_[i].place_;
        for (std::uint32_t byte = 0; byte < place[i].length_; ++byte)
            place[i].inline_[byte] = text[byte];
        place[i].kind_ = Cell::kInline;
    }
    cells_ = place;
}

// A cell stands as far in front of its column's place as cells are missing in front of it: few, as a rule.
Cell* Record::FindInOrder(std::uint32_t column) const {
    constexpr std::uint32_t kFewMissing = 4;
    const std::uint32_t end = std::min(column, count_ - 1) + 1;  // none from here on is the wanted one
    const std::uint32_t near = end - std::min(end, kFewMissing);
    for (Cell* cell = cells_ + end; cell-- != cells_ + near;) {
        if (cell->column_ <= column) return cell->column_ == column ? cell : nullptr;
    }
    Cell* cell = std::lower_bound(cells_, cells_ + near, column,
                                  [](const Cell& c, std::uint32_t value) { return c.column_ < value; });
    return cell != cells_ + near && cell->column_ == column ? cell : nullptr;
}

Cell* Record::InsertCell(int column) {
    if (capacity_ == 0 || count_ == capacity_) Own(std::max<std::uint32_t>(1, count_ * 2));
    std::uint32_t place = count_;
    while (place > 0 && cells_[place - 1].Column() > column)
        --place;
    std::copy_backward(cells_ + place, cells_ + count_, cells_ + count_ + 1);
    ++count_;
    Cell& cell = cells_[place];
    cell.column_ = static_cast<std::uint32_t>(column) & 0x3FFFFFFFU;
    cell.kind_ = Cell::kInline;
    cell.length_ = 0;
    return &cell;
}

// Moves the cells into memory of the record's own, where they stand in order; owned texts go along.
void Record::Own(std::uint32_t capacity) {
    Cell* cells = std::allocator<Cell>().allocate(capacity);
    std::copy(cells_, cells_ + count_, cells);
    if (capacity_ != 0) {
        std::allocator<Cell>().deallocate(cells_, capacity_);
    } else {
        SortByColumn(cells, count_);
    }
    cells_ = cells;
    capacity_ = capacity & 0x1FFFFFFFU;
}

void Record::Release() {
    if (capacity_ == 0) return;
    for (std::uint32_t i = 0; i < count_; ++i)
        FreeText(cells_[i]);
    std::allocator<Cell>().deallocate(cells_, capacity_);
    capacity_ = 0;
}

void Record::SortByColumn(Cell* cells, std::uint32_t count) {
    std::sort(cells, cells + count, [](const Cell& a, const Cell& b) { return a.column_ < b.column_; });
}

void Record::SetCell(Cell& cell, std::string_view text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    if (text.size() <= kInlineBytes) {
        char bytes[kInlineBytes] = {};  // `text` may lie in this cell
        std::copy(text.begin(), text.end(), bytes);
        FreeText(cell);
        std::memcpy(cell.inline_, bytes, kInlineBytes);
        cell.kind_ = Cell::kInline;
    } else {
        char* bytes = std::allocator<char>().allocate(text.size());
        std::copy(text.begin(), text.end(), bytes);
        FreeText(cell);
        cell.place_ = bytes;
        cell.kind_ = Cell::kOwned;
    }
    cell.length_ = length;
}

void Record::FreeText(Cell& cell) {
    if (cell.kind_ != Cell::kOwned) return;
    std::allocator<char>().deallocate(const_cast<char*>(cell.place_), cell.length_);
}

}  // namespace kvl
