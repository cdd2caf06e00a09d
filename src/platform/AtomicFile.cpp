#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/Descriptor.h"
#include "platform/TemporaryFile.h"

namespace kvl {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;
// How much is held back from a file that is written in place.
constexpr std::size_t kLargestHeld = std::size_t{64} * 1024 * 1024;
constexpr int kMostLinks = 40;
constexpr unsigned kPermissionBits = 07777;

// A file system that writes late tells its failures when a descriptor is closed. The file itself stays open.
int TakeLateError(int descriptor) {
    const int copy = dup(descriptor);
    return copy < 0 || close(copy) == 0 || errno == EINTR ? 0 : errno;
}

class StreamWriter : public FileWriter {
public:
    explicit StreamWriter(Descriptor file) : file_(std::move(file)) {}
    int Write(std::string_view bytes) override { return WriteFully(file_.Number(), bytes); }
    int Commit() override { return TakeLateError(file_.Number()); }

private:
    Descriptor file_;
};

// Overwrites a file from its front. The space is asked for before the first byte changes, and the old end is cut last,
// so that a full disk leaves the old content.
class InPlaceFile {
public:
    InPlaceFile(Descriptor file, bool isRegular) : file_(std::move(file)), isRegular_(isRegular) {}

    bool IsOpen() const { return file_.IsOpen(); }
    int Number() const { return file_.Number(); }

    int Reserve(std::size_t byteCount) {
        if (!isRegular_ || byteCount == 0) return 0;
        rlimit limit{};  // of which room beyond the file's present end takes no notice
        if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && byteCount > limit.rlim_cur) return EFBIG;
        if (fallocate(file_.Number(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(byteCount)) == 0) return 0;
        return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? errno : 0;
    }

    // Cuts behind the last byte written, also after a failure: new text must not run on into old. Gives `error` back,
    // or the failure of its own.
    int Finish(int error) {
        const off_t end = isRegular_ ? lseek(file_.Number(), 0, SEEK_CUR) : -1;
        const bool changed = end > 0 || error == 0;
        if (end >= 0 && changed && ftruncate(file_.Number(), end) != 0 && error == 0) error = errno;
        return error != 0 ? error : TakeLateError(file_.Number());
    }

private:
    Descriptor file_;
    bool isRegular_;
};

class InPlaceWriter : public FileWriter {
public:
    explicit InPlaceWriter(InPlaceFile file) : file_(std::move(file)) {}

    int Write(std::string_view bytes) override {
        if (error_ == 0 && held_.size() + bytes.size() > kLargestHeld) error_ = WriteHeld();
        if (error_ != 0) return error_;
        if (bytes.size() <= kLargestHeld)
            held_ += bytes;
        else
            error_ = WriteFully(file_.Number(), bytes);
        return error_;
    }

    int Commit() override {
        if (error_ == 0) error_ = WriteHeld();
        return touched_ ? file_.Finish(error_) : error_;
    }

private:
    int WriteHeld() {
        if (!touched_)
            if (const int error = file_.Reserve(held_.size())) return error;
        touched_ = true;
        const int error = WriteFully(file_.Number(), held_);
        held_.clear();
        return error;
    }

    InPlaceFile file_;
    std::string held_;
    bool touched_ = false;
    int error_ = 0;
};

class RenamingWriter : public FileWriter {
public:
    // `existing`: the file to be replaced, if there is one.
    RenamingWriter(TemporaryFile file, std::string name, InPlaceFile existing)
        : file_(std::move(file)), name_(std::move(name)), existing_(std::move(existing)) {}

    int Write(std::string_view bytes) override {
        if (error_ == 0 && buffer_.size() + bytes.size() > kBufferSize) WriteBuffer();
        if (error_ != 0) return error_;
        if (bytes.size() < kBufferSize)
            buffer_ += bytes;
        else
            error_ = WriteFully(file_.Number(), bytes);
        return error_;
    }

    int Commit() override {
        if (error_ == 0) WriteBuffer();
        if (error_ == 0) error_ = TakeLateError(file_.Number());
        if (error_ != 0) return error_;
        error_ = file_.TakeName(name_);
        // A file that another one was mounted on can be written, yet its name cannot be given to a new one.
        if (error_ != 0 && existing_.IsOpen()) error_ = CopyIntoExisting();
        return error_;
    }

private:
    void WriteBuffer() {
        error_ = WriteFully(file_.Number(), buffer_);
        buffer_.clear();
    }

    int CopyIntoExisting() {
        const off_t byteCount = lseek(file_.Number(), 0, SEEK_CUR);
        if (byteCount < 0 || lseek(file_.Number(), 0, SEEK_SET) != 0) return errno;
        if (const int error = existing_.Reserve(static_cast<std::size_t>(byteCount))) return error;
        return existing_.Finish(CopyRest(file_.Number(), existing_.Number()));
    }

    TemporaryFile file_;
    std::string name_;
    InPlaceFile existing_;
    std::string buffer_;
    int error_ = 0;
};

struct Place {
    std::string directory;  // with its last separator
    std::string name;
};

Place SplitPlace(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    if (separator == std::string::npos) return {"./", path};
    return {path.substr(0, separator + 1), path.substr(separator + 1)};
}

// The place that `path` leads to, through all links of its last part; nothing need be there. False for a circle of
// links.
bool FindPlace(std::string path, Place& place) {
    std::string target(4096, '\0');
    for (int count = 0; count <= kMostLinks; ++count) {
        place = SplitPlace(path);
        const ssize_t length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0) return true;
        path = target.substr(0, static_cast<std::size_t>(length));
        if (!path.starts_with('/')) path.insert(0, place.directory);
    }
    return false;
}

// A regular file under one name, whose permissions are told by its mode alone.
bool IsPlainFile(int descriptor, const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           fgetxattr(descriptor, "system.posix_acl_access", nullptr, 0) <= 0;
}

// Gives the file the owner and the permissions of another one; false if it could not have them all.
bool TakeOwnerAndMode(int descriptor, const struct stat& wanted) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) return false;
    const bool owned = status.st_uid == wanted.st_uid && status.st_gid == wanted.st_gid;
    if (!owned && fchown(descriptor, wanted.st_uid, wanted.st_gid) != 0) return false;
    if (fchmod(descriptor, wanted.st_mode & kPermissionBits) != 0 || fstat(descriptor, &status) != 0) return false;
    return status.st_mode == wanted.st_mode;
}

// Is this file the one that stands at the place? A link below /proc leads to a file by other ways than its text.
bool StandsAt(const Place& place, const struct stat& status) {
    struct stat found {};
    return lstat((place.directory + place.name).c_str(), &found) == 0 && found.st_dev == status.st_dev &&
           found.st_ino == status.st_ino;
}

int OpenForExisting(const std::string& path, Descriptor existing, std::unique_ptr<FileWriter>& writer) {
    struct stat status {};
    if (fstat(existing.Number(), &status) != 0) return errno;
    InPlaceFile inPlace(std::move(existing), S_ISREG(status.st_mode));
    Place place;
    TemporaryFile file;
    if (IsPlainFile(inPlace.Number(), status) && FindPlace(path, place) && StandsAt(place, status) &&
        file.Create(place.directory, 0600) == 0 && TakeOwnerAndMode(file.Number(), status))
        writer = std::make_unique<RenamingWriter>(std::move(file), std::move(place.name), std::move(inPlace));
    else
        writer = std::make_unique<InPlaceWriter>(std::move(inPlace));
    return 0;
}

}  // namespace

int OpenStreamWriter(const std::string& path, std::unique_ptr<FileWriter>& writer) {
    // Appending: two runs that have the same log leave no gap in it, whichever of them emptied it last.
    Descriptor file = OpenDescriptor(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0666);
    if (!file.IsOpen()) return errno;
    writer = std::make_unique<StreamWriter>(std::move(file));
    return 0;
}

int OpenReplacingWriter(const std::string& path, std::unique_ptr<FileWriter>& writer) {
    Descriptor existing = OpenDescriptor(path.c_str(), O_WRONLY);
    if (existing.IsOpen()) return OpenForExisting(path, std::move(existing), writer);
    if (errno != ENOENT) return errno;
    Place place;
    if (!FindPlace(path, place)) return ELOOP;
    if (place.name.empty()) return EISDIR;
    TemporaryFile file;
    if (const int error = file.Create(place.directory, 0666)) return error;
    writer = std::make_unique<RenamingWriter>(std::move(file), std::move(place.name), InPlaceFile({}, false));
    return 0;
}

}  // namespace kvl
