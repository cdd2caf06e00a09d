// Calls of scripts and patterns: what of them only the objects show. Their texts are in Calls.cases.
#include "ScriptCases.h"

namespace kvl {
namespace {

// With the macros and values that the cases have.
class CallRun : public ScriptRun {
public:
    CallRun() : values_(Prepare(*this, ReadScriptCases("interpreter/Calls.cases").front())) {}
    bool ExecuteBehindValues(const std::string& body) { return Execute(values_ + body); }

private:
    std::string values_;
};

// Keeps what built-in macros were called with, and in which overwrite mode.
class Witness : public SimpleBuiltIns {
public:
    std::vector<const CVariable*> variables;
    std::vector<std::string> labels;
    int overwriteMode = 0;

    bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) override {
        overwriteMode = schema.overwriteMode;
        for (const BoundArgument& argument : value.arguments) {
            variables.push_back(argument.variable);
            labels.push_back(argument.variable->label);
        }
        return SimpleBuiltIns::RunStaticMacro(schema, identifier, value);
    }
};

TEST(MacroParameters, AreTheCallersVariablesUnderOtherNames) {
    CallRun run;
    Witness witness;
    SetBuiltIns(&witness);
    run.root->overwriteMode = kOverwriteSkip;
    ASSERT_TRUE(run.ExecuteBehindValues("$ASKALL(A:R, I)$")) << run.outside.console.output;
    EXPECT_EQ(witness.labels, (std::vector<std::string>{"A", "B:L"}));
    ASSERT_EQ(witness.variables.size(), 2U);
    EXPECT_EQ(witness.variables[0], run.root->variableTable.Find("A:R"));
    EXPECT_EQ(witness.variables[1], run.root->variableTable.Find("I:L"));
    EXPECT_EQ(witness.overwriteMode, kOverwriteSkip);
}

TEST(MacroParameters, GetTheirLabelsBackFromAFailingCall) {
    CallRun run;
    ASSERT_FALSE(run.ExecuteBehindValues("$BREAK(I)$"));
    const CVariable* field = run.root->variableTable.Find("I:L");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->label, "I:L");
    EXPECT_EQ(field->GetText(), "new");
    EXPECT_EQ(field->GetFileLabelKey(), "main.kvl@I:L");
    EXPECT_EQ(field->ownerEntity, run.root.get());
}

TEST(MacroName, OfTheVariableMustBeTheDeclaredOne) {
    CallRun run;
    ASSERT_TRUE(run.ExecuteBehindValues(""));
    auto* other = static_cast<CVariableKVLMacro*>(run.root->EnterVariable("OTHER", "KVL:PATTERN", kTypePattern));
    other->ShareValue(*run.root->variableTable.Find("ASTEXT"));
    const std::vector<ActualArgument> noArguments;
    OutputText output;
    RunContext context;
    EXPECT_FALSE(run.root->ExecuteMacroCall("OTHER", CallArguments(noArguments), "OTHER()", true, output, context));
    EXPECT_NE(run.outside.console.output.find("Actual - Formal Macro/Pattern Name Mismatch. "), std::string::npos);
}

// DOWN calls itself until its number is 0.
bool CallNested(ScriptRun& run, int calls, std::size_t stackBytes = std::size_t{1} << 30) {
    run.AddScript("DOWN", "#N::INTEGER", "$M ::INTEGER = N$$M -= 1$$BEGIN IF M > 0$$DOWN(M)$$END IF M > 0$");
    bool succeeded = false;
    RunOnLargeStack(stackBytes, [&] { succeeded = run.Execute("$DOWN(" + std::to_string(calls) + ")$"); });
    EXPECT_EQ(Process().macroDepth, 0);
    return succeeded;
}

TEST(MacroDepth, TenThousandCallsNest) {
    ScriptRun run;
    EXPECT_TRUE(CallNested(run, kDeepestMacroCall)) << run.faults;
}

TEST(MacroDepth, OneMoreIsRefused) {
    ScriptRun run;
    EXPECT_FALSE(CallNested(run, kDeepestMacroCall + 1));
    EXPECT_EQ(run.faults, "ERR_EXEC_ENVIRON_FATAL_1 3");
    EXPECT_NE(run.outside.console.output.find("Macro calls are nested deeper than 10000. "), std::string::npos);
}

TEST(MacroDepth, EndsBeforeTheStackDoes) {
    constexpr std::size_t kSmallStack = std::size_t{8} << 20;
    std::string open = "$L ::INTEGER[1]$", close;
    for (int i = 0; i < 100000; ++i) {
        open += "$BEGIN ALL L$";
        close += "$END ALL L$";
    }
    ScriptRun blocks;
    RunOnLargeStack(kSmallStack, [&] { blocks.Execute(open + close); });
    EXPECT_EQ(blocks.faults, "ERR_EXEC_ENVIRON_FATAL_1 3");

    ScriptRun calls;
    EXPECT_FALSE(CallNested(calls, kDeepestMacroCall, kSmallStack));
    EXPECT_EQ(calls.faults, "ERR_EXEC_ENVIRON_FATAL_1 3");
    for (const ScriptRun* run : {&blocks, &calls}) {
        EXPECT_NE(run->outside.console.output.find("nested deeper than the stack holds. "), std::string::npos);
    }
}

}  // namespace
}  // namespace kvl
