// Loop blocks: finding their lists and moving over the records.
#include "interpreter/CPatternSchema.h"
#include "interpreter/CPatternSchemaLoop.h"

namespace kvl {

namespace {

class OnLoopStack {
public:
    OnLoopStack(LoopStack& loops, RunningLoop& loop) : loops_(loops) { loops_.Push(&loop); }
    ~OnLoopStack() { loops_.Pop(); }
    OnLoopStack(const OnLoopStack&) = delete;
    OnLoopStack& operator=(const OnLoopStack&) = delete;

private:
    LoopStack& loops_;
};

}  // namespace

bool CPatternSchema::ExecuteLoop(int begin, int end, OutputText& output, RunContext& run) {
    const PatternCommand& head = Commands()[static_cast<std::size_t>(begin)];
    CPatternSchemaLoop loop(*this, head.loop->loopMode);
    // The loop takes its first list before the second is looked for: that one may be nested in the first.
    const OnLoopStack pushed(run.loops, loop);
    loop.first.list = ListOf(head.loop->listName1, run.loops);
    if (!loop.first.list) return false;
    if (head.loop->loopMode != cmd_loop_mode_single) {
        CVariableKVLCategoryList* second = ListOf(head.loop->listName2, run.loops);
        if (!second) return false;
        if (second == loop.first.list) return Fail(ERR_DECL_SCRIPT_LIST_2, ERRSTR_LIST_ID, second->label);
        second->MarkDirty(false);
        loop.second.list = second;
    }

    if (!loop.First(run.loops)) return false;
    while (!loop.IsEnded()) {
        if (!Execute(begin + 1, end - 1, output, run)) return false;
        loop.StoreBack();
        if (!loop.Next(run.loops)) return false;
    }
    return true;
}

CVariableKVLCategoryList* CPatternSchema::ListOf(std::string_view name, const LoopStack& loops) const {
    CVariable* variable = nullptr;
    if (!FindDeclaredVariable(name, variable)) return nullptr;
    CVariableKVLCategoryList* list = FindListOf(*variable);
    if (!list) {
        Fail(ERR_DECL_SCRIPT_LIST_1, ERRSTR_LIST_ID, variable->label);
        return nullptr;
    }
    return list->parentList && !GetParentRecord(*list, loops) ? nullptr : list;
}

bool CPatternSchema::ReportListOutsideLoop(std::string_view variableLabel, std::string_view listLabel) const {
    return Fail(ERR_DECL_SCRIPT_LIST_5, ERRSTR_VAR_NAME, variableLabel, ERRSTR_LIST_ID, listLabel);
}

const RecordPath* CPatternSchema::GetParentRecord(const CVariableKVLCategoryList& list, const LoopStack& loops) const {
    const RecordPath* key = list.GetParentKey(loops);
    if (!key) ReportListOutsideLoop(list.label, list.parentList->label);
    return key;
}

bool CPatternSchema::NextListRecord(ListCursor& cursor, bool& found, const LoopStack& loops) const {
    const CVariableKVLCategoryList& list = *cursor.list;
    PathView parentKey;
    if (list.parentList) {
        const RecordPath* key = GetParentRecord(list, loops);
        if (!key) return false;
        parentKey = *key;
    }
    // Every key begins with the empty key of no parent, so that one walk serves primary and nested lists.
    const RecordStore& records = list.Records();
    const auto isChild = [&](RecordStore::Position place) {
        return place != records.End() && IsChildKey(records.PathAt(place), parentKey);
    };
    RecordStore::Position position;
    if (cursor.notStarted) {
        found = list.FirstInParent(parentKey, position);
    } else if (cursor.IsBorrowed()) {
        position = records.Next(cursor.Position());
        found = isChild(position);
    } else {
        found = list.NextInParent(parentKey, cursor.key, position);
    }
    cursor.notStarted = false;
    if (!found) return true;
    cursor.last = !isChild(records.Next(position));
    cursor.Borrow(position);
    return true;
}

}  // namespace kvl
