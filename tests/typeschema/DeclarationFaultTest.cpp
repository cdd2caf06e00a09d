// What is refused in declared types, with the message, its place and the order of the checks.
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

struct FaultRow {
    const char* name;
    std::string_view types;
    const char* messages;
};

class DeclarationFaultTest : public DeclaredTypesTest, public testing::WithParamInterface<FaultRow> {};

TEST_P(DeclarationFaultTest, IsRefusedAtItsPlace) {
    EXPECT_EQ(Compiled(GetParam().types), nullptr);
    EXPECT_EQ(Messages(), GetParam().messages);
}

constexpr FaultRow kFaultRows[] = {
    {"UnknownType", "::A = ::SEQUENCE{\n N ::STRING\n X ::B }",
     "ERR_DECL_TYPE_ELEM_3 Type ::B for element X is not declared | X ::B }| "
     "At line 3 near position 2 of Type /work/T.txt\n"},
    {"UnknownTypeOfAnUnnamedElement", "::A = ::SEQUENCE{\n ::B }",
     "ERR_DECL_TYPE_ELEM_3 Type ::B for element  is not declared | ::B }| "
     "At line 2 near position 4 of Type /work/T.txt\n"},
    {"UnknownTypeInAnUnusedSubtype", "::A = ::LIST{}\n::B = ::LIST{ X ::C }",
     "ERR_DECL_TYPE_ELEM_3 Type ::C for element X is not declared |::B = ::LIST{ X ::C }| "
     "At line 2 near position 15 of Type /work/T.txt\n"},
    {"FirstUnknownTypeInSourceOrder", "::A = ::LIST{ ::B Y ::D }\n::B = ::LIST{ X ::C }",
     "ERR_DECL_TYPE_ELEM_3 Type ::D for element Y is not declared |::A = ::LIST{ ::B Y ::D }| "
     "At line 1 near position 19 of Type /work/T.txt\n"},
    {"DoubledNamesAllShown",
     "::A = ::LIST{}\n::C = ::LIST{}\n::B = ::LIST{}\n::B = ::LINE{}\n::A = ::LIST{}\n::B = ::LIST{}",
     "ERR_DECL_SCRIPT_VAR_2 Variable name A alread in use Previous declaration in line 1 |::A = ::LIST{}| "
     "At line 5 of Type /work/T.txt\n"
     "ERR_DECL_SCRIPT_VAR_2 Variable name B alread in use Previous declaration in line 3 |::B = ::LINE{}| "
     "At line 4 of Type /work/T.txt\n"
     "ERR_DECL_SCRIPT_VAR_2 Variable name B alread in use Previous declaration in line 4 |::B = ::LIST{}| "
     "At line 6 of Type /work/T.txt\n"},
    {"LabelUsedTwice", "::A = ::LIST{ A ::STRING\n A ::INTEGER }",
     "ERR_DECL_TYPE_ELEM_6 Element name A already in use for this structure category | A ::INTEGER }| "
     "At line 2 near position 2 of Type /work/T.txt\n"},
    {"LabelUsedThroughUnnamedCategories", "::A = ::SEQUENCE{ A ::STRING ::OPTION{\n ::CHOICE{ A ::INTEGER } } }",
     "ERR_DECL_TYPE_ELEM_6 Element name A already in use for this structure category | ::CHOICE{ A ::INTEGER } } }| "
     "At line 2 near position 12 of Type /work/T.txt\n"},
    {"LabelUsedByTwoUsesOfASubtype", "::A = ::SEQUENCE{ X ::B\n X ::B }\n::B = ::LIST{ N ::STRING }",
     "ERR_DECL_TYPE_ELEM_6 Element name X already in use for this structure category | X ::B }| "
     "At line 2 near position 2 of Type /work/T.txt\n"},
    {"EmptyLiterals", "::A = ::LIST{\n 'a' '' }",
     "ERR_DECL_TYPE_LIT_3 A literal must not be empty | 'a' '' }| At line 2 near position 6 of Type /work/T.txt\n"},
    {"EmptyStrictLiteral", "::A = ::LIST{ \"\" }",
     "ERR_DECL_TYPE_LIT_3 A literal must not be empty |::A = ::LIST{ \"\" }| "
     "At line 1 near position 15 of Type /work/T.txt\n"},
    {"EmptyChoice", "::A = ::SEQUENCE{\n X ::CHOICE{} }",
     "ERR_DECL_TYPE_CAT_2 Structure category ::CHOICE must have at least one element | X ::CHOICE{} }| "
     "At line 2 near position 2 of Type /work/T.txt\n"},
    {"EmptyChoiceOfASubtype", "::A = ::SEQUENCE{ X ::B }\n::B = ::CHOICE{}",
     "ERR_DECL_TYPE_CAT_2 Structure category ::CHOICE must have at least one element |::B = ::CHOICE{}| "
     "At line 2 near position 9 of Type /work/T.txt\n"},
    {"NestedOfOneElement", "::A = ::NESTED{ '(' }",
     "ERR_DECL_TYPE_CAT_3 Structure category ::NESTED must have at least two elements |::A = ::NESTED{ '(' }| "
     "At line 1 near position 9 of Type /work/T.txt\n"},
    {"NestedWithoutBegin", "::A = ::NESTED{ ::STRING ')' }",
     "ERR_DECL_TYPE_CAT_6 First element of structure category ::NESTED must be a literal "
     "|::A = ::NESTED{ ::STRING ')' }| At line 1 near position 9 of Type /work/T.txt\n"},
    {"NestedWithoutEnd", "::A = ::NESTED{ \"(\" ::STRING }",
     "ERR_DECL_TYPE_CAT_7 Last element of structure category ::NESTED must be a literal "
     "|::A = ::NESTED{ \"(\" ::STRING }| At line 1 near position 9 of Type /work/T.txt\n"},
    {"StructureIsJudgedBeforeTheLabel", "::A = ::SEQUENCE{ X ::STRING X ::CHOICE{} }",
     "ERR_DECL_TYPE_CAT_2 Structure category ::CHOICE must have at least one element "
     "|::A = ::SEQUENCE{ X ::STRING X ::CHOICE{} }| At line 1 near position 30 of Type /work/T.txt\n"},
    {"QualifiedReference", "::A = ::SEQUENCE{\n X ::Q:R }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"::Q:R\" not available within this version of kvlRun.exe | X ::Q:R }| "
     "At line 2 near position 2 of Type /work/T.txt\n"},
    {"Placeholder", "::A = ::SEQUENCE{\n X ::$P$ }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"$P$\" not available within this version of kvlRun.exe | X ::$P$ }| "
     "At line 2 near position 2 of Type /work/T.txt\n"},
    {"QualifiedPlaceholder", "::A = ::SEQUENCE{\n ::$Q:P$ }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"$Q:P$\" not available within this version of kvlRun.exe | ::$Q:P$ }| "
     "At line 2 near position 7 of Type /work/T.txt\n"},
    {"KeywordMark", "::A = ::SEQUENCE{\n <<'x'>> }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"<<...>>\" not available within this version of kvlRun.exe | <<'x'>> }| "
     "At line 2 near position 4 of Type /work/T.txt\n"},
    {"WarningsComeBeforeTheTable", "::A = ::CHOICE{}\n::B = ::LIST{}",
     "WARN_DECL_TYPE_ELSE_4 Subtype ::B declared, but never used |::B = ::LIST{}| At line 2 of Type /work/T.txt\n"
     "ERR_DECL_TYPE_CAT_2 Structure category ::CHOICE must have at least one element |::A = ::CHOICE{}| "
     "At line 1 near position 9 of Type /work/T.txt\n"},
    {"UsesItself", "::A = ::SEQUENCE{ X ::A }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for A\" not available within this version of kvlRun.exe "
     "|::A = ::SEQUENCE{ X ::A }| At line 1 near position 19 of Type /work/T.txt\n"},
    {"UsesItselfThroughAnother", "::A = ::SEQUENCE{ X ::B }\n::B = ::SEQUENCE{ Y ::A }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for B\" not available within this version of kvlRun.exe "
     "|::A = ::SEQUENCE{ X ::B }| At line 1 near position 19 of Type /work/T.txt\n"},
    {"UsesASubtypeThatUsesItself", "::A = ::SEQUENCE{ ::B }\n::B = ::OPTION{ Y ::B }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for B\" not available within this version of kvlRun.exe "
     "|::B = ::OPTION{ Y ::B }| At line 2 near position 17 of Type /work/T.txt\n"},
    {"FirstOfSeveralCircles",
     "::A = ::SEQUENCE{ ::C ::B }\n::B = ::OPTION{ ::B }\n::C = ::OPTION{ ::D }\n::D = ::LIST{ Z ::C }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for C\" not available within this version of kvlRun.exe "
     "|::D = ::LIST{ Z ::C }| At line 4 near position 15 of Type /work/T.txt\n"},
    {"CircleThatTheMainTypeDoesNotReach", "::A = ::LIST{}\n::B = ::SEQUENCE{ X ::C }\n::C = ::SEQUENCE{ Y ::B }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for B\" not available within this version of kvlRun.exe "
     "|::C = ::SEQUENCE{ Y ::B }| At line 3 near position 19 of Type /work/T.txt\n"},
    {"UnreachedSubtypeThatUsesItself", "::A = ::LIST{}\n::B = ::LIST{ ::A X ::B }",
     "ERR_DECL_TYPE_ELSE_2 Feature \"Recursive Type for B\" not available within this version of kvlRun.exe "
     "|::B = ::LIST{ ::A X ::B }| At line 2 near position 19 of Type /work/T.txt\n"},
    {"UnknownTypeComesBeforeRecursion", "::A = ::SEQUENCE{ X ::A Y ::B }",
     "ERR_DECL_TYPE_ELEM_3 Type ::B for element Y is not declared |::A = ::SEQUENCE{ X ::A Y ::B }| "
     "At line 1 near position 25 of Type /work/T.txt\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, DeclarationFaultTest, testing::ValuesIn(kFaultRows),
                         [](const auto& row) { return std::string(row.param.name); });

class DeclarationTest : public DeclaredTypesTest {};

TEST_F(DeclarationTest, UnusedSubtypesWarnInSourceOrder) {
    LoadedTypes known;
    known.Load("K", "::K = ::LIST{}");
    // D is used, though only by a type that is not.
    const auto schema = Read("::A = ::LIST{}\n::C = ::LIST{ ::D ::K ::A }\n::B = ::LIST{}\n::D = ::LIST{}");
    EXPECT_TRUE(Compile(*schema, known));
    EXPECT_EQ(Messages(),
              "WARN_DECL_TYPE_ELSE_4 Subtype ::C declared, but never used |::C = ::LIST{ ::D ::K ::A }| "
              "At line 2 of Type /work/T.txt\n"
              "WARN_DECL_TYPE_ELSE_4 Subtype ::B declared, but never used |::B = ::LIST{}| "
              "At line 3 of Type /work/T.txt\n");
    EXPECT_EQ(Process().warningCount, 2);
    EXPECT_EQ(Process().errorCount, 0);
}

TEST_F(DeclarationTest, FirstNameThatNobodyKnowsEndsTheImport) {
    LoadedTypes known;
    known.Load("K", "::K = ::LIST{}");
    known.Load("M", "::M = ::LIST{}");
    const auto schema = Read("::A = ::LIST{ ::K ::L ::M }");
    EXPECT_FALSE(Compile(*schema, known));
    EXPECT_EQ(schema->declaredTypes.size(), 2U);
    EXPECT_EQ(Messages(),
              "ERR_DECL_TYPE_ELEM_3 Type ::L for element  is not declared |::A = ::LIST{ ::K ::L ::M }| "
              "At line 1 near position 21 of Type /work/T.txt\n");
}

TEST_F(DeclarationTest, OwnTypeHidesALoadedOne) {
    LoadedTypes known;
    known.Load("K", "::K = ::LIST{ X ::STRING }");
    const auto schema = Read("::A = ::LIST{ ::K } ::K = ::LIST{ Y ::STRING }");
    EXPECT_TRUE(Compile(*schema, known));
    EXPECT_TRUE(schema->elementTable.contains(":Y"));
    EXPECT_EQ(Messages(), "");
}

TEST_F(DeclarationTest, FaultInTextThatIsNoFileStandsAtItsBeginning) {
    const auto schema = Read("::A = ::LIST{\n X ::B }");
    schema->SetSourceStream("S:TYPE");
    EXPECT_FALSE(Compile(*schema));
    EXPECT_EQ(Messages(),
              "ERR_DECL_TYPE_ELEM_3 Type ::B for element X is not declared || "
              "At line 1 near position 1 of Type S:TYPE\n");
}

TEST_F(DeclarationTest, FaultIsShownThoughTheSourceHasGone) {
    const auto schema = Read("::A = ::LIST{\n X ::B }");
    outside_.memory.Remove("/work/T.txt");
    EXPECT_FALSE(Compile(*schema));
    const std::string messages = Messages();
    EXPECT_NE(messages.find("ERR_EXEC_SCRIPT_FILE_1 "), std::string::npos);
    EXPECT_NE(messages.find("ERR_DECL_TYPE_ELEM_3 Type ::B for element X is not declared || "
                            "At line 2 of Type /work/T.txt\n"),
              std::string::npos);
}

TEST_F(DeclarationTest, ManyFaultsReadTheSourceOnce) {
    std::string types = "::A = ::LIST{}";
    for (int i = 0; i < 50; ++i)
        types += "\n::B = ::LIST{}";
    EXPECT_EQ(Compiled(types), nullptr);
    EXPECT_EQ(Process().errorCount, 49);
    EXPECT_EQ(outside_.files.CountOf(FileOperation::ReadWhole), 1);
}

struct RecursionRow {
    const char* name;
    std::string_view types;
    const char* table;
};

class RecursionDumpTest : public DeclaredTypesTest, public testing::WithParamInterface<RecursionRow> {};

TEST_P(RecursionDumpTest, LogShowsTheTableOfARefusedType) {
    KeepLog();
    const std::string before = LogText();
    EXPECT_EQ(Compiled(GetParam().types), nullptr);
    const std::string log = LogText().substr(before.size());
    EXPECT_EQ(log.substr(0, log.find("\nERROR: ")), std::string("\nType Schema A\n") + GetParam().table);
}

constexpr RecursionRow kRecursionRows[] = {
    {"MainTypeIsAPlainElement", "::A = ::SEQUENCE{ X ::A }",
     "0    BEGIN ::A::SEQUENCE\n"
     "1         X::A\n"
     "2    END   ::A::SEQUENCE\n"},
    {"OtherTypesAreFollowedOnce", "::A = ::SEQUENCE{ X ::B } ::B = ::SEQUENCE{ Y ::A N ::STRING }",
     "0    BEGIN ::A::SEQUENCE\n"
     "1        BEGIN X::B\n"
     "2            BEGIN X:Y::A::SEQUENCE\n"
     "3                 X:Y:X::B\n"
     "4            END   X:Y::A::SEQUENCE\n"
     "5             X:N::STRING\n"
     "6        END   X::B\n"
     "7    END   ::A::SEQUENCE\n"},
    // D is expanded in both places; the use of B in it is followed in the one outside B only.
    {"SharedSubtype", "::A = ::SEQUENCE{ X ::D ::B } ::D = ::LIST{ V ::B } ::B = ::OPTION{ Z ::B }",
     " 0    BEGIN ::A::SEQUENCE\n"
     " 1        BEGIN X::D::LIST\n"
     " 2            BEGIN X:V::B\n"
     " 3                 X:V:Z::B\n"
     " 4            END   X:V::B\n"
     " 5        END   X::D::LIST\n"
     " 6        BEGIN ::B\n"
     " 7             Z::B\n"
     " 8        END   ::B\n"
     " 9    END   ::A::SEQUENCE\n"},
    {"CircleOutsideLeavesTheMainTypeWhole", "::A = ::LIST{ N ::BOOL } ::B = ::LIST{ ::A ::B }",
     "0    BEGIN ::A::LIST\n"
     "1         N::BOOL\n"
     "2    END   ::A::LIST\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, RecursionDumpTest, testing::ValuesIn(kRecursionRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
