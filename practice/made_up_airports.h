#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "practice/practice_airports.h"

namespace corvenna {

/// So many airports that do not exist, all over the world: from strips without anything to fields with two
/// runways, gates and all frequencies. Names, codes (they begin with X) and all else come from the seed
/// alone, and the first ones of a longer list are those of a shorter one. Runways are numbered by the
/// magnetic table, which has the layout of Station::MagVarGrid. Any thread.
std::vector<PracticeAirport> MakeUpAirports(int count, std::uint64_t seed,
                                            std::span<const std::int16_t> magVarGrid);

}  // namespace corvenna
