#include "tools/console/run_loop.h"

#include <algorithm>

namespace corvenna {

void RunPractice(PracticeConsole& practice, Terminal& terminal,
                 std::optional<std::chrono::milliseconds> length) {
    while (!practice.Over()) {
        auto now = terminal.Now();
        if (length) now = std::min(now, *length);
        practice.Step(now);
        if (practice.Over() || (length && now >= *length)) break;

        const auto due = length ? std::min(practice.NextDue(), *length) : practice.NextDue();
        const TerminalInput input =
            terminal.Wait(std::max(due - terminal.Now(), std::chrono::milliseconds(0)));
        for (const std::string& line : input.Lines) {
            if (line.find_first_not_of(" \t\r") != std::string::npos) practice.Type(line);
        }
        if (input.StopAsked || (input.EndOfInput && !length)) break;
    }
    practice.Leave();
}

}  // namespace corvenna
