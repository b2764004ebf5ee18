#include "tools/terrain/raw_grid.h"

#include <cmath>

#include "terrain/terrain_scene.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::HasSubstr;

constexpr const char* TwoByThree = ",rows=2,columns=3,north=47,south=46.8333333333,west=11,east=11.25";

/// Adds a file in a form and gives the error, "" if there was none.
std::string Add(CellGrid& cells, const std::string& form) {
    return ErrorOf([&] { AddRawGrid(cells, ParseRawGridForm(form), NoProgress); });
}

TEST(RawGridForm, LeftAloneIsThatOfTheShippedGrid) {
    const RawGridForm form = ParseRawGridForm("grid.i16.gz");
    EXPECT_EQ(form.File, "grid.i16.gz");
    EXPECT_EQ(form.Order, ByteOrder::Little);
    EXPECT_EQ(form.Rows, 2160);
    EXPECT_EQ(form.Columns, 4320);
    EXPECT_EQ(form.North, 90);
    EXPECT_EQ(form.South, -90);
    EXPECT_EQ(form.West, -180);
    EXPECT_EQ(form.East, 180);
    EXPECT_EQ(form.Stand, SampleStand::Cells);
    EXPECT_FALSE(form.FromSouth);
    EXPECT_EQ(form.Void, -32768);
}

TEST(RawGridForm, TakesEachOfItsKeys) {
    const RawGridForm form = ParseRawGridForm(
        "a.bin,order=big,rows=3,columns=4,north=10.5,south=-1,west=2,east=+3,samples=points,from=south,void=-"
        "99");
    EXPECT_EQ(form.Order, ByteOrder::Big);
    EXPECT_EQ(form.Rows, 3);
    EXPECT_EQ(form.Columns, 4);
    EXPECT_EQ(form.North, 10.5);
    EXPECT_EQ(form.South, -1);
    EXPECT_EQ(form.West, 2);
    EXPECT_EQ(form.East, 3);
    EXPECT_EQ(form.Stand, SampleStand::Points);
    EXPECT_TRUE(form.FromSouth);
    EXPECT_EQ(form.Void, -99);
}

TEST(RawGridForm, NamesTheKeyThatIsWrong) {
    const auto errorOf = [](const char* text) { return ErrorOf([&] { ParseRawGridForm(text); }); };
    EXPECT_EQ(errorOf("a,rows=x"), "a: rows=x: expected a whole number from 1 to 1000000");
    EXPECT_EQ(errorOf("a,rows=0"), "a: rows=0: expected a whole number from 1 to 1000000");
    EXPECT_EQ(errorOf("a,columns=1000001"), "a: columns=1000001: expected a whole number from 1 to 1000000");
    EXPECT_EQ(errorOf("a,north=4o"), "a: north=4o: expected a number of degrees");
    EXPECT_EQ(errorOf("a,west=nan"), "a: west=nan: expected a number of degrees");
    EXPECT_EQ(errorOf("a,order=middle"), "a: order=middle: expected little or big");
    EXPECT_EQ(errorOf("a,size=4"), "a: \"size\" is no key of a raw grid");
    EXPECT_EQ(errorOf("a,rows"), "a: \"rows\" is not of the form key=value");
    EXPECT_EQ(errorOf("a,"), "a: \"\" is not of the form key=value");
}

TEST(RawGrid, LittleEndianHeightsFillTheCellsFromTheNorthWest) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "grid", LittleEndian({1, 2, 300, 4, 5, -6}));
    EXPECT_EQ(Add(cells, path + TwoByThree), "");
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 1);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.13), 2);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.20), 300);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.05), 4);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.20), -6);
    EXPECT_EQ(FilledCells(cells), 6);
}

TEST(RawGrid, BigEndianHeightsAndRowsFromTheSouth) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "grid", BigEndian({1, 2, 300, 4, 5, -6}));
    EXPECT_EQ(Add(cells, path + TwoByThree + ",order=big,from=south"), "");
    EXPECT_EQ(HeightAt(cells, 46.88, 11.05), 1);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.20), 300);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.20), -6);
}

TEST(RawGrid, AVoidFillsNothing) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "grid", LittleEndian({1, -9999, 3, 4, -9999, 6}));
    EXPECT_EQ(Add(cells, path + TwoByThree + ",void=-9999"), "");
    EXPECT_EQ(FilledCells(cells), 4);
}

TEST(RawGrid, ACellBetweenFourPointsTakesTheHighestOfItsCorners) {
    // Five points by four columns round the whole world would be long; a piece of such a grid does.
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "points",
                                     BigEndian({10, 20, 30,  //
                                                40, 50, 25,  //
                                                35, 15, 60}));
    EXPECT_EQ(Add(cells, path + ",order=big,rows=3,columns=3,samples=points,north=47,south=46.8333,west=11,"
                                "east=11.1667"),
              "");
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 50);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.13), 50);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.05), 50);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.13), 60);
}

TEST(RawGrid, APointsGridOfTheWholeWorldTakesEachCellsFourCornersAndClosesAt180) {
    constexpr int Rows = 2161;
    constexpr int Columns = 4320;
    const auto sample = [](int row, int column) { return (row * 7919 + column * 104729) % 8000; };
    std::vector<int> samples;
    for (int row = 0; row < Rows; ++row) {
        for (int column = 0; column < Columns; ++column) samples.push_back(sample(row, column));
    }
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "corners", LittleEndian(samples));
    ASSERT_EQ(Add(cells, path + ",rows=2161,samples=points,east=179.9166667"), "");
    int wrong = 0;
    for (int row = 0; row < Rows - 1; ++row) {
        for (int column = 0; column < Columns; ++column) {
            const int east = (column + 1) % Columns;
            const int expected = std::max(
                {sample(row, column), sample(row, east), sample(row + 1, column), sample(row + 1, east)});
            wrong += cells.Height(row, column) != expected;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(RawGrid, AShortFileIsToldWithByteAndRow) {
    const TempFolder folder;
    for (int bytes = 0; bytes < 12; ++bytes) {
        CellGrid cells;
        const std::string path = Written(
            folder, "short", LittleEndian({1, 2, 3, 4, 5, 6}).substr(0, static_cast<std::size_t>(bytes)));
        EXPECT_EQ(Add(cells, path + TwoByThree), path + ": ends at byte " + std::to_string(bytes) +
                                                     " in row " + (bytes < 6 ? "1" : "2") +
                                                     " of 2 (rows of 3 samples)");
    }
}

TEST(RawGrid, ALongFileIsNoneOfItsForm) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "long", LittleEndian({1, 2, 3, 4, 5, 6}) + "x");
    EXPECT_EQ(Add(cells, path + TwoByThree), path + ": is longer than 2 rows of 3 samples");
}

TEST(RawGrid, TheWrongByteOrderShowsAsAHeightThatCannotBe) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "grid", BigEndian({100, 200, 300, 400, 500, 600}));
    EXPECT_THAT(Add(cells, path + TwoByThree), HasSubstr("row 1, column 1: 25600 m is no height of ground"));
}

TEST(RawGrid, ATinyGridOfPointsHasNoStep) {
    EXPECT_EQ(ErrorOf([] { ShapeOf(ParseRawGridForm("a,rows=1,columns=2,samples=points")); }),
              "a: a grid of points needs two rows and two columns at least");
}

}  // namespace
}  // namespace corvenna
