// The macros that reorder or empty a list.
#include "StaticMacroRun.h"

namespace kvl {
namespace {

// Line 3 of each script. A has the records c=10, a=9, b=10, d=9; G has k(q p p), l(z), m(b a).
constexpr const char* kLists =
    "$S ::STREAM = \"c=10 a=9 b=10 d=9\"$$A ::ROWS = S$$S = \"k (q p p) l (z) m (b a)\"$$G ::GROUPS = S$\n";

class ListMacros : public testing::TestWithParam<ScriptRow> {};

TEST_P(ListMacros, Run) {
    const ScriptRow& row = GetParam();
    StaticMacroRun run;
    run.AddType("ROWS", "::ROWS = ::SEQUENCE{ R ::LIST{ N ::IDENTIFIER '=' V ::INTEGER } }");
    run.AddType("GROUPS", "::GROUPS = ::LIST{ K ::IDENTIFIER W ::WHITESPACES '(' M ::LIST{ X ::IDENTIFIER } ')' }");
    run.AddPattern("ROWSOF", "#A::ROWS", "$BEGIN ALL A:R$$A:R:N$$END ALL A:R$");
    run.AddPattern("GROUPSOF", "#G::GROUPS",
                   "$BEGIN ALL G$$G:K$$BEGIN ALL G:M$$G:M:X$$END ALL G:M$$BEGIN SEPARATOR$ $END SEPARATOR$$END ALL G$");
    run.AddPattern("SORTED", "#A::ROWS", "$KVL:LIST:SORT(A:R)$");
    const std::string body = std::string(kLists) + row.body;
    ExpectRow(run, {row.name, body.c_str(), row.output, row.faults});
}

constexpr ScriptRow kOrderRows[] = {
    {"SortText", "$KVL:LIST:SORT(A:R, A:R:N)$$ROWSOF(A)$", "abcd"},
    {"SortNumbersIsStable", "$KVL:LIST:SORT(A:R, A:R:V)$$ROWSOF(A)$", "adcb"},
    {"UnifyKeepsTheFirst", "$KVL:LIST:UNIFY(A:R, A:R:V)$$ROWSOF(A)$", "ca"},
    {"Reverse", "$KVL:LIST:REVERSE(A:R)$$ROWSOF(A)$", "dbac"},
    {"Empty", "$KVL:LIST:EMPTY(A:R)$$ROWSOF(A)$", ""},
    {"AColumnStandsForItsList", "$KVL:LIST:REVERSE(A:R:N)$$ROWSOF(A)$", "dbac"},
    {"AnInstanceStandsForItsRootList", "$KVL:LIST:REVERSE(G)$$GROUPSOF(G)$", "mba lz kqpp"},
    {"SortTakesNestedRecordsAlong", "$KVL:LIST:REVERSE(G)$$KVL:LIST:SORT(G, G:K)$$GROUPSOF(G)$", "kqpp lz mba"},
    {"NestedInEachParent", "$BEGIN ALL G$$KVL:LIST:SORT(G:M, G:M:X)$$END ALL G$$GROUPSOF(G)$", "kppq lz mab"},
    {"NestedUnify", "$BEGIN ALL G$$KVL:LIST:UNIFY(G:M, G:M:X)$$END ALL G$$GROUPSOF(G)$", "kqp lz mba"},
    {"NestedEmptyForOneParent",
     "$BEGIN ALL G$$BEGIN IF G:K == \"m\"$$KVL:LIST:EMPTY(G:M)$$END IF G:K == \"m\"$$END ALL G$$GROUPSOF(G)$",
     "kqpp lz m"},
    {"BracketListBySelf",
     "$L ::STRING[4]$$BEGIN ALL A:R, L$$L = A:R:N$$END ALL A:R, L$$KVL:LIST:SORT(L, L)$$BEGIN ALL L$$L$$END ALL L$",
     "abcd"},
    {"NothingToOrder", "$E ::ROWS$$KVL:LIST:SORT(E:R, E:R:N)$$KVL:LIST:REVERSE(E:R)$$KVL:LIST:UNIFY(E:R, E:R:N)$", ""},
};
INSTANTIATE_TEST_SUITE_P(Order, ListMacros, testing::ValuesIn(kOrderRows), RowName);

constexpr ScriptRow kFaultRows[] = {
    {"NoArguments", "$KVL:LIST:SORT()$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"TooFew", "$KVL:LIST:SORT(A:R)$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"TooFewInAPattern", "$SORTED(A)$", "", "ERR_DECL_PATTERN_MACRO_2 3"},
    {"TooMany", "$KVL:LIST:EMPTY(A:R, A:R:N)$", "", "ERR_DECL_SCRIPT_MACRO_2 4"},
    {"LiteralForTheList", "$KVL:LIST:EMPTY(\"A\")$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"NoList", "$KVL:LIST:EMPTY(S)$", "", "ERR_DECL_SCRIPT_MACRO_11 4"},
    {"InstanceWithoutRootList", "$KVL:LIST:EMPTY(A)$", "", "ERR_DECL_SCRIPT_MACRO_11 4"},
    {"NestedOutsideItsParent", "$BEGIN ALL G$$END ALL G$$KVL:LIST:SORT(G:M:X)$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"LiteralForTheColumn", "$KVL:LIST:SORT(A:R, 1)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"ColumnOfAnotherList", "$KVL:LIST:SORT(A:R, G:K)$", "", "ERR_DECL_SCRIPT_MACRO_10 4"},
    {"OtherNameForABracketList", "$L ::STRING[]$$KVL:LIST:SORT(L, A:R:N)$", "", "ERR_DECL_SCRIPT_MACRO_10 4"},
    {"WhiteSpaceAsColumn", "$KVL:LIST:UNIFY(G, G:W)$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
    {"NestedListAsColumn", "$BEGIN ALL G$$KVL:LIST:SORT(G, G:M)$$END ALL G$", "", "ERR_DECL_SCRIPT_MACRO_3 4"},
};
INSTANTIATE_TEST_SUITE_P(Faults, ListMacros, testing::ValuesIn(kFaultRows), RowName);

}  // namespace
}  // namespace kvl
