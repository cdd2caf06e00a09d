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
    std::string_view Text() const;
    int Column() const { return static_cast<int>(column_); }

private:
    friend class Record;
    enum Kind : std::uint32_t { kPlace, kInline, kOwned };

    union {
        const char* place_;
        char* owned_;
        char inline_[8];
    };
    std::uint32_t length_;
    std::uint32_t column_ : 30;
    std::uint32_t kind_ : 2;
};

class Record {
public:
    Record() = default;
    ~Record() { Release(); }
    Record(Record&& other) noexcept;
    Record& operator=(Record&& other) noexcept;
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    // A copy that owns all its texts.
    Record Copy() const;

    // The text of a column, empty where none is stored. Valid until the record changes.
    std::string_view Get(int column) const;
    // Does the record have a cell for the column? All columns, unless the record is partial.
    bool Has(int column) const;
    void Set(int column, std::string_view text);

    // A partial record lacks the columns that were never set.
    bool IsPartial() const { return partial_; }
    void MakePartial() { partial_ = true; }
    bool IsProvisional() const { return provisional_; }
    void SetProvisional(bool provisional) { provisional_ = provisional; }

    std::size_t StoredCells() const { return count_; }
    const Cell& StoredCell(std::size_t i) const { return cells_[i]; }

    // For the input parser: the record shows `count` cells, in order of their columns, that live in memory of the list
    // and were made by MakePlace.
    static Record OverArena(Cell* cells, std::uint32_t count);
    static void MakePlace(Cell& cell, int column, std::string_view place);

private:
    Cell* Find(int column) const;
    Cell* InsertCell(int column);
    void Own(std::uint32_t capacity);
    void Release();
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
