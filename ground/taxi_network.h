#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "station/model.h"

/// The airport's taxi network as Ground reads it. The station's arrays come out of files, so nothing in
/// them is taken on trust: a path may lead to a point that is not there. Station's thread.
namespace corvenna {

/// GeoPoint::Kind of a taxi target.
namespace TaxiTarget {
inline constexpr std::string_view Runway = "Runway";
inline constexpr std::string_view Parking = "Gate or parking";
}  // namespace TaxiTarget

/// Whether there is anything to taxi over: more than one path and more than one point.
bool HasTaxiNetwork(const Station& station);

/// Whether gates and parking are served: a network, and a first spot with a name.
bool HasParking(const Station& station);

/// The point at a place of AirportTaxiPoints. nullptr when no point stands there, or one so far off the
/// globe that MagVarGrid has no entry for it; such a point can neither be taxied to nor measured from.
const TaxiPoint* FindTaxiPoint(const Station& station, std::int32_t place);

/// Taxiways and runways can be walked, in both directions. The ties of parking spots can not.
inline bool IsWalkable(const TaxiPath& path) {
    return path.Kind == TaxiPath::Taxiway || path.Kind == TaxiPath::Runway;
}

/// Whether a path belongs to the runway in use; told by its name alone.
bool IsOfActiveRunway(const Station& station, const TaxiPath& path);

bool IsGate(const ParkingSpot& spot);

/// Whether a participant is nearer to a spot's centre than its radius. On the rim itself he is not.
bool StandsWithin(const PlayerRecord& player, const ParkingSpot& spot);

/// True only when DistanceFeet of the two places is sure to be more than so many feet. Far cheaper than the
/// distance itself: most places that are not close together differ enough in latitude alone.
bool SurelyFartherThan(double feet, double latitude1, double longitude1, double latitude2, double longitude2);

/// DistanceFeet from the points of the network to one place, each measured when it is first asked for.
class PointDistances {
  public:
    static constexpr std::int16_t NoPoint = -1;

    /// The station's points must stay as they are for the life of this.
    PointDistances(const Station& station, double latitude, double longitude);

    /// Feet from a point to the place, or NoPoint where FindTaxiPoint finds none.
    std::int16_t From(std::int32_t point);

  private:
    static constexpr std::int16_t NotMeasured = -2;

    const Station& station_;
    double latitude_;
    double longitude_;
    std::vector<std::int16_t> feet_;
};

}  // namespace corvenna
