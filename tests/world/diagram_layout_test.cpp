#include "world/diagram_layout.h"

#include <gmock/gmock.h>

#include "station/geometry.h"
#include "world/diagram_field.h"

namespace corvenna {
namespace {

using testing::SizeIs;

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

TEST(DiagramLayout, TheNumberOfASpotIsWhatTellsItFromItsNeighbours) {
    EXPECT_EQ(SpotNumber("GATE A 12"), "A 12");
    EXPECT_EQ(SpotNumber("NE PARKING 3"), "3");
    EXPECT_EQ(SpotNumber("GATE 7"), "7");
    EXPECT_EQ(SpotNumber(" 7"), "7");
    EXPECT_EQ(SpotNumber("RAMP"), "RAMP");
    EXPECT_EQ(SpotNumber(""), "");
    EXPECT_EQ(SpotNumber("   "), "");
}

}  // namespace
}  // namespace corvenna
