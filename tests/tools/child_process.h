#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvenna {

/// A program that runs beside the test. Its output and its complaints come together, line by line.
class ChildProcess {
  public:
    /// The limit at which a test gives up what should have happened long before.
    static constexpr std::chrono::seconds Patience{60};

    explicit ChildProcess(std::vector<std::string> command) {
        std::array<int, 2> input{}, output{};
        if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe can be had");
        }
        std::vector<char*> arguments;
        for (std::string& argument : command) arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        pid_ = fork();
        if (pid_ < 0) throw std::runtime_error("no process can be had");
        if (pid_ == 0) {
            dup2(input[0], STDIN_FILENO);
            dup2(output[1], STDOUT_FILENO);
            dup2(output[1], STDERR_FILENO);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        close(input[0]);
        close(output[1]);
        input_ = input[1];
        output_ = output[0];
    }
    ~ChildProcess() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        close(input_);
        close(output_);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void Signal(int signal) { kill(pid_, signal); }

    void Type(const std::string& line) {
        const std::string text = line + "\n";
        ASSERT_EQ(write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    /// Reads on until a line has these words, and returns it. Meanwhile runs what is to be done beside it.
    /// When no such line comes the test has failed, and what did come is shown.
    std::string WaitFor(const std::string& words, const std::function<void()>& meanwhile = {}) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (std::chrono::steady_clock::now() < deadline) {
            while (next_ < Lines.size()) {
                const std::string& line = Lines[next_++];
                if (line.find(words) != std::string::npos) return line;
            }
            if (meanwhile) meanwhile();
            if (!ReadSome()) break;
        }
        ADD_FAILURE() << "no line says \"" << words << "\":\n" << Output();
        return "";
    }

    /// Reads on until the end, and returns how the program ended: its status, or the signal's negative
    /// number.
    int WaitForEnd(const std::function<void()>& meanwhile = {}) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (ReadSome()) {
            if (meanwhile) meanwhile();
            if (std::chrono::steady_clock::now() < deadline) continue;
            ADD_FAILURE() << "it does not end:\n" << Output();
            kill(pid_, SIGKILL);
        }
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    std::string Output() const {
        std::string all;
        for (const std::string& line : Lines) all += line + "\n";
        return all;
    }

    std::vector<std::string> Lines;

  private:
    /// False at the end of the output.
    bool ReadSome() {
        pollfd source{output_, POLLIN, 0};
        if (poll(&source, 1, LookInterval) <= 0) return true;
        std::array<char, 4096> buffer{};
        const ssize_t size = read(output_, buffer.data(), buffer.size());
        if (size <= 0) return false;
        pending_.append(buffer.data(), static_cast<std::size_t>(size));
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            Lines.push_back(pending_.substr(0, end));
            pending_.erase(0, end + 1);
        }
        return true;
    }

    /// Milliseconds from one look at what is done beside it to the next, while the program says nothing.
    static constexpr int LookInterval = 5;

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::size_t next_ = 0;
    std::string pending_;
};

}  // namespace corvenna
