#pragma once
// A terminal that hands out single keys without echo, for as long as an object of this class lives. For the files of
// this folder only.

#include <signal.h>
#include <termios.h>

#include <array>

namespace kvl {

// Only the line discipline's lines and echo are off: Ctrl-C still ends the program and the return key still sends LF.
// When a signal ends or stops the process the terminal is put back first. At most one object lives at a time.
class RawTerminal {
public:
    explicit RawTerminal(int descriptor);
    ~RawTerminal();
    RawTerminal(const RawTerminal&) = delete;
    RawTerminal& operator=(const RawTerminal&) = delete;

    // Waits until there is something to read (or the end). False if the process was stopped or a signal came: then the
    // terminal may be as before, and a new object is needed.
    bool WaitForInput() const;

private:
    static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGCONT};

    void CatchSignals();
    void ReleaseSignals();

    int descriptor_;
    bool isRaw_ = false;
    termios before_{};
    sigset_t maskBefore_{};
    std::array<struct sigaction, std::size(kSignals)> actionsBefore_{};
};

}  // namespace kvl
