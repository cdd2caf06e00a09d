#include "values/ListAssignment.h"

#include <algorithm>

namespace kvl {

namespace {

// A record of a copy's source: its key and its cells, by the source's columns. It is looked at in its list, or copied
// where the assignment changes that list too.
class ScopeRecord {
public:
    ScopeRecord(const RecordPath& path, const Record& record, bool copies)
        : key(path), own_(copies ? record.Copy() : Record()), listed_(copies ? nullptr : &record) {}

    const Record& Get() const { return listed_ ? *listed_ : own_; }
    RecordPath key;

private:
    Record own_;
    const Record* listed_;  // not owned
};
using ScopeRecords = std::vector<ScopeRecord>;

const CVariableKVLCategoryList& TopList(const CVariableKVLCategoryList& list) {
    return list.parentList ? TopList(*list.parentList) : list;
}

// An assignment between lists of one tree can write into the list that it reads.
bool AreInOneTree(const CVariableKVLCategoryList& a, const CVariableKVLCategoryList& b) {
    return &TopList(a) == &TopList(b);
}

ScopeRecords RecordsBetween(const RecordStore& store, RecordStore::Position first, RecordStore::Position last,
                            bool copies) {
    ScopeRecords records;
    for (; first != last; first = store.Next(first)) {
        records.emplace_back(RecordPath(store.PathAt(first)), store.At(first), copies);
    }
    return records;
}

ScopeRecords RecordsOfParent(const CVariableKVLCategoryList& list, PathView parentKey, bool copies) {
    const RecordStore& store = list.Records();
    return RecordsBetween(store, store.LowerBound(parentKey), store.Behind(parentKey), copies);
}

ScopeRecords AllRecords(const CVariableKVLCategoryList& list, bool copies) {
    return RecordsBetween(list.Records(), list.Records().Begin(), list.Records().End(), copies);
}

// The records of the list that the running loops select, for an assignment to `destination`.
ScopeRecords GetScopeRecords(const CVariableKVLCategoryList& list, const CVariableKVLCategoryList& destination,
                             const LoopStack& loops) {
    const bool copies = AreInOneTree(list, destination);
    ScopeRecords records;
    if (RunningLoop* loop = loops.FindLoop(&list)) {
        const ListCursor& cursor = loop->CursorOn(&list);
        records.emplace_back(cursor.key, cursor.Current(), copies);
    } else if (!list.parentList) {
        records = AllRecords(list, copies);
    } else if (const RecordPath* parentKey = list.GetParentKey(loops)) {
        records = RecordsOfParent(list, *parentKey, copies);
    }
    return records;
}

}  // namespace

enum class CopyMode { All, Record, FromInstance, ToInstance };

// Copies records into one list, nested records along with them.
class ListCopier {
public:
    ListCopier(CVariableKVLCategoryList& destination, const LoopStack& loops, CopyMode mode)
        : list_(destination), loops_(loops), mode_(mode) {
        RunningLoop* parentLoop = nullptr;
        list_.FindLoops(loops_, loop_, parentLoop);
        if (parentLoop) parentKey_ = &parentLoop->CursorOn(list_.parentList).key;
    }

    // Cells are paired with the columns by position, which is the alphabetical order of the labels on both sides.
    void CopyRecords(const std::vector<CVariable*>& sourceColumns, const ScopeRecords& records) const {
        for (const ScopeRecord& source : records) {
            const RecordPath key = ChooseKey();
            if (!CopyNested(sourceColumns, source.key, key)) return;
            Store(key, BuildRecord(sourceColumns.size(), source.Get()));
        }
    }

private:
    Record BuildRecord(std::size_t sourceColumnCount, const Record& source) const {
        Record record;
        const std::size_t columnCount = list_.Columns().size();
        if (sourceColumnCount < columnCount || source.IsPartial()) record.MakePartial();
        for (std::size_t i = 0; i < std::min(sourceColumnCount, columnCount); ++i) {
            const int column = static_cast<int>(i);
            if (!list_.NestedList(i) && source.Has(column)) record.Set(column, source.Get(column));
        }
        return record;
    }

    // The records below come first, under the key that the record is going to get. False when a list meets itself,
    // which ends the whole copy.
    bool CopyNested(const std::vector<CVariable*>& sourceColumns, const RecordPath& sourceKey,
                    const RecordPath& key) const {
        for (std::size_t i = 0; i < std::min(sourceColumns.size(), list_.Columns().size()); ++i) {
            CVariableKVLCategoryList* destination = list_.NestedList(i);
            if (!sourceColumns[i]->IsList() || !destination) continue;
            const auto& source = static_cast<const CVariableKVLCategoryList&>(*sourceColumns[i]);
            if (&source == destination) return false;
            if (mode_ == CopyMode::FromInstance) {
                if (const RecordPath* parentKey = destination->GetParentKey(loops_)) {
                    destination->RemoveRecords(RecordPath(*parentKey));
                }
            }
            const bool copies = AreInOneTree(source, *destination);
            const ScopeRecords records =
                source.parentList ? RecordsOfParent(source, sourceKey, copies) : AllRecords(source, copies);
            ListCopier nested(*destination, loops_, mode_);
            nested.parentKey_ = &key;
            nested.CopyRecords(source.Columns(), records);
        }
        return true;
    }

    RecordPath ChooseKey() const {
        if (loop_) return loop_->CursorOn(&list_).key;
        RecordPath key = list_.GetNewKey();
        const PathView leading = parentKey_ ? parentKey_->View() : PathView();
        for (std::size_t i = 0; i < std::min(leading.size(), key.Size()); ++i)
            key[i] = leading[i];
        return key;
    }

    void Store(const RecordPath& key, Record&& record) const {
        if (mode_ == CopyMode::ToInstance) {
            list_.InsertRecord(key, std::move(record));
            return;
        }
        if (!loop_) {
            list_.ReplaceRecord(key, std::move(record));
            return;
        }
        list_.ReplaceRecord(key, record.Copy());
        ListCursor& cursor = loop_->CursorOn(&list_);
        cursor.Detach();
        cursor.Own() = record.Copy();
        UpdateLoopsRecord(key, record);
    }

    // Every loop that stands on the record gets it in its copy; the list too, but for the second list of a loop while a
    // record of it is being written.
    void UpdateLoopsRecord(const RecordPath& key, const Record& record) const {
        loops_.FromTop([&](RunningLoop& loop) {
            if (!loop.UsesList(&list_)) return;
            ListCursor& cursor = loop.CursorOn(&list_);
            if (ComparePaths(cursor.key, key) != 0) return;
            cursor.Own() = record.Copy();
            const bool isSecond = &cursor == &loop.second;
            if (!isSecond || !list_.recordDirty) list_.ReplaceRecord(key, record.Copy());
        });
    }

    CVariableKVLCategoryList& list_;
    const LoopStack& loops_;
    CopyMode mode_;
    RunningLoop* loop_ = nullptr;
    const RecordPath* parentKey_ = nullptr;  // of the record below which the copies come; null: of a new one
};

namespace {

// No loop runs over the source.
void AssignAllFrom(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source,
                   const LoopStack& loops) {
    const ScopeRecords records = GetScopeRecords(source, destination, loops);
    const ListCopier copier(destination, loops, CopyMode::All);
    const bool hasLoop = loops.FindLoop(&destination) != nullptr;
    const RecordPath* parentKey = destination.GetParentKey(loops);
    if (!hasLoop && (!destination.parentList || parentKey)) {
        destination.RemoveRecords(parentKey ? RecordPath(*parentKey) : RecordPath());
    }
    copier.CopyRecords(source.Columns(), records);
    if (destination.parentList && !hasLoop && !parentKey) destination.parentList->AppendEmptyRecord();
}

// A loop runs over the source: its current record is copied.
void AssignRecordFrom(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source,
                      const LoopStack& loops) {
    const ScopeRecords records = GetScopeRecords(source, destination, loops);
    if (!destination.parentList && !loops.FindLoop(&destination)) destination.RemoveRecords({});
    ListCopier(destination, loops, CopyMode::Record).CopyRecords(source.Columns(), records);
}

}  // namespace

bool AssignFromList(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source,
                    const LoopStack& loops) {
    if (!destination.HasSameShape(source)) return false;
    if (&destination == &source) return true;
    if (loops.FindLoop(&source)) {
        AssignRecordFrom(destination, source, loops);
    } else {
        AssignAllFrom(destination, source, loops);
    }
    return true;
}

void AssignFromInstance(CVariableKVLCategoryList& destination, const InstanceVariables& variables,
                        const LoopStack& loops) {
    if (variables.size() < 2) return;
    const std::vector<CVariable*> columns(variables.begin() + 1, variables.end());
    Record record;
    for (std::size_t i = 0; i < columns.size(); ++i)
        record.Set(static_cast<int>(i), columns[i]->GetText());
    ScopeRecords records;
    records.emplace_back(destination.GetNewKey(), record, false);
    ListCopier(destination, loops, CopyMode::FromInstance).CopyRecords(columns, records);
}

void AssignToInstance(const CVariableKVLCategoryList& source, const InstanceVariables& variables,
                      const LoopStack& loops) {
    RunningLoop* loop = loops.FindLoop(&source);
    // A copy: the instance may be the one that has the list.
    const Record record = loop ? loop->CursorOn(&source).Current().Copy() : Record();
    const std::size_t count = std::min(variables.size(), source.Columns().size() + 1);
    for (std::size_t i = 1; i < count; ++i) {
        CVariable& variable = *variables[i];
        variable.SetText(record.Get(static_cast<int>(i - 1)));
        if (!variable.IsList()) continue;
        auto& list = static_cast<CVariableKVLCategoryList&>(variable);
        list.RemoveRecords({});
        if (const CVariableKVLCategoryList* nested = source.NestedList(i - 1)) {
            ListCopier(list, loops, CopyMode::ToInstance)
                .CopyRecords(nested->Columns(), GetScopeRecords(*nested, list, loops));
        }
    }
}

void CopyFromList(CVariableKVLCategoryList& destination, const CVariableKVLCategoryList& source) {
    destination.RemoveRecords({});
    const std::vector<CVariable*>& columns = source.Columns();
    for (const ScopeRecord& entry : AllRecords(source, false)) {
        Record record;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const CVariable* column = destination.FindColumn(columns[i]->label);
            const int index = column ? destination.ColumnIndexFor(*column) : destination.IsBracketList() ? 0 : -1;
            if (index >= 0) record.Set(index, entry.Get().Get(static_cast<int>(i)));
        }
        destination.InsertRecord(entry.key, std::move(record));
    }
}

}  // namespace kvl
