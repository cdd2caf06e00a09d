#pragma once
// One assignment while it runs: its operands as they become known, step by step.

#include "interpreter/CPatternSchema.h"

namespace kvl {

class Assignment {
public:
    // `operatorId` is the command's, but for a constant's first value, whose command has none. Nothing is owned; all
    // outlives this.
    Assignment(CPatternSchema& schema, const PatternCommand& command, int operatorId, RunContext& run)
        : schema_(schema), command_(command), sides_(*command.sides), run_(run) {
        operands_.operatorId = operatorId;
    }

    [[nodiscard]] bool Execute();

private:
    [[nodiscard]] bool ResolveLeft();
    [[nodiscard]] bool CheckCast() const;
    [[nodiscard]] bool ResolveRight();
    [[nodiscard]] bool ResolveLiteral();
    bool LoadsStream() const;
    // Between lists and instances; `done` tells that the assignment ends with the result.
    [[nodiscard]] bool AssignStructures(bool& done);
    void MarkSecondList() const;
    [[nodiscard]] bool AssignText();
    [[nodiscard]] bool Incompatible() const { return schema_.Fail(ERR_DECL_SCRIPT_VAR_9); }

    CPatternSchema& schema_;
    const PatternCommand& command_;
    const OperandSides& sides_;
    RunContext& run_;
    AssignmentOperands operands_;
    CVariableKVLCategoryList* rightList_ = nullptr;
    bool rightIsResult_ = false;  // a macro gave the right text
};

}  // namespace kvl
