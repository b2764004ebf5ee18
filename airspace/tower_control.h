#pragma once

#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot on the Tower frequency: takeoff clearances, the landing sequence, and the
/// hand-over to Ground, Departure, Approach or ARTCC. Changes his record and the two queues.
/// UpdatePilotGeometry must have run for him. Station's thread.
///
/// Throws EmptyListError where a row takes him out of a queue that is empty; what the row does after that
/// is then left undone. Throws std::overflow_error when a queue is full.
void TowerControl(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
