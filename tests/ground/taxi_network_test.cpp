#include "ground/taxi_network.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "ground/random_scene.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

// ---- What there is

TEST(TaxiNetwork, TakesMoreThanOnePathAndMoreThanOnePoint) {
    for (const std::size_t paths : {0U, 1U, 2U}) {
        for (const std::size_t points : {0U, 1U, 2U}) {
            Station station;
            station.AirportTaxiPaths.resize(paths);
            station.AirportTaxiPoints.resize(points);
            EXPECT_EQ(HasTaxiNetwork(station), paths == 2 && points == 2);
        }
    }
}

TEST(TaxiNetwork, ParkingTakesANetworkAndAFirstSpotWithAName) {
    GroundField field;
    field.StraightNetwork();
    EXPECT_TRUE(HasParking(field.S));
    const Station whole = field.S;
    field.S.AirportParkingSpots[0].Name.clear();
    EXPECT_FALSE(HasParking(field.S));
    field.S.AirportParkingSpots.clear();
    EXPECT_FALSE(HasParking(field.S));
    field.S = whole;
    field.S.AirportTaxiPaths.resize(1);
    EXPECT_FALSE(HasParking(field.S));
    field.S = whole;
    field.S.AirportTaxiPoints.resize(1);
    EXPECT_FALSE(HasParking(field.S));
}

TEST(TaxiNetwork, APointIsFoundAtItsPlaceAndNowhereElse) {
    GroundField field;
    field.StraightNetwork();
    EXPECT_EQ(FindTaxiPoint(field.S, 0), field.S.AirportTaxiPoints.data());
    EXPECT_EQ(FindTaxiPoint(field.S, 4), &field.S.AirportTaxiPoints[4]);
    for (const std::int32_t nowhere : {-2147483647 - 1, -1, 5, 2147483647}) {
        EXPECT_EQ(FindTaxiPoint(field.S, nowhere), nullptr);
    }
}

TEST(TaxiNetwork, APointOffTheGlobeIsNone) {
    GroundField field;
    field.StraightNetwork();
    TaxiPoint& point = field.S.AirportTaxiPoints[2];
    for (const auto& [latitude, longitude] :
         {std::pair{-91.0, 0.0}, {0.0, 360.0}, {1e300, 0.0}, {0.0, -1e308}, {1e308, 1e308}}) {
        point.Latitude = latitude;
        point.Longitude = longitude;
        EXPECT_EQ(FindTaxiPoint(field.S, 2), nullptr) << latitude << " " << longitude;
    }
    point.Latitude = -33.9;  // on another continent, but there
    point.Longitude = 151.2;
    EXPECT_EQ(FindTaxiPoint(field.S, 2), &point);
}

// ---- Paths

TEST(TaxiPaths, TaxiwaysAndRunwaysAreWalkedAndNothingElse) {
    for (const std::int32_t kind : {-2147483647 - 1, -1, 0, 1, 2, 3, 2147483647}) {
        EXPECT_EQ(IsWalkable({kind, 0, 1, "A"}), kind == TaxiPath::Taxiway || kind == TaxiPath::Runway);
    }
}

TEST(TaxiPaths, TheNameTellsTheRunwayInUseInAnyCase) {
    Station station;
    station.ActiveRunway = "16l";
    for (const char* const name : {"Runway 16L", "runway 16l", "RUNWAY 16L"}) {
        EXPECT_TRUE(IsOfActiveRunway(station, {TaxiPath::Runway, 0, 1, name})) << name;
    }
    for (const char* const name :
         {"", "16L", "Runway", "Runway ", "Runway 16", "Runway 16R", "Runway 16LL", "Runway  16L"}) {
        EXPECT_FALSE(IsOfActiveRunway(station, {TaxiPath::Runway, 0, 1, name})) << name;
    }
    // The kind does not matter here.
    EXPECT_TRUE(IsOfActiveRunway(station, {TaxiPath::Taxiway, 0, 1, "Runway 16L"}));
}

// ---- Spots

TEST(ParkingSpots, AGateHasTheWordInItsNameInAnyCase) {
    for (const char* const name : {"GATE A 12", "Gate", "gate b 1", "Westgate Apron"}) {
        EXPECT_TRUE(IsGate({name, 100, 0, 0, 0})) << name;
    }
    for (const char* const name : {"", "N PARKING 3", "GAT E 1", "DOCK 1"}) {
        EXPECT_FALSE(IsGate({name, 100, 0, 0, 0})) << name;
    }
}

TEST(ParkingSpots, OnTheRimHeIsNotWithin) {
    GroundField field;
    const PlayerRecord& pilot = field.Pilot("N1");
    field.Spot("GATE 1", 2000, 2700);
    ParkingSpot& spot = field.S.AirportParkingSpots[0];
    const std::int16_t feet = DistanceFeet(pilot.Latitude, pilot.Longitude, spot.Latitude, spot.Longitude);
    for (const int more : {-1, 0, 1}) {
        spot.Radius = feet + more;
        EXPECT_EQ(StandsWithin(pilot, spot), more > 0) << more;
    }
}

TEST(ParkingSpots, ARadiusOfNoughtOrLessHoldsNobody) {
    const PlayerRecord pilot;
    for (const std::int32_t radius : {-2147483647 - 1, -1, 0, 1}) {
        EXPECT_EQ(StandsWithin(pilot, {"GATE 1", radius, 0, 0, 0}), radius == 1);
    }
}

TEST(ParkingSpots, OffTheGlobeTheyHoldNobody) {
    const PlayerRecord pilot;
    for (const double off : {1e300, -1e308, 400.0}) {
        EXPECT_FALSE(StandsWithin(pilot, {"GATE 1", 2147483647, off, -off, 0})) << off;
    }
}

// ---- Distances

TEST(SurelyFarther, IsNeverSaidOfAPlaceThatIsNot) {
    RandomScene scene(7);
    int sure = 0;
    for (int i = 0; i < 200000; ++i) {
        const double scale = scene.Chance(50) ? 1e-5 : 1e-3;
        const double latitude1 = scene.Chance(10) ? 90 : scene.Number(-8999, 8999) / 100.0;
        const double longitude1 = scene.Number(-17900, 17900) / 100.0;
        const double latitude2 = latitude1 + scene.Number(-1000, 1000) * scale;
        const double longitude2 = longitude1 + scene.Number(-100, 100) * scale;
        const int feet = scene.Number(0, 3000);
        if (!SurelyFartherThan(feet, latitude1, longitude1, latitude2, longitude2)) continue;
        ++sure;
        ASSERT_GT(DistanceFeet(latitude1, longitude1, latitude2, longitude2), feet)
            << latitude1 << " " << longitude1 << " " << latitude2 << " " << longitude2;
    }
    EXPECT_GT(sure, 50000);
}

TEST(SurelyFarther, BeyondTheCapOfDistancesNothingIsSure) {
    EXPECT_TRUE(SurelyFartherThan(32764, 47, -122, 48, -122));
    EXPECT_FALSE(SurelyFartherThan(32767, 47, -122, 48, -122));
}

TEST(PointDistancesTest, AreTheDistancesInFeetAndNoneFromWhereNoPointIs) {
    GroundField field;
    field.StraightNetwork();
    field.S.AirportTaxiPoints[1].Latitude = 1e300;
    PointDistances distances(field.S, 47.02, -122.01);
    for (int i = 0; i < 2; ++i) {  // measured, and then known
        for (const std::size_t point : {0U, 2U, 3U, 4U}) {
            const TaxiPoint& from = field.S.AirportTaxiPoints[point];
            EXPECT_EQ(distances.From(static_cast<std::int32_t>(point)),
                      DistanceFeet(from.Latitude, from.Longitude, 47.02, -122.01));
        }
        for (const std::int32_t nowhere : {-2147483647 - 1, -1, 1, 5, 2147483647}) {
            EXPECT_EQ(distances.From(nowhere), PointDistances::NoPoint);
        }
    }
}

}  // namespace
}  // namespace corvenna
