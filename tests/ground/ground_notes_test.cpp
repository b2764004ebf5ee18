#include "ground/ground_notes.h"

#include <gmock/gmock.h>

#include "ground/ground_control.h"
#include "ground/ground_field.h"
#include "ground/taxi_separation.h"
#include "station/geometry.h"

// Nothing is remembered that may have changed.

namespace corvenna {
namespace {

/// A station in the middle of a tick, in which turns follow each other.
struct TickField : JunctionField {
    TickField() { NextTick(); }
    void NextTick() {
        S.TickInProgress = true;
        ++S.TicksBegun;
    }
};

TEST(RouteStamps, RemovingAndAddingAgainIsSeenThoughTheCountIsTheSame) {
    TickField field;
    const PlayerRecord& pilot = field.At("N1", 0, 0);
    field.Route("N1", {1, 0});
    const RouteStamp before = StampOf(field.S.TaxiRoutes);
    EXPECT_EQ(StampOf(field.S.TaxiRoutes), before);
    RemoveTaxiRoute(field.S, pilot);
    field.Route("N1", {2, 0});
    EXPECT_EQ(field.S.TaxiRouteCount(), before.Count);
    EXPECT_NE(StampOf(field.S.TaxiRoutes), before);
}

TEST(RouteStamps, AnAddedRouteIsSeen) {
    TickField field;
    const RouteStamp before = StampOf(field.S.TaxiRoutes);
    EXPECT_NE(before, RouteStamp{});  // that of no list
    field.At("N1", 0, 0);
    field.Route("N1", {1, 0});
    EXPECT_NE(StampOf(field.S.TaxiRoutes), before);
}

TEST(GroundNotes, HoldForTheTickInProgressAndNoLonger) {
    TickField field;
    NotesOfTick(field.S).RunwayScanned = true;
    EXPECT_TRUE(NotesOfTick(field.S).RunwayScanned);
    field.NextTick();
    EXPECT_FALSE(NotesOfTick(field.S).RunwayScanned);
}

TEST(GroundNotes, BetweenTicksThereAreNone) {
    TickField field;
    field.S.TickInProgress = false;
    NotesOfTick(field.S).RunwayScanned = true;
    EXPECT_FALSE(NotesOfTick(field.S).RunwayScanned);
}

TEST(GroundNotes, ForgettingLeavesNothingToGoBy) {
    GroundNotes notes;
    notes.RunwayScanned = notes.SpotsScanned = notes.LinksPassed = true;
    notes.OfferStamp = notes.PictureStamp = notes.AdvanceStamp = {.Revision = 3, .Count = 4};
    notes.Forget();
    EXPECT_FALSE(notes.RunwayScanned || notes.SpotsScanned || notes.LinksPassed);
    for (const RouteStamp& stamp : {notes.OfferStamp, notes.PictureStamp, notes.AdvanceStamp}) {
        EXPECT_EQ(stamp, RouteStamp{});
    }
}

TEST(GroundNotes, OneLookAtTheRunwayServesAllPilotsAndNobodyCountsForHimself) {
    TickField field;
    PlayerRecord& onRunway = field.At("N1", 0, 0);
    const GeoPoint place =
        ProjectFeet(field.S.RunwayLatitude, field.S.RunwayLongitude, field.S.SectorNorth, 500);
    onRunway.Latitude = place.Latitude;
    onRunway.Longitude = place.Longitude;
    const PlayerRecord& beside = field.At("N2", 900, 900);
    EXPECT_TRUE(FindRunwayOccupied(field.S, beside));
    EXPECT_FALSE(FindRunwayOccupied(field.S, field.Field.Pilot("N1")));
    PlayerRecord sameName;  // of two records of one name neither counts for the other
    sameName.Name = "N1";
    EXPECT_FALSE(FindRunwayOccupied(field.S, sameName));
}

TEST(GroundNotes, ASpotReservedInATickIsTakenInTheNextTurn) {
    TickField field;
    field.Taxiway(1, 0, "A");
    field.Tie(1, field.Spot("GATE 1", 3000, 3000));
    PlayerRecord& pilot = field.At("N1", 0, 0);
    EXPECT_TRUE(UpdateParkingAvailability(field.S).Gate);
    field.Route("N1", {0, 1}, "GATE 1");
    EXPECT_FALSE(UpdateParkingAvailability(field.S).Gate);
    RemoveTaxiRoute(field.S, pilot);
    EXPECT_TRUE(UpdateParkingAvailability(field.S).Gate);
}

TEST(GroundNotes, WhoMovesBetweenTwoTicksIsSeenInTheSecond) {
    TickField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0, 3});
    field.Route("N2", {2, 0, 3});
    field.Turn(field.Field.Pilot("N1"));
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    field.Move(field.Field.Pilot("N2"), 20, -400);  // on the link behind the junction
    field.NextTick();
    field.Turn(field.Field.Pilot("N1"));  // the link is passed at the end of this look
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    field.Turn(field.Field.Pilot("N2"));
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

TEST(GroundNotes, BetweenTicksEveryLookIsAFreshOne) {
    JunctionField field;
    field.S.TickInProgress = false;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0});
    field.Route("N2", {2, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    field.S.TaxiRoutes[1].Links[0].EndPoint = 3;
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    field.S.TaxiRoutes[1].Links[0].EndPoint = 0;
    field.Move(field.Field.Pilot("N2"), -950, 0);
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N2"), Phase::AcknowledgeHoldPosition);
}

TEST(GroundNotes, ARouteAddedOrRemovedInATickCountsInTheNextTurn) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0});
    field.S.TickInProgress = true;
    field.S.TicksBegun = 1;
    field.Separate();
    AdvanceTaxiRoutes(field.S);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    field.Route("N2", {2, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    RemoveTaxiRoute(field.S, field.Field.Pilot("N2"));
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

TEST(GroundNotes, ACopyOfAStationGoesItsOwnWay) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0});
    field.Route("N2", {2, 0});
    Station copy = field.S;
    field.Field.Tick();
    field.Move(copy.Players[1], -990, 0);
    SeparateTaxiRoutes(copy, false);
    EXPECT_EQ(copy.Players[0].Phase, Phase::TaxiingToRunway);
    EXPECT_EQ(copy.Players[1].Phase, Phase::AcknowledgeHoldPosition);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
}

}  // namespace
}  // namespace corvenna
