#include <gtest/gtest.h>

#include "values/ListAssignment.h"
#include "values/ListModel.h"
#include "values/RecordOrder.h"

namespace kvl {
namespace {

class TestLoop : public RunningLoop {
public:
    // Stands on the record of `list` under `path`.
    TestLoop(LoopStack& loops, CVariableKVLCategoryList& list, PathView path) : loops_(loops) {
        first.list = &list;
        first.key.Assign(path);
        first.Borrow(*list.Records().Find(path));
        loops_.Push(this);
    }
    ~TestLoop() override { loops_.Pop(); }

private:
    LoopStack& loops_;
};

void Fill(ListModel& model) {
    model.Read("x", "1", {"a", "b"});
    model.Read("y", "2", {});
    model.Read("z", "3", {"c"});
}

TEST(ListTest, NestedRecordsCarryThePathOfTheirParent) {
    ListModel model;
    Fill(model);
    EXPECT_EQ(DumpBoth(model), "0 A=x B=1; 1 A=y B=2; 2 A=z B=3; | 0.0 C=a; 0.1 C=b; 2.2 C=c; ");
    EXPECT_EQ(PathText(model.nested.GetNewKey()), "3.3");
    EXPECT_EQ(PathText(model.nested.GetNextKey(std::vector<int>{0})), "0.2");
    EXPECT_EQ(PathText(model.nested.GetNextKey(std::vector<int>{1})), "1.0");
    RecordStore::Position position;
    EXPECT_FALSE(model.nested.FirstInParent(std::vector<int>{1}, position));
    ASSERT_TRUE(model.nested.FirstInParent(std::vector<int>{0}, position));
    EXPECT_TRUE(model.nested.NextInParent(std::vector<int>{0}, std::vector<int>{0, 0}, position));
    EXPECT_FALSE(model.nested.NextInParent(std::vector<int>{0}, std::vector<int>{0, 1}, position));
}

TEST(ListTest, ParsedRecordsAreTakenBackFromTheEnd) {
    ListModel model;
    Fill(model);
    model.list.TakeBackParsedRecord();
    model.nested.TakeBackParsedRecord();
    model.Read("w", "4", {"d"});
    EXPECT_EQ(DumpBoth(model), "0 A=x B=1; 1 A=y B=2; 2 A=w B=4; | 0.0 C=a; 0.1 C=b; 2.2 C=d; ");
}

TEST(ListTest, RemovingTakesWhatIsNested) {
    ListModel model;
    Fill(model);
    model.nested.RemoveRecords(std::vector<int>{0});
    EXPECT_EQ(DumpBoth(model), "0 A=x B=1; 1 A=y B=2; 2 A=z B=3; | 2.2 C=c; ");
    model.list.RemoveRecords({});
    EXPECT_EQ(DumpBoth(model), "| ");
}

TEST(ListTest, ABracketListGivesItsOneCellWhateverTheLabel) {
    ListModel model;
    model.list.elementTypeId = kTypeString;
    model.Read("x", "1", {});
    std::string_view text;
    EXPECT_TRUE(model.list.GetRecordValue("WHATEVER", model.list.Records().At({0, 0}), text));
    EXPECT_EQ(text, "x");
    model.list.elementTypeId = 0;
    EXPECT_FALSE(model.list.GetRecordValue("WHATEVER", model.list.Records().At({0, 0}), text));
    EXPECT_EQ(text, "#####");
}

TEST(ListTest, ALoopKeepsItsRecordWhenTheListIsEmptied) {
    ListModel model;
    Fill(model);
    LoopStack loops;
    TestLoop loop(loops, model.list, std::vector<int>{1});
    WriteVariableValue(*model.columns[0], "written", loops);
    EXPECT_TRUE(loop.first.IsBorrowed());
    EXPECT_EQ(model.list.Records().Find(std::vector<int>{1})->Get(0), "written");
    model.list.RemoveRecords({});
    EXPECT_FALSE(loop.first.IsBorrowed());
    EXPECT_EQ(loop.first.Current().Get(0), "written");
    EXPECT_EQ(loop.first.Current().Get(1), "2");
}

TEST(ListTest, ADirtySecondListIsWrittenThroughTheCopyAlone) {
    ListModel model;
    Fill(model);
    LoopStack loops;
    TestLoop loop(loops, model.list, std::vector<int>{0});
    model.list.recordDirty = true;
    WriteVariableValue(*model.columns[0], "copy", loops);
    EXPECT_EQ(loop.first.Current().Get(0), "copy");
    EXPECT_EQ(model.list.Records().Find(std::vector<int>{0})->Get(0), "copy")
        << "as the first list of a loop it is written all the same";
}

TEST(ListAssignmentTest, OutsideOfLoopsTheListIsReplacedWithAllThatIsNested) {
    ListModel source("S"), target("T");
    Fill(source);
    target.Read("old", "9", {"old"});
    EXPECT_TRUE(AssignFromList(target.list, source.list, LoopStack()));
    EXPECT_EQ(DumpBoth(target), "0 A=x B=1; 1 A=y B=2; 2 A=z B=3; | 0.0 C=a; 0.1 C=b; 2.2 C=c; ");
    source.list.RemoveRecords({});
    EXPECT_TRUE(AssignFromList(target.list, source.list, LoopStack()));
    EXPECT_EQ(DumpBoth(target), "| ");
}

TEST(ListAssignmentTest, InsideALoopOverTheSourceItsRecordIsTaken) {
    ListModel source("S"), target("T");
    Fill(source);
    LoopStack loops;
    TestLoop loop(loops, source.list, std::vector<int>{2});
    EXPECT_TRUE(AssignFromList(target.list, source.list, loops));
    EXPECT_EQ(DumpBoth(target), "0 A=z B=3; | 0.0 C=c; ");
}

TEST(ListAssignmentTest, InsideALoopOverTheTargetOnlyItsRecordChanges) {
    ListModel source("S"), target("T");
    source.Read("new", "7", {});
    Fill(target);
    LoopStack loops;
    TestLoop loop(loops, target.list, std::vector<int>{1});
    EXPECT_TRUE(AssignFromList(target.list, source.list, loops));
    EXPECT_EQ(DumpBoth(target), "0 A=x B=1; 1 A=new B=7; 2 A=z B=3; | 0.0 C=a; 0.1 C=b; 2.2 C=c; ");
    EXPECT_EQ(loop.first.Current().Get(0), "new");
}

TEST(ListAssignmentTest, ANestedTargetWithoutLoopsGetsAParentToHangOn) {
    ListModel source("S"), target("T");
    Fill(source);
    LoopStack loops;
    TestLoop loop(loops, source.list, std::vector<int>{0});
    LoopStack none;
    EXPECT_TRUE(AssignFromList(target.nested, source.nested, none));
    EXPECT_EQ(DumpBoth(target), "0 A= B=; | ") << "a nested source without a loop selects nothing";
    EXPECT_TRUE(AssignFromList(target.nested, source.nested, loops));
    EXPECT_EQ(DumpBoth(target), "0 A= B=; 1 A= B=; | 1.0 C=a; 1.1 C=b; ");
}

TEST(ListAssignmentTest, AnotherShapeIsRefusedAndAListOnItselfStays) {
    ListModel source("S"), target("T");
    Fill(source);
    Fill(target);
    const std::string before = DumpBoth(target);
    EXPECT_FALSE(AssignFromList(target.list, source.nested, LoopStack()));
    EXPECT_TRUE(AssignFromList(target.list, target.list, LoopStack()));
    EXPECT_EQ(DumpBoth(target), before);
}

struct OrderRow {
    const char* name;
    void (*run)(ListModel&);
    const char* expected;
};

void SortBy(ListModel& model, int column, CellKind kind) {
    SortRecords(model.list, {}, column, kind);
}

const OrderRow kOrderRows[] = {
    {"Reverse", [](ListModel& m) { ReverseRecords(m.list, {}); },
     "0 A=x B=9; 1 A=z B=x; 2 A=y B=10; 3 A=x B=9; | 0.0 C=d; 1.0 C=c; 3.0 C=a; 3.1 C=b; "},
    {"ReverseBelowOneParent", [](ListModel& m) { ReverseRecords(m.nested, std::vector<int>{0}); },
     "0 A=x B=9; 1 A=y B=10; 2 A=z B=x; 3 A=x B=9; | 0.0 C=b; 0.1 C=a; 2.2 C=c; 3.3 C=d; "},
    {"SortIntegers", [](ListModel& m) { SortBy(m, 1, CellKind::Integer); },
     "0 A=z B=x; 1 A=x B=9; 2 A=x B=9; 3 A=y B=10; | 0.0 C=c; 1.1 C=a; 1.2 C=b; 2.2 C=d; "},
    {"SortTexts", [](ListModel& m) { SortBy(m, 1, CellKind::Text); },
     "0 A=y B=10; 1 A=x B=9; 2 A=x B=9; 3 A=z B=x; | 1.1 C=a; 1.2 C=b; 2.2 C=d; 3.3 C=c; "},
    {"Unify", [](ListModel& m) { UnifyRecords(m.list, {}, 0, CellKind::Text); },
     "0 A=x B=9; 1 A=y B=10; 2 A=z B=x; | 0.0 C=a; 0.1 C=b; 2.2 C=c; "},
};

class RecordOrderTest : public testing::TestWithParam<OrderRow> {};

TEST_P(RecordOrderTest, SubtreesMoveAlong) {
    ListModel model;
    model.Read("x", "9", {"a", "b"});
    model.Read("y", "10", {});
    model.Read("z", "x", {"c"});
    model.Read("x", "9", {"d"});
    GetParam().run(model);
    EXPECT_EQ(DumpBoth(model), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, RecordOrderTest, testing::ValuesIn(kOrderRows),
                         [](const auto& row) { return row.param.name; });

TEST(RecordOrderTest, CellsThatAreNoNumberComeLastAndStay) {
    ListModel model;
    for (const char* text : {"nan", "2.5", "nan", "-0.0", "0"})
        model.Read(text, "", {});
    SortRecords(model.list, {}, 0, CellKind::Float);
    EXPECT_EQ(Dump(model.list), "0 A=-0.0 B=; 1 A=0 B=; 2 A=2.5 B=; 3 A=nan B=; 4 A=nan B=; ");
    UnifyRecords(model.list, {}, 0, CellKind::Float);
    EXPECT_EQ(Dump(model.list), "0 A=-0.0 B=; 1 A=2.5 B=; 2 A=nan B=; 3 A=nan B=; ");
}

}  // namespace
}  // namespace kvl
