// Fuzz target: a whole run on files in memory. The input is parted by zero bytes: the main script, a type, a pattern,
// data, a further script, and what is typed. Whatever they are, the run ends; one that fails says why.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "AllocationBudget.h"
#include "driver/RunProgram.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace {

using namespace kvl;

constexpr std::size_t kMostBytes = 16'000'000;  // that one run may ask for
constexpr std::size_t kMostRequests = 200'000;

constexpr std::array kFiles = {"/home/main.kvl", "/home/a.type", "/home/a.pattern", "/home/a.txt", "/home/a.script"};

std::string_view TakePart(std::string_view& bytes) {
    const std::string_view part = bytes.substr(0, bytes.find('\0'));
    bytes.remove_prefix(std::min(part.size() + 1, bytes.size()));
    return part;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ScopedPlatform outside;
    for (const char* path : kFiles)
        outside.memory.Put(path, TakePart(bytes));
    outside.console.input = bytes;
    outside.surroundings.now = 1700000000;
    const bool isAsked = size % 2 == 0;
    const std::array<const char*, 3> arguments = {"kvlRun", kFiles[0], "-overwrite"};
    const int count = isAsked ? 2 : 3;
    SetAllocationBudget(kMostBytes, kMostRequests);
    try {
        const bool succeeded = RunProgram(count, arguments.data());
        const bool isExplained =
            Process().errorCount != 0 || outside.console.output.find("The run stopped") != std::string::npos;
        if (!succeeded && !isExplained) std::abort();
    } catch (const ProcessEnded&) {
    }
    ClearAllocationBudget();
    return 0;
}
