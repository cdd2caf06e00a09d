// Fuzz target: a type and an input, parted by the first zero byte. The parser and the literal one must tell the same of
// them, with the log closed and open. The type is a whole type file, or the root of one alone, which leaves the
// mutations no frame to break. Needs the sources of tests/differential beside its own.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "differential/ParseOutcome.h"

namespace {

using namespace kvl;

constexpr long kStepBudget = 20000;      // of the literal parser
constexpr std::size_t kMostRows = 1000;  // rows of a type; expansion makes many of a few bytes

std::string TypeFile(std::string_view type) {
    if (type.starts_with('$')) return std::string(type);
    return "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = " + std::string(type) + " $\n$END KVL VERSION=\"1.0.0\"$\n";
}

void TellDifference(const std::string& expected, const std::string& told, const char* log) {
    std::fprintf(stderr, "literal parser:\n%s\nparser, log %s:\n%s\n", expected.c_str(), log, told.c_str());
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = bytes.find('\0');
    const std::string_view input = zero == std::string_view::npos ? std::string_view() : bytes.substr(zero + 1);

    ParseComparison comparison;
    if (!comparison.SetType(TypeFile(bytes.substr(0, zero))) || comparison.ElementCount() > kMostRows) return 0;
    const auto expected = comparison.LiteralOutcome(input, kStepBudget);
    if (!expected.has_value()) return 0;
    for (const LogMode mode : {LogMode::Closed, LogMode::Open}) {
        const std::string told = comparison.RealOutcome(input, mode);
        if (told != *expected) TellDifference(*expected, told, mode == LogMode::Open ? "open" : "closed");
    }
    return 0;
}
