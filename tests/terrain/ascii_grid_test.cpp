#include "tools/terrain/ascii_grid.h"

#include "terrain/terrain_scene.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::HasSubstr;

/// 3 columns and 2 rows of 5 arc minutes, from 46.8333 N 11 E on.
constexpr const char* Header =
    "ncols 3\n"
    "nrows 2\n"
    "xllcorner 11\n"
    "yllcorner 46.8333333333\n"
    "cellsize 0.0833333333\n"
    "NODATA_value -1\n";

std::string Add(CellGrid& cells, const std::string& text) {
    const TempFolder folder;
    const std::string path = Written(folder, "grid.asc", text);
    std::string error = ErrorOf([&] { AddAsciiGrid(cells, path, NoProgress); });
    if (error.starts_with(path)) error.replace(0, path.size(), "grid.asc");
    return error;
}

std::string ErrorIn(const std::string& text) {
    CellGrid cells;
    return Add(cells, text);
}

TEST(AsciiGrid, RowsRunFromTheNorthAndSamplesStandInsideTheirCells) {
    CellGrid cells;
    EXPECT_EQ(Add(cells, std::string(Header) + "1 2 3\n4 5 6\n"), "");
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 1);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.20), 3);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.05), 4);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.20), 6);
    EXPECT_EQ(FilledCells(cells), 6);
}

TEST(AsciiGrid, WithCentresGivenTheFirstSampleStandsThere) {
    CellGrid cells;
    EXPECT_EQ(Add(cells, "ncols 2\nnrows 2\nxllcenter 11.05\nyllcenter 46.05\ncellsize 0.02\n1 2\n3 4\n"),
              "");
    EXPECT_EQ(HeightAt(cells, 46.05, 11.05), 4);  // all four lie in one cell
    EXPECT_EQ(FilledCells(cells), 1);
    CellGrid others;
    EXPECT_EQ(Add(others, "ncols 2\nnrows 1\nxllcenter 11.07\nyllcenter 46.05\ncellsize 0.02\n1 2\n"), "");
    EXPECT_EQ(HeightAt(others, 46.05, 11.07), 1);
    EXPECT_EQ(HeightAt(others, 46.05, 11.09), 2);
}

TEST(AsciiGrid, HeaderWordsComeInAnyCaseAndOrderAndLinesAsTheyLike) {
    CellGrid cells;
    EXPECT_EQ(Add(cells,
                  "NROWS 2 NCOLS 3\r\nCellSize 0.0833333333\r\nXLLCORNER 11 YLLCORNER 46.8333333333\r\n"
                  "1\t2\r\n3 4 5\r\n\r\n6"),
              "");
    EXPECT_EQ(HeightAt(cells, 46.95, 11.20), 3);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.20), 6);
}

TEST(AsciiGrid, AVoidFillsNothingAndIsMinus9999UnlessTheHeaderSaysOtherwise) {
    CellGrid cells;
    EXPECT_EQ(Add(cells, std::string(Header) + "1 -1 3 4 -1.0 6\n"), "");
    EXPECT_EQ(FilledCells(cells), 4);
    CellGrid others;
    EXPECT_EQ(Add(others, "ncols 2\nnrows 1\nxllcorner 11\nyllcorner 46\ncellsize 0.0833333333\n-9999 -1\n"),
              "");
    EXPECT_EQ(FilledCells(others), 1);
}

TEST(AsciiGrid, FractionsAreRoundedHalfToEven) {
    CellGrid cells;
    EXPECT_EQ(Add(cells, std::string(Header) + "1.5 2.5 2.51 1e3 -0.4 6\n"), "");
    EXPECT_EQ(HeightAt(cells, 46.95, 11.05), 2);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.13), 2);
    EXPECT_EQ(HeightAt(cells, 46.95, 11.20), 3);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.05), 1000);
    EXPECT_EQ(HeightAt(cells, 46.88, 11.13), 0);
}

TEST(AsciiGrid, LettersAmongTheHeightsAreToldWithTheirLine) {
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 2 3\n4 five 6\n"), "grid.asc: line 8: \"five\" is no number");
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 2 3\n4 5,5 6\n"), "grid.asc: line 8: \"5,5\" is no number");
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 nan 3\n4 5 6\n"), "grid.asc: line 7: \"nan\" is no number");
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 40000 3\n4 5 6\n"), "grid.asc: line 7: 40000 is no height");
    EXPECT_THAT(ErrorIn(std::string(Header) + std::string(100'000, '7')), HasSubstr("line 7: \"777"));
}

TEST(AsciiGrid, AShortGridIsToldWithRowAndColumn) {
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 2 3\n4 5\n"),
              "grid.asc: line 9: the file ends before row 2 of 2, column 3 of 3");
    EXPECT_EQ(ErrorIn(Header), "grid.asc: line 7: the file ends before row 1 of 2, column 1 of 3");
}

TEST(AsciiGrid, ALongGridIsNoneOfItsHeader) {
    EXPECT_EQ(ErrorIn(std::string(Header) + "1 2 3\n4 5 6\n7\n"),
              "grid.asc: line 9: \"7\" behind the last of 2 rows of 3 heights");
}

TEST(AsciiGrid, EachMissingHeaderWordIsNamed) {
    const std::pair<const char*, const char*> words[] = {
        {"ncols 3\n", "ncols"}, {"nrows 2\n", "nrows"}, {"cellsize 0.0833333333\n", "cellsize"}};
    for (const auto& [line, word] : words) {
        std::string text = Header;
        text.erase(text.find(line), std::string_view(line).size());
        EXPECT_THAT(ErrorIn(text + "1 2 3 4 5 6"), HasSubstr(std::string("the header has no ") + word));
    }
    std::string text = Header;
    text.erase(text.find("xllcorner 11\n"), 13);
    EXPECT_THAT(ErrorIn(text + "1 2 3 4 5 6"), HasSubstr("the header has neither xllcorner nor xllcenter"));
}

TEST(AsciiGrid, AWrongHeaderIsTold) {
    EXPECT_EQ(ErrorIn("ncolumns 3\n"),
              "grid.asc: line 1: \"ncolumns\" is no word of an ESRI ASCII grid's header");
    EXPECT_EQ(ErrorIn("ncols three\n"), "grid.asc: line 1: no number behind ncols");
    EXPECT_THAT(ErrorIn("ncols 0\nnrows 2\n1"), HasSubstr("ncols 0 is not from 1 to 1000000"));
    EXPECT_THAT(ErrorIn("ncols 2.5\nnrows 2\n1"), HasSubstr("ncols 2.5 is not from 1 to 1000000"));
    EXPECT_THAT(ErrorIn("ncols 1e300\nnrows 2\n1"), HasSubstr("is not from 1 to 1000000"));
    EXPECT_THAT(ErrorIn("ncols 3\nnrows 2\ncellsize -1\n1"), HasSubstr("cellsize -1 is not above 0"));
    EXPECT_THAT(ErrorIn("ncols 3\nnrows 2\ncellsize 1\nxllcorner 1\nyllcorner 1\n1"),
                HasSubstr("its samples stand 60 arc minutes apart; 5 are the most"));
    EXPECT_EQ(ErrorIn(""), "grid.asc: line 1: the header has no ncols");
}

}  // namespace
}  // namespace corvenna
