// Fuzz target: a type and an input, parted by the first zero byte. The parser and the literal one must tell the same of
// them, with the log closed and open. Needs the sources of tests/differential beside its own.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "differential/ParseOutcome.h"

namespace {

constexpr long kStepBudget = 50000;      // of the literal parser
constexpr std::size_t kMostRows = 1000;  // rows of a type; expansion makes many of a few bytes

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvl;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = bytes.find('\0');
    const std::string_view input = zero == std::string_view::npos ? std::string_view() : bytes.substr(zero + 1);

    ParseComparison comparison;
    if (!comparison.SetType(bytes.substr(0, zero)) || comparison.ElementCount() > kMostRows) return 0;
    const std::string told = comparison.RealOutcome(input, LogMode::Closed);
    const auto expected = comparison.LiteralOutcome(input, kStepBudget);
    if (!expected.has_value()) return 0;
    if (told != *expected || comparison.RealOutcome(input, LogMode::Open) != *expected) std::abort();
    return 0;
}
