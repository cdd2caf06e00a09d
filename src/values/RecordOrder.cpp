// Sorting, unifying and reversing: the records of the scope and of every list nested below are taken out with their
// keys, arranged by the order that was found for the scope, and put back under new keys. n log n for the sort, linear
// else.

#include "values/RecordOrder.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_set>

#include "text/Numbers.h"

namespace kvl {

CellKind GetCellKind(int typeId) {
    switch (typeId) {
        case kTypeInteger:
        case kConstantInteger:
            return CellKind::Integer;
        case kTypeFloat:
        case kConstantFloat:
            return CellKind::Float;
        case kTypeBool:
        case kConstantBool:
            return CellKind::Boolean;
        case kTypeStream:
        case kTypeString:
        case kTypeIdentifier:
        case kConstantString:
        case kCategorySequence:
        case kCategoryNested:
        case kCategoryChoice:
        case kCategoryPermutation:
        case kCategoryDistance:
        case kCategoryStream:
        case kCategoryOption:
        case kCategoryLine:
            return CellKind::Text;
        default:
            return CellKind::None;
    }
}

// The records of a scope and all that is nested below them, out of their lists.
class RecordOrder {
public:
    RecordOrder(CVariableKVLCategoryList& list, PathView parentKey) : list_(list), parentKey_(parentKey) {}

    // The scope's records as they stand, before they are taken out.
    std::vector<const Record*> Scope() const {
        std::vector<const Record*> records;
        const RecordStore& store = list_.records_;
        const RecordStore::Position end = store.Behind(parentKey_);
        for (RecordStore::Position p = store.LowerBound(parentKey_); p != end; p = store.Next(p)) {
            records.push_back(&store.At(p));
        }
        return records;
    }

    // Record order[i] of the scope comes to the i-th place, with all below it; records that are not named are dropped.
    // For each, `target` gives the numbers that the smallest numbers of its subtree become.
    template <class Target>
    void Arrange(const std::vector<std::size_t>& order, Target target) {
        std::vector<CVariableKVLCategoryList::Stray> strays;
        list_.TakeStrays(parentKey_, strays);
        TakeOut(list_);
        CVariableKVLCategoryList::PutBack(strays);
        FindSubtrees();
        for (std::size_t place = 0; place < order.size(); ++place) {
            const std::size_t old = order[place];
            const RecordPath lowest = Lowest(old);
            PutBack(old, target(*this, place, old, lowest), lowest);
        }
    }

    PathView OldKey(std::size_t index) const { return taken_.front().entries[index].path; }

private:
    struct Taken {
        CVariableKVLCategoryList* list;
        std::vector<RecordStore::Entry> entries;  // in order of their old keys
        std::vector<std::size_t> ranges;          // two by record of the scope: where its subtree begins and ends
    };

    void TakeOut(CVariableKVLCategoryList& list) {
        list.DetachCursors();
        RecordStore& store = list.records_;
        taken_.push_back({&list, store.Take(store.LowerBound(parentKey_), store.Behind(parentKey_)), {}});
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            if (CVariableKVLCategoryList* nested = list.NestedList(i)) TakeOut(*nested);
        }
    }

    static bool IsBelow(PathView path, PathView key) {
        return path.size() >= key.size() && std::equal(key.begin(), key.end(), path.begin());
    }

    // Children of one record are neighbours, and the neighbours of all lists stand in the order of the scope: one walk.
    void FindSubtrees() {
        const std::vector<RecordStore::Entry>& scope = taken_.front().entries;
        for (Taken& taken : taken_) {
            std::size_t next = 0;
            taken.ranges.reserve(2 * scope.size());
            for (const RecordStore::Entry& parent : scope) {
                while (next < taken.entries.size() && ComparePaths(taken.entries[next].path, parent.path) < 0)
                    ++next;
                taken.ranges.push_back(next);
                while (next < taken.entries.size() && IsBelow(taken.entries[next].path, parent.path))
                    ++next;
                taken.ranges.push_back(next);
            }
        }
    }

    template <class Visit>
    void VisitSubtree(std::size_t index, Visit visit) {
        for (Taken& taken : taken_) {
            for (std::size_t i = taken.ranges[2 * index]; i < taken.ranges[2 * index + 1]; ++i) {
                visit(*taken.list, taken.entries[i]);
            }
        }
    }

    // The smallest number at each position among the keys of a subtree; as many as its longest key has.
    RecordPath Lowest(std::size_t index) {
        RecordPath lowest;
        VisitSubtree(index, [&](CVariableKVLCategoryList&, const RecordStore::Entry& entry) {
            const PathView path = entry.path.View();
            for (std::size_t i = 0; i < path.size(); ++i) {
                if (i == lowest.Size()) {
                    lowest.Append(path[i]);
                } else {
                    lowest[i] = std::min(lowest[i], path[i]);
                }
            }
        });
        return lowest;
    }

    void PutBack(std::size_t index, const RecordPath& base, const RecordPath& lowest) {
        VisitSubtree(index, [&](CVariableKVLCategoryList& list, RecordStore::Entry& entry) {
            RecordPath path = entry.path;
            for (std::size_t i = 0; i < path.Size(); ++i)
                path[i] += base.View()[i] - lowest.View()[i];
            bool inserted = false;
            list.records_.Insert(path, std::move(entry.record), inserted);
        });
    }

    CVariableKVLCategoryList& list_;
    RecordPath parentKey_;
    std::vector<Taken> taken_;  // the list itself first
};

namespace {

// New keys number the scope from 0, and what is nested below each record from its new number.
RecordPath NumberedFromZero(const RecordOrder& records, std::size_t place, std::size_t old, const RecordPath& lowest) {
    RecordPath base(records.OldKey(old));
    const int number = static_cast<int>(place);
    base[base.Size() - 1] = number;
    while (base.Size() < lowest.Size())
        base.Append(number);
    return base;
}

// The record takes the key of the one whose place it takes, and what is nested below is numbered from 0; the one in the
// middle stays as it is.
RecordPath KeyOfPlace(const RecordOrder& records, std::size_t place, std::size_t old, const RecordPath& lowest) {
    if (place == old) return lowest;
    RecordPath base(records.OldKey(place));
    while (base.Size() < lowest.Size())
        base.Append(0);
    return base;
}

struct SortEntry {
    std::size_t index;
    std::int32_t integer;
    float number;
    std::string_view text;
};

std::vector<SortEntry> BuildEntries(const std::vector<const Record*>& scope, int column, CellKind kind) {
    std::vector<SortEntry> entries;
    entries.reserve(scope.size());
    for (std::size_t i = 0; i < scope.size(); ++i) {
        SortEntry entry{i, 0, 0, scope[i]->Get(column)};
        if (kind == CellKind::Integer) entry.integer = ReadInteger(entry.text);
        if (kind == CellKind::Float) entry.number = static_cast<float>(ReadFloat(entry.text));
        entries.push_back(entry);
    }
    return entries;
}

bool ComesBefore(const SortEntry& a, const SortEntry& b, CellKind kind) {
    if (kind == CellKind::Integer) return a.integer < b.integer;
    if (kind != CellKind::Float) return a.text < b.text;
    if (std::isnan(a.number) || std::isnan(b.number)) return !std::isnan(a.number) && std::isnan(b.number);
    return a.number < b.number;
}

template <class Key, class KeyOf>
std::vector<std::size_t> FirstOfEach(const std::vector<SortEntry>& entries, KeyOf keyOf) {
    std::unordered_set<Key> seen;
    std::vector<std::size_t> kept;
    for (const SortEntry& entry : entries) {
        const bool isNumber = !std::isnan(entry.number);
        if (!isNumber || seen.insert(keyOf(entry)).second) kept.push_back(entry.index);
    }
    return kept;
}

std::vector<std::size_t> KeptByUnify(const std::vector<SortEntry>& entries, CellKind kind) {
    if (kind == CellKind::Integer) {
        return FirstOfEach<std::int32_t>(entries, [](const SortEntry& entry) { return entry.integer; });
    }
    if (kind == CellKind::Float) {
        return FirstOfEach<float>(entries, [](const SortEntry& entry) { return entry.number; });
    }
    return FirstOfEach<std::string_view>(entries, [](const SortEntry& entry) { return entry.text; });
}

}  // namespace

void ReverseRecords(CVariableKVLCategoryList& list, PathView parentKey) {
    RecordOrder records(list, parentKey);
    const std::size_t count = records.Scope().size();
    if (count < 2) return;
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i)
        order[i] = count - 1 - i;
    records.Arrange(order, KeyOfPlace);
}

void SortRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    std::vector<SortEntry> entries = BuildEntries(records.Scope(), column, kind);
    std::stable_sort(entries.begin(), entries.end(),
                     [kind](const SortEntry& a, const SortEntry& b) { return ComesBefore(a, b, kind); });
    std::vector<std::size_t> order;
    order.reserve(entries.size());
    for (const SortEntry& entry : entries)
        order.push_back(entry.index);
    records.Arrange(order, NumberedFromZero);
}

void UnifyRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    records.Arrange(KeptByUnify(BuildEntries(records.Scope(), column, kind), kind), NumberedFromZero);
}

}  // namespace kvl
