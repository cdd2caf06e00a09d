// Loop blocks in their four modes: which records are walked, and what reaches the lists.
#include "ScriptRun.h"

namespace kvl {
namespace {

// Line 3 of each script. A has the records a, b, c, B has x, Y has x, y, E has none; G has k(p q), l(), m(r).
constexpr const char* kLists =
    "$C ::STREAM = \",\"$$S ::STREAM = \"a b c\"$$A ::ROWS = S$$S = \"x\"$$B ::ROWS = S$$S = \"x y\"$$Y ::ROWS = S$"
    "$E ::ROWS$$S = \"k(p q) l() m(r)\"$$G ::GROUPS = S$\n";

// Runs the body, from line 4 on, on these lists.
void ExpectLoop(const ScriptRow& row) {
    ScriptRun run;
    run.AddType("ROWS", "::ROWS = ::SEQUENCE{ R ::LIST{ V ::IDENTIFIER } }");
    run.AddType("GROUPS", "::GROUPS = ::LIST{ K ::IDENTIFIER '(' ::OPTION{ M ::LIST{ X ::IDENTIFIER } } ')' }");
    const std::string body = std::string(kLists) + row.body;
    ExpectRow(run, {row.name, body.c_str(), row.output, row.faults});
}

class Loops : public testing::TestWithParam<ScriptRow> {};

TEST_P(Loops, Walk) {
    ExpectLoop(GetParam());
}

constexpr ScriptRow kWalkRows[] = {
    {"Single", "$BEGIN ALL A:R$$A:R:V$$END ALL A:R$", "abc"},
    {"EmptySingle", "$BEGIN ALL E:R$$C$$END ALL E:R$", ""},
    {"EmptyFirstOfRead", "$BEGIN ALL E:R, A:R$$C$$END ALL E:R, A:R$", ""},
    {"EmptyFirstOfChange", "$BEGIN ALL E:R CHANGE A:R$$C$$END ALL E:R CHANGE A:R$", ""},
    {"EmptyFirstOfExtend", "$BEGIN ALL E:R EXTEND A:R$$C$$END ALL E:R EXTEND A:R$", ""},
    {"ReadEndsWithTheShorterSecond", "$BEGIN ALL A:R, Y:R$$A:R:V$$Y:R:V$$END ALL A:R, Y:R$", "axby"},
    {"ReadEndsWithTheShorterFirst", "$BEGIN ALL Y:R, A:R$$Y:R:V$$A:R:V$$END ALL Y:R, A:R$", "xayb"},
    {"EmptySecondOfRead", "$BEGIN ALL A:R, E:R$$C$$END ALL A:R, E:R$", ""},
    {"RootListOfAnInstance", "$BEGIN ALL G$$G:K$$END ALL G$", "klm"},
    {"BracketList", "$L ::STRING[3]$$BEGIN ALL L$$C$$END ALL L$", ",,,"},
    {"Nested", "$BEGIN ALL G$$G:K$$BEGIN ALL G:M$$G:M:X$$END ALL G:M$$END ALL G$", "kpqlmr"},
    {"ColumnsOfTheOuterLoop", "$BEGIN ALL A:R$$BEGIN ALL Y:R$$A:R:V$$Y:R:V$$END ALL Y:R$$END ALL A:R$", "axaybxbycxcy"},
    {"InnerLoopOverTheSameList", "$BEGIN ALL Y:R$$Y:R:V$$C$$BEGIN ALL Y:R$$Y:R:V$$END ALL Y:R$$C$$Y:R:V$$END ALL Y:R$",
     "x,xy,xy,xy,y"},
    {"SecondNestedInTheFirst", "$BEGIN ALL G, G:M$$G:K$$G:M:X$$END ALL G, G:M$", "kp"},
};
INSTANTIATE_TEST_SUITE_P(Walk, Loops, testing::ValuesIn(kWalkRows), RowName);

// What the loop does to the lists is shown by a loop behind it.
constexpr ScriptRow kWriteRows[] = {
    {"SingleWritesTheCurrentRecord",
     "$BEGIN ALL A:R$$A:R:V += \"z\"$$A:R:V$$END ALL A:R$$BEGIN ALL A:R$$A:R:V$$END ALL A:R$", "azbzczazbzcz"},
    {"ReadWritesBoth",
     "$BEGIN ALL A:R, Y:R$$A:R:V = \"s\"$$Y:R:V = A:R:V$$END ALL A:R, Y:R$"
     "$BEGIN ALL A:R$$A:R:V$$END ALL A:R$$BEGIN ALL Y:R$$Y:R:V$$END ALL Y:R$",
     "sscss"},
    {"ChangeWritesAndThenAppends",
     "$BEGIN ALL A:R CHANGE B:R$$B:R:V += A:R:V$$END ALL A:R CHANGE B:R$$BEGIN ALL B:R$$B:R:V$$C$$END ALL B:R$",
     "xa,b,c,"},
    {"ChangeFillsAnEmptyList",
     "$BEGIN ALL A:R CHANGE E:R$$E:R:V = A:R:V$$END ALL A:R CHANGE E:R$$BEGIN ALL E:R$$E:R:V$$END ALL E:R$", "abc"},
    {"ChangeWithoutWritingAppendsNothing",
     "$BEGIN ALL A:R CHANGE B:R$$A:R:V$$END ALL A:R CHANGE B:R$$BEGIN ALL B:R$$B:R:V$$END ALL B:R$", "abcx"},
    {"ChangeAppendsOnlyWhatIsWritten",
     "$BEGIN ALL A:R CHANGE B:R$$BEGIN IF A:R:V == \"c\"$$B:R:V = A:R:V$$END IF A:R:V == \"c\"$"
     "$END ALL A:R CHANGE B:R$$BEGIN ALL B:R$$B:R:V$$END ALL B:R$",
     "xc"},
    {"ExtendAppends",
     "$BEGIN ALL A:R EXTEND B:R$$B:R:V = A:R:V$$B:R:V$$END ALL A:R EXTEND B:R$$C$$BEGIN ALL B:R$$B:R:V$$END ALL B:R$",
     "abc,xabc"},
    {"ExtendAppendsOnlyWhatIsWritten",
     "$BEGIN ALL A:R EXTEND B:R$$BEGIN IF A:R:V == \"b\"$$B:R:V = A:R:V$$END IF A:R:V == \"b\"$"
     "$END ALL A:R EXTEND B:R$$BEGIN ALL B:R$$B:R:V$$END ALL B:R$",
     "xb"},
    {"ExtendBeginsEachPassEmpty", "$BEGIN ALL A:R EXTEND B:R$$B:R:V += A:R:V$$B:R:V$$END ALL A:R EXTEND B:R$", "abc"},
    {"NestedExtendBringsItsParentAlong",
     "$H ::GROUPS$$BEGIN ALL G EXTEND H$$BEGIN ALL G:M EXTEND H:M$$H:M:X = G:M:X$$END ALL G:M EXTEND H:M$"
     "$END ALL G EXTEND H$$BEGIN ALL H$$BEGIN ALL H:M$$H:M:X$$END ALL H:M$$C$$END ALL H$",
     "pq,r,"},
    {"NestedChangeStaysUnderItsParent",
     "$BEGIN ALL G$$BEGIN ALL Y:R CHANGE G:M$$G:M:X = Y:R:V$$END ALL Y:R CHANGE G:M$$END ALL G$"
     "$BEGIN ALL G$$BEGIN ALL G:M$$G:M:X$$END ALL G:M$$C$$END ALL G$",
     "xy,xy,xy,"},
    {"RecordsAddedToTheWalkedListAreWalked",
     "$BEGIN ALL B:R$$B:R:V$$BEGIN IF B:R:V == \"x\"$$BEGIN ALL A:R EXTEND B:R$$B:R:V = A:R:V$"
     "$END ALL A:R EXTEND B:R$$END IF B:R:V == \"x\"$$END ALL B:R$",
     "xabc"},
    {"AnOuterLoopSeesWhatTheInnerWrites",
     "$BEGIN ALL B:R$$BEGIN ALL B:R$$B:R:V = \"w\"$$END ALL B:R$$B:R:V$$END ALL B:R$", "w"},
};
INSTANTIATE_TEST_SUITE_P(Write, Loops, testing::ValuesIn(kWriteRows), RowName);

constexpr ScriptRow kSeparatorRows[] = {
    {"SeparatorOfOneRecord", "$BEGIN ALL B:R$$B:R:V$$BEGIN SEPARATOR$$C$$END SEPARATOR$$END ALL B:R$", "x"},
    {"SeparatorBetweenRecords", "$BEGIN ALL A:R$$A:R:V$$BEGIN SEPARATOR$$C$$END SEPARATOR$$END ALL A:R$", "a,b,c"},
    {"SeparatorOfTheShorterList", "$BEGIN ALL A:R, Y:R$$A:R:V$$BEGIN SEPARATOR$$C$$END SEPARATOR$$END ALL A:R, Y:R$",
     "a,b"},
    {"SeparatorOfExtendSeesTheFirstListOnly",
     "$BEGIN ALL A:R EXTEND B:R$$A:R:V$$BEGIN SEPARATOR$$C$$END SEPARATOR$$END ALL A:R EXTEND B:R$", "a,b,c"},
    {"SeparatorOfANestedList",
     "$BEGIN ALL G$$BEGIN ALL G:M$$G:M:X$$BEGIN SEPARATOR$$C$$END SEPARATOR$$END ALL G:M$$END ALL G$", "p,qr"},
};
INSTANTIATE_TEST_SUITE_P(Separators, Loops, testing::ValuesIn(kSeparatorRows), RowName);

constexpr ScriptRow kFaultRows[] = {
    {"SameListTwice", "$BEGIN ALL A:R, A:R$$END ALL A:R, A:R$", "", "ERR_DECL_SCRIPT_LIST_2 4"},
    {"NoList", "\n$BEGIN ALL C$$END ALL C$", "", "ERR_DECL_SCRIPT_LIST_1 5"},
    {"NoSecondList", "$BEGIN ALL A:R, C$$END ALL A:R, C$", "", "ERR_DECL_SCRIPT_LIST_1 4"},
    {"UnknownList", "$BEGIN ALL Q$$END ALL Q$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"AmbiguousList", "$BEGIN ALL :R$$END ALL :R$", "", "ERR_DECL_SCRIPT_VAR_7 4"},
    {"NestedOutsideItsParent", "$BEGIN ALL G:M$$END ALL G:M$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"NestedSecondOutsideItsParent", "$BEGIN ALL A:R, G:M$$END ALL A:R, G:M$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"AFailingPassEndsTheRun", "$BEGIN ALL A:R$$A:R:V$\n$Q$$END ALL A:R$$C$", "a", "ERR_DECL_SCRIPT_VAR_5 5"},
};
INSTANTIATE_TEST_SUITE_P(Faults, Loops, testing::ValuesIn(kFaultRows), RowName);

TEST(LoopCost, ReadingCopiesNoRecord) {
    ScriptRun run;
    ASSERT_TRUE(run.Execute("$L ::STRING[3]$"));
    RunContext context;
    CVariableKVLCategoryList& list = *run.root->ListOf("L", context.loops);
    RecordStore::Position position;
    ASSERT_TRUE(list.FirstRecord(position));

    ListCursor cursor;
    cursor.list = &list;
    bool found = false;
    ASSERT_TRUE(run.root->NextListRecord(cursor, found, context.loops));
    EXPECT_TRUE(found && cursor.IsBorrowed());
    EXPECT_EQ(&cursor.Current(), &list.Records().At(position));
}

}  // namespace
}  // namespace kvl
