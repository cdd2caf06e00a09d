#include "platform/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace kvl {
namespace {

constexpr std::size_t kCopyBlock = std::size_t{64} * 1024;

// Sleeps until the descriptor is ready again.
void WaitFor(int descriptor, short events) {
    pollfd entry{descriptor, events, 0};
    poll(&entry, 1, -1);
}

bool MustWait(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

bool OpenStandardDescriptors() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (fcntl(number, F_GETFD) != -1) continue;
        // The lowest free number is given out, which is this one: those below it are open.
        if (open("/dev/null", O_RDWR) != number) return false;
    }
    return true;
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        Descriptor old(std::exchange(number_, other.Release()));
    }
    return *this;
}

Descriptor::~Descriptor() {
    if (IsOpen()) close(number_);
}

int Descriptor::Release() {
    return std::exchange(number_, -1);
}

Descriptor OpenDescriptor(const char* path, int flags, unsigned mode) {
    return OpenDescriptorAt(AT_FDCWD, path, flags, mode);
}

Descriptor OpenDescriptorAt(int directory, const char* name, int flags, unsigned mode) {
    int number;
    do {
        number = openat(directory, name, flags | O_CLOEXEC | O_NOCTTY, mode);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

int ReadSome(int descriptor, char* buffer, std::size_t capacity, std::size_t& count) {
    count = 0;
    for (;;) {
        const ssize_t got = read(descriptor, buffer, capacity);
        if (got >= 0) {
            count = static_cast<std::size_t>(got);
            return 0;
        }
        if (MustWait(errno))
            WaitFor(descriptor, POLLIN);
        else if (errno != EINTR)
            return errno;
    }
}

int WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t put = write(descriptor, bytes.data(), bytes.size());
        if (put >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(put));
        else if (MustWait(errno))
            WaitFor(descriptor, POLLOUT);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int CopyRest(int from, int to) {
    std::array<char, kCopyBlock> block{};
    for (;;) {
        std::size_t count = 0;
        if (const int error = ReadSome(from, block.data(), block.size(), count)) return error;
        if (count == 0) return 0;
        if (const int error = WriteFully(to, std::string_view(block.data(), count))) return error;
    }
}

void PrepareDescriptors() {
    static const bool prepared = [] {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);
        return OpenStandardDescriptors();
    }();
    static_cast<void>(prepared);
}

}  // namespace kvl
