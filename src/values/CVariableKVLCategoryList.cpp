#include "values/CVariableKVLCategoryList.h"

#include <algorithm>
#include <cassert>

#include "values/EntityVariables.h"
#include "values/ListAssignment.h"

namespace kvl {

namespace {

std::string_view DefaultText(int typeId) {
    switch (typeId) {
        case kTypeInteger:
        case kTypeFloat:
            return "0";
        case kTypeBool:
            return "FALSE";
        default:
            return {};
    }
}

}  // namespace

CVariableKVLCategoryList::~CVariableKVLCategoryList() {
    DetachCursors();
}

bool CVariableKVLCategoryList::CopyValue(const CVariable& source, const LoopStack& loops) {
    if (!CVariableText::CopyValue(source, loops)) return false;
    return !source.IsList() || AssignFromList(*this, static_cast<const CVariableKVLCategoryList&>(source), loops);
}

bool CVariableKVLCategoryList::AssignValue(CVariable& source, const LoopStack& loops) {
    return !source.IsList() || AssignFromList(*this, static_cast<CVariableKVLCategoryList&>(source), loops);
}

void CVariableKVLCategoryList::DestroyValue() {
    DetachCursors();
    records_.Clear();
    arena_.Clear();
    input_.reset();
    CVariableText::DestroyValue();
}

// --- columns ---

bool CVariableKVLCategoryList::AddColumn(CVariable* column) {
    const auto place =
        std::lower_bound(columns_.begin(), columns_.end(), column->label,
                         [](const CVariable* other, const std::string& wanted) { return other->label < wanted; });
    if (place != columns_.end() && (*place)->label == column->label) return false;
    const auto first = static_cast<std::size_t>(place - columns_.begin());
    columns_.insert(place, column);
    column->ownerList = this;
    for (std::size_t i = first; i < columns_.size(); ++i) {
        if (columns_[i]->ownerList == this) columns_[i]->columnIndex = static_cast<int>(i);
    }
    labelsSorted_ = false;
    return true;
}

CVariable* CVariableKVLCategoryList::FindColumn(std::string_view columnLabel) const {
    if (!labelsSorted_) {
        sortedLabels_.clear();
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            sortedLabels_.emplace_back(columns_[i]->label, static_cast<int>(i));
        }
        std::sort(sortedLabels_.begin(), sortedLabels_.end());
        labelsSorted_ = true;
    }
    const auto found =
        std::lower_bound(sortedLabels_.begin(), sortedLabels_.end(), columnLabel,
                         [](const auto& entry, std::string_view wanted) { return entry.first < wanted; });
    if (found == sortedLabels_.end() || found->first != columnLabel) return nullptr;
    return columns_[static_cast<std::size_t>(found->second)];
}

CVariableKVLCategoryList* CVariableKVLCategoryList::NestedList(std::size_t index) const {
    return columns_[index]->IsList() ? static_cast<CVariableKVLCategoryList*>(columns_[index]) : nullptr;
}

// --- keys ---

RecordPath CVariableKVLCategoryList::GetNewKey() const {
    RecordPath key = parentList ? parentList->GetNewKey() : RecordPath();
    key.Append(static_cast<int>(records_.Size()));
    return key;
}

RecordPath CVariableKVLCategoryList::GetNextKey(PathView parentKey) const {
    RecordPath key(parentKey);
    if (!parentList) {
        key.Append(static_cast<int>(records_.Size()));
        return key;
    }
    const RecordStore::Position behind = records_.Behind(parentKey);
    const RecordStore::Position first = records_.LowerBound(parentKey);
    if (first == behind) {
        key.Append(0);
    } else {
        key.Append(records_.PathAt(records_.Before(behind)).back() + 1);
    }
    return key;
}

int CVariableKVLCategoryList::GetDepth() const {
    return parentList ? parentList->GetDepth() + 1 : 1;
}

// --- records ---

void CVariableKVLCategoryList::InsertRecord(PathView key, Record&& record) {
    DetachCursors();
    bool inserted = false;
    records_.Insert(key, std::move(record), inserted);
}

void CVariableKVLCategoryList::ReplaceRecord(PathView key, Record&& record) {
    DetachCursors();
    bool inserted = false;
    Record& place = records_.Insert(key, std::move(record), inserted);
    if (!inserted) place = std::move(record);  // NOLINT(bugprone-use-after-move): left alone where none was inserted
}

void CVariableKVLCategoryList::WriteCell(PathView key, int column, std::string_view text) {
    if (Record* record = records_.Find(key)) record->Set(column, text);
}

void CVariableKVLCategoryList::AppendEmptyRecord() {
    for (CVariableKVLCategoryList* list = this; list; list = list->parentList) {
        list->InsertRecord(list->GetNewKey(), Record());
    }
}

void CVariableKVLCategoryList::AppendDefaultRecords(int count) {
    for (int i = 0; i < count; ++i) {
        Record record;
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            record.Set(static_cast<int>(column), DefaultText(columns_[column]->typeId));
        }
        InsertRecord(GetNextKey({}), std::move(record));
    }
}

int CVariableKVLCategoryList::FindColumnIndex(const CVariable& column) const {
    if (IsBracketList()) return columns_.empty() ? -1 : 0;
    const CVariable* found = FindColumn(column.label);
    if (!found) return -1;
    return static_cast<int>(std::find(columns_.begin(), columns_.end(), found) - columns_.begin());
}

bool CVariableKVLCategoryList::HasSameShape(const CVariableKVLCategoryList& other) const {
    if (columns_.size() != other.columns_.size()) return false;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const CVariableKVLCategoryList* nested = NestedList(i);
        if (!nested) continue;
        const CVariableKVLCategoryList* otherNested = other.NestedList(i);
        return otherNested && nested->HasSameShape(*otherNested);
    }
    return true;
}

// --- walking ---

bool CVariableKVLCategoryList::NextRecord(PathView key, RecordStore::Position& position) const {
    const RecordStore::Position current = records_.LowerBound(key);
    if (current == records_.End() || ComparePaths(records_.PathAt(current), key) != 0) return false;
    position = records_.Next(current);
    return position != records_.End();
}

bool CVariableKVLCategoryList::FirstInParent(PathView parentKey, RecordStore::Position& position) const {
    position = records_.LowerBound(parentKey);
    return position != records_.End() && IsChildKey(records_.PathAt(position), parentKey);
}

bool CVariableKVLCategoryList::NextInParent(PathView parentKey, PathView key, RecordStore::Position& position) const {
    return NextRecord(key, position) && IsChildKey(records_.PathAt(position), parentKey);
}

// --- loops ---

void CVariableKVLCategoryList::FindLoops(const LoopStack& loops, RunningLoop*& loop, RunningLoop*& parentLoop) const {
    loop = loops.FindLoop(this);
    parentLoop = loops.FindLoop(parentList);
}

const CVariableKVLCategoryList* FindListOf(const CVariable& variable) {
    if (variable.IsList()) return static_cast<const CVariableKVLCategoryList*>(&variable);
    if (variable.typeId != kTypeInstance || !variable.typeSchema) return nullptr;
    const CVariable* root = variable.typeSchema->GetRootVariable();
    return root && root->IsList() ? static_cast<const CVariableKVLCategoryList*>(root) : nullptr;
}

const RecordPath* CVariableKVLCategoryList::GetParentKey(const LoopStack& loops) const {
    RunningLoop* loop = loops.FindLoop(parentList);
    return loop ? &loop->CursorOn(parentList).key : nullptr;
}

void CVariableKVLCategoryList::UpdateLoopsCell(PathView key, int column, std::string_view text,
                                               const LoopStack& loops) {
    loops.FromTop([&](RunningLoop& loop) {
        if (!loop.UsesList(this)) return;
        ListCursor& cursor = loop.CursorOn(this);
        if (ComparePaths(cursor.key, key) != 0) return;
        const bool isSecond = &cursor == &loop.second;
        const bool writesList = !isSecond || !recordDirty;
        if (!writesList || !cursor.IsBorrowed()) cursor.Own().Set(column, text);
        if (writesList) WriteCell(key, column, text);
    });
}

void CVariableKVLCategoryList::MarkDirty(bool flag) {
    recordDirty = flag;
    if (flag && parentList) parentList->MarkDirty(true);
}

void CVariableKVLCategoryList::DetachCursors() {
    while (!borrowers_.empty())
        borrowers_.back()->Detach();
}

// --- removing ---

void CVariableKVLCategoryList::RemoveRecords(PathView parentKey) {
    if (!parentList) parentKey = {};
    std::vector<Stray> strays;
    TakeStrays(parentKey, strays);
    RemoveWithNested(parentKey);
    PutBack(strays);
}

void CVariableKVLCategoryList::RemoveWithNested(PathView parentKey) {
    DetachCursors();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (CVariableKVLCategoryList* nested = NestedList(i)) nested->RemoveWithNested(parentKey);
    }
    if (parentKey.empty()) {
        records_.Clear();
        arena_.Clear();
        input_.reset();
    } else {
        records_.Erase(records_.LowerBound(parentKey), records_.Behind(parentKey));
    }
}

// The strays of a list come first, so that what hangs below them is stray as well. One walk for each list.
void CVariableKVLCategoryList::TakeStrays(PathView parentKey, std::vector<Stray>& strays) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        CVariableKVLCategoryList* nested = NestedList(i);
        if (!nested) continue;
        nested->TakeOwnStrays(parentKey, strays);
        nested->TakeStrays(parentKey, strays);
    }
}

void CVariableKVLCategoryList::TakeOwnStrays(PathView parentKey, std::vector<Stray>& strays) {
    const RecordStore& parents = parentList->records_;
    std::vector<RecordStore::Position> found;
    RecordStore::Position parent = parents.LowerBound(parentKey);
    const RecordStore::Position end = records_.Behind(parentKey);
    for (RecordStore::Position p = records_.LowerBound(parentKey); p != end; p = records_.Next(p)) {
        const PathView path = records_.PathAt(p);
        const PathView above = path.first(path.size() - 1);
        while (parent != parents.End() && ComparePaths(parents.PathAt(parent), above) < 0)
            parent = parents.Next(parent);
        if (parent == parents.End() || ComparePaths(parents.PathAt(parent), above) != 0) found.push_back(p);
    }
    if (!found.empty()) DetachCursors();
    for (std::size_t i = found.size(); i-- > 0;) {
        strays.push_back({this, RecordPath(records_.PathAt(found[i])), records_.At(found[i]).Copy()});
        records_.Erase(found[i], records_.Next(found[i]));
    }
}

void CVariableKVLCategoryList::PutBack(std::vector<Stray>& strays) {
    for (Stray& stray : strays)
        stray.list->InsertRecord(stray.path, std::move(stray.record));
}

CVariableKVLCategoryList* FindListOf(CVariable& variable) {
    if (variable.IsList()) return static_cast<CVariableKVLCategoryList*>(&variable);
    if (variable.typeId != kTypeInstance || !variable.typeSchema) return nullptr;
    CVariable* root = variable.typeSchema->GetRootVariable();
    if (!root || !root->IsList()) return nullptr;
    root->elementTypeId = variable.elementTypeId;
    return static_cast<CVariableKVLCategoryList*>(root);
}

void WriteVariableValue(CVariable& variable, std::string_view text, const LoopStack& loops) {
    CVariableKVLCategoryList* list = variable.ownerList;
    if (!list) {
        variable.SetText(text);
        if (variable.typeId != kTypeInstance || !variable.typeSchema) return;
        if (CVariable* root = variable.typeSchema->GetRootVariable()) root->SetText(text);
        return;
    }
    const int column = list->ColumnIndexFor(variable);
    if (column < 0) return;
    RunningLoop* loop = loops.FindLoop(list);
    if (!loop) {
        if (list->GetRecordCount() > 0) list->WriteCell(RecordPath(list->Records().LastPath()), column, text);
        return;
    }
    ListCursor& cursor = loop->CursorOn(list);
    if (list->recordDirty || !cursor.IsBorrowed()) cursor.Own().Set(column, text);
    if (!list->recordDirty) {
        if (cursor.IsBorrowed()) {
            list->WriteCell(cursor.key, column, text);
        } else {
            list->ReplaceRecord(cursor.key, cursor.Current().Copy());
        }
    }
    list->UpdateLoopsCell(cursor.key, column, text, loops);
}

}  // namespace kvl
