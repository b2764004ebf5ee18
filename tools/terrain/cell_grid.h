#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace corvenna {

/// Highest ground of the world in cells of 5 arc minutes, metres, in two layers: one made of grids whose
/// samples stand 30 arc seconds or less apart, one of all coarser grids. Row 0 is the northernmost, column 0
/// begins at 180 W. One thread at a time.
class CellGrid {
  public:
    static constexpr int Rows = 2160;
    static constexpr int Columns = 4320;
    static constexpr int CellsPerDegree = 12;
    /// The height of a cell that no sample fell in.
    static constexpr std::int16_t NoData = INT16_MIN;

    CellGrid();

    /// The highest sample of either layer.
    std::int16_t Height(int row, int column) const;
    /// The highest sample of the fine layer.
    std::int16_t FineHeight(int row, int column) const;
    /// Whether a fine grid covers the whole cell without a void.
    bool FullyFine(int row, int column) const;

  private:
    friend class GridPlacing;

    std::vector<std::int16_t> coarse_;
    std::vector<std::int16_t> fine_;  // empty until the first fine grid comes
    std::vector<bool> fullyFine_;     // likewise
};

/// Where the samples of an elevation grid stand, degrees, north and east positive.
struct GridShape {
    std::string File;  // for messages
    int Rows = 0;
    int Columns = 0;
    double FirstLatitude = 0;  // of the first row and column; each next one stands a step further on
    double FirstLongitude = 0;
    double LatitudeStep = 0;  // negative when the rows run southwards
    double LongitudeStep = 0;
    double North = 0;  // the area that the samples tell about
    double South = 0;
    double West = 0;
    double East = 0;
    /// A sample that stands on the edge of cells counts for the cells on both sides (else for the southern
    /// and eastern one alone).
    bool EdgeSamplesCountTwice = false;
};

/// Puts the rows of one elevation grid into the cells, in their order; the highest sample of a cell stays.
class GridPlacing {
  public:
    /// Throws FileError when the shape doesn't lie on the Earth, or its samples stand more than 5 arc
    /// minutes apart, which would leave cells without any.
    GridPlacing(CellGrid& cells, const GridShape& shape);

    /// Heights in metres, CellGrid::NoData for a void; as many as the shape has columns. Throws FileError
    /// at a height that no ground on Earth has: that is how a wrong byte order or a wrong unit shows.
    void AddRow(std::span<const std::int16_t> heights);

    /// After the last row: marks the cells that the grid covers wholly.
    void Finish();

  private:
    struct Cells {
        int First;
        int Last;
    };

    Cells CellsAt(double cellsFromEdge) const;
    Cells RowCells(int row) const;
    void CheckShape() const;
    void Place(const Cells& rows, const Cells& columns, std::int16_t height);

    CellGrid& cells_;
    GridShape shape_;
    std::vector<std::int16_t>& layer_;
    bool fine_;
    std::vector<Cells> columnCells_;  // by column of the grid; may run past the cells' last column
    std::vector<bool> voids_;         // of a fine grid, by cell
    int nextRow_ = 0;
};

}  // namespace corvenna
