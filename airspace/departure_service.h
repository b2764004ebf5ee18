#pragma once

#include "station/model.h"

namespace corvenna {

/// The turn of a VFR pilot on the Approach frequency, inside its airspace: he may go to the Tower when near.
void RunVfrApproach(Station& station, PlayerRecord& pilot);

/// The IFR states of the Approach frequency from tuning it to the hand-off to ARTCC: where the pilot wants
/// to go, and his climb-out. Returns whether his phase is one of these.
bool RunDeparture(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
