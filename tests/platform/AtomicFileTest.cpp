// Generated files: whole or not at all.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

#include <cerrno>
#include <memory>
#include <thread>

#include "platform/FileSystem.h"
#include "platform/RealDirectory.h"

namespace kvl {
namespace {

using Names = std::vector<std::string>;

class AtomicFileTest : public RealDirectory {
protected:
    int Replace(const std::string& path, const std::string& content) {
        std::unique_ptr<FileWriter> writer;
        if (const int error = SystemFiles().OpenWriter(path, WriteMode::Replace, writer)) return error;
        if (const int error = writer->Write(content)) return error;
        return writer->Commit();
    }
};

TEST_F(AtomicFileTest, OldContentStaysUntilCommit) {
    Put("a", "old");
    for (const std::size_t size : {3U, 65536U, 1000000U}) {
        std::unique_ptr<FileWriter> writer;
        ASSERT_EQ(SystemFiles().OpenWriter(Path("a"), WriteMode::Replace, writer), 0);
        EXPECT_EQ(writer->Write(std::string(size, 'x')), 0);
        EXPECT_EQ(Get("a"), "old");
        writer.reset();
        EXPECT_EQ(Get("a"), "old");
        EXPECT_EQ(Entries(), Names{"a"});
    }
}

TEST_F(AtomicFileTest, ManyWritesOfAnySizeAreOneFile) {
    std::unique_ptr<FileWriter> writer;
    ASSERT_EQ(SystemFiles().OpenWriter(Path("a"), WriteMode::Replace, writer), 0);
    std::string expected;
    for (std::size_t size = 1; size < 400000; size = 3 * size + 1) {
        const std::string piece(size, static_cast<char>('a' + size % 26));
        EXPECT_EQ(writer->Write(piece), 0);
        expected += piece;
    }
    EXPECT_TRUE(Entries().empty());
    EXPECT_EQ(writer->Commit(), 0);
    EXPECT_EQ(Get("a"), expected);
}

TEST_F(AtomicFileTest, PermissionsAreKeptAndNewOnesFollowTheMask) {
    const mode_t before = umask(027);
    EXPECT_EQ(Replace(Path("new"), "n"), 0);
    umask(before);
    EXPECT_EQ(Mode("new"), 0640U);
    Put("old", "old");
    ASSERT_EQ(chmod(Path("old").c_str(), 0751), 0);
    const ino_t inode = Status("old").st_ino;
    EXPECT_EQ(Replace(Path("old"), "new"), 0);
    EXPECT_EQ(Mode("old"), 0751U);
    EXPECT_NE(Status("old").st_ino, inode);
    EXPECT_EQ(Get("old"), "new");
}

TEST_F(AtomicFileTest, OwnerIsKept) {
    if (geteuid() != 0) GTEST_SKIP() << "needs the superuser";
    Put("a", "old");
    ASSERT_EQ(chown(Path("a").c_str(), 1234, 2345), 0);
    EXPECT_EQ(Replace(Path("a"), "new"), 0);
    EXPECT_EQ(Status("a").st_uid, 1234U);
    EXPECT_EQ(Status("a").st_gid, 2345U);
    EXPECT_EQ(Get("a"), "new");
}

TEST_F(AtomicFileTest, LinksAreFollowed) {
    std::filesystem::create_directory(Path("d"));
    Put("d/target", "old");
    std::filesystem::create_symlink("d/second", Path("first"));
    std::filesystem::create_symlink("target", Path("d/second"));
    std::filesystem::create_symlink(Path("d/fresh"), Path("dangling"));
    EXPECT_EQ(Replace(Path("first"), "new"), 0);
    EXPECT_EQ(Replace(Path("dangling"), "made"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(Path("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(Path("dangling")));
    EXPECT_EQ(Get("d/target"), "new");
    EXPECT_EQ(Get("d/fresh"), "made");
    for (int i = 0; i <= 40; ++i)
        std::filesystem::create_symlink("link" + std::to_string(i + 1), Path("link" + std::to_string(i)));
    EXPECT_NE(Replace(Path("link0"), "beyond 40"), 0);
    EXPECT_EQ(Replace(Path("link1"), "by 40"), 0);
    EXPECT_EQ(Get("link41"), "by 40");
}

TEST_F(AtomicFileTest, HardLinksAreWrittenInPlace) {
    Put("a", "a longer old content");
    std::filesystem::create_hard_link(Path("a"), Path("b"));
    std::unique_ptr<FileWriter> writer;
    ASSERT_EQ(SystemFiles().OpenWriter(Path("a"), WriteMode::Replace, writer), 0);
    EXPECT_EQ(writer->Write("new"), 0);
    EXPECT_EQ(Get("b"), "a longer old content");
    EXPECT_EQ(writer->Commit(), 0);
    EXPECT_EQ(Get("b"), "new");
    EXPECT_TRUE(std::filesystem::equivalent(Path("a"), Path("b")));
    // More than is held back, in pieces and at once.
    const std::string large(70U << 20, 'l');
    EXPECT_EQ(Replace(Path("a"), large), 0);
    EXPECT_EQ(Status("b").st_size, static_cast<off_t>(large.size()));
    EXPECT_EQ(Replace(Path("b"), ""), 0);
    EXPECT_EQ(Status("a").st_size, 0);
}

TEST_F(AtomicFileTest, DevicesAndPipesAreWrittenInPlace) {
    EXPECT_EQ(Replace("/dev/null", "x"), 0);
    EXPECT_EQ(Replace("/dev/full", "x"), ENOSPC);
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    std::string received;
    std::thread receiver([&] { received = Get("pipe"); });
    const std::string content(300000, 'p');
    EXPECT_EQ(Replace(Path("pipe"), content), 0);
    receiver.join();
    EXPECT_EQ(received, content);
    EXPECT_TRUE(std::filesystem::is_fifo(Path("pipe")));
}

TEST_F(AtomicFileTest, DirectoryThatTakesNoNewFile) {
    if (geteuid() != 0) GTEST_SKIP() << "needs the superuser";
    ASSERT_EQ(chmod(root_.c_str(), 0755), 0);
    Put("a", "old content");
    ASSERT_EQ(chmod(Path("a").c_str(), 0666), 0);
    ASSERT_EQ(seteuid(1234), 0);
    const int replaced = Replace(Path("a"), "new");
    const int made = Replace(Path("b"), "new");
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(replaced, 0);
    EXPECT_EQ(made, EACCES);
    EXPECT_EQ(Get("a"), "new");
    EXPECT_EQ(Entries(), Names{"a"});
}

TEST_F(AtomicFileTest, FailedWriteLeavesTheOldFile) {
    Put("a", "old");
    Put("linked", "old");  // is written in place
    ASSERT_EQ(link(Path("linked").c_str(), Path("link").c_str()), 0);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{100000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const int atWrite = Replace(Path("a"), std::string(300000, 'x'));
    const int inPlace = Replace(Path("linked"), std::string(300000, 'x'));
    std::unique_ptr<FileWriter> writer;
    int atCommit = SystemFiles().OpenWriter(Path("a"), WriteMode::Replace, writer);
    for (int i = 0; i < 3 && atCommit == 0; ++i)
        atCommit = writer->Write(std::string(40000, 'x'));
    if (atCommit == 0) atCommit = writer->Commit();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(atWrite, EFBIG);
    EXPECT_EQ(inPlace, EFBIG);
    EXPECT_EQ(Get("linked"), "old");
    EXPECT_EQ(atCommit, EFBIG);
    EXPECT_EQ(writer->Commit(), EFBIG);
    EXPECT_EQ(Get("a"), "old");
    writer.reset();
    EXPECT_EQ(Entries(), (Names{"a", "link", "linked"}));
}

TEST_F(AtomicFileTest, OnlyUnlockedLeftoversAreRemoved) {
    const Names kept = {".kvlRun-", ".kvlRun-1-2.tmp", ".kvlRun-1-2.tmpx", ".kvlRun-mine.tmp", "x.kvlRun-1-1.tmp"};
    for (const std::string& name : kept)
        Put(name, "");
    Put(".kvlRun-1-1.tmp", "");
    const int lock = open(Path(".kvlRun-1-2.tmp").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(Replace(Path("z"), "z"), 0);
    close(lock);
    Names expected = kept;
    expected.push_back("z");
    EXPECT_EQ(Entries(), expected);
}

TEST_F(AtomicFileTest, StreamAppearsAsItIsWritten) {
    Put("log", "old");
    std::unique_ptr<FileWriter> writer;
    ASSERT_EQ(SystemFiles().OpenWriter(Path("log"), WriteMode::Stream, writer), 0);
    EXPECT_EQ(Get("log"), "");
    EXPECT_EQ(writer->Write("one\n"), 0);
    EXPECT_EQ(Get("log"), "one\n");
    // Another run that has the same log empties it; no gap is left where this one goes on.
    std::unique_ptr<FileWriter> other;
    ASSERT_EQ(SystemFiles().OpenWriter(Path("log"), WriteMode::Stream, other), 0);
    EXPECT_EQ(writer->Write("two\n"), 0);
    EXPECT_EQ(Get("log"), "two\n");
    EXPECT_EQ(writer->Commit(), 0);
    EXPECT_EQ(SystemFiles().OpenWriter("/dev/full", WriteMode::Stream, writer), 0);
    EXPECT_EQ(writer->Write("x"), ENOSPC);
}

}  // namespace
}  // namespace kvl
