#pragma once

#include "station/model.h"

namespace corvenna {

/// Clears a pilot to taxi to a target, whose Kind is a word of namespace TaxiTarget: looks for a route over
/// the network, stores it last in TaxiRoutes, says the clearance, and sets Choice and Phase. Where no route
/// is found (he or the target is off the network, or the one can't be reached from the other) nothing is
/// stored and the clearance names no taxiways. A target of any other Kind changes nothing.
///
/// Nothing checks whether the pilot has a route already. Station's thread.
void AssignTaxiRoute(Station& station, PlayerRecord& pilot, const GeoPoint& target);

}  // namespace corvenna
