#include "airspace/tower_arrivals_heard.h"
#include "airspace/tower_scene.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

using namespace Heard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- The landing gate

TEST(TowerLanding, TheGateBeginsUnder9Miles) {
    for (const auto& [phase, rules] :
         {std::pair<std::string_view, std::uint8_t>{"Flying traffic pattern", Vfr},
          {"Going Around", Vfr},
          {"Approach", Ifr}}) {
        for (const auto& [miles, cleared] : {std::pair{10, false}, {9, false}, {8, true}, {0, true}}) {
            TowerScene scene(phase, rules);
            scene.IsIn("south", miles, 2000);
            scene.N1().Quadrant = "south";  // for the pilot over the threshold, who bears 360
            if (miles == 0) scene.S.SectorSouth = 360;
            scene.Field.Tick();
            EXPECT_EQ(scene.N1().Phase, cleared ? "Acknowledge Landing" : phase) << miles;
            EXPECT_EQ(scene.S.LandingQueueCount(), cleared ? 1 : 0);
        }
    }
}

TEST(TowerLanding, TheGateIsInTheSouthAlone) {
    for (const std::string_view quadrant :
         {"north", "northeast", "northwest", "east", "west", "southeast", "southwest"}) {
        TowerScene scene("Flying traffic pattern");
        scene.IsIn(quadrant, 5, 2000);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, "Flying traffic pattern") << quadrant;
        EXPECT_THAT(scene.LandingQueue(), IsEmpty());
    }
}

TEST(TowerLanding, TheClearanceLooksAtNobodyElse) {
    TowerScene scene("Flying traffic pattern");
    scene.QueueForTakeoff("N7");
    scene.Field.Enters("N2");
    scene.Field.Place("N2", 160, 1, 0);  // on the runway
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand1);
}

TEST(TowerLanding, TheNumberIsTheCountWithThePilotHimself) {
    TowerScene scene("Flying traffic pattern");
    scene.QueueForLanding("N2");
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand2);
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2", "N1"));
}

TEST(TowerLanding, TwoPilotsCanHearTheSameNumber) {
    TowerScene scene("Approach", Ifr);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N3");
    PlayerRecord landed;
    landed.Name = "N2";
    RemoveFromLandingQueue(scene.S, landed);
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand2);  // as N3 was told, who still waits
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N3", "N1"));
}

TEST(TowerLanding, NobodyIsToldThatHeHasMovedUpInTheQueue) {
    TowerScene scene("Landing");
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.IsIn("south", 5, 1000);
    scene.N1().MenuText = OfferGoAround;
    RemoveFromLandingQueue(scene.S, scene.Adds("N2", "Acknowledge Takeoff"));
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, OfferGoAround);
}

// ---- "Acknowledge Landing"

TEST(TowerLanding, AVfrLandingClearanceIsAcknowledged) {
    TowerScene scene("Acknowledge Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(ClearedToLand1, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferGoAround, "Landing", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerLanding, AnIfrLandingClearanceIsAcknowledged) {
    TowerScene scene("Acknowledge Landing", Ifr);
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(ClearedToLand1, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferMissed, "Landing", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerLanding, ALandingClearanceStandsUntilItIsAcknowledgedAtAnyHeight) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 300, 5000}) {
            TowerScene scene("Acknowledge Landing", rules);
            scene.IsIn("south", 1, feet);
            scene.N1().MenuText = ClearedToLand2;
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ClearedToLand2, "Acknowledge Landing", rules));
        }
    }
}

// ---- "Landing", by choice

TEST(TowerLanding, AVfrLandingIsCancelled) {
    TowerScene scene("Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferGoAround, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, "", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerLanding, AVfrPilotReportsAGoAround) {
    TowerScene scene("Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferGoAround, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAroundReceived, "Going Around", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerLanding, AnIfrMissedApproachGoesToApproach) {
    TowerScene scene("Landing", Ifr);
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferMissed, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(MissedContactApproach, "Acknowledge contact approach", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerLanding, WithoutAnApproachFrequencyAnIfrMissedApproachGoesToArtcc) {
    TowerScene scene("Landing", Ifr);
    scene.S.ApproachFrequency = "";
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(OfferMissed, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()),
              OnTowerWith(MissedContactArtcc, "Acknowledge contact ARTCC (GO AROUND)", Ifr));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

// ---- "Landing", the go-around

/// "N1" who lands with one more landing or taking off, and both in the queue as they were cleared.
TowerScene TwoOnFinal(std::string_view othersPhase, std::uint8_t rules, int miles) {
    TowerScene scene("Landing", rules);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Adds("N2", othersPhase);
    scene.Field.Place("N2", 340, 12, 3000);
    scene.IsIn("south", miles, 1000);
    scene.N1().MenuText = OldText;
    return scene;
}

TEST(TowerLanding, AVfrPilotIsSentAroundForAnotherWhoLandsOrTakesOff) {
    for (const std::string_view others : {"Landing", "Takingoff"}) {
        TowerScene scene = TwoOnFinal(others, Vfr, 1);
        scene.QueueForTakeoff("N2");  // whom he leaves in this tick, being high
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAround, "Acknowledge going around", Vfr));
        EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
    }
}

TEST(TowerLanding, AnIfrPilotSentAroundGoesToApproach) {
    TowerScene scene = TwoOnFinal("Landing", Ifr, 1);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()),
              OnTowerWith(GoAroundContactApproach, "Acknowledge contact approach", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerLanding, WithoutAnApproachFrequencyAnIfrPilotSentAroundGoesToArtcc) {
    TowerScene scene = TwoOnFinal("Landing", Ifr, 1);
    scene.S.ApproachFrequency = "";
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()),
              OnTowerWith(GoAroundContactArtcc, "Acknowledge contact ARTCC (GO AROUND)", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerLanding, TheGoAroundIsCheckedUnder2Miles) {
    for (const auto& [miles, sentAround] : {std::pair{3, false}, {2, false}, {1, true}, {0, true}}) {
        TowerScene scene = TwoOnFinal("Landing", Vfr, miles);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, sentAround ? "Acknowledge going around" : "Landing") << miles;
        EXPECT_EQ(scene.N1().MenuText, sentAround ? GoAround : OldText) << miles;
    }
}

TEST(TowerLanding, OfTwoWhoLandTheNearerGoesAroundNotTheOneBehind) {
    for (const bool nearerFirst : {true, false}) {
        TowerScene scene("Landing");
        scene.Adds("N2", "Landing");
        scene.QueueForLanding("N1");
        scene.QueueForLanding("N2");
        scene.Field.Place(nearerFirst ? "N1" : "N2", 340, 1, 800);
        scene.Field.Place(nearerFirst ? "N2" : "N1", 340, 2, 1000);
        scene.Field.Tick();
        EXPECT_EQ(scene.Field.Pilot(nearerFirst ? "N1" : "N2").Phase, "Acknowledge going around");
        EXPECT_EQ(scene.Field.Pilot(nearerFirst ? "N2" : "N1").Phase, "Landing");
    }
}

TEST(TowerLanding, OfTwoWhoAreBothNearTheFirstServedGoesAround) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.Field.Place("N2", 340, 1, 800);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge going around");
    EXPECT_EQ(scene.Field.Pilot("N2").Phase, "Landing");
}

TEST(TowerLanding, AnyRecordThatIsLandingCountsOnAnyFrequencyAndInAnyRole) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.Field.Pilot("N2").TunedFrequency = "";
    scene.Field.Pilot("N2").Role = Role::Unknown;
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge going around");
}

TEST(TowerLanding, AnotherRecordOfHisOwnNameDoesNotSendHimAround) {
    TowerScene scene("Landing");
    scene.QueueForLanding("N1");
    scene.IsIn("south", 1, 1000);
    scene.Field.Enters("N1").Phase = "Landing";
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Landing");
}

TEST(TowerLanding, OtherPhasesDoNotSendHimAround) {
    for (const std::string_view others :
         {"", "landing", "Acknowledge Landing", "Acknowledge Takeoff", "Approach"}) {
        TowerScene scene = TwoOnFinal(others, Vfr, 1);
        scene.Field.Pilot("N2").TunedFrequency = "";
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, "Landing") << others;
    }
}

TEST(TowerLanding, SomebodyOnTheRunwaySendsHimAround) {
    for (const auto& [feet, sentAround] : {std::pair{299, true}, {300, false}}) {
        TowerScene scene = TwoOnFinal("", Vfr, 1);
        scene.Field.Enters("N3", Role::Observer);
        scene.Field.Place("N3", 160, 1, feet);
        scene.Field.Pilot("N2").TunedFrequency = "";
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, sentAround ? "Acknowledge going around" : "Landing") << feet;
    }
}

TEST(TowerLanding, AGoAroundComesBeforeTheRollout) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.IsAt(0);
    scene.N1().Heading = 0;
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, GoAround);
    EXPECT_EQ(scene.N1().Heading, 0);  // the rollout check was not made
}

TEST(TowerLanding, AGoAroundFromAnEmptyQueueKeepsItsNewState) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.S.LandingQueue.Clear();
    EXPECT_THROW(scene.Field.Tick(), EmptyListError);
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAround, "Acknowledge going around", Vfr));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
    EXPECT_EQ(scene.S.LandingQueueCount(), 0);
}

// ---- "Landing", the rollout

/// "N1" on runway 16, alone, with a heading.
TowerScene OnRollout(std::int16_t heading, int feet, std::uint8_t rules = Vfr) {
    TowerScene scene("Landing", rules);
    scene.QueueForLanding("N1");
    scene.Field.Place("N1", 160, 1, feet);
    scene.N1().Heading = heading;
    scene.N1().MenuText = OldText;
    return scene;
}

TEST(TowerLanding, AHighPilotWhoLandsKeepsHisText) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene = OnRollout(250, 301, rules);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OldText, "Landing", rules));
    }
}

TEST(TowerLanding, ALowPilotOnTheRunwayHeadingIsToldToExit) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene = OnRollout(160, feet, rules);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ExitRunway, "Landing", rules));
            EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
        }
    }
}

TEST(TowerLanding, ALowPilotWhoHasTurnedOffIsSentToGround) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene = OnRollout(250, feet, rules);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", rules));
            EXPECT_THAT(scene.LandingQueue(), IsEmpty());
        }
    }
}

TEST(TowerLanding, TheRunwayHeadingIs10DegreesToTheLeftAnd9ToTheRight) {
    for (const auto& [heading, turnedOff] : {std::pair{149, true},
                                             {150, false},
                                             {152, false},
                                             {168, false},
                                             {169, false},
                                             {170, true},
                                             {171, true}}) {
        TowerScene scene = OnRollout(static_cast<std::int16_t>(heading), 100);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, turnedOff ? "Acknowledge contact ground" : "Landing") << heading;
        EXPECT_EQ(scene.N1().MenuText, turnedOff ? ContactGround : ExitRunway) << heading;
    }
}

TEST(TowerLanding, TheRolloutCheckTurnsALowPilotsHeadingOf0Into360) {
    TowerScene low = OnRollout(0, 300);
    low.Field.Tick();
    EXPECT_EQ(low.N1().Heading, 360);
    TowerScene high = OnRollout(0, 301);
    high.Field.Tick();
    EXPECT_EQ(high.N1().Heading, 0);
}

TEST(TowerLanding, OnARunwayToTheNorthAHeadingOf0IsTheRunways) {
    for (const auto& [heading, turnedOff] :
         {std::pair{349, true}, {350, false}, {0, false}, {360, false}, {9, false}, {10, true}}) {
        TowerScene scene = OnRollout(static_cast<std::int16_t>(heading), 0);
        scene.S.RunwayHeading = 360;
        ComputeSectorCentres(scene.S);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, turnedOff ? "Acknowledge contact ground" : "Landing") << heading;
    }
}

TEST(TowerLanding, ATurnOffFromAnEmptyQueueKeepsItsNewState) {
    TowerScene scene = OnRollout(250, 0);
    scene.S.LandingQueue.Clear();
    EXPECT_THROW(scene.Field.Tick(), EmptyListError);
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", Vfr));
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", Vfr));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());  // he was never told
}

// ---- Cancelling out of turn

TEST(TowerLanding, ACancelOutsideTheQueueCostsItsHeadThePlaceAndNobodyIsTold) {
    for (const auto& [phase, text] :
         {std::pair<std::string_view, std::string_view>{"Flying traffic pattern", OfferCancel},
          {"Going Around", GoAroundReceived}}) {
        TowerScene scene(phase);
        scene.IsIn("west", 5, 1000);
        scene.QueueForLanding("N2");
        scene.QueueForLanding("N3");
        PlayerRecord& other = scene.Adds("N2", "Landing");
        other.MenuText = OldText;
        scene.Field.Place("N2", 340, 5, 1000);
        scene.Answers(text, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, "", Vfr));
        EXPECT_THAT(scene.LandingQueue(), ElementsAre("N3"));
        EXPECT_EQ(OutcomeOf(scene.Field.Pilot("N2")), OnTowerWith(OldText, "Landing", Vfr));
    }
}

TEST(TowerLanding, ACancelWithAnEmptyQueueEndsTheTickAndTheStateStays) {
    for (const auto& [phase, text] :
         {std::pair<std::string_view, std::string_view>{"Flying traffic pattern", OfferCancel},
          {"Going Around", GoAroundReceived},
          {"Landing", OfferGoAround}}) {
        TowerScene scene(phase);
        scene.IsIn("west", 5, 1000);
        EXPECT_THROW(scene.Answers(text, "1"), EmptyListError);
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, phase, Vfr));
        EXPECT_EQ(scene.S.LandingQueueCount(), 0);
        EXPECT_EQ(scene.S.LandingQueue[0], "");
        EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
        EXPECT_NO_THROW(scene.Field.Tick());
    }
}

TEST(TowerLanding, OtherAnswersOutOfAnEmptyQueueLeaveTheStateToo) {
    TowerScene vfr("Landing");
    vfr.IsIn("south", 5, 1000);
    EXPECT_THROW(vfr.Answers(OfferGoAround, "2"), EmptyListError);
    EXPECT_EQ(OutcomeOf(vfr.N1()), OnTowerWith(GoAroundReceived, "Landing", Vfr));
    TowerScene ifr("Landing", Ifr);
    ifr.IsIn("south", 5, 1000);
    EXPECT_THROW(ifr.Answers(OfferMissed, "1"), EmptyListError);
    EXPECT_EQ(OutcomeOf(ifr.N1()), OnTowerWith(MissedContactApproach, "Landing", Ifr));
}

TEST(TowerLanding, APilotSentAroundComesBackThroughTheGate) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, GoAround);
    scene.Answers(GoAround, "1");
    EXPECT_EQ(scene.N1().MenuText, OfferCancel);
    scene.IsIn("west", 3, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Going Around");
    scene.IsIn("south", 5, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand2);  // behind the one who made him go around
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2", "N1"));
}

}  // namespace
}  // namespace corvenna
