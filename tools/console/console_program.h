#pragma once

#include <chrono>
#include <string_view>

namespace corvenna {

/// What runs in a terminal until its time is over or somebody asks for its end. It has no clock and never
/// waits for one: the time since the start is handed in.
class ConsoleProgram {
  public:
    virtual ~ConsoleProgram() = default;

    /// All that is to be done by this time. Throws what cannot be mended; by then it has left its session.
    virtual void Step(std::chrono::milliseconds now) = 0;

    /// When the next Step has something to do.
    virtual std::chrono::milliseconds NextDue() const = 0;

    /// A line that the person at the keyboard typed, in UTF-8, without blanks at its ends; never empty.
    virtual void Type(std::string_view line) = 0;

    /// Whether it is of no use without somebody at the keyboard.
    virtual bool EndsWithInput() const = 0;

    /// Leaves the session properly and says so. The second call does nothing.
    virtual void Leave() = 0;

    /// Whether it has ended, by Leave or by what happened in the session.
    virtual bool Over() const = 0;
};

}  // namespace corvenna
