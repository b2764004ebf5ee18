#include "station/runway_scan.h"

#include <gtest/gtest.h>

#include "station/geometry.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

/// Runway 16 of "Test Field", 9000 ft by 150, 400 ft high, "N1" who asks, and "N2" who may be on it.
class RunwayScan : public ::testing::Test {
  protected:
    RunwayScan() {
        Field.Enters("N1");
        Field.Enters("N2");
        PutAt(160, 3000);
    }

    PlayerRecord& N2() { return Field.Pilot("N2"); }

    /// "N2" on the ground on a true bearing from the threshold, which may be fractional.
    void PutAt(double bearing, double feet) {
        const GeoPoint place = ProjectNmExact(S.RunwayLatitude, S.RunwayLongitude, bearing, feet / 6080);
        N2().Latitude = place.Latitude;
        N2().Longitude = place.Longitude;
        N2().Altitude = S.RunwayElevation;
    }

    std::int16_t FeetFromThreshold() {
        return DistanceFeet(S.RunwayLatitude, S.RunwayLongitude, N2().Latitude, N2().Longitude);
    }

    std::int16_t FeetFromAxis() {
        const GeoPoint axis =
            ProjectFeet(S.RunwayLatitude, S.RunwayLongitude, S.SectorNorth, FeetFromThreshold());
        return DistanceFeet(axis.Latitude, axis.Longitude, N2().Latitude, N2().Longitude);
    }

    bool Occupied() { return ComputeRunwayOccupied(S, Field.Pilot("N1")); }

    TestField Field;
    Station& S = Field.S;
};

TEST_F(RunwayScan, SomebodyOnThePavementOccupiesTheRunway) { EXPECT_TRUE(Occupied()); }

TEST_F(RunwayScan, ThePilotHimselfDoesNot) { EXPECT_FALSE(ComputeRunwayOccupied(S, N2())); }

TEST_F(RunwayScan, NobodyElseAboutLeavesItFree) {
    S.Players.Clear();
    PlayerRecord& pilot = Field.Enters("N1");
    EXPECT_FALSE(ComputeRunwayOccupied(S, pilot));
}

TEST_F(RunwayScan, AnotherRecordOfThePilotsNameDoesNotCount) {
    N2().Name = "N1";
    EXPECT_FALSE(Occupied());
}

TEST_F(RunwayScan, NamesDifferByCase) {
    N2().Name = "n1";
    EXPECT_TRUE(Occupied());
}

TEST_F(RunwayScan, AnyRoleAndAnyServiceCounts) {
    for (const std::string_view role : {Role::Player, Role::Observer, Role::Unknown}) {
        N2().Role = role;
        for (const std::uint8_t inService : {OpeningDialogue, UnderService}) {
            N2().InService = inService;
            EXPECT_TRUE(Occupied()) << role << int{inService};
        }
    }
}

TEST_F(RunwayScan, OneFreeAircraftBehindAnOccupyingOneDoesNotClearTheRunway) {
    Field.Enters("N3");
    Field.Place("N3", 340, 5, 2000);
    EXPECT_TRUE(Occupied());
}

TEST_F(RunwayScan, OnlyAircraftLowerThan300FeetCount) {
    for (const auto& [feet, occupied] : {std::pair{299, true}, {300, false}, {301, false}}) {
        N2().Altitude = S.RunwayElevation + feet;
        EXPECT_EQ(Occupied(), occupied) << feet;
    }
}

TEST_F(RunwayScan, AnAircraftFarBelowTheFieldCounts) {
    N2().Altitude = std::numeric_limits<std::int32_t>::min();
    EXPECT_TRUE(Occupied());
}

TEST_F(RunwayScan, AltitudesAndElevationsAtTheEndsOfTheirRangeDoNotOverflow) {
    for (const std::int32_t elevation :
         {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        S.RunwayElevation = elevation;
        N2().Altitude = std::numeric_limits<std::int32_t>::min();
        EXPECT_TRUE(Occupied());
        N2().Altitude = std::numeric_limits<std::int32_t>::max();
        EXPECT_EQ(Occupied(), elevation > 0);
    }
}

TEST_F(RunwayScan, TheSectorHoldsItsLowerBoundAndNotItsUpper) {
    S.RunwayWidth = 20000;  // so that the sector alone decides
    for (const auto& [degrees, occupied] :
         {std::pair{129, false}, {130, true}, {131, true}, {189, true}, {190, false}, {191, false}}) {
        PutAt(degrees - 0.5, 3000);  // a bearing is rounded up
        ASSERT_EQ(BearingTo(S, S.RunwayLatitude, S.RunwayLongitude, N2().Latitude, N2().Longitude), degrees);
        EXPECT_EQ(Occupied(), occupied) << degrees;
    }
}

TEST_F(RunwayScan, TheSectorIsMagnetic) {
    for (std::int16_t& entry : S.MagVarGrid) entry = 3641;  // 20 degrees east
    S.RunwayHeading = 140;
    ComputeSectorCentres(S);
    S.RunwayWidth = 20000;
    PutAt(160, 3000);  // true
    EXPECT_TRUE(Occupied());
    PutAt(185, 3000);  // 165 degrees magnetic; he would be within 30 degrees of a true 160
    EXPECT_TRUE(Occupied());
    PutAt(195, 3000);
    EXPECT_FALSE(Occupied());
}

TEST_F(RunwayScan, TheAxisIsLaidOutWithoutTheVariation) {
    for (std::int16_t& entry : S.MagVarGrid) entry = 3641;  // 20 degrees east
    PutAt(160, 3000);  // 140 degrees magnetic: in the sector, and on the axis as it is laid out
    EXPECT_TRUE(Occupied());
    PutAt(180, 3000);  // 160 degrees magnetic, where the runway really is
    EXPECT_FALSE(Occupied());
}

TEST_F(RunwayScan, OnlyAircraftNearerThanTheRunwayIsLongCount) {
    const std::int16_t distance = FeetFromThreshold();
    for (const auto& [longer, occupied] : {std::pair{-1, false}, {0, false}, {1, true}}) {
        S.RunwayLength = distance + longer;
        EXPECT_EQ(Occupied(), occupied) << longer;
    }
}

TEST_F(RunwayScan, HalfTheWidthIsARealNumberRoundedToTheEvenOne) {
    for (const double bearing : {160.5, 160.52, 160.54, 160.56, 160.58, 160.6}) {
        PutAt(bearing, 3000);
        const std::int16_t offset = FeetFromAxis();
        ASSERT_GT(offset, 20);
        S.RunwayWidth = 2 * offset;
        EXPECT_FALSE(Occupied()) << offset;
        S.RunwayWidth = 2 * offset + 1;
        EXPECT_EQ(Occupied(), offset % 2 == 1) << offset;
        S.RunwayWidth = 2 * offset + 2;
        EXPECT_TRUE(Occupied()) << offset;
    }
}

TEST_F(RunwayScan, OnARunwayLongerThanDistancesGoEverybodyPassesTheLengthCheck) {
    PutAt(160, 36000);  // the distance stops at 32767, and so does the point on the axis
    S.RunwayWidth = 8000;
    for (const auto& [length, occupied] : {std::pair{32766, false}, {32767, false}, {32768, true}}) {
        S.RunwayLength = length;
        EXPECT_EQ(Occupied(), occupied) << length;
    }
}

TEST_F(RunwayScan, AnAircraftOnTheThresholdItselfBears360) {
    N2().Latitude = S.RunwayLatitude;
    N2().Longitude = S.RunwayLongitude;
    EXPECT_FALSE(Occupied());  // which is not along runway 16
    S.RunwayHeading = 360;
    ComputeSectorCentres(S);
    EXPECT_TRUE(Occupied());
}

TEST_F(RunwayScan, ARunwayToTheNorthHasItsSectorAcross360) {
    S.RunwayHeading = 360;
    ComputeSectorCentres(S);
    S.RunwayWidth = 20000;
    for (const auto& [degrees, occupied] :
         {std::pair{329, false}, {330, true}, {360, true}, {1, true}, {29, true}, {30, false}}) {
        PutAt(degrees - 0.5, 3000);
        EXPECT_EQ(Occupied(), occupied) << degrees;
    }
}

TEST_F(RunwayScan, ARunwayWithoutLengthOrWidthIsNeverOccupied) {
    for (const std::int32_t size : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        S.RunwayLength = size;
        S.RunwayWidth = 150;
        EXPECT_FALSE(Occupied());
        S.RunwayLength = 9000;
        S.RunwayWidth = size;
        EXPECT_FALSE(Occupied());
    }
}

TEST_F(RunwayScan, AnAirportWithoutARunwayHasNoneOccupied) {
    S.RunwayLatitude = S.RunwayLongitude = 0;
    S.RunwayElevation = S.RunwayLength = S.RunwayWidth = 0;
    S.RunwayHeading = 0;
    ComputeSectorCentres(S);
    EXPECT_FALSE(Occupied());
}

TEST_F(RunwayScan, AHugeRunwayAndPlacesAtTheEndsOfTheEarthDoNoHarm) {
    S.RunwayLength = S.RunwayWidth = std::numeric_limits<std::int32_t>::max();
    for (const double latitude : {-90.0, -47.01, 0.0, 47.01, 90.0, 300.0}) {
        for (const double longitude : {-180.0, -122.0, 0.0, 58.0, 180.0, 400.0}) {
            N2().Latitude = latitude;
            N2().Longitude = longitude;
            N2().Altitude = 0;
            EXPECT_NO_THROW(Occupied()) << latitude << " " << longitude;
        }
    }
}

}  // namespace
}  // namespace corvenna
