#pragma once

#include <string_view>

/// Texts of more than one of Ground's tables.
namespace corvenna {

/// The clearance to the runway of a pilot who gets no route.
inline constexpr std::string_view TaxiToRunwayText =
    "{callsign}, Taxi to and hold short runway {runway}. Contact tower on {tower} when ready. "
    "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";

/// Given when a hold falls due, and again in every turn until it is acknowledged.
inline constexpr std::string_view HoldPositionText =
    "{callsign}, Hold position, caution other traffic. "
    "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";

}  // namespace corvenna
