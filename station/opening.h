#pragma once

#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot who is not under service yet: the welcome, then the question for VFR or IFR.
void RunOpeningDialogue(Station& station, PlayerRecord& pilot);

/// The tick's turn of a pilot under service who is on no frequency of a controlled airport: which
/// frequencies he may tune, by altitude and distance. UpdatePilotGeometry must have run for him.
void RunFrequencyMenu(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
