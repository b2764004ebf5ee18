#include "tools/terrain/hgt_tile.h"

#include "terrain/terrain_scene.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

constexpr std::size_t Side = 1201;
constexpr std::size_t ThreeSecondTile = Side * Side * 2;
constexpr std::size_t OneSecondTile = std::size_t{3601} * 3601 * 2;

/// A tile of 1201 lines, flat but for one sample.
std::string Tile(int height, std::size_t row = 0, std::size_t column = 0, int sample = 0) {
    std::vector<int> samples(Side * Side, height);
    if (sample != 0) samples[row * Side + column] = sample;
    return BigEndian(samples);
}

TEST(HgtTile, TheNameGivesTheSouthWestCorner) {
    const auto corner = [](const char* path) {
        const RawGridForm form = HgtForm(path, ThreeSecondTile);
        return std::pair(form.South, form.West);
    };
    EXPECT_EQ(corner("tiles/N47E011.hgt"), std::pair(47.0, 11.0));
    EXPECT_EQ(corner("S42E174.hgt"), std::pair(-42.0, 174.0));
    EXPECT_EQ(corner("N47W123.SRTMGL1.hgt.gz"), std::pair(47.0, -123.0));
    EXPECT_EQ(corner("s01w001.HGT"), std::pair(-1.0, -1.0));
}

TEST(HgtTile, TheLengthTellsHowManyLinesItHas) {
    EXPECT_EQ(HgtForm("N47E011.hgt", ThreeSecondTile).Rows, 1201);
    EXPECT_EQ(HgtForm("N47E011.hgt", OneSecondTile).Columns, 3601);
    EXPECT_EQ(ErrorOf([] { HgtForm("N47E011.hgt", ThreeSecondTile - 1); }),
              "N47E011.hgt: 2884801 bytes; a tile has 2884802 or 25934402");
    EXPECT_EQ(ErrorOf([] { HgtForm("N47E011.hgt", 0); }),
              "N47E011.hgt: 0 bytes; a tile has 2884802 or 25934402");
}

TEST(HgtTile, ANameWithoutACornerIsRefused) {
    for (const char* name : {"tile.hgt", "N47.hgt", "X47E011.hgt", "N4xE011.hgt", "N-7E011.hgt",
                             "N+7E011.hgt", "N47E181.hgt", "N91E011.hgt", "N47A011.hgt", ""}) {
        EXPECT_EQ(
            ErrorOf([&] { HgtForm(name, ThreeSecondTile); }),
            std::string(name) + ": the name does not begin with the south-west corner, such as N47E011");
    }
}

TEST(HgtTile, FillsItsDegreeAndMarksItFine) {
    const TempFolder folder;
    CellGrid cells;
    // 40 samples from the north edge and 150 from the west edge: row 0 and column 1 of the degree's cells.
    AddHgtTile(cells, Written(folder, "N47E011.hgt", Tile(500, 40, 150, 2345)), NoProgress);
    EXPECT_EQ(cells.FineHeight(RowOf(47.99), ColumnOf(11.10)), 2345);
    EXPECT_EQ(cells.FineHeight(RowOf(47.99), ColumnOf(11.01)), 500);
    for (const double latitude : {47.01, 47.5, 47.99}) {
        for (const double longitude : {11.01, 11.5, 11.99}) {
            EXPECT_TRUE(cells.FullyFine(RowOf(latitude), ColumnOf(longitude)));
        }
    }
    EXPECT_FALSE(cells.FullyFine(RowOf(46.99), ColumnOf(11.01)));
    EXPECT_FALSE(cells.FullyFine(RowOf(47.01), ColumnOf(12.01)));
}

TEST(HgtTile, SamplesOnTheSouthAndEastEdgeBelongToTheNextDegree) {
    const TempFolder folder;
    CellGrid cells;
    AddHgtTile(cells, Written(folder, "N47E011.hgt", Tile(500, 1200, 1200, 3000)), NoProgress);
    EXPECT_EQ(HeightAt(cells, 46.99, 12.01), 3000);
    EXPECT_EQ(HeightAt(cells, 47.01, 11.99), 500);
    EXPECT_EQ(FilledCells(cells), 13 * 13);
}

TEST(HgtTile, AVoidLeavesTheRestOfItsCell) {
    const TempFolder folder;
    CellGrid cells;
    AddHgtTile(cells, Written(folder, "S42E174.hgt", Tile(500, 40, 150, -32768)), NoProgress);
    EXPECT_EQ(HeightAt(cells, -41.01, 174.10), 500);
    EXPECT_FALSE(cells.FullyFine(RowOf(-41.01), ColumnOf(174.10)));
    EXPECT_TRUE(cells.FullyFine(RowOf(-41.01), ColumnOf(174.20)));
}

TEST(HgtTile, ATileOfAllVoidsFillsNothing) {
    const TempFolder folder;
    CellGrid cells;
    AddHgtTile(cells, Written(folder, "N00E006.hgt", Tile(-32768)), NoProgress);
    EXPECT_EQ(FilledCells(cells), 0);
}

TEST(HgtTile, AShortTileIsNamed) {
    const TempFolder folder;
    CellGrid cells;
    const std::string path = Written(folder, "N47E011.hgt", Tile(500).substr(0, 1000));
    EXPECT_EQ(ErrorOf([&] { AddHgtTile(cells, path, NoProgress); }),
              path + ": 1000 bytes; a tile has 2884802 or 25934402");
}

}  // namespace
}  // namespace corvenna
