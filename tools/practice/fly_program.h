#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
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
    bool Tells = true;  ///< whether what the pilots do is printed, besides the summary

    /// What is to be done beside it in each turn, by the time since the beginning; false ends the flying. May
    /// be missing.
    std::function<bool(std::chrono::milliseconds now)> Meanwhile;
};

/// Flies until the length is over, the terminal asks for the end or what is done meanwhile ends, prints what
/// the pilots do, and in the end the summary. Without an airport it waits for a controller's welcome, as long
/// as need be, and follows when he has left and another one says welcome elsewhere; then there is a summary
/// for each airport. Throws SessionError, also when the length is over before anybody could fly, FileError
/// and std::runtime_error.
void RunFly(const FlyOptions& options, Terminal& terminal, std::ostream& out);

/// "12:34", minutes and seconds.
std::string ClockText(std::chrono::milliseconds time);

}  // namespace corvenna
