#pragma once

#include <string>
#include <vector>

#include "station/model.h"

namespace corvenna {

/// Something that controllers or pilots will stumble over at an airport.
struct AirportFinding {
    std::string What;                 ///< a few words: "2 parking spots without a tie"
    std::vector<std::string> Places;  ///< where, one line each; none when it concerns the whole airport

    bool operator==(const AirportFinding&) const = default;
};

/// What is wrong with the selected airport, in the order in which it matters. Empty for a sound one.
/// Station's thread.
std::vector<AirportFinding> CheckAirport(const Station& station);

/// The findings in one line without their places, for the moment of selection; empty when there is none.
std::string FindingsInOneLine(const std::vector<AirportFinding>& findings);

}  // namespace corvenna
