#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/AtomicFile.h"
#include "platform/Descriptor.h"
#include "platform/FileSystem.h"
#include "platform/PrivateDirectories.h"
#include "platform/SystemPath.h"

namespace kvl {
namespace {

// Positions in a text are 32-bit signed integers.
constexpr std::size_t kLargestText = 0x7FFFFFFF;
constexpr std::size_t kFirstBlock = std::size_t{64} * 1024;

// What the status of a file alone forbids. The system lets the superuser pass where the bits forbid everybody; here the
// bits count.
int CheckBits(const struct stat& status, Access access) {
    if (S_ISDIR(status.st_mode)) return 0;
    const bool reads = access == Access::Read || access == Access::ReadWrite;
    const bool writes = access == Access::Write || access == Access::ReadWrite;
    if (reads && (status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH)) == 0) return EACCES;
    if (writes && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return EACCES;
    return 0;
}

int AccessMode(Access access) {
    switch (access) {
        case Access::Exists:
            return F_OK;
        case Access::Write:
            return W_OK;
        case Access::Read:
            return R_OK;
        case Access::ReadWrite:
            return R_OK | W_OK;
    }
    return F_OK;
}

int OpenForReading(std::string_view path, Descriptor& descriptor, struct stat& status) {
    std::string systemPath;
    if (const int error = ToSystemPath(path, systemPath)) return error;
    descriptor = OpenDescriptor(systemPath.c_str(), O_RDONLY);
    if (!descriptor.IsOpen() || fstat(descriptor.Number(), &status) != 0) return FoldError(errno);
    if (S_ISDIR(status.st_mode)) return EISDIR;
    return CheckBits(status, Access::Read);
}

// Reads to the end into `bytes`, whose size is the room for the first try: one byte more than expected shows the end
// without growing.
int ReadToEnd(int descriptor, std::string& bytes) {
    std::size_t filled = 0;
    for (;;) {
        std::size_t count = 0;
        if (const int error = ReadSome(descriptor, bytes.data() + filled, bytes.size() - filled, count)) return error;
        filled += count;
        if (filled > kLargestText) return EFBIG;
        if (count == 0) break;
        if (filled == bytes.size()) bytes.resize(std::min(2 * filled, kLargestText + 1));
    }
    bytes.resize(filled);
    return 0;
}

class SystemFileReader : public FileReader {
public:
    explicit SystemFileReader(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

    int Read(char* buffer, std::size_t capacity, std::size_t& count) override {
        return ReadSome(descriptor_.Number(), buffer, capacity, count);
    }

private:
    Descriptor descriptor_;
};

class SystemFileSystem : public FileSystem {
public:
    int CheckAccess(std::string_view path, Access access) override {
        std::string systemPath;
        if (const int error = ToSystemPath(path, systemPath)) return error;
        struct stat status {};
        if (stat(systemPath.c_str(), &status) != 0) return FoldError(errno);
        if (const int error = CheckBits(status, access)) return error;
        const int answer = faccessat(AT_FDCWD, systemPath.c_str(), AccessMode(access), AT_EACCESS);
        return answer == 0 ? 0 : FoldError(errno);
    }

    int ReadWhole(std::string_view path, std::string& bytes) override {
        bytes.clear();
        Descriptor descriptor;
        struct stat status {};
        if (const int error = OpenForReading(path, descriptor, status)) return error;
        const auto expected = static_cast<std::size_t>(S_ISREG(status.st_mode) ? status.st_size : 0);
        if (expected > kLargestText) return EFBIG;
        bytes.resize(expected > 0 ? expected + 1 : kFirstBlock);
        const int error = ReadToEnd(descriptor.Number(), bytes);
        if (error != 0) bytes.clear();
        return error;
    }

    int OpenReader(std::string_view path, std::unique_ptr<FileReader>& reader) override {
        Descriptor descriptor;
        struct stat status {};
        if (const int error = OpenForReading(path, descriptor, status)) return error;
        reader = std::make_unique<SystemFileReader>(std::move(descriptor));
        return 0;
    }

    int OpenWriter(std::string_view path, WriteMode mode, std::unique_ptr<FileWriter>& writer) override {
        std::string systemPath;
        if (const int error = ToSystemPath(path, systemPath)) return error;
        struct stat status {};
        if (stat(systemPath.c_str(), &status) == 0) {
            if (S_ISDIR(status.st_mode)) return EISDIR;
            if (const int error = CheckBits(status, Access::Write)) return error;
        }
        const int error =
            mode == WriteMode::Stream ? OpenStreamWriter(systemPath, writer) : OpenReplacingWriter(systemPath, writer);
        return FoldError(error);
    }

    int MakeDirectory(std::string_view path) override {
        std::string systemPath;
        if (const int error = ToSystemPath(path, systemPath)) return error;
        return mkdir(systemPath.c_str(), 0777) == 0 ? 0 : FoldError(errno);
    }

    bool IsDirectory(std::string_view path) override {
        struct stat status {};
        return FindStatus(path, status) && S_ISDIR(status.st_mode);
    }

    int Rename(std::string_view from, std::string_view to) override {
        std::string systemFrom, systemTo;
        if (const int error = ToSystemPath(from, systemFrom)) return error;
        if (const int error = ToSystemPath(to, systemTo)) return error;
        return std::rename(systemFrom.c_str(), systemTo.c_str()) == 0 ? 0 : FoldError(errno);
    }

    bool IsSameFile(std::string_view a, std::string_view b) override {
        struct stat statusA {
        }, statusB{};
        return FindStatus(a, statusA) && FindStatus(b, statusB) && statusA.st_dev == statusB.st_dev &&
               statusA.st_ino == statusB.st_ino;
    }

    std::string CurrentDirectory() override {
        // A null buffer asks for one of the right size.
        const std::unique_ptr<char, decltype(&std::free)> text(getcwd(nullptr, 0), &std::free);
        // A directory out of reach from the root comes with words in front.
        return text != nullptr && text.get()[0] == '/' ? std::string(text.get()) : std::string();
    }

    bool HasDrive(char) override { return false; }

    std::string ExecutablePath() override {
        std::string path(256, '\0');
        for (;;) {
            const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
            if (length < 0) return {};
            if (static_cast<std::size_t>(length) < path.size()) return path.substr(0, static_cast<std::size_t>(length));
            path.resize(2 * path.size());
        }
    }

    int MakePrivateDirectory(std::string& path) override { return FoldError(kvl::MakePrivateDirectory(path)); }
    void RemovePrivateDirectory(std::string_view path) override { kvl::RemovePrivateDirectory(path); }

private:
    static bool FindStatus(std::string_view path, struct stat& status) {
        std::string systemPath;
        return ToSystemPath(path, systemPath) == 0 && stat(systemPath.c_str(), &status) == 0;
    }
};

}  // namespace

FileSystem& SystemFiles() {
    PrepareDescriptors();
    static SystemFileSystem files;
    return files;
}

}  // namespace kvl
