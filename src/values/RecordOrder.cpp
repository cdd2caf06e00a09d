// Sorting, unifying and reversing: the records of the scope and of every list nested below are taken out with their
// keys, arranged by the order that was found for the scope, and put back under new keys. n log n for the sort, linear
// else.

#include "values/RecordOrder.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

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

// The records of a scope and all that is nested below them, out of their lists. Paths and records lie side by side, so
// that a million of them is little more than the records themselves.
class RecordOrder {
public:
    using Index = std::uint32_t;  // of a record in the scope or among the records of one list below it

    RecordOrder(CVariableKVLCategoryList& list, PathView parentKey) : list_(list), parentKey_(parentKey) {}

    // The scope's records as they stand, before they are taken out.
    template <class Visit>
    void VisitScope(Visit visit) const {
        const RecordStore& store = list_.records_;
        const RecordStore::Position end = store.Behind(parentKey_);
        for (RecordStore::Position p = store.LowerBound(parentKey_); p != end; p = store.Next(p))
            visit(store.At(p));
    }
    Index Count() const {
        Index count = 0;
        VisitScope([&count](const Record&) { ++count; });
        return count;
    }

    // Record order[i] of the scope comes to the i-th place, with all below it; records that are not named are dropped.
    // For each, `target` gives the numbers that the smallest numbers of its subtree become.
    template <class Target>
    void Arrange(const std::vector<Index>& order, Target target) {
        std::vector<CVariableKVLCategoryList::Stray> strays;
        list_.TakeStrays(parentKey_, strays);
        TakeOut(list_);
        CVariableKVLCategoryList::PutBack(strays);
        FindSubtrees();
        for (Index place = 0; place < order.size(); ++place) {
            const Index old = order[place];
            const RecordPath lowest = Lowest(old);
            PutBack(old, target(*this, place, old, lowest), lowest);
        }
    }

    PathView OldKey(Index index) const { return taken_.front().PathOf(index); }

private:
    struct Taken {
        CVariableKVLCategoryList* list = nullptr;
        std::size_t depth = 0;        // numbers of a path
        std::vector<int> paths;       // in order
        std::vector<Record> records;  // in the same order
        std::vector<Index> subtrees;  // by record of the scope: where its subtree begins, which is where the last ended

        Index Size() const { return static_cast<Index>(records.size()); }
        PathView PathOf(Index index) const { return {paths.data() + index * depth, depth}; }
    };

    void TakeOut(CVariableKVLCategoryList& list) {
        list.DetachCursors();
        RecordStore& store = list.records_;
        const RecordStore::Position first = store.LowerBound(parentKey_);
        const RecordStore::Position last = store.Behind(parentKey_);
        Taken taken;
        taken.list = &list;
        taken.depth = static_cast<std::size_t>(list.GetDepth());
        if (parentKey_.Empty()) {
            taken.paths.reserve(store.Size() * taken.depth);
            taken.records.reserve(store.Size());
        }
        for (RecordStore::Position p = first; p != last; p = store.Next(p)) {
            const PathView path = store.PathAt(p);
            taken.paths.insert(taken.paths.end(), path.begin(), path.end());
            taken.records.push_back(std::move(store.At(p)));
        }
        store.Erase(first, last);
        taken_.push_back(std::move(taken));
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            if (CVariableKVLCategoryList* nested = list.NestedList(i)) TakeOut(*nested);
        }
    }

    // Children of one record are neighbours, and the neighbours of all lists stand in the order of the scope: one walk.
    void FindSubtrees() {
        const Taken& scope = taken_.front();
        for (Taken& taken : taken_) {
            Index next = 0;
            taken.subtrees.reserve(scope.records.size() + 1);
            for (Index i = 0; i < scope.Size(); ++i) {
                taken.subtrees.push_back(next);
                const PathView key = scope.PathOf(i);
                while (next < taken.Size() && std::equal(key.begin(), key.end(), taken.PathOf(next).begin()))
                    ++next;
            }
            taken.subtrees.push_back(next);
        }
    }

    // The smallest number at each position among the keys of a subtree; as many as its longest key has.
    RecordPath Lowest(Index index) const {
        RecordPath lowest(OldKey(index));
        const std::size_t depth = lowest.Size();
        for (const Taken& taken : taken_) {
            for (Index i = taken.subtrees[index]; i < taken.subtrees[index + 1]; ++i) {
                const PathView path = taken.PathOf(i);
                for (std::size_t level = depth; level < path.size(); ++level) {
                    if (level == lowest.Size()) {
                        lowest.Append(path[level]);
                    } else {
                        lowest[level] = std::min(lowest[level], path[level]);
                    }
                }
            }
        }
        return lowest;
    }

    void PutBack(Index index, const RecordPath& base, const RecordPath& lowest) {
        for (Taken& taken : taken_) {
            for (Index i = taken.subtrees[index]; i < taken.subtrees[index + 1]; ++i) {
                RecordPath path(taken.PathOf(i));
                for (std::size_t level = 0; level < path.Size(); ++level)
                    path[level] += base.View()[level] - lowest.View()[level];
                bool inserted = false;
                taken.list->records_.Insert(path, std::move(taken.records[i]), inserted);
            }
        }
    }

    CVariableKVLCategoryList& list_;
    RecordPath parentKey_;
    std::vector<Taken> taken_;  // the list itself first
};

namespace {

using Index = RecordOrder::Index;

// New keys number the scope from 0, and what is nested below each record from its new number.
RecordPath NumberedFromZero(const RecordOrder& records, Index place, Index old, const RecordPath& lowest) {
    RecordPath base(records.OldKey(old));
    const int number = static_cast<int>(place);
    base[base.Size() - 1] = number;
    while (base.Size() < lowest.Size())
        base.Append(number);
    return base;
}

// The record takes the key of the one whose place it takes, and what is nested below is numbered from 0; the one in the
// middle stays as it is.
RecordPath KeyOfPlace(const RecordOrder& records, Index place, Index old, const RecordPath& lowest) {
    if (place == old) return lowest;
    RecordPath base(records.OldKey(place));
    while (base.Size() < lowest.Size())
        base.Append(0);
    return base;
}

// A text with its first bytes at hand, which decide most comparisons without a look at memory far away.
class TextKey {
public:
    explicit TextKey(std::string_view text) : text_(text) {
        for (std::size_t i = 0; i < sizeof head_; ++i)
            head_ = head_ << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
    bool operator<(const TextKey& other) const {
        return head_ != other.head_ ? head_ < other.head_ : text_ < other.text_;
    }
    bool operator==(const TextKey& other) const { return head_ == other.head_ && text_ == other.text_; }

private:
    std::uint64_t head_ = 0;
    std::string_view text_;
};

// A record of the scope by what it is compared by.
template <class Value>
struct Keyed {
    Value value;
    Index index;
};

template <class Read>
auto ReadColumn(const RecordOrder& records, int column, Read read) {
    std::vector<Keyed<decltype(read(std::string_view()))>> keys;
    records.VisitScope([&](const Record& record) {
        keys.push_back({read(record.Get(column)), static_cast<Index>(keys.size())});
    });
    return keys;
}

// Hands the column's values to `visit`, in the form in which its kind compares them.
template <class Visit>
std::vector<Index> WithValues(const RecordOrder& records, int column, CellKind kind, Visit visit) {
    if (kind == CellKind::Integer) return visit(ReadColumn(records, column, ReadInteger));
    if (kind != CellKind::Float) {
        return visit(ReadColumn(records, column, [](std::string_view text) { return TextKey(text); }));
    }
    return visit(
        ReadColumn(records, column, [](std::string_view text) { return static_cast<float>(ReadFloat(text)); }));
}

template <class Value>
bool IsNoNumber(const Value& value) {
    if constexpr (std::is_same_v<Value, float>) return std::isnan(value);
    return false;
}

template <class Value>
void SortByValue(std::vector<Keyed<Value>>& keys) {
    std::stable_sort(keys.begin(), keys.end(), [](const Keyed<Value>& a, const Keyed<Value>& b) {
        if (IsNoNumber(a.value) || IsNoNumber(b.value)) return !IsNoNumber(a.value) && IsNoNumber(b.value);
        return a.value < b.value;
    });
}

template <class Value>
std::vector<Index> InOrder(std::vector<Keyed<Value>> keys) {
    SortByValue(keys);
    std::vector<Index> order;
    order.reserve(keys.size());
    for (const Keyed<Value>& key : keys)
        order.push_back(key.index);
    return order;
}

// The first of equal values is the first of its run when all are sorted; what is no number equals nothing.
template <class Value>
std::vector<Index> FirstOfEach(std::vector<Keyed<Value>> keys) {
    SortByValue(keys);
    std::vector<bool> isFirst(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
        isFirst[keys[i].index] = i == 0 || !(keys[i - 1].value == keys[i].value);
    std::vector<Index> kept;
    for (Index index = 0; index < isFirst.size(); ++index)
        if (isFirst[index]) kept.push_back(index);
    return kept;
}

}  // namespace

void ReverseRecords(CVariableKVLCategoryList& list, PathView parentKey) {
    RecordOrder records(list, parentKey);
    const Index count = records.Count();
    if (count < 2) return;
    std::vector<Index> order(count);
    for (Index i = 0; i < count; ++i)
        order[i] = count - 1 - i;
    records.Arrange(order, KeyOfPlace);
}

void SortRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    records.Arrange(WithValues(records, column, kind, [](auto keys) { return InOrder(std::move(keys)); }),
                    NumberedFromZero);
}

void UnifyRecords(CVariableKVLCategoryList& list, PathView parentKey, int column, CellKind kind) {
    RecordOrder records(list, parentKey);
    records.Arrange(WithValues(records, column, kind, [](auto keys) { return FirstOfEach(std::move(keys)); }),
                    NumberedFromZero);
}

}  // namespace kvl
