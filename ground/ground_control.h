#pragma once

#include "ground/taxi_requests.h"
#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot on the Ground frequency: looks at the runway, the parking spots and the routes
/// of all pilots first, and then takes his own dialogue on. Station's thread.
void GroundControl(Station& station, PlayerRecord& pilot);

/// The last step of GroundControl: the pilot's own dialogue, by his altitude, flight rules, Phase and Choice.
void TakeGroundTurn(Station& station, PlayerRecord& pilot, const ParkingOffer& offer);

}  // namespace corvenna
