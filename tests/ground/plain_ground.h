#pragma once

#include "ground/taxi_requests.h"
#include "station/model.h"

/// Ground's search and its looks at the traffic once more, written down step by step with nothing kept,
/// counted ahead or left out: the yardstick that the product is held against, and measured against.
namespace corvenna {

/// Where the plain search has got to, for whoever wants to know how often it begins again.
struct PlainSearchCount {
    int Attempts = 0;
    int Links = 0;
};

PlainSearchCount PlainAssignTaxiRoute(Station& station, PlayerRecord& pilot, const GeoPoint& target);

bool PlainComputeRunwayOccupied(const Station& station, const PlayerRecord& pilot);
ParkingOffer PlainUpdateParkingAvailability(Station& station);
void PlainSeparateTaxiRoutes(Station& station, bool runwayOccupied);
void PlainAdvanceTaxiRoutes(Station& station);

/// A service of the tick, in the place of GroundControl.
void PlainGroundControl(Station& station, PlayerRecord& pilot);

/// Whether a place of AirportTaxiPoints has a point that can be measured from.
bool PlainIsPoint(const Station& station, std::int32_t place);

}  // namespace corvenna
