#pragma once

#include <string_view>

#include "station/model.h"

namespace corvenna {

/// Watches a pilot on his way to his Target: lets go of a fix that he has passed, corrects his heading once
/// per excursion, and renews his altitude by the fixes still before him. Nothing while no fix is assigned.
/// service is the word of the text's {service}. Station's thread.
void SteerToTarget(Station& station, PlayerRecord& pilot, std::string_view service);

}  // namespace corvenna
