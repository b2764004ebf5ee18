#pragma once

#include <string_view>

#include "station/model.h"

namespace corvenna {

/// The IFR states of the Approach frequency that bring a pilot to the runway or pass him to ARTCC.
/// Returns whether his phase is one of these.
bool RunApproach(Station& station, PlayerRecord& pilot);

/// Clears a pilot in the "south" quadrant within 15 miles of the airport for the approach: ILS or visual, by
/// RunwayHasIls. A value of that other than -1 and 0 stops all clearances. Vectors end with the clearance,
/// but the heading and altitude stay assigned.
void ClearForApproach(Station& station, PlayerRecord& pilot, std::string_view service);

/// The text of the clearance again, for a pilot who has not acknowledged it.
void RepeatClearance(Station& station, PlayerRecord& pilot, std::string_view service);

}  // namespace corvenna
