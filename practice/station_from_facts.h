#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "practice/practice_airports.h"
#include "station/model.h"

namespace corvenna {

/// Fills the fields of the airport from facts, as if it had been selected from scanned scenery: the first
/// end of the longest runway is the active one; frequencies that are lacking are filled in, among them that
/// of the centre from another airport of the list within 200 nm. No terrain. The table is that of
/// WholeDegreeTable, and becomes the station's. Session and traffic are left alone.
void FillStation(Station& station, const PracticeAirport& airport,
                 const std::vector<PracticeAirport>& neighbours, std::vector<std::int16_t> magVarGrid);

/// How the scenery scan would write a frequency: "121.7".
std::string FrequencyLabel(double megahertz);

/// Fills in what is lacking of the four labels of a station and tells equal ones apart by suffixes.
/// Neither ground nor tower: all but the centre's become empty. centre finds a stand-in for an empty
/// ArtccFrequency.
void CompleteFrequencies(Station& station, std::string_view centre);

}  // namespace corvenna
