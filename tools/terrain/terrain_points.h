#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/terrain/cell_grid.h"
#include "tools/terrain/progress.h"
#include "tools/terrain/summits.h"

namespace corvenna {

/// Ground below this height, metres, gives no point.
inline constexpr int LowestPoint = 150;

/// A line of the terrain file.
struct TerrainPoint {
    double Latitude = 0;
    double Longitude = 0;
    int Elevation = 0;  // metres
    int Decimals = 0;   // of the place as it is printed: 3 for a block's point, 4 for a listed one
};

/// The area that points are kept in, degrees, its edges included. West above east goes across 180 degrees.
struct TerrainRegion {
    double North = 90;
    double South = -90;
    double West = -180;
    double East = 180;
};

/// What to do with the cells.
struct TerrainRecipe {
    /// Height of a block in rows of cells: 3 (15 arc minutes) or 1 (5 arc minutes).
    int BlockRows = 3;
    TerrainRegion Region;
};

/// What is added to a block's highest cell because a grid's averages are lower than its summits, metres:
/// by the block's relief, the difference between its highest and lowest cell.
int SummitAllowance(int relief, bool fine);

/// One point for each block of cells that rises to LowestPoint, at its highest cell: the north-western of
/// several. Towards the poles blocks are wider, so that they stay about square. A block wholly covered by
/// fine grids is read from these alone. Where a known summit stands about there, its true height bounds the
/// allowance.
std::vector<TerrainPoint> BlockPoints(const CellGrid& cells, const SummitIndex& peaks,
                                      const TerrainRecipe& recipe, const Progress& progress);

/// All points of a terrain file: of the blocks, of the peaks of at least LowestPoint, of the extra places;
/// those inside the region, sorted by latitude, longitude, elevation, without repetitions.
std::vector<TerrainPoint> TerrainPoints(const CellGrid& cells, const std::vector<Summit>& peaks,
                                        const std::vector<Summit>& extra, const TerrainRecipe& recipe,
                                        const Progress& progress);

/// The points as the text of a terrain file.
std::string TerrainText(const std::vector<TerrainPoint>& points);

}  // namespace corvenna
