#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvenna {

/// Another program that runs beside this one, with the same terminal, and not longer than this one. One
/// thread.
class StartedProgram {
  public:
    /// How long a child that is asked to end may take, before it is ended without being asked.
    static constexpr std::chrono::seconds EndTime{10};

    /// Starts a program: its file, then its arguments. Throws std::system_error when it cannot be started.
    explicit StartedProgram(const std::vector<std::string>& command);

    /// Asks it to end, and waits for that.
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// Its exit status once it has ended; 128 + n when signal n has ended it, where there are signals.
    std::optional<int> Status();

    /// Asks it to end, and waits for that. Gives its status.
    int End();

  private:
    struct Process;
    std::unique_ptr<Process> process_;
    std::optional<int> status_;
};

}  // namespace corvenna
