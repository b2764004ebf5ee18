#include "practice/motion.h"

#include <cmath>
#include <numbers>

namespace corvenna {

namespace {

constexpr double MilesPerDegree = 60;
constexpr double MillisecondsPerHour = 3600000;

/// Degrees from one longitude to another, the short way round.
double LongitudeDifference(double from, double to) { return std::remainder(to - from, 360); }

}  // namespace

bool Advance(AircraftState& aircraft, const Leg& leg, std::chrono::milliseconds time) {
    const double shrink = std::cos(aircraft.Latitude * (std::numbers::pi / 180));
    const double north = leg.Latitude - aircraft.Latitude;
    const double east = LongitudeDifference(aircraft.Longitude, leg.Longitude);
    const double milesLeft = std::hypot(north, east * shrink) * MilesPerDegree;
    const double miles = leg.Knots * static_cast<double>(time.count()) / MillisecondsPerHour;

    if (milesLeft > 0) {
        const double course = std::atan2(east * shrink, north) * (180 / std::numbers::pi);
        aircraft.HeadingTrue = course < 0 ? course + 360 : course;
    }
    if (miles >= milesLeft) {
        aircraft.Latitude = leg.Latitude;
        aircraft.Longitude = leg.Longitude;
        aircraft.AltitudeFeet = leg.AltitudeFeet;
        return true;
    }
    const double part = miles / milesLeft;
    aircraft.Latitude += north * part;
    aircraft.Longitude = LongitudeDifference(0, aircraft.Longitude + east * part);
    aircraft.AltitudeFeet += (leg.AltitudeFeet - aircraft.AltitudeFeet) * part;
    return false;
}

}  // namespace corvenna
