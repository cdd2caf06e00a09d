// Loaded in front of a program: the system refuses it large stacks, which valgrind takes two seconds to enter in its
// tables, once for each run.

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>
#include <cstddef>

extern "C" int pthread_attr_setstacksize(pthread_attr_t* attributes, std::size_t byteCount) {
    constexpr std::size_t kLargest = std::size_t{64} << 20;
    using Function = int (*)(pthread_attr_t*, std::size_t);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_attr_setstacksize"));
    return byteCount > kLargest ? EINVAL : real(attributes, byteCount);
}
