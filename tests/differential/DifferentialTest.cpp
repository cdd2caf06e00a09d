// The parser of the program beside the literal one, over random types and inputs: both must tell the same of each pair,
// with the log closed and open, and write the same log.
//
// KVL_DIFFERENTIAL_PAIRS and KVL_DIFFERENTIAL_SEED give the number of pairs and the seed of a longer run by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "differential/Generator.h"
#include "differential/ParseOutcome.h"
#include "support/CaseFile.h"

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

using Pieces = std::vector<std::string>;

std::string Joined(const Pieces& pieces, std::string_view between) {
    std::string text;
    for (const std::string& piece : pieces)
        text += piece + std::string(between);
    return text;
}

// Leaves out a stretch of pieces, or its first and last alone, so that `differs` still holds. False if nothing can go.
template <class Differs>
bool LeaveOut(Pieces& pieces, Differs differs) {
    for (auto first = pieces.begin(); first != pieces.end(); ++first) {
        for (auto last = pieces.end(); last-- != first;) {
            for (const bool keepsInside : {false, true}) {
                Pieces fewer(pieces.begin(), first);
                if (keepsInside && last - first > 1) fewer.insert(fewer.end(), first + 1, last);
                fewer.insert(fewer.end(), last + 1, pieces.end());
                if (!differs(fewer)) continue;
                pieces = fewer;
                return true;
            }
        }
    }
    return false;
}

enum class Verdict { Skipped, Failed, Matched, Different };

class DifferentialTest : public testing::TestWithParam<TextCase> {
protected:
    bool SetRoot(const std::string& root) {
        return comparison_.SetType("$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = " + root +
                                   " $\n$END KVL VERSION=\"1.0.0\"$\n");
    }

    Verdict Compare(std::string_view input) {
        const std::optional<std::string> expected = comparison_.LiteralOutcome(input, kStepBudget);
        if (!expected.has_value()) return Verdict::Skipped;
        const std::string log = comparison_.LogText();
        if (comparison_.RealOutcome(input, LogMode::Closed) != *expected) return Verdict::Different;
        if (comparison_.RealOutcome(input, LogMode::Open) != *expected) return Verdict::Different;
        if (comparison_.LogText() != log) return Verdict::Different;
        return expected->starts_with("failed") ? Verdict::Failed : Verdict::Matched;
    }

    // The type and the input made as small as they can be.
    void TellDifference(Pieces type, const std::string& text) {
        Pieces input;
        for (const char c : text)
            input.emplace_back(1, c);
        const auto differs = [this](const Pieces& t, const Pieces& i) {
            return SetRoot(Joined(t, " ")) && Compare(Joined(i, "")) == Verdict::Different;
        };
        while (LeaveOut(type, [&](const Pieces& fewer) { return differs(fewer, input); }) ||
               LeaveOut(input, [&](const Pieces& fewer) { return differs(type, fewer); })) {
        }
        TellBoth(Joined(type, " "), Joined(input, ""));
    }

    void TellBoth(const std::string& root, const std::string& input) {
        ASSERT_TRUE(SetRoot(root));
        ADD_FAILURE() << "type:  " << Printable(root) << "\ninput: |" << Printable(input) << "|\nliteral parser:\n"
                      << comparison_.LiteralOutcome(input, kStepBudget).value_or("over budget") << comparison_.LogText()
                      << "\nparser:\n"
                      << comparison_.RealOutcome(input, LogMode::Closed) << "\nparser, log open:\n"
                      << comparison_.RealOutcome(input, LogMode::Open) << comparison_.LogText();
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
        const std::string root = Joined(TypePieces(type), " ");
        ASSERT_TRUE(SetRoot(root)) << root;
        for (int i = 0; i < kInputsOfType; ++i, ++pair) {
            const std::string input = MakeInput(type, random);
            const Verdict verdict = Compare(input);
            ++count(verdict);
            if (verdict != Verdict::Different) continue;
            TellDifference(TypePieces(type), input);
            break;
        }
    }

    std::cout << "matched " << count(Verdict::Matched) << ", failed " << count(Verdict::Failed) << ", skipped "
              << count(Verdict::Skipped) << "\n";
    // A run that matches little or skips much would compare little.
    EXPECT_GT(count(Verdict::Matched), pairs / 5);
    EXPECT_LT(count(Verdict::Skipped), pairs / 20);
}

// A byte of any value, in the middle and at the end, under every kind of element.
TEST_F(DifferentialTest, BytesOfEveryValue) {
    constexpr const char* kRoots[] = {
        "::LIST{ A ::STRING }",
        "::LIST{ ::CHOICE{ A ::INTEGER B ::FLOAT C ::BOOL D ::IDENTIFIER E ::WHITESPACES F ::STRING } }",
        "::LIST{ ::LINE{ A ::DISTANCE{ } } }",
        "::SEQUENCE{ 'a' ::OPTION{ 'b c' } S ::STREAM{ 'd e' } R ::STREAM{ } }",
        "::SEQUENCE{ \"a\" ::NESTED{ '(' ')' } P ::PERMUTATION{ A ::INTEGER B ::IDENTIFIER } }",
    };
    for (const char* root : kRoots) {
        ASSERT_TRUE(SetRoot(root));
        for (int value = 0; value < 256; ++value) {
            const std::string byte(1, static_cast<char>(value));
            for (const std::string& input : {"a" + byte + "b d" + byte + "e" + byte, "a(" + byte + ")1" + byte + "a"})
                EXPECT_NE(Compare(input), Verdict::Different) << root << " on |" << Printable(input) << "|";
        }
    }
}

// At whichever step the log closes itself: the parse goes on without it, to the same end, and tells a fault once.
TEST_F(DifferentialTest, LogThatClosesItself) {
    constexpr std::pair<const char*, const char*> kRows[] = {
        {"::LIST{ A ::IDENTIFIER B ::STREAM{ L ::LIST{ C ::INTEGER } ';' } }", "a 1 x 2 3;\nb 1;\nc y 4;\n"},
        {"::SEQUENCE{ ::LIST{ A ::IDENTIFIER } ::SEQUENCE{ ::SEQUENCE{ N ::INTEGER } } }", "a b ;"},
    };
    for (const auto& [root, input] : kRows) {
        ASSERT_TRUE(SetRoot(root));
        const std::string expected = comparison_.RealOutcome(input, LogMode::Closed);
        bool isClosed = true;
        for (int room = 0; isClosed; ++room) {
            comparison_.SetLogRoom(room);
            EXPECT_EQ(comparison_.RealOutcome(input, LogMode::Open), expected) << root << " after " << room;
            isClosed = comparison_.LogText().ends_with("LogFile Is Closing. \n");
        }
    }
}

// The bytes of a text with the escapes \n, \r, \t, \\ and \xHH.
std::string Unescaped(const std::string& text) {
    constexpr std::string_view kLetters = "nrt\\", kMeanings = "\n\r\t\\";
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter = text[i] == '\\' ? kLetters.find(text[i + 1]) : std::string_view::npos;
        if (text.compare(i, 2, "\\x") == 0) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else if (letter != std::string_view::npos) {
            bytes += kMeanings[letter];
            ++i;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

// Printable text in lines.
std::string InLines(std::string text) {
    constexpr std::string_view kLineFeed = "\\x0A";
    for (std::size_t at = 0; (at = text.find(kLineFeed, at)) != std::string::npos;)
        text.replace(at, kLineFeed.size(), "\n");
    return text;
}

// Without the lines at its start and end that every log has.
std::string TraceOf(const std::string& log) {
    const std::size_t head = log.find('\n', log.find("Created: ")) + 1;
    return log.substr(head, log.rfind(std::string(77, '/')) - head);
}

bool HasSection(const TextCase& each, std::string_view name) {
    return std::any_of(each.sections.begin(), each.sections.end(),
                       [name](const TextCase::Section& section) { return section.name == name; });
}

// Single pairs, with what is to come of them.
class ParsingTest : public DifferentialTest {};

TEST_P(ParsingTest, ComesToItsOutcome) {
    const std::string root = GetParam().Line("type");
    const std::string input = Unescaped(GetParam().Line("input"));
    ASSERT_TRUE(SetRoot(root));
    const Verdict verdict = Compare(input);
    ASSERT_NE(verdict, Verdict::Skipped);
    if (verdict == Verdict::Different) TellBoth(root, input);
    if (HasSection(GetParam(), "log"))
        ExpectSection(GetParam(), "log", InLines(Printable(TraceOf(comparison_.LogText()))));
    if (HasSection(GetParam(), "outcome"))
        ExpectSection(GetParam(), "outcome", InLines(comparison_.RealOutcome(input, LogMode::Closed)));
}

KVL_INSTANTIATE_CASES(ParsingTest, "differential/Parsing.cases");

}  // namespace
}  // namespace kvl
