#include "ground/taxi_routing.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// ---- Where it begins

TEST(TaxiRouteStart, InASpotTheTieDecidesEvenWhenAnotherPointIsNearer) {
    RoutingField field;
    field.StraightNetwork();
    field.Move(field.PilotAt(0, 0), 820, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(1, 2, 3));
    const std::int32_t spot = field.Spot("GATE 9", 820, 0, 50);  // right beside point 1
    field.Tie(0, spot);
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
}

TEST(TaxiRouteStart, InTwoSpotsTheFirstThatHasATieDecides) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(5000, 0);
    field.Spot("GATE 7", 5000, 0);
    const std::int32_t first = field.Spot("GATE 8", 5000, 0);
    const std::int32_t second = field.Spot("GATE 9", 5000, 0);
    field.Tie(1, second);
    field.Tie(2, first);
    EXPECT_THAT(field.ToRunway(), ElementsAre(2, 3));
}

TEST(TaxiRouteStart, OfTwoTiesOfASpotTheFirstPathDecides) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(5000, 0);
    const std::int32_t spot = field.Spot("GATE 9", 5000, 0);
    field.Tie(1, spot);
    field.Tie(2, spot);
    EXPECT_THAT(field.ToRunway(), ElementsAre(1, 2, 3));
}

TEST(TaxiRouteStart, OnTheRimOfASpotHeIsNotInIt) {
    RoutingField field;
    field.StraightNetwork();
    const PlayerRecord& pilot = field.PilotAt(820, 60);
    const std::int32_t spot = field.Spot("GATE 9", 820, 0);
    field.Tie(0, spot);
    ParkingSpot& s = field.S.AirportParkingSpots.back();
    const std::int16_t feet = DistanceFeet(pilot.Latitude, pilot.Longitude, s.Latitude, s.Longitude);
    s.Radius = feet;
    EXPECT_THAT(field.ToRunway(), ElementsAre(1, 2, 3));
    s.Radius = feet + 1;
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
}

TEST(TaxiRouteStart, AmongEqualsTheFirstPathWins) {
    RoutingField field;
    const std::int32_t threshold = field.Point(0, 0);
    const std::int32_t north = field.Point(1000, 300);
    const std::int32_t south = field.Point(1000, -300);
    field.Runway(threshold, field.Point(0, -900));
    field.Taxiway(south, threshold, "S");
    field.Taxiway(north, threshold, "N");
    field.S.AirportTaxiPoints[1].Latitude =
        2 * field.S.RunwayLatitude - field.S.AirportTaxiPoints[2].Latitude;
    field.PilotAt(1000, 0);
    field.Field.Pilot("N1").Latitude = field.S.RunwayLatitude;
    EXPECT_THAT(field.ToRunway(), ElementsAre(south, threshold));
}

TEST(TaxiRouteStart, APathWithBothEndsEquallyFarCountsForNothing) {
    RoutingField field;
    const std::int32_t threshold = field.Point(0, 0);
    const std::int32_t far = field.Point(3000, 0);
    field.Runway(threshold, far);
    const std::int32_t loop = field.Point(5000, 0);
    field.Taxiway(loop, loop, "L");  // right where he stands
    field.PilotAt(5000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(far, threshold));
}

TEST(TaxiRouteStart, WithNoUnequalPathThereIsNoRoute) {
    RoutingField field;
    const std::int32_t loop = field.Point(0, 0);
    field.Point(100, 0);
    field.Runway(loop, loop);
    field.Taxiway(loop, loop, "L");
    field.PilotAt(500, 0);
    EXPECT_THAT(field.ToRunway(), IsEmpty());
    EXPECT_EQ(field.Said(), "N1, Taxi to and hold short runway 16. Contact tower on 118.3 when ready. " +
                                std::string(GroundMenu) + "1-Acknowledge 2-Close ATC Services");
}

// ---- Where it ends

TEST(TaxiRouteEnd, ItIsTheRunwaysOwnPointNearestToTheThreshold) {
    RoutingField field;
    const std::int32_t beside = field.Point(10, 0);  // nearer, but of a taxiway
    const std::int32_t entry = field.Point(100, -300);
    const std::int32_t along = field.Point(300, -900);
    const std::int32_t apron = field.Point(2000, 0);
    field.Taxiway(apron, beside, "A");
    field.Taxiway(beside, entry, "A");
    field.Path(TaxiPath::Runway, along, entry, "RUNWAY 16");  // the name in any case
    field.Path(TaxiPath::Taxiway, along, beside, "Runway 16");
    field.Path(TaxiPath::Runway, beside, along, "Runway 34");
    field.PilotAt(2000, 0);
    EXPECT_EQ(field.ToRunway().back(), entry);
}

TEST(TaxiRouteEnd, WithoutAPathOfTheRunwaysNameThereIsNoRoute) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    field.S.ActiveRunway = "34";
    EXPECT_THAT(field.ToRunway(), IsEmpty());
    EXPECT_THAT(field.Said(), HasSubstr("hold short runway 34. Contact"));
}

TEST(TaxiRouteEnd, OfSeveralSpotsAndTiesOfTheNameTheLastDecides) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(0, 0);
    const std::int32_t a = field.Spot("Gate 5", 800, 300);
    const std::int32_t b = field.Spot("GATE 5", 300, 300);
    field.Tie(2, b);
    field.Tie(1, b);
    field.Tie(0, a);
    EXPECT_THAT(field.ToSpot(2), ElementsAre(3, 2, 1));
    EXPECT_THAT(field.Said(), HasSubstr("Taxi to GATE 5 using"));
}

TEST(TaxiRouteEnd, ASpotWithoutATieIsClearedWithoutARoute) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(0, 0);
    field.Spot("Dock 1", 800, 300);
    EXPECT_THAT(field.ToSpot(2), IsEmpty());
    EXPECT_EQ(field.Said(),
              "N1, Taxi to DOCK 1. " + std::string(GroundMenu) + "1-Acknowledge 2-Close ATC Services");
    EXPECT_EQ(field.Field.Pilot("N1").Phase, Phase::AcknowledgeTaxiToGate);
}

TEST(TaxiRouteEnd, ATargetOfAnotherKindChangesNothing) {
    RoutingField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.PilotAt(1500, 0);
    pilot.Choice = 3;
    const PlayerRecord before = pilot;
    GeoPoint target = field.RunwayTarget();
    for (const char* const kind : {"", "runway", "Gate"}) {
        target.Kind = kind;
        EXPECT_THAT(field.Assign(target), IsEmpty());
        EXPECT_EQ(pilot, before);
    }
}

// ---- What is stored and said

TEST(TaxiRouteStored, WithPilotLinksAndTarget) {
    RoutingField field;
    field.StraightNetwork();
    field.Pilot("N0");
    field.PilotAt(800, 0);
    field.ToRunway();
    const TaxiRouteRecord& route = field.S.TaxiRoutes[0];
    EXPECT_EQ(route.PilotName, "N1");
    EXPECT_EQ(route.PilotIndex, 1);
    EXPECT_EQ(route.Links, (std::vector<TaxiPath>{{0, 1, 2, "A"}, {0, 2, 3, "B"}, {}}));
    EXPECT_EQ(field.S.TaxiRoutes[1], TaxiRouteRecord{});
}

TEST(TaxiRouteStored, OfSeveralRecordsOfTheNameTheLastIndexIsKept) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    field.Pilot("N2");
    field.Pilot("N1");
    field.Pilot("N3");
    field.ToRunway();
    EXPECT_EQ(field.S.TaxiRoutes[0].PilotIndex, 2);
}

TEST(TaxiRouteStored, ASecondRequestIsNotNoticed) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    field.ToRunway();
    field.ToRunway();
    EXPECT_EQ(field.S.TaxiRouteCount(), 2);
}

std::string RouteTextOf(std::initializer_list<std::string_view> names) {
    RoutingField field;
    std::int32_t last = field.Point(0, 0);
    const std::int32_t end = last;
    // From the threshold outwards, so the names are spoken from the last to the first.
    double east = 0;
    for (auto name = names.end(); name != names.begin();) {
        const std::int32_t next = field.Point(east += 200, 0);
        field.Taxiway(next, last, *--name);
        last = next;
    }
    field.Runway(end, field.Point(0, -5000));
    field.PilotAt(east, 0);
    field.ToRunway();
    const std::string said = field.Said();
    const std::size_t from = said.find("using taxiway") + 13;
    return said.substr(from, said.find(". Contact") - from);
}

TEST(TaxiRouteText, ConsecutiveLinksOfOneNameAreNamedOnce) {
    EXPECT_EQ(RouteTextOf({"A", "A", "B", "B"}), " A B ");
}

TEST(TaxiRouteText, ATaxiwayUsedAgainBehindAnotherIsNamedAgain) {
    EXPECT_EQ(RouteTextOf({"A", "B", "A"}), " A B A ");
}

TEST(TaxiRouteText, UpperAndLowerCaseAreOneName) { EXPECT_EQ(RouteTextOf({"A", "a", "b"}), " A B "); }

TEST(TaxiRouteText, AnEmptyNameAndABlankAddNothing) {
    EXPECT_EQ(RouteTextOf({"A", "", " ", "A", "B"}), " A B ");
}

TEST(TaxiRouteText, WithNoNameAtAllItIsOneBlank) { EXPECT_EQ(RouteTextOf({"", " "}), " "); }

TEST(TaxiRouteText, TwoBlanksAreAName) { EXPECT_EQ(RouteTextOf({"  ", "A"}), "    A "); }

TEST(TaxiRouteText, ANameThatEndsLikeTheNextIsNotTheNext) {
    EXPECT_EQ(RouteTextOf({"BA", "A"}), " BA A ");
    EXPECT_EQ(RouteTextOf({"B A", "A", "B"}), " B A B ");  // but a blank before it makes it so
}

TEST(TaxiRouteText, RunwaysAreNamedInUpperCase) {
    RoutingField field;
    field.StraightNetwork();
    field.S.AirportTaxiPaths[2] = {TaxiPath::Runway, 2, 3, "Runway 27L"};
    field.PilotAt(1500, 0);
    field.ToRunway();
    EXPECT_EQ(field.Said(),
              "N1, Taxi to and hold short runway 16 using taxiway A RUNWAY 27L . "
              "Contact tower on 118.3 when ready. " +
                  std::string(GroundMenu) + "1-Acknowledge 2-Close ATC Services");
    EXPECT_EQ(field.Field.Pilot("N1").Choice, 0);
}

TEST(TaxiRouteText, BracesInNamesAreJustBraces) {
    RoutingField field;
    field.StraightNetwork();
    field.S.AirportTaxiPaths[0].Name = "{callsign}";
    field.PilotAt(1500, 0);
    field.ToRunway();
    EXPECT_THAT(field.Said(), HasSubstr("using taxiway {CALLSIGN} A B ."));
}

// ---- Networks out of a damaged file

TEST(DamagedNetwork, PathsIntoNowhereAreNotWalked) {
    RoutingField field;
    field.PilotAt(1500, 0);
    for (const std::int32_t nowhere : {-1, -2147483647 - 1, 5, 2147483647}) {
        field.S.AirportTaxiPoints.resize(1);
        field.S.AirportTaxiPaths.resize(1);
        field.S.AirportTaxiPoints[0] = {};
        field.S.AirportTaxiPaths[0] = {};
        field.StraightNetwork();
        field.Taxiway(0, nowhere, "X");
        field.Taxiway(nowhere, 3, "X");
        field.Runway(nowhere, nowhere);
        field.Runway(nowhere, 3);
        EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
    }
}

TEST(DamagedNetwork, TheFirstTieOfTheSpotHeStandsInDecidesEvenFromNowhere) {
    for (const std::int32_t nowhere : {-1, 99}) {
        RoutingField field;
        field.StraightNetwork();
        field.PilotAt(820, 0);
        const std::int32_t spot = field.Spot("GATE 9", 820, 0);
        field.Tie(nowhere, spot);
        field.Tie(1, spot);
        EXPECT_THAT(field.ToRunway(), IsEmpty());
        EXPECT_THAT(field.Said(), HasSubstr("hold short runway 16. Contact"));
    }
}

TEST(DamagedNetwork, TheLastTieOfTheSpotHeAsksForDecidesEvenFromNowhere) {
    for (const std::int32_t nowhere : {-1, 99}) {
        RoutingField field;
        field.StraightNetwork();
        field.PilotAt(0, 0);
        const std::int32_t spot = field.Spot("GATE 9", 820, 0);
        field.Tie(1, spot);
        field.Tie(nowhere, spot);
        EXPECT_THAT(field.ToSpot(2), IsEmpty());
        EXPECT_THAT(field.Said(), HasSubstr("Taxi to GATE 9. "));
    }
}

TEST(DamagedNetwork, ATieToAMissingSpotTiesNothing) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    for (const std::int32_t spot : {-1, 2, 2147483647}) field.Tie(2, spot);
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
}

TEST(DamagedNetwork, APointThatTheVariationTableDoesNotKnowIsNoPoint) {
    for (const TaxiPoint& off :
         {TaxiPoint{1, -91, 0}, TaxiPoint{1, 0, 360}, TaxiPoint{1, 0, -1e308}, TaxiPoint{1, 1e308, 1e308}}) {
        RoutingField field;
        field.StraightNetwork();
        field.PilotAt(1500, 0);
        field.S.AirportTaxiPoints[1] = off;
        EXPECT_THAT(field.ToRunway(), ElementsAre(2, 3));  // the nearest point with a path between points
        field.S.TaxiRoutes[0].Links.insert(field.S.TaxiRoutes[0].Links.begin(), {0, 0, 1, "A"});
        field.Turn(field.Field.Pilot("N1"));  // the looks at the traffic bear a link to it
    }
}

TEST(DamagedNetwork, ASpotFarOffTheGlobeHoldsNobody) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    for (const double off : {1e300, -1e308}) {
        field.S.AirportParkingSpots[0].Latitude = off;
        field.S.AirportParkingSpots[0].Longitude = -off;
        EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
        field.Turn(field.Field.Pilot("N1"));
        EXPECT_EQ(field.S.AirportParkingSpots[0].Spare, 0);
    }
}

TEST(DamagedNetwork, APointOnAnotherContinentIsWalkedToLikeAnyOther) {
    RoutingField field;
    field.StraightNetwork();
    field.PilotAt(1500, 0);
    field.S.AirportTaxiPoints[1] = {1, -33.9, 151.2};
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 3));
    field.Turn(field.Field.Pilot("N1"));  // and the looks at the traffic bear it
}

TEST(DamagedNetwork, EmptyArraysAreNoNetwork) {
    RoutingField field;
    field.S.AirportTaxiPoints.clear();
    field.S.AirportTaxiPaths.clear();
    field.S.AirportParkingSpots.clear();
    PlayerRecord& pilot = field.PilotAt(0, 0);
    field.Turn(pilot);
    field.Turn(pilot, 1);
    EXPECT_THAT(field.Said(), HasSubstr("hold short runway 16. Contact"));
    EXPECT_THAT(field.ToRunway(), IsEmpty());
}

}  // namespace
}  // namespace corvenna
