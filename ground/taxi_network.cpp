#include "ground/taxi_network.h"

#include <cmath>

#include "station/geometry.h"
#include "station/text.h"

namespace corvenna {

bool HasTaxiNetwork(const Station& station) {
    return station.AirportTaxiPaths.size() > 1 && station.AirportTaxiPoints.size() > 1;
}

bool HasParking(const Station& station) {
    return HasTaxiNetwork(station) && !station.AirportParkingSpots.empty() &&
           !station.AirportParkingSpots[0].Name.empty();
}

const TaxiPoint* FindTaxiPoint(const Station& station, std::int32_t place) {
    if (place < 0 || static_cast<std::size_t>(place) >= station.AirportTaxiPoints.size()) return nullptr;
    const TaxiPoint& point = station.AirportTaxiPoints[static_cast<std::size_t>(place)];
    return InMagVarGrid(point.Latitude, point.Longitude) ? &point : nullptr;
}

bool IsOfActiveRunway(const Station& station, const TaxiPath& path) {
    constexpr std::string_view Prefix = "runway ";
    const std::string_view name = path.Name;
    return name.size() == Prefix.size() + station.ActiveRunway.size() &&
           EqualIgnoringCase(name.substr(0, Prefix.size()), Prefix) &&
           EqualIgnoringCase(name.substr(Prefix.size()), station.ActiveRunway);
}

bool IsGate(const ParkingSpot& spot) { return ContainsIgnoringCase(spot.Name, "GATE"); }

bool StandsWithin(const PlayerRecord& player, const ParkingSpot& spot) {
    if (spot.Radius <= 0) return false;
    if (SurelyFartherThan(spot.Radius, player.Latitude, player.Longitude, spot.Latitude, spot.Longitude)) {
        return false;
    }
    return InMagVarGrid(spot.Latitude, spot.Longitude) &&
           DistanceFeet(player.Latitude, player.Longitude, spot.Latitude, spot.Longitude) < spot.Radius;
}

// On the globe, the angle between two places is never less than their difference in latitude. Within 50
// degrees of longitude the distance is that angle to far less than a foot, but for its cap.
bool SurelyFartherThan(double feet, double latitude1, double longitude1, double latitude2,
                       double longitude2) {
    constexpr double FeetPerDegree = 60 * 6080;
    constexpr double Margin = 2;
    constexpr double DistanceCap = 32767;
    const double apart = std::abs(latitude1 - latitude2);
    return apart * FeetPerDegree > feet + Margin && feet + Margin < DistanceCap && apart < 50 &&
           std::abs(longitude1 - longitude2) < 50 && std::abs(latitude1) <= 90 && std::abs(latitude2) <= 90;
}

PointDistances::PointDistances(const Station& station, double latitude, double longitude)
    : station_(station),
      latitude_(latitude),
      longitude_(longitude),
      feet_(station.AirportTaxiPoints.size(), NotMeasured) {}

std::int16_t PointDistances::From(std::int32_t point) {
    if (point < 0 || static_cast<std::size_t>(point) >= feet_.size()) return NoPoint;
    std::int16_t& feet = feet_[static_cast<std::size_t>(point)];
    if (feet == NotMeasured) {
        const TaxiPoint* const from = FindTaxiPoint(station_, point);
        feet =
            from == nullptr ? NoPoint : DistanceFeet(from->Latitude, from->Longitude, latitude_, longitude_);
    }
    return feet;
}

}  // namespace corvenna
