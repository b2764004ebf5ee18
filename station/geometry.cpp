#include "station/geometry.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "station/numbers.h"

namespace corvenna {

namespace {

// Shorter than a double could hold: the integer results hang on these very digits.
constexpr double Pi = 3.14159265358979;
constexpr double TwoPi = 6.28318530717958;
constexpr double FeetPerNm = 6080;
constexpr double MetresPerNm = 1852;
constexpr double DistanceCap = 32767;

double Radians(double degrees) { return degrees * (Pi / 180); }

double Squared(double x) { return x * x; }

/// A pair of places in radians.
struct Leg {
    double Lat1, Lon1, Lat2, Lon2;

    Leg(double latitude1, double longitude1, double latitude2, double longitude2)
        : Lat1(Radians(latitude1)),
          Lon1(Radians(longitude1)),
          Lat2(Radians(latitude2)),
          Lon2(Radians(longitude2)) {}

    /// The angle between the places at the Earth's centre: haversine for places less than a radian apart
    /// in both directions, law of cosines for the others.
    double CentralAngle() const {
        if (std::trunc(Lat1 - Lat2) == 0 && std::trunc(Lon2 - Lon1) == 0) {
            return 2 *
                   ArcSin(std::sqrt(Squared(std::sin((Lat1 - Lat2) / 2)) +
                                    std::cos(Lat1) * std::cos(Lat2) * Squared(std::sin((Lon1 - Lon2) / 2))));
        }
        return ArcCos(std::sin(Lat1) * std::sin(Lat2) +
                      std::cos(Lat1) * std::cos(Lat2) * std::cos(Lon1 - Lon2));
    }
};

std::int16_t MilesOf(double angle) {
    return ToWhole<std::int16_t>(std::min(angle * 10800 / Pi, DistanceCap));
}

/// The course of a leg of this central angle, degrees true, a whole number.
std::int16_t TrueCourse(const Leg& leg, double angle) {
    double course = 0;
    if (angle != 0) {
        course = ArcCos((std::sin(leg.Lat2) - std::cos(angle) * std::sin(leg.Lat1)) /
                        (std::cos(leg.Lat1) * std::sin(angle)));
        if (!(std::sin(leg.Lon2 - leg.Lon1) < 0)) course = TwoPi - course;
    }
    return NormalizeHeading(ToWhole<std::int32_t>(360 - std::floor(course * 180 / Pi)));
}

/// Entry of a place in MagVarGrid, as a double because a far-off place may not fit an integer.
double MagVarEntry(double latitude, double longitude) {
    const double wholeLatitude = RoundHalfEven(latitude);
    double wholeLongitude = RoundHalfEven(longitude);
    if (wholeLongitude < 0) wholeLongitude += 360;
    return wholeLatitude + 90 + wholeLongitude * 181;
}

bool IsMagVarEntry(double entry) { return entry >= 0 && entry < static_cast<double>(MagVarGridSize); }

struct Sector {
    std::string_view Word;
    std::int16_t Station::*Centre;
    std::int16_t HalfWidth;
};

constexpr Sector Sectors[] = {
    {"north", &Station::SectorNorth, 30},         {"northeast", &Station::SectorNortheast, 15},
    {"northwest", &Station::SectorNorthwest, 15}, {"east", &Station::SectorEast, 30},
    {"west", &Station::SectorWest, 30},           {"southeast", &Station::SectorSoutheast, 15},
    {"southwest", &Station::SectorSouthwest, 15}, {"south", &Station::SectorSouth, 30},
};

/// The place at a distance on a bearing, rounded to so many decimals.
GeoPoint Project(double latitude, double longitude, double bearing, double nauticalMiles, double tenToN) {
    const double distance = std::max(nauticalMiles, 0.0) * Pi / 10800;
    const double lat1 = Radians(latitude);
    const double lon1 = Radians(-longitude);  // west positive, as the formula wants it
    const double course = Radians(bearing);

    const double lat2 =
        ArcSin(std::sin(lat1) * std::cos(distance) + std::cos(lat1) * std::sin(distance) * std::cos(course));
    double lon2 = lon1;
    if (std::cos(lat2) != 0) {
        const double turn = ArcSin(std::sin(course) * std::sin(distance) / std::cos(lat2));
        lon2 = RealMod(lon1 - turn + Pi, TwoPi) - Pi;
    }

    GeoPoint place;
    place.Latitude = RoundTo(lat2 * (180 / Pi), tenToN);
    place.Longitude = RoundTo(-lon2 * (180 / Pi), tenToN);
    return place;
}

bool SectorHoldsPilot(Station& station, const Sector& sector) {
    return HeadingWithin(station.BearingFromRunway, station.*sector.Centre, sector.HalfWidth);
}

void UpdateQuadrant(Station& station, std::string& quadrant) {
    if (!quadrant.empty()) {
        const auto* const current =
            std::find_if(std::begin(Sectors), std::end(Sectors),
                         [&](const Sector& sector) { return sector.Word == quadrant; });
        if (current != std::end(Sectors) && SectorHoldsPilot(station, *current)) return;
    }
    for (const Sector& sector : Sectors) {
        if (!SectorHoldsPilot(station, sector)) continue;
        quadrant = sector.Word;
        return;
    }
}

}  // namespace

std::int16_t NormalizeHeading(std::int32_t heading) {
    if (heading > 360) heading -= 360;
    if (heading < 0) heading += 360;
    return Narrow<std::int16_t>(heading);
}

bool HeadingInSector(std::int16_t& x, std::int16_t low, std::int16_t high) {
    if (x == 0) x = 360;
    if (low == high) return false;
    const std::int16_t first = low > 360 ? std::int16_t{1} : low;
    if (high > first && high <= 361) return x >= first && x < high;
    if (high >= 2 && high <= 361) return (x >= first && x <= 360) || (x >= 1 && x < high);
    return x >= std::min<std::int16_t>(first, 1) && x <= 360;  // the walk misses this bound and goes round
}

bool HeadingWithin(std::int16_t& x, std::int16_t centre, std::int16_t halfWidth) {
    return HeadingInSector(x, NormalizeHeading(centre - halfWidth), NormalizeHeading(centre + halfWidth));
}

std::int16_t DistanceNm(double latitude1, double longitude1, double latitude2, double longitude2) {
    return MilesOf(Leg(latitude1, longitude1, latitude2, longitude2).CentralAngle());
}

std::int16_t DistanceFeet(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double angle = Leg(latitude1, longitude1, latitude2, longitude2).CentralAngle();
    const double feet = RoundTo5(RoundTo5(angle * 10800 / Pi) * FeetPerNm);
    return ToWhole<std::int16_t>(std::min(feet, DistanceCap));
}

std::int16_t BearingTo(const Station& station, double latitude1, double longitude1, double latitude2,
                       double longitude2) {
    return WayTo(station, latitude1, longitude1, latitude2, longitude2).Bearing;
}

Way WayTo(const Station& station, double latitude1, double longitude1, double latitude2, double longitude2) {
    const Leg leg(latitude1, longitude1, latitude2, longitude2);
    const double angle = leg.CentralAngle();
    return {MilesOf(angle), TrueToMagnetic(station, TrueCourse(leg, angle), latitude1, longitude1)};
}

bool InMagVarGrid(double latitude, double longitude) {
    return IsMagVarEntry(MagVarEntry(latitude, longitude));
}

std::int32_t MagneticVariation(const Station& station, double latitude, double longitude) {
    const double entry = MagVarEntry(latitude, longitude);
    if (!IsMagVarEntry(entry)) throw std::out_of_range("a place lies outside the magnetic variation table");
    const std::int32_t value = station.MagVarGrid[static_cast<std::size_t>(entry)];
    return value * 360 / 65536;
}

std::int16_t TrueToMagnetic(const Station& station, std::int32_t heading, double latitude, double longitude) {
    return NormalizeHeading(heading - MagneticVariation(station, latitude, longitude));
}

GeoPoint ProjectNm(double latitude, double longitude, std::int32_t bearing, std::int32_t nauticalMiles) {
    return ProjectNmExact(latitude, longitude, bearing, nauticalMiles);
}

GeoPoint ProjectFeet(double latitude, double longitude, std::int32_t bearing, std::int32_t feet) {
    return ProjectNmExact(latitude, longitude, bearing, feet / FeetPerNm);
}

GeoPoint ProjectNmExact(double latitude, double longitude, double bearing, double nauticalMiles) {
    return Project(latitude, longitude, bearing, nauticalMiles, 1e5);
}

GeoPoint ProjectMetres(double latitude, double longitude, std::int32_t bearing, double metres) {
    return Project(latitude, longitude, bearing, metres / MetresPerNm, 1e6);
}

void UpdatePilotGeometry(Station& station, PlayerRecord& pilot) {
    station.DistanceToAirport =
        DistanceNm(station.AirportLatitude, station.AirportLongitude, pilot.Latitude, pilot.Longitude);
    const Way way =
        WayTo(station, station.RunwayLatitude, station.RunwayLongitude, pilot.Latitude, pilot.Longitude);
    station.DistanceToRunway = way.Distance;
    station.BearingFromRunway = way.Bearing;
    UpdateQuadrant(station, pilot.Quadrant);
}

void ComputeSectorCentres(Station& station) {
    const std::int32_t runway = station.RunwayHeading;
    station.SectorNorth = NormalizeHeading(runway);
    station.SectorNortheast = NormalizeHeading(runway + 45);
    station.SectorNorthwest = NormalizeHeading(runway - 45);
    station.SectorEast = NormalizeHeading(runway + 90);
    station.SectorWest = NormalizeHeading(runway - 90);
    station.SectorSouth = NormalizeHeading(runway - 180);
    station.SectorSoutheast = NormalizeHeading(runway + 135);
    station.SectorSouthwest = NormalizeHeading(runway - 135);
}

std::int32_t UnpackHeading(std::int32_t packedAttitude) {
    const std::int32_t bits = (packedAttitude / 4) & 1023;
    return ToWhole<std::int32_t>(bits / 1024.0 * 360);
}

double ArcSin(double x) {
    if (x < -1 || x > 1) return 0;
    return 2 * std::atan(x / (1 + std::sqrt(1 - x * x)));
}

double ArcCos(double x) {
    if (x < -1 || x > 1) return 0;
    if (x >= 0) return 2 * std::atan(std::sqrt((1 - x) / (1 + x)));
    return Pi - 2 * std::atan(std::sqrt((1 + x) / (1 - x)));
}

double RealMod(double y, double x) {
    const double rest = y - x * std::floor(y / x);
    return rest < 0 ? rest + x : rest;
}

}  // namespace corvenna
