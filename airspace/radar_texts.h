#pragma once

#include <string_view>

/// Texts that Approach and ARTCC share; {service} is the word of the one who speaks.
namespace corvenna {

inline constexpr std::string_view TowerMenu =
    "{callsign}. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
inline constexpr std::string_view AskDestination =
    "{callsign}. What is your destination airport?: 1-{airport} 2-Another Airport 3-Close ATC Services";
inline constexpr std::string_view ClearedIls =
    "{callsign}, Cleared for the ILS runway {runway} approach. Maintain heading {heading} and {altitude} ft "
    "until established localizer. Contact Tower on {tower}. Good day. "
    "Choose one of the following options for the {service} frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr std::string_view ClearedVisual =
    "{callsign}, Cleared for the runway {runway} approach. Maintain heading {heading} and {altitude} ft "
    "until you have runway in sight. Contact Tower on {tower}. Good day. "
    "Choose one of the following options for the {service} frequency: 1-Acknowledge 2-Close ATC Services";
inline constexpr std::string_view TuneTowerMenu =
    "{callsign}. Choose one of the following options for the {service} frequency: "
    "1-Tune {airport} Tower Frequency 2-Close ATC Services";

}  // namespace corvenna
