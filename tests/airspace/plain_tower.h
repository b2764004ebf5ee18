#pragma once

#include "station/model.h"

namespace corvenna::plain {

/// The runway scan written down as it is meant: every record is looked at in the same order of tests, to
/// the end of the list.
bool ComputeRunwayOccupied(const Station& station, const PlayerRecord& pilot);

/// TowerControl written down as one long decision, with the runway scanned at the head of every call. It
/// shares the geometry and the queues with the real one, and nothing else.
void TowerControl(Station& station, PlayerRecord& pilot);

}  // namespace corvenna::plain
