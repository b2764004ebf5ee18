#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/console/practice_console.h"

namespace corvenna {

/// What came from outside during a wait.
struct TerminalInput {
    std::vector<std::string> Lines;  ///< typed, without their ends
    bool EndOfInput = false;         ///< nothing more will be typed; told once
    bool StopAsked = false;          ///< Ctrl-C, or the system wants the program to end
};

/// The terminal and its clock.
class Terminal {
  public:
    virtual ~Terminal() = default;

    /// Time since the start. Never goes back.
    virtual std::chrono::milliseconds Now() = 0;

    /// Waits for input, for so long at most.
    virtual TerminalInput Wait(std::chrono::milliseconds atMost) = 0;
};

/// Another terminal on whose clock time runs faster by a whole factor, for everybody alike.
class FasterTerminal final : public Terminal {
  public:
    /// speed: at least 1. The other terminal must outlive this one.
    FasterTerminal(Terminal& terminal, int speed) : terminal_(terminal), speed_(speed) {}

    std::chrono::milliseconds Now() override { return terminal_.Now() * speed_; }
    TerminalInput Wait(std::chrono::milliseconds atMost) override;

  private:
    Terminal& terminal_;
    int speed_;
};

/// Runs a practice until its time is over, the person asks for its end, or the session ends; without a
/// length also until the end of the input. The session has been left when it returns, or throws.
void RunPractice(PracticeConsole& practice, Terminal& terminal,
                 std::optional<std::chrono::milliseconds> length);

}  // namespace corvenna
