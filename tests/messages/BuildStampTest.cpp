#include "messages/BuildStamp.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvl {
namespace {

TEST(BuildStamp, IsRead) {
    constexpr struct {
        std::string_view stamp, number, time;
    } kRows[] = {
        {"(1627,2024-03-09,07:05:09)", "1627", "Sat Mar 09 07:05:09 2024"},
        {"(0,2000-02-29,23:59:59)", "0", "Tue Feb 29 23:59:59 2000"},
        {"", "", ""},
        {"(1627,2024-03-09,07:05)", "1627", ""},
        {"(1627,2024-03-09,07:05:09:1)", "1627", ""},
        {"(1,2024-13-09,07:05:09)", "1", ""},
        {"(1,2023-02-29,07:05:09)", "1", ""},
    };
    for (const auto& [stamp, number, time] : kRows) {
        EXPECT_EQ(ReadBuildStamp(stamp).number, number) << stamp;
        EXPECT_EQ(ReadBuildStamp(stamp).time, time) << stamp;
    }
}

TEST(BuildStamp, OfThisProgramIsWhole) {
    const BuildFacts facts = ReadBuildStamp(BuildStamp());
    EXPECT_FALSE(facts.number.empty());
    EXPECT_TRUE(std::all_of(facts.number.begin(), facts.number.end(), [](char c) { return c >= '0' && c <= '9'; }));
    EXPECT_EQ(facts.time.size(), 24u) << BuildStamp();
}

}  // namespace
}  // namespace kvl
