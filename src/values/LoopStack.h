#pragma once
// The running loops as lists and values need them: which record of a list is the current one.

#include <vector>

#include "values/RecordStore.h"

namespace kvl {

class CVariableKVLCategoryList;

// The place of a loop on one list. While the record is only read, the cursor looks at the list's own record; it takes a
// copy in the moment in which either of the two is going to change without the other.
class ListCursor {
public:
    ListCursor() = default;
    ~ListCursor() { LetGo(); }
    ListCursor(const ListCursor&) = delete;
    ListCursor& operator=(const ListCursor&) = delete;

    CVariableKVLCategoryList* list = nullptr;  // not owned; null: the loop has no such list
    RecordPath key;                            // of the current record
    bool last = false;                         // the record is its list's last one in this loop
    bool notStarted = true;                    // until the cursor has moved once

    const Record& Current() const { return borrowed_ ? *borrowed_ : own_; }
    // The copy that may be written without the list's record.
    Record& Own();
    bool IsBorrowed() const { return borrowed_ != nullptr; }
    // Goes to a record of the list and looks at it there.
    void Borrow(RecordStore::Position position);
    // The place of the borrowed record: as long as it is borrowed, the set of records has not changed.
    RecordStore::Position Position() const { return position_; }
    // Holds a record of its own, which the list does not have.
    void Hold(Record&& record);
    // Copies the borrowed record; called by the list before its records change.
    void Detach();

private:
    void LetGo();

    Record* borrowed_ = nullptr;  // in the list, which knows of it
    RecordStore::Position position_;
    Record own_;
};

// One active loop. The interpreter's loop class adds how it runs.
class RunningLoop {
public:
    virtual ~RunningLoop() = default;
    ListCursor first;
    ListCursor second;

    bool UsesList(const CVariableKVLCategoryList* list) const { return first.list == list || second.list == list; }
    // The cursor on the list, which the loop uses.
    ListCursor& CursorOn(const CVariableKVLCategoryList* list) { return first.list == list ? first : second; }
};

// The active loops of a run, innermost last; shared by all schemas, so that a macro sees the loops of its callers.
class LoopStack {
public:
    void Push(RunningLoop* loop) { loops_.push_back(loop); }
    void Pop() { loops_.pop_back(); }
    bool Empty() const { return loops_.empty(); }
    RunningLoop* Innermost() const { return loops_.empty() ? nullptr : loops_.back(); }
    // The innermost loop that has `list` as first or second list; null if none, or if `list` is null.
    RunningLoop* FindLoop(const CVariableKVLCategoryList* list) const {
        if (!list) return nullptr;
        for (std::size_t i = loops_.size(); i-- > 0;) {
            if (loops_[i]->UsesList(list)) return loops_[i];
        }
        return nullptr;
    }
    // All loops, from the top of the stack down.
    template <class Visit>
    void FromTop(Visit visit) const {
        for (std::size_t i = loops_.size(); i-- > 0;)
            visit(*loops_[i]);
    }

private:
    std::vector<RunningLoop*> loops_;  // not owned
};

}  // namespace kvl
