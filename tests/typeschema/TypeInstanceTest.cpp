// Moving the labels of an instance.
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

class Macro final : public CTSEntity {};

class TypeInstanceTest : public DeclaredTypesTest {
protected:
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

TEST_F(TypeInstanceTest, RenamingTouchesWholeNamesOnce) {
    constexpr struct {
        const char *oldPrefix, *newPrefix, *labels;
    } kRows[] = {
        {"IN", "OUT", "OUT OUT:B OUT:B:C OUT:BC "}, {"IN", "IN:B", "IN:B IN:B:B IN:B:B:C IN:B:BC "},
        {"IN:B", "X", "IN X X:C IN:BC "},           {"I", "X", "IN IN:B IN:B:C IN:BC "},
        {"OUT", "X", "IN IN:B IN:B:C IN:BC "},      {"IN", "IN", "IN IN:B IN:B:C IN:BC "},
    };
    for (const auto& row : kRows) {
        const auto instance = Instance("::A = ::SEQUENCE{ B ::SEQUENCE{ C ::STRING } BC ::STRING }", "IN");
        ASSERT_NE(instance, nullptr);
        instance->RenameVariables(row.oldPrefix, row.newPrefix, nullptr);
        EXPECT_EQ(Labels(*instance), row.labels);
        for (const auto& [key, variable] : instance->variables)
            EXPECT_EQ(key, variable->label);
        EXPECT_EQ(instance->variables.size(), 4U);
    }
}

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

}  // namespace
}  // namespace kvl
