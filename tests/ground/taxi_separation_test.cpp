#include "ground/taxi_separation.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string HoldText = ", Hold position, caution other traffic. " + std::string(GroundMenu) +
                             "1-Acknowledge 2-Close ATC Services";
const std::string ToRunwayText =
    ", Continue taxi. " + std::string(GroundMenu) + "1-Tune Test Field Tower Frequency 2-Close ATC Services";
const std::string ToGateText = ", Continue taxi. Report us when you are parked in the gate or parking. " +
                               std::string(GroundMenu) + "1-Report Parking 2-Close ATC Services";

// ---- Converging pilots

TEST(TaxiSeparation, OneRouteAloneIsHeldByNothingButTheRunway) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);  // nearer, but without a route
    field.Route("N1", {1, 0, 3});
    field.S.TakeoffQueue.Add("N9");
    field.Separate(true);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    field.S.TaxiRoutes[0].Links[1].Name = "Runway 16";
    field.Separate(false);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
}

TEST(TaxiSeparation, OfTwoConvergingPilotsTheFartherHolds) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0, 3});
    field.Route("N2", {2, 0, 3});
    field.Separate();
    EXPECT_EQ(field.TextOf("N1"), "N1" + HoldText);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    EXPECT_EQ(field.TextOf("N2"), "");
    EXPECT_EQ(field.PhaseOf("N2"), Phase::TaxiingToRunway);
}

TEST(TaxiSeparation, AtEqualDistanceNeitherHolds) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", 900, 0);  // at the very same place, a foot nearer or farther makes the difference
    field.Route("N1", {1, 0});
    field.Route("N2", {2, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N2"), Phase::TaxiingToRunway);
    field.Move(field.Field.Pilot("N2"), 905, 0);
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N2"), Phase::AcknowledgeHoldPosition);
}

TEST(TaxiSeparation, OnTheSameLinkInTheSameDirectionThereIsNoConflict) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", 300, 0);
    field.Route("N1", {1, 0});
    field.Route("N2", {1, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

TEST(TaxiSeparation, HeadOnOnOnePathThereIsNoConflict) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", 300, 0);
    field.Route("N1", {1, 0});
    field.Route("N2", {0, 1});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N2"), Phase::TaxiingToRunway);
}

TEST(TaxiSeparation, AllLiveLinksCountHoweverFarAhead) {
    JunctionField field;
    const std::int32_t farOff = field.Point(20000, 20000);
    field.At("N1", 900, 0);
    field.At("N2", -900, -5000);
    field.Route("N1", {1, 0, farOff});
    field.Route("N2", {2, 3, farOff});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N2"), Phase::AcknowledgeHoldPosition);
}

TEST(TaxiSeparation, ADistanceBeyondTheCapIsEqualToAnyOther) {
    JunctionField field;
    const std::int32_t farOff = field.Point(80000, 0);
    field.At("N1", 900, 0);
    field.At("N2", -9000, 0);
    field.Route("N1", {1, farOff});
    field.Route("N2", {2, farOff});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N2"), Phase::TaxiingToRunway);
}

TEST(TaxiSeparation, APilotWhoHoldsHimselfMakesNobodyHold) {
    for (const std::string_view phase : {Phase::AcknowledgeHoldPosition, Phase::HoldPosition}) {
        JunctionField field;
        field.At("N1", 900, 0);
        field.At("N2", -300, 0, phase);
        field.Route("N1", {1, 0});
        field.Route("N2", {2, 0}, "GATE 1").Target.Kind = "";  // nothing releases him
        field.Separate();
        EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    }
}

TEST(TaxiSeparation, AHoldJustWrittenCountsForTheRoutesBehindIt) {
    // N2 holds for N1 on a link of their own; N3 would hold for N2, who is nearer to point 0.
    for (const bool n2First : {true, false}) {
        JunctionField field;
        const std::int32_t other = field.Point(-5000, 0);
        field.At("N1", -5000, 10);
        field.At("N2", -300, 0);
        field.At("N3", 900, 0);
        field.Route("N1", {3, other});
        if (n2First) field.Route("N2", {2, 0, other});
        field.Route("N3", {1, 0});
        if (!n2First) field.Route("N2", {2, 0, other});
        field.Separate();
        EXPECT_EQ(field.PhaseOf("N2"), Phase::AcknowledgeHoldPosition);
        EXPECT_EQ(field.PhaseOf("N3"), n2First ? Phase::TaxiingToRunway : Phase::AcknowledgeHoldPosition);
    }
}

TEST(TaxiSeparation, AReleaseJustWrittenCountsForTheRoutesBehindIt) {
    JunctionField field;
    field.At("N1", -300, 0, Phase::HoldPosition);
    field.At("N2", 900, 0);
    field.Route("N1", {2, 0});
    field.Route("N2", {1, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N2"), Phase::AcknowledgeHoldPosition);
}

TEST(TaxiSeparation, APilotWithoutARouteNeitherHoldsNorMakesHold) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", 10, 0);
    field.At("N3", 10, 0, Phase::HoldPosition);
    field.Route("N1", {1, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.PhaseOf("N3"), Phase::HoldPosition);
}

TEST(TaxiSeparation, OnceTheSharedLinkIsPassedTheFartherPilotIsReleased) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.Route("N1", {1, 0, 3});
    field.Route("N2", {2, 0, 3});
    field.Turn(field.Field.Pilot("N2"));
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    field.Move(field.Field.Pilot("N2"), 20, -400);  // on the link behind the junction
    field.Turn(field.Field.Pilot("N2"));            // advances
    EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition);
    field.Turn(field.Field.Pilot("N2"));
    EXPECT_EQ(field.TextOf("N1"), "N1" + ToRunwayText);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

// ---- Hold and release

TEST(TaxiSeparation, AHoldIsWrittenOnce) {
    for (const std::string_view phase : {Phase::AcknowledgeHoldPosition, Phase::HoldPosition}) {
        JunctionField field;
        field.At("N1", 900, 0, phase);
        field.At("N2", -300, 0);
        field.Route("N1", {1, 0});
        field.Route("N2", {2, 0});
        field.Separate();
        EXPECT_EQ(field.PhaseOf("N1"), phase);
        EXPECT_EQ(field.TextOf("N1"), "");
    }
}

TEST(TaxiSeparation, AHoldComesOverEveryOtherPhase) {
    for (const std::string_view phase :
         {Phase::None, Phase::AcknowledgeTaxiToRunway, Phase::AcknowledgeTaxiToGate, Phase::TaxiingToGate,
          Phase::ContactGround, std::string_view("Landing")}) {
        JunctionField field;
        field.At("N1", 900, 0, phase);
        field.At("N2", -300, 0);
        field.Route("N1", {1, 0});
        field.Route("N2", {2, 0});
        field.Separate();
        EXPECT_EQ(field.PhaseOf("N1"), Phase::AcknowledgeHoldPosition) << phase;
    }
}

TEST(TaxiSeparation, ReleasedOnTheWayToTheRunwayHeIsTaxiingWithoutAReadBack) {
    for (const std::string_view phase : {Phase::AcknowledgeHoldPosition, Phase::HoldPosition}) {
        JunctionField field;
        field.At("N1", 900, 0, phase);
        field.Route("N1", {1, 0});
        field.Separate();
        EXPECT_EQ(field.TextOf("N1"), "N1" + ToRunwayText);
        EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    }
}

TEST(TaxiSeparation, ReleasedOnTheWayToAGateHeIsTaxiingToTheGate) {
    for (const std::string_view phase : {Phase::AcknowledgeHoldPosition, Phase::HoldPosition}) {
        JunctionField field;
        field.At("N1", 900, 0, phase);
        field.Route("N1", {1, 0}, "GATE 1");
        field.Separate();
        EXPECT_EQ(field.TextOf("N1"), "N1" + ToGateText);
        EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToGate);
    }
}

TEST(TaxiSeparation, WithATargetOfAnotherKindNobodyIsReleased) {
    JunctionField field;
    field.At("N1", 900, 0, Phase::HoldPosition);
    field.Route("N1", {1, 0}).Target.Kind = "runway";
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::HoldPosition);
    EXPECT_EQ(field.TextOf("N1"), "");
}

TEST(TaxiSeparation, ADigitWaitsForTheNewText) {
    JunctionField field;
    field.At("N1", 900, 0).Choice = 2;
    field.At("N2", -300, 0, Phase::HoldPosition).Choice = 1;
    field.Route("N1", {1, 0});
    field.Route("N2", {2, 0});
    field.Separate();
    EXPECT_EQ(field.Field.Pilot("N1").Choice, 2);
    EXPECT_EQ(field.Field.Pilot("N2").Choice, 1);
}

TEST(TaxiSeparation, ARouteOfNoLinksHoldsNobody) {
    JunctionField field;
    field.At("N1", 900, 0, Phase::HoldPosition);
    field.Route("N1", {1});
    field.Route("N1", {1}).Links.clear();  // not even the spare one
    field.Separate(true);
    AdvanceTaxiRoutes(field.S);
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

TEST(TaxiSeparation, ALinkIntoAMissingPointHoldsNobody) {
    for (const std::int32_t nowhere : {-2, 4, 2147483647}) {
        JunctionField field;
        field.At("N1", 900, 0);
        field.At("N2", -300, 0);
        field.Route("N1", {1, nowhere});
        field.Route("N2", {2, nowhere});
        field.Separate();
        AdvanceTaxiRoutes(field.S);
        EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
        EXPECT_EQ(field.PhaseOf("N2"), Phase::TaxiingToRunway);
    }
}

// ---- The runway

/// One pilot with a route over the runway in use, and perhaps somebody on it.
struct RunwayField : JunctionField {
    RunwayField() {
        At("N1", 900, 0);
        Route("N1", {1, 0, 3}).Links[1].Name = "RUNWAY 16";
    }
    bool Holds(bool runwayOccupied) {
        Field.Pilot("N1").Phase = Phase::TaxiingToRunway;
        Separate(runwayOccupied);
        return PhaseOf("N1") == Phase::AcknowledgeHoldPosition;
    }
};

TEST(TaxiSeparationAtTheRunway, HeHoldsWhileSomebodyIsOnIt) {
    RunwayField field;
    EXPECT_TRUE(field.Holds(true));
    EXPECT_FALSE(field.Holds(false));
}

TEST(TaxiSeparationAtTheRunway, HeHoldsWhileSomebodyWaitsInEitherQueue) {
    RunwayField field;
    field.S.TakeoffQueue.Add("N9");
    EXPECT_TRUE(field.Holds(false));
    field.S.TakeoffQueue.Clear();
    EXPECT_FALSE(field.Holds(false));
    field.S.LandingQueue.Add("N9");
    EXPECT_TRUE(field.Holds(false));
}

TEST(TaxiSeparationAtTheRunway, AQueueWithABlankHeadCountsAsEmpty) {
    RunwayField field;
    field.S.TakeoffQueue.Add("");
    EXPECT_FALSE(field.Holds(false));
}

TEST(TaxiSeparationAtTheRunway, OnlyALiveLinkOfTheRunwayInUseHolds) {
    RunwayField field;
    TaxiRouteRecord& route = field.S.TaxiRoutes[0];
    for (const char* const name : {"Runway 16L", "Runway 34", "16", "Runway  16", ""}) {
        route.Links[1].Name = name;
        EXPECT_FALSE(field.Holds(true)) << name;
    }
    route.Links[1].Name = "runway 16";
    EXPECT_TRUE(field.Holds(true));
    route.Links[1].EndPoint = -1;
    EXPECT_FALSE(field.Holds(true));
}

TEST(TaxiSeparationAtTheRunway, ARouteThatEndsAtItOnATaxiwayIsNotHeld) {
    RunwayField field;
    field.S.TaxiRoutes[0].Links[1].Name = "B";  // into the very same point
    field.S.LandingQueue.Add("N9");
    EXPECT_FALSE(field.Holds(true));
}

TEST(TaxiSeparationAtTheRunway, TheSpareElementDoesNotCount) {
    RunwayField field;
    TaxiRouteRecord& route = field.S.TaxiRoutes[0];
    route.Links[1].Name = "";
    route.Links.back().Name = "Runway 16";
    EXPECT_FALSE(field.Holds(true));
}

TEST(TaxiSeparationAtTheRunway, ARouteToAGateThatCrossesItHoldsLikeADeparture) {
    RunwayField field;
    field.S.TaxiRoutes[0].Target = {.Name = "GATE 1", .Kind = std::string(TaxiTarget::Parking)};
    EXPECT_TRUE(field.Holds(true));
}

TEST(TaxiSeparationAtTheRunway, APilotOnItHoldsInTheTurnsOfOthersAndIsReleasedInHisOwn) {
    JunctionField field;
    field.At("N1", 0, 0);
    PlayerRecord& onRunway = field.Field.Pilot("N1");
    const GeoPoint place = ProjectFeet(field.S.RunwayLatitude, field.S.RunwayLongitude, 160, 500);
    onRunway.Latitude = place.Latitude;
    onRunway.Longitude = place.Longitude;
    onRunway.MenuText = "N1" + ToRunwayText;
    field.At("N2", 900, 900);
    field.Route("N1", {0, 3}).Links[0].Name = "Runway 16";
    for (int i = 0; i < 2; ++i) {
        field.Turn(field.Field.Pilot("N2"));
        EXPECT_EQ(field.TextOf("N1"), "N1" + HoldText);
        field.Turn(field.Field.Pilot("N1"));
        EXPECT_EQ(field.TextOf("N1"), "N1" + ToRunwayText);
    }
    // In whole ticks he hears the release again and again, and the hold never.
    field.Field.Tick();
    EXPECT_THAT(field.Field.Heard("N1"), IsEmpty());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(field.TextOf("N1"), "N1" + HoldText);
        field.Field.Tick();
        EXPECT_THAT(field.Field.Heard("N1"), ElementsAre("N1" + ToRunwayText));
    }
}

// ---- What is heard

TEST(TaxiSeparationHeard, AHoldInHisOwnTurnGoesOutAtOnceAndOneInAnothersTurnNever) {
    for (const bool fartherFirst : {true, false}) {
        JunctionField field;
        field.At(fartherFirst ? "Far" : "Near", fartherFirst ? 900 : -300, 0);
        field.At(fartherFirst ? "Near" : "Far", fartherFirst ? -300 : 900, 0);
        for (PlayerRecord& pilot : field.S.Players.Valid()) pilot.MenuText = pilot.Name + ToRunwayText;
        field.Route("Near", {2, 0});
        field.Route("Far", {1, 0});
        field.Field.Tick();
        EXPECT_EQ(field.TextOf("Far"), "Far" + HoldText);
        if (fartherFirst) {
            EXPECT_THAT(field.Field.Heard("Far"), ElementsAre("Far" + HoldText));
        } else {
            EXPECT_THAT(field.Field.Heard("Far"), IsEmpty());
            field.Field.Types("Far", "R");
            field.Field.Tick();
            EXPECT_THAT(field.Field.Heard("Far"), ElementsAre("Far" + HoldText));
        }
    }
}

TEST(TaxiSeparationHeard, WithNobodyOnGroundHoldsStayAndLinksStayLive) {
    JunctionField field;
    field.At("N1", -300, 0, Phase::HoldPosition).TunedFrequency = field.S.TowerFrequency;
    field.Route("N1", {1, 0, 2});
    field.Field.Tick();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::HoldPosition);
    EXPECT_EQ(field.S.TaxiRoutes[0].Links[0].StartPoint, 1);
}

// ---- Stale indexes

TEST(StalePilotIndex, TheRecordThatStandsThereNowIsHeldAndMeasured) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.At("N2", -300, 0);
    field.At("N3", -9000, 0);
    field.Route("N1", {1, 0}).PilotIndex = 2;  // N1 has moved up in the list of players
    field.Route("N2", {2, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
    EXPECT_EQ(field.TextOf("N3"), "N3" + HoldText);
}

TEST(StalePilotIndex, TwoRoutesOfOneRecordDoNotHoldEachOther) {
    JunctionField field;
    field.At("N1", 900, 0);
    field.Route("N1", {1, 0});
    field.Route("N1", {2, 0});
    field.Separate();
    EXPECT_EQ(field.PhaseOf("N1"), Phase::TaxiingToRunway);
}

TEST(StalePilotIndex, AtTheCountTheSpareRecordIsReadAndWritten) {
    JunctionField field;
    field.At("N1", -300, 0);
    field.Route("N1", {1, 0}).PilotIndex = 1;
    field.Route("N1", {2, 0});
    PlayerRecord& spare = field.S.Players[1];
    field.Move(spare, 900, 0);
    field.Separate();
    EXPECT_EQ(spare.MenuText, HoldText);
    EXPECT_EQ(spare.Phase, Phase::AcknowledgeHoldPosition);
    field.S.TaxiRoutes[1].Links[0].EndPoint = 3;
    field.Separate();
    EXPECT_EQ(spare.MenuText, ToRunwayText);
    EXPECT_EQ(field.S.PlayerCount(), 1);
}

TEST(StalePilotIndex, BeyondTheCountABlankRecordIsReadAndWhatIsWrittenIsLost) {
    for (const std::int16_t beyond : {std::int16_t{2}, std::int16_t{32767}, std::int16_t{-1}}) {
        JunctionField field;
        field.At("N1", 900, 0);
        field.Route("N1", {1, 0}).PilotIndex = beyond;  // at 0 north, 0 east: beyond the cap of distances
        field.Route("N1", {2, 0});
        const std::vector<PlayerRecord> before(field.S.Players.Valid().begin(),
                                               field.S.Players.Valid().end());
        field.Separate(true);
        AdvanceTaxiRoutes(field.S);
        EXPECT_EQ(field.S.Players[0], before[0]);
        EXPECT_EQ(field.S.Players[1], PlayerRecord{});
    }
}

// ---- Advancing

/// A route over three links of 1000 ft each to the west: points 0 to 3, from 3000 ft east to the threshold.
struct AdvanceField : GroundField {
    AdvanceField() {
        for (int i = 0; i < 4; ++i) Point(3000.0 - 1000.0 * i, 0);
        Pilot("N1");
        Route("N1", {0, 1, 2, 3});
    }
    /// The start points of the links, once the pilot has been at this place.
    std::vector<std::int32_t> StartsAt(double east, double north) {
        Move(Field.Pilot("N1"), east, north);
        return Starts();
    }
    std::vector<std::int32_t> Starts() {
        AdvanceTaxiRoutes(S);
        std::vector<std::int32_t> starts;
        for (std::size_t i = 0; i < 3; ++i) {
            const TaxiPath& link = S.TaxiRoutes[0].Links[i];
            EXPECT_EQ(link.StartPoint == -1, link.EndPoint == -1);
            starts.push_back(link.StartPoint);
        }
        return starts;
    }
};

TEST(TaxiAdvance, OnTheFirstLinkNothingIsPassed) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(2500, 0), ElementsAre(0, 1, 2));
}

TEST(TaxiAdvance, LinksBeforeTheOneHeIsOnArePassed) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(1500, 0), ElementsAre(-1, 1, 2));
    EXPECT_THAT(field.StartsAt(500, 0), ElementsAre(-1, -1, 2));
}

TEST(TaxiAdvance, WhoCutsACornerSkipsLinks) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(500, 0), ElementsAre(-1, -1, 2));
}

TEST(TaxiAdvance, OffAllLinksNothingChanges) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(1500, 2000), ElementsAre(0, 1, 2));
    EXPECT_THAT(field.StartsAt(3500, 0), ElementsAre(0, 1, 2));   // behind the first
    EXPECT_THAT(field.StartsAt(-1500, 0), ElementsAre(0, 1, 2));  // beyond the last
}

TEST(TaxiAdvance, APassedLinkNeverComesBack) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(500, 0), ElementsAre(-1, -1, 2));
    EXPECT_THAT(field.StartsAt(2500, 0), ElementsAre(-1, -1, 2));
}

TEST(TaxiAdvance, TheLastLinkIsNeverPassed) {
    AdvanceField field;
    EXPECT_THAT(field.StartsAt(0, 0), ElementsAre(-1, -1, 2));
    EXPECT_THAT(field.StartsAt(-50, 0), ElementsAre(-1, -1, 2));
}

TEST(TaxiAdvance, AtThePointBetweenTwoLinksHeIsStillOnTheFirst) {
    AdvanceField field;
    PlayerRecord& pilot = field.Field.Pilot("N1");
    pilot.Latitude = field.S.AirportTaxiPoints[1].Latitude;
    pilot.Longitude = field.S.AirportTaxiPoints[1].Longitude;
    EXPECT_THAT(field.Starts(), ElementsAre(0, 1, 2));
}

TEST(TaxiAdvance, AFootBeyondTheLengthOfALinkHeIsOnTheNext) {
    AdvanceField field;
    const TaxiPoint& start = field.S.AirportTaxiPoints[0];
    const TaxiPoint& end = field.S.AirportTaxiPoints[1];
    PlayerRecord& pilot = field.Field.Pilot("N1");
    const auto feet = [&] {
        return DistanceFeet(start.Latitude, start.Longitude, pilot.Latitude, pilot.Longitude);
    };
    const std::int16_t length = DistanceFeet(start.Latitude, start.Longitude, end.Latitude, end.Longitude);
    pilot.Latitude = end.Latitude;
    pilot.Longitude = end.Longitude;
    while (feet() == length) pilot.Longitude -= 1e-7;
    ASSERT_EQ(feet(), length + 1);
    pilot.Longitude += 1e-7;
    EXPECT_THAT(field.Starts(), ElementsAre(0, 1, 2));
    pilot.Longitude -= 1e-7;
    EXPECT_THAT(field.Starts(), ElementsAre(-1, 1, 2));
}

TEST(TaxiAdvance, Within30DegreesOfTheCourseHeIsOnTheLink) {
    // The sector holds its lower bound and not its upper one.
    const struct {
        int Off;
        bool On;
    } cases[] = {{-31, false}, {-30, true}, {-29, true}, {0, true}, {29, true}, {30, false}, {31, false}};
    for (const auto& [off, on] : cases) {
        AdvanceField field;
        const TaxiPoint& from = field.S.AirportTaxiPoints[1];
        const TaxiPoint& to = field.S.AirportTaxiPoints[2];
        const std::int16_t course =
            BearingTo(field.S, from.Latitude, from.Longitude, to.Latitude, to.Longitude);
        PlayerRecord& pilot = field.Field.Pilot("N1");
        // The bearing of a place wavers by a degree with the rounding: take one that is seen under the angle.
        for (double bearing = course + off - 2.0; bearing < course + off + 2; bearing += 0.1) {
            const GeoPoint place = ProjectNmExact(from.Latitude, from.Longitude, bearing, 500.0 / 6080);
            pilot.Latitude = place.Latitude;
            pilot.Longitude = place.Longitude;
            if (BearingTo(field.S, from.Latitude, from.Longitude, place.Latitude, place.Longitude) ==
                course + off) {
                break;
            }
        }
        ASSERT_EQ(BearingTo(field.S, from.Latitude, from.Longitude, pilot.Latitude, pilot.Longitude),
                  course + off);
        // The other two links would have him else.
        field.S.TaxiRoutes[0].Links[2].EndPoint = 2;
        field.S.TaxiRoutes[0].Links[0].EndPoint = 0;
        EXPECT_EQ(field.Starts()[0], on ? -1 : 0) << off;
    }
}

TEST(TaxiAdvance, TheCourseIsMagneticLikeTheBearing) {
    AdvanceField field;
    field.S.MagVarGrid.assign(MagVarGridSize, 4000);
    EXPECT_THAT(field.StartsAt(1500, 0), ElementsAre(-1, 1, 2));
}

TEST(TaxiAdvance, AtTheStartOfALinkToTheNorthHeIsOnIt) {
    // From the point itself he bears 360; so the link holds him when it runs to the north, and not to the
    // south.
    for (const double north : {1000.0, -1000.0}) {
        GroundField field;
        const std::int32_t start = field.Point(5000, 0);
        const std::int32_t middle = field.Point(6000, 0);
        const std::int32_t end = field.Point(6030, north);
        PlayerRecord& pilot = field.Pilot("N1");
        field.Route("N1", {start, middle, end});
        const auto at = static_cast<std::size_t>(middle);
        pilot.Latitude = field.S.AirportTaxiPoints[at].Latitude;
        pilot.Longitude = field.S.AirportTaxiPoints[at].Longitude;
        field.S.TaxiRoutes[0].Links[0].StartPoint = end;  // which he is beyond
        field.S.TaxiRoutes[0].Links[0].EndPoint = end;
        AdvanceTaxiRoutes(field.S);
        EXPECT_EQ(field.S.TaxiRoutes[0].Links[0].StartPoint, north > 0 ? -1 : end);
    }
}

TEST(TaxiAdvance, LinksOfMissingPointsAreSkippedAndPassedLikeOthers) {
    for (const std::int32_t nowhere : {4, 2147483647, -2}) {
        AdvanceField field;
        field.S.TaxiRoutes[0].Links[0].EndPoint = nowhere;
        field.Move(field.Field.Pilot("N1"), 1500, 0);
        AdvanceTaxiRoutes(field.S);
        EXPECT_EQ(field.S.TaxiRoutes[0].Links[0].EndPoint, -1);
        EXPECT_EQ(field.S.TaxiRoutes[0].Links[1].StartPoint, 1);
    }
}

TEST(TaxiAdvance, EveryRouteIsAdvancedInTheTurnOfAnyPilotOnGround) {
    AdvanceField field;
    field.Move(field.Field.Pilot("N1"), 500, 0);
    field.Field.Pilot("N1").TunedFrequency = "";
    field.Turn(field.Pilot("N2"));
    EXPECT_EQ(field.S.TaxiRoutes[0].Links[1].StartPoint, -1);
}

}  // namespace
}  // namespace corvenna
