#include "world/terrain.h"

#include <gmock/gmock.h>

#include "station/geometry.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr SearchBox WholeWorld{.NorthLimit = 91, .SouthLimit = -91, .WestLimit = -181, .EastLimit = 181};

Station AtField() {
    Station station;
    station.AirportLatitude = 47;
    station.AirportLongitude = -122;
    return station;
}

Station Loaded(std::string_view content, const SearchBox& box = WholeWorld) {
    Station station = AtField();
    LoadTerrainText(station, content, box, "terrain");
    return station;
}

std::string WhyRefused(std::string_view content) {
    return WhatIsThrown<FileError>([&] { Loaded(content); });
}

TEST(Terrain, WithoutALineInTheBoxTheHighestIs2000AndThereAreNoMountains) {
    for (const char* const content : {"", "10 10 5000\n"}) {
        Station station = AtField();
        LoadTerrainText(station, content,
                        {.NorthLimit = 48, .SouthLimit = 46, .WestLimit = -123, .EastLimit = -121}, "");
        EXPECT_EQ(station.HighestTerrain, 2000);
        EXPECT_EQ(station.MountainCount, 0);
        EXPECT_THAT(station.Mountains, SizeIs(1));
    }
}

TEST(Terrain, MountainsAreNumberedFrom1WithASpareOneBehindThem) {
    const Station station = Loaded("47.123456 -122.000006 1000\r\n46.5 -121.5 500\r\n");
    EXPECT_EQ(station.MountainCount, 2);
    EXPECT_THAT(station.Mountains,
                ElementsAre(GeoPoint{"Mountain No1", "Mountain", 47.12346, -122.00001, 3281},
                            GeoPoint{"Mountain No2", "Mountain", 46.5, -121.5, 1640}, GeoPoint{}));
    EXPECT_EQ(station.HighestTerrain, 5281);
}

TEST(Terrain, APointAt100MilesIsKeptAndOneAt101OnlyCountsForTheHighest) {
    const auto lineAt = [](double nauticalMiles) {
        const GeoPoint place = ProjectNmExact(47, -122, 0, nauticalMiles);
        return fmt::format("{} {} 1000\n", place.Latitude, place.Longitude);
    };
    EXPECT_EQ(Loaded(lineAt(99)).MountainCount, 1);
    EXPECT_EQ(Loaded(lineAt(100)).MountainCount, 1);
    EXPECT_EQ(Loaded(lineAt(100.4)).MountainCount, 1);  // whole miles are compared
    EXPECT_EQ(Loaded(lineAt(101)).MountainCount, 0);
    EXPECT_EQ(Loaded(lineAt(101)).HighestTerrain, 5281);
}

TEST(Terrain, APointOnALimitOfTheBoxIsOutside) {
    const SearchBox box{.NorthLimit = 48, .SouthLimit = 46, .WestLimit = -123, .EastLimit = -121};
    EXPECT_EQ(Loaded("48 -122 1000\n", box).HighestTerrain, 2000);
    EXPECT_EQ(Loaded("47.99999 -122 1000\n", box).HighestTerrain, 5281);
    EXPECT_EQ(Loaded("46 -122 1000\n47 -123 1000\n47 -121 1000\n", box).HighestTerrain, 2000);
}

TEST(Terrain, PositionsAreRoundedBeforeTheyAreTested) {
    const SearchBox box{.NorthLimit = 48, .SouthLimit = 46, .WestLimit = -123, .EastLimit = -121};
    EXPECT_EQ(Loaded("47.999996 -122 1000\n", box).HighestTerrain, 2000);
}

TEST(Terrain, ElevationsAreRoundedToWholeMetresAndThenToFeet) {
    const auto feet = [](std::string_view metres) {
        return Loaded(fmt::format("47 -122 {}\n", metres)).Mountains[0].Altitude;
    };
    EXPECT_EQ(feet("100"), 328);
    EXPECT_EQ(feet("100.5"), 328);  // to the even 100
    EXPECT_EQ(feet("101.5"), 335);  // to the even 102
    EXPECT_EQ(feet("100.51"), 331);
    EXPECT_EQ(feet("-10"), -33);
    EXPECT_EQ(feet("+10"), 33);
    EXPECT_EQ(feet(".5"), 0);
    EXPECT_EQ(feet("8849."), 29032);
}

TEST(Terrain, GroundBelowTheSeaDoesNotLowerTheHighest) {
    EXPECT_EQ(Loaded("47 -122 -400\n").HighestTerrain, 2000);
}

TEST(Terrain, ABoxAcrossThe180thMeridianLosesThePointsBehindIt) {
    Station station;
    station.AirportLatitude = 47;
    station.AirportLongitude = 179;
    const SearchBox box{.NorthLimit = 50, .SouthLimit = 44, .WestLimit = 174, .EastLimit = -176};
    LoadTerrainText(station, "47 -179 1000\n47 178 1000\n", box, "");
    EXPECT_EQ(station.HighestTerrain, 2000);
}

TEST(Terrain, AMountainCountThatIsThereAlreadyGrowsButNumbersStartAt1) {
    Station station = AtField();
    LoadTerrainText(station, "47 -122 1000\n", WholeWorld, "");
    LoadTerrainText(station, "47 -122 2000\n", WholeWorld, "");
    EXPECT_EQ(station.MountainCount, 2);
    EXPECT_THAT(station.Mountains, SizeIs(3));
    EXPECT_EQ(station.Mountains[1].Name, "Mountain No1");
    EXPECT_EQ(station.Mountains[1].Altitude, 6562);
    EXPECT_EQ(station.HighestTerrain, 8562);
}

TEST(Terrain, TheLastLineNeedsNoEnd) { EXPECT_EQ(Loaded("47 -122 1000\n46 -122 1000").MountainCount, 2); }

TEST(Terrain, ALineThatMakesNoSenseIsRefusedByFileAndNumber) {
    EXPECT_EQ(WhyRefused("47 -122 10\n47,5 -122 10\n"),
              "terrain: line 2: latitude \"47,5\" is no decimal number");
    EXPECT_EQ(WhyRefused("47  -122 10\n"), "terrain: line 1: longitude \"\" is no decimal number");
    EXPECT_EQ(WhyRefused("47 -122  10\n"), "terrain: line 1: elevation \" 10\" is no decimal number");
    EXPECT_EQ(WhyRefused("47 -122 10 \n"), "terrain: line 1: elevation \"10 \" is no decimal number");
    EXPECT_EQ(WhyRefused("47 -122 10m\n"), "terrain: line 1: elevation \"10m\" is no decimal number");
    EXPECT_EQ(WhyRefused("47 -122\n"),
              "terrain: line 1: three numbers and two blanks expected, \"-122\" found");
    EXPECT_EQ(WhyRefused("47 -122 10\n\n"),
              "terrain: line 2: three numbers and two blanks expected, \"\" found");
    for (const char* const field :
         {"", "-", "+", "+-1", "++1", "--1", "1e3", "0x10", "inf", "nan", "1.2.3", ".", "\t1"}) {
        EXPECT_THAT(WhyRefused(fmt::format("47 -122 {}\n", field)), HasSubstr("is no decimal number"))
            << field;
    }
}

TEST(Terrain, AnElevationBeyondItsFieldIsRefused) {
    EXPECT_THAT(WhyRefused("47 -122 99999999999\n"), HasSubstr("line 1: a number does not fit its field"));
    EXPECT_THAT(WhyRefused("47 -122 2000000000\n"), HasSubstr("line 1: a number does not fit its field"));
}

TEST(Terrain, ARefusedFileChangesNothing) {
    Station station = AtField();
    EXPECT_THROW(LoadTerrainText(station, "47 -122 1000\nx\n", WholeWorld, ""), FileError);
    EXPECT_EQ(station.MountainCount, 0);
    EXPECT_EQ(station.HighestTerrain, 0);
    EXPECT_THAT(station.Mountains, SizeIs(1));
}

TEST(Terrain, OfALineWithoutEndOnlyItsBeginningIsTold) {
    EXPECT_LT(WhyRefused(std::string(1000000, 'x')).size(), 200u);
}

}  // namespace
}  // namespace corvenna
