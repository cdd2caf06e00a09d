#pragma once
// What the interpreter asks of the built-in operations, which live above it.

#include <string>

#include "interpreter/MacroCall.h"

namespace kvl {

class CPatternSchema;

// The operands of an assignment as far as they are known when the built-in forms are looked at.
struct AssignmentOperands {
    CVariable* left = nullptr;
    CVariable* right = nullptr;  // null for a literal
    int leftType = 0, leftElementType = 0;
    CVariableKVLCategoryList* leftList = nullptr;
    int rightType = 0, rightElementType = 0;  // before a macro's result became type 1; a literal's kind
    std::string leftText, rightText;          // result of a macro on that side; a literal's value
    std::string castType;
    int operatorId = 0;
};

class BuiltIns {
public:
    virtual ~BuiltIns() = default;
    // Decides by the types of the two sides whether a file, stream, script, pattern or type is meant. `handled` tells
    // that the result ends the assignment.
    [[nodiscard]] virtual bool ExecuteBuiltIn(CPatternSchema& schema, const PatternCommand& command,
                                              AssignmentOperands& operands, bool& handled, RunContext& run) = 0;
    // Runs the built-in macro with the cmd_* identifier; fills value.result.
    [[nodiscard]] virtual bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) = 0;
    // The question before the first command; sets the schema's overwriteMode and returns it.
    virtual int AskOverwriteRun(CPatternSchema& schema) = 0;
};

// The built-ins in place; set once before the first run.
BuiltIns& TheBuiltIns();
void SetBuiltIns(BuiltIns* builtIns);  // not owned

}  // namespace kvl
