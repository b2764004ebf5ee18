#pragma once

#include "station/model.h"

namespace corvenna {

/// The tick's turn of a pilot under service at an uncontrolled airport: the self-announcements of its
/// common frequency, heard by everybody who is on no frequency. UpdatePilotGeometry must have run for him.
void AdvisoryService(Station& station, PlayerRecord& pilot);

}  // namespace corvenna
