#include "world/airport_selection.h"

#include <gmock/gmock.h>

#include "station/geometry.h"
#include "world/airport_database.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Airport Field() {
    Airport a;
    a.Name = "Test Field";
    a.Icao = "KTST";
    a.Latitude = 47;
    a.Longitude = -122;
    a.GroundFreq = "121.9";
    a.TowerFreq = "118.3";
    a.ApproachFreq = "119.2";
    a.CenterFreq = "128.5";
    a.CtafFreq = "122.8";
    return a;
}

Airport Neighbour(std::string name, double latitude, double longitude, std::string center) {
    Airport a;
    a.Name = std::move(name);
    a.Latitude = latitude;
    a.Longitude = longitude;
    a.CenterFreq = std::move(center);
    return a;
}

struct Selection {
    explicit Selection(const std::vector<Airport>& airports, std::string_view label = "Test Field (KTST)") {
        AirportList list;
        for (const Airport& airport : airports) list.Add(airport);
        Box = SelectAirport(S, list, label);
    }

    /// Ground, Tower, Approach, ARTCC.
    std::vector<std::string> Labels() const {
        return {S.GroundFrequency, S.TowerFrequency, S.ApproachFrequency, S.ArtccFrequency};
    }

    Station S;
    std::optional<SearchBox> Box;
};

std::vector<std::string> LabelsFrom(std::string ground, std::string tower, std::string approach,
                                    std::string center) {
    Airport a = Field();
    a.GroundFreq = std::move(ground);
    a.TowerFreq = std::move(tower);
    a.ApproachFreq = std::move(approach);
    a.CenterFreq = std::move(center);
    return Selection({a}).Labels();
}

// ---- Copying

TEST(AirportSelection, CopiesEveryField) {
    Airport a = Field();
    a.MainRunwayId = "16L";
    a.MainRunwayLatitude = 47.1;
    a.MainRunwayLongitude = -122.1;
    a.MainRunwayElevation = 433;
    a.MainRunwayLength = 11901;
    a.MainRunwayWidth = 150;
    a.MainRunwayHeading = 162;
    a.MainRunwayHasIls = -1;
    a.TaxiPoints = {{1, 2, 3}, {4, 5, 6}};
    a.TaxiPointCount = 2;
    a.ParkingSpots = {{{"GATE 1", 85, 3, 4, 0}}};
    a.ParkingSpotCount = 1;
    a.TaxiPaths = {{{2, 0, 0, "0"}}};
    a.TaxiPathCount = 1;
    const Selection s({a});
    EXPECT_EQ(s.S.AirportName, "Test Field");
    EXPECT_EQ(s.S.AirportLatitude, 47);
    EXPECT_EQ(s.S.AirportLongitude, -122);
    EXPECT_EQ(s.S.AirportCode, "KTST");
    EXPECT_THAT(s.Labels(), ElementsAre("121.9", "118.3", "119.2", "128.5"));
    EXPECT_EQ(s.S.CtafFrequency, "122.8");
    EXPECT_EQ(s.S.AirportTaxiPoints, *a.TaxiPoints);
    EXPECT_EQ(s.S.AirportParkingSpots, *a.ParkingSpots);
    EXPECT_EQ(s.S.AirportTaxiPaths, *a.TaxiPaths);
    EXPECT_EQ(s.S.ActiveRunway, "16L");
    EXPECT_EQ(s.S.RunwayLatitude, 47.1);
    EXPECT_EQ(s.S.RunwayLongitude, -122.1);
    EXPECT_EQ(s.S.RunwayElevation, 433);
    EXPECT_EQ(s.S.RunwayLength, 11901);
    EXPECT_EQ(s.S.RunwayWidth, 150);
    EXPECT_EQ(s.S.RunwayHeading, 162);
    EXPECT_EQ(s.S.RunwayHasIls, -1);
}

TEST(AirportSelection, AnArrayOfCount0BecomesOneBlankElement) {
    Airport a = Field();
    a.TaxiPoints = {{1, 2, 3}, {4, 5, 6}};  // the count is what matters
    const Selection s({a});
    EXPECT_THAT(s.S.AirportTaxiPoints, ElementsAre(TaxiPoint{}));
    EXPECT_THAT(s.S.AirportParkingSpots, ElementsAre(ParkingSpot{}));
    EXPECT_THAT(s.S.AirportTaxiPaths, ElementsAre(TaxiPath{}));
}

TEST(AirportSelection, ANetworkOfOneNodeIsANetwork) {
    Airport a = Field();
    a.TaxiPoints = {{{1, 47.5, -122.25}}};
    a.TaxiPointCount = 1;
    EXPECT_THAT(Selection({a}).S.AirportTaxiPoints, ElementsAre(TaxiPoint{1, 47.5, -122.25}));
}

TEST(AirportSelection, AnArrayWithACountButWithoutElementsBecomesOneBlankElementToo) {
    Airport a = Field();
    a.TaxiPointCount = 5;
    a.TaxiPaths.emplace();
    a.TaxiPathCount = 5;
    const Selection s({a});
    EXPECT_THAT(s.S.AirportTaxiPoints, ElementsAre(TaxiPoint{}));
    EXPECT_THAT(s.S.AirportTaxiPaths, ElementsAre(TaxiPath{}));
}

TEST(AirportSelection, ALabelThatNobodyHasSelectsNothingAndChangesNothing) {
    for (const char* const label :
         {"", "Test Field", "test field (KTST)", "Test Field (KTST) ", "Test Field (ktst)"}) {
        const Selection s({Field()}, label);
        EXPECT_FALSE(s.Box.has_value()) << label;
        EXPECT_EQ(s.S.AirportName, "") << label;
    }
}

TEST(AirportSelection, OfTwoRecordsWithTheSameLabelTheLaterDecidesItsFallBacksIncluded) {
    Airport early = Field();
    Airport late = Field();
    late.Latitude = 10;
    late.TowerFreq = "";
    late.CenterFreq = "";
    const Selection s({early, late, Neighbour("North", 47, -121, "1"), Neighbour("South", 10, -121, "2")});
    EXPECT_EQ(s.S.AirportLatitude, 10);
    EXPECT_THAT(s.Labels(), ElementsAre("121.9 (GNDCON)", "121.9 (CT)", "119.2", "2"));
    EXPECT_LT(s.Box->NorthLimit, 14);
}

TEST(AirportSelection, ALaterUncontrolledRecordWipesWhatTheEarlierOneHad) {
    Airport late = Field();
    late.GroundFreq = late.TowerFreq = late.CenterFreq = "";
    EXPECT_THAT(Selection({Field(), late}).Labels(), ElementsAre("", "", "", ""));
}

// ---- The box

TEST(SearchBoxes, Reach200MilesToEachSide) {
    const Selection s({Field()});
    EXPECT_EQ(s.Box->NorthLimit, ProjectNm(47, -122, 0, 200).Latitude);
    EXPECT_EQ(s.Box->SouthLimit, ProjectNm(47, -122, 180, 200).Latitude);
    EXPECT_EQ(s.Box->EastLimit, ProjectNm(47, -122, 90, 200).Longitude);
    EXPECT_EQ(s.Box->WestLimit, ProjectNm(47, -122, 270, 200).Longitude);
    EXPECT_NEAR(s.Box->NorthLimit, 47 + 200 / 60.0, 1e-4);
}

TEST(SearchBoxes, APlaceOnALimitIsOutside) {
    const SearchBox box{.NorthLimit = 10, .SouthLimit = -10, .WestLimit = -20, .EastLimit = 20};
    EXPECT_TRUE(box.Holds(9.99999, 19.99999));
    EXPECT_TRUE(box.Holds(-9.99999, -19.99999));
    EXPECT_FALSE(box.Holds(10, 0));
    EXPECT_FALSE(box.Holds(-10, 0));
    EXPECT_FALSE(box.Holds(0, 20));
    EXPECT_FALSE(box.Holds(0, -20));
}

TEST(SearchBoxes, DoNotWrapAtThe180thMeridian) {
    Airport a = Field();
    a.Longitude = 179;
    a.CenterFreq = "";
    const Selection s({a, Neighbour("Beyond", 47, -179, "1"), Neighbour("Near", 47, 178, "2")});
    EXPECT_LT(s.Box->EastLimit, -170);
    EXPECT_EQ(s.S.ArtccFrequency, "Air Route Traffic Control Center");  // east of the one, west of the other
}

TEST(SearchBoxes, CloseToAPoleTheNorthLimitLiesOnTheFarSide) {
    Airport a = Field();
    a.Latitude = 89;
    const Selection s({a});
    EXPECT_LT(s.Box->NorthLimit, 89);
}

// ---- Frequencies

TEST(StationFrequencies, WithoutGroundAndTowerTheAirportIsUncontrolledAndApproachIsWiped) {
    EXPECT_THAT(LabelsFrom("", "", "119.2", ""), ElementsAre("", "", "", ""));
    EXPECT_THAT(LabelsFrom("", "", "119.2", "128.5"), ElementsAre("", "", "", "128.5"));
}

TEST(StationFrequencies, AnUncontrolledAirportKeepsItsCtaf) {
    Airport a = Field();
    a.GroundFreq = a.TowerFreq = "";
    EXPECT_EQ(Selection({a}).S.CtafFrequency, "122.8");
}

TEST(StationFrequencies, AMissingGroundOrTowerTakesTheOthersAndBothGetASuffix) {
    EXPECT_THAT(LabelsFrom("121.9", "", "119.2", "128.5"),
                ElementsAre("121.9 (GNDCON)", "121.9 (CT)", "119.2", "128.5"));
    EXPECT_THAT(LabelsFrom("", "118.3", "119.2", "128.5"),
                ElementsAre("118.3 (GNDCON)", "118.3 (CT)", "119.2", "128.5"));
}

TEST(StationFrequencies, AnEmptyApproachStaysEmpty) {
    EXPECT_THAT(LabelsFrom("121.9", "118.3", "", "128.5"), ElementsAre("121.9", "118.3", "", "128.5"));
}

TEST(StationFrequencies, EqualLabelsAreToldApartRowByRow) {
    EXPECT_THAT(LabelsFrom("1", "1", "3", "4"), ElementsAre("1 (GNDCON)", "1 (CT)", "3", "4"));
    EXPECT_THAT(LabelsFrom("1", "2", "2", "4"), ElementsAre("1", "2 (CT)", "2 (TRACON)", "4"));
    EXPECT_THAT(LabelsFrom("1", "2", "1", "4"), ElementsAre("1 (GNDCON)", "2", "1 (TRACON)", "4"));
    EXPECT_THAT(LabelsFrom("1", "2", "3", "2"), ElementsAre("1", "2 (CT)", "3", "2 (ARTCC)"));
    EXPECT_THAT(LabelsFrom("1", "2", "3", "1"), ElementsAre("1 (GNDCON)", "2", "3", "1 (ARTCC)"));
    EXPECT_THAT(LabelsFrom("1", "2", "3", "3"), ElementsAre("1", "2", "3 (TRACON)", "3 (ARTCC)"));
}

TEST(StationFrequencies, OfThreeEqualOnesOnlyTheFirstTwoAreToldApart) {
    EXPECT_THAT(LabelsFrom("1", "1", "1", "4"), ElementsAre("1 (GNDCON)", "1 (CT)", "1", "4"));
    EXPECT_THAT(LabelsFrom("1", "2", "2", "2"), ElementsAre("1", "2 (CT)", "2 (TRACON)", "2"));
    EXPECT_THAT(LabelsFrom("1", "1", "1", "1"),
                ElementsAre("1 (GNDCON)", "1 (CT)", "1 (TRACON)", "1 (ARTCC)"));
}

TEST(StationFrequencies, ASuffixCanStandTwice) {
    EXPECT_THAT(LabelsFrom("1", "1", "1 (CT)", "4"),
                ElementsAre("1 (GNDCON)", "1 (CT) (CT)", "1 (CT) (TRACON)", "4"));
}

/// The centre's label of an airport without one, among others in the list.
std::string CenterAmong(const std::vector<Airport>& others) {
    Airport a = Field();
    a.CenterFreq = "";
    std::vector<Airport> all = others;
    all.insert(all.begin() + 1, a);
    return Selection(all).S.ArtccFrequency;
}

TEST(StationFrequencies, AMissingCenterIsThatOfTheFirstNeighbourInTheBoxInListOrder) {
    EXPECT_EQ(CenterAmong({Neighbour("Far in the box", 49, -120, "1"), Neighbour("Near", 47, -122.1, "2")}),
              "1");
    EXPECT_EQ(CenterAmong({Neighbour("Outside", 52, -122, "1"), Neighbour("Near", 47, -122.1, "2")}), "2");
    EXPECT_EQ(CenterAmong({Neighbour("Without", 47, -122, ""), Neighbour("Near", 47, -122.1, "2")}), "2");
}

TEST(StationFrequencies, ACenterThatNobodyInTheBoxHasIsToldInWords) {
    EXPECT_EQ(CenterAmong({Neighbour("Outside", 52, -122, "1")}), "Air Route Traffic Control Center");
}

TEST(StationFrequencies, ASecondCopyOfTheAirportDoesNotSupplyItsCenter) {
    EXPECT_EQ(CenterAmong({Neighbour("Test Field", 47, -122, "1")}), "Air Route Traffic Control Center");
}

TEST(StationFrequencies, ANeighbourExactlyOnALimitIsOutside) {
    Airport a = Field();
    a.CenterFreq = "";
    const double limit = ProjectNm(47, -122, 0, 200).Latitude;
    EXPECT_EQ(Selection({a, Neighbour("On", limit, -122, "1")}).S.ArtccFrequency,
              "Air Route Traffic Control Center");
    EXPECT_EQ(Selection({a, Neighbour("In", limit - 0.00001, -122, "1")}).S.ArtccFrequency, "1");
}

// ---- From the files

TEST(StationPreparation, ReadsTheDatabaseSelectsAndLoadsTheTerrain) {
    TempFolder app;
    AirportList list;
    list.Add(Field());
    WriteAirports(app.Path(), list);
    WriteConfig(app.Path(), {"sim", 1});
    app.Write("world_terrain.db", "47.1 -122.1 1000\n");
    Station station;
    const auto box = PrepareStation(station, app.Path(), "Test Field (KTST)");
    ASSERT_TRUE(box.has_value());
    EXPECT_EQ(station.MountainCount, 1);
    EXPECT_EQ(station.HighestTerrain, 5281);
}

TEST(StationPreparation, WithoutTheLabelLoadsNothing) {
    TempFolder app;
    WriteAirports(app.Path(), AirportList());
    WriteConfig(app.Path(), {"sim", 0});
    Station station;
    EXPECT_FALSE(PrepareStation(station, app.Path(), " ()").has_value());
    EXPECT_EQ(station.HighestTerrain, 0);
}

TEST(StationPreparation, AMissingTerrainFileIsNamed) {
    TempFolder app;
    AirportList list;
    list.Add(Field());
    WriteAirports(app.Path(), list);
    WriteConfig(app.Path(), {"sim", 1});
    Station station;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { PrepareStation(station, app.Path(), "Test Field (KTST)"); }),
                HasSubstr("world_terrain.db: is not there"));
}

}  // namespace
}  // namespace corvenna
