#include "practice/motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvenna {

namespace {

constexpr double MilesPerRadian = 60 * 180 / std::numbers::pi;
constexpr double SecondsPerHour = 3600;

constexpr double TaxiGain = 2;          // knots a second
constexpr double TaxiBrake = 3;         // knots a second
constexpr double SlowestTaxi = 2;       // knots, on the last feet
constexpr double TaxiTurn = 25;         // degrees a second
constexpr double SharpTurn = 15;        // degrees off the line
constexpr double KnotsInSharpTurn = 8;  // until the nose is round
constexpr double Corner = 30;           // degrees between two pieces of a track: he slows down for it
constexpr double KnotsInCorner = 12;

constexpr double StandardRate = 3;  // degrees a second
constexpr double AirGain = 3;       // knots a second

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }
double Degrees(double radians) { return radians * (180 / std::numbers::pi); }
double Seconds(std::chrono::milliseconds time) { return static_cast<double>(time.count()) / 1000; }

/// The speed from which he can still come down to another one within so many miles.
double KnotsBefore(double miles, double knots) {
    return std::sqrt(2 * TaxiBrake * SecondsPerHour * miles + knots * knots);
}

void MoveTo(AircraftState& aircraft, Place place) {
    aircraft.Latitude = place.Latitude;
    aircraft.Longitude = place.Longitude;
}

/// The speed with which he can still make the corners ahead, and stop at the end.
double KnotsForTrack(const AircraftState& aircraft, const Track& track) {
    double miles = 0;
    Place from = aircraft.Where();
    for (std::size_t i = track.Next; i < track.Points.size(); ++i) {
        const Place at = track.Points[i];
        miles += MilesBetween(from, at);
        if (i + 1 == track.Points.size()) return KnotsBefore(miles, 0);
        const double turn = TurnFrom(CourseTo(from, at), CourseTo(at, track.Points[i + 1]));
        if (std::abs(turn) > Corner) return KnotsBefore(miles, KnotsInCorner);
        from = at;
    }
    return 0;
}

}  // namespace

double MilesBetween(Place from, Place to) {
    const double north = std::sin(Radians(to.Latitude - from.Latitude) / 2);
    const double east = std::sin(Radians(to.Longitude - from.Longitude) / 2);
    const double half =
        north * north + std::cos(Radians(from.Latitude)) * std::cos(Radians(to.Latitude)) * east * east;
    return 2 * std::asin(std::sqrt(std::min(half, 1.0))) * MilesPerRadian;
}

double CourseTo(Place from, Place to) {
    const double east = Radians(to.Longitude - from.Longitude);
    const double y = std::sin(east) * std::cos(Radians(to.Latitude));
    const double x = std::cos(Radians(from.Latitude)) * std::sin(Radians(to.Latitude)) -
                     std::sin(Radians(from.Latitude)) * std::cos(Radians(to.Latitude)) * std::cos(east);
    return WholeCircle(Degrees(std::atan2(y, x)));
}

Place PlaceBeyond(Place from, double course, double miles) {
    const double way = miles / MilesPerRadian;
    const double latitude = Radians(from.Latitude);
    const double sine =
        std::sin(latitude) * std::cos(way) + std::cos(latitude) * std::sin(way) * std::cos(Radians(course));
    const double east = std::atan2(std::sin(Radians(course)) * std::sin(way) * std::cos(latitude),
                                   std::cos(way) - std::sin(latitude) * sine);
    return {Degrees(std::asin(std::clamp(sine, -1.0, 1.0))),
            std::remainder(from.Longitude + Degrees(east), 360)};
}

double TurnFrom(double heading, double to) { return std::remainder(to - heading, 360); }

double WholeCircle(double heading) {
    const double rest = std::fmod(heading, 360);
    return rest < 0 ? std::fmod(rest + 360, 360) : rest;
}

double Approached(double x, double goal, double atMost) { return x + std::clamp(goal - x, -atMost, atMost); }

// ---- On wheels

double MilesToBrake(double knots) {
    return std::max(knots * knots - KnotsInCorner * KnotsInCorner, 0.0) / (2 * TaxiBrake * SecondsPerHour);
}

bool Taxi(AircraftState& aircraft, Track& track, double knots, std::chrono::milliseconds time) {
    const double seconds = Seconds(time);
    if (track.Next >= track.Points.size()) {
        aircraft.Knots = Approached(aircraft.Knots, 0, TaxiBrake * seconds);
        return aircraft.Knots == 0;
    }
    const double course = CourseTo(aircraft.Where(), track.Points[track.Next]);
    const double off = TurnFrom(aircraft.HeadingTrue, course);
    double limit = std::min(knots, KnotsForTrack(aircraft, track));
    if (std::abs(off) > SharpTurn) limit = std::min(limit, KnotsInSharpTurn);
    if (knots > 0) limit = std::max(limit, SlowestTaxi);
    aircraft.Knots = limit < aircraft.Knots ? Approached(aircraft.Knots, limit, TaxiBrake * seconds)
                                            : Approached(aircraft.Knots, limit, TaxiGain * seconds);
    double miles = aircraft.Knots * seconds / SecondsPerHour;
    if (miles > 0) {
        aircraft.HeadingTrue =
            WholeCircle(aircraft.HeadingTrue + std::clamp(off, -TaxiTurn * seconds, TaxiTurn * seconds));
    }
    while (miles > 0 && track.Next < track.Points.size()) {
        const Place goal = track.Points[track.Next];
        const double left = MilesBetween(aircraft.Where(), goal);
        if (left <= miles) {
            MoveTo(aircraft, goal);
            ++track.Next;
        } else {
            MoveTo(aircraft, PlaceBeyond(aircraft.Where(), CourseTo(aircraft.Where(), goal), miles));
        }
        miles -= left;
    }
    if (track.Next < track.Points.size()) return false;
    aircraft.Knots = 0;
    return true;
}

// ---- In the air

void Steer(AircraftState& aircraft, const Steering& steering, std::chrono::milliseconds time) {
    const double seconds = Seconds(time);
    double turn = TurnFrom(aircraft.HeadingTrue, steering.HeadingTrue);
    const double most = StandardRate * seconds;
    if (std::abs(turn) > most) {
        if (steering.Way == Turn::Left && turn > 0) turn -= 360;
        if (steering.Way == Turn::Right && turn < 0) turn += 360;
    }
    aircraft.HeadingTrue = WholeCircle(aircraft.HeadingTrue + std::clamp(turn, -most, most));
    aircraft.Knots = Approached(aircraft.Knots, steering.Knots, AirGain * seconds);
    const double rate = steering.AltitudeFeet > aircraft.AltitudeFeet ? steering.ClimbFeetPerMinute
                                                                      : steering.DescentFeetPerMinute;
    aircraft.AltitudeFeet = Approached(aircraft.AltitudeFeet, steering.AltitudeFeet, rate * seconds / 60);
    MoveTo(aircraft,
           PlaceBeyond(aircraft.Where(), aircraft.HeadingTrue, aircraft.Knots * seconds / SecondsPerHour));
}

}  // namespace corvenna
