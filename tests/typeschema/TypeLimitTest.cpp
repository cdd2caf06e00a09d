// Limits of a compiled type, and that judging a type costs no more than its text.
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

class TypeLimitTest : public DeclaredTypesTest {};

std::string Numbered(std::string_view name, int number) {
    return std::string(name) + std::to_string(number);
}

// T0 uses T1 twice, and so on; the last holds `leaf`.
std::string DoublingTypes(int levels, std::string_view leaf) {
    std::string types;
    for (int i = 0; i < levels; ++i) {
        types += "::" + Numbered("T", i) + " = ::SEQUENCE{ ::" + Numbered("T", i + 1) + " ::" + Numbered("T", i + 1) +
                 " }\n";
    }
    return types + "::" + Numbered("T", levels) + " = ::SEQUENCE{ " + std::string(leaf) + " }";
}

// T0 holds T1, and so on: as many categories in each other.
std::string ChainedTypes(int categories) {
    std::string types;
    for (int i = 0; i + 1 < categories; ++i)
        types += "::" + Numbered("T", i) + " = ::SEQUENCE{ ::" + Numbered("T", i + 1) + " }\n";
    return types + "::" + Numbered("T", categories - 1) + " = ::SEQUENCE{ ';' }";
}

TEST_F(TypeLimitTest, TwentyLevelsOfDoublingAreRefusedBeforeTheyGrow) {
    const auto schema = Read(DoublingTypes(20, "';'"));
    EXPECT_FALSE(Compile(*schema));
    EXPECT_TRUE(schema->elements.empty());
    EXPECT_EQ(Messages(),
              "ERR_EXEC_ENVIRON_FATAL_1 Fatal error: Type T0 grows beyond 1000000 elements.  "
              "|::T0 = ::SEQUENCE{ ::T1 ::T1 }| At line 1 of Type /work/T.txt\n");
}

TEST_F(TypeLimitTest, DoublingCostsItsTextAlone) {
    const auto schema = Read(DoublingTypes(2000, "';'"));
    EXPECT_FALSE(Compile(*schema));
    EXPECT_TRUE(schema->elements.empty());
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeLimitTest, DoublingRecursionCostsItsTextAlone) {
    EXPECT_EQ(Compiled(DoublingTypes(2000, "::T0")), nullptr);
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeLimitTest, DoublingThatNobodyUsesIsNoMatter) {
    EXPECT_NE(Compiled("::M = ::LIST{ ';' }\n" + DoublingTypes(60, "';'")), nullptr);
    EXPECT_EQ(Process().warningCount, 1);
    EXPECT_EQ(Process().errorCount, 0);
}

struct RowsRow {
    const char* name;
    int more;  // literals beside the uses
    bool accepted;
};

class MostElementsTest : public DeclaredTypesTest, public testing::WithParamInterface<RowsRow> {};

// 999 uses of a subtype of 1,000 rows, and of what is left two are the root's own.
TEST_P(MostElementsTest, AreAMillion) {
    std::string types = "::A = ::SEQUENCE{";
    for (int i = 0; i < 999; ++i)
        types += " ::B";
    for (int i = 0; i < GetParam().more; ++i)
        types += " ';'";
    types += " }\n::B = ::SEQUENCE{";
    for (int i = 0; i < 998; ++i)
        types += " ';'";
    const auto schema = Read(types + " }");
    EXPECT_EQ(Compile(*schema), GetParam().accepted) << Messages();
    EXPECT_EQ(schema->elements.size(), GetParam().accepted ? kMostElements : 0);
}

constexpr RowsRow kRowsRows[] = {{"AtTheLimit", 998, true}, {"OnePastIt", 999, false}};
INSTANTIATE_TEST_SUITE_P(Rows, MostElementsTest, testing::ValuesIn(kRowsRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(TypeLimitTest, DeepestTypeBuildsAndCopies) {
    const auto schema = Compiled(ChainedTypes(kDeepestElement));
    ASSERT_NE(schema, nullptr) << Messages();
    EXPECT_EQ(schema->elements.size(), 2U * kDeepestElement + 1);
    CTypeSchema instance;
    instance.CopyDeclaration(*schema);
    ASSERT_TRUE(instance.PrepareInstance("IN"));
    EXPECT_EQ(instance.elements[kDeepestElement].depth, kDeepestElement + 1);

    CTypeSchema wrapped;
    wrapped.CopyDeclaration(*schema);
    wrapped.WrapInList();
    EXPECT_FALSE(wrapped.PrepareInstance("L"));
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeLimitTest, OneCategoryDeeperIsRefused) {
    const auto schema = Read(ChainedTypes(kDeepestElement + 1));
    EXPECT_FALSE(Compile(*schema));
    EXPECT_TRUE(schema->elements.empty());
    EXPECT_EQ(Messages(),
              "ERR_EXEC_ENVIRON_FATAL_1 Fatal error: Type T0 is nested deeper than 10000.  "
              "|::T0 = ::SEQUENCE{ ::T1 }| At line 1 of Type /work/T.txt\n");
}

TEST_F(TypeLimitTest, ChainFarBeyondTheLimitIsRefusedLikeIt) {
    EXPECT_EQ(Compiled(ChainedTypes(100000)), nullptr);
    EXPECT_EQ(Process().errorCount, 1);
}

TEST_F(TypeLimitTest, ImportedTypesCountWithAllTheyHold) {
    LoadedTypes known;
    known.Load("T0", DoublingTypes(12, "';'"));
    known.Load("C", "::C = ::SEQUENCE{ ::T0 }");
    std::string types = "::A = ::SEQUENCE{";
    for (int i = 0; i < 64; ++i)
        types += " ::C";
    const auto schema = Read(types + " }");
    EXPECT_FALSE(Compile(*schema, known));
    EXPECT_NE(Messages().find("Type A grows beyond 1000000 elements."), std::string::npos);
}

TEST_F(TypeLimitTest, ManySubtypesCompile) {
    std::string types = "::A = ::SEQUENCE{";
    for (int i = 0; i < 2000; ++i)
        types += Numbered(" N", i) + Numbered(" ::B", i);
    types += " }";
    for (int i = 0; i < 2000; ++i)
        types += Numbered("\n::B", i) + " = ::LIST{ X ::STRING ';' }";
    const auto schema = Compiled(types);
    ASSERT_NE(schema, nullptr) << Messages();
    EXPECT_EQ(schema->elements.size(), 2U + 2000U * 4U);
    EXPECT_EQ(schema->variables.size(), 2000U);
    EXPECT_EQ(outside_.files.CountOfAll(), 0);
}

}  // namespace
}  // namespace kvl
