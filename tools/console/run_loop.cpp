#include "tools/console/run_loop.h"

#include <algorithm>
#include <string_view>

#include "tools/console/session_console.h"

namespace corvenna {

namespace {

/// Without blanks at both ends, those of a foreign line end included.
std::string_view WithoutBlanks(std::string_view line) {
    constexpr std::string_view Blanks = " \t\r";
    const auto first = line.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

/// Rounded up: who wakes too early would only have to wait again.
TerminalInput FasterTerminal::Wait(std::chrono::milliseconds atMost) {
    return terminal_.Wait((atMost + std::chrono::milliseconds(speed_ - 1)) / speed_);
}

void RunConsole(SessionConsole& console, Terminal& terminal,
                std::optional<std::chrono::milliseconds> length) {
    while (!console.Over()) {
        auto now = terminal.Now();
        if (length) now = std::min(now, *length);
        console.Step(now);
        if (console.Over() || (length && now >= *length)) break;

        const auto due = length ? std::min(console.NextDue(), *length) : console.NextDue();
        const TerminalInput input =
            terminal.Wait(std::max(due - terminal.Now(), std::chrono::milliseconds(0)));
        for (const std::string& line : input.Lines) {
            if (const std::string_view text = WithoutBlanks(line); !text.empty()) console.Type(text);
        }
        if (input.StopAsked) break;
    }
    console.Leave();
}

}  // namespace corvenna
