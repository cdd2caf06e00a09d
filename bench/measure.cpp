// usage: measure CONSOLE_FILE COMMAND [ARGUMENT ...]
// Runs the command with its console text going to the file and prints "CPU WALL PEAK STATUS": user and system seconds
// together, seconds by the clock, the most memory in use in kilobytes, and the exit value. A small program of its own,
// because a child's peak is never told as less than what its parent held.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace {

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

[[noreturn]] void RunCommand(const char* consolePath, char** command) {
    const int console = open(consolePath, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(console, STDOUT_FILENO);
    execvp(command[0], command);
    std::perror(command[0]);
    _exit(127);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) RunCommand(argv[1], argv + 2);
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0) return 2;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    std::printf("%.6f %.6f %ld %d\n", Seconds(usage.ru_utime) + Seconds(usage.ru_stime), wall.count(), usage.ru_maxrss,
                WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    return 0;
}
