#pragma once
// One row of a list: texts by column. Only cells that hold something are stored, so that the many empty columns of a
// record of alternatives cost nothing. A cell that came from parsing is a place in the input, which the list keeps
// alive; a text of up to eight bytes lives in the cell itself; any other is owned.
//
// Memory: 16 bytes a record, 16 bytes a stored cell. Written by hand down to its copies, since lists hold millions of
// them.

#include <cstdint>
#include <string_view>

namespace kvl {

class Cell {
public:
    Cell() = default;
    // A place in memory that outlives the cell.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): of a union only one member is set
    Cell(int column, std::string_view place)
        : place_(place.data()),
          length_(static_cast<std::uint32_t>(place.size())),
          column_(static_cast<std::uint32_t>(column) & 0x3FFFFFFFU),
          kind_(kPlace) {}

    std::string_view Text() const { return {kind_ == kInline ? inline_ : place_, length_}; }
    int Column() const { return static_cast<int>(column_); }

private:
    friend class Record;
    enum Kind : std::uint32_t { kPlace, kInline, kOwned };

    union {
        const char* place_;  // or an owned text
        char inline_[8];
    };
    std::uint32_t length_;
    std::uint32_t column_ : 30;
    std::uint32_t kind_ : 2;
};

class Record {
public:
    Record() = default;
    // Shows `count` cells that live in memory of the record's list; more than kFewCells are in order of their columns.
    Record(Cell* cells, std::uint32_t count, bool provisional = false)
        : cells_(cells), count_(count), provisional_(provisional) {}
    ~Record() {
        if (capacity_ != 0) Release();
    }
    Record(Record&& other) noexcept
        : cells_(other.cells_),
          count_(other.count_),
          capacity_(other.capacity_),
          provisional_(other.provisional_),
          partial_(other.partial_) {
        other.Forget();
    }
    Record& operator=(Record&& other) noexcept;
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    // A copy that owns all its texts.
    Record Copy() const;

    // The text of a column, empty where none is stored. Valid until the record changes.
    std::string_view Get(int column) const {
        const Cell* cell = Find(column);
        return cell ? cell->Text() : std::string_view();
    }
    // Does the record have a cell for the column? All columns, unless the record is partial.
    bool Has(int column) const { return !partial_ || Find(column) != nullptr; }
    void Set(int column, std::string_view text);

    // A partial record lacks the columns that were never set.
    bool IsPartial() const { return partial_; }
    void MakePartial() { partial_ = true; }
    bool IsProvisional() const { return provisional_; }
    void SetProvisional(bool provisional) { provisional_ = provisional; }

    std::size_t StoredCells() const { return count_; }
    // Else they live in the memory of its list.
    bool OwnsCells() const { return capacity_ != 0; }
    // Cells in the memory of its list come to another place there; short texts come into their cells.
    void MoveCells(Cell* place);

    // So few are looked through, in whatever order they stand.
    static constexpr std::uint32_t kFewCells = 16;
    static void SortByColumn(Cell* cells, std::uint32_t count);

private:
    Cell* Find(int column) const {
        const auto wanted = static_cast<std::uint32_t>(column);
        if (count_ > kFewCells) return FindInOrder(wanted);
        for (Cell* cell = cells_; cell != cells_ + count_; ++cell)
            if (cell->column_ == wanted) return cell;
        return nullptr;
    }
    Cell* FindInOrder(std::uint32_t column) const;
    Cell* InsertCell(int column);
    void Own(std::uint32_t capacity);
    void Release();
    void Forget() {
        cells_ = nullptr;
        count_ = 0;
        capacity_ = 0;
    }
    static void SetCell(Cell& cell, std::string_view text);
    static void FreeText(Cell& cell);

    Cell* cells_ = nullptr;
    std::uint32_t count_ = 0;
    std::uint32_t capacity_ : 29 = 0;  // 0 while the cells live in the list's memory
    std::uint32_t provisional_ : 1 = 0;
    std::uint32_t partial_ : 1 = 0;
};

static_assert(sizeof(Cell) == 16 && sizeof(Record) == 16);

}  // namespace kvl
