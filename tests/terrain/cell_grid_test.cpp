#include "tools/terrain/cell_grid.h"

#include "terrain/terrain_scene.h"

namespace corvenna {
namespace {

using testing::HasSubstr;

/// A grid of samples this many degrees apart, the first at the given place, rows running south.
GridShape Shape(int rows, int columns, double latitude, double longitude, double step) {
    GridShape shape;
    shape.File = "grid";
    shape.Rows = rows;
    shape.Columns = columns;
    shape.FirstLatitude = latitude;
    shape.FirstLongitude = longitude;
    shape.LatitudeStep = -step;
    shape.LongitudeStep = step;
    shape.North = latitude + step / 2;
    shape.South = latitude - (rows - 0.5) * step;
    shape.West = longitude - step / 2;
    shape.East = longitude + (columns - 0.5) * step;
    return shape;
}

void Add(CellGrid& cells, const GridShape& shape, const std::vector<std::vector<std::int16_t>>& rows) {
    GridPlacing placing(cells, shape);
    for (const auto& row : rows) placing.AddRow(row);
    placing.Finish();
}

constexpr double FiveMinutes = 1.0 / 12;

TEST(CellGrid, CountsRowsFromTheNorthPoleAndColumnsFrom180West) {
    CellGrid cells;
    Add(cells, Shape(1, 2, 90 - FiveMinutes / 2, -180 + FiveMinutes / 2, FiveMinutes), {{10, 20}});
    EXPECT_EQ(cells.Height(0, 0), 10);
    EXPECT_EQ(cells.Height(0, 1), 20);
    EXPECT_EQ(cells.Height(1, 0), CellGrid::NoData);
}

TEST(CellGrid, TheHighestSampleOfACellStays) {
    CellGrid cells;
    const GridShape shape =
        Shape(2, 2, 47.07, 11.01, 0.02);  // all four in the cell 47 to 47.083, 11 to 11.083
    Add(cells, shape, {{300, 500}, {-5, 499}});
    EXPECT_EQ(HeightAt(cells, 47.04, 11.04), 500);
    EXPECT_EQ(FilledCells(cells), 1);
    Add(cells, shape, {{1, 2}, {3, 501}});
    EXPECT_EQ(HeightAt(cells, 47.04, 11.04), 501);
}

TEST(CellGrid, ASampleOnAnEdgeCountsForTheSouthernAndEasternCell) {
    CellGrid cells;
    Add(cells, Shape(1, 1, 47, 11, FiveMinutes), {{700}});
    EXPECT_EQ(HeightAt(cells, 46.99, 11.01), 700);
    EXPECT_EQ(FilledCells(cells), 1);
}

TEST(CellGrid, ASampleOnAnEdgeCountsForAllCellsAroundWhereTheGridSaysSo) {
    CellGrid cells;
    GridShape shape = Shape(1, 1, 47, 11, FiveMinutes);
    shape.EdgeSamplesCountTwice = true;
    Add(cells, shape, {{700}});
    for (const double latitude : {46.99, 47.01}) {
        for (const double longitude : {10.99, 11.01}) EXPECT_EQ(HeightAt(cells, latitude, longitude), 700);
    }
    EXPECT_EQ(FilledCells(cells), 4);
}

TEST(CellGrid, AnEdgeMissedByTheCutDecimalsOfAStepIsAnEdgeStill) {
    CellGrid cells;
    Add(cells, Shape(1, 1, 47.00005, 11 - 0.00005, FiveMinutes), {{700}});  // 0.0006 of a cell off
    EXPECT_EQ(HeightAt(cells, 46.99, 11.01), 700);
    Add(cells, Shape(1, 1, 37.0002, 11, FiveMinutes), {{800}});  // 0.0024 of a cell: a place of its own
    EXPECT_EQ(HeightAt(cells, 37.01, 11.01), 800);
}

TEST(CellGrid, LongitudesGoRoundTheEarth) {
    CellGrid cells;
    Add(cells, Shape(1, 2, 10.01, 180 - 0.04, FiveMinutes), {{100, 200}});
    EXPECT_EQ(HeightAt(cells, 10.01, 179.95), 100);
    EXPECT_EQ(HeightAt(cells, 10.01, -179.95), 200);
    Add(cells, Shape(1, 1, 20.01, 359.99, FiveMinutes), {{300}});
    EXPECT_EQ(HeightAt(cells, 20.01, -0.01), 300);
}

TEST(CellGrid, SamplesOnThePolesCountForTheLastRows) {
    CellGrid cells;
    GridShape shape = Shape(2, 1, 90, 0.01, FiveMinutes);
    shape.North = 90;
    Add(cells, shape, {{1}, {1}});
    EXPECT_EQ(cells.Height(0, ColumnOf(0.01)), 1);
    shape = Shape(1, 1, -90, 0.01, FiveMinutes);
    shape.South = -90;
    Add(cells, shape, {{2}});
    EXPECT_EQ(cells.Height(CellGrid::Rows - 1, ColumnOf(0.01)), 2);
}

// ---- The fine layer

constexpr double ThirtySeconds = 1.0 / 120;

std::vector<std::vector<std::int16_t>> Flat(int rows, int columns, std::int16_t height) {
    return std::vector(static_cast<std::size_t>(rows),
                       std::vector<std::int16_t>(static_cast<std::size_t>(columns), height));
}

GridShape FineShape(int rows, int columns) {
    return Shape(rows, columns, 47 - ThirtySeconds / 2, 11 + ThirtySeconds / 2, ThirtySeconds);
}

TEST(FineCells, AreThoseThatAGridOfThirtySecondsCoversWholly) {
    CellGrid cells;
    Add(cells, FineShape(10, 25), Flat(10, 25, 400));
    EXPECT_TRUE(cells.FullyFine(RowOf(46.95), ColumnOf(11.05)));
    EXPECT_TRUE(cells.FullyFine(RowOf(46.95), ColumnOf(11.13)));
    EXPECT_FALSE(cells.FullyFine(RowOf(46.95), ColumnOf(11.20)));  // half of it only
    EXPECT_FALSE(cells.FullyFine(RowOf(47.01), ColumnOf(11.05)));
    EXPECT_EQ(cells.FineHeight(RowOf(46.95), ColumnOf(11.20)), 400);
}

TEST(FineCells, AreNeverMadeByACoarserGrid) {
    CellGrid cells;
    const double step = ThirtySeconds * 1.01;
    Add(cells, Shape(10, 10, 47 - step / 2, 11 + step / 2, step), Flat(10, 10, 400));
    EXPECT_FALSE(cells.FullyFine(RowOf(46.95), ColumnOf(11.05)));
    EXPECT_EQ(cells.FineHeight(RowOf(46.95), ColumnOf(11.05)), CellGrid::NoData);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 400);
}

TEST(FineCells, AVoidMakesItsCellUnfineUnlessAnotherGridFillsIt) {
    CellGrid cells;
    auto rows = Flat(10, 10, 400);
    rows[4][5] = CellGrid::NoData;
    Add(cells, FineShape(10, 10), rows);
    EXPECT_FALSE(cells.FullyFine(RowOf(46.95), ColumnOf(11.05)));
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 400);
    Add(cells, FineShape(10, 10), Flat(10, 10, 300));
    EXPECT_TRUE(cells.FullyFine(RowOf(46.95), ColumnOf(11.05)));
}

TEST(FineCells, KeepTheirOwnHeightBesideAHigherCoarseOne) {
    CellGrid cells;
    Add(cells, Shape(1, 1, 46.95, 11.05, FiveMinutes), {{900}});
    Add(cells, FineShape(10, 10), Flat(10, 10, 400));
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 900);
    EXPECT_EQ(cells.FineHeight(RowOf(46.95), ColumnOf(11.05)), 400);
}

// ---- Shapes and heights that can't be

std::string ShapeError(const GridShape& shape) {
    CellGrid cells;
    return ErrorOf([&] { GridPlacing placing(cells, shape); });
}

TEST(GridShapes, MustLieOnTheEarth) {
    GridShape shape = FineShape(10, 10);
    shape.North = 90.1;
    EXPECT_EQ(ShapeError(shape), "grid: latitudes from 46.916666666666664 to 90.1 are not on the Earth");
    shape = FineShape(10, 10);
    std::swap(shape.North, shape.South);
    EXPECT_THAT(ShapeError(shape), HasSubstr("are not on the Earth"));
    shape = FineShape(10, 10);
    shape.East = shape.West + 361;
    EXPECT_THAT(ShapeError(shape), HasSubstr("are no part of the Earth"));
    shape.East = shape.West;
    EXPECT_THAT(ShapeError(shape), HasSubstr("are no part of the Earth"));
}

TEST(GridShapes, MayHaveStepsOfFiveMinutesButNoWider) {
    EXPECT_EQ(ShapeError(Shape(2, 2, 47, 11, FiveMinutes)), "");
    EXPECT_EQ(ShapeError(Shape(2, 2, 47, 11, 0.1)),
              "grid: its samples stand 6 arc minutes apart; 5 are the most");
}

TEST(GridHeights, BeyondAllGroundAreAnErrorWithTheirPlace) {
    const auto errorOf = [](std::int16_t height) {
        CellGrid cells;
        return ErrorOf([&] { Add(cells, Shape(2, 2, 47, 11, 0.05), {{1, 2}, {3, height}}); });
    };
    EXPECT_EQ(errorOf(9000), "");
    EXPECT_EQ(errorOf(-12000), "");
    EXPECT_THAT(errorOf(9001), HasSubstr("row 2, column 2: 9001 m is no height of ground"));
    EXPECT_THAT(errorOf(-12001), HasSubstr("row 2, column 2: -12001 m is no height of ground"));
}

}  // namespace
}  // namespace corvenna
