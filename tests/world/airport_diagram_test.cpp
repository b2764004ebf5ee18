#include "world/airport_diagram.h"

#include <gmock/gmock.h>

#include <limits>

#include "station/geometry.h"
#include "world/diagram_layout.h"

namespace corvenna {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

/// Runway 16L southward from its threshold, taxiway A beside it, two gates.
Airport Field() {
    Airport a;
    a.Name = "Test Field";
    a.Icao = "KTST";
    a.Latitude = 47;
    a.Longitude = -122;
    a.TowerFreq = "118.3";
    a.MainRunwayId = "16L";
    a.MainRunwayLatitude = 47.01;
    a.MainRunwayLongitude = -122;
    a.MainRunwayLength = 6000;
    a.MainRunwayWidth = 150;
    a.MainRunwayHeading = 160;
    a.TaxiPoints = {{1, 47.01, -122}, {1, 46.9935, -122}, {1, 47.01, -122.004}, {1, 46.9935, -122.004}};
    a.TaxiPointCount = 4;
    a.ParkingSpots = {{{"GATE 1", 85, 47, -122.008, 0}, {"GATE 2", 85, 47.002, -122.008, 0}}};
    a.ParkingSpotCount = 2;
    a.TaxiPaths = {{{1, 0, 1, "Runway 16L"}, {0, 2, 3, "A"}, {0, 0, 2, " "}, {2, 3, 0, "0"}}};
    a.TaxiPathCount = 4;
    return a;
}

TEST(DiagramLayout, TheOtherEndOfARunwayHasTheOppositeNumberAndSide) {
    EXPECT_EQ(OppositeDesignator("16L"), "34R");
    EXPECT_EQ(OppositeDesignator("34R"), "16L");
    EXPECT_EQ(OppositeDesignator("9C"), "27C");
    EXPECT_EQ(OppositeDesignator("18"), "36");
    EXPECT_EQ(OppositeDesignator("36"), "18");
    EXPECT_EQ(OppositeDesignator("1H"), "19");
    EXPECT_EQ(OppositeDesignator(""), "");
    EXPECT_EQ(OppositeDesignator("37"), "");
    EXPECT_EQ(OppositeDesignator("99999999999"), "");
}

TEST(DiagramLayout, PlacesAreFeetEastAndSouthOfTheReference) {
    const DiagramLayout layout = LayOut(Field(), std::nullopt);
    ASSERT_THAT(layout.Spots, SizeIs(2));
    EXPECT_NEAR(layout.Spots[0].Centre.X, -0.008 * 60 * 6080 * 0.682, 1);
    EXPECT_NEAR(layout.Spots[0].Centre.Y, 0, 1e-6);
    EXPECT_NEAR(layout.Spots[1].Centre.Y, -0.002 * 60 * 6080, 1e-6);
    EXPECT_NEAR(layout.Spots[0].Room, 0.001 * 60 * 6080, 1e-6);
    EXPECT_THAT(layout.Taxiways, SizeIs(2));
    EXPECT_THAT(layout.Ties, SizeIs(1));
    EXPECT_EQ(layout.LeftOut, 0);
}

TEST(DiagramLayout, TheMainRunwayLiesAlongItsTaxiPathsIfTheyGoFarEnough) {
    const DiagramLayout layout = LayOut(Field(), 20);
    ASSERT_THAT(layout.Runways, SizeIs(1));
    const DiagramRunway& runway = layout.Runways[0];
    EXPECT_TRUE(runway.Main);
    EXPECT_EQ(runway.OtherDesignator, "34R");
    EXPECT_NEAR(runway.Threshold.Y, -3648, 1);
    EXPECT_NEAR(runway.FarEnd.X, 0, 1);  // due south, as the paths go
    EXPECT_NEAR(runway.FarEnd.Y, -3648 + 6000, 1);
}

TEST(DiagramLayout, WithoutThemItLiesAlongItsHeadingTurnedByTheVariation) {
    Airport a = Field();
    a.TaxiPaths.reset();
    const DiagramRunway runway = LayOut(a, 20).Runways.at(0);
    EXPECT_NEAR(runway.FarEnd.X, 0, 1);  // 160 magnetic, 20 east
    EXPECT_NEAR(LayOut(a, std::nullopt).Runways.at(0).FarEnd.X, 6000 * 0.342, 1);
}

TEST(DiagramLayout, OtherRunwaysReachFromEndToEndOfTheirPathsAndBeginWhereTheirNameSays) {
    Airport a = Field();
    a.TaxiPaths->push_back({1, 3, 2, "Runway 34L"});  // named by its southern end
    a.TaxiPaths->push_back({1, 2, 3, "Runway 17"});   // by its northern end
    const DiagramLayout layout = LayOut(a, 0);
    ASSERT_THAT(layout.Runways, SizeIs(3));
    EXPECT_EQ(layout.Runways[1].Designator, "17");
    EXPECT_LT(layout.Runways[1].Threshold.Y, layout.Runways[1].FarEnd.Y);
    EXPECT_EQ(layout.Runways[2].Designator, "34L");
    EXPECT_GT(layout.Runways[2].Threshold.Y, layout.Runways[2].FarEnd.Y);
}

TEST(DiagramLayout, WhatIsNowhereOrFarAwayIsLeftOutAndCounted) {
    Airport a = Field();
    a.TaxiPaths->push_back({0, 0, 99, "B"});
    a.TaxiPaths->push_back({0, -1, 0, "B"});
    a.TaxiPaths->push_back({2, 0, 2, "0"});
    a.ParkingSpots->push_back({"GATE 3", 85, 0, 0, 0});
    a.ParkingSpots->push_back({"GATE 4", 85, std::numeric_limits<double>::quiet_NaN(), 0, 0});
    const DiagramLayout layout = LayOut(a, 0);
    EXPECT_EQ(layout.LeftOut, 5);
    EXPECT_LT(layout.All.Height(), 10000);
}

TEST(DiagramLayout, AnAirportAcrossThe180thMeridianHoldsTogether) {
    Airport a = Field();
    a.Longitude = 179.999;
    a.ParkingSpots = {{{"GATE 1", 85, 47, -179.999, 0}}};
    EXPECT_NEAR(LayOut(a, 0).Spots.at(0).Centre.X, 0.002 * 60 * 6080 * 0.682, 1);
}

TEST(AirportDiagram, ShowsNamesRadiiDesignatorsFrequenciesAndVariation) {
    EXPECT_THAT(
        DrawAirport(Field(), static_cast<std::int16_t>(-15)),
        AllOf(HasSubstr(">Test Field (KTST)<"), HasSubstr(">16L<"), HasSubstr(">34R<"), HasSubstr(">A<"),
              HasSubstr(">GATE 1<"), HasSubstr(">85 ft<"), HasSubstr("Tower 118.3"), HasSubstr(">N<"),
              HasSubstr(">VAR 15 W<"), HasSubstr("ft ("), HasSubstr("6000 x 150 ft, heading 160")));
}

TEST(AirportDiagram, NamesArePlainTextWhateverTheyHold) {
    Airport a = Field();
    a.Name = "A <b> & \"M\xFCnchen\x01\"";
    EXPECT_THAT(DrawAirport(a, std::nullopt),
                AllOf(HasSubstr("A &lt;b&gt; &amp; &quot;M\xC3\xBCnchen &quot;"), Not(HasSubstr("<b>"))));
}

TEST(AirportDiagram, AnAirportOfNothingOrNonsenseIsDrawnAllTheSame) {
    Airport nonsense = Field();
    nonsense.Latitude = std::numeric_limits<double>::infinity();
    Airport odd = Field();
    odd.MainRunwayLength = std::numeric_limits<std::int32_t>::max();
    odd.MainRunwayWidth = std::numeric_limits<std::int32_t>::min();
    for (TaxiPoint& point : *odd.TaxiPoints) point = odd.TaxiPoints->front();
    odd.ParkingSpots->at(1) = odd.ParkingSpots->at(0);
    odd.ParkingSpots->at(0).Radius = std::numeric_limits<std::int32_t>::min();
    for (const Airport& airport : {Airport{}, nonsense, odd}) {
        const std::string drawing = DrawAirport(airport, std::nullopt);
        EXPECT_THAT(drawing, HasSubstr("</svg>"));
        for (const char* const number : {"\"nan", "\"-nan", "\"inf", "\"-inf", " nan", " inf"}) {
            EXPECT_THAT(drawing, Not(HasSubstr(number)));
        }
    }
}

TEST(AirportDiagram, CrowdedParkingIsShownASecondTimeAndLarger) {
    Airport a = Field();
    EXPECT_THAT(DrawAirport(a, std::nullopt), Not(HasSubstr("times larger")));
    a.MainRunwayLength = 12000;
    a.ParkingSpots.emplace();
    for (int i = 0; i < 20; ++i)
        a.ParkingSpots->push_back({"GATE C " + std::to_string(i), 85, 47 + i * 0.0003, -122.008, 0});
    EXPECT_THAT(DrawAirport(a, std::nullopt), HasSubstr("times larger"));
}

}  // namespace
}  // namespace corvenna
