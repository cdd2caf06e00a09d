#pragma once
// An outside for tests: files in memory, a console that keeps what is written and answers from a text, a clock that
// stands still, and file operations that fail when told to.
//
//     ScopedPlatform outside;                       // in place until the end of the block
//     outside.memory.Put("/home/a.txt", "text");
//     outside.files.FailAt(FileOperation::Write, 2, ENOSPC);
//     outside.console.input = "a\nn\n";
//     outside.surroundings.now = 1700000000;

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Platform.h"

namespace kvl {

// Files and directories in memory, with "/" as root and "/home" as working directory. Paths are taken as the real file
// system takes them: both separators, relative ones too, ENOENT for drives. No links.
class MemoryFiles : public FileSystem {
public:
    struct Entry {
        bool isDirectory = false;
        bool isReadOnly = false;
        bool isUnreadable = false;
        std::string content;
    };

    MemoryFiles() { PutDirectory(workingDirectory); }

    // Makes the file, and the directories on the way to it.
    void Put(std::string_view path, std::string_view content) {
        const std::string full = FullPath(path);
        PutDirectory(ParentOf(full));
        entries_[full].content = content;
    }
    void PutDirectory(std::string_view path) {
        const std::string full = FullPath(path);
        if (full != "/") PutDirectory(ParentOf(full));
        entries_[full].isDirectory = true;
    }
    void SetReadOnly(std::string_view path) { entries_.at(FullPath(path)).isReadOnly = true; }
    void SetUnreadable(std::string_view path) { entries_.at(FullPath(path)).isUnreadable = true; }
    void Remove(std::string_view path) { entries_.erase(FullPath(path)); }

    bool Has(std::string_view path) const { return Find(path) != nullptr; }
    // The content of a file; "(none)" when there is no such file.
    std::string Get(std::string_view path) const {
        const Entry* entry = Find(path);
        return entry != nullptr && !entry->isDirectory ? entry->content : "(none)";
    }
    // The full paths of all files, sorted.
    std::vector<std::string> FilePaths() const {
        std::vector<std::string> paths;
        for (const auto& [path, entry] : entries_)
            if (!entry.isDirectory) paths.push_back(path);
        return paths;
    }

    std::string workingDirectory = "/home";
    std::string executablePath = "/program/kvlRun";

    int CheckAccess(std::string_view path, Access access) override {
        if (const int error = CheckPath(path)) return error;
        const Entry* entry = Find(path);
        if (entry == nullptr) return ENOENT;
        const bool reads = access == Access::Read || access == Access::ReadWrite;
        const bool writes = access == Access::Write || access == Access::ReadWrite;
        return (reads && entry->isUnreadable) || (writes && entry->isReadOnly) ? EACCES : 0;
    }

    int ReadWhole(std::string_view path, std::string& bytes) override {
        bytes.clear();
        if (const int error = CheckAccess(path, Access::Read)) return error;
        const Entry& entry = *Find(path);
        if (entry.isDirectory) return EISDIR;
        bytes = entry.content;
        return 0;
    }

    int OpenReader(std::string_view path, std::unique_ptr<FileReader>& reader) override {
        std::string bytes;
        if (const int error = ReadWhole(path, bytes)) return error;
        reader = std::make_unique<MemoryReader>(std::move(bytes));
        return 0;
    }

    int OpenWriter(std::string_view path, WriteMode mode, std::unique_ptr<FileWriter>& writer) override {
        if (const int error = CheckPath(path)) return error;
        if (const Entry* entry = Find(path)) {
            if (entry->isDirectory) return EISDIR;
            if (entry->isReadOnly) return EACCES;
        } else if (!IsDirectory(ParentOf(FullPath(path)))) {
            return ENOENT;
        }
        const std::string full = FullPath(path);
        if (mode == WriteMode::Stream) entries_[full].content.clear();
        writer = std::make_unique<MemoryWriter>(*this, full, mode);
        return 0;
    }

    int MakeDirectory(std::string_view path) override {
        if (const int error = CheckPath(path)) return error;
        if (Has(path)) return EEXIST;
        if (!IsDirectory(ParentOf(FullPath(path)))) return ENOENT;
        PutDirectory(path);
        return 0;
    }

    bool IsDirectory(std::string_view path) override {
        const Entry* entry = Find(path);
        return entry != nullptr && entry->isDirectory;
    }

    int Rename(std::string_view from, std::string_view to) override {
        if (!Has(from) || CheckPath(to) != 0) return ENOENT;
        Entry moved = std::move(entries_.at(FullPath(from)));
        entries_.erase(FullPath(from));
        entries_[FullPath(to)] = std::move(moved);
        return 0;
    }

    bool IsSameFile(std::string_view a, std::string_view b) override { return Has(a) && FullPath(a) == FullPath(b); }
    std::string CurrentDirectory() override { return workingDirectory; }
    bool HasDrive(char) override { return false; }
    std::string ExecutablePath() override { return executablePath; }

    int MakePrivateDirectory(std::string& path) override {
        path = "/private" + std::to_string(++privateCount_);
        PutDirectory(path);
        return 0;
    }
    void RemovePrivateDirectory(std::string_view path) override {
        const std::string full = FullPath(path);
        std::erase_if(entries_,
                      [&](const auto& row) { return row.first == full || row.first.starts_with(full + "/"); });
    }

private:
    class MemoryReader : public FileReader {
    public:
        explicit MemoryReader(std::string bytes) : bytes_(std::move(bytes)) {}
        int Read(char* buffer, std::size_t capacity, std::size_t& count) override {
            count = std::min(capacity, bytes_.size() - position_);
            std::memcpy(buffer, bytes_.data() + position_, count);
            position_ += count;
            return 0;
        }

    private:
        std::string bytes_;
        std::size_t position_ = 0;
    };

    class MemoryWriter : public FileWriter {
    public:
        MemoryWriter(MemoryFiles& files, std::string path, WriteMode mode)
            : files_(files), path_(std::move(path)), mode_(mode) {}
        int Write(std::string_view bytes) override {
            (mode_ == WriteMode::Stream ? files_.entries_[path_].content : collected_) += bytes;
            return 0;
        }
        int Commit() override {
            if (mode_ == WriteMode::Replace) files_.entries_[path_].content = std::move(collected_);
            return 0;
        }

    private:
        MemoryFiles& files_;  // outlives this
        std::string path_;
        WriteMode mode_;
        std::string collected_;
    };

    static int CheckPath(std::string_view path) {
        if (path.empty() || (path.size() > 1 && path[1] == ':')) return ENOENT;
        return path.find('\0') != std::string_view::npos ? EINVAL : 0;
    }

    static std::string ParentOf(std::string_view full) {
        const std::size_t separator = full.rfind('/');
        return separator == 0 ? "/" : std::string(full.substr(0, separator));
    }

    std::string FullPath(std::string_view path) const {
        const bool isAbsolute = !path.empty() && (path.front() == '/' || path.front() == '\\');
        std::string rest = (isAbsolute ? std::string() : workingDirectory + "/") + std::string(path) + "/";
        std::replace(rest.begin(), rest.end(), '\\', '/');
        std::string full;
        for (std::size_t begin = 0; begin < rest.size();) {
            const std::size_t end = rest.find('/', begin);
            const std::string piece = rest.substr(begin, end - begin);
            begin = end + 1;
            if (piece == "..")
                full.resize(full.empty() ? 0 : full.rfind('/'));
            else if (!piece.empty() && piece != ".")
                full += "/" + piece;
        }
        return full.empty() ? "/" : full;
    }

    const Entry* Find(std::string_view path) const {
        if (CheckPath(path) != 0) return nullptr;
        const auto found = entries_.find(FullPath(path));
        return found != entries_.end() ? &found->second : nullptr;
    }

    std::map<std::string, Entry> entries_;
    int privateCount_ = 0;
};

enum class FileOperation {
    CheckAccess,
    ReadWhole,
    OpenReader,
    Read,
    OpenWriter,
    Write,
    Commit,
    MakeDirectory,
    Rename,
    MakePrivateDirectory,
    IsDirectory,
    IsSameFile,
    CurrentDirectory,
};
constexpr std::size_t kFileOperationCount = 13;

// Hands everything on to another file system, counts the calls, and lets one of them fail.
class FailingFiles : public FileSystem {
public:
    explicit FailingFiles(FileSystem& base) : base_(base) {}

    // The n-th call of the operation from now on (counted from 1) answers `error` and does nothing else.
    void FailAt(FileOperation operation, int n, int error) { planned_ = Plan{operation, n, error}; }
    // The same with the n-th call of any operation.
    void FailAtAny(int n, int error) { planned_ = Plan{std::nullopt, n, error}; }
    bool HasFailed() const { return planned_.has_value() && planned_->remaining <= 0; }

    int CountOf(FileOperation operation) const { return counts_[static_cast<std::size_t>(operation)]; }
    int CountOfAll() const {
        int sum = 0;
        for (int count : counts_)
            sum += count;
        return sum;
    }

    int CheckAccess(std::string_view path, Access access) override {
        if (const int error = Enter(FileOperation::CheckAccess)) return error;
        return base_.CheckAccess(path, access);
    }
    int ReadWhole(std::string_view path, std::string& bytes) override {
        if (const int error = Enter(FileOperation::ReadWhole)) return error;
        return base_.ReadWhole(path, bytes);
    }
    int OpenReader(std::string_view path, std::unique_ptr<FileReader>& reader) override {
        if (const int error = Enter(FileOperation::OpenReader)) return error;
        std::unique_ptr<FileReader> inner;
        if (const int error = base_.OpenReader(path, inner)) return error;
        reader = std::make_unique<Reader>(*this, std::move(inner));
        return 0;
    }
    int OpenWriter(std::string_view path, WriteMode mode, std::unique_ptr<FileWriter>& writer) override {
        if (const int error = Enter(FileOperation::OpenWriter)) return error;
        std::unique_ptr<FileWriter> inner;
        if (const int error = base_.OpenWriter(path, mode, inner)) return error;
        writer = std::make_unique<Writer>(*this, std::move(inner));
        return 0;
    }
    int MakeDirectory(std::string_view path) override {
        if (const int error = Enter(FileOperation::MakeDirectory)) return error;
        return base_.MakeDirectory(path);
    }
    int Rename(std::string_view from, std::string_view to) override {
        if (const int error = Enter(FileOperation::Rename)) return error;
        return base_.Rename(from, to);
    }
    int MakePrivateDirectory(std::string& path) override {
        if (const int error = Enter(FileOperation::MakePrivateDirectory)) return error;
        return base_.MakePrivateDirectory(path);
    }
    bool IsDirectory(std::string_view path) override {
        return Enter(FileOperation::IsDirectory) == 0 && base_.IsDirectory(path);
    }
    bool IsSameFile(std::string_view a, std::string_view b) override {
        return Enter(FileOperation::IsSameFile) == 0 && base_.IsSameFile(a, b);
    }
    std::string CurrentDirectory() override {
        return Enter(FileOperation::CurrentDirectory) == 0 ? base_.CurrentDirectory() : std::string();
    }
    bool HasDrive(char letter) override { return base_.HasDrive(letter); }
    std::string ExecutablePath() override { return base_.ExecutablePath(); }
    void RemovePrivateDirectory(std::string_view path) override { base_.RemovePrivateDirectory(path); }

private:
    struct Plan {
        std::optional<FileOperation> operation;  // none: any
        int remaining;
        int error;
    };

    class Reader : public FileReader {
    public:
        Reader(FailingFiles& files, std::unique_ptr<FileReader> inner) : files_(files), inner_(std::move(inner)) {}
        int Read(char* buffer, std::size_t capacity, std::size_t& count) override {
            count = 0;
            if (const int error = files_.Enter(FileOperation::Read)) return error;
            return inner_->Read(buffer, capacity, count);
        }

    private:
        FailingFiles& files_;  // outlives this
        std::unique_ptr<FileReader> inner_;
    };

    class Writer : public FileWriter {
    public:
        Writer(FailingFiles& files, std::unique_ptr<FileWriter> inner) : files_(files), inner_(std::move(inner)) {}
        int Write(std::string_view bytes) override {
            if (const int error = files_.Enter(FileOperation::Write)) return error;
            return inner_->Write(bytes);
        }
        int Commit() override {
            if (const int error = files_.Enter(FileOperation::Commit)) return error;
            return inner_->Commit();
        }

    private:
        FailingFiles& files_;  // outlives this
        std::unique_ptr<FileWriter> inner_;
    };

    int Enter(FileOperation operation) {
        ++counts_[static_cast<std::size_t>(operation)];
        if (!planned_ || (planned_->operation && *planned_->operation != operation)) return 0;
        return --planned_->remaining == 0 ? planned_->error : 0;
    }

    FileSystem& base_;  // outlives this
    std::optional<Plan> planned_;
    std::array<int, kFileOperationCount> counts_{};
};

// Keeps what is written; `input` is what standard input has to give, as from a pipe.
class CapturedConsole : public Console {
public:
    struct Piece {
        int colour;
        std::string text;
    };

    std::string output;         // everything written, without colours
    std::vector<Piece> pieces;  // the same, call by call
    std::string input;          // taken from the front
    std::string outputAtInput;  // what had been written when input was last asked for
    bool isTerminal = false;

    // All text written in that colour.
    std::string TextIn(int colour) const {
        std::string text;
        for (const Piece& piece : pieces)
            if (piece.colour == colour) text += piece.text;
        return text;
    }

    void Write(std::string_view text, int colour) override {
        output += text;
        pieces.push_back({colour, std::string(text)});
    }
    void Flush() override {}
    bool IsTerminal() const override { return isTerminal; }

    int ReadKey() override {
        const int byte = ReadByte();
        lastKey_ = byte == -1 ? kKeyEscape : byte == '\n' ? kKeyReturn : byte;
        return lastKey_;
    }
    void AcceptKey() override {
        const int lower = lastKey_ | 0x20;
        passesOverLineEnd_ = lower >= 'a' && lower <= 'z';
    }
    int ReadByte() override {
        outputAtInput = output;
        if (std::exchange(passesOverLineEnd_, false)) {
            const std::string_view rest = input;
            input.erase(0, rest.starts_with("\r\n") ? 2 : rest.starts_with("\n") ? 1 : 0);
        }
        if (input.empty()) return -1;
        const int byte = static_cast<unsigned char>(input.front());
        input.erase(0, 1);
        return byte;
    }

private:
    int lastKey_ = -1;
    bool passesOverLineEnd_ = false;
};

// What EndProcess throws in tests.
struct ProcessEnded {
    int exitValue;
};

// A clock that stands at `now`, in a place whose local time is UTC, and an environment of its own.
class FixedSurroundings : public Surroundings {
public:
    std::int64_t now = 0;
    bool hasLocalTime = true;
    std::map<std::string, std::string> environment;

    std::int64_t Now() override { return now; }
    bool LocalTime(std::int64_t seconds, std::tm& parts) override {
        const std::time_t time = seconds;
        return hasLocalTime && gmtime_r(&time, &parts) != nullptr;
    }
    bool GetEnvironment(const char* name, std::string& value) override {
        const auto found = environment.find(name);
        if (found == environment.end()) return false;
        value = found->second;
        return true;
    }
    [[noreturn]] void EndProcess(int exitValue) override { throw ProcessEnded{exitValue}; }
};

// Puts an outside of its own in the place of the real one for as long as it lives.
class ScopedPlatform {
public:
    MemoryFiles memory;
    FailingFiles files{memory};  // what the program sees: `memory`, unless it is told to fail
    CapturedConsole console;
    FixedSurroundings surroundings;

    ScopedPlatform() : before_(std::exchange(ThePlatform(), Platform{&files, &console, &surroundings})) {}
    // With other files, for example the real ones; they outlive this.
    explicit ScopedPlatform(FileSystem& others)
        : before_(std::exchange(ThePlatform(), Platform{&others, &console, &surroundings})) {}
    ScopedPlatform(const ScopedPlatform&) = delete;
    ScopedPlatform& operator=(const ScopedPlatform&) = delete;
    ~ScopedPlatform() { ThePlatform() = before_; }

private:
    Platform before_;
};

}  // namespace kvl
