#include <algorithm>
#include <cmath>
#include <numbers>

#include "practice/flight_conduct.h"

namespace corvenna {

namespace {

constexpr double FeetPerMile = 1852 / 0.3048;
constexpr double OnGroundFeet = 60;       // above the field: whoever is lower than that rolls
constexpr double GlideFeetPerMile = 600;  // twice the usual one: whoever is lower may be about to land
constexpr double FinalHalfMiles = 0.4;    // beside the centreline, and an eighth of the distance more
constexpr double OwnPlaceMiles = 0.02;    // seen from oneself, a second ago

constexpr double InTheWayFeet = 170;
constexpr double SamePlaceFeet = 15;  // on the same parking spot: nobody gives way there
constexpr double AheadDegrees = 40;

}  // namespace

bool Flight::SomebodyOnRunway() const {
    return std::any_of(others_.begin(), others_.end(), [&](const Sighting& other) {
        return other.AltitudeFeet < chart_->ElevationFeet() + OnGroundFeet && chart_->IsOnRunway(other.Where);
    });
}

/// In the air, before the threshold by at most so much, and about to land.
bool Flight::SomebodyOnFinal(double within) const {
    return std::any_of(others_.begin(), others_.end(), [&](const Sighting& other) {
        const double height = other.AltitudeFeet - chart_->ElevationFeet();
        const RunwayPlace seen = chart_->SeenFromRunway(other.Where);
        const double toGo = -seen.Along;
        return height > OnGroundFeet && toGo > -chart_->RunwayMiles() && toGo < within - OwnPlaceMiles &&
               height < OnGroundFeet + GlideFeetPerMile * std::max(toGo, 0.5) &&
               std::abs(seen.Right) < FinalHalfMiles + std::max(toGo, 0.0) / 8;
    });
}

/// On the ground, close before his nose.
bool Flight::SomebodyInTheWay() const {
    // So near the Earth is flat.
    const double feetNorth = 60 * FeetPerMile;
    const double feetEast = feetNorth * std::cos(aircraft_.Latitude * (std::numbers::pi / 180));
    return std::any_of(others_.begin(), others_.end(), [&](const Sighting& other) {
        if (other.AltitudeFeet > chart_->ElevationFeet() + OnGroundFeet) return false;
        const double north = (other.Where.Latitude - aircraft_.Latitude) * feetNorth;
        const double east = (other.Where.Longitude - aircraft_.Longitude) * feetEast;
        const double feet = std::hypot(north, east);
        if (feet > InTheWayFeet || feet < SamePlaceFeet) return false;
        const double course = std::atan2(east, north) * (180 / std::numbers::pi);
        return std::abs(TurnFrom(aircraft_.HeadingTrue, course)) < AheadDegrees;
    });
}

}  // namespace corvenna
