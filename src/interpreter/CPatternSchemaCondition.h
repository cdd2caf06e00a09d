#pragma once
// The condition of one `$BEGIN IF ...$`: made each time the block is reached, evaluated once. The language has no
// boolean operators: a condition is a name, a macro call or one comparison, possibly negated.

#include <string>

#include "interpreter/CPatternSchema.h"

namespace kvl {

class CPatternSchemaCondition {
public:
    // Nothing is owned; all outlives this.
    CPatternSchemaCondition(CPatternSchema& schema, const PatternCommand& command, RunContext& run)
        : schema_(schema), command_(command), run_(run) {}
    virtual ~CPatternSchemaCondition() = default;

    // Resolves a name and reads the sides of a comparison, macro calls among them; a macro that is the whole condition
    // runs later. False after a message.
    [[nodiscard]] bool BuildCondition();
    // condition_true, condition_false, or condition_error after a message.
    int Evaluate();

private:
    struct Side {
        std::string text;
        int type = 0;
    };

    [[nodiscard]] bool ReadSides(const OperandSides& sides);
    [[nodiscard]] bool ReadName(std::string_view name, Side& side);
    [[nodiscard]] bool ReadCall(std::string_view name, const std::vector<ActualArgument>& arguments, Side& side);
    [[nodiscard]] bool IsMacroResultNotEmpty(bool& truth);
    [[nodiscard]] bool IsVariableNotEmpty(bool& truth);
    [[nodiscard]] bool IsListNotEmpty(bool& truth);
    [[nodiscard]] bool Compare(bool& truth);

    CPatternSchema& schema_;
    const PatternCommand& command_;
    RunContext& run_;
    int form_ = 0;                              // cmd_condition_*
    CVariable* variable_ = nullptr;             // of a condition that is one name
    CVariableKVLCategoryList* list_ = nullptr;  // the list that the name stands for
    Side left_, right_;
};

// Builds and evaluates the condition of a block's begin command.
int EvaluateCondition(CPatternSchema& schema, const PatternCommand& command, RunContext& run);

}  // namespace kvl
