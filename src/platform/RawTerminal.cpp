// Signals are blocked except while the process waits for input, so that none can come between making the terminal raw
// and waiting, where it would be lost. A handler puts the terminal back and raises the signal again with its default
// action: the status of the process tells the truth, and a stopped process continues inside the handler.

#include "platform/RawTerminal.h"

#include <poll.h>

#include <cerrno>

namespace kvl {
namespace {

// What the handler needs; it runs only while signals are let in, when all this is complete.
int terminalNumber = -1;
termios terminalBefore;

extern "C" void PutTerminalBack(int signalNumber) {
    const int error = errno;
    tcsetattr(terminalNumber, TCSANOW, &terminalBefore);
    raise(signalNumber);
    errno = error;
}

extern "C" void WakeUp(int) {}

}  // namespace

RawTerminal::RawTerminal(int descriptor) : descriptor_(descriptor) {
    if (tcgetattr(descriptor, &before_) != 0) return;
    terminalNumber = descriptor;
    terminalBefore = before_;
    CatchSignals();
    termios raw = before_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    // What was typed ahead stays.
    tcsetattr(descriptor, TCSADRAIN, &raw);
    isRaw_ = true;
}

RawTerminal::~RawTerminal() {
    if (!isRaw_) return;
    tcsetattr(descriptor_, TCSANOW, &before_);
    ReleaseSignals();
}

bool RawTerminal::WaitForInput() const {
    if (!isRaw_) return true;
    pollfd entry{descriptor_, POLLIN, 0};
    return ppoll(&entry, 1, nullptr, &maskBefore_) > 0 || errno != EINTR;
}

void RawTerminal::CatchSignals() {
    sigset_t caught;
    sigemptyset(&caught);
    for (int number : kSignals)
        sigaddset(&caught, number);
    pthread_sigmask(SIG_BLOCK, &caught, &maskBefore_);
    for (std::size_t i = 0; i < actionsBefore_.size(); ++i) {
        sigaction(kSignals[i], nullptr, &actionsBefore_[i]);
        if (actionsBefore_[i].sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = kSignals[i] == SIGCONT ? WakeUp : PutTerminalBack;
        // Without SA_NODEFER the raised signal would wait for the end of the handler.
        action.sa_flags = kSignals[i] == SIGCONT ? 0 : static_cast<int>(SA_RESETHAND | SA_NODEFER);
        sigemptyset(&action.sa_mask);
        sigaction(kSignals[i], &action, nullptr);
    }
}

void RawTerminal::ReleaseSignals() {
    for (std::size_t i = 0; i < actionsBefore_.size(); ++i)
        sigaction(kSignals[i], &actionsBefore_[i], nullptr);
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

}  // namespace kvl
