#include "tools/terrain/cell_grid.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "world/errors.h"

namespace corvenna {

namespace {

constexpr double FineStep = 1.0 / 120;  // 30 arc seconds
constexpr double CoarsestStep = 1.0 / CellGrid::CellsPerDegree;

/// In cells, 9 metres. A sample this near to the edge of a cell stands on it: steps in file headers are cut
/// decimals and add up to a little less or more than a cell.
constexpr double EdgeTolerance = 0.001;

constexpr int LowestGround = -12000;  // the sea bed counts too
constexpr int HighestGround = 9000;

std::size_t Index(int row, int column) {
    const int wrapped = (column % CellGrid::Columns + CellGrid::Columns) % CellGrid::Columns;
    return static_cast<std::size_t>(row) * CellGrid::Columns + static_cast<std::size_t>(wrapped);
}

double CellsFromNorthPole(double latitude) { return (90 - latitude) * CellGrid::CellsPerDegree; }
double CellsFromDateLine(double longitude) { return (longitude + 180) * CellGrid::CellsPerDegree; }

bool IsFine(const GridShape& shape) {
    const double step = std::max(std::abs(shape.LatitudeStep), std::abs(shape.LongitudeStep));
    return step <= FineStep * (1 + EdgeTolerance);
}

std::size_t CellCount() { return static_cast<std::size_t>(CellGrid::Rows) * CellGrid::Columns; }

}  // namespace

CellGrid::CellGrid() : coarse_(CellCount(), NoData) {}

std::int16_t CellGrid::Height(int row, int column) const {
    return std::max(coarse_[Index(row, column)], FineHeight(row, column));
}

std::int16_t CellGrid::FineHeight(int row, int column) const {
    return fine_.empty() ? NoData : fine_[Index(row, column)];
}

bool CellGrid::FullyFine(int row, int column) const {
    return !fullyFine_.empty() && fullyFine_[Index(row, column)];
}

GridPlacing::GridPlacing(CellGrid& cells, const GridShape& shape)
    : cells_(cells),
      shape_(shape),
      layer_(IsFine(shape) ? cells.fine_ : cells.coarse_),
      fine_(IsFine(shape)) {
    CheckShape();
    if (fine_) {
        cells_.fine_.resize(CellCount(), CellGrid::NoData);
        cells_.fullyFine_.resize(CellCount(), false);
        voids_.resize(CellCount(), false);
    }
    columnCells_.reserve(static_cast<std::size_t>(shape_.Columns));
    for (int column = 0; column < shape_.Columns; ++column) {
        columnCells_.push_back(
            CellsAt(CellsFromDateLine(shape_.FirstLongitude + column * shape_.LongitudeStep)));
    }
}

void GridPlacing::CheckShape() const {
    const double tolerance = EdgeTolerance / CellGrid::CellsPerDegree;
    const auto fail = [this](const std::string& reason) { throw FileError(shape_.File, reason); };
    if (!(shape_.North <= 90 + tolerance && shape_.South >= -90 - tolerance && shape_.South < shape_.North)) {
        fail(fmt::format("latitudes from {} to {} are not on the Earth", shape_.South, shape_.North));
    }
    if (!(shape_.West >= -360 && shape_.East <= 720 && shape_.West < shape_.East &&
          shape_.East - shape_.West <= 360 + tolerance)) {
        fail(fmt::format("longitudes from {} to {} are no part of the Earth", shape_.West, shape_.East));
    }
    const double step = std::max(std::abs(shape_.LatitudeStep), shape_.LongitudeStep);
    if (!(step <= CoarsestStep * (1 + EdgeTolerance))) {
        fail(fmt::format("its samples stand {:.6g} arc minutes apart; 5 are the most", step * 60));
    }
}

GridPlacing::Cells GridPlacing::CellsAt(double cellsFromEdge) const {
    const double nearest = std::round(cellsFromEdge);
    if (std::abs(cellsFromEdge - nearest) > EdgeTolerance) {
        const int cell = static_cast<int>(std::floor(cellsFromEdge));
        return {cell, cell};
    }
    const int cell = static_cast<int>(nearest);
    return {shape_.EdgeSamplesCountTwice ? cell - 1 : cell, cell};
}

GridPlacing::Cells GridPlacing::RowCells(int row) const {
    const Cells rows = CellsAt(CellsFromNorthPole(shape_.FirstLatitude + row * shape_.LatitudeStep));
    return {std::clamp(rows.First, 0, CellGrid::Rows - 1), std::clamp(rows.Last, 0, CellGrid::Rows - 1)};
}

void GridPlacing::Place(const Cells& rows, const Cells& columns, std::int16_t height) {
    for (int row = rows.First; row <= rows.Last; ++row) {
        for (int column = columns.First; column <= columns.Last; ++column) {
            const std::size_t cell = Index(row, column);
            if (height == CellGrid::NoData) {
                if (fine_) voids_[cell] = true;
            } else if (height > layer_[cell]) {
                layer_[cell] = height;
            }
        }
    }
}

void GridPlacing::AddRow(std::span<const std::int16_t> heights) {
    const Cells rows = RowCells(nextRow_);
    for (std::size_t column = 0; column < heights.size(); ++column) {
        const std::int16_t height = heights[column];
        if (height != CellGrid::NoData && (height < LowestGround || height > HighestGround)) {
            throw FileError(shape_.File,
                            fmt::format("row {}, column {}: {} m is no height of ground (wrong byte "
                                        "order, unit or mark of a void?)",
                                        nextRow_ + 1, column + 1, height));
        }
        Place(rows, columnCells_[column], height);
    }
    ++nextRow_;
}

void GridPlacing::Finish() {
    if (!fine_) return;
    const auto firstWhole = [](double edge) { return static_cast<int>(std::ceil(edge - EdgeTolerance)); };
    const auto endWhole = [](double edge) { return static_cast<int>(std::floor(edge + EdgeTolerance)); };
    for (int row = firstWhole(CellsFromNorthPole(shape_.North));
         row < endWhole(CellsFromNorthPole(shape_.South)); ++row) {
        for (int column = firstWhole(CellsFromDateLine(shape_.West));
             column < endWhole(CellsFromDateLine(shape_.East)); ++column) {
            const std::size_t cell = Index(row, column);
            if (!voids_[cell]) cells_.fullyFine_[cell] = true;
        }
    }
}

}  // namespace corvenna
