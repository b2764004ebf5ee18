#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/terrain/cell_grid.h"
#include "tools/terrain/progress.h"

namespace corvenna {

/// Most rows, and most columns, that a grid may declare.
inline constexpr int LongestGridSide = 1'000'000;

enum class ByteOrder { Little, Big };

/// Whether the extents of a grid are the outer edges of its samples' cells, or its first and last samples.
enum class SampleStand { Cells, Points };

/// A headerless grid of signed 16-bit heights in metres, row by row, each from west to east. The defaults are
/// the form of the shipped grid, the whole world in cells of 5 arc minutes.
struct RawGridForm {
    std::string File;
    ByteOrder Order = ByteOrder::Little;
    int Rows = CellGrid::Rows;
    int Columns = CellGrid::Columns;
    double North = 90;  // extents, degrees
    double South = -90;
    double West = -180;
    double East = 180;
    SampleStand Stand = SampleStand::Cells;
    bool FromSouth = false;       // the first row is the southernmost
    int Void = CellGrid::NoData;  // the number that stands for no height
};

/// A form out of "FILE" or "FILE,key=value,...", with the keys order (little or big), rows, columns, north,
/// south, west, east, samples (cells or points), from (north or south) and void. Throws FileError that
/// names the file and the key.
RawGridForm ParseRawGridForm(std::string_view text);

/// Where the samples of such a grid stand. Throws FileError for a grid of points with fewer than two rows
/// or columns.
GridShape ShapeOf(const RawGridForm& form);

/// The heights of one row of bytes; `into` has half as many elements. The void becomes CellGrid::NoData.
void DecodeHeights(std::span<const char> bytes, ByteOrder order, int voidMark, std::span<std::int16_t> into);

/// Puts a raw grid, plain or gzipped, into the cells. Throws FileError when it can't be read or is
/// shorter or longer than its form says.
void AddRawGrid(CellGrid& cells, const RawGridForm& form, const Progress& progress);

}  // namespace corvenna
