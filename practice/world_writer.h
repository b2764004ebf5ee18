#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "practice/practice_airports.h"

namespace corvenna {

/// Writes a simulator folder as far as the controller reads one: an empty fs2002.exe, scenery.cfg,
/// scenery/magdec.bgl with the magnetic table (layout of Station::MagVarGrid), and the airports in BGL files,
/// one area of the scenery library for each part of the world, the made-up ones in an area of their own.
/// One area is named by its absolute path, so the folder stays whole only as long as it is not moved;
/// another is not there, another has no airports. Throws FileError: the folder must be new or empty.
void WritePracticeWorld(const std::filesystem::path& folder, const std::vector<PracticeAirport>& airports,
                        const std::vector<PracticeAirport>& madeUp, std::span<const std::int16_t> magVarGrid);

}  // namespace corvenna
