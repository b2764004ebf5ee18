#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "station/model.h"

/// The groups of words that a vector is put together from.
namespace corvenna {

/// AssignedHeading and AssignedAltitude are decimal text.
void AssignHeading(PlayerRecord& pilot, std::int16_t heading);
void AssignAltitude(PlayerRecord& pilot, std::int64_t feet);

/// " Turn left heading 90." or the same to the right, whichever is the shorter way round. A heading of 0 is
/// spoken as 360.
void AddTurnWords(std::string& text, const PlayerRecord& pilot, std::int16_t heading);

/// " Climb and Maintain 5000 ft." or " Descent and Maintain ..." for AssignedAltitude; nothing for a pilot
/// who is exactly there.
void AddAltitudeWords(std::string& text, const PlayerRecord& pilot);

/// The menu that every vector ends with.
void AddVectorMenu(std::string& text, std::string_view service);

}  // namespace corvenna
