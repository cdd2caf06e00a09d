// Console and surroundings of the process, tried in child processes of their own.

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

#include "platform/Platform.h"

namespace kvl {
namespace {

struct Outcome {
    std::string output;
    int exitValue = -1;
};

// Runs `work` in a child whose standard input gives `input`, and whose standard output is a pipe or a terminal.
Outcome RunInChild(bool onTerminal, const std::string& input, const std::function<void()>& work) {
    int out[2], in[2];
    EXPECT_EQ(pipe(in), 0);
    EXPECT_EQ(write(in[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
    close(in[1]);
    if (onTerminal) {
        termios modes{};
        cfmakeraw(&modes);
        EXPECT_EQ(openpty(&out[0], &out[1], nullptr, &modes, nullptr), 0);
    } else {
        EXPECT_EQ(pipe(out), 0);
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        close(out[0]);
        close(out[1]);
        work();
        SystemSurroundings().EndProcess(0);
    }
    close(in[0]);
    close(out[1]);
    Outcome outcome;
    char block[4096];
    for (ssize_t count; (count = read(out[0], block, sizeof block)) > 0;)
        outcome.output.append(block, static_cast<std::size_t>(count));
    close(out[0]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status)) outcome.exitValue = WEXITSTATUS(status);
    return outcome;
}

const std::string kControls("\x1B[2J\a\0\x7F\t\r\n\xFC\r|\r\n", 15);

TEST(ConsoleTest, AwayFromATerminalBytesAreAsTheyAre) {
    const Outcome outcome = RunInChild(false, "", [] {
        SystemConsole().Write(kControls, 12);
        SystemConsole().Write(std::string(100000, 'x'));
        SystemConsole().Write("end");
    });
    EXPECT_EQ(outcome.output, kControls + std::string(100000, 'x') + "end");
    EXPECT_EQ(outcome.exitValue, 0);
}

TEST(ConsoleTest, TerminalIsColouredAndNotSteered) {
    const Outcome outcome = RunInChild(true, "", [] {
        unsetenv("NO_COLOR");
        setenv("TERM", "xterm", 1);
        SystemConsole().Write("\nred\r\nx", 12);
        SystemConsole().Write("box", 224);
        SystemConsole().Write(kControls);
        SystemConsole().Write("a\r");
        SystemConsole().Write("\nb\r");
        SystemConsole().Write("c\r");
    });
    EXPECT_EQ(outcome.output,
              "\n\x1B[91mred\x1B[0m\r\n\x1B[91mx\x1B[0m\x1B[30;103mbox\x1B[0m"
              ".[2J...\t\r\n\xFC.|\r\n"
              "a\r\nb.c.");
}

TEST(ConsoleTest, ClosedDescriptorsAreNotTakenByFiles) {
    const std::string path = testing::TempDir() + "kvlTest-closed-" + std::to_string(getpid());
    const Outcome outcome = RunInChild(false, "", [&] {
        for (int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            close(number);
        std::unique_ptr<FileWriter> writer;
        const bool opened = SystemFiles().OpenWriter(path, WriteMode::Stream, writer) == 0;
        SystemConsole().Write("console");
        SystemConsole().Flush();
        if (opened && writer->Write("file") == 0 && SystemConsole().ReadKey() == kKeyEscape) std::_Exit(5);
    });
    EXPECT_EQ(outcome.exitValue, 5);
    std::string content;
    EXPECT_EQ(SystemFiles().ReadWhole(path, content), 0);
    EXPECT_EQ(content, "file");
    std::filesystem::remove(path);
}

TEST(SurroundingsTest, EndOfProcessFlushesAndTidies) {
    const Outcome outcome = RunInChild(false, "", [] {
        std::string directory;
        if (SystemFiles().MakePrivateDirectory(directory) != 0) return;
        SystemConsole().Write(directory);
        RunOnLargeStack(1 << 24, [] { SystemSurroundings().EndProcess(42); });
    });
    EXPECT_EQ(outcome.exitValue, 42);
    EXPECT_NE(outcome.output, "");
    EXPECT_FALSE(std::filesystem::exists(outcome.output));
}

TEST(SurroundingsTest, TimeAndEnvironment) {
    std::tm parts{};
    EXPECT_TRUE(SystemSurroundings().LocalTime(SystemSurroundings().Now(), parts));
    EXPECT_GE(parts.tm_year, 124);
    EXPECT_FALSE(SystemSurroundings().LocalTime(std::numeric_limits<std::int64_t>::max(), parts));
    std::string value;
    setenv("KVL_TEST_VARIABLE", "", 1);
    EXPECT_TRUE(SystemSurroundings().GetEnvironment("KVL_TEST_VARIABLE", value));
    unsetenv("KVL_TEST_VARIABLE");
    EXPECT_FALSE(SystemSurroundings().GetEnvironment("KVL_TEST_VARIABLE", value));
}

// How many blocks that are never touched the process is given, and that it is told when there are no more.
std::string BlocksGiven(std::size_t byteCount, int most) {
    std::vector<std::string> blocks(static_cast<std::size_t>(most));
    int given = 0;
    try {
        for (; given < most; ++given)
            blocks[static_cast<std::size_t>(given)].reserve(byteCount);
    } catch (const std::bad_alloc&) {
        return std::to_string(given);
    }
    return "all";
}

TEST(MemoryLimitTest, IsWhatTheMachineHasOrTheProcessMayTake) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer has its own";
#endif
    const auto limited = [](rlim_t allowed, int most) {
        return RunInChild(false, "",
                          [=] {
                              const rlimit limit{allowed, RLIM_INFINITY};
                              setrlimit(RLIMIT_DATA, &limit);
                              LimitMemory(std::size_t{64} << 20);
                              SystemConsole().Write(BlocksGiven(std::size_t{200} << 20, most));
                          })
            .output;
    };
    EXPECT_EQ(limited(RLIM_INFINITY, 2), "all");
    EXPECT_NE(limited(RLIM_INFINITY, 100000), "all");
    EXPECT_EQ(limited(std::size_t{500} << 20, 10), "2");
    EXPECT_EQ(limited(std::size_t{32} << 20, 10), "0");
}

// Touches about a kilobyte of stack at each level.
std::size_t Descend(std::size_t depth) {
    volatile char frame[1024];
    frame[depth % sizeof frame] = 1;
    return depth == 0 ? 0 : Descend(depth - 1) + static_cast<std::size_t>(frame[depth % sizeof frame]);
}

TEST(LargeStackTest, CarriesDeepRecursion) {
    std::size_t depth = 0;
    RunOnLargeStack(std::size_t{512} << 20, [&] { depth = Descend(100000); });
    EXPECT_EQ(depth, 100000U);
}

TEST(LargeStackTest, FallsBackToWhatIsThere) {
    for (std::size_t size : {std::size_t{1} << 60, std::size_t{1} << 46, std::size_t{1}}) {
        bool done = false;
        RunOnLargeStack(size, [&] { done = true; });
        EXPECT_TRUE(done) << size;
    }
}

TEST(LargeStackTest, ExceptionsReachTheCaller) {
    EXPECT_THROW(RunOnLargeStack(1 << 24, [] { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_THROW(RunOnLargeStack(0, [] { throw std::runtime_error("x"); }), std::runtime_error);
}

}  // namespace
}  // namespace kvl
