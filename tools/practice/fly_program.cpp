#include "tools/practice/fly_program.h"

#include <fmt/format.h>

#include <ostream>

namespace corvenna {

std::string ClockText(std::chrono::milliseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return fmt::format("{:02}:{:02}", seconds / 60, seconds % 60);
}

void RunFly(const FlyOptions& options, Terminal& terminal, std::ostream& out) {
    const auto print = [&](std::chrono::milliseconds time, const std::string& line) {
        out << ClockText(time) << "  " << line << std::endl;
    };
    Station station;
    FindAirport(station, options.Access, terminal);
    FlyingParty party(std::move(station), options.Access, options.Traffic, !options.Picture.empty(), print);
    FlyUntil(party, terminal, options.Length, [](std::chrono::milliseconds) { return true; });
    const std::string summary = party.Summary();
    party.Leave();
    if (!options.Picture.empty()) party.DrawPicture(options.Picture);
    out << summary << std::flush;
}

}  // namespace corvenna
