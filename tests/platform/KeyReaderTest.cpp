#include "platform/KeyReader.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <string_view>
#include <thread>

namespace kvl {
namespace {

// What is asked in turn: "k" a key, "K" a key that is taken as an answer, "b" a byte.
struct KeyRow {
    const char* name;
    std::string_view input, calls, expected;
};

constexpr KeyRow kKeyRows[] = {
    {"LettersOnLines", "a\nn\n", "KKk", "a n 27 "},
    {"LineFeedIsReturn", "\n\n", "KK", "13 13 "},
    {"CrLfBehindAnAnswer", "a\r\nn\r\n", "KKk", "a n 27 "},
    {"CrLfIsOneReturn", "\r\n\r\nx", "KKk", "13 13 x "},
    {"NotBehindAnIgnoredLetter", "x\na", "kkk", "x 13 a "},
    {"OnlyDirectlyBehind", "a \n", "Kkk", "a 32 13 "},
    {"OnlyOneLineEnd", "a\n\n", "Kkk", "a 13 27 "},
    {"TypedLineBehindAnAnswer", "y\nab\n", "Kbbb", "y a b 10 "},
    {"NothingLostBehindACr", "y\rz\n", "Kbbb", "y 13 z 10 "},
    {"EndIsEscape", "", "kkb", "27 27 -1 "},
    {"BytesAreUnsigned", "\xFF\0", "bk", "255 27 "},
};

std::string Shown(int value) {
    return (value >= 'a' && value <= 'z' ? std::string(1, static_cast<char>(value)) : std::to_string(value)) + " ";
}

TEST(KeyReaderTest, FromAPipe) {
    for (const KeyRow& row : kKeyRows) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], row.input.data(), row.input.size()), static_cast<ssize_t>(row.input.size()));
        close(ends[1]);
        KeyReader keys(ends[0]);
        std::string read;
        for (char call : row.calls) {
            read += Shown(call == 'b' ? keys.ReadByte() : keys.ReadKey());
            if (call == 'K') keys.AcceptKey();
        }
        EXPECT_EQ(read, row.expected) << row.name;
        close(ends[0]);
    }
}

class TerminalTest : public testing::Test {
protected:
    TerminalTest() { EXPECT_EQ(openpty(&master_, &terminal_, nullptr, nullptr, nullptr), 0); }
    ~TerminalTest() override {
        close(master_);
        close(terminal_);
    }

    tcflag_t LocalModes() const {
        termios modes{};
        tcgetattr(terminal_, &modes);
        return modes.c_lflag & (ICANON | ECHO | ISIG);
    }
    void WaitFor(tcflag_t modes) const {
        for (int i = 0; i < 5000 && LocalModes() != modes; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_EQ(LocalModes(), modes);
    }

    int master_ = -1;
    int terminal_ = -1;
};

TEST_F(TerminalTest, SignalsFindTheTerminalAsItWas) {
    const tcflag_t before = LocalModes();
    for (int signalNumber : {SIGTERM, SIGHUP, SIGINT}) {
        const pid_t child = fork();
        if (child == 0) {
            setpgid(0, 0);  // without a parent outside its group a process is never stopped
            std::signal(signalNumber, SIG_DFL);
            KeyReader keys(terminal_);
            keys.ReadKey();
            _exit(0);
        }
        WaitFor(ISIG);
        // Stopped and continued, it waits again.
        kill(child, SIGTSTP);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
        EXPECT_TRUE(WIFSTOPPED(status));
        EXPECT_EQ(LocalModes(), before);
        kill(child, SIGCONT);
        WaitFor(ISIG);
        kill(child, signalNumber);
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), signalNumber);
        EXPECT_EQ(LocalModes(), before);
    }
}

}  // namespace
}  // namespace kvl
