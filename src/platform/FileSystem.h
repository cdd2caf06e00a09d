#pragma once
// Files and directories as the rest of the program sees them. Paths are texts in which "/" and "\" both separate; they
// are turned into the system's form in the last moment, here. A path with a drive letter names nothing on this system.
//
// Operations answer with an error number of <cerrno>, 0 for success. "No such directory" in the middle of a path and a
// loop of links count as ENOENT, a name that is too long as EINVAL.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kvl {

enum class Access { Exists, Write, Read, ReadWrite };

// A file being read block by block. Closes itself.
class FileReader {
public:
    virtual ~FileReader() = default;
    // Fills `buffer` with up to `capacity` bytes; `count` 0 means the end of the file.
    virtual int Read(char* buffer, std::size_t capacity, std::size_t& count) = 0;
};

// A file being written. What was not committed when the object goes leaves the old file as it was (WriteMode::Replace).
class FileWriter {
public:
    virtual ~FileWriter() = default;
    virtual int Write(std::string_view bytes) = 0;
    // Makes the new content visible under the path. Nothing can be written afterwards.
    virtual int Commit() = 0;
};

enum class WriteMode {
    Replace,  // the file appears whole at Commit, or the old one stays
    Stream,   // bytes appear as they are written (a log); an old file is emptied at once
};

class FileSystem {
public:
    virtual ~FileSystem() = default;

    // May the path be accessed so? A file without any write bit is read-only for everybody, likewise without any read
    // bit.
    virtual int CheckAccess(std::string_view path, Access access) = 0;
    // The whole content of a regular file (or of what can be read to an end). EFBIG for 2^31 bytes or more, EISDIR for
    // a directory.
    virtual int ReadWhole(std::string_view path, std::string& bytes) = 0;
    virtual int OpenReader(std::string_view path, std::unique_ptr<FileReader>& reader) = 0;
    virtual int OpenWriter(std::string_view path, WriteMode mode, std::unique_ptr<FileWriter>& writer) = 0;
    // EEXIST when the directory is there already; also when a file of that name is there.
    virtual int MakeDirectory(std::string_view path) = 0;
    virtual bool IsDirectory(std::string_view path) = 0;
    virtual int Rename(std::string_view from, std::string_view to) = 0;
    // Do both paths name the same existing file, by whatever name or link?
    virtual bool IsSameFile(std::string_view a, std::string_view b) = 0;
    // The working directory, absolute, without a final separator (but "/" itself).
    virtual std::string CurrentDirectory() = 0;
    // Is the upper-case letter a drive of this system?
    virtual bool HasDrive(char letter) = 0;
    // Full path of the running program, links resolved; empty when the system does not tell.
    virtual std::string ExecutablePath() = 0;
    // A new directory that only this user can enter; `path` without final separator.
    virtual int MakePrivateDirectory(std::string& path) = 0;
    // Removes a directory made by MakePrivateDirectory with all below it.
    virtual void RemovePrivateDirectory(std::string_view path) = 0;
};

// The real file system of this machine.
FileSystem& SystemFiles();

}  // namespace kvl
