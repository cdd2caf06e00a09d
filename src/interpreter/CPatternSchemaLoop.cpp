// A pass costs a step to the neighbour: a cursor looks at the list's own record and takes a copy only where the body
// builds the second list or the set of records changes. Such a copy is what StoreBack has to bring home; the next key
// is searched for then.
#include "interpreter/CPatternSchemaLoop.h"

#include <utility>

#include "interpreter/CPatternSchema.h"

namespace kvl {

namespace {

void StoreCopy(ListCursor& cursor) {
    if (!cursor.IsBorrowed()) cursor.list->ReplaceRecord(cursor.key, std::move(cursor.Own()));
}

}  // namespace

bool CPatternSchemaLoop::First(const LoopStack& loops) {
    first.notStarted = second.notStarted = true;
    return Next(loops);
}

bool CPatternSchemaLoop::Next(const LoopStack& loops) {
    bool found = false;
    if (!schema_.NextListRecord(first, found, loops)) return false;
    ended_ = !found;
    return ended_ || !second.list || MoveSecond(loops);
}

bool CPatternSchemaLoop::MoveSecond(const LoopStack& loops) {
    if (!IsSecondFresh()) {
        bool found = false;
        if (!schema_.NextListRecord(second, found, loops)) return false;
        if (found) return true;
        ended_ = mode_ == cmd_loop_mode_double_read;
        if (ended_) return true;
        secondEnded_ = true;
    }
    return MakeFreshRecord(loops);
}

// A record that the list does not have yet, under the key that it will get if the body writes to it.
bool CPatternSchemaLoop::MakeFreshRecord(const LoopStack& loops) {
    const RecordPath* parentKey = nullptr;
    if (second.list->parentList) {
        parentKey = schema_.GetParentRecord(*second.list, loops);
        if (!parentKey) return false;
    }
    second.key = second.list->GetNextKey(parentKey ? parentKey->View() : PathView());
    second.Hold(Record());
    second.notStarted = false;
    return true;
}

void CPatternSchemaLoop::StoreBack() {
    StoreCopy(first);
    if (!second.list) return;
    if (!IsSecondFresh() || second.list->recordDirty) StoreCopy(second);
    if (mode_ != cmd_loop_mode_double_read) second.list->MarkDirty(false);
}

}  // namespace kvl
