#include "platform/TemporaryFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace kvl {
namespace {

constexpr std::string_view kPrefix = ".kvlRun-";
constexpr std::string_view kSuffix = ".tmp";
// Names can be taken by what another process with the same number left behind, on another machine or in a container.
constexpr int kNameTrials = 1000;

std::string NextTemporaryName() {
    static unsigned count = 0;
    return std::string(kPrefix) + std::to_string(getpid()) + "-" + std::to_string(++count) + std::string(kSuffix);
}

bool IsTemporaryName(std::string_view name) {
    if (name.size() <= kPrefix.size() + kSuffix.size() || !name.starts_with(kPrefix) || !name.ends_with(kSuffix))
        return false;
    name.remove_prefix(kPrefix.size());
    name.remove_suffix(kSuffix.size());
    return name.find_first_not_of("0123456789-") == std::string_view::npos;
}

// An unnamed file gets a name through its entry there.
bool HasDescriptorDirectory() {
    return access("/proc/self/fd", X_OK) == 0;
}

// The lock goes with the descriptor, at the latest with the process. Where locks are unknown nothing is ever removed.
bool Lock(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

bool IsLockedByAnother(int descriptor) {
    return !Lock(descriptor) && errno == EWOULDBLOCK;
}

// Where that cannot be told it has: a file that is given up wrongly would stay behind.
bool HasName(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}

void RemoveIfLeft(int directory, const char* name) {
    const Descriptor file = OpenDescriptorAt(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    if (Lock(file.Number())) unlinkat(directory, name, 0);
}

// Looks through each directory once in the life of the process. The path belongs to the key because a new directory can
// get the number of one that is gone.
void RemoveLeftFiles(int directory, const std::string& path) {
    static std::set<std::tuple<dev_t, ino_t, std::string>> seen;
    struct stat status {};
    if (fstat(directory, &status) != 0 || !seen.emplace(status.st_dev, status.st_ino, path).second) return;
    Descriptor readable = OpenDescriptorAt(directory, ".", O_RDONLY | O_DIRECTORY);
    if (!readable.IsOpen()) return;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(fdopendir(readable.Number()), &closedir);
    if (entries == nullptr) return;
    readable.Release();
    while (const dirent* entry = readdir(entries.get()))
        if (IsTemporaryName(entry->d_name)) RemoveIfLeft(directory, entry->d_name);
}

}  // namespace

TemporaryFile::~TemporaryFile() {
    if (!temporaryName_.empty() && directory_.IsOpen()) unlinkat(directory_.Number(), temporaryName_.c_str(), 0);
}

int TemporaryFile::Create(const std::string& directory, unsigned mode) {
    directory_ = OpenDescriptor(directory.c_str(), O_PATH | O_DIRECTORY);
    if (!directory_.IsOpen()) return errno;
    RemoveLeftFiles(directory_.Number(), directory);
    if (HasDescriptorDirectory()) file_ = OpenDescriptorAt(directory_.Number(), ".", O_TMPFILE | O_RDWR, mode);
    return file_.IsOpen() ? 0 : CreateNamed(mode);
}

int TemporaryFile::CreateNamed(unsigned mode) {
    for (int trial = 0; trial < kNameTrials; ++trial) {
        const std::string name = NextTemporaryName();
        Descriptor file = OpenDescriptorAt(directory_.Number(), name.c_str(), O_RDWR | O_CREAT | O_EXCL, mode);
        if (!file.IsOpen() && errno != EEXIST) return errno;
        // Between making and locking, another process may have taken the file for a leftover.
        if (!file.IsOpen() || IsLockedByAnother(file.Number()) || !HasName(file.Number())) continue;
        file_ = std::move(file);
        temporaryName_ = name;
        return 0;
    }
    return EEXIST;
}

int TemporaryFile::LinkTemporaryName() {
    Lock(file_.Number());
    const std::string entry = "/proc/self/fd/" + std::to_string(file_.Number());
    for (int trial = 0; trial < kNameTrials; ++trial) {
        const std::string name = NextTemporaryName();
        if (linkat(AT_FDCWD, entry.c_str(), directory_.Number(), name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            temporaryName_ = name;
            return 0;
        }
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

int TemporaryFile::TakeName(const std::string& name) {
    if (temporaryName_.empty())
        if (const int error = LinkTemporaryName()) return error;
    if (renameat(directory_.Number(), temporaryName_.c_str(), directory_.Number(), name.c_str()) != 0) return errno;
    temporaryName_.clear();
    return 0;
}

}  // namespace kvl
