// Small scripts as text files, by subject, and what of them only the objects show.
#include "ScriptCases.h"

namespace kvl {
namespace {

std::vector<TextCase> AllScriptCases() {
    std::vector<TextCase> all;
    for (const std::string subject :
         {"Assignments", "Calls", "Execution", "Instances", "Literals", "Loops", "Templates", "Variables"}) {
        for (TextCase& row : ReadScriptCases("interpreter/" + subject + ".cases")) {
            all.push_back(std::move(row));
        }
    }
    return all;
}

// "Loops_Nested" for a case of Loops.cases.
std::string SubjectAndName(const testing::TestParamInfo<TextCase>& info) {
    const std::string file = info.param.file.substr(info.param.file.rfind('/') + 1);
    return file.substr(0, file.find('.')) + "_" + CaseName(info);
}

class ScriptCases : public testing::TestWithParam<TextCase> {};
INSTANTIATE_TEST_SUITE_P(Cases, ScriptCases, testing::ValuesIn(AllScriptCases()), SubjectAndName);

TEST_P(ScriptCases, Run) {
    ScriptRun run;
    RunScriptCase(run, GetParam());
}

TEST(ScriptText, HasALimit) {
    ScriptRun run;
    ASSERT_TRUE(run.Execute("$A ::STREAM$"));
    EXPECT_TRUE(run.root->FitsInText(2147483647));
    EXPECT_FALSE(run.root->FitsInText(2147483648));
    EXPECT_NE(run.outside.console.output.find("Fatal error: Text is larger than 2147483647 bytes. \n"),
              std::string::npos);
}

TEST(ScriptErrors, OfAnEarlierCommandFailTheNextOperator) {
    ScriptRun run;
    Process().errorCount = 1;
    Process().errorCountAtFirstCommand = 1;
    EXPECT_TRUE(run.Execute("$A ::INTEGER = 1$"));
    ScriptRun again;
    Process().errorCount = 1;
    EXPECT_FALSE(again.Execute("$A ::INTEGER = 1$"));
    EXPECT_EQ(again.faults, "");
}

// The elements of an instance belong to the instance; the table borrows them.
TEST(InstanceElements, KnowTheirInstance) {
    ScriptRun run;
    run.AddType("PERSON", "::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER CITY ::IDENTIFIER }");
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"ada york\"$$Q ::PERSON$$Q = S$$Q = S$"));
    const CVariable* holder = run.root->variableTable.Find("Q");
    const CVariable* name = run.root->variableTable.Find("Q:NAME");
    ASSERT_TRUE(holder && name);
    EXPECT_EQ(name->elementOf, holder->typeSchema.get());
    EXPECT_EQ(holder->typeSchema.use_count(), 3) << "variable, list and names; the replaced ones are gone";
    EXPECT_EQ(run.root->typeList.size(), 1U);
}

}  // namespace
}  // namespace kvl
