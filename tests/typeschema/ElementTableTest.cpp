// From declared types to the element table: rows, labels, columns, and what instances make of them.
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

struct TableRow {
    const char* name;
    std::string_view types;
    const char* expected;  // behind the heading
};

class ElementTableTest : public DeclaredTypesTest, public testing::WithParamInterface<TableRow> {};

TEST_P(ElementTableTest, HasTheRows) {
    const auto schema = Compiled(GetParam().types);
    ASSERT_NE(schema, nullptr) << Messages();
    EXPECT_EQ(schema->ElementsText(), std::string("\nType Schema A\n") + GetParam().expected);
    EXPECT_EQ(Messages(), "");
}

constexpr TableRow kTableRows[] = {
    {"EmptyList", "::A = ::LIST{}",
     "0    BEGIN ::A::LIST\n"
     "1    END   ::A::LIST\n"},
    {"Leaves", "::A = ::SEQUENCE{ N ::STRING ';' \"a\"\"b\" ::INTEGER F ::FLOAT B ::BOOL I ::IDENTIFIER ::WHITESPACE }",
     " 0    BEGIN ::A::SEQUENCE\n"
     " 1         N::STRING\n"
     " 2         ';'\n"
     " 3         \"a\"\"b\"\n"
     " 4         ::INTEGER\n"
     " 5         F::FLOAT\n"
     " 6         B::BOOL\n"
     " 7         I::IDENTIFIER\n"
     " 8         ::WHITESPACE\n"
     " 9    END   ::A::SEQUENCE\n"},
    {"Categories",
     "::A = ::SEQUENCE{ C ::CHOICE{ 'a' } ::OPTION{ X ::LINE{} } N ::NESTED{ '(' ::STREAM{} ')' } ::DISTANCE{ 'b' } "
     "::PERMUTATION{} }",
     " 0    BEGIN ::A::SEQUENCE\n"
     " 1        BEGIN C::CHOICE\n"
     " 2             'a'\n"
     " 3        END   C::CHOICE\n"
     " 4        BEGIN ::OPTION\n"
     " 5            BEGIN X::LINE\n"
     " 6            END   X::LINE\n"
     " 7        END   ::OPTION\n"
     " 8        BEGIN N::NESTED\n"
     " 9             '('\n"
     "10            BEGIN ::STREAM\n"
     "11            END   ::STREAM\n"
     "12             ')'\n"
     "13        END   N::NESTED\n"
     "14        BEGIN ::DISTANCE\n"
     "15             'b'\n"
     "16        END   ::DISTANCE\n"
     "17        BEGIN ::PERMUTATION\n"
     "18        END   ::PERMUTATION\n"
     "19    END   ::A::SEQUENCE\n"},
    {"UnnamedCategoryAddsNothing", "::A = ::SEQUENCE{ P ::SEQUENCE{ ::OPTION{ Q ::STRING } } R ::STRING }",
     "0    BEGIN ::A::SEQUENCE\n"
     "1        BEGIN P::SEQUENCE\n"
     "2            BEGIN ::OPTION\n"
     "3                 P:Q::STRING\n"
     "4            END   ::OPTION\n"
     "5        END   P::SEQUENCE\n"
     "6         R::STRING\n"
     "7    END   ::A::SEQUENCE\n"},
    {"SubtypeUnderEachNameOfItsUses", "::A = ::SEQUENCE{ X ::B ::B Y ::B } ::B = ::SEQUENCE{ N ::STRING }",
     " 0    BEGIN ::A::SEQUENCE\n"
     " 1        BEGIN X::B::SEQUENCE\n"
     " 2             X:N::STRING\n"
     " 3        END   X::B::SEQUENCE\n"
     " 4        BEGIN ::B::SEQUENCE\n"
     " 5             N::STRING\n"
     " 6        END   ::B::SEQUENCE\n"
     " 7        BEGIN Y::B::SEQUENCE\n"
     " 8             Y:N::STRING\n"
     " 9        END   Y::B::SEQUENCE\n"
     "10    END   ::A::SEQUENCE\n"},
    {"SubtypesInSubtypesInAnyOrder", "::A = ::SEQUENCE{ X ::C } ::B = ::LIST{ N ::BOOL } ::C = ::OPTION{ L ::B }",
     "0    BEGIN ::A::SEQUENCE\n"
     "1        BEGIN X::C::OPTION\n"
     "2            BEGIN X:L::B::LIST\n"
     "3                 X:L:N::BOOL\n"
     "4            END   X:L::B::LIST\n"
     "5        END   X::C::OPTION\n"
     "6    END   ::A::SEQUENCE\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, ElementTableTest, testing::ValuesIn(kTableRows),
                         [](const auto& row) { return std::string(row.param.name); });

class SchemaTest : public DeclaredTypesTest {};

TEST_F(SchemaTest, RowsHoldOneVariableForBothEndsOfACategory) {
    const auto schema = Compiled("::A = ::SEQUENCE{ X ::LIST{ ';' N ::STRING } }");
    ASSERT_NE(schema, nullptr);
    const auto& elements = schema->elements;
    ASSERT_EQ(elements.size(), 6U);
    EXPECT_EQ(elements[1].variable, elements[4].variable);
    EXPECT_EQ(elements[0].variable, schema->GetRootVariable());
    const int expectedMarks[] = {kMarkBegin, kMarkBegin, kMarkLeaf, kMarkLeaf, kMarkEnd, kMarkEnd};
    const int expectedDepths[] = {1, 2, 3, 3, 2, 1};
    for (std::size_t i = 0; i < elements.size(); ++i) {
        EXPECT_EQ(elements[i].mark, expectedMarks[i]) << i;
        EXPECT_EQ(elements[i].depth, expectedDepths[i]) << i;
        EXPECT_EQ(elements[i].variable->depth, expectedDepths[i]) << i;
    }
    EXPECT_EQ(elements[1].variable->firstElement, 1);
    EXPECT_EQ(elements[1].variable->lastElement, 4);
    EXPECT_EQ(elements[2].variable->firstElement, 2);
    EXPECT_EQ(elements[2].variable->lastElement, 2);
    EXPECT_EQ(elements[2].variable->elementKind, kElementWeakLiteral);
}

TEST_F(SchemaTest, ElementsKnowWhereTheyAreDeclared) {
    const auto schema = Compiled("::A = ::SEQUENCE{\n ';'\n X ::B }\n::B =\n ::LIST{ N\n ::STRING }");
    ASSERT_NE(schema, nullptr);
    const auto place = [&](std::size_t row) {
        const CVariable& variable = *schema->elements[row].variable;
        TextPlace found;
        EXPECT_TRUE(LocateInSource("/work/T.txt", variable.declarationPosition, variable.declarationText, found));
        return variable.declarationText + " " + std::to_string(found.line) + ":" + std::to_string(found.column);
    };
    EXPECT_EQ(place(0), "SEQUENCE 1:9");
    EXPECT_EQ(place(1), "';' 2:2");
    EXPECT_EQ(place(2), "LIST 5:4");
    EXPECT_EQ(place(3), "STRING 6:4");
}

// "LABEL(list)" for each variable; the list is that of which it is a column.
std::string ShowLinks(const CTypeSchema& schema) {
    std::string text;
    for (const ElementEntry& entry : schema.elements) {
        const CVariable& variable = *entry.variable;
        if (entry.mark == kMarkEnd || variable.label.empty()) continue;
        text += variable.label + "(" + (variable.ownerList ? variable.ownerList->label : "") + ") ";
    }
    return text;
}

std::string ShowColumns(const CTypeSchema& schema) {
    std::string text;
    for (const ElementEntry& entry : schema.elements) {
        if (entry.mark != kMarkBegin || !entry.variable->IsList()) continue;
        const auto& list = static_cast<const CVariableKVLCategoryList&>(*entry.variable);
        text += list.label + (list.parentList ? " in " + list.parentList->label : "") + " {";
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            EXPECT_EQ(list.Columns()[i]->columnIndex, static_cast<int>(i));
            text += " " + list.Columns()[i]->label;
        }
        text += " } " + list.listTypeName + "\n";
    }
    return text;
}

std::string ShowVariables(const CTypeSchema& schema) {
    std::string text;
    for (const CVariable* variable : schema.VariablesInOrder())
        text += variable->label + " ";
    return text;
}

struct LinkRow {
    const char* name;
    std::string_view types;
    const char* links;
    const char* columns;
    const char* variables;
};

class LinkTest : public DeclaredTypesTest, public testing::WithParamInterface<LinkRow> {};

TEST_P(LinkTest, BindsColumnsToTheInnermostList) {
    const auto instance = Instance(GetParam().types, "IN");
    ASSERT_NE(instance, nullptr) << Messages();
    EXPECT_EQ(ShowLinks(*instance), GetParam().links);
    EXPECT_EQ(ShowColumns(*instance), GetParam().columns);
    EXPECT_EQ(ShowVariables(*instance), GetParam().variables);
}

constexpr LinkRow kLinkRows[] = {
    {"NoList", "::A = ::SEQUENCE{ B ::SEQUENCE{ C ::STRING } ::STRING }", "IN() IN:B() IN:B:C() ", "",
     "IN IN:B IN:B:C "},
    {"ColumnsInOrderOfLabels",
     "::A = ::SEQUENCE{ L ::LIST{ Z ::STRING M ::SEQUENCE{ B ::BOOL } ::STRING A ::STRING } }",
     "IN() IN:L() IN:L:Z(IN:L) IN:L:M(IN:L) IN:L:M:B(IN:L) IN:L:A(IN:L) ", "IN:L { IN:L:A IN:L:M IN:L:M:B IN:L:Z } \n",
     "IN IN:L "},
    {"NestedLists", "::A = ::LIST{ N ::STRING ::SEQUENCE{ L ::LIST{ X ::STRING } } }",
     "IN() IN:N(IN) IN:L(IN) IN:L:X(IN:L) ", "IN { IN:L IN:N } \nIN:L in IN { IN:L:X } \n", "IN "},
    {"UnnamedLists", "::A = ::SEQUENCE{ ::LIST{ X ::STRING ::LIST{ ';' } } ::LIST{ Y ::STRING } }",
     "IN() [ 1, () IN:X([ 1, ) [ 3, ([ 1, ) [ 7, () IN:Y([ 7, ) ",
     "[ 1,  { IN:X [ 3,  } \n[ 3,  in [ 1,  { } \n[ 7,  { IN:Y } \n", "IN [ 1,  [ 7,  "},
    {"ListOfOneSubtype",
     "::A = ::SEQUENCE{ L ::LIST{ ::B } M ::LIST{ ::B ';' } N ::LIST{ X ::STRING } } ::B = ::SEQUENCE{ C ::BOOL }",
     "IN() IN:L() IN:L:C(IN:L) IN:M() IN:M:C(IN:M) IN:N() IN:N:X(IN:N) ",
     "IN:L { IN:L:C } B\nIN:M { IN:M:C } \nIN:N { IN:N:X } \n", "IN IN:L IN:M IN:N "},
    {"NestedListOfOneSubtype", "::A = ::LIST{ L ::LIST{ ::B } } ::B = ::LIST{ C ::BOOL }",
     "IN() IN:L(IN) [ 2, (IN:L) IN:L:C([ 2, ) ", "IN { IN:L } \nIN:L in IN { [ 2,  } B\n[ 2,  in IN:L { IN:L:C } \n",
     "IN "},
};
INSTANTIATE_TEST_SUITE_P(Rows, LinkTest, testing::ValuesIn(kLinkRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SchemaTest, LabelsOfADeclarationBeginWithAColon) {
    const auto schema = Compiled("::A = ::SEQUENCE{ X ::LIST{ N ::STRING } }");
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(ShowLinks(*schema), ":X() :X:N(:X) ");
    EXPECT_EQ(schema->elementTable.size(), 2U);
    EXPECT_TRUE(schema->elementTable.contains(":X:N"));
    EXPECT_EQ(schema->variables.size(), 1U);
}

TEST_F(SchemaTest, NamedRootStandsInFrontOfItsElements) {
    const auto schema = Read("::A = ::SEQUENCE{ N ::STRING }");
    schema->declaredTypes.front().root.elementName = "R";
    ASSERT_TRUE(Compile(*schema));
    EXPECT_EQ(ShowLinks(*schema), ":R() :R:N() ");
}

TEST_F(SchemaTest, InstanceIsRebuiltUnderItsName) {
    const auto schema = Compiled("::A = ::SEQUENCE{ X ::B } ::B = ::SEQUENCE{ N ::STRING }");
    ASSERT_NE(schema, nullptr);
    schema->dataFile = "data.txt";
    schema->SetMainTypeName("NS:A");
    CTypeSchema instance;
    instance.CopyDeclaration(*schema);
    EXPECT_TRUE(instance.elements.empty());
    ASSERT_TRUE(instance.PrepareInstance("IN"));
    ASSERT_TRUE(instance.PrepareInstance("NS:OTHER"));
    EXPECT_EQ(ShowLinks(instance), "NS:OTHER() NS:OTHER:X() NS:OTHER:X:N() ");
    EXPECT_EQ(instance.GetRootVariable()->userTypeName, "NS:A");
    EXPECT_EQ(instance.EntityName(), "NS:A");
    EXPECT_EQ(instance.GetDataName(), "data.txt");
    EXPECT_EQ(ShowLinks(*schema), ":X() :X:N() ");
}

TEST_F(SchemaTest, WrappedTypeIsAListOfIt) {
    const auto schema = Compiled("::A = ::SEQUENCE{ N ::STRING X ::B } ::B = ::SEQUENCE{ M ::STRING }");
    ASSERT_NE(schema, nullptr);
    CTypeSchema instance;
    instance.CopyDeclaration(*schema);
    instance.WrapInList();
    ASSERT_TRUE(instance.PrepareInstance("L"));
    EXPECT_EQ(instance.ElementsText(),
              "\nType Schema A\n"
              "0    BEGIN L::A::LIST\n"
              "1        BEGIN ::SEQUENCE\n"
              "2             L:N::STRING\n"
              "3            BEGIN L:X::B::SEQUENCE\n"
              "4                 L:X:M::STRING\n"
              "5            END   L:X::B::SEQUENCE\n"
              "6        END   ::SEQUENCE\n"
              "7    END   L::A::LIST\n");
    EXPECT_EQ(ShowColumns(instance), "L { L:N L:X L:X:M } \n");
}

TEST_F(SchemaTest, ClearAllEmptiesTheSchema) {
    const auto schema = Compiled("::A = ::SEQUENCE{ X ::LIST{ N ::STRING } }");
    ASSERT_NE(schema, nullptr);
    schema->ClearAll();
    EXPECT_TRUE(schema->elements.empty() && schema->variables.empty() && schema->elementTable.empty());
    EXPECT_TRUE(schema->declaredTypes.empty());
    EXPECT_EQ(schema->GetRootVariable(), nullptr);
    EXPECT_FALSE(schema->BuildElementTable());
    EXPECT_FALSE(Compile(*schema));
    EXPECT_EQ(Messages(), "");
}

TEST_F(SchemaTest, ImportedTypesBringTheirSubtypes) {
    LoadedTypes known;
    known.Load("B", "::B = ::SEQUENCE{ Y ::C } ::C = ::SEQUENCE{ N ::STRING }");
    const auto schema = Read("::A = ::SEQUENCE{ X ::B Z ::C } ::C = ::LIST{ M ::BOOL }");
    ASSERT_TRUE(Compile(*schema, known)) << Messages();
    known = LoadedTypes();  // what is imported outlives its schema
    const std::string expected =
        "\nType Schema A\n"
        " 0    BEGIN ::A::SEQUENCE\n"
        " 1        BEGIN X::B::SEQUENCE\n"
        " 2            BEGIN X:Y::C::SEQUENCE\n"
        " 3                 X:Y:N::STRING\n"
        " 4            END   X:Y::C::SEQUENCE\n"
        " 5        END   X::B::SEQUENCE\n"
        " 6        BEGIN Z::C::LIST\n"
        " 7             Z:M::BOOL\n"
        " 8        END   Z::C::LIST\n"
        " 9    END   ::A::SEQUENCE\n";
    EXPECT_EQ(schema->ElementsText(), expected);
    ASSERT_TRUE(schema->BuildElementTable());
    EXPECT_EQ(schema->ElementsText(), expected);
    EXPECT_EQ(schema->declaredTypes.size(), 1U);
}

TEST_F(SchemaTest, ImportGoesThroughSeveralTypes) {
    LoadedTypes known;
    known.Load("C", "::C = ::SEQUENCE{ N ::STRING }");
    known.Load("B", "::B = ::SEQUENCE{ Y ::D } ::D = ::OPTION{ ::C }");
    const auto schema = Read("::A = ::SEQUENCE{ X ::B ::C }");
    ASSERT_TRUE(Compile(*schema, known)) << Messages();
    known = LoadedTypes();
    EXPECT_EQ(ShowLinks(*schema), ":X() :X:Y() :X:Y:N() :N() ");
}

}  // namespace
}  // namespace kvl
