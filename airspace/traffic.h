#pragma once

#include <string_view>

#include "station/model.h"

namespace corvenna {

/// Calls out to a pilot, with a clock position, whoever is less than 5 miles and 3000 ft from him and has
/// not been called out yet. Of several new ones in one call only the last is heard, but all count as called
/// out. service is the word of the text's {service}. Station's thread.
void ScanTraffic(Station& station, PlayerRecord& pilot, std::string_view service);

}  // namespace corvenna
