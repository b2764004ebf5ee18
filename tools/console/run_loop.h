#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace corvenna {

class SessionConsole;

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

/// Runs a console that has joined its session until the length is over, the terminal asks for the end, or the
/// session ends; it works without anybody at the keyboard. It has left the session when this returns, or
/// throws.
void RunConsole(SessionConsole& console, Terminal& terminal, std::optional<std::chrono::milliseconds> length);

}  // namespace corvenna
