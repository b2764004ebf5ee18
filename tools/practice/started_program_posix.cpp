#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include "tools/practice/started_program.h"

namespace corvenna {

namespace {

constexpr std::chrono::milliseconds LookInterval{10};
constexpr unsigned FirstOther = STDERR_FILENO + 1;

/// In the child: nothing that takes memory or locks, as other threads may have held them.
[[noreturn]] void BecomeProgram(char* const* arguments, pid_t parent, int report) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    close_range(FirstOther, ~0U, CLOSE_RANGE_CLOEXEC);  // sockets stay with who has opened them
    if (getppid() == parent) execv(arguments[0], arguments);
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
    _exit(127);
}

}  // namespace

struct StartedProgram::Process {
    pid_t Id = -1;

    std::optional<int> Reap(int options) const {
        int status = 0;
        if (waitpid(Id, &status, options) != Id) return std::nullopt;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
};

/// A pipe that closes by itself when the program has started tells whether it has.
StartedProgram::StartedProgram(const std::vector<std::string>& command)
    : process_(std::make_unique<Process>()) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), command[0]);
    }
    const pid_t parent = getpid();
    process_->Id = fork();
    if (process_->Id == 0) BecomeProgram(arguments.data(), parent, report[1]);
    int error = process_->Id < 0 ? errno : 0;
    close(report[1]);
    if (process_->Id > 0 && read(report[0], &error, sizeof error) <= 0) error = 0;
    close(report[0]);
    if (error == 0) return;
    if (process_->Id > 0) process_->Reap(0);
    throw std::system_error(error, std::generic_category(), command[0]);
}

StartedProgram::~StartedProgram() { End(); }

std::optional<int> StartedProgram::Status() {
    if (!status_) status_ = process_->Reap(WNOHANG);
    return status_;
}

int StartedProgram::End() {
    if (!Status()) kill(process_->Id, SIGTERM);
    const auto latest = std::chrono::steady_clock::now() + EndTime;
    while (!Status() && std::chrono::steady_clock::now() < latest) std::this_thread::sleep_for(LookInterval);
    if (!Status()) {
        kill(process_->Id, SIGKILL);
        status_ = process_->Reap(0);
    }
    return status_.value_or(-1);
}

}  // namespace corvenna
