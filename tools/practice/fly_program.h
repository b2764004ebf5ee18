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
    std::filesystem::path Picture;                    ///< empty: none
};

/// Flies, prints what the pilots do, and in the end the summary. Throws SessionError, FileError and
/// std::runtime_error.
void RunFly(const FlyOptions& options, Terminal& terminal, std::ostream& out);

/// "12:34", minutes and seconds.
std::string ClockText(std::chrono::milliseconds time);

}  // namespace corvenna
