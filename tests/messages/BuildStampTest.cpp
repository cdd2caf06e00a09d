#include "messages/BuildStamp.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvl {
namespace {

struct StampRow {
    const char* name;
    std::string_view stamp, number, time;
};
constexpr StampRow kStampRows[] = {
    {"Whole", "(1627,2024-03-09,07:05:09)", "1627", "Sat Mar 09 07:05:09 2024"},
    {"LeapDay", "(0,2000-02-29,23:59:59)", "0", "Tue Feb 29 23:59:59 2000"},
    {"Empty", "", "", ""},
    {"SixFields", "(1627,2024-03-09,07:05)", "1627", ""},
    {"EightFields", "(1627,2024-03-09,07:05:09:1)", "1627", ""},
    {"NoSuchMonth", "(1,2024-13-09,07:05:09)", "1", ""},
    {"NoSuchDay", "(1,2023-02-29,07:05:09)", "1", ""},
};

class BuildStamps : public testing::TestWithParam<StampRow> {};

TEST_P(BuildStamps, AreRead) {
    const BuildFacts facts = ReadBuildStamp(GetParam().stamp);
    EXPECT_EQ(facts.number, GetParam().number);
    EXPECT_EQ(facts.time, GetParam().time);
}

INSTANTIATE_TEST_SUITE_P(Rows, BuildStamps, testing::ValuesIn(kStampRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(BuildStamp, OfThisProgramIsWhole) {
    const BuildFacts facts = ReadBuildStamp(BuildStamp());
    EXPECT_FALSE(facts.number.empty());
    EXPECT_TRUE(std::all_of(facts.number.begin(), facts.number.end(), [](char c) { return c >= '0' && c <= '9'; }));
    EXPECT_EQ(facts.time.size(), 24u) << BuildStamp();
}

}  // namespace
}  // namespace kvl
