#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "tools/practice/flying_party.h"

namespace corvenna {

/// Practice pilots in a session that somebody else hosts.
struct FlyOptions {
    SessionAccess Access;
    TrafficPlan Traffic;
    std::optional<std::chrono::milliseconds> Length;  ///< by the terminal's clock
    std::filesystem::path Picture;                    ///< of the last airport; empty: none
};

/// Flies until the length is over or the terminal asks for the end, prints what the pilots do, and in the end
/// the summary. Without an airport it waits for a controller's welcome, as long as need be, and follows when
/// he has left and another one says welcome elsewhere; then there is a summary for each airport. Throws
/// SessionError, also when the length is over before anybody could fly, FileError and std::runtime_error.
void RunFly(const FlyOptions& options, Terminal& terminal, std::ostream& out);

/// "12:34", minutes and seconds.
std::string ClockText(std::chrono::milliseconds time);

}  // namespace corvenna
