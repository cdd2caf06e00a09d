// Inputs of a million brackets, blanks or letters for every construct that can nest, repeat or search. Cost that grows
// faster than the input would take minutes here, and the test would run into its time limit.
#include <gtest/gtest.h>

#include <algorithm>

#include "differential/ParseOutcome.h"
#include "support/CaseFile.h"

namespace kvl {
namespace {

#if defined __SANITIZE_ADDRESS__ || !defined __OPTIMIZE__
constexpr std::size_t kShare = 10;  // everything is slower
#else
constexpr std::size_t kShare = 1;
#endif

std::string Repeated(const std::string& unit, std::size_t count) {
    std::string text;
    text.reserve(unit.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text += unit;
    return text;
}

// "\\n" in a unit is a line end.
std::string Unit(const std::string& line) {
    const std::size_t at = line.find("\\n");
    return at == std::string::npos ? line : line.substr(0, at) + "\n" + line.substr(at + 2);
}

class HostileTest : public testing::TestWithParam<TextCase> {
protected:
    static std::string Input(std::size_t count) {
        const TextCase& input = GetParam();
        return Repeated(Unit(input.Line("unit")), count) + Repeated(input.Line("behind"), count) + input.Line("end");
    }
};

// With the log open, the texts of values alone make it grow with the square of the input; a little must do.
TEST_P(HostileTest, CostsNoMoreThanItsSize) {
    const std::size_t count = std::max<std::size_t>(std::stoul(GetParam().Line("count")) / kShare, 1);
    ParseComparison comparison;
    ASSERT_TRUE(comparison.SetType("$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = " + GetParam().Line("type") +
                                   " $\n$END KVL VERSION=\"1.0.0\"$\n"));
    const std::string outcome = comparison.RealOutcome(Input(count), LogMode::Closed);
    EXPECT_EQ(outcome.starts_with("failed\n") ? "failed" : "matched", GetParam().Line("result"));
    EXPECT_NE(outcome.find(GetParam().Line("message")), std::string::npos) << outcome;
    EXPECT_EQ(comparison.Parses(Input(std::min<std::size_t>(count, 500)), LogMode::Open) ? "matched" : "failed",
              GetParam().Line("result"));
}

KVL_INSTANTIATE_CASES(HostileTest, "differential/Hostile.cases");

}  // namespace
}  // namespace kvl
