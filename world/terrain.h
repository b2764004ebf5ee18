#pragma once

#include <string_view>

#include "station/model.h"
#include "world/airport_selection.h"

namespace corvenna {

/// Reads world_terrain.db: adds the points within 100 nautical miles of the airport to Mountains and sets
/// HighestTerrain to the highest point in the box plus 2000 feet. Mountains that are there already stay; the
/// closing of a station takes them away. Throws FileError with the number of the line that makes no sense;
/// the station is as before then. Station's thread.
void LoadTerrain(Station& station, std::string_view appFolder, const SearchBox& box);

/// The same from the file's content; `name` stands for the file in errors.
void LoadTerrainText(Station& station, std::string_view content, const SearchBox& box, std::string_view name);

}  // namespace corvenna
