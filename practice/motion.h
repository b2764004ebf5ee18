#pragma once

#include <chrono>

namespace corvenna {

/// Where a practice aircraft is.
struct AircraftState {
    double Latitude = 0;  ///< degrees, north positive
    double Longitude = 0;
    double AltitudeFeet = 0;
    double HeadingTrue = 0;  ///< degrees
};

/// Where it is going: straight there, reaching the altitude on arrival.
struct Leg {
    double Latitude = 0;
    double Longitude = 0;
    double AltitudeFeet = 0;
    double Knots = 0;  ///< above 0
};

/// Moves an aircraft along a leg for a time, and says whether it has arrived. On flat ground: meant for
/// legs of a few dozen miles. Pure function, any thread.
bool Advance(AircraftState& aircraft, const Leg& leg, std::chrono::milliseconds time);

}  // namespace corvenna
