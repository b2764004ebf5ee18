#pragma once

#include <string>

#include "tools/terrain/cell_grid.h"
#include "tools/terrain/progress.h"

namespace corvenna {

/// Puts an ESRI ASCII grid, plain or gzipped, into the cells: the header words ncols, nrows, xllcorner or
/// xllcenter, yllcorner or yllcenter, cellsize and perhaps NODATA_value (-9999 without it), in any case and
/// order, then the heights in metres from the north-west on, rounded to whole metres. Throws FileError
/// with file and line.
void AddAsciiGrid(CellGrid& cells, const std::string& path, const Progress& progress);

}  // namespace corvenna
