#pragma once
// The one repeating structure: a list of records. Its columns are variables that exist once; the repeated values are
// the cells of its records. A list nested in another keeps all its records in its own object; a nested record's path
// begins with the path of the record above it.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "values/CVariable.h"
#include "values/CellArena.h"
#include "values/LoopStack.h"
#include "values/RecordStore.h"

namespace kvl {

class CVariableKVLCategoryList final : public CVariableText {
public:
    CVariableKVLCategoryList() : CVariableText(kCategoryList) {}
    ~CVariableKVLCategoryList() override;

    bool CopyValue(const CVariable& source, const LoopStack& loops) override;
    bool AssignValue(CVariable& source, const LoopStack& loops) override;
    void DestroyValue() override;

    // --- columns: in alphabetical order of the labels they had when the list was built ---
    // False if the label is taken.
    [[nodiscard]] bool AddColumn(CVariable* column);
    const std::vector<CVariable*>& Columns() const { return columns_; }
    // The column with exactly this label, or null. Knows the present labels.
    CVariable* FindColumn(std::string_view columnLabel) const;
    // Must be called when a column's label has changed.
    void ColumnsRelabelled() { labelsSorted_ = false; }
    // The list that column `index` is, or null.
    CVariableKVLCategoryList* NestedList(std::size_t index) const;
    bool IsBracketList() const { return elementTypeId != 0 && elementTypeId != kTypeType; }

    // --- keys ---
    // For a record added by the input parser: the counts of records of each parent, the primary list first, then its
    // own.
    RecordPath GetNewKey() const;
    // For a record appended under `parentKey` (empty for a primary list).
    RecordPath GetNextKey(PathView parentKey) const;
    int GetDepth() const;

    // --- records ---
    const RecordStore& Records() const { return records_; }
    std::size_t GetRecordCount() const { return records_.Size(); }
    // An existing key keeps its old record.
    void InsertRecord(PathView key, Record&& record);
    void ReplaceRecord(PathView key, Record&& record);
    // Writes one cell of a record in place; nothing happens without the record.
    void WriteCell(PathView key, int column, std::string_view text);
    // One empty record here and, from the parent upwards, in every parent list.
    void AppendEmptyRecord();
    // Records of "0", "FALSE" or empty cells by the columns' types.
    void AppendDefaultRecords(int count);
    // The index of the column that a label means; -1 if none.
    int ColumnIndexFor(const CVariable& column) const {
        const auto index = static_cast<std::size_t>(column.columnIndex);
        const bool isOwn = index < columns_.size() && columns_[index] == &column;
        return isOwn && !IsBracketList() ? column.columnIndex : FindColumnIndex(column);
    }
    bool HasSameShape(const CVariableKVLCategoryList& other) const;

    // --- walking; all true when a record was found ---
    bool NextRecord(PathView key, RecordStore::Position& position) const;
    bool FirstInParent(PathView parentKey, RecordStore::Position& position) const;
    bool NextInParent(PathView parentKey, PathView key, RecordStore::Position& position) const;

    // --- loops ---
    // The innermost loops over this list and over its parent; null where there is none.
    void FindLoops(const LoopStack& loops, RunningLoop*& loop, RunningLoop*& parentLoop) const;
    // For a nested list: the key of the current record of the innermost loop over the parent. Null if no loop runs
    // there.
    const RecordPath* GetParentKey(const LoopStack& loops) const;
    // Every running loop that stands on the record gets the cell in its copy, and the list too, but for the second list
    // of a loop while recordDirty is set.
    void UpdateLoopsCell(PathView key, int column, std::string_view text, const LoopStack& loops);
    void MarkDirty(bool flag);

    // --- removing ---
    // From a primary list all records, from a nested list those under `parentKey`, each with everything nested below
    // it.
    void RemoveRecords(PathView parentKey);

    // --- the input parser's operations ---
    // The input that parsed cells are places in; kept alive as long as records may look into it.
    void KeepInput(std::shared_ptr<const std::string> input) { input_ = std::move(input); }
    // Adds the record that is complete now, under GetNewKey. `cells` are places in the input, in order of their
    // columns.
    void AddParsedRecord(std::span<const Cell> cells, bool provisional);
    // Takes back the last record added by AddParsedRecord.
    void TakeBackParsedRecord();
    int parseCount = 0;

    CVariableKVLCategoryList* parentList = nullptr;  // not owned; null for a primary list
    bool recordDirty = false;  // a column was assigned while a loop has this list as its second list
    std::string listTypeName;  // the declared type of the one element, where it has one

private:
    friend class ListCursor;
    friend class ListCopier;
    friend class RecordOrder;

    // Must come before any change of the set of records: running loops then hold copies.
    void DetachCursors();
    // A nested record whose parent record does not exist: as a loop that builds the parent list makes them before the
    // parent is appended. They are below nothing and stay where they are when lists are emptied or reordered.
    struct Stray {
        CVariableKVLCategoryList* list;
        RecordPath path;
        Record record;  // owns its texts
    };
    // Takes the strays under `parentKey` out of the nested lists of all levels.
    void TakeStrays(PathView parentKey, std::vector<Stray>& strays);
    void TakeOwnStrays(PathView parentKey, std::vector<Stray>& strays);
    static void PutBack(std::vector<Stray>& strays);
    void RemoveWithNested(PathView parentKey);
    void AppendNewKey(std::vector<int>& path) const;
    int FindColumnIndex(const CVariable& column) const;

    std::vector<CVariable*> columns_;                                     // not owned
    mutable std::vector<std::pair<std::string_view, int>> sortedLabels_;  // present labels and column indices
    mutable bool labelsSorted_ = false;
    RecordStore records_;
    std::vector<ListCursor*> borrowers_;  // cursors that look at a record of this list
    std::shared_ptr<const std::string> input_;

    CellArena arena_;  // the cells of parsed records
};

// The list behind a variable: a list itself, or the root list of an instance (which takes the instance's element type);
// null otherwise.
CVariableKVLCategoryList* FindListOf(CVariable& variable);
const CVariableKVLCategoryList* FindListOf(const CVariable& variable);

// The record trace in the log; the caller has asked whether a log is open.
void TraceAddedRecord(const CVariableKVLCategoryList& list, PathView key, const Record& record);
void TraceRemovedRecord(const CVariableKVLCategoryList& list, PathView key, const Record& record);

// Writes a value through the running loops: the cell of the current record of a column, the last record where no loop
// runs, the text of any other variable; an instance passes it to its root.
void WriteVariableValue(CVariable& variable, std::string_view text, const LoopStack& loops);

}  // namespace kvl
