// Loaded in front of the C library (LD_PRELOAD): counts the program's calls on the file system and lets one of them
// fail, or kills the process at it.
//
//     KVL_CALLS_TRACE=FILE   gets the name of each counted call, one on a line
//     KVL_CALLS_AT=N         the N-th call ...
//     KVL_CALLS_ERROR=E      ... fails with this error number; 0 kills the process instead, in front of the call
//     KVL_CALLS_NO_UNNAMED=1 every file without a name is refused, as some file systems do
//
// Calls on the standard streams and on names below /proc do not count.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

int NumberFrom(const char* variable) {
    const char* text = std::getenv(variable);
    return text != nullptr ? std::atoi(text) : -1;
}

void Trace(const char* name) {
    static const char* path = std::getenv("KVL_CALLS_TRACE");
    static const int trace = path != nullptr ? open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666) : -1;
    static const auto put = reinterpret_cast<ssize_t (*)(int, const void*, size_t)>(dlsym(RTLD_NEXT, "write"));
    if (trace < 0) return;
    put(trace, name, std::strlen(name));
    put(trace, "\n", 1);
}

// True when this call is the one that fails; errno is set then.
bool Fails(const char* name) {
    static const int chosen = NumberFrom("KVL_CALLS_AT");
    static const int error = NumberFrom("KVL_CALLS_ERROR");
    static int count = 0;
    static bool isTracing = false;
    if (isTracing) return false;
    isTracing = true;
    Trace(name);
    isTracing = false;
    if (++count != chosen) return false;
    if (error == 0) raise(SIGKILL);
    errno = error;
    return true;
}

bool IsCounted(const char* path) {
    return std::strncmp(path, "/proc/", 6) != 0;
}

bool IsRefused(int flags) {
    static const bool noUnnamed = std::getenv("KVL_CALLS_NO_UNNAMED") != nullptr;
    if (!noUnnamed || (flags & O_TMPFILE) != O_TMPFILE) return false;
    errno = EOPNOTSUPP;
    return true;
}

}  // namespace

// Defines `name` as the C library's function behind a test whether this call fails.
#define KVL_CALL(result, name, parameters, arguments, isCounted, failed)                          \
    extern "C" result name parameters {                                                           \
        static const auto next = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name)); \
        if ((isCounted) && Fails(#name)) return failed;                                           \
        return next arguments;                                                                    \
    }

#define KVL_NOEXCEPT_CALL(result, name, parameters, arguments, isCounted, failed)                 \
    extern "C" result name parameters noexcept {                                                  \
        static const auto next = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name)); \
        if ((isCounted) && Fails(#name)) return failed;                                           \
        return next arguments;                                                                    \
    }

KVL_CALL(ssize_t, read, (int file, void* buffer, size_t size), (file, buffer, size), file > 2, -1)
KVL_CALL(ssize_t, write, (int file, const void* buffer, size_t size), (file, buffer, size), file > 2, -1)
KVL_CALL(int, fallocate, (int file, int mode, off_t offset, off_t size), (file, mode, offset, size), true, -1)
KVL_CALL(int, close, (int file), (file), file > 2, -1)
KVL_NOEXCEPT_CALL(int, dup, (int file), (file), file > 2, -1)
KVL_NOEXCEPT_CALL(off_t, lseek, (int file, off_t offset, int whence), (file, offset, whence), true, -1)
KVL_NOEXCEPT_CALL(int, ftruncate, (int file, off_t size), (file, size), true, -1)
KVL_NOEXCEPT_CALL(int, stat, (const char* path, struct stat* status), (path, status), IsCounted(path), -1)
KVL_NOEXCEPT_CALL(int, lstat, (const char* path, struct stat* status), (path, status), IsCounted(path), -1)
KVL_NOEXCEPT_CALL(int, fstat, (int file, struct stat* status), (file, status), file > 2, -1)
KVL_NOEXCEPT_CALL(int, faccessat, (int folder, const char* path, int mode, int flags), (folder, path, mode, flags),
                  true, -1)
KVL_NOEXCEPT_CALL(int, fchmod, (int file, mode_t mode), (file, mode), true, -1)
KVL_NOEXCEPT_CALL(int, fchown, (int file, uid_t owner, gid_t group), (file, owner, group), true, -1)
KVL_NOEXCEPT_CALL(int, flock, (int file, int operation), (file, operation), true, -1)
KVL_NOEXCEPT_CALL(int, mkdir, (const char* path, mode_t mode), (path, mode), true, -1)
KVL_NOEXCEPT_CALL(char*, getcwd, (char* buffer, size_t size), (buffer, size), true, nullptr)
KVL_NOEXCEPT_CALL(ssize_t, readlink, (const char* path, char* buffer, size_t size), (path, buffer, size),
                  IsCounted(path), -1)
KVL_NOEXCEPT_CALL(int, linkat, (int from, const char* name, int to, const char* newName, int flags),
                  (from, name, to, newName, flags), true, -1)
KVL_NOEXCEPT_CALL(int, renameat, (int from, const char* name, int to, const char* newName), (from, name, to, newName),
                  true, -1)
KVL_NOEXCEPT_CALL(int, rename, (const char* name, const char* newName), (name, newName), true, -1)
KVL_CALL(DIR*, fdopendir, (int file), (file), true, nullptr)
KVL_CALL(dirent*, readdir, (DIR * folder), (folder), true, nullptr)

extern "C" int openat(int folder, const char* path, int flags, ...) {
    static const auto next = reinterpret_cast<int (*)(int, const char*, int, ...)>(dlsym(RTLD_NEXT, "openat"));
    va_list arguments;
    va_start(arguments, flags);
    const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    const unsigned mode = makes ? va_arg(arguments, unsigned) : 0;
    va_end(arguments);
    if (IsCounted(path) && Fails("openat")) return -1;
    return IsRefused(flags) ? -1 : next(folder, path, flags, mode);
}
