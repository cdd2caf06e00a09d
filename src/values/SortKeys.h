#pragma once
// What records are sorted and unified by: for the cell of each record a number in whose order the values stand, and the
// cell's text beside it where the number cannot tell two apart.

#include <cstdint>
#include <string_view>
#include <vector>

namespace kvl {

enum class CellKind { None, Integer, Float, Text, Boolean };
// How the cells of a column of this type are compared; None where they cannot be.
CellKind GetCellKind(int typeId);

class SortKeys {
public:
    using Index = std::uint32_t;  // of a record, in the order in which they were added

    explicit SortKeys(CellKind kind) : kind_(kind) {}
    // The text must live until the keys have been put in order.
    void Add(std::string_view cell);
    // All indices: stable, ascending; cells that are no number ("nan") come last, in their order. Linear, but for texts
    // that share their first eight bytes.
    std::vector<Index> InOrder();
    // The index of the first of each value, and those of all cells that are no number; ascending.
    std::vector<Index> FirstOfEach();

private:
    struct Key {
        std::uint64_t head;
        Index index;
        std::uint32_t length;  // of a text; 0 else
    };

    void Sort();
    void SortByHead();
    void SortEqualHeads();
    // Of two with the same head.
    bool IsTextBelow(const Key& a, const Key& b) const;
    bool AreEqual(const Key& a, const Key& b) const;

    CellKind kind_;
    std::vector<Key> keys_;
    std::vector<std::string_view> texts_;  // by index; of a kind that is compared as text
};

}  // namespace kvl
