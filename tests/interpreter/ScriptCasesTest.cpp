// Loops, instances and variables, as small scripts show them.
#include "ScriptCases.h"

namespace kvl {
namespace {

class ScriptCases : public testing::TestWithParam<TextCase> {};

TEST_P(ScriptCases, Run) {
    ScriptRun run;
    RunScriptCase(run, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Loops, ScriptCases, testing::ValuesIn(ReadScriptCases("interpreter/Loops.cases")), CaseName);
INSTANTIATE_TEST_SUITE_P(Instances, ScriptCases, testing::ValuesIn(ReadScriptCases("interpreter/Instances.cases")),
                         CaseName);
INSTANTIATE_TEST_SUITE_P(Variables, ScriptCases, testing::ValuesIn(ReadScriptCases("interpreter/Variables.cases")),
                         CaseName);

TEST(LoopCost, ReadingCopiesNoRecordAndSearchesForNone) {
    ScriptRun run;
    ASSERT_TRUE(run.Execute("$L ::STRING[3]$"));
    RunContext context;
    CVariableKVLCategoryList& list = *run.root->ListOf("L", context.loops);
    ListCursor cursor;
    cursor.list = &list;
    bool found = false;
    RecordStore::Position position = list.Records().Begin();
    for (int pass = 0; pass < 3; ++pass, position = list.Records().Next(position)) {
        ASSERT_TRUE(run.root->NextListRecord(cursor, found, context.loops));
        EXPECT_TRUE(found && cursor.IsBorrowed() && cursor.Position() == position);
        EXPECT_EQ(&cursor.Current(), &list.Records().At(position));
    }
    ASSERT_TRUE(run.root->NextListRecord(cursor, found, context.loops));
    EXPECT_FALSE(found);
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
