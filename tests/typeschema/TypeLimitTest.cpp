// Limits of a compiled type, and that judging a type costs no more than its text.
#include "typeschema/CompiledSubtype.h"
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

// T0 holds T1, and so on: as many categories in each other, all but the first named `name`.
std::string ChainedTypes(int categories, const std::string& name = "") {
    std::string types;
    for (int i = 0; i + 1 < categories; ++i)
        types += "::" + Numbered("T", i) + " = ::SEQUENCE{ " + name + "::" + Numbered("T", i + 1) + " }\n";
    return types + "::" + Numbered("T", categories - 1) + " = ::SEQUENCE{ ';' }";
}

// Each is refused before it grows, and for its text alone.
TEST_F(TypeLimitTest, GrowthIsRefused) {
    const std::pair<std::string, std::string> rows[] = {
        {DoublingTypes(20, "';'"), "grows beyond 1000000 elements.  |::T0 = ::SEQUENCE{ ::T1 ::T1 }|"},
        {DoublingTypes(2000, "';'"), "grows beyond 1000000 elements.  |::T0 = ::SEQUENCE{ ::T1 ::T1 }|"},
        {ChainedTypes(kDeepestElement + 1), "is nested deeper than 10000.  |::T0 = ::SEQUENCE{ ::T1 }|"},
        {ChainedTypes(100000), "is nested deeper than 10000.  |::T0 = ::SEQUENCE{ ::T1 }|"},
        {ChainedTypes(8000, "NAME_OF_TWENTY_BYTES "),
         "grows beyond 500000000 bytes of labels.  |::T0 = ::SEQUENCE{ NAME_OF_TWENTY_BYTES ::T1 }|"},
    };
    for (const auto& [types, reason] : rows) {
        outside_.console.pieces.clear();
        const auto schema = Read(types);
        EXPECT_FALSE(Compile(*schema));
        EXPECT_TRUE(schema->elements.empty());
        EXPECT_EQ(Messages(),
                  "ERR_EXEC_ENVIRON_FATAL_1 Fatal error: Type T0 " + reason + " At line 2 of Type /home/T.txt\n");
    }
}

TEST_F(TypeLimitTest, LabelsAreMeasuredAsTheyWillBe) {
    const auto schema = Compiled(
        "::A = ::SEQUENCE{ X ::B ::B YY ::LIST{ ::B M ::STRING ';' ::OPTION{ Z ::B } } }\n"
        "::B = ::SEQUENCE{ N ::STRING LONG ::CHOICE{ ::C D ::C } } ::C = ::LIST{ P ::BOOL ::FLOAT }");
    ASSERT_NE(schema, nullptr) << Messages();
    CTypeSchema instance;
    instance.CopyDeclaration(*schema);
    ASSERT_TRUE(instance.PrepareInstance("IN"));
    const TypeExtent extent = MeasureItem(instance.declaredTypes.front().root, RecursiveUses::Followed);
    std::size_t bytes = 0;
    for (const auto& [label, variable] : instance.elementTable)
        bytes += label.size() + 1;  // a name of an instance has no colon in front
    EXPECT_EQ(static_cast<std::size_t>(extent.labels), instance.elementTable.size());
    EXPECT_EQ(static_cast<std::size_t>(extent.labelBytes), bytes);
    EXPECT_EQ(static_cast<std::size_t>(extent.rows), instance.elements.size());
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
    const std::string dump = schema->ElementsText();  // would have 400 MB
    EXPECT_LT(dump.size(), kLongestDump + 100000);
    EXPECT_TRUE(dump.ends_with("...\n"));
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
    EXPECT_EQ(outside_.files.CountOfAll(), 1) << "the source is read again for messages only";
}

}  // namespace
}  // namespace kvl
