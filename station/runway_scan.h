#pragma once

#include "station/model.h"

namespace corvenna {

/// Whether somebody other than the pilot is on the runway in use: lower than 300 ft above it, within 30
/// degrees of its heading as seen from the threshold, nearer to the threshold than it is long, and nearer
/// to its axis than half its width. Any record with another name counts, whatever its role and service.
/// Station's thread.
bool ComputeRunwayOccupied(const Station& station, const PlayerRecord& pilot);

/// Whether one record, whatever its name, is on the runway in that sense.
bool IsOnRunway(const Station& station, const PlayerRecord& other);

}  // namespace corvenna
