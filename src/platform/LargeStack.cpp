#include <malloc.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdint>
#include <exception>

#include "platform/Surroundings.h"

namespace kvl {
namespace {

constexpr std::size_t kSmallestStack = std::size_t{8} * 1024 * 1024;

// The stack grows down to lower addresses: at those below this one it is half used up.
std::uintptr_t middleOfStack = 0;

[[gnu::always_inline]] inline std::uintptr_t AddressOnStack() {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

struct Job {
    std::size_t byteCount;
    const std::function<void()>* work;
    sigset_t signalMask;
    std::exception_ptr thrown;
};

void* RunJob(void* argument) {
    Job& job = *static_cast<Job*>(argument);
    middleOfStack = AddressOnStack() - job.byteCount / 2;
    pthread_sigmask(SIG_SETMASK, &job.signalMask, nullptr);
    try {
        (*job.work)();
    } catch (...) {
        job.thrown = std::current_exception();
    }
    middleOfStack = 0;
    return nullptr;
}

// A process whose addresses are limited needs most of them for its values.
std::size_t MostForStack() {
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return ~std::size_t{0};
    return static_cast<std::size_t>(limit.rlim_cur / 4);
}

// False if no thread with such a stack can be had.
bool RunInThread(Job& job) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_t thread;
    const bool started = pthread_attr_setstacksize(&attributes, job.byteCount) == 0 &&
                         pthread_create(&thread, &attributes, &RunJob, &job) == 0;
    pthread_attr_destroy(&attributes);
    if (started) pthread_join(thread, nullptr);
    return started;
}

bool RunOnSomeStack(Job& job) {
    for (job.byteCount = std::min(job.byteCount, MostForStack()); job.byteCount >= kSmallestStack; job.byteCount /= 2)
        if (RunInThread(job)) return true;
    return false;
}

}  // namespace

// A thread, because the system gives each its stack, with a guard page below; there is never more than one at work. The
// waiting one blocks all signals: they must interrupt the one that may be waiting for a key.
void RunOnLargeStack(std::size_t byteCount, const std::function<void()>& work) {
    // One heap for both threads: one of its own would grow by a system call for every few pages.
    mallopt(M_ARENA_MAX, 1);
    Job job{byteCount, &work, {}, nullptr};
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &job.signalMask);
    if (!RunOnSomeStack(job)) {
        job.byteCount = kSmallestStack;
        RunJob(&job);
    }
    pthread_sigmask(SIG_SETMASK, &job.signalMask, nullptr);
    if (job.thrown != nullptr) std::rethrow_exception(job.thrown);
}

bool IsStackHalfUsed() {
    return AddressOnStack() < middleOfStack;
}

}  // namespace kvl
