#include "values/SortKeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>

#include "text/Numbers.h"
#include "values/RecordOrder.h"
#include "values/TypeIds.h"

namespace kvl {
namespace {

using Index = SortKeys::Index;
using Less = bool (*)(const std::string&, const std::string&);

bool IsIntegerBelow(const std::string& a, const std::string& b) {
    return ReadInteger(a) < ReadInteger(b);
}
bool IsFloatBelow(const std::string& a, const std::string& b) {
    const auto left = static_cast<float>(ReadFloat(a));
    const auto right = static_cast<float>(ReadFloat(b));
    return std::isnan(right) ? !std::isnan(left) : left < right;
}
bool IsTextBelow(const std::string& a, const std::string& b) {
    return a < b;
}

struct Row {
    const char* name;
    CellKind kind;
    Less less;
    std::vector<std::string> cells;  // of which random ones are drawn
};

class Keys : public testing::TestWithParam<Row> {};

// Both ways to sort: few keys are compared, many are distributed by their bytes.
TEST_P(Keys, StandAsAStableSortByComparisonPutsThem) {
    const Row& row = GetParam();
    std::mt19937 random(5);
    for (const std::size_t count : {0U, 1U, 100U, 3000U}) {
        std::vector<std::string> cells(count);
        std::generate(cells.begin(), cells.end(), [&] { return row.cells[random() % row.cells.size()]; });
        SortKeys keys(row.kind);
        SortKeys sameKeys(row.kind);
        for (const std::string& cell : cells) {
            keys.Add(cell);
            sameKeys.Add(cell);
        }
        std::vector<Index> expected(count);
        for (Index i = 0; i < count; ++i)
            expected[i] = i;
        std::stable_sort(expected.begin(), expected.end(),
                         [&](Index a, Index b) { return row.less(cells[a], cells[b]); });
        EXPECT_EQ(keys.InOrder(), expected);

        std::vector<Index> first;
        for (Index i = 0; i < count; ++i) {
            const bool isNoNumber = row.kind == CellKind::Float && std::isnan(ReadFloat(cells[i]));
            const bool isFirst = std::none_of(first.begin(), first.end(), [&](Index earlier) {
                return !row.less(cells[earlier], cells[i]) && !row.less(cells[i], cells[earlier]);
            });
            if (isNoNumber || isFirst) first.push_back(i);
        }
        EXPECT_EQ(sameKeys.FirstOfEach(), first);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Keys,
    testing::Values(Row{"Integers",
                        CellKind::Integer,
                        IsIntegerBelow,
                        {"0", "7", "-7", "2147483647", "-2147483648", "65536", "256", "-256", "", "x", "12 "}},
                    Row{"Floats",
                        CellKind::Float,
                        IsFloatBelow,
                        {"0", "-0.0", "1.5", "-1.5", "1e30", "-1e30", "inf", "-inf", "nan", "1e-40", "-1e-40", ""}},
                    Row{"Texts",
                        CellKind::Text,
                        IsTextBelow,
                        {"", "a", "b", "ab", std::string("a\0", 2), std::string("a\0\0\0\0\0\0\0", 8), "12345678",
                         std::string("12345678\0", 9), "123456789", "1234567890", "12345678a", "\xE4",
                         "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}}),
    [](const testing::TestParamInfo<Row>& row) { return row.param.name; });

// A list of so many records that they go to their places by several blocks, each with as many records below it as its
// old number tells.
class ManyRecords : public testing::Test {
protected:
    static constexpr int kCount = 40000;

    ManyRecords() {
        for (CVariable* variable : std::initializer_list<CVariable*>{&value, &inner}) {
            variable->label = variable == &value ? "L:A" : "L:B";
            EXPECT_TRUE(list.AddColumn(variable));
        }
        word.label = "L:B:W";
        inner.parentList = &list;
        EXPECT_TRUE(inner.AddColumn(&word));
        list.KeepInput(input);
        for (int i = 0; i < kCount; ++i) {
            for (int below = 0; below < i % 3; ++below) {
                const Cell cell(0, Text(i));
                inner.AddParsedRecord({&cell, 1}, false);
            }
            const Cell cell(0, Text(i * 7919LL % kCount));
            list.AddParsedRecord({&cell, 1}, false);
        }
    }
    // A place in the input that reads as the number.
    std::string_view Text(long long number) const {
        return std::string_view(*input).substr(static_cast<std::size_t>(number) * 12, 12);
    }
    void ExpectSorted(int count) const {
        RecordStore::Position below = inner.Records().Begin();
        int number = 0;
        for (RecordStore::Position p = list.Records().Begin(); p != list.Records().End();
             p = list.Records().Next(p), ++number) {
            ASSERT_EQ(list.Records().PathAt(p)[0], number);
            ASSERT_EQ(list.Records().At(p).Get(0), Text(number));
            const int old = oldByValue.at(number);
            for (int i = 0; i < old % 3; ++i, below = inner.Records().Next(below)) {
                ASSERT_EQ(ComparePaths(inner.Records().PathAt(below), std::vector{number, number + i}), 0);
                ASSERT_EQ(inner.Records().At(below).Get(0), Text(old));
            }
        }
        EXPECT_EQ(number, count);
        EXPECT_EQ(below, inner.Records().End());
    }

    std::shared_ptr<const std::string> input = [] {
        std::string text;
        for (int i = 0; i < kCount; ++i)
            text += std::string(12 - std::to_string(i).size(), '0') + std::to_string(i);
        return std::make_shared<const std::string>(text);
    }();
    std::map<int, int> oldByValue = [] {
        std::map<int, int> old;
        for (int i = 0; i < kCount; ++i)
            old[static_cast<int>(i * 7919LL % kCount)] = i;
        return old;
    }();
    CVariableKVLCategoryList list, inner;
    CVariableText value{kTypeInteger}, word{kTypeString};
};

TEST_F(ManyRecords, GoToTheirPlacesWithAllThatIsBelowThem) {
    SortRecords(list, {}, 0, CellKind::Integer);
    ExpectSorted(kCount);
    UnifyRecords(list, {}, 0, CellKind::Text);
    ExpectSorted(kCount);
    ReverseRecords(list, {});
    EXPECT_EQ(list.Records().At(list.Records().Begin()).Get(0), Text(kCount - 1));
    SortRecords(list, {}, 0, CellKind::Text);
    ExpectSorted(kCount);
}

}  // namespace
}  // namespace kvl
