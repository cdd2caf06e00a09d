// Every production of type files with what it leaves in the items, places included.
#include <algorithm>

#include "frontend/TypeSupport.h"

namespace kvl {
namespace {

struct ProductionRow {
    const char* name;
    std::string_view declarations;  // between "$TYPE" and "$", on line 2
    const char* expected;
};

class TypeProductionTest : public TypeFrontEndTest, public testing::WithParamInterface<ProductionRow> {};

TEST_P(TypeProductionTest, FillsItems) {
    const auto schema = ParseStream(TypeFile(GetParam().declarations));
    ASSERT_NE(schema, nullptr) << ConsoleText();
    EXPECT_EQ(ItemDump::Of(*schema), GetParam().expected);
    EXPECT_EQ(ConsoleText(), "");
}

constexpr ProductionRow kProductionRows[] = {
    {"EmptySection", "", ""},
    {"EmptyCategory", " ::A = ::LIST{}",
     "::A line=2 at@5'A'\n"
     "  category line=2 at@14'LIST' type@14'LIST' categoryType=18\n"},
    {"StrictLiteral", "::A=::SEQUENCE{ \"a\"\"b\" }",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    strict line=2 at@23'\"a\"\"b\"' literal@23'\"a\"\"b\"' literal=\"a\"\"b\"\n"},
    {"WeakLiteral", "::A=::SEQUENCE{'it''s'}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    weak line=2 at@23''it''s'' literal@23''it''s'' literal='it''s'\n"},
    {"KeywordKeepsItsPlaceAlone", "::A=::SEQUENCE{<<'x'>>}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    mark keyword line=2 at@21''x''\n"},
    {"NamedElement", "::A=::SEQUENCE{ NAME ::STRING }",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@30'STRING' name@21'NAME' elementName=NAME type@30'STRING' typeName=STRING elementType=2\n"},
    {"UnnamedElementForgetsTheNameBefore", "::A=::SEQUENCE{N ::BOOL ::FLOAT}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@24'BOOL' name@17'N' elementName=N type@24'BOOL' typeName=BOOL elementType=5\n"
     "    typed line=2 at@32'FLOAT' type@32'FLOAT' typeName=FLOAT elementType=4\n"},
    {"NamespacedTypeEndsWithoutALook", "::A=::SEQUENCE{::KVL:INTEGER}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@28'KVL:INTEGER' type@28'KVL:INTEGER' typeName=INTEGER elementType=3\n"},
    {"WordsOfTypes", "::A=::SEQUENCE{::IDENTIFIER::WHITESPACES}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@28'IDENTIFIER' type@28'IDENTIFIER' typeName=IDENTIFIER elementType=6\n"
     "    typed line=2 at@41'WHITESPACES' type@41'WHITESPACES' typeName=WHITESPACE elementType=7\n"},
    // A ":" could follow, so that the next token ("NEXT" and the byte behind it) has been read.
    {"DeclaredTypeIsPlacedBehindTheNextToken", "::A=::SEQUENCE{X ::B\n NEXT ::BOOL}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=3 at@27'B' name@17'X' elementName=X type@27'B' typeName=B elementType=32\n"
     "    typed line=3 at@34'BOOL' name@27'NEXT' elementName=NEXT type@34'BOOL' typeName=BOOL elementType=5\n"},
    {"WordWithoutItsLastLetterIsADeclaredType", "::A=::SEQUENCE{::WHITESPACE}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@28'WHITESPACE' type@28'WHITESPACE' typeName=WHITESPACE elementType=32\n"},
    {"QualifiedReference", "::A=::SEQUENCE{X ::Q:R }",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    reference line=2 at@23'R' name@17'X' type@23'R' qualifier@22'Q' qualifier=Q reference@23'R' reference=R\n"},
    {"Placeholder", "::A=::SEQUENCE{X ::$P$ }",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    placeholder line=2 at@23'P' name@17'X' type@23'P' placeholder@23'P' placeholder=P\n"},
    {"QualifiedPlaceholder", "::A=::SEQUENCE{X ::$Q:P$ }",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    qualified placeholder line=2 at@24'P' name@17'X' type@24'P' qualifier@23'Q' qualifier=Q placeholder@24'P' "
     "placeholder=P\n"},
    {"NestedCategoryIsPlacedAtItsLastType", "::A=::SEQUENCE{X ::LIST{ Y ::STRING\n}\n}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    category line=3 at@36'STRING' name@17'X' elementName=X type@36'STRING' categoryType=18\n"
     "      typed line=2 at@36'STRING' name@27'Y' elementName=Y type@36'STRING' typeName=STRING elementType=2\n"},
    {"UnnamedNestedCategory", "::A=::SEQUENCE{X ::BOOL ::LIST{}}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    typed line=2 at@24'BOOL' name@17'X' elementName=X type@24'BOOL' typeName=BOOL elementType=5\n"
     "    category line=2 at@31'LIST' type@31'LIST' categoryType=18\n"},
    {"EveryCategory",
     "::A=::SEQUENCE{::LIST{}::CHOICE{}::PERMUTATION{}::DISTANCE{}::NESTED{}::STREAM{}::OPTION{}::LINE{}}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@15'SEQUENCE' type@15'SEQUENCE' categoryType=16\n"
     "    category line=2 at@22'LIST' type@22'LIST' categoryType=18\n"
     "    category line=2 at@32'CHOICE' type@32'CHOICE' categoryType=19\n"
     "    category line=2 at@47'PERMUTATION' type@47'PERMUTATION' categoryType=20\n"
     "    category line=2 at@59'DISTANCE' type@59'DISTANCE' categoryType=21\n"
     "    category line=2 at@69'NESTED' type@69'NESTED' categoryType=17\n"
     "    category line=2 at@79'STREAM' type@79'STREAM' categoryType=22\n"
     "    category line=2 at@89'OPTION' type@89'OPTION' categoryType=23\n"
     "    category line=2 at@97'LINE' type@97'LINE' categoryType=24\n"},
    {"RootHasNoNameOfAnEarlierElement", "::A=::LIST{X ::BOOL}::B=::LIST{}",
     "::A line=2 at@4'A'\n"
     "  category line=2 at@11'LIST' type@11'LIST' categoryType=18\n"
     "    typed line=2 at@20'BOOL' name@13'X' elementName=X type@20'BOOL' typeName=BOOL elementType=5\n"
     "::B line=2 at@24'B'\n"
     "  category line=2 at@31'LIST' type@31'LIST' categoryType=18\n"},
    {"LiteralOverLinesEndsOnItsLast", "\n::A=::LIST{\"1\n2\"}",
     "::A line=3 at@5'A'\n"
     "  category line=3 at@12'LIST' type@12'LIST' categoryType=18\n"
     "    strict line=4 at@18'\"1\n2\"' literal@18'\"1\n2\"' literal=\"1\n2\"\n"},
};

INSTANTIATE_TEST_SUITE_P(Rows, TypeProductionTest, testing::ValuesIn(kProductionRows),
                         [](const auto& row) { return std::string(row.param.name); });

// A place is where a message looks backwards for its text, so none may lie in front of the end of it.
TEST_F(TypeFrontEndTest, PlacesNeverLieInFrontOfTheirText) {
    const std::string text =
        TypeFile("::A=::LIST{B::B C::KVL:BOOL::D:E'F'<<\"G\">>H::$I$ J::$K:L$}::M=::LINE{N::LIST{}}");
    const auto schema = ParseStream(text);
    ASSERT_NE(schema, nullptr);
    const auto check = [&text](int position, const std::string& name) {
        if (position == -1) return;
        const std::size_t found = text.rfind(name, static_cast<std::size_t>(position));
        ASSERT_NE(found, std::string::npos) << name;
        EXPECT_GE(static_cast<std::size_t>(position), found + name.size()) << name;
    };
    const auto checkItem = [&check](const TypeItem& item, const auto& self) -> void {
        check(item.position, item.positionText);
        check(item.namePosition, item.nameText);
        check(item.typePosition, item.typeText);
        check(item.literalPosition, item.literalText);
        check(item.qualifierPosition, item.qualifierText);
        check(item.referencePosition, item.referenceText);
        check(item.placeholderPosition, item.placeholderText);
        for (const TypeItem& child : item.children)
            self(child, self);
    };
    ASSERT_EQ(schema->declaredTypes.size(), 2u);
    for (const DeclaredType& declared : schema->declaredTypes) {
        check(declared.position, declared.positionText);
        checkItem(declared.root, checkItem);
    }
}

// The stack holds 150 entries. Each level of categories takes four; the innermost element decides the rest.
std::string Nested(int levels, std::string_view innermost) {
    std::string text = "::A=::LIST{";
    for (int level = 0; level < levels; ++level)
        text += "::LIST{";
    text += innermost;
    return TypeFile(text + std::string(static_cast<std::size_t>(levels) + 1, '}'));
}

struct DepthRow {
    const char* name;
    int levels;
    std::string_view innermost;
    bool isAccepted;
};

class TypeDepthTest : public TypeFrontEndTest, public testing::WithParamInterface<DepthRow> {};

TEST_P(TypeDepthTest, StackHolds150Entries) {
    const DepthRow& row = GetParam();
    const auto schema = ParseStream(Nested(row.levels, row.innermost));
    EXPECT_EQ(schema != nullptr, row.isAccepted) << ConsoleText();
    const bool isOverflow = ConsoleText().find("\nFatal error: Parser stack overflow\n") != std::string::npos;
    EXPECT_NE(isOverflow, row.isAccepted) << ConsoleText();
}

constexpr DepthRow kDepthRows[] = {
    {"Entry150IsAccepted", 34, "::$P$", true},      {"Entry151IsRefused", 34, "X ::$P$", false},
    {"Entry150ByAReference", 34, "X ::Q:R", false}, {"Entry149ByAReference", 34, "::Q:R", true},
    {"Level35NeedsEntry151", 35, "", false},
};

INSTANTIATE_TEST_SUITE_P(Rows, TypeDepthTest, testing::ValuesIn(kDepthRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(TypeFrontEndTest, NamesOfCategoriesTakeAnEntryEach) {
    const auto named = [](int levels) {
        std::string text = "::A=::LIST{";
        for (int level = 0; level < levels; ++level)
            text += "X ::LIST{";
        return TypeFile(text + std::string(static_cast<std::size_t>(levels) + 1, '}'));
    };
    EXPECT_NE(ParseStream(named(27)), nullptr);
    EXPECT_EQ(ParseStream(named(28)), nullptr);
}

// Left recursion: length costs no stack.
TEST_F(TypeFrontEndTest, LongListsNeedNoStack) {
    std::string text = "::A=::LIST{";
    for (int element = 0; element < 20000; ++element)
        text += "'x' N ::STRING ";
    text += "}";
    for (int type = 0; type < 5000; ++type)
        text += "::T=::LIST{'x'}";
    const auto schema = ParseStream(TypeFile(text));
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(schema->declaredTypes.size(), 5001u);
    EXPECT_EQ(schema->declaredTypes.front().root.children.size(), 40000u);
}

}  // namespace
}  // namespace kvl
