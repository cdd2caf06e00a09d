// Sorting, unifying and reversing: the records of the scope and of every list nested below are taken out, arranged by
// the order that was found for the scope, and put back under new keys. Linear, but for the order.
//
// A step to each record in the new order would be a step to memory far away, which for a million records costs more
// than all the rest. Therefore they go in two steps: in the old order, each into the block of records near its new
// place, and then block by block to those places. Their cells go along, so that what is read next stands in order.

#include "values/RecordOrder.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace kvl {

class RecordOrder {
public:
    using Index = SortKeys::Index;  // of a record of the scope, before or afterwards

    // A new key of the scope by its last number, and the number from which what is nested below counts on each level;
    // none where that stays as it is.
    struct Target {
        int number = 0;
        std::optional<int> firstBelow;
    };

    RecordOrder(CVariableKVLCategoryList& list, PathView parentKey) : list_(list), parentKey_(parentKey) {}

    // The scope's records as they stand, before they are arranged.
    template <class Visit>
    void VisitScope(Visit visit) const {
        const RecordStore& store = list_.records_;
        const RecordStore::Position end = store.Behind(parentKey_);
        for (RecordStore::Position p = store.LowerBound(parentKey_); p != end; p = store.Next(p))
            visit(store.At(p), store.PathAt(p));
    }

    // Record order[i] of the scope comes to the i-th place, with all below it; records that are not named are dropped.
    // `target` gives the new keys by place.
    template <class TargetOf>
    void Arrange(const std::vector<Index>& order, TargetOf target) {
        std::vector<CVariableKVLCategoryList::Stray> strays;
        list_.TakeStrays(parentKey_, strays);
        FindPlaces(order);
        AddLists(list_);
        for (Block& block : blocks_)
            block.resize(lists_.size());
        for (std::size_t i = 0; i < lists_.size(); ++i)
            TakeOut(i);
        CVariableKVLCategoryList::PutBack(strays);
        for (Index place = 0; place < order.size(); ++place) {
            PutBack(place, target(place));
            if (place % kBlock == kBlock - 1) blocks_[place / kBlock].clear();
        }
    }

private:
    static constexpr Index kBlock = 16384;  // places; what stands there fits into a processor's own memory
    static constexpr Index kDropped = ~Index{0};

    // The records of one list that belong to one place: the record of the scope, or what is nested below it.
    struct Run {
        Index first = 0;
        Index last = 0;  // behind it
    };
    struct BlockOfList {
        std::vector<Run> runs;  // by place
        std::vector<Record> records;
        std::vector<int> below;  // what their paths hold behind the numbers of the scope
        CellArena cells;
    };
    using Block = std::vector<BlockOfList>;  // by list

    // Of a whole list all cells move, so that their memory can go; under one parent they stay where they are.
    bool MovesCells() const { return parentKey_.Empty(); }
    std::size_t ScopeDepth() const { return parentKey_.Size() + 1; }

    // Where each record of the scope goes.
    void FindPlaces(const std::vector<Index>& order) {
        VisitScope([&](const Record&, PathView path) {
            scopeKeys_.insert(scopeKeys_.end(), path.begin(), path.end());
            places_.push_back(kDropped);
        });
        for (Index place = 0; place < order.size(); ++place)
            places_[order[place]] = place;
        blocks_.resize(order.size() / kBlock + 1);
    }

    void AddLists(CVariableKVLCategoryList& list) {
        list.DetachCursors();
        lists_.push_back(&list);
        depths_.push_back(static_cast<std::size_t>(list.GetDepth()));
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            if (CVariableKVLCategoryList* nested = list.NestedList(i)) AddLists(*nested);
        }
    }

    // Children of one record are neighbours, and the neighbours of all lists stand in the order of the scope: one walk.
    void TakeOut(std::size_t list) {
        RecordStore& store = lists_[list]->records_;
        const RecordStore::Position first = store.LowerBound(parentKey_);
        const RecordStore::Position last = store.Behind(parentKey_);
        RecordStore::Position next = first;
        for (Index old = 0; old < places_.size(); ++old) {
            BlockOfList* block = places_[old] == kDropped ? nullptr : &blocks_[places_[old] / kBlock][list];
            if (block) BeginRun(*block, places_[old]);
            for (; next != last && IsBelow(store.PathAt(next), old); next = store.Next(next))
                if (block) Take(*block, store.At(next), store.PathAt(next));
            if (block) block->runs[places_[old] % kBlock].last = static_cast<Index>(block->records.size());
        }
        store.Erase(first, last);
        if (MovesCells()) lists_[list]->arena_.Clear();
    }

    bool IsBelow(PathView path, Index old) const {
        const auto key = scopeKeys_.begin() + static_cast<std::ptrdiff_t>(old * ScopeDepth());
        for (std::size_t level = 0; level < ScopeDepth(); ++level)  // few, so that no call is worth its while
            if (path[level] != key[static_cast<std::ptrdiff_t>(level)]) return false;
        return true;
    }

    void BeginRun(BlockOfList& block, Index place) const {
        if (block.runs.empty()) block.runs.resize(std::min<std::size_t>(kBlock, places_.size()));
        block.runs[place % kBlock].first = static_cast<Index>(block.records.size());
    }

    void Take(BlockOfList& block, Record& record, PathView path) const {
        for (const int number : path.subspan(ScopeDepth()))
            block.below.push_back(number);
        block.records.push_back(std::move(record));
        if (MovesCells()) MoveCells(block.records.back(), block.cells);
    }

    static void MoveCells(Record& record, CellArena& arena) {
        if (!record.OwnsCells()) record.MoveCells(arena.Take(record.StoredCells()));
    }

    // What is nested below keeps its distances: its smallest number on each level becomes the first.
    void PutBack(Index place, const Target& target) {
        Block& block = blocks_[place / kBlock];
        const RecordPath lowest = LowestBelow(block, place);
        for (std::size_t list = 0; list < lists_.size(); ++list) {
            const Run run = RunOf(block[list], place);
            for (Index index = run.first; index < run.last; ++index) {
                RecordPath path(parentKey_);
                path.Append(target.number);
                for (const int number : Below(block, list, index)) {
                    const int first = lowest.View()[path.Size() - ScopeDepth()];
                    path.Append(number - first + target.firstBelow.value_or(first));
                }
                PutBack(*lists_[list], path, block[list].records[index]);
            }
        }
    }

    void PutBack(CVariableKVLCategoryList& list, PathView path, Record& record) const {
        if (MovesCells()) MoveCells(record, list.arena_);
        bool inserted = false;
        list.records_.Insert(path, std::move(record), inserted);
    }

    static Run RunOf(const BlockOfList& block, Index place) {
        return block.runs.empty() ? Run() : block.runs[place % kBlock];
    }

    PathView Below(const Block& block, std::size_t list, Index index) const {
        const std::size_t length = depths_[list] - ScopeDepth();
        return {block[list].below.data() + index * length, length};
    }

    // The smallest number on each level below the scope among the keys of a subtree.
    RecordPath LowestBelow(const Block& block, Index place) const {
        RecordPath lowest;
        for (std::size_t list = 1; list < lists_.size(); ++list) {
            const Run run = RunOf(block[list], place);
            for (Index index = run.first; index < run.last; ++index) {
                const PathView below = Below(block, list, index);
                for (std::size_t level = 0; level < below.size(); ++level) {
                    if (level == lowest.Size()) {
                        lowest.Append(below[level]);
                    } else {
                        lowest[level] = std::min(lowest[level], below[level]);
                    }
                }
            }
        }
        return lowest;
    }

    CVariableKVLCategoryList& list_;
    RecordPath parentKey_;
    std::vector<int> scopeKeys_;                    // the old keys of the scope, one behind the other
    std::vector<Index> places_;                     // by old index
    std::vector<CVariableKVLCategoryList*> lists_;  // the list itself first
    std::vector<std::size_t> depths_;               // of their keys
    std::vector<Block> blocks_;
};

namespace {

using Index = RecordOrder::Index;

// New keys number the scope from 0, and what is nested below each record from its new number.
RecordOrder::Target NumberedFromZero(Index place) {
    return {static_cast<int>(place), static_cast<int>(place)};
}

SortKeys KeysOf(const RecordOrder& records, int column, CellKind kind) {
    SortKeys keys(kind);
    records.VisitScope([&](const Record& record, PathView) { keys.Add(record.Get(column)); });
    return keys;
}

}  // namespace

// Each record takes the key of the one whose place it takes, and what is nested below is numbered from 0; the one in
// the middle stays as it is.
void ReverseRecords(CVariableKVLCategoryList& list, PathView parentKey) {
    RecordOrder records(list, parentKey);
    std::vector<int> numbers;
    records.VisitScope([&](const Record&, PathView path) { numbers.push_back(path.back()); });
    if (numbers.size() < 2) return;
    std::vector<Index> order(numbers.size());
    for (Index i = 0; i < order.size(); ++i)
        order[i] = static_cast<Index>(order.size()) - 1 - i;
    records.Arrange(order, [&](Index place) -> RecordOrder::Target {
        return {numbers[place], order[place] == place ? std::nullopt : std::optional<int>(0)};
    });
}

void SortRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    records.Arrange(KeysOf(records, column, kind).InOrder(), NumberedFromZero);
}

void UnifyRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    records.Arrange(KeysOf(records, column, kind).FirstOfEach(), NumberedFromZero);
}

}  // namespace kvl
