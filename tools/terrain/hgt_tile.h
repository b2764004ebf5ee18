#pragma once

#include <string>

#include "tools/terrain/cell_grid.h"
#include "tools/terrain/progress.h"
#include "tools/terrain/raw_grid.h"

namespace corvenna {

/// The form of an SRTM tile of so many bytes, by its name ("N47E011.hgt": its south-west corner): 1201 or
/// 3601 lines of as many big-endian samples, the first and last of them on the tile's edges. Throws
/// FileError when name or length are not those of a tile.
RawGridForm HgtForm(const std::string& path, std::size_t bytes);

/// Puts an SRTM tile, plain or gzipped, into the cells. Throws FileError.
void AddHgtTile(CellGrid& cells, const std::string& path, const Progress& progress);

}  // namespace corvenna
