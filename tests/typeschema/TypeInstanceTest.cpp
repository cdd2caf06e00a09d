// What is done with instances as a whole: moving their labels, copying their values, judging what a parse left over.
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

class Macro final : public CTSEntity {};

class TypeInstanceTest : public DeclaredTypesTest {
protected:
    static void AddRecord(CTypeSchema& schema, std::string_view list, std::initializer_list<std::string_view> cells) {
        auto& target = static_cast<CVariableKVLCategoryList&>(*schema.elementTable.find(list)->second);
        Record record;
        int column = 0;
        for (std::string_view cell : cells)
            record.Set(column++, cell);
        target.InsertRecord(target.GetNewKey(), std::move(record));
    }
    // "a,b|c,d" for a list's records.
    static std::string Records(const CVariable& variable) {
        const auto& list = static_cast<const CVariableKVLCategoryList&>(variable);
        std::string text;
        RecordStore::Position position = list.Records().Begin();
        for (std::size_t i = 0; i < list.GetRecordCount(); ++i, position = list.Records().Next(position)) {
            if (i != 0) text += "|";
            for (std::size_t column = 0; column < list.Columns().size(); ++column) {
                if (column != 0) text += ",";
                text += list.Records().At(position).Get(static_cast<int>(column));
            }
        }
        return text;
    }
    static std::string Labels(const CTypeSchema& schema) {
        std::string text;
        for (const ElementEntry& entry : schema.elements) {
            if (entry.mark != kMarkEnd && !entry.variable->label.empty()) text += entry.variable->label + " ";
        }
        return text;
    }
    static std::string Keys(const CTypeSchema& schema) {
        std::string text;
        for (const auto& entry : schema.variables)
            text += entry.first + " ";
        return text;
    }
};

constexpr std::string_view kMixedType =
    "::A = ::SEQUENCE{ N ::STRING INNER ::STRING L ::LIST{ X ::STRING M ::LIST{ Y ::STRING } } ::LIST{ Z ::STRING } }";

TEST_F(TypeInstanceTest, RenamingMovesLabelsAndColumns) {
    const auto instance = Instance(kMixedType, "IN");
    ASSERT_NE(instance, nullptr);
    instance->RenameVariables("IN", "OUT:P", nullptr);
    EXPECT_EQ(Labels(*instance), "OUT:P OUT:P:N OUT:P:INNER OUT:P:L OUT:P:L:X OUT:P:L:M OUT:P:L:M:Y [ 9,  OUT:P:Z ");
    // A list keeps the key of its entry.
    EXPECT_EQ(Keys(*instance), "IN:L OUT:P OUT:P:INNER OUT:P:N [ 9,  ");
    const auto& list = static_cast<CVariableKVLCategoryList&>(*instance->elementTable.at("IN:L"));
    EXPECT_EQ(list.FindColumn("OUT:P:L:X"), instance->elementTable.at("IN:L:X"));
    EXPECT_EQ(list.FindColumn("IN:L:X"), nullptr);

    instance->RenameVariables("OUT:P", "IN", nullptr);
    EXPECT_EQ(Labels(*instance), "IN IN:N IN:INNER IN:L IN:L:X IN:L:M IN:L:M:Y [ 9,  IN:Z ");
    EXPECT_EQ(Keys(*instance), "IN IN:INNER IN:L IN:N [ 9,  ");
}

struct RenameRow {
    const char* name;
    std::string_view oldPrefix, newPrefix;
    const char* labels;
};

class RenameTest : public TypeInstanceTest, public testing::WithParamInterface<RenameRow> {};

TEST_P(RenameTest, TouchesWholeNamesOnce) {
    const auto instance = Instance("::A = ::SEQUENCE{ B ::SEQUENCE{ C ::STRING } BC ::STRING }", "IN");
    ASSERT_NE(instance, nullptr);
    instance->RenameVariables(GetParam().oldPrefix, GetParam().newPrefix, nullptr);
    EXPECT_EQ(Labels(*instance), GetParam().labels);
    for (const auto& [key, variable] : instance->variables)
        EXPECT_EQ(key, variable->label);
    EXPECT_EQ(instance->variables.size(), 4U);
}

constexpr RenameRow kRenameRows[] = {
    {"Root", "IN", "OUT", "OUT OUT:B OUT:B:C OUT:BC "},  {"IntoItself", "IN", "IN:B", "IN:B IN:B:B IN:B:B:C IN:B:BC "},
    {"BelowTheRoot", "IN:B", "X", "IN X X:C IN:BC "},    {"PartOfAName", "I", "X", "IN IN:B IN:B:C IN:BC "},
    {"NoSuchName", "OUT", "X", "IN IN:B IN:B:C IN:BC "}, {"Same", "IN", "IN", "IN IN:B IN:B:C IN:BC "},
};
INSTANTIATE_TEST_SUITE_P(Rows, RenameTest, testing::ValuesIn(kRenameRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(TypeInstanceTest, RenamingHandsTheVariablesOver) {
    const auto instance = Instance(kMixedType, "IN");
    ASSERT_NE(instance, nullptr);
    Macro macro;
    macro.SetSourceFile("/home/m.kvl");
    macro.currentLine = 7;
    instance->RenameVariables("IN", "P", &macro);
    for (const char* label : {"IN", "IN:L", "IN:L:M:Y"}) {
        const CVariable& variable = *instance->elementTable.at(label);
        EXPECT_EQ(variable.GetFileLabelKey(), "m.kvl@" + variable.label);
        EXPECT_EQ(variable.entityLine, 7);
    }
    EXPECT_EQ(instance->VariablesInOrder().back()->ownerEntity, nullptr);  // the unnamed list has not moved
}

TEST_F(TypeInstanceTest, OrderIsThatOfTheTypeWhateverTheName) {
    for (const char* name : {"IN", "in", "[", "NS:z"}) {
        const auto instance = Instance(kMixedType, name);
        ASSERT_NE(instance, nullptr);
        instance->RenameVariables(name, "q", nullptr);
        std::string order;
        for (const CVariable* variable : instance->VariablesInOrder())
            order += variable->label + " ";
        EXPECT_EQ(order, "q q:INNER q:L q:N [ 9,  ") << name;
    }
}

TEST_F(TypeInstanceTest, CopyingTakesValuesAndRecordsByPosition) {
    const auto from = Instance(kMixedType, "IN");
    const auto to = Instance(kMixedType, "out");
    ASSERT_TRUE(from && to);
    from->elementTable.at("IN:N")->SetText("name");
    AddRecord(*from, "IN:L", {"", "x1"});
    AddRecord(*from, "IN:L", {"", "x2"});
    to->elementTable.at("out:N")->SetText("old");
    to->elementTable.at("out:INNER")->SetText("old");
    AddRecord(*to, "out:L", {"", "old"});

    EXPECT_TRUE(to->CopyValues(*from, LoopStack()));
    EXPECT_EQ(to->elementTable.at("out:N")->GetText(), "name");
    EXPECT_EQ(to->elementTable.at("out:INNER")->GetText(), "");
    EXPECT_EQ(Records(*to->elementTable.at("out:L")), ",x1|,x2");

    EXPECT_TRUE(to->CopyValues(*to, LoopStack()));
    EXPECT_EQ(Records(*to->elementTable.at("out:L")), ",x1|,x2");
}

TEST_F(TypeInstanceTest, CopyingStopsAtTheShorterSide) {
    const auto longer = Instance("::A = ::SEQUENCE{ P ::STRING Q ::STRING R ::STRING }", "L");
    const auto shorter = Instance("::A = ::SEQUENCE{ S ::STRING }", "S");
    ASSERT_TRUE(longer && shorter);
    longer->elementTable.at("L:P")->SetText("p");
    longer->elementTable.at("L:R")->SetText("r");
    EXPECT_TRUE(shorter->CopyValues(*longer, LoopStack()));
    EXPECT_EQ(shorter->elementTable.at("S:S")->GetText(), "p");
    shorter->elementTable.at("S:S")->SetText("s");
    EXPECT_TRUE(longer->CopyValues(*shorter, LoopStack()));
    EXPECT_EQ(longer->elementTable.at("L:P")->GetText(), "s");
    EXPECT_EQ(longer->elementTable.at("L:R")->GetText(), "r");
}

TEST_F(TypeInstanceTest, CopyingFailsForListsOfAnotherShape) {
    const auto one = Instance("::A = ::LIST{ P ::STRING }", "A");
    const auto two = Instance("::A = ::LIST{ P ::STRING Q ::STRING }", "B");
    ASSERT_TRUE(one && two);
    EXPECT_FALSE(one->CopyValues(*two, LoopStack()));
}

struct RemainderRow {
    const char* name;
    std::string_view types, input;
    int cursor, spanEnd;
    bool found;
};

class RemainderTest : public TypeInstanceTest, public testing::WithParamInterface<RemainderRow> {};

TEST_P(RemainderTest, IsVisibleTextBehindTheRoot) {
    const auto instance = Instance(GetParam().types, "IN");
    ASSERT_NE(instance, nullptr);
    instance->dataFile = "data.txt";
    instance->input.SetText(std::string(GetParam().input));
    instance->input.SetCursor(GetParam().cursor);
    instance->rootSpanEnd = GetParam().spanEnd;
    EXPECT_EQ(instance->FindRemainder(), GetParam().found);
    EXPECT_EQ(Process().errorCount, GetParam().found ? 1 : 0);
}

constexpr std::string_view kSequence = "::A = ::SEQUENCE{ 'ab' }";
constexpr std::string_view kNested = "::A = ::NESTED{ '(' ')' }";
constexpr RemainderRow kRemainderRows[] = {
    {"Nothing", kSequence, "ab", 2, 1, false},
    {"TrailingWhiteSpace", kSequence, "ab \r\n\t ", 2, 1, false},
    {"OneByteIsNotLookedAt", kSequence, "ab;", 2, 1, false},
    {"TwoBytes", kSequence, "ab;;", 2, 1, true},
    {"BehindWhiteSpace", kSequence, "ab   x", 2, 1, true},
    {"RootThatReadNothing", kSequence, "xyz", 0, -1, false},
    {"ListEndsOneFurther", "::A = ::LIST{ 'a' }", "aa;;", 2, 2, false},
    {"BracketEndsBehindItsLiteral", kNested, "(x)  \n", 3, 1, false},
    {"VisibleBehindABracket", kNested, "(x) y ", 3, 1, true},
    {"EmptyInput", kSequence, "", 0, -1, false},
};
INSTANTIATE_TEST_SUITE_P(Rows, RemainderTest, testing::ValuesIn(kRemainderRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
