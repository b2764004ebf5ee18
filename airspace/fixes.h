#pragma once

#include <cstdint>
#include <string_view>

#include "station/model.h"

/// The chains of fixes that lead an aircraft around the runway's sides to a final fix 7 miles out on the
/// extended centreline, 2000 ft above the highest mountain on its way. The five fixes of the Station are
/// scratch for whichever pilot is in hand; the pilot's own copy of the one he flies to is his Target.
/// Station's thread.
namespace corvenna {

inline constexpr std::int64_t TerrainMargin = 2000;  // ft
inline constexpr std::int32_t FinalFixMiles = 7;

/// First words of a fix's name. A fix of a chain is "{leg} - {quadrant}".
namespace Leg {
inline constexpr std::string_view LeftDownwind = "Left Downwind Leg";
inline constexpr std::string_view RightDownwind = "Right Downwind Leg";
inline constexpr std::string_view LeftBase = "Left Base Leg";
inline constexpr std::string_view RightBase = "Right Base Leg";
inline constexpr std::string_view Final = "Final Approach";
}  // namespace Leg

/// Puts a fix on a bearing from the runway point, with its altitude back to 0.
void PlaceFix(const Station& station, GeoPoint& fix, std::int16_t bearing, std::int32_t miles);

/// Half of a distance, whole miles, ties to even.
std::int32_t HalfOf(std::int16_t miles);

/// Where a pilot is, as the far end of a route.
GeoPoint PositionOf(const PlayerRecord& pilot);

/// Sends the pilot to the first fix of the chain for his Quadrant, unless he flies there already: his
/// Target, heading, altitude and MenuText. service is the word of the text's {service}.
void BuildPatternFixes(Station& station, PlayerRecord& pilot, std::string_view service);

/// The same for a missed approach, always to the right and 30 miles out, while no fix is assigned.
void BuildMissedApproachFixes(Station& station, PlayerRecord& pilot, std::string_view service);

}  // namespace corvenna
