#include "practice/motion.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvenna {
namespace {

using namespace std::chrono_literals;

constexpr double FeetPerMile = 1852 / 0.3048;

// ---- Places

TEST(Motion, AMinuteOfLatitudeIsAMile) {
    EXPECT_NEAR(MilesBetween({47, -122}, {48, -122}), 60, 1e-9);
    EXPECT_NEAR(MilesBetween({60, 10}, {60, 12}), 60, 0.01);
    EXPECT_EQ(MilesBetween({47, -122}, {47, -122}), 0);
}

TEST(Motion, CoursesRunFromNorthByEast) {
    EXPECT_NEAR(CourseTo({0, 10}, {1, 10}), 0, 1e-9);
    EXPECT_NEAR(CourseTo({0, 10}, {0, 11}), 90, 1e-9);
    EXPECT_NEAR(CourseTo({0, 10}, {-1, 10}), 180, 1e-9);
    EXPECT_NEAR(CourseTo({0, 10}, {0, 9}), 270, 1e-9);
    EXPECT_EQ(CourseTo({47, -122}, {47, -122}), 0);
}

TEST(Motion, TheDateLineIsCrossedTheShortWay) {
    EXPECT_NEAR(MilesBetween({0, 179.9}, {0, -179.9}), 12, 1e-6);
    EXPECT_NEAR(CourseTo({0, 179.9}, {0, -179.9}), 90, 1e-9);
    EXPECT_NEAR(PlaceBeyond({0, 179.9}, 90, 12).Longitude, -179.9, 1e-9);
}

TEST(Motion, APlaceBeyondIsSoFarOnThatCourse) {
    const Place from{47, -122};
    const Place place = PlaceBeyond(from, 200, 50);
    EXPECT_NEAR(MilesBetween(from, place), 50, 1e-9);
    EXPECT_NEAR(CourseTo(from, place), 200, 1e-9);
}

TEST(Motion, TurnsGoTheShorterWay) {
    EXPECT_EQ(TurnFrom(350, 10), 20);
    EXPECT_EQ(TurnFrom(10, 350), -20);
    EXPECT_EQ(WholeCircle(-10), 350);
    EXPECT_EQ(WholeCircle(360), 0);
    EXPECT_EQ(WholeCircle(725), 5);
}

// ---- On wheels

TEST(Motion, TaxiingGathersSpeedToWhatIsAllowed) {
    AircraftState aircraft{47, -122, 400, 0, 0};
    Track track{{{48, -122}}, 0};
    EXPECT_FALSE(Taxi(aircraft, track, 18, 1s));
    EXPECT_NEAR(aircraft.Knots, 2, 1e-9);
    for (int i = 0; i < 60; ++i) Taxi(aircraft, track, 18, 1s);
    EXPECT_EQ(aircraft.Knots, 18);
    const double latitude = aircraft.Latitude;
    Taxi(aircraft, track, 18, 1s);
    EXPECT_NEAR((aircraft.Latitude - latitude) * 60 * FeetPerMile, 18 * FeetPerMile / 3600, 1e-6);
}

TEST(Motion, ToldToStopHeBrakesAndStands) {
    AircraftState aircraft{47, -122, 400, 0, 18};
    Track track{{{48, -122}}, 0};
    for (int i = 0; i < 6; ++i) EXPECT_FALSE(Taxi(aircraft, track, 0, 1s));
    EXPECT_EQ(aircraft.Knots, 0);
    const Place stopped = aircraft.Where();
    Taxi(aircraft, track, 0, 1s);
    EXPECT_EQ(aircraft.Where(), stopped);
    Taxi(aircraft, track, 18, 1s);
    EXPECT_FALSE(aircraft.Where() == stopped);
}

TEST(Motion, HeTaxiesThroughEveryPointAndStandsAtTheLast) {
    AircraftState aircraft{47, -122, 400, 0, 0};
    Track track{{{47.001, -122}, {47.001, -122.001}, {47.002, -122.001}}, 0};
    double fastestInTurn = 0;
    int seconds = 0;
    bool there = false;
    while (!there && ++seconds < 600) {
        there = Taxi(aircraft, track, 18, 1s);
        const bool corner = MilesBetween(aircraft.Where(), track.Points[0]) * FeetPerMile < 15;
        if (corner) fastestInTurn = std::max(fastestInTurn, aircraft.Knots);
    }
    EXPECT_TRUE(there);
    EXPECT_EQ(aircraft.Where(), track.Points.back());
    EXPECT_EQ(aircraft.Knots, 0);
    EXPECT_NEAR(TurnFrom(aircraft.HeadingTrue, 0), 0, 1);
    EXPECT_GT(seconds, 35);  // some 850 feet at 18 knots and less
    EXPECT_LT(seconds, 90);
}

TEST(Motion, AnEmptyTrackIsAtItsEnd) {
    AircraftState aircraft{47, -122, 400, 77, 0};
    Track track;
    EXPECT_TRUE(Taxi(aircraft, track, 18, 1s));
    EXPECT_EQ(aircraft.HeadingTrue, 77);
}

TEST(Motion, NoTimeIsNoWay) {
    AircraftState aircraft{47, -122, 400, 0, 18};
    Track track{{{48, -122}}, 0};
    EXPECT_FALSE(Taxi(aircraft, track, 18, 0s));
    EXPECT_EQ(aircraft.Latitude, 47);
}

// ---- In the air

TEST(Motion, AStandardTurnIsThreeDegreesASecond) {
    AircraftState aircraft{47, -122, 3000, 350, 120};
    const Steering steering{90, Turn::Shorter, 3000, 120, 1000, 1000};
    for (int i = 0; i < 10; ++i) Steer(aircraft, steering, 1s);
    EXPECT_NEAR(aircraft.HeadingTrue, 20, 1e-9);
    for (int i = 0; i < 40; ++i) Steer(aircraft, steering, 1s);
    EXPECT_EQ(aircraft.HeadingTrue, 90);
}

TEST(Motion, HeTurnsTheWayThatHeIsTold) {
    AircraftState left{47, -122, 3000, 10, 120};
    Steer(left, {20, Turn::Left, 3000, 120, 1000, 1000}, 1s);
    EXPECT_NEAR(left.HeadingTrue, 7, 1e-9);
    AircraftState right{47, -122, 3000, 10, 120};
    Steer(right, {350, Turn::Right, 3000, 120, 1000, 1000}, 1s);
    EXPECT_NEAR(right.HeadingTrue, 13, 1e-9);
}

TEST(Motion, ATurnThatIsAllButDoneIsNotFlownOnceAround) {
    AircraftState aircraft{47, -122, 3000, 21, 120};
    Steer(aircraft, {20, Turn::Right, 3000, 120, 1000, 1000}, 1s);
    EXPECT_EQ(aircraft.HeadingTrue, 20);
}

TEST(Motion, AltitudeAndSpeedChangeByTheirRates) {
    AircraftState aircraft{47, -122, 3000, 0, 120};
    Steer(aircraft, {0, Turn::Shorter, 5000, 140, 1200, 600}, 1s);
    EXPECT_NEAR(aircraft.AltitudeFeet, 3020, 1e-9);
    EXPECT_NEAR(aircraft.Knots, 123, 1e-9);
    Steer(aircraft, {0, Turn::Shorter, 3015, 120, 1200, 600}, 1s);
    EXPECT_EQ(aircraft.AltitudeFeet, 3015);
    EXPECT_EQ(aircraft.Knots, 120);
    Steer(aircraft, {0, Turn::Shorter, 1000, 120, 1200, 600}, 1s);
    EXPECT_NEAR(aircraft.AltitudeFeet, 3005, 1e-9);
}

TEST(Motion, HeFliesWhereHisNosePoints) {
    AircraftState aircraft{47, -122, 3000, 0, 120};
    for (int i = 0; i < 30; ++i) Steer(aircraft, {0, Turn::Shorter, 3000, 120, 1000, 1000}, 1s);
    EXPECT_NEAR(aircraft.Latitude, 47 + 1.0 / 60, 1e-9);
}

}  // namespace
}  // namespace corvenna
