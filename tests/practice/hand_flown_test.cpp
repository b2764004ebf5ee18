#include "practice/hand_flown.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>

#include "practice/data_files.h"
#include "station/text.h"
#include "support/practice_station.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

std::shared_ptr<const AirportChart> SeattleChart() {
    static const auto chart =
        std::make_shared<const AirportChart>(PracticeStation(CORVENNA_TEST_DATA, "KSEA"));
    return chart;
}

class HandFlownTest : public testing::Test {
  protected:
    /// Moves until it is so, an hour at most.
    bool MovesUntil(const std::function<bool()>& isSo) {
        for (auto time = 0ms; time < 1h; time += 1s) {
            if (isSo()) return true;
            Mine.Move(1s);
        }
        return false;
    }
    bool Stands() const { return Mine.Aircraft().Knots == 0; }
    double FeetAboveField() const { return Mine.Aircraft().AltitudeFeet - Chart->ElevationFeet(); }

    std::shared_ptr<const AirportChart> Chart = SeattleChart();
    HandFlown Mine{Chart, ""};
};

TEST_F(HandFlownTest, BeginsAtTheFirstSpotOrAtTheOneNamed) {
    const ParkingSpot& first = Chart->Spots().at(0);
    EXPECT_EQ(Mine.Aircraft().Where(), (Place{first.Latitude, first.Longitude}));
    const ParkingSpot& third = Chart->Spots().at(2);
    EXPECT_EQ(HandFlown(Chart, third.Name).Aircraft().Where(), (Place{third.Latitude, third.Longitude}));
}

TEST_F(HandFlownTest, AnUnknownSpotIsRefused) {
    EXPECT_EQ(ComplaintOf<std::invalid_argument>([&] { HandFlown(Chart, "GATE Z 99"); }),
              "there is no parking spot GATE Z 99 here");
}

TEST_F(HandFlownTest, KnowsItsCommandsByTheirFirstWord) {
    EXPECT_TRUE(HandFlown::IsCommand("goto runway"));
    EXPECT_TRUE(HandFlown::IsCommand("  Heading 210"));
    EXPECT_FALSE(HandFlown::IsCommand("2"));
    EXPECT_FALSE(HandFlown::IsCommand("KSEA,1"));
    EXPECT_FALSE(HandFlown::IsCommand("headings"));
    EXPECT_FALSE(HandFlown::IsCommand(""));
}

TEST_F(HandFlownTest, TaxiesToTheRunwayAndStaysOffIt) {
    EXPECT_EQ(Mine.Do("goto runway"), "taxiing to the runway; it holds short of it");
    Mine.Move(1s);
    EXPECT_TRUE(MovesUntil([&] { return Stands(); }));
    EXPECT_FALSE(Chart->IsOnRunway(Mine.Aircraft().Where()));
    EXPECT_LT(std::abs(Chart->SeenFromRunway(Mine.Aircraft().Where()).Right), 0.15);
}

TEST_F(HandFlownTest, TaxiesToASpotOfAnyCase) {
    const ParkingSpot& spot = Chart->Spots().at(5);
    Mine.Do("goto " + LowerCase(spot.Name));
    Mine.Move(1s);
    EXPECT_TRUE(MovesUntil([&] { return Stands(); }));
    EXPECT_LT(MilesBetween(Mine.Aircraft().Where(), {spot.Latitude, spot.Longitude}), 0.02);
}

TEST_F(HandFlownTest, TakesOffLevelsOffAndFollowsHeadingAndAltitude) {
    Mine.Do("takeoff");
    EXPECT_TRUE(MovesUntil([&] { return Mine.InAir(); }));
    EXPECT_TRUE(MovesUntil([&] { return FeetAboveField() > 1999; }));
    Mine.Do("heading 90");
    Mine.Do("altitude 4000");
    Mine.Move(5min);
    EXPECT_NEAR(Mine.Aircraft().AltitudeFeet, 4000, 1);
    EXPECT_NEAR(Mine.Aircraft().HeadingTrue, Chart->MagneticToTrue(90, Mine.Aircraft().Where()), 2);
}

TEST_F(HandFlownTest, LandsAndClearsTheRunway) {
    Mine.Do("takeoff");
    ASSERT_TRUE(MovesUntil([&] { return Mine.InAir(); }));
    Mine.Do("heading 270");
    Mine.Move(4min);
    Mine.Do("land");
    EXPECT_TRUE(MovesUntil([&] { return !Mine.InAir(); }));
    EXPECT_TRUE(Chart->IsOnRunway(Mine.Aircraft().Where()));
    EXPECT_TRUE(MovesUntil([&] { return Stands(); }));
    EXPECT_FALSE(Chart->IsOnRunway(Mine.Aircraft().Where()));
    EXPECT_EQ(FeetAboveField(), 0);
}

TEST_F(HandFlownTest, FliesTowardsAPlace) {
    Mine.Do("takeoff");
    ASSERT_TRUE(MovesUntil([&] { return Mine.InAir(); }));
    EXPECT_THAT(Mine.Do("goto 48.0,-122.3"), StartsWith("flying there, "));
    Mine.Move(2min);
    EXPECT_NEAR(TurnFrom(Mine.Aircraft().HeadingTrue, 0), 0, 5);
}

TEST_F(HandFlownTest, StopsOnTheGroundAndTellsWhereItIs) {
    Mine.Do("goto runway");
    Mine.Move(20s);
    EXPECT_GT(Mine.Aircraft().Knots, 0);
    Mine.Do("stop");
    Mine.Move(1s);
    EXPECT_TRUE(Stands());
    EXPECT_THAT(Mine.Do("where"), HasSubstr("0 knots"));
}

TEST_F(HandFlownTest, WhatDoesNotFitIsExplained) {
    const auto complaint = [&](const char* command) {
        return ComplaintOf<std::invalid_argument>([&] { Mine.Do(command); });
    };
    EXPECT_EQ(complaint("heading 90"), "you are on the ground; takeoff takes you into the air");
    EXPECT_EQ(complaint("land"), "you are on the ground; takeoff takes you into the air");
    EXPECT_EQ(complaint("goto nowhere"), "\"nowhere\" is neither the runway nor a parking spot here");
    Mine.Do("takeoff");
    ASSERT_TRUE(MovesUntil([&] { return Mine.InAir(); }));
    EXPECT_EQ(complaint("takeoff"), "you are in the air; land takes you to the ground");
    EXPECT_EQ(complaint("heading 361"), "\"361\" is no number from 0 to 360");
    EXPECT_EQ(complaint("heading"), "\"\" is no number from 0 to 360");
    EXPECT_EQ(complaint("heading nan"), "\"nan\" is no number from 0 to 360");
    EXPECT_THAT(complaint("altitude 1e9"), StartsWith("\"1e9\" is no number"));
    EXPECT_THAT(complaint("goto 91,0"), StartsWith("\"91\" is no number"));
    EXPECT_THAT(complaint("goto runway"), StartsWith("in the air, goto takes a latitude"));
}

}  // namespace
}  // namespace corvenna
