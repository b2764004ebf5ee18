#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "tools/child_process_system.h"

namespace corvenna {

struct ChildProcess::Process::Handles {
    pid_t Pid = -1;
    int Input = -1;
    int Output = -1;
};

ChildProcess::Process::Process(const std::vector<std::string>& command) : Of(std::make_unique<Handles>()) {
    std::array<int, 2> input{}, output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe can be had");
    }
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    Of->Pid = fork();
    if (Of->Pid < 0) throw std::runtime_error("no process can be had");
    if (Of->Pid == 0) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(output[1], STDERR_FILENO);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    Of->Input = input[1];
    Of->Output = output[0];
}

ChildProcess::Process::~Process() {
    if (Of->Pid > 0) {
        Kill();
        waitpid(Of->Pid, nullptr, 0);
    }
    EndInput();
    close(Of->Output);
}

bool ChildProcess::CanSignal() { return true; }

void ChildProcess::Process::Signal(int signal) { kill(Of->Pid, signal); }

void ChildProcess::Process::Kill() { kill(Of->Pid, SIGKILL); }

bool ChildProcess::Process::Write(std::string_view text) {
    return write(Of->Input, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void ChildProcess::Process::EndInput() {
    if (Of->Input >= 0) close(Of->Input);
    Of->Input = -1;
}

bool ChildProcess::Process::ReadSome(std::string& into) {
    pollfd source{Of->Output, POLLIN, 0};
    if (poll(&source, 1, static_cast<int>(LookInterval.count())) <= 0) return true;
    std::array<char, 4096> buffer{};
    const ssize_t size = read(Of->Output, buffer.data(), buffer.size());
    if (size <= 0) return false;
    into.append(buffer.data(), static_cast<std::size_t>(size));
    return true;
}

int ChildProcess::Process::Wait() {
    int status = 0;
    waitpid(Of->Pid, &status, 0);
    Of->Pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace corvenna
