#pragma once

#include "station/model.h"

namespace corvenna {

/// The turn of a VFR pilot on the ARTCC frequency: he may go to the Tower when near, and is passed on to the
/// frequency menu where there is an Approach frequency.
void RunVfrArtcc(Station& station, PlayerRecord& pilot);

/// The turn of an IFR pilot: where he wants to go, through traffic, and arrivals until Approach or the Tower
/// has them.
void RunIfrArtcc(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
