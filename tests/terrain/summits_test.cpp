#include "tools/terrain/summits.h"

#include "terrain/terrain_scene.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

std::vector<Summit> Read(const std::string& text) {
    const TempFolder folder;
    std::vector<Summit> summits;
    ReadSummits(Written(folder, "list.csv", text), summits);
    return summits;
}

std::string ErrorIn(const std::string& text) {
    const std::string error = ErrorOf([&] { Read(text); });
    return error.substr(error.find("list.csv") == std::string::npos ? 0 : error.find("list.csv"));
}

TEST(SummitLists, TheFirstLineSaysWhichColumnIsWhich) {
    const auto summits =
        Read("elevation_m,name,lon,lat\r\n4807.5,Mont Blanc,6.865,45.833\r\n-28,Caspian,50,42");
    ASSERT_EQ(summits.size(), 2u);
    EXPECT_EQ(summits[0].Latitude, 45.833);
    EXPECT_EQ(summits[0].Longitude, 6.865);
    EXPECT_EQ(summits[0].Elevation, 4808);
    EXPECT_EQ(summits[1].Elevation, -28);
}

TEST(SummitLists, AListMayBeEmptyButForItsFirstLine) { EXPECT_TRUE(Read("lat,lon,elevation_m\n").empty()); }

TEST(SummitLists, MistakesAreToldWithTheirLine) {
    EXPECT_EQ(ErrorIn(""), "list.csv: line 1: the first line names no column \"lat\"");
    EXPECT_EQ(ErrorIn("lat,lon,height\n"),
              "list.csv: line 1: the first line names no column \"elevation_m\"");
    const std::string head = "name,lat,lon,elevation_m\n";
    EXPECT_EQ(ErrorIn(head + "A,1,2,3\nB,1,2\n"), "list.csv: line 3: 3 columns, the first line has 4");
    EXPECT_EQ(ErrorIn(head + "A,1,2,3\n\n"), "list.csv: line 3: 1 columns, the first line has 4");
    EXPECT_EQ(ErrorIn(head + "A,1x,2,3\n"), "list.csv: line 2: \"1x\" is no latitude from -90 to 90");
    EXPECT_EQ(ErrorIn(head + "A,90.1,2,3\n"), "list.csv: line 2: \"90.1\" is no latitude from -90 to 90");
    EXPECT_EQ(ErrorIn(head + "A,1,,3\n"), "list.csv: line 2: \"\" is no longitude from -180 to 180");
    EXPECT_EQ(ErrorIn(head + "A,1,2,9001\n"), "list.csv: line 2: \"9001\" is no elevation from -500 to 9000");
}

TEST(SummitIndex, GivesTheHighestWithinTheDistance) {
    // A degree of latitude is 60 nm, so 0.1 degrees are 6.
    const SummitIndex index({{.Latitude = 47.05, .Longitude = 11, .Elevation = 2000},
                             {.Latitude = 46.95, .Longitude = 11, .Elevation = 2500},
                             {.Latitude = 47.11, .Longitude = 11, .Elevation = 3000}});
    EXPECT_EQ(index.HighestNear(47, 11, 6, 0), 2500);
    EXPECT_EQ(index.HighestNear(47.02, 11, 6, 0), 3000);
    EXPECT_EQ(index.HighestNear(40, 11, 6, 0), 0);
}

TEST(SummitIndex, DistanceCountsAllRound) {
    const SummitIndex index({{.Latitude = 60, .Longitude = 10, .Elevation = 1000}});
    EXPECT_EQ(index.HighestNear(60.0999, 10, 6, 0), 1000);
    EXPECT_EQ(index.HighestNear(60.1001, 10, 6, 0), 0);
    EXPECT_EQ(index.HighestNear(60, 10.1999, 6, 0), 1000);  // a degree of longitude is half as long here
    EXPECT_EQ(index.HighestNear(60, 10.2002, 6, 0), 0);
}

TEST(SummitIndex, LowerSummitsThanAskedForDoNotCount) {
    const SummitIndex index({{.Latitude = 47, .Longitude = 11, .Elevation = 2000}});
    EXPECT_EQ(index.HighestNear(47, 11, 6, 1999), 2000);
    EXPECT_EQ(index.HighestNear(47, 11, 6, 2000), 2000);
    EXPECT_EQ(index.HighestNear(47, 11, 6, 2001), 0);
}

TEST(SummitIndex, LooksAcrossTheDateLine) {
    const SummitIndex index({{.Latitude = 0, .Longitude = -179.98, .Elevation = 700}});
    EXPECT_EQ(index.HighestNear(0, 179.98, 6, 0), 700);
}

}  // namespace
}  // namespace corvenna
