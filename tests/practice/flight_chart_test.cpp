#include "practice/flight_chart.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/practice_station.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

constexpr double FeetPerMile = 1852 / 0.3048;

/// The chart of one of the shipped airports.
AirportChart ChartOf(std::string_view code) {
    return AirportChart(PracticeStation(CORVENNA_TEST_DATA, code));
}

constexpr const char* WithTaxiways[] = {"KSEA", "LOWI", "KBFI", "SCGE", "KFHR", "KBID", "NZWN"};

double LongestStep(Place from, const std::vector<Place>& way) {
    double longest = 0;
    for (const Place& place : way) {
        longest = std::max(longest, MilesBetween(from, place));
        from = place;
    }
    return longest;
}

// ---- The runway

TEST(AirportChart, PlacesAreSeenAlongTheRunwayAndBesideIt) {
    const TestField field;
    const AirportChart chart(field.S);
    const Place place = chart.FromRunway({3, -2});
    EXPECT_NEAR(chart.SeenFromRunway(place).Along, 3, 1e-3);
    EXPECT_NEAR(chart.SeenFromRunway(place).Right, -2, 1e-3);
    EXPECT_NEAR(CourseTo(chart.Threshold(), chart.FromRunway({5, 0})), 160, 0.01);
    EXPECT_NEAR(CourseTo(chart.Threshold(), chart.FromRunway({0, 5})), 250, 0.01);
}

TEST(AirportChart, TheRunwayIsAsLongAndWideAsItIs) {
    const TestField field;
    const AirportChart chart(field.S);
    const double half = field.S.RunwayWidth / FeetPerMile / 2;
    EXPECT_TRUE(chart.IsOnRunway(chart.Threshold()));
    EXPECT_TRUE(chart.IsOnRunway(chart.FromRunway({chart.RunwayMiles() / 2, half})));
    EXPECT_FALSE(chart.IsOnRunway(chart.FromRunway({chart.RunwayMiles() / 2, 2 * half})));
    EXPECT_FALSE(chart.IsOnRunway(chart.FromRunway({chart.RunwayMiles() + 0.01, 0})));
    EXPECT_FALSE(chart.IsOnRunway(chart.FromRunway({-0.01, 0})));
}

TEST(AirportChart, TheControllerLooksAlongTheNumberOfTheRunway) {
    TestField field;
    field.S.MagVarGrid.assign(MagVarGridSize, 3277);  // 18 degrees east
    const AirportChart chart(field.S);
    const Place along = PlaceBeyond(chart.Threshold(), field.S.RunwayHeading, 0.3);
    EXPECT_TRUE(chart.IsWatched(along));
    EXPECT_FALSE(chart.IsOnRunway(along));
    EXPECT_TRUE(chart.IsNoPlaceToStop(along));
    EXPECT_FALSE(chart.IsWatched(chart.FromRunway({0.3, 0})));
    EXPECT_TRUE(chart.IsNoPlaceToStop(chart.FromRunway({0.3, 0})));
    EXPECT_FALSE(chart.IsWatched(PlaceBeyond(chart.Threshold(), field.S.RunwayHeading, 6)));
}

TEST(AirportChart, NobodyHoldsShortWhereTheControllerTakesHimForOneOnTheRunway) {
    for (const char* code : WithTaxiways) {
        const AirportChart chart = ChartOf(code);
        for (const ParkingSpot& spot : chart.Spots()) {
            const auto way = chart.WayToRunway({spot.Latitude, spot.Longitude}, {});
            ASSERT_FALSE(way.ToHoldShort.empty()) << code << " from " << spot.Name;
            EXPECT_FALSE(chart.IsWatched(way.ToHoldShort.back())) << code << " from " << spot.Name;
        }
    }
}

TEST(AirportChart, MagneticHeadingsAreMadeTrueByTheVariationOfThePlace) {
    TestField field;
    field.S.MagVarGrid.assign(MagVarGridSize, 3277);  // 18 degrees east
    const AirportChart chart(field.S);
    EXPECT_EQ(chart.MagneticToTrue(100, chart.Threshold()), 118);
    EXPECT_EQ(chart.MagneticToTrue(350, chart.Threshold()), 8);
    EXPECT_EQ(chart.RunwayTrue(), 178);
}

// ---- Out

TEST(AirportChart, EverySpotHasAWayThatStopsShortOfTheRunway) {
    for (const char* code : WithTaxiways) {
        const AirportChart chart = ChartOf(code);
        for (const ParkingSpot& spot : chart.Spots()) {
            SCOPED_TRACE(std::string(code) + " " + spot.Name);
            const Place from{spot.Latitude, spot.Longitude};
            const auto way = chart.WayToRunway(from, {});
            ASSERT_FALSE(way.ToHoldShort.empty());
            EXPECT_FALSE(chart.IsOnRunway(way.ToHoldShort.back()));
            ASSERT_GE(way.ToLineUp.size(), 2u);
            EXPECT_LT(MilesBetween(way.ToHoldShort.back(), way.ToLineUp.front()), 0.2);
            EXPECT_NEAR(MilesBetween(chart.Threshold(), way.ToLineUp.back()) * FeetPerMile, 150, 1);
            EXPECT_NEAR(chart.SeenFromRunway(way.ToLineUp.back()).Right, 0, 1e-6);
        }
    }
}

TEST(AirportChart, WithoutTaxiwaysHeTaxiesStraightToTheRunwaysSide) {
    const AirportChart chart = ChartOf("S31");
    const auto way = chart.WayToRunway(chart.Middle(), {});
    ASSERT_FALSE(way.ToHoldShort.empty());
    EXPECT_FALSE(chart.IsOnRunway(way.ToHoldShort.back()));
    EXPECT_LT(MilesBetween(way.ToHoldShort.back(), chart.Threshold()), 0.2);
}

TEST(AirportChart, TaxiwaysThatEndSomewhereElseAreNoWay) {
    TestField field;
    field.S.AirportTaxiPoints = {{1, 47.1, -122.1}, {1, 47.11, -122.1}};
    field.S.AirportTaxiPaths = {{0, 0, 1, "A"}, {0, 1, 0, "A"}};
    const AirportChart chart(field.S);
    EXPECT_LT(MilesBetween(chart.WayToRunway({47.1, -122.1}, {}).ToHoldShort.back(), chart.Threshold()), 0.2);
}

// ---- In

TEST(AirportChart, EverySpotCanBeReachedFromTheRunway) {
    for (const char* code : WithTaxiways) {
        const AirportChart chart = ChartOf(code);
        for (const double part : {0.1, 0.5, 0.95}) {
            const Place landed = chart.FromRunway({chart.RunwayMiles() * part, 0});
            const auto off = chart.WayOffRunway(landed, 0.05);
            SCOPED_TRACE(code);
            ASSERT_FALSE(off.empty());
            EXPECT_FALSE(chart.IsOnRunway(off.back()));
            for (const ParkingSpot& spot : chart.Spots()) {
                SCOPED_TRACE(spot.Name);
                const auto way = chart.WayToSpot(off.back(), spot.Name, {});
                ASSERT_GE(way.size(), 2u);
                EXPECT_LT(LongestStep(off.back(), way), 1.2);
                EXPECT_LT(MilesBetween(way.back(), {spot.Latitude, spot.Longitude}), 0.001);
            }
        }
    }
}

TEST(AirportChart, HeLeavesTheRunwayAheadOfHimWhereHeCan) {
    const AirportChart chart = ChartOf("KSEA");
    const Place landed = chart.FromRunway({chart.RunwayMiles() / 2, 0});
    EXPECT_GT(chart.SeenFromRunway(chart.WayOffRunway(landed, 0.05).front()).Along,
              chart.SeenFromRunway(landed).Along);
}

TEST(AirportChart, AnExitThatHeCannotBrakeForIsMissed) {
    const AirportChart chart = ChartOf("KSEA");
    const Place landed = chart.FromRunway({0, 0});
    for (const double braking : {0.2, 0.5, 1.0}) {
        EXPECT_GE(chart.SeenFromRunway(chart.WayOffRunway(landed, braking).front()).Along, braking);
    }
}

TEST(AirportChart, NoNameIsNoSpot) {
    const TestField field;  // its list of spots is one blank element
    EXPECT_TRUE(AirportChart(field.S).WayToSpot({47, -122}, "", {}).empty());
}

TEST(AirportChart, WithoutTaxiwaysHeTurnsOffAndGoesStraightToTheSpot) {
    TestField field;
    field.S.AirportParkingSpots = {{"PARKING 1", 50, 47.001, -122.001, 0}};
    const AirportChart chart(field.S);
    const auto off = chart.WayOffRunway(chart.FromRunway({0.5, 0.001}), 0.05);
    EXPECT_FALSE(chart.IsOnRunway(off.back()));
    EXPECT_GT(chart.SeenFromRunway(off.back()).Right, 0);
    EXPECT_EQ(chart.WayToSpot(off.back(), "PARKING 1", {}), (std::vector<Place>{{47.001, -122.001}}));
    EXPECT_TRUE(chart.WayToSpot(off.back(), "PARKING 2", {}).empty());
}

}  // namespace
}  // namespace corvenna
