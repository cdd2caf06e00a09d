// The parser of the program beside the literal one, over random types and inputs: both must tell the same of each pair,
// with the log closed and open.
//
// KVL_DIFFERENTIAL_PAIRS and KVL_DIFFERENTIAL_SEED give the number of pairs and the seed of a longer run by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "differential/Generator.h"
#include "differential/ParseOutcome.h"

namespace kvl {
namespace {

constexpr std::uint64_t kPairs = 6000;
constexpr std::uint64_t kSeed = 20;
constexpr int kInputsOfType = 6;
constexpr long kStepBudget = 60000;
constexpr int kMostDifferences = 3;  // told before a run gives up

std::uint64_t NumberFromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

enum class Verdict { Skipped, Failed, Matched, Different };

class DifferentialTest : public testing::Test {
protected:
    Verdict Compare(std::string_view input) {
        const std::optional<std::string> expected = comparison_.LiteralOutcome(input, kStepBudget);
        if (!expected.has_value()) return Verdict::Skipped;
        for (const LogMode mode : {LogMode::Closed, LogMode::Open})
            if (comparison_.RealOutcome(input, mode) != *expected) return Verdict::Different;
        return expected->starts_with("failed") ? Verdict::Failed : Verdict::Matched;
    }

    bool Differs(const TypeNode& type, std::string_view input) {
        return comparison_.SetType(TypeFileText(type)) && Compare(input) == Verdict::Different;
    }

    void TellDifference(TypeNode type, std::string input) {
        Shrink(type, input, [this](const TypeNode& t, std::string_view i) { return Differs(t, i); });
        ASSERT_TRUE(comparison_.SetType(TypeFileText(type)));
        ADD_FAILURE() << "type:  " << Printable(TypeFileText(type)) << "\ninput: |" << Printable(input)
                      << "|\nliteral parser:\n"
                      << comparison_.LiteralOutcome(input, kStepBudget).value_or("over budget") << "\nparser:\n"
                      << comparison_.RealOutcome(input, LogMode::Closed) << "\nparser, log open:\n"
                      << comparison_.RealOutcome(input, LogMode::Open);
    }

    ParseComparison comparison_;
};

TEST_F(DifferentialTest, BothParsersTellTheSame) {
    const std::uint64_t pairs = NumberFromEnvironment("KVL_DIFFERENTIAL_PAIRS", kPairs);
    RandomNumbers random(NumberFromEnvironment("KVL_DIFFERENTIAL_SEED", kSeed));
    std::uint64_t counts[4] = {};
    const auto count = [&counts](Verdict verdict) -> std::uint64_t& { return counts[static_cast<int>(verdict)]; };

    for (std::uint64_t pair = 0; pair < pairs && count(Verdict::Different) < kMostDifferences;) {
        const TypeNode type = MakeType(random);
        ASSERT_TRUE(comparison_.SetType(TypeFileText(type))) << TypeFileText(type);
        for (int i = 0; i < kInputsOfType; ++i, ++pair) {
            const std::string input = MakeInput(type, random);
            const Verdict verdict = Compare(input);
            ++count(verdict);
            if (verdict != Verdict::Different) continue;
            TellDifference(type, input);
            break;
        }
    }

    std::cout << "matched " << count(Verdict::Matched) << ", failed " << count(Verdict::Failed) << ", skipped "
              << count(Verdict::Skipped) << "\n";
    // A run that matches little or skips much would compare little.
    EXPECT_GT(count(Verdict::Matched), pairs / 5);
    EXPECT_LT(count(Verdict::Skipped), pairs / 20);
}

// Pairs that shortcuts have once got wrong.
struct PairRow {
    const char* name;
    std::string_view root, input;
};
constexpr PairRow kPairRows[] = {
    {"WordReadToTheEndEndsTheSearch", "::STREAM{ ::IDENTIFIER }", ",b"},
    {"WordBehindAnAbsentOption", "::STREAM{ ::SEQUENCE{ ::OPTION{ ';' } ::BOOL } }", "xTRUE"},
    {"EndLiteralWithLeadingBlankStopsShort", "::NESTED{ ';' ' ;a' }", ";a'"},
    {"BeginLiteralOfBlanksAlone", "::NESTED{ ' ' ')' }", " x)"},
    {"NestedRecordsOfEarlierRepetitions", "::DISTANCE{ ::LIST{ ::LIST{ A ::INTEGER } ';' } }", "U1 2;3;"},
    {"TextsOfOrdersGivenUp", "::CHOICE{ ::PERMUTATION{ A ::STRING ::STRING ::FLOAT } ::INTEGER }", "2 0"},
};

class KnownPairTest : public testing::TestWithParam<PairRow> {};

TEST_P(KnownPairTest, BothParsersTellTheSame) {
    ParseComparison comparison;
    ASSERT_TRUE(comparison.SetType("$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = " + std::string(GetParam().root) +
                                   " $\n$END KVL VERSION=\"1.0.0\"$\n"));
    const std::optional<std::string> expected = comparison.LiteralOutcome(GetParam().input, kStepBudget);
    ASSERT_TRUE(expected.has_value());
    EXPECT_EQ(comparison.RealOutcome(GetParam().input, LogMode::Closed), *expected);
    EXPECT_EQ(comparison.RealOutcome(GetParam().input, LogMode::Open), *expected);
}

INSTANTIATE_TEST_SUITE_P(Pairs, KnownPairTest, testing::ValuesIn(kPairRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
