#include "station/runway_scan.h"

#include <algorithm>
#include <cstdint>

#include "station/geometry.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

bool LowOverRunway(const Station& station, const PlayerRecord& other) {
    return std::int64_t{other.Altitude} - station.RunwayElevation < 300;
}

/// Feet from the threshold. The distance has a cap, so on a runway longer than 32767 ft everybody is near.
bool OnPavement(const Station& station, const PlayerRecord& other) {
    const double latitude = station.RunwayLatitude;
    const double longitude = station.RunwayLongitude;
    const std::int16_t distance = DistanceFeet(latitude, longitude, other.Latitude, other.Longitude);
    if (distance >= station.RunwayLength) return false;

    std::int16_t bearing = BearingTo(station, latitude, longitude, other.Latitude, other.Longitude);
    if (!HeadingWithin(bearing, station.SectorNorth, 30)) return false;

    const GeoPoint axis = ProjectFeet(latitude, longitude, station.SectorNorth, distance);
    return DistanceFeet(axis.Latitude, axis.Longitude, other.Latitude, other.Longitude) <
           ToWhole<std::int32_t>(station.RunwayWidth / 2.0);
}

}  // namespace

bool ComputeRunwayOccupied(const Station& station, const PlayerRecord& pilot) {
    const auto players = station.Players.Valid();
    return std::any_of(players.begin(), players.end(), [&](const PlayerRecord& other) {
        return other.Name != pilot.Name && IsOnRunway(station, other);
    });
}

bool IsOnRunway(const Station& station, const PlayerRecord& other) {
    return LowOverRunway(station, other) && OnPavement(station, other);
}

}  // namespace corvenna
