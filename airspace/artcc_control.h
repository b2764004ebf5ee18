#pragma once

#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot on the ARTCC frequency: traffic, vectors, then his state, out to 200 miles,
/// where he is let go. UpdatePilotGeometry must have run for him. Station's thread.
void ArtccControl(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
