#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace corvenna {

/// A program of one's own, run with pipes at its three ends; standard error comes with standard output.
class Program {
  public:
    /// The limit at which a test gives up what should have happened long before.
    static constexpr std::chrono::seconds Patience{60};

    explicit Program(const std::vector<std::string>& command) {
        std::array<int, 2> in{}, out{};
        if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) throw Trouble("pipe");
        std::vector<char*> arguments;
        for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        pid_ = fork();
        if (pid_ < 0) throw Trouble("fork");
        if (pid_ == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            dup2(out[1], STDERR_FILENO);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        input_ = in[1];
        output_ = out[0];
    }
    ~Program() {
        EndInput();
        close(output_);
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Types(const std::string& line) {
        const std::string text = line + "\n";
        if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            throw Trouble("write");
    }
    void EndInput() {
        if (input_ >= 0) close(input_);
        input_ = -1;
    }
    void Receives(int signal) { kill(pid_, signal); }
    pid_t Id() const { return pid_; }

    /// Reads until a text has been printed; false when the output ends before, or never brings it. meanwhile
    /// is called all the time.
    bool Prints(const std::string& text, const std::function<void()>& meanwhile = {}) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (Output.find(text) == std::string::npos) {
            if (std::chrono::steady_clock::now() > deadline || !ReadSome(meanwhile)) return false;
        }
        return true;
    }

    /// Reads until the program has ended; its exit status, or 128 + n for signal n.
    int Ends(const std::function<void()>& meanwhile = {}) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (std::chrono::steady_clock::now() < deadline && ReadSome(meanwhile)) {
        }
        int status = 0;
        while (waitpid(pid_, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > deadline) return -1;
            if (meanwhile) meanwhile();
            poll(nullptr, 0, 1);
        }
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::string Output;

  private:
    static std::system_error Trouble(const char* what) { return {errno, std::generic_category(), what}; }

    bool ReadSome(const std::function<void()>& meanwhile) {
        constexpr int LookMilliseconds = 5;
        if (meanwhile) meanwhile();
        pollfd source{output_, POLLIN, 0};
        if (poll(&source, 1, LookMilliseconds) <= 0) return true;
        std::array<char, 4096> buffer{};
        const ssize_t size = read(output_, buffer.data(), buffer.size());
        if (size <= 0) return false;
        Output.append(buffer.data(), static_cast<std::size_t>(size));
        return true;
    }

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
};

}  // namespace corvenna
