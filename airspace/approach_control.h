#pragma once

#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot on the Approach frequency, which is Departure and Approach in one: the limits
/// of its airspace, traffic, vectors, then his state. UpdatePilotGeometry must have run for him.
/// Station's thread.
void ApproachControl(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
