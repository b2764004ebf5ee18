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

constexpr double StackMiles = 6;    // so near the controller speaks of nothing but the other
constexpr double StackFeet = 3200;  // and so close above him
constexpr double SameLevelFeet = 100;

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

/// On the ground, before his nose by less than so much.
bool Flight::SomebodyInTheWay(double within) const {
    // So near the Earth is flat.
    const double feetNorth = 60 * FeetPerMile;
    const double feetEast = feetNorth * std::cos(aircraft_.Latitude * (std::numbers::pi / 180));
    return std::any_of(others_.begin(), others_.end(), [&](const Sighting& other) {
        if (other.AltitudeFeet > chart_->ElevationFeet() + OnGroundFeet) return false;
        const double north = (other.Where.Latitude - aircraft_.Latitude) * feetNorth;
        const double east = (other.Where.Longitude - aircraft_.Longitude) * feetEast;
        const double feet = std::hypot(north, east);
        if (feet > within || feet < SamePlaceFeet) return false;
        const double course = std::atan2(east, north) * (180 / std::numbers::pi);
        return std::abs(TurnFrom(aircraft_.HeadingTrue, course)) < AheadDegrees;
    });
}

/// The height above sea level at which those who circle without vectors stand one over the other, so that the
/// controller has nobody's traffic to call and hears what they ask for. The lowest stays where he is.
double Flight::FeetAboveOthers() const {
    double least = 0;
    for (const Sighting& other : others_) {
        if (std::abs(other.Where.Latitude - aircraft_.Latitude) * 60 > StackMiles) continue;
        if (MilesBetween(other.Where, aircraft_.Where()) > StackMiles) continue;
        if (other.AltitudeFeet < chart_->ElevationFeet() + OnGroundFeet) continue;
        const double above = aircraft_.AltitudeFeet - other.AltitudeFeet;
        const bool sameLevel = std::abs(above) < SameLevelFeet;
        if (sameLevel ? aircraft_.Latitude < other.Where.Latitude : above < 0) continue;
        least = std::max(least, other.AltitudeFeet + StackFeet);
    }
    return least;
}

}  // namespace corvenna
