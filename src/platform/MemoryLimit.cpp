// The memory that a run may take. Left alone, the system promises more than it has and kills the process that touches
// the rest: without a message, and perhaps another process than the one that asked. So the system is told to refuse
// beyond a limit, which is raised in steps, and only as far as the machine has memory to give: a refusal is a
// bad_alloc. A run that stays below the first limit pays one system call.

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "platform/Descriptor.h"
#include "platform/Surroundings.h"

namespace kvl {
namespace {

constexpr std::uint64_t kStep = std::uint64_t{1} << 30;
constexpr std::uint64_t kUntouched = std::uint64_t{1} << 30;  // of the stack of a run, most of which is never used

// The address sanitizer takes the whole range of addresses before the program begins.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kTakesAllAddresses = true;
#elif defined(__has_feature)
constexpr bool kTakesAllAddresses = __has_feature(address_sanitizer);
#else
constexpr bool kTakesAllAddresses = false;
#endif

rlim_t mostAllowed = 0;  // what whoever started the process has set

// The number behind a word in one of the system's tables; 0 if it cannot be read. Takes no memory.
std::uint64_t NumberBehind(const char* table, const char* word) {
    std::array<char, 4096> text;
    std::size_t count = 0;
    const Descriptor file = OpenDescriptor(table, O_RDONLY);
    if (!file.IsOpen() || ReadSome(file.Number(), text.data(), text.size() - 1, count) != 0) return 0;
    text[count] = 0;
    const char* found = std::strstr(text.data(), word);
    return found == nullptr ? 0 : std::strtoull(found + std::strlen(word), nullptr, 10);
}

std::uint64_t BytesBehind(const char* table, const char* word) {
    return NumberBehind(table, word) * 1024;
}

// What the process has touched, and what the machine has besides; all there can be where the system does not tell. A
// container has its own bound.
std::uint64_t Affordable() {
    const std::uint64_t touched = BytesBehind("/proc/self/status", "VmRSS:");
    const std::uint64_t available = BytesBehind("/proc/meminfo", "MemAvailable:");
    if (touched == 0 || available == 0) return RLIM_INFINITY - kUntouched;
    std::uint64_t free = available + BytesBehind("/proc/meminfo", "SwapFree:");
    if (const std::uint64_t bound = NumberBehind("/sys/fs/cgroup/memory.max", ""); bound != 0)
        free = std::min(free, bound - std::min(bound, NumberBehind("/sys/fs/cgroup/memory.current", "")));
    return touched + free;
}

// Called where memory was refused: returns if it is worth another try.
void RaiseLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_DATA, &limit) != 0 || limit.rlim_cur >= mostAllowed) throw std::bad_alloc();
    const rlim_t raised = std::min({mostAllowed, limit.rlim_cur + kStep, kUntouched + Affordable()});
    if (raised <= limit.rlim_cur) throw std::bad_alloc();
    limit.rlim_cur = raised;
    if (setrlimit(RLIMIT_DATA, &limit) != 0) throw std::bad_alloc();
}

}  // namespace

void LimitMemory(std::size_t firstLimit) {
    rlimit limit{};
    if (kTakesAllAddresses || getrlimit(RLIMIT_DATA, &limit) != 0 || limit.rlim_cur <= firstLimit) return;
    mostAllowed = limit.rlim_cur;
    limit.rlim_cur = firstLimit;
    if (setrlimit(RLIMIT_DATA, &limit) == 0) std::set_new_handler(RaiseLimit);
}

}  // namespace kvl
