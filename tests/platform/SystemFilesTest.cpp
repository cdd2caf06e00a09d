#include <fcntl.h>

#include <cerrno>
#include <thread>

#include "platform/RealDirectory.h"
#include "support/TestPlatform.h"

namespace kvl {
namespace {

class SystemFilesTest : public RealDirectory {
protected:
    FileSystem& files_ = SystemFiles();
    std::string bytes_;
    std::unique_ptr<FileReader> reader_;
    std::unique_ptr<FileWriter> writer_;
};

TEST_F(SystemFilesTest, ReadWholeOfAnySize) {
    for (std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 300000U}) {
        const std::string content(size, 'x');
        Put("a", content);
        EXPECT_EQ(files_.ReadWhole(root_ + "\\a", bytes_), 0);
        EXPECT_EQ(bytes_, content) << size;
    }
    // A file that does not tell its size.
    EXPECT_EQ(files_.ReadWhole("/proc/self/status", bytes_), 0);
    EXPECT_TRUE(bytes_.starts_with("Name:"));
}

TEST_F(SystemFilesTest, ReadsFromAPipe) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    const std::string content(200000, 'p');
    std::thread sender([&] { Put("pipe", content); });
    EXPECT_EQ(files_.ReadWhole(Path("pipe"), bytes_), 0);
    sender.join();
    EXPECT_EQ(bytes_, content);
}

TEST_F(SystemFilesTest, ReadsBlockByBlock) {
    Put("a", "abcdefg");
    ASSERT_EQ(files_.OpenReader(Path("a"), reader_), 0);
    std::string read;
    char block[3];
    std::size_t count = 1;
    while (count > 0) {
        ASSERT_EQ(reader_->Read(block, sizeof block, count), 0);
        read.append(block, count).append("|");
    }
    EXPECT_EQ(read, "abc|def|g||");
}

TEST_F(SystemFilesTest, RefusesWhatIsTooLarge) {
    Put("large", "");
    ASSERT_EQ(truncate(Path("large").c_str(), off_t{1} << 31), 0);
    EXPECT_EQ(files_.ReadWhole(Path("large"), bytes_), EFBIG);
    EXPECT_EQ(files_.OpenReader(Path("large"), reader_), 0);
}

TEST_F(SystemFilesTest, PathsThatNameNothing) {
    Put("file", "x");
    std::filesystem::create_symlink("loop", Path("loop"));
    const struct {
        std::string path;
        int error;
    } rows[] = {
        {"", ENOENT},
        {"C:", ENOENT},
        {"c:\\x", ENOENT},
        {Path("none/x"), ENOENT},
        {Path("file/x"), ENOENT},
        {Path("loop"), ENOENT},
        {Path(std::string(300, 'n')), EINVAL},
        {Path(std::string(5000, '/') + "n"), EINVAL},
        {Path(std::string("a\0b", 3)), EINVAL},
    };
    for (const auto& [path, error] : rows) {
        EXPECT_EQ(files_.CheckAccess(path, Access::Exists), error) << path;
        EXPECT_EQ(files_.ReadWhole(path, bytes_), error) << path;
        EXPECT_EQ(files_.OpenReader(path, reader_), error) << path;
        EXPECT_EQ(files_.OpenWriter(path, WriteMode::Replace, writer_), error) << path;
        EXPECT_EQ(files_.OpenWriter(path, WriteMode::Stream, writer_), error) << path;
        EXPECT_FALSE(files_.IsDirectory(path));
        EXPECT_FALSE(files_.IsSameFile(path, path));
        if (path == Path("loop")) continue;  // a link is a name that can be given away
        EXPECT_EQ(files_.Rename(Path("file"), path), error) << path;
        EXPECT_EQ(files_.MakeDirectory(path), error) << path;
    }
}

TEST_F(SystemFilesTest, BitsCountForEverybody) {
    const struct {
        unsigned mode;
        int read, write, both;
    } rows[] = {{0644, 0, 0, 0}, {0444, 0, EACCES, EACCES}, {0200, EACCES, 0, EACCES}, {0, EACCES, EACCES, EACCES}};
    Put("a", "old");
    const std::string path = Path("a");
    for (const auto& row : rows) {
        ASSERT_EQ(chmod(path.c_str(), row.mode), 0);
        EXPECT_EQ(files_.CheckAccess(path, Access::Exists), 0);
        EXPECT_EQ(files_.CheckAccess(path, Access::Read), row.read) << row.mode;
        EXPECT_EQ(files_.CheckAccess(path, Access::Write), row.write) << row.mode;
        EXPECT_EQ(files_.CheckAccess(path, Access::ReadWrite), row.both) << row.mode;
        EXPECT_EQ(files_.ReadWhole(path, bytes_), row.read) << row.mode;
        EXPECT_EQ(files_.OpenWriter(path, WriteMode::Replace, writer_), row.write) << row.mode;
    }
    EXPECT_EQ(files_.OpenWriter(path, WriteMode::Stream, writer_), EACCES);
}

TEST_F(SystemFilesTest, SameFileByAnyName) {
    Put("a", "");
    Put("b", "");
    std::filesystem::create_symlink("a", Path("soft"));
    std::filesystem::create_hard_link(Path("a"), Path("hard"));
    EXPECT_TRUE(files_.IsSameFile(Path("a"), Path("./a")));
    EXPECT_TRUE(files_.IsSameFile(Path("a"), Path("soft")));
    EXPECT_TRUE(files_.IsSameFile(Path("hard"), Path("soft")));
    EXPECT_FALSE(files_.IsSameFile(Path("a"), Path("b")));
}

TEST_F(SystemFilesTest, PrivateDirectoryGoesWithAllBelowIt) {
    std::string made;
    ASSERT_EQ(files_.MakePrivateDirectory(made), 0);
    EXPECT_EQ(std::filesystem::status(made).permissions(), std::filesystem::perms::owner_all);
    std::filesystem::create_directories(made + "/x/y");
    std::ofstream(made + "/x/y/z") << "z";
    files_.RemovePrivateDirectory(made);
    EXPECT_FALSE(std::filesystem::exists(made));
    setenv("TMPDIR", (root_ + "//").c_str(), 1);
    ASSERT_EQ(files_.MakePrivateDirectory(made), 0);
    unsetenv("TMPDIR");
    EXPECT_TRUE(made.starts_with(root_ + "/") && made[root_.size() + 1] != '/') << made;
    files_.RemovePrivateDirectory(made);
    // No other directory can be removed that way.
    files_.RemovePrivateDirectory(root_);
    EXPECT_TRUE(std::filesystem::exists(root_));
}

TEST_F(SystemFilesTest, KnowsWhereItIs) {
    EXPECT_EQ(files_.CurrentDirectory(), std::filesystem::current_path());
    EXPECT_EQ(files_.ExecutablePath(), std::filesystem::read_symlink("/proc/self/exe"));
    EXPECT_FALSE(files_.HasDrive('C'));
}

// The files in memory, on which most tests run, answer as the real ones.
TEST_F(SystemFilesTest, MemoryFilesAnswerAlike) {
    MemoryFiles memory;
    memory.PutDirectory(root_);
    for (FileSystem* files : {&files_, static_cast<FileSystem*>(&memory)}) {
        EXPECT_EQ(files->MakeDirectory(Path("d")), 0);
        EXPECT_EQ(files->MakeDirectory(Path("d\\")), EEXIST);
        EXPECT_EQ(files->MakeDirectory(Path("none/d")), ENOENT);
        ASSERT_EQ(files->OpenWriter(Path("d\\a"), WriteMode::Replace, writer_), 0);
        EXPECT_EQ(writer_->Write("one"), 0);
        EXPECT_EQ(files->CheckAccess(Path("d/a"), Access::Exists), ENOENT);
        EXPECT_EQ(writer_->Commit(), 0);
        EXPECT_EQ(files->ReadWhole(Path("d/../d/a"), bytes_), 0);
        EXPECT_EQ(bytes_, "one");
        EXPECT_EQ(files->MakeDirectory(Path("d/a")), EEXIST);
        ASSERT_EQ(files->OpenWriter(Path("d/a"), WriteMode::Stream, writer_), 0);
        EXPECT_EQ(writer_->Write("log"), 0);
        EXPECT_EQ(files->ReadWhole(Path("d/a"), bytes_), 0);
        EXPECT_EQ(bytes_, "log");
        EXPECT_EQ(files->Rename(Path("d/a"), Path("d/b")), 0);
        EXPECT_EQ(files->Rename(Path("d/a"), Path("d/b")), ENOENT);
        EXPECT_TRUE(files->IsDirectory(Path("d")));
        EXPECT_FALSE(files->IsDirectory(Path("d/b")));
        EXPECT_EQ(files->ReadWhole(Path("d"), bytes_), EISDIR);
        EXPECT_EQ(files->OpenReader(Path("d"), reader_), EISDIR);
        EXPECT_EQ(files->OpenWriter(Path("d"), WriteMode::Replace, writer_), EISDIR);
        EXPECT_EQ(files->OpenWriter(Path("d"), WriteMode::Stream, writer_), EISDIR);
        EXPECT_EQ(files->OpenWriter("C:\\x", WriteMode::Replace, writer_), ENOENT);
    }
}

}  // namespace
}  // namespace kvl
