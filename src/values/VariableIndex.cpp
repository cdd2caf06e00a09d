#include "values/VariableIndex.h"

#include <utility>

namespace kvl {

namespace {

constexpr std::size_t kFewestPlaces = 16;

}  // namespace

void VariableIndex::Insert(Hash hash, Row row) {
    if (2 * (size_ + 1) > places_.size()) {
        const std::size_t larger = places_.empty() ? kFewestPlaces : 2 * places_.size();
        for (const Place& place : std::exchange(places_, std::vector<Place>(larger))) {
            if (place.row != kNoRow) Put(place);
        }
    }
    Put({hash, row});
    ++size_;
}

// What stands behind the gap moves up to it, unless that would take it in front of its home: no marks stay behind.
void VariableIndex::Remove(Hash hash, Row row) {
    std::size_t gap = PlaceOf(hash, row);
    for (std::size_t at = Next(gap); places_[at].row != kNoRow; at = Next(at)) {
        const std::size_t mask = places_.size() - 1;
        const std::size_t fromHome = (at - Home(places_[at].hash)) & mask;
        if (fromHome < ((at - gap) & mask)) continue;
        places_[gap] = places_[at];
        gap = at;
    }
    places_[gap] = Place();
    --size_;
}

void VariableIndex::Clear() {
    places_.clear();
    size_ = 0;
}

// The first place from the home of `hash` on that holds `row`.
std::size_t VariableIndex::PlaceOf(Hash hash, Row row) const {
    std::size_t at = Home(hash);
    while (places_[at].row != row)
        at = Next(at);
    return at;
}

}  // namespace kvl
