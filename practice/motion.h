#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

/// How practice aircraft move. Latitudes and longitudes in degrees, north and east positive; courses and
/// headings in degrees true; miles are nautical. Pure functions, any thread.
namespace corvenna {

struct Place {
    double Latitude = 0;
    double Longitude = 0;

    bool operator==(const Place&) const = default;
};

/// Where a practice aircraft is and how it moves.
struct AircraftState {
    double Latitude = 0;
    double Longitude = 0;
    double AltitudeFeet = 0;
    double HeadingTrue = 0;
    double Knots = 0;

    Place Where() const { return {Latitude, Longitude}; }
};

// ---- Places

double MilesBetween(Place from, Place to);

/// The course at the beginning of the shortest way, 0 to 360; 0 between equal places.
double CourseTo(Place from, Place to);

Place PlaceBeyond(Place from, double course, double miles);

/// Degrees to turn from one heading to another, -180 to 180, right positive.
double TurnFrom(double heading, double to);

/// A heading brought to 0 up to, but not including, 360.
double WholeCircle(double heading);

// ---- On wheels

/// A line of places to taxi along, one after the other.
struct Track {
    std::vector<Place> Points;
    std::size_t Next = 0;  ///< the one that he makes for
};

/// The way that braking from a speed to that of a turn takes.
double MilesToBrake(double knots);

/// Taxis along a track for a time of at most a second or so: gathers speed up to knots (0: brakes to a stop),
/// slows down before turns and towards the end. Says whether it stands at the end.
bool Taxi(AircraftState& aircraft, Track& track, double knots, std::chrono::milliseconds time);

// ---- In the air

enum class Turn { Shorter, Left, Right };

struct Steering {
    double HeadingTrue = 0;
    Turn Way = Turn::Shorter;
    double AltitudeFeet = 0;
    double Knots = 0;
    double ClimbFeetPerMinute = 0;    ///< above 0
    double DescentFeetPerMinute = 0;  ///< above 0
};

/// Flies for a time of at most a second or so: turns at 3 degrees a second, changes altitude and speed
/// gradually.
void Steer(AircraftState& aircraft, const Steering& steering, std::chrono::milliseconds time);

/// x brought towards a goal by at most so much.
double Approached(double x, double goal, double atMost);

}  // namespace corvenna
