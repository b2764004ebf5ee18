#include "practice/motion.h"

#include <gtest/gtest.h>

namespace corvenna {
namespace {

using namespace std::chrono_literals;

TEST(Motion, SixtyKnotsNorthAreAMinuteOfLatitudeInAMinute) {
    AircraftState aircraft{47, -122, 1000, 0};
    EXPECT_FALSE(Advance(aircraft, {48, -122, 1000, 60}, 60s));
    EXPECT_NEAR(aircraft.Latitude, 47 + 1.0 / 60, 1e-9);
    EXPECT_NEAR(aircraft.Longitude, -122, 1e-9);
    EXPECT_NEAR(aircraft.HeadingTrue, 0, 1e-9);
}

TEST(Motion, EastAndWestAreSeenInTheHeading) {
    AircraftState aircraft{0, 10, 0, 0};
    Advance(aircraft, {0, 11, 0, 60}, 1s);
    EXPECT_NEAR(aircraft.HeadingTrue, 90, 1e-9);
    Advance(aircraft, {0, 9, 0, 60}, 1s);
    EXPECT_NEAR(aircraft.HeadingTrue, 270, 1e-9);
}

TEST(Motion, ADegreeOfLongitudeIsShorterInTheNorth) {
    AircraftState aircraft{60, 10, 0, 0};
    Advance(aircraft, {60, 12, 0, 60}, 60s);
    EXPECT_NEAR(aircraft.Longitude, 10 + 2.0 / 60, 1e-6);
}

TEST(Motion, AltitudeChangesWithTheWayMade) {
    AircraftState aircraft{47, -122, 1000, 0};
    Advance(aircraft, {48, -122, 4000, 60}, 30min);
    EXPECT_NEAR(aircraft.AltitudeFeet, 2500, 1e-6);
}

TEST(Motion, ItArrivesAndStops) {
    AircraftState aircraft{47, -122, 1000, 0};
    EXPECT_TRUE(Advance(aircraft, {47.5, -122.5, 400, 120}, 1h));
    EXPECT_EQ(aircraft.Latitude, 47.5);
    EXPECT_EQ(aircraft.Longitude, -122.5);
    EXPECT_EQ(aircraft.AltitudeFeet, 400);
}

TEST(Motion, WhoIsThereAlreadyKeepsHisHeading) {
    AircraftState aircraft{47, -122, 1000, 123};
    EXPECT_TRUE(Advance(aircraft, {47, -122, 400, 120}, 0s));
    EXPECT_EQ(aircraft.HeadingTrue, 123);
    EXPECT_EQ(aircraft.AltitudeFeet, 400);
}

TEST(Motion, NoTimeIsNoWay) {
    AircraftState aircraft{47, -122, 1000, 0};
    EXPECT_FALSE(Advance(aircraft, {48, -122, 400, 120}, 0s));
    EXPECT_EQ(aircraft.Latitude, 47);
    EXPECT_EQ(aircraft.AltitudeFeet, 1000);
}

TEST(Motion, TheDateLineIsCrossedTheShortWay) {
    AircraftState aircraft{0, 179.99, 0, 0};
    EXPECT_FALSE(Advance(aircraft, {0, -179.9, 0, 60}, 72s));
    EXPECT_NEAR(aircraft.HeadingTrue, 90, 1e-9);
    EXPECT_NEAR(aircraft.Longitude, -179.99, 1e-9);
}

}  // namespace
}  // namespace corvenna
