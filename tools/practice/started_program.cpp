#include "tools/practice/started_program.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

namespace corvenna {

namespace {

constexpr std::chrono::milliseconds LookInterval{10};

/// In the child: nothing that takes memory or locks, as other threads may have held them.
[[noreturn]] void BecomeProgram(char* const* arguments, pid_t parent, int report) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() == parent) execv(arguments[0], arguments);
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
    _exit(127);
}

}  // namespace

/// A pipe that closes by itself when the program has started tells whether it has.
StartedProgram::StartedProgram(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), command[0]);
    }
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) BecomeProgram(arguments.data(), parent, report[1]);
    int error = pid_ < 0 ? errno : 0;
    close(report[1]);
    if (pid_ > 0 && read(report[0], &error, sizeof error) <= 0) error = 0;
    close(report[0]);
    if (error == 0) return;
    if (pid_ > 0) Reap(0);
    throw std::system_error(error, std::generic_category(), command[0]);
}

StartedProgram::~StartedProgram() { End(); }

bool StartedProgram::Reap(int options) {
    int status = 0;
    if (waitpid(pid_, &status, options) != pid_) return false;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return true;
}

std::optional<int> StartedProgram::Status() {
    if (!status_) Reap(WNOHANG);
    return status_;
}

int StartedProgram::End() {
    if (!Status()) kill(pid_, SIGTERM);
    const auto latest = std::chrono::steady_clock::now() + EndTime;
    while (!Status() && std::chrono::steady_clock::now() < latest) std::this_thread::sleep_for(LookInterval);
    if (!Status()) {
        kill(pid_, SIGKILL);
        Reap(0);
    }
    return *status_;
}

}  // namespace corvenna
