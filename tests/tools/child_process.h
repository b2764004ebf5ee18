#pragma once

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvenna {

/// A program that runs beside the test. Its output and its complaints come together, line by line.
class ChildProcess {
  public:
    /// The limit at which a test gives up what should have happened long before.
    static constexpr std::chrono::seconds Patience{60};

    explicit ChildProcess(const std::vector<std::string>& command);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// SIGINT or SIGTERM. On Windows both are Ctrl-Break, which is all that one program can send another.
    void Signal(int signal);

    /// False where a test that needs it is to be skipped.
    static bool CanSignal();
    static constexpr const char* NoSignals = "programs can't be asked to end here";

    void Type(const std::string& line);
    void EndInput();

    /// Reads on until a line has these words, and returns it. Meanwhile runs what is to be done beside it.
    /// When no such line comes the test has failed, and what did come is shown.
    std::string WaitFor(const std::string& words, const std::function<void()>& meanwhile = {});

    /// Reads on until the end, and returns how the program ended: its status, or the signal's negative
    /// number.
    int WaitForEnd(const std::function<void()>& meanwhile = {});

    std::string Output() const;

    std::vector<std::string> Lines;

  private:
    /// What the system has of it.
    struct Process;

    /// False at the end of the output.
    bool ReadSome();

    std::unique_ptr<Process> process_;
    std::size_t next_ = 0;
    std::string pending_;
};

}  // namespace corvenna
