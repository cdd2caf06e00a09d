#include "values/VariableTable.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace kvl {
namespace {

TEST(MatchesLabelTest, TakesWholeNamesInTheirOrder) {
    constexpr struct {
        const char* name;
        std::string_view search, label;
        bool matches;
    } kRows[] = {
        {"Exact", "A:B", "A:B", true},
        {"NoPrefixOfALongerLabel", "A", "A:B", false},
        {"ShortFromTheEnd", ":NAME", "A:NAME", true},
        {"ShortNeedsItsColon", ":NAME", "ANAME", false},
        {"ShortNeedsTheEnd", ":NAME", "A:NAME:B", false},
        {"ShortIsNotALabelOfItsOwn", ":NAME", "NAME", false},
        {"ShortOfTwoParts", ":A:B", "X:A:B", true},
        {"Gap", "TOP~NAME", "TOP:X:NAME", true},
        {"GapKeepsTheOrder", "TOP~NAME", "NAME:TOP", false},
        {"GapOfNothing", "A:~:B", "A:B", true},
        {"GapBeginsAtTheFront", "TOP~NAME", "X:TOP:NAME", false},
        {"GapEndsAtTheEnd", "TOP~NAME", "TOP:NAME:X", false},
        {"ShortWithGap", ":A~:B", "X:A:Y:B", true},
        {"ShortWithGapKeepsTheOrder", ":B~:A", "X:A:Y:B", false},
        {"OnlyAGap", "~", "A", false},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(MatchesLabel(row.search, row.label), row.matches) << row.name;
}

void Enter(VariableTable& table, const std::string& label) {
    std::unique_ptr<CVariable> variable = MakeVariable(kTypeString);
    variable->label = label;
    EXPECT_TRUE(table.Insert(std::move(variable)));
}

TEST(VariableTableTest, FindsTheOneAndTellsOfSeveral) {
    VariableTable table;
    for (const char* label : {"B:NAME", "A:NAME", "C:NAME", "D:NAME", "A:X:AGE"})
        Enter(table, label);
    EXPECT_EQ(table.FindOne(":AGE")->label, "A:X:AGE");
    EXPECT_EQ(table.FindOne("A~E:AGE"), nullptr);
    EXPECT_EQ(table.FindOne("A~AGE")->label, "A:X:AGE");
    EXPECT_EQ(table.FindOne(":NAME"), nullptr);
    const VariableTable::Selection selection = table.Select(":NAME");
    EXPECT_TRUE(selection.ambiguous);
    EXPECT_EQ(selection.variable->label, "A:NAME");
    EXPECT_EQ(selection.labels, (std::vector<std::string>{"A:NAME", "B:NAME", "C:NAME"}));
    EXPECT_EQ(table.Select(":NONE").variable, nullptr);
}

// The remembered answers and the index must not outlive a change.
TEST(VariableTableTest, ForgetsWhatItRememberedWhenItChanges) {
    VariableTable table;
    for (int i = 0; i < 20; ++i)
        Enter(table, "V" + std::to_string(i) + ":X" + std::to_string(i));
    const std::string name = ":X3";
    EXPECT_EQ(table.FindOne(name)->label, "V3:X3");
    Enter(table, "W:X3");
    EXPECT_EQ(table.FindOne(name), nullptr);
    table.Erase("V3:X3");
    EXPECT_EQ(table.FindOne(name)->label, "W:X3");
    std::unique_ptr<CVariable> other = MakeVariable(kTypeInteger);
    other->label = "W:X3";
    EXPECT_FALSE(table.InsertBorrowed(other.get()));
    table.ReplaceBorrowed(other.get());
    EXPECT_EQ(table.FindOne(name), other.get());
    table.Erase("W:X3");
    EXPECT_EQ(table.FindOne(name), nullptr);
    table.ReplaceBorrowed(other.get());
    EXPECT_EQ(table.FindOne(name), other.get());
}

TEST(VariableTableTest, RemembersAsManyNamesAsAreAskedFor) {
    VariableTable table;
    for (int i = 0; i < 3000; ++i)
        Enter(table, "V:X" + std::to_string(i));
    for (int i = 0; i < 9000; ++i) {
        const std::string name = "X" + std::to_string(i % 3000);
        ASSERT_EQ(table.FindOne(":" + name), table.Find("V:" + name));
    }
}

// As a table is used by one call after the other.
TEST(VariableTableTest, TakesLocalsBack) {
    VariableTable table;
    Enter(table, "P:X");
    table.BeginLocals();
    const std::string parameter = "P:X", shortName = ":X", local = "L";
    for (int call = 0; call < 100; ++call) {
        EXPECT_EQ(table.FindOne(local), nullptr);
        EXPECT_EQ(table.FindOne(shortName), table.Find(parameter));
        Enter(table, "L");
        Enter(table, "L:X");
        EXPECT_EQ(table.FindOne(local)->label, "L");
        EXPECT_EQ(table.FindOne(parameter)->label, "P:X");
        EXPECT_EQ(table.FindOne(shortName), nullptr);
        EXPECT_TRUE(table.TakeBackLocals());
        EXPECT_EQ(table.Size(), 1U);
    }
    table.Erase("P:X");
    EXPECT_FALSE(table.TakeBackLocals());
}

// Against a plain list of labels, over sizes at which the indexes grow, shrink and are made anew.
TEST(VariableTableTest, SelectsWhatAPlainSearchSelects) {
    std::minstd_rand random(1);
    const auto randomLabel = [&random] {
        return "G" + std::to_string(random() % 40) + ":V" + std::to_string(random() % 60);
    };
    VariableTable table;
    std::set<std::string> labels;
    const auto expectSame = [&](const std::string& name) {
        std::vector<std::string> expected;
        for (const std::string& label : labels) {
            if (MatchesLabel(name, label)) expected.push_back(label);
        }
        const VariableTable::Selection selection = table.Select(name);
        EXPECT_EQ(selection.ambiguous, expected.size() > 1) << name;
        expected.resize(std::min<std::size_t>(expected.size(), 3));
        EXPECT_EQ(selection.labels, expected) << name;
    };
    const auto change = [&](std::size_t entries, bool mayErase) {
        for (std::size_t i = 0; i < entries; ++i) {
            const std::string label = randomLabel();
            if (labels.insert(label).second) {
                Enter(table, label);
            } else if (mayErase) {
                labels.erase(label);
                table.Erase(label);
            }
            expectSame(label);
            if (i % 8 == 0) expectSame(label.substr(label.find(':')));
            if (i % 64 == 0) expectSame("G~" + label.substr(label.size() - 1));
        }
        EXPECT_EQ(table.Size(), labels.size());
        for (const std::string& label : labels)
            EXPECT_TRUE(table.Find(label)) << label;
    };
    change(1000, true);
    const std::set<std::string> kept = labels;
    for (const std::size_t locals : {50U, 1500U, 5U}) {
        table.BeginLocals();
        change(locals, false);
        EXPECT_TRUE(table.TakeBackLocals());
        labels = kept;
    }
    change(1000, false);
}

TEST(VariableTableTest, ListsWhatStandsBelowALabelInOrder) {
    VariableTable table;
    for (const char* label : {"IN", "IN:B", "INNER", "IN:A:C", "IN:A"})
        Enter(table, label);
    std::string labels;
    for (const CVariable* variable : table.Below("IN"))
        labels += variable->label + " ";
    EXPECT_EQ(labels, "IN IN:A IN:A:C IN:B ");
}

}  // namespace
}  // namespace kvl
