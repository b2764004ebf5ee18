#include "tools/terrain/terrain_points.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>

#include "station/numbers.h"

namespace corvenna {

namespace {

constexpr int HighestOnEarth = 8849;   // metres
constexpr double KnownSummitNm = 6.0;  // a summit this near to a block's point is what the point stands for,
constexpr int KnownSummitMargin = 50;  // unless it is lower than the point by more than this

constexpr int BlockPointDecimals = 3;
constexpr int ListedPointDecimals = 4;

/// How many times as wide as high, in cells, a block is whose middle lies below a latitude.
struct BlockWidth {
    double BelowLatitude;
    int Factor;
};
constexpr BlockWidth BlockWidths[] = {{60, 1}, {75, 2}, {82.5, 4}, {91, 8}};

int WidthFactor(double middleLatitude) {
    const auto* width = std::begin(BlockWidths);
    while (std::abs(middleLatitude) >= width->BelowLatitude) ++width;
    return width->Factor;
}

double CellLatitude(int row) { return 90 - (row + 0.5) / CellGrid::CellsPerDegree; }
double CellLongitude(int column) { return -180 + (column + 0.5) / CellGrid::CellsPerDegree; }

/// The ground of one block.
struct Block {
    int Row, Column, Rows, Columns;  // in cells

    bool FullyFine(const CellGrid& cells) const {
        for (int row = Row; row < Row + Rows; ++row) {
            for (int column = Column; column < Column + Columns; ++column) {
                if (!cells.FullyFine(row, column)) return false;
            }
        }
        return true;
    }
};

struct HighestCell {
    int Height = CellGrid::NoData;
    int Lowest = HighestOnEarth;  // of the block; at least 0
    int Row = 0;
    int Column = 0;
};

HighestCell SearchBlock(const CellGrid& cells, const Block& block, bool fine) {
    HighestCell highest;
    for (int row = block.Row; row < block.Row + block.Rows; ++row) {
        for (int column = block.Column; column < block.Column + block.Columns; ++column) {
            const int height = fine ? cells.FineHeight(row, column) : cells.Height(row, column);
            highest.Lowest = std::min(highest.Lowest, std::max(height, 0));
            if (height <= highest.Height) continue;
            highest.Height = height;
            highest.Row = row;
            highest.Column = column;
        }
    }
    return highest;
}

void AddBlockPoint(const CellGrid& cells, const SummitIndex& peaks, const Block& block,
                   std::vector<TerrainPoint>& points) {
    const bool fine = block.FullyFine(cells);
    const HighestCell highest = SearchBlock(cells, block, fine);
    const int height = highest.Height;
    if (height < LowestPoint) return;
    const double latitude = CellLatitude(highest.Row);
    const double longitude = CellLongitude(highest.Column);
    int elevation = std::min(height + SummitAllowance(height - highest.Lowest, fine), HighestOnEarth);
    const int summit = peaks.HighestNear(latitude, longitude, KnownSummitNm, height - KnownSummitMargin);
    if (summit > 0) elevation = std::min(elevation, std::max(summit, height));
    points.push_back({.Latitude = RoundTo(latitude, 1e3),
                      .Longitude = RoundTo(longitude, 1e3),
                      .Elevation = elevation,
                      .Decimals = BlockPointDecimals});
}

bool Holds(const TerrainRegion& region, const TerrainPoint& point) {
    if (point.Latitude > region.North || point.Latitude < region.South) return false;
    const bool eastOfWest = point.Longitude >= region.West;
    const bool westOfEast = point.Longitude <= region.East;
    return region.West <= region.East ? eastOfWest && westOfEast : eastOfWest || westOfEast;
}

auto SortKey(const TerrainPoint& point) {
    return std::tie(point.Latitude, point.Longitude, point.Elevation, point.Decimals);
}

void AddListed(const std::vector<Summit>& list, int lowest, std::vector<TerrainPoint>& points) {
    for (const Summit& summit : list) {
        if (summit.Elevation < lowest) continue;
        points.push_back({.Latitude = RoundTo(summit.Latitude, 1e4),
                          .Longitude = RoundTo(summit.Longitude, 1e4),
                          .Elevation = summit.Elevation,
                          .Decimals = ListedPointDecimals});
    }
}

}  // namespace

int SummitAllowance(int relief, bool fine) {
    return fine ? std::min(250, 30 + relief / 10) : std::min(700, 50 + 7 * relief / 20);
}

std::vector<TerrainPoint> BlockPoints(const CellGrid& cells, const SummitIndex& peaks,
                                      const TerrainRecipe& recipe, const Progress& progress) {
    std::vector<TerrainPoint> points;
    for (int row = 0; row < CellGrid::Rows; row += recipe.BlockRows) {
        progress("points", static_cast<double>(row) / CellGrid::Rows);
        const double middle = 90 - (row + recipe.BlockRows / 2.0) / CellGrid::CellsPerDegree;
        const int columns = recipe.BlockRows * WidthFactor(middle);
        for (int column = 0; column < CellGrid::Columns; column += columns) {
            AddBlockPoint(cells, peaks, {row, column, recipe.BlockRows, columns}, points);
        }
    }
    return points;
}

std::vector<TerrainPoint> TerrainPoints(const CellGrid& cells, const std::vector<Summit>& peaks,
                                        const std::vector<Summit>& extra, const TerrainRecipe& recipe,
                                        const Progress& progress) {
    std::vector<TerrainPoint> points = BlockPoints(cells, SummitIndex(peaks), recipe, progress);
    AddListed(peaks, LowestPoint, points);
    AddListed(extra, INT32_MIN, points);
    std::erase_if(points, [&](const TerrainPoint& point) { return !Holds(recipe.Region, point); });
    std::sort(points.begin(), points.end(),
              [](const TerrainPoint& a, const TerrainPoint& b) { return SortKey(a) < SortKey(b); });
    points.erase(std::unique(points.begin(), points.end(),
                             [](const TerrainPoint& a, const TerrainPoint& b) {
                                 return a.Latitude == b.Latitude && a.Longitude == b.Longitude &&
                                        a.Elevation == b.Elevation;
                             }),
                 points.end());
    return points;
}

std::string TerrainText(const std::vector<TerrainPoint>& points) {
    std::string text;
    for (const TerrainPoint& point : points) {
        fmt::format_to(std::back_inserter(text), "{:.{}f} {:.{}f} {}\n", point.Latitude, point.Decimals,
                       point.Longitude, point.Decimals, point.Elevation);
    }
    return text;
}

}  // namespace corvenna
