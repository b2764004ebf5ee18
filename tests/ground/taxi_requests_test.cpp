#include "ground/taxi_requests.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"

namespace corvenna {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr ParkingOffer Nothing{};
constexpr ParkingOffer GateOnly{.Gate = true};
constexpr ParkingOffer ParkingOnly{.Parking = true};
constexpr ParkingOffer Both{.Gate = true, .Parking = true};

std::vector<int> Marks(const Station& station) {
    std::vector<int> marks;
    for (const ParkingSpot& spot : station.AirportParkingSpots) marks.push_back(spot.Spare);
    return marks;
}

/// Two points and a taxiway between them; spots are for the test to add.
struct ParkingField : GroundField {
    ParkingField() {
        Point(0, 0);
        Point(500, 0);
        Taxiway(0, 1, "A");
    }
    /// A spot tied to point 0, well away from the others.
    std::int32_t TiedSpot(std::string_view name) {
        const std::int32_t spot = Spot(name, 1000, 1000.0 * static_cast<double>(++spots_));
        Tie(0, spot);
        return spot;
    }
    void PutInto(PlayerRecord& pilot, std::int32_t spot) {
        pilot.Latitude = S.AirportParkingSpots[static_cast<std::size_t>(spot)].Latitude;
        pilot.Longitude = S.AirportParkingSpots[static_cast<std::size_t>(spot)].Longitude;
    }

  private:
    int spots_ = 0;
};

// ---- What is free

TEST(ParkingAvailability, TheNameTellsAGateInAnyCase) {
    ParkingField field;
    field.TiedSpot("GATE A 12");
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    field.S.AirportParkingSpots[0].Name = "the gate at the end";
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    field.S.AirportParkingSpots[0].Name = "N PARKING 3";
    EXPECT_EQ(UpdateParkingAvailability(field.S), ParkingOnly);
    field.TiedSpot("Gate 2");
    EXPECT_EQ(UpdateParkingAvailability(field.S), Both);
}

TEST(ParkingAvailability, ASpotThatNoPathTiesIsNeverFree) {
    ParkingField field;
    field.Spot("GATE 1", 1000, 1000);
    field.TiedSpot("GATE 2");
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    EXPECT_EQ(Marks(field.S), (std::vector<int>{1, 0}));
    field.S.AirportTaxiPaths.back().Kind = 3;
    EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing);
}

TEST(ParkingAvailability, ATieToAPointDoesNotTieTheSpotOfThatNumber) {
    ParkingField field;
    field.Spot("GATE 1", 1000, 1000);
    field.Path(TaxiPath::Taxiway, 1, 0);
    EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing);
}

TEST(ParkingAvailability, APilotInsideTheRadiusTakesTheSpotAndOnTheRimNot) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    const PlayerRecord& pilot = field.Pilot("N1");
    ParkingSpot& spot = field.S.AirportParkingSpots[0];
    const std::int16_t feet = DistanceFeet(pilot.Latitude, pilot.Longitude, spot.Latitude, spot.Longitude);
    ASSERT_GT(feet, 1000);
    spot.Radius = feet - 1;
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    spot.Radius = feet;
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    spot.Radius = feet + 1;
    EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing);
}

TEST(ParkingAvailability, EveryRecordCountsHighUpOrNotServedAtAll) {
    ParkingField field;
    const std::int32_t spot = field.TiedSpot("GATE 1");
    PlayerRecord& watcher = field.Field.Enters("Eye", Role::Observer);
    field.PutInto(watcher, spot);
    watcher.Altitude = 30000;
    EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing);
    EXPECT_EQ(Marks(field.S), (std::vector<int>{1}));
}

TEST(ParkingAvailability, TheSpotHeStandsOnIsTakenForThePilotHimself) {
    ParkingField field;
    const std::int32_t spot = field.TiedSpot("GATE 1");
    PlayerRecord& pilot = field.Pilot("N1");
    field.PutInto(pilot, spot);
    field.Turn(pilot);
    EXPECT_THAT(pilot.MenuText, ::testing::Not(HasSubstr("Gate")));
}

TEST(ParkingAvailability, ARouteReservesItsSpotInAnyCaseAndAllOfThatName) {
    ParkingField field;
    field.TiedSpot("Gate 1");
    field.TiedSpot("GATE 1");
    field.TiedSpot("GATE 2");
    field.Pilot("N1");
    field.Route("N1", {0, 1}, "gate 1");
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    EXPECT_EQ(Marks(field.S), (std::vector<int>{1, 1, 0}));
}

TEST(ParkingAvailability, WithoutUsableDataTheMarksStay) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    field.S.AirportParkingSpots[0].Spare = 1;
    const auto expectUntouched = [&](const char* what) {
        EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing) << what;
        EXPECT_EQ(Marks(field.S), (std::vector<int>{1})) << what;
    };
    const Station whole = field.S;
    field.S.AirportTaxiPaths.erase(field.S.AirportTaxiPaths.begin());
    expectUntouched("one path");
    field.S = whole;
    field.S.AirportTaxiPoints.resize(1);
    expectUntouched("one point");
    field.S = whole;
    field.S.AirportParkingSpots[0].Name.clear();
    expectUntouched("the first spot without a name");
    field.S = whole;
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
}

TEST(ParkingAvailability, ALaterSpotMayLackAName) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    field.TiedSpot("");
    EXPECT_EQ(UpdateParkingAvailability(field.S), Both);
}

TEST(ParkingAvailability, ARadiusOfNoughtOrLessHoldsNobody) {
    ParkingField field;
    const std::int32_t spot = field.TiedSpot("GATE 1");
    field.PutInto(field.Pilot("N1"), spot);
    for (const std::int32_t radius : {1, 0, -1, -2147483647}) {
        field.S.AirportParkingSpots[0].Radius = radius;
        EXPECT_EQ(UpdateParkingAvailability(field.S), radius > 0 ? Nothing : GateOnly);
    }
}

TEST(ParkingAvailability, ARadiusBeyondTheDistanceCapHoldsEverybody) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    PlayerRecord& pilot = field.Pilot("N1");
    pilot.Latitude = -33;
    field.S.AirportParkingSpots[0].Radius = 32767;
    EXPECT_EQ(UpdateParkingAvailability(field.S), GateOnly);
    field.S.AirportParkingSpots[0].Radius = 32768;
    EXPECT_EQ(UpdateParkingAvailability(field.S), Nothing);
}

// ---- What is given

TEST(ParkingRequests, TheLowestIndexWinsAndTheNextPilotInTheSameTickGetsTheOther) {
    ParkingField field;
    field.TiedSpot("PARKING 1");
    field.TiedSpot("GATE 1");
    field.TiedSpot("GATE 2");
    for (const char* const name : {"N1", "N2"}) {
        PlayerRecord& pilot = field.Pilot(name);
        field.Move(pilot, 500, 0);
    }
    field.Field.Tick();
    field.Field.Types("N1", "2");
    field.Field.Types("N2", "2");
    field.Field.Tick();
    EXPECT_THAT(field.Field.Pilot("N1").MenuText, StartsWith("N1, Taxi to GATE 1 using taxiway A ."));
    EXPECT_THAT(field.Field.Pilot("N2").MenuText, StartsWith("N2, Taxi to GATE 2 using taxiway A ."));
}

TEST(ParkingRequests, TheLastFreeSpotOfATickGoesToTheFirstAndTheSecondKeepsHisDigit) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    for (const char* const name : {"N1", "N2"}) {
        PlayerRecord& pilot = field.Pilot(name);
        field.Move(pilot, 500, 0);
    }
    field.Field.Tick();
    const std::string menu = field.Field.Pilot("N2").MenuText;
    field.Field.Types("N1", "2");
    field.Field.Types("N2", "2");
    field.Field.Tick();
    EXPECT_EQ(field.Field.Pilot("N1").Phase, Phase::AcknowledgeTaxiToGate);
    EXPECT_EQ(field.Field.Pilot("N2").MenuText, menu);
    EXPECT_EQ(field.Field.Pilot("N2").Choice, 2);
    EXPECT_EQ(field.Field.Pilot("N2").Phase, "");
}

TEST(ParkingRequests, WithNoSpotFreeTheDigitIsTriedOnTheRowsBehind) {
    ParkingField field;
    PlayerRecord& pilot = field.Pilot("N1");
    pilot.MenuText = "N1. 2-Request Taxi to Gate 2-Close ATC Services";
    field.Turn(pilot, 2);
    EXPECT_EQ(pilot.InService, OpeningDialogue);  // the close took it
}

TEST(ParkingRequests, WithoutUsableDataARequestDoesNothing) {
    for (const bool wantGate : {true, false}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1");
        pilot.Choice = 2;
        const PlayerRecord before = pilot;
        RequestParkingTaxi(field.S, pilot, wantGate);
        EXPECT_EQ(pilot, before);
    }
}

TEST(ParkingRequests, ByTheMarksAlone) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    field.TiedSpot("GATE 2");
    field.S.AirportParkingSpots[0].Spare = 1;  // as an earlier look left it
    PlayerRecord& pilot = field.Pilot("N1");
    field.Move(pilot, 500, 0);
    RequestParkingTaxi(field.S, pilot, true);
    EXPECT_THAT(pilot.MenuText, StartsWith("N1, Taxi to GATE 2 "));
}

TEST(ParkingRequests, AClearanceWithoutARouteReservesNothing) {
    ParkingField field;
    field.TiedSpot("GATE 1");
    field.S.AirportTaxiPaths[0].EndPoint = 0;  // leads nowhere: nobody can be routed
    for (const char* const name : {"N1", "N2"}) {
        PlayerRecord& pilot = field.Pilot(name);
        field.Turn(pilot);
        field.Turn(pilot, 2);
        EXPECT_THAT(pilot.MenuText, HasSubstr(", Taxi to GATE 1. Choose"));
    }
    EXPECT_EQ(field.S.TaxiRouteCount(), 0);
}

TEST(RunwayRequests, TheTargetIsTheRunwayInUse) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    RequestRunwayTaxi(field.S, pilot);
    const GeoPoint& target = field.S.TaxiRoutes[0].Target;
    EXPECT_EQ(target.Name, "16");
    EXPECT_EQ(target.Kind, TaxiTarget::Runway);
    EXPECT_EQ(target.Latitude, field.S.RunwayLatitude);
    EXPECT_EQ(target.Longitude, field.S.RunwayLongitude);
    EXPECT_EQ(target.Altitude, 0);
}

}  // namespace
}  // namespace corvenna
