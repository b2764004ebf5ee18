#include "ground/taxi_search.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "station/phases.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// ---- The search itself

/// The points from one point to another; the target is the place of the end point.
std::vector<std::int32_t> Walk(const Station& station, std::int32_t start, std::int32_t end) {
    const TaxiPoint& target = station.AirportTaxiPoints[static_cast<std::size_t>(end)];
    PointDistances toTarget(station, target.Latitude, target.Longitude);
    return PointsOf(FindTaxiRoute(station, start, end, toTarget));
}

TEST(TaxiSearch, GivesLinksInTravelOrderWithoutASpareOne) {
    GroundField field;
    field.StraightNetwork();
    PointDistances toTarget(field.S, field.S.RunwayLatitude, field.S.RunwayLongitude);
    EXPECT_EQ(FindTaxiRoute(field.S, 3, 1, toTarget),
              (std::vector<TaxiPath>{{0, 3, 2, "B"}, {0, 2, 1, "A"}}));
}

TEST(TaxiSearch, EachDeadEndOfARowIsBarredInItsTurn) {
    // A comb: from each point of the way a blind taxiway leads nearer to the target than the way does.
    GroundField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t end = field.Point(0, 0);
    std::vector<std::int32_t> expected{start};
    std::int32_t last = start;
    for (int i = 0; i < 5; ++i) {
        const std::int32_t tooth = field.Point(10 + i, 10);
        const std::int32_t next = field.Point(900 - 100 * i, 500);
        field.Taxiway(last, tooth, "T");
        field.Taxiway(last, next, "W");
        expected.push_back(last = next);
    }
    field.Taxiway(last, end, "W");
    expected.push_back(end);
    EXPECT_EQ(Walk(field.S, start, end), expected);
}

TEST(TaxiSearch, ADeadEndBehindALongBlindWayIsUndoneLinkByLink) {
    GroundField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t round = field.Point(2000, 900);
    const std::int32_t end = field.Point(0, 0);
    std::int32_t last = start;
    for (int i = 1; i <= 6; ++i) {
        const std::int32_t next = field.Point(1000 - 100 * i, 0);
        field.Taxiway(last, next, "Blind");
        last = next;
    }
    field.Taxiway(start, round, "A");
    field.Taxiway(round, end, "A");
    EXPECT_EQ(Walk(field.S, start, end), (std::vector<std::int32_t>{start, round, end}));
}

TEST(TaxiSearch, AStepIsBarredInOneDirectionOnly) {
    // Into the blind triangle by one corner, out by the other: its far side is walked both ways in turn.
    GroundField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t a = field.Point(500, 0);
    const std::int32_t b = field.Point(600, 0);
    const std::int32_t blind = field.Point(100, 0);
    const std::int32_t round = field.Point(1500, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, a, "A");
    field.Taxiway(a, blind, "X");
    field.Taxiway(start, b, "B");
    field.Taxiway(b, a, "C");
    field.Taxiway(b, round, "D");
    field.Taxiway(round, end, "D");
    // start, a, blind: barred. start, a, b, start: barred, and then b goes round.
    EXPECT_EQ(Walk(field.S, start, end), (std::vector<std::int32_t>{start, a, b, round, end}));
}

TEST(TaxiSearch, TheEndPointIsTakenAtSightByTheFirstPathThatLeadsThere) {
    GroundField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(end, start, "Back");
    field.Taxiway(start, end, "Forth");
    PointDistances toTarget(field.S, field.S.RunwayLatitude, field.S.RunwayLongitude);
    EXPECT_EQ(FindTaxiRoute(field.S, start, end, toTarget), (std::vector<TaxiPath>{{0, start, end, "Back"}}));
}

TEST(TaxiSearch, FromAPointToItselfItGoesToTheNearestNeighbourAndComesBack) {
    GroundField field;
    field.StraightNetwork();
    EXPECT_EQ(Walk(field.S, 2, 2), (std::vector<std::int32_t>{2, 3, 2}));
}

TEST(TaxiSearch, APathFromTheEndPointToItselfIsARoute) {
    GroundField field;
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(end, field.Point(500, 0), "A");
    field.Taxiway(end, end, "Loop");
    EXPECT_EQ(Walk(field.S, end, end), (std::vector<std::int32_t>{end, end}));
}

TEST(TaxiSearch, APathFromAPointToItselfOnTheWayIsWalkedOnce) {
    GroundField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t middle = field.Point(500, 0);
    const std::int32_t far = field.Point(800, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, middle, "A");
    field.Taxiway(middle, middle, "Loop");
    field.Taxiway(middle, far, "B");
    field.Taxiway(far, end, "B");
    EXPECT_EQ(Walk(field.S, start, end), (std::vector<std::int32_t>{start, middle, middle, far, end}));
}

TEST(TaxiSearch, WithoutAWayThereAreNoLinks) {
    GroundField field;
    field.StraightNetwork();
    const std::int32_t lonely = field.Point(5000, 0);
    EXPECT_THAT(Walk(field.S, 0, lonely), IsEmpty());
    EXPECT_THAT(Walk(field.S, lonely, 0), IsEmpty());
    EXPECT_THAT(Walk(field.S, lonely, lonely), IsEmpty());
}

TEST(TaxiSearch, OnAnIslandOfManyRingsItComesBack) {
    GroundField field;
    const std::int32_t end = field.Point(0, 0);
    const std::int32_t centre = field.Point(9000, 0);
    for (int ring = 0; ring < 300; ++ring) {
        const std::int32_t a = field.Point(9000 + ring, 100);
        const std::int32_t b = field.Point(9000 - ring, 200);
        field.Taxiway(centre, a, "A");
        field.Taxiway(a, b, "B");
        field.Taxiway(b, centre, "C");
    }
    EXPECT_THAT(Walk(field.S, centre, end), IsEmpty());
}

TEST(TaxiSearch, PathsOfPointsThatAreNotThereAreNotWalked) {
    GroundField field;
    field.StraightNetwork();
    for (const std::int32_t nowhere : {-2147483647 - 1, -1, 5, 2147483647}) {
        field.Taxiway(0, nowhere, "X");
        field.Taxiway(nowhere, 3, "X");
        field.Runway(nowhere, nowhere);
    }
    EXPECT_EQ(Walk(field.S, 0, 3), (std::vector<std::int32_t>{0, 1, 2, 3}));
}

// ---- The walk, as a pilot gets it

TEST(TaxiRouteWalk, EachStepGoesToThePointNearestToTheTarget) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t near = field.Point(500, 0);
    const std::int32_t nearer = field.Point(450, 100);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, near, "A");
    field.Taxiway(near, end, "A");
    field.Taxiway(nearer, start, "B");  // walked against its direction
    field.Taxiway(end, nearer, "B");
    field.Runway(end, field.Point(0, -500));
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, nearer, end));
    const TaxiPath& back = field.S.TaxiRoutes[0].Links[0];
    EXPECT_EQ(back, (TaxiPath{TaxiPath::Taxiway, start, nearer, "B"}));
}

TEST(TaxiRouteWalk, AmongEqualsTheEarlierPathWins) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t one = field.Point(500, 0);
    const std::int32_t two = field.Point(500, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, two, "B");
    field.Taxiway(start, one, "A");
    field.Taxiway(one, end, "A");
    field.Taxiway(two, end, "B");
    field.Runway(end, field.Point(0, -500));
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, two, end));
}

TEST(TaxiRouteWalk, BeyondTheCapAllPointsAreEquallyFar) {
    RoutingField field;
    const std::int32_t start = field.Point(60000, 0);
    const std::int32_t farther = field.Point(50000, 0);
    const std::int32_t nearer = field.Point(40000, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, farther, "A");
    field.Taxiway(start, nearer, "B");
    field.Taxiway(farther, end, "A");
    field.Taxiway(nearer, end, "B");
    field.Runway(end, field.Point(0, -500));
    const std::int32_t spot = field.Spot("GATE 1", 70000, 0);
    field.Tie(start, spot);
    field.PilotAt(70000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, farther, end));
}

TEST(TaxiRouteWalk, TheEndPointIsTakenAtSightThoughALaterPathIsNearerToTheTarget) {
    RoutingField field;
    // The end is the spot's tie, far from the spot itself; another point lies beside the spot.
    const std::int32_t start = field.Point(0, 0);
    const std::int32_t end = field.Point(-2000, 0);
    const std::int32_t beside = field.Point(3000, 0);
    field.Runway(start, end, "Runway 34");  // of the higher kind, too
    field.Taxiway(start, beside, "A");
    const std::int32_t spot = field.Spot("GATE 1", 3000, 50);
    field.Tie(end, spot);
    field.PilotAt(0, 0);
    EXPECT_THAT(field.ToSpot(0), ElementsAre(start, end));
}

TEST(TaxiRouteWalk, ADeadEndBarsTheLinkIntoItAndTheWalkBeginsAgain) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t deadEnd = field.Point(200, 0);
    const std::int32_t round = field.Point(900, 500);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, deadEnd, "D");
    field.Taxiway(start, round, "A");
    field.Taxiway(round, end, "A");
    field.Runway(end, field.Point(0, -500));
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, round, end));
    EXPECT_THAT(field.Said(), HasSubstr("using taxiway A ."));
}

TEST(TaxiRouteWalk, ParallelPathsAreBarredTogether) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t deadEnd = field.Point(200, 0);
    const std::int32_t round = field.Point(900, 500);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, deadEnd, "D");
    field.Taxiway(deadEnd, start, "E");  // no way back over it either
    field.Taxiway(start, round, "A");
    field.Taxiway(round, end, "A");
    field.Runway(end, field.Point(0, -500));
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, round, end));
}

TEST(TaxiRouteWalk, APointMayBePassedTwiceButNoLink) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t a = field.Point(500, 0);
    const std::int32_t b = field.Point(600, 100);
    const std::int32_t exit = field.Point(1500, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, a, "A");
    field.Taxiway(a, b, "B");
    field.Taxiway(b, start, "C");
    field.Taxiway(start, exit, "D");
    field.Taxiway(exit, end, "D");
    field.Runway(end, field.Point(0, -500));
    const std::int32_t spot = field.Spot("GATE 1", 1000, 0);
    field.Tie(start, spot);
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, a, b, start, exit, end));
    EXPECT_THAT(field.Said(), HasSubstr("using taxiway A B C D ."));
}

TEST(TaxiRouteWalk, FromTheEndPointItselfTheRouteGoesOutAndComesBack) {
    RoutingField field;
    const std::int32_t end = field.Point(0, 0);
    field.Runway(end, field.Point(100, -500));
    const std::int32_t neighbour = field.Point(300, 0);
    field.Taxiway(end, field.Point(900, 0), "B");
    field.Taxiway(end, neighbour, "A");
    field.PilotAt(0, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(end, neighbour, end));
    EXPECT_THAT(field.Said(), HasSubstr("using taxiway A ."));
}

// ---- Off the runway rather than along it

/// On the runway, at point 1, with a taxiway that leads far off and the runway that leads nearer.
struct RunwayField : RoutingField {
    RunwayField() {
        Point(600, 0);
        Point(500, 0);
        Point(400, 0);    // along the runway
        Point(500, 900);  // off it
        Point(0, 0);
        PilotAt(600, 0);
        Runway(0, 1, "Runway 34");
    }
    void Finish() {
        Taxiway(2, 4, "A");
        Taxiway(3, 4, "B");
        Runway(4, Point(0, -500));
    }
};

TEST(TaxiRouteOnTheRunway, ATaxiwayBeatsAnEarlierRunwayPathHoweverFarItGoes) {
    RunwayField field;
    field.Runway(1, 2, "Runway 34");
    field.Taxiway(1, 3, "B");
    field.Finish();
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 3, 4));
}

TEST(TaxiRouteOnTheRunway, ALaterRunwayPathDoesNotReplaceATaxiwayThoughItIsNearer) {
    RunwayField field;
    field.Taxiway(1, 3, "B");
    field.Runway(1, 2, "Runway 34");
    field.Finish();
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 3, 4));
}

TEST(TaxiRouteOnTheRunway, OfTwoRunwayPathsTheNearerIsTaken) {
    RunwayField field;
    field.Runway(1, 3, "Runway 34");
    field.Runway(1, 2, "Runway 34");
    field.Finish();
    EXPECT_THAT(field.ToRunway(), ElementsAre(0, 1, 2, 4));
}

TEST(TaxiRouteOnTheRunway, OffTheRunwayTheKindDoesNotMatter) {
    RoutingField field;
    const std::int32_t start = field.Point(1000, 0);
    const std::int32_t along = field.Point(500, 0);
    const std::int32_t aside = field.Point(800, 0);
    const std::int32_t end = field.Point(0, 0);
    field.Taxiway(start, aside, "A");
    field.Runway(start, along, "Runway 34");
    field.Taxiway(along, end, "B");
    field.Taxiway(aside, end, "C");
    field.Runway(end, field.Point(0, -500));
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), ElementsAre(start, along, end));
}

// ---- No way there

TEST(TaxiRouteUnreachable, AnIslandIsClearedWithoutARoute) {
    RoutingField field;
    const std::int32_t end = field.Point(0, 0);
    field.Runway(end, field.Point(0, -500));
    const std::int32_t a = field.Point(1000, 0);
    const std::int32_t b = field.Point(1500, 0);
    const std::int32_t c = field.Point(1500, 500);
    field.Taxiway(a, b, "A");
    field.Taxiway(b, c, "B");
    field.Taxiway(c, a, "C");
    field.PilotAt(1000, 0);
    EXPECT_THAT(field.ToRunway(), IsEmpty());
    EXPECT_THAT(field.Said(), HasSubstr("hold short runway 16. Contact"));
    EXPECT_EQ(field.Field.Pilot("N1").Phase, Phase::AcknowledgeTaxiToRunway);
}

TEST(TaxiRouteUnreachable, AStartWithoutAWalkablePathIsClearedWithoutARoute) {
    RoutingField field;
    field.StraightNetwork();
    const std::int32_t lonely = field.Point(5000, 0);
    const std::int32_t spot = field.Spot("GATE 9", 5000, 0);
    field.Tie(lonely, spot);
    field.PilotAt(5000, 0);
    EXPECT_THAT(field.ToRunway(), IsEmpty());
    EXPECT_THAT(field.ToSpot(2), IsEmpty());  // to the very same point
}

TEST(TaxiRouteUnreachable, PathsOfOtherKindsAreNotWalked) {
    RoutingField field;
    field.StraightNetwork();
    field.S.AirportTaxiPaths[1].Kind = 3;
    field.PilotAt(1500, 0);
    EXPECT_THAT(field.ToRunway(), IsEmpty());
}

}  // namespace
}  // namespace corvenna
