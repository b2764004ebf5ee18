#include "tools/terrain/terrain_points.h"

#include <cmath>

#include "terrain/terrain_scene.h"

namespace corvenna {
namespace {

constexpr double FiveMinutes = 1.0 / 12;
constexpr double ThirtySeconds = 1.0 / 120;

/// A grid of one height, its north-western corner at a place.
void AddFlat(CellGrid& cells, double north, double west, double degreesSouth, double degreesEast, double step,
             std::int16_t height) {
    GridShape shape;
    shape.File = "flat";
    shape.Rows = static_cast<int>(std::lround(degreesSouth / step));
    shape.Columns = static_cast<int>(std::lround(degreesEast / step));
    shape.FirstLatitude = north - step / 2;
    shape.FirstLongitude = west + step / 2;
    shape.LatitudeStep = -step;
    shape.LongitudeStep = step;
    shape.North = north;
    shape.South = north - degreesSouth;
    shape.West = west;
    shape.East = west + degreesEast;
    GridPlacing placing(cells, shape);
    const std::vector<std::int16_t> row(static_cast<std::size_t>(shape.Columns), height);
    for (int i = 0; i < shape.Rows; ++i) placing.AddRow(row);
    placing.Finish();
}

/// One cell with its north-western corner at a place.
void AddCell(CellGrid& cells, double north, double west, std::int16_t height) {
    AddFlat(cells, north, west, FiveMinutes, FiveMinutes, FiveMinutes, height);
}

std::string Points(const CellGrid& cells, const std::vector<Summit>& peaks = {}, int blockRows = 3) {
    TerrainRecipe recipe;
    recipe.BlockRows = blockRows;
    return TerrainText(TerrainPoints(cells, peaks, {}, recipe, NoProgress));
}

TEST(SummitAllowance, GrowsWithTheReliefToALimit) {
    EXPECT_EQ(SummitAllowance(0, false), 50);
    EXPECT_EQ(SummitAllowance(3, false), 51);  // 1.05, cut
    EXPECT_EQ(SummitAllowance(1857, false), 699);
    EXPECT_EQ(SummitAllowance(1858, false), 700);
    EXPECT_EQ(SummitAllowance(8000, false), 700);
    EXPECT_EQ(SummitAllowance(0, true), 30);
    EXPECT_EQ(SummitAllowance(19, true), 31);
    EXPECT_EQ(SummitAllowance(2199, true), 249);
    EXPECT_EQ(SummitAllowance(2200, true), 250);
    EXPECT_EQ(SummitAllowance(8000, true), 250);
}

TEST(BlockPoints, AFlatBlockGivesItsNorthWesternCellWithTheLeastAllowance) {
    CellGrid cells;
    AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, 400);
    EXPECT_EQ(Points(cells), "46.958 11.042 450\n");
}

TEST(BlockPoints, TheHighestCellIsThePlaceAndTheReliefCounts) {
    CellGrid cells;
    AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, 400);
    AddCell(cells, 47 - FiveMinutes, 11 + 2 * FiveMinutes, 1400);
    EXPECT_EQ(Points(cells), "46.875 11.208 1800\n");  // 1400 + 50 + 350
}

TEST(BlockPoints, GroundBelowTheSeaCountsAsSeaLevelInTheRelief) {
    CellGrid cells;
    AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, -400);
    AddCell(cells, 47, 11, 1000);
    EXPECT_EQ(Points(cells), "46.958 11.042 1400\n");
}

TEST(BlockPoints, GroundBelow150MetresGivesNone) {
    for (const auto& [height, text] :
         {std::pair{149, ""}, {150, "46.958 11.042 200\n"}, {151, "46.958 11.042 201\n"}}) {
        CellGrid cells;
        AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, static_cast<std::int16_t>(height));
        EXPECT_EQ(Points(cells), text);
    }
}

TEST(BlockPoints, NothingRisesAboveTheHighestMountain) {
    CellGrid cells;
    AddCell(cells, 28, 86.75, 8779);
    EXPECT_EQ(Points(cells), "27.958 86.792 8849\n");
}

TEST(BlockPoints, AreWiderTowardsThePoles) {
    const std::pair<double, int> columnsBelow[] = {{59.75, 3},  {60.25, 6},  {74.75, 6}, {75.25, 12},
                                                   {82.25, 12}, {82.75, 24}, {90, 24}};
    for (const auto& [north, columns] : columnsBelow) {
        for (const double top : {north, 0.25 - north}) {  // the same band of the southern hemisphere
            CellGrid cells;
            AddFlat(cells, top, -180, 0.25, 360, FiveMinutes, 400);
            const std::string points = Points(cells);
            EXPECT_EQ(std::count(points.begin(), points.end(), '\n'), 4320 / columns) << top;
        }
    }
}

TEST(BlockPoints, OfFiveMinutesTellEveryCell) {
    CellGrid cells;
    AddFlat(cells, 47, 11, FiveMinutes, 0.25, FiveMinutes, 400);
    EXPECT_EQ(Points(cells, {}, 1), "46.958 11.042 450\n46.958 11.125 450\n46.958 11.208 450\n");
}

// ---- Known summits. The block's point stands at 46.958 N 11.042 E, 1000 m without the allowance, 1400 with.

std::string PointBeside(const Summit& peak) {
    CellGrid cells;
    AddCell(cells, 47, 11, 1000);
    const std::string points = Points(cells, {peak});
    const std::size_t line = points.find("46.958 11.042 ");
    return points.substr(line, points.find('\n', line) - line);
}

TEST(KnownSummits, BoundTheAllowance) {
    EXPECT_EQ(PointBeside({46.9583, 11.1, 1399}), "46.958 11.042 1399");
    EXPECT_EQ(PointBeside({46.9583, 11.1, 1400}), "46.958 11.042 1400");
    EXPECT_EQ(PointBeside({46.9583, 11.1, 1401}), "46.958 11.042 1400");
}

TEST(KnownSummits, NeverPullAPointBelowTheGrid) {
    EXPECT_EQ(PointBeside({46.9583, 11.1, 951}), "46.958 11.042 1000");
    EXPECT_EQ(PointBeside({46.9583, 11.1, 950}), "46.958 11.042 1000");
    EXPECT_EQ(PointBeside({46.9583, 11.1, 949}), "46.958 11.042 1400");  // too low to be meant
}

TEST(KnownSummits, CountWithinSixMiles) {
    EXPECT_EQ(PointBeside({47.0583, 11.041667, 1200}), "46.958 11.042 1200");
    EXPECT_EQ(PointBeside({47.0584, 11.041667, 1200}), "46.958 11.042 1400");
}

// ---- Fine grids

TEST(FineBlocks, ReplaceTheCoarseGridAndNeedLessAllowance) {
    CellGrid cells;
    AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, 900);
    AddFlat(cells, 47, 11, 0.25, 0.25, ThirtySeconds, 400);
    EXPECT_EQ(Points(cells), "46.958 11.042 430\n");
}

TEST(FineBlocks, CoveredInPartAreMergedWithTheCoarseGrid) {
    CellGrid cells;
    AddFlat(cells, 47, 11, 0.25, 0.25, FiveMinutes, 900);
    AddFlat(cells, 47, 11, 0.25, 2 * FiveMinutes, ThirtySeconds, 1000);
    EXPECT_EQ(Points(cells), "46.958 11.042 1085\n");
}

// ---- All points

TEST(TerrainPoints, ListedPeaksOf150MetresAndAllExtraPlacesAreTheirOwnPoints) {
    const CellGrid cells;
    const std::vector<Summit> peaks = {{10, 20, 149}, {10, 20.5, 150}, {10.12345, 21, 151}};
    const std::vector<Summit> extra = {{-10, -20, 20}};
    EXPECT_EQ(TerrainText(TerrainPoints(cells, peaks, extra, {}, NoProgress)),
              "-10.0000 -20.0000 20\n10.0000 20.5000 150\n10.1234 21.0000 151\n");
}

TEST(TerrainPoints, AreSortedAsNumbersAndToldOnce) {
    const CellGrid cells;
    const std::vector<Summit> peaks = {{9, 20, 300},   {10, 20, 300}, {-9, 100, 300},
                                       {-9, 20, 1000}, {-9, 20, 300}, {10, 20, 300}};
    EXPECT_EQ(TerrainText(TerrainPoints(cells, peaks, {}, {}, NoProgress)),
              "-9.0000 20.0000 300\n-9.0000 20.0000 1000\n-9.0000 100.0000 300\n9.0000 20.0000 300\n"
              "10.0000 20.0000 300\n");
}

std::string Kept(const TerrainRegion& region, const Summit& summit) {
    const CellGrid cells;
    TerrainRecipe recipe;
    recipe.Region = region;
    return TerrainText(TerrainPoints(cells, {summit}, {}, recipe, NoProgress));
}

TEST(TerrainRegions, KeepWhatLiesInsideOrOnTheEdge) {
    const TerrainRegion region = {.North = 50, .South = 40, .West = 5, .East = 15};
    EXPECT_NE(Kept(region, {50, 5, 300}), "");
    EXPECT_NE(Kept(region, {40, 15, 300}), "");
    EXPECT_EQ(Kept(region, {50.0001, 10, 300}), "");
    EXPECT_EQ(Kept(region, {39.9999, 10, 300}), "");
    EXPECT_EQ(Kept(region, {45, 4.9999, 300}), "");
    EXPECT_EQ(Kept(region, {45, 15.0001, 300}), "");
}

TEST(TerrainRegions, GoAcross180DegreesWhereWestIsAboveEast) {
    const TerrainRegion region = {.North = 50, .South = -50, .West = 170, .East = -170};
    EXPECT_NE(Kept(region, {0, 175, 300}), "");
    EXPECT_NE(Kept(region, {0, -175, 300}), "");
    EXPECT_EQ(Kept(region, {0, 169, 300}), "");
    EXPECT_EQ(Kept(region, {0, -169, 300}), "");
}

}  // namespace
}  // namespace corvenna
