#include "builtins/InstallBuiltIns.h"

#include "builtins/FileOperations.h"
#include "builtins/StaticMacros.h"
#include "interpreter/BuiltIns.h"

namespace kvl {

namespace {

// Hands each request of the interpreter to the operation of that name in this folder.
class InstalledBuiltIns final : public BuiltIns {
public:
    bool ExecuteBuiltIn(CPatternSchema& schema, const PatternCommand& command, AssignmentOperands& operands,
                        bool& handled, RunContext& run) override {
        return kvl::ExecuteBuiltIn(schema, command, operands, handled, run);
    }
    bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) override {
        return kvl::RunStaticMacro(schema, identifier, value);
    }
    int AskOverwriteRun(CPatternSchema& schema) override { return kvl::AskOverwriteRun(schema); }
};

}  // namespace

void InstallBuiltIns() {
    static InstalledBuiltIns builtIns;
    SetBuiltIns(&builtIns);
}

}  // namespace kvl
