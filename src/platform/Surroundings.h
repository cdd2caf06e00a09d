#pragma once
// The rest of the outside: clock, environment, the process and its stack.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>

namespace kvl {

class Surroundings {
public:
    virtual ~Surroundings() = default;

    // Seconds since 1970.
    virtual std::int64_t Now() = 0;
    // False when the time cannot be converted.
    virtual bool LocalTime(std::int64_t seconds, std::tm& parts) = 0;
    // False when the variable is not set.
    virtual bool GetEnvironment(const char* name, std::string& value) = 0;
    // The one door through which the process ends before its time: flushes the console and does not return.
    [[noreturn]] virtual void EndProcess(int exitValue) = 0;
};

Surroundings& SystemSurroundings();

// From now on memory that the machine does not have is refused with a bad_alloc, where the system would end the process
// once it is touched. Up to `firstLimit` bytes nothing is asked; a lower limit of the process stays as it is.
void LimitMemory(std::size_t firstLimit = std::size_t{2} << 30);

// Runs `work` on a stack of its own of `byteCount` bytes (only what is touched costs memory) and returns when it is
// done. Falls back to smaller stacks, at last to the present one. Bad_alloc thrown by `work` reaches the caller.
void RunOnLargeStack(std::size_t byteCount, const std::function<void()>& work);

// Whether the work that runs on a large stack has come to its lower half. False outside of such work.
bool IsStackHalfUsed();

}  // namespace kvl
