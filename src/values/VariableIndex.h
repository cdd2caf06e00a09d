#pragma once
// The rows of a table by the hash of a text: open addressing with linear probing, at most half full. The hashes stand
// here, so that a row is looked at only when its hash is right, and growing looks at none.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kvl {

class VariableIndex {
public:
    using Hash = std::uint32_t;
    using Row = std::uint32_t;
    static constexpr Row kNoRow = ~Row{0};

    static Hash HashOf(std::string_view text) { return static_cast<Hash>(std::hash<std::string_view>()(text)); }

    // The row with this hash for which `isWanted` holds, or kNoRow.
    template <class IsWanted>
    Row Find(Hash hash, IsWanted isWanted) const {
        if (places_.empty()) return kNoRow;
        std::size_t at = Home(hash);
        while (places_[at].row != kNoRow && (places_[at].hash != hash || !isWanted(places_[at].row)))
            at = Next(at);
        return places_[at].row;
    }
    // All rows, in no order.
    template <class Visit>
    void ForEach(Visit visit) const {
        for (const Place& place : places_) {
            if (place.row != kNoRow) visit(place.row);
        }
    }

    // The text has no row yet.
    void Insert(Hash hash, Row row);
    // Both are for a row that is present.
    void Replace(Hash hash, Row row, Row newRow) { places_[PlaceOf(hash, row)].row = newRow; }
    void Remove(Hash hash, Row row);
    void Clear();

private:
    struct Place {
        Hash hash = 0;
        Row row = kNoRow;
    };

    std::size_t Home(Hash hash) const { return hash & (places_.size() - 1); }
    std::size_t Next(std::size_t at) const { return (at + 1) & (places_.size() - 1); }
    std::size_t PlaceOf(Hash hash, Row row) const;
    void Put(const Place& place) { places_[PlaceOf(place.hash, kNoRow)] = place; }

    std::vector<Place> places_;  // none, or a power of two
    std::size_t size_ = 0;
};

}  // namespace kvl
