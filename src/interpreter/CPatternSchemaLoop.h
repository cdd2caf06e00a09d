#pragma once
// One active $BEGIN ALL block: the lists it walks, how the second of them goes along, and how far the walk is. Lists
// and values see it as a RunningLoop on the loop stack.

#include "frontend/CommandIds.h"
#include "values/CVariableKVLCategoryList.h"
#include "values/LoopStack.h"

namespace kvl {

class CPatternSchema;

class CPatternSchemaLoop final : public RunningLoop {
public:
    // `mode` is a cmd_loop_mode_*. The lists are put into the cursors before the first pass.
    CPatternSchemaLoop(const CPatternSchema& schema, int mode) : schema_(schema), mode_(mode) {}

    // To the records of the first or the next pass; false only after a message. The loop is on the stack.
    [[nodiscard]] bool First(const LoopStack& loops);
    [[nodiscard]] bool Next(const LoopStack& loops);
    // Behind the body: what it wrote into the loop's own copies goes into the lists.
    void StoreBack();

    // No further pass.
    bool IsEnded() const { return ended_; }
    // One of the lists is on its last record: no separator follows.
    bool IsLast() const { return first.last || second.last; }
    int Mode() const { return mode_; }

private:
    [[nodiscard]] bool MoveSecond(const LoopStack& loops);
    [[nodiscard]] bool MakeFreshRecord(const LoopStack& loops);
    bool IsSecondFresh() const { return mode_ == cmd_loop_mode_double_extend || secondEnded_; }

    const CPatternSchema& schema_;  // outlives this
    int mode_;
    bool ended_ = false;
    bool secondEnded_ = false;  // the second list of a CHANGE loop has run out
};

}  // namespace kvl
