#pragma once

#include "station/model.h"

namespace corvenna {

/// Whether at least one gate, and at least one spot of other parking, is free.
struct ParkingOffer {
    bool Gate = false;
    bool Parking = false;

    bool operator==(const ParkingOffer&) const = default;
};

/// Marks each spot free (Spare 0) or taken (1). Taken is a spot that no path ties to the network, one that
/// any participant stands in, at whatever height, and one whose name a stored route has for its target.
/// Without HasParking the marks stay as they were and nothing is on offer. Station's thread.
ParkingOffer UpdateParkingAvailability(Station& station);

/// Clears a pilot to the runway, without a route where there is no network. Station's thread.
void RequestRunwayTaxi(Station& station, PlayerRecord& pilot);

/// Clears a pilot to the first free gate, or to the first free spot of other parking. Only the marks of
/// UpdateParkingAvailability and the order of the spots count. With none free nothing is said, and the digit
/// stays in Choice. Station's thread.
void RequestParkingTaxi(Station& station, PlayerRecord& pilot, bool wantGate);

}  // namespace corvenna
