#include "airspace/tower_scene.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What "N1" reads.
constexpr char OfferLandingOrApproach[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Request Full Stop Landing 2-Tune "
    "Approach Frequency 3-Close ATC Services";
constexpr char OfferLandingOrArtcc[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Request Full Stop Landing 2-Tune "
    "ARTCC Frequency 3-Close ATC Services";
constexpr char LeftDownwind[] =
    "N1, Test Field Tower, Enter left downwind runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char RightDownwind[] =
    "N1, Test Field Tower, Enter right downwind runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char OnBase[] =
    "N1, Test Field Tower, Fly on base to runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char StraightIn[] =
    "N1, Test Field Tower, Fly straight in runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char OnApproach[] =
    "N1. Choose one of the following options for the Approach frequency: 1-Close ATC Services";
constexpr char OnArtcc[] =
    "N1. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";
constexpr char OfferCancel[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Close ATC Services";
constexpr char NotCleared[] = "N1, You were not cleared for land. Tower Services terminated.";
constexpr char NotClearedIfr[] =
    "N1, You were not cleared for land. Canceling IFR and turning to VFR. Tower Services terminated.";
constexpr char ClearedToLand1[] =
    "N1, You are cleared to land on runway 16. Number 1 for landing. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char ClearedToLand2[] =
    "N1, You are cleared to land on runway 16. Number 2 for landing. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char OfferGoAround[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Report Go Around "
    "3-Close ATC Services";
constexpr char OfferMissed[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Declare Missed Approach 2-Close ATC "
    "Services";
constexpr char CancelReceived[] =
    "N1, Roger landing cancel received. Choose one of the following options for the Tower frequency: 1-Close "
    "ATC Services";
constexpr char GoAroundReceived[] =
    "N1, Roger. Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Close ATC "
    "Services";
constexpr char MissedContactApproach[] =
    "N1, Roger. Contact Approach on 124.2. Good day. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char MissedContactArtcc[] =
    "N1, Roger. Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following "
    "options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char GoAround[] =
    "N1, Go around. Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC "
    "Services";
constexpr char GoAroundContactApproach[] =
    "N1, Go around. Contact Approach on 124.2. Good day. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char GoAroundContactArtcc[] =
    "N1, Go around. Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following "
    "options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char ExitRunway[] =
    "N1, Exit runway when able. Choose one of the following options for the Tower frequency: 1-Close ATC "
    "Services";
constexpr char ContactGround[] =
    "N1, Contact Ground on 121.9. Good day. Choose one of the following options for the Tower frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr char TuneGround[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Test Field Ground Frequency "
    "2-Close ATC Services";
constexpr char ContactApproach[] =
    "N1, Contact Approach on 124.2. Good day. Choose one of the following options for the Tower frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr char TuneApproach[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Approach Frequency 2-Close ATC "
    "Services";
constexpr char OnTower[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr char OnGround[] =
    "N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
constexpr char NotClearedTakeoff[] = "N1, You were not cleared for take off. Tower Services terminated.";
constexpr char NotClearedTakeoffIfr[] =
    "N1, You were not cleared for take off. Canceling IFR and turning to VFR. Tower Services terminated.";
constexpr char ContactArtcc[] =
    "N1, Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char TuneArtcc[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune ARTCC Frequency 2-Close ATC "
    "Services";
constexpr char OldText[] = "N1, what he was last told";

constexpr std::uint8_t BothRules[] = {Vfr, Ifr};

Outcome Terminated(std::string_view text) { return {std::string(text), "", "", Vfr}; }

Outcome OnTowerWith(std::string_view text, std::string_view phase, int rules) {
    return {std::string(text), std::string(phase), std::string(Tower), rules};
}

// ---- VFR, no state

TEST(TowerArrivals, AHighVfrPilotIsOfferedALandingAndApproach) {
    TowerScene scene("");
    scene.IsIn("west", 8, 301);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferLandingOrApproach, "", Vfr));
}

TEST(TowerArrivals, WithoutAnApproachFrequencyHeIsOfferedALandingAndArtcc) {
    TowerScene scene("");
    scene.S.ApproachFrequency = "";
    scene.IsIn("west", 8, 301);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferLandingOrArtcc, "", Vfr));
}

TEST(TowerArrivals, AtExactly300FeetHisTextStaysAsItIs) {
    TowerScene scene("");
    scene.IsIn("west", 8, 300);
    scene.N1().MenuText = OldText;
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OldText, "", Vfr));
}

TEST(TowerArrivals, Below300FeetHeLosesTheFrequencyWithoutAWord) {
    TowerScene scene("");
    scene.IsIn("west", 8, 299);
    scene.N1().MenuText = OldText;
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "", "", Vfr}));
    EXPECT_EQ(scene.N1().InService, UnderService);
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
}

TEST(TowerArrivals, TheQuadrantAloneChoosesThePatternEntry) {
    const std::pair<std::string_view, std::string_view> entries[] = {
        {"north", LeftDownwind},      {"northwest", LeftDownwind}, {"west", LeftDownwind},
        {"northeast", RightDownwind}, {"east", RightDownwind},     {"southeast", OnBase},
        {"southwest", OnBase},        {"south", StraightIn},
    };
    for (const auto& [quadrant, text] : entries) {
        for (const int miles : {1, 13}) {
            TowerScene scene("");
            scene.IsIn(quadrant, miles, 2000);
            scene.Answers(OfferLandingOrApproach, "1");
            ASSERT_EQ(scene.N1().Quadrant, quadrant);
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(text, "Acknowledge enter traffic pattern", Vfr));
            EXPECT_THAT(scene.LandingQueue(), IsEmpty());
        }
    }
}

TEST(TowerArrivals, InNoQuadrantTheRequestWaits) {
    TowerScene scene("");
    scene.IsIn("west", 5, 2000);
    scene.S.SectorWest = scene.S.SectorNorthwest = scene.S.SectorSouthwest = 160;  // a gap where he is
    scene.Answers(OfferLandingOrApproach, "1");
    ASSERT_EQ(scene.N1().Quadrant, "");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OfferLandingOrApproach, "", std::string(Tower), Vfr, 1}));
}

TEST(TowerArrivals, AVfrPilotMayTuneApproach) {
    TowerScene scene("");
    scene.IsIn("west", 8, 2000);
    scene.Answers(OfferLandingOrApproach, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OnApproach, "", std::string(ApproachLabel), Vfr}));
}

TEST(TowerArrivals, AVfrPilotMayTuneArtcc) {
    TowerScene scene("");
    scene.IsIn("west", 8, 2000);
    scene.Answers(OfferLandingOrArtcc, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OnArtcc, "", std::string(Artcc), Vfr}));
}

// ---- VFR, "Acknowledge enter traffic pattern"

TEST(TowerArrivals, ThePatternEntryIsAcknowledged) {
    TowerScene scene("Acknowledge enter traffic pattern");
    scene.IsIn("west", 8, 2000);
    scene.Answers(LeftDownwind, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferCancel, "Flying traffic pattern", Vfr));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

TEST(TowerArrivals, APilotBelowWhoOwesTheAcknowledgementIsTerminated) {
    TowerScene scene("Acknowledge enter traffic pattern");
    scene.IsIn("south", 8, 299);
    scene.N1().MenuText = LeftDownwind;
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotCleared));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());  // there is no gate in this state
}

TEST(TowerArrivals, OtherwiseThePatternEntryStands) {
    for (const int feet : {300, 301, 5000}) {
        TowerScene scene("Acknowledge enter traffic pattern");
        scene.IsIn("south", 8, feet);
        scene.N1().MenuText = LeftDownwind;
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(LeftDownwind, "Acknowledge enter traffic pattern", Vfr));
    }
}

// ---- VFR, "Flying traffic pattern"

TEST(TowerArrivals, APilotInThePatternMayCancel) {
    TowerScene scene("Flying traffic pattern");
    scene.IsIn("west", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(OfferCancel, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, "", Vfr));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

TEST(TowerArrivals, APilotInThePatternReadsTheCancelMenu) {
    for (const int feet : {300, 301, 5000}) {
        TowerScene scene("Flying traffic pattern");
        scene.IsIn("west", 5, feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferCancel, "Flying traffic pattern", Vfr));
    }
}

TEST(TowerArrivals, APilotInThePatternWhoComesBelowIsTerminated) {
    TowerScene scene("Flying traffic pattern");
    scene.IsIn("west", 5, 299);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotCleared));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

TEST(TowerArrivals, APilotInThePatternIsClearedAtTheGate) {
    TowerScene scene("Flying traffic pattern");
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ClearedToLand1, "Acknowledge Landing", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerArrivals, APilotBelowInTheGateIsTerminatedAndClearedInOneCall) {
    TowerScene scene("Flying traffic pattern");
    scene.IsIn("south", 8, 299);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{ClearedToLand1, "Acknowledge Landing", "", Vfr}));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

// ---- The landing gate

TEST(TowerArrivals, TheGateBeginsUnder9Miles) {
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

TEST(TowerArrivals, TheGateIsInTheSouthAlone) {
    for (const std::string_view quadrant :
         {"north", "northeast", "northwest", "east", "west", "southeast", "southwest"}) {
        TowerScene scene("Flying traffic pattern");
        scene.IsIn(quadrant, 5, 2000);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, "Flying traffic pattern") << quadrant;
        EXPECT_THAT(scene.LandingQueue(), IsEmpty());
    }
}

TEST(TowerArrivals, TheClearanceLooksAtNobodyElse) {
    TowerScene scene("Flying traffic pattern");
    scene.QueueForTakeoff("N7");
    scene.Field.Enters("N2");
    scene.Field.Place("N2", 160, 1, 0);  // on the runway
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand1);
}

TEST(TowerArrivals, TheNumberIsTheCountWithThePilotHimself) {
    TowerScene scene("Flying traffic pattern");
    scene.QueueForLanding("N2");
    scene.IsIn("south", 8, 1000);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, ClearedToLand2);
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2", "N1"));
}

TEST(TowerArrivals, TwoPilotsCanHearTheSameNumber) {
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

TEST(TowerArrivals, NobodyIsToldThatHeHasMovedUpInTheQueue) {
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

TEST(TowerArrivals, AVfrLandingClearanceIsAcknowledged) {
    TowerScene scene("Acknowledge Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(ClearedToLand1, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferGoAround, "Landing", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerArrivals, AnIfrLandingClearanceIsAcknowledged) {
    TowerScene scene("Acknowledge Landing", Ifr);
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(ClearedToLand1, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferMissed, "Landing", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerArrivals, ALandingClearanceStandsUntilItIsAcknowledgedAtAnyHeight) {
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

TEST(TowerArrivals, AVfrLandingIsCancelled) {
    TowerScene scene("Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferGoAround, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, "", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerArrivals, AVfrPilotReportsAGoAround) {
    TowerScene scene("Landing");
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferGoAround, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAroundReceived, "Going Around", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerArrivals, AnIfrMissedApproachGoesToApproach) {
    TowerScene scene("Landing", Ifr);
    scene.IsIn("south", 5, 1000);
    scene.QueueForLanding("N2");
    scene.QueueForLanding("N1");
    scene.Answers(OfferMissed, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(MissedContactApproach, "Acknowledge contact approach", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerArrivals, WithoutAnApproachFrequencyAnIfrMissedApproachGoesToArtcc) {
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

TEST(TowerArrivals, AVfrPilotIsSentAroundForAnotherWhoLandsOrTakesOff) {
    for (const std::string_view others : {"Landing", "Takingoff"}) {
        TowerScene scene = TwoOnFinal(others, Vfr, 1);
        scene.QueueForTakeoff("N2");  // whom he leaves in this tick, being high
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAround, "Acknowledge going around", Vfr));
        EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
    }
}

TEST(TowerArrivals, AnIfrPilotSentAroundGoesToApproach) {
    TowerScene scene = TwoOnFinal("Landing", Ifr, 1);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()),
              OnTowerWith(GoAroundContactApproach, "Acknowledge contact approach", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerArrivals, WithoutAnApproachFrequencyAnIfrPilotSentAroundGoesToArtcc) {
    TowerScene scene = TwoOnFinal("Landing", Ifr, 1);
    scene.S.ApproachFrequency = "";
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()),
              OnTowerWith(GoAroundContactArtcc, "Acknowledge contact ARTCC (GO AROUND)", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));
}

TEST(TowerArrivals, TheGoAroundIsCheckedUnder2Miles) {
    for (const auto& [miles, sentAround] : {std::pair{3, false}, {2, false}, {1, true}, {0, true}}) {
        TowerScene scene = TwoOnFinal("Landing", Vfr, miles);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, sentAround ? "Acknowledge going around" : "Landing") << miles;
        EXPECT_EQ(scene.N1().MenuText, sentAround ? GoAround : OldText) << miles;
    }
}

TEST(TowerArrivals, OfTwoWhoLandTheNearerGoesAroundNotTheOneBehind) {
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

TEST(TowerArrivals, OfTwoWhoAreBothNearTheFirstServedGoesAround) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.Field.Place("N2", 340, 1, 800);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge going around");
    EXPECT_EQ(scene.Field.Pilot("N2").Phase, "Landing");
}

TEST(TowerArrivals, AnyRecordThatIsLandingCountsOnAnyFrequencyAndInAnyRole) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.Field.Pilot("N2").TunedFrequency = "";
    scene.Field.Pilot("N2").Role = Role::Unknown;
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge going around");
}

TEST(TowerArrivals, AnotherRecordOfHisOwnNameDoesNotSendHimAround) {
    TowerScene scene("Landing");
    scene.QueueForLanding("N1");
    scene.IsIn("south", 1, 1000);
    scene.Field.Enters("N1").Phase = "Landing";
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Landing");
}

TEST(TowerArrivals, OtherPhasesDoNotSendHimAround) {
    for (const std::string_view others :
         {"", "landing", "Acknowledge Landing", "Acknowledge Takeoff", "Approach"}) {
        TowerScene scene = TwoOnFinal(others, Vfr, 1);
        scene.Field.Pilot("N2").TunedFrequency = "";
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, "Landing") << others;
    }
}

TEST(TowerArrivals, SomebodyOnTheRunwaySendsHimAround) {
    for (const auto& [feet, sentAround] : {std::pair{299, true}, {300, false}}) {
        TowerScene scene = TwoOnFinal("", Vfr, 1);
        scene.Field.Enters("N3", Role::Observer);
        scene.Field.Place("N3", 160, 1, feet);
        scene.Field.Pilot("N2").TunedFrequency = "";
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, sentAround ? "Acknowledge going around" : "Landing") << feet;
    }
}

TEST(TowerArrivals, AGoAroundComesBeforeTheRollout) {
    TowerScene scene = TwoOnFinal("Landing", Vfr, 1);
    scene.IsAt(0);
    scene.N1().Heading = 0;
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, GoAround);
    EXPECT_EQ(scene.N1().Heading, 0);  // the rollout check was not made
}

TEST(TowerArrivals, AGoAroundFromAnEmptyQueueKeepsItsNewState) {
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

TEST(TowerArrivals, AHighPilotWhoLandsKeepsHisText) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene = OnRollout(250, 301, rules);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OldText, "Landing", rules));
    }
}

TEST(TowerArrivals, ALowPilotOnTheRunwayHeadingIsToldToExit) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene = OnRollout(160, feet, rules);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ExitRunway, "Landing", rules));
            EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
        }
    }
}

TEST(TowerArrivals, ALowPilotWhoHasTurnedOffIsSentToGround) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene = OnRollout(250, feet, rules);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", rules));
            EXPECT_THAT(scene.LandingQueue(), IsEmpty());
        }
    }
}

TEST(TowerArrivals, TheRunwayHeadingIs10DegreesToTheLeftAnd9ToTheRight) {
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

TEST(TowerArrivals, TheRolloutCheckTurnsALowPilotsHeadingOf0Into360) {
    TowerScene low = OnRollout(0, 300);
    low.Field.Tick();
    EXPECT_EQ(low.N1().Heading, 360);
    TowerScene high = OnRollout(0, 301);
    high.Field.Tick();
    EXPECT_EQ(high.N1().Heading, 0);
}

TEST(TowerArrivals, OnARunwayToTheNorthAHeadingOf0IsTheRunways) {
    for (const auto& [heading, turnedOff] :
         {std::pair{349, true}, {350, false}, {0, false}, {360, false}, {9, false}, {10, true}}) {
        TowerScene scene = OnRollout(static_cast<std::int16_t>(heading), 0);
        scene.S.RunwayHeading = 360;
        ComputeSectorCentres(scene.S);
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, turnedOff ? "Acknowledge contact ground" : "Landing") << heading;
    }
}

TEST(TowerArrivals, ATurnOffFromAnEmptyQueueKeepsItsNewState) {
    TowerScene scene = OnRollout(250, 0);
    scene.S.LandingQueue.Clear();
    EXPECT_THROW(scene.Field.Tick(), EmptyListError);
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", Vfr));
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", Vfr));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());  // he was never told
}

// ---- VFR, "Acknowledge going around" and "Going Around"

TEST(TowerArrivals, TheGoAroundIsAcknowledged) {
    TowerScene scene("Acknowledge going around");
    scene.IsIn("south", 1, 1000);
    scene.Answers(GoAround, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferCancel, "Going Around", Vfr));
}

TEST(TowerArrivals, TheGoAroundStandsUntilItIsAcknowledgedAtAnyHeight) {
    for (const int feet : {0, 300, 5000}) {
        TowerScene scene("Acknowledge going around");
        scene.IsIn("south", 1, feet);
        scene.N1().MenuText = GoAround;
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAround, "Acknowledge going around", Vfr));
    }
}

TEST(TowerArrivals, APilotGoingAroundMayCancel) {
    TowerScene scene("Going Around");
    scene.IsIn("west", 3, 1000);
    scene.QueueForLanding("N1");
    scene.Answers(GoAroundReceived, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(CancelReceived, "", Vfr));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

TEST(TowerArrivals, APilotGoingAroundIsClearedAtTheGateAgain) {
    TowerScene scene("Going Around");
    scene.IsIn("south", 1, 1000);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ClearedToLand1, "Acknowledge Landing", Vfr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerArrivals, APilotGoingAroundKeepsHisTextElsewhereAtAnyHeight) {
    for (const int feet : {0, 300, 5000}) {
        TowerScene scene("Going Around");
        scene.IsIn("west", 3, feet);
        scene.N1().MenuText = GoAroundReceived;
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(GoAroundReceived, "Going Around", Vfr));
    }
}

// ---- Cancelling out of turn

TEST(TowerArrivals, ACancelOutsideTheQueueCostsItsHeadThePlaceAndNobodyIsTold) {
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

TEST(TowerArrivals, ACancelWithAnEmptyQueueEndsTheTickAndTheStateStays) {
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

TEST(TowerArrivals, OtherAnswersOutOfAnEmptyQueueLeaveTheStateToo) {
    TowerScene vfr("Landing");
    vfr.IsIn("south", 5, 1000);
    EXPECT_THROW(vfr.Answers(OfferGoAround, "2"), EmptyListError);
    EXPECT_EQ(OutcomeOf(vfr.N1()), OnTowerWith(GoAroundReceived, "Landing", Vfr));
    TowerScene ifr("Landing", Ifr);
    ifr.IsIn("south", 5, 1000);
    EXPECT_THROW(ifr.Answers(OfferMissed, "1"), EmptyListError);
    EXPECT_EQ(OutcomeOf(ifr.N1()), OnTowerWith(MissedContactApproach, "Landing", Ifr));
}

// ---- IFR, "Approach"

TEST(TowerArrivals, AnIfrPilotOnHisWayInCanOnlyClose) {
    TowerScene scene("Approach", Ifr);
    scene.IsIn("south", 5, 1000);
    scene.Answers(OfferCancel, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OfferCancel, "Approach", std::string(Tower), Ifr, 1}));
    scene.Answers(OnTower, "1");
    EXPECT_EQ(scene.N1().InService, OpeningDialogue);
}

TEST(TowerArrivals, AnIfrPilotOnHisWayInReadsTheTowersMenu) {
    for (const int feet : {300, 301, 5000}) {
        TowerScene scene("Approach", Ifr);
        scene.IsIn("west", 5, feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Approach", Ifr));
    }
}

TEST(TowerArrivals, AnIfrPilotOnHisWayInWhoComesBelowIsTerminated) {
    TowerScene scene("Approach", Ifr);
    scene.IsIn("west", 5, 299);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedIfr));
}

TEST(TowerArrivals, AnIfrPilotIsClearedAtTheGate) {
    TowerScene scene("Approach", Ifr);
    scene.IsIn("south", 8, 2000);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ClearedToLand1, "Acknowledge Landing", Ifr));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

TEST(TowerArrivals, AnIfrPilotBelowInTheGateIsTerminatedAndClearedInOneCall) {
    TowerScene scene("Approach", Ifr);
    scene.IsIn("south", 8, 299);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{ClearedToLand1, "Acknowledge Landing", "", Vfr}));
    EXPECT_THAT(scene.LandingQueue(), ElementsAre("N1"));
}

// ---- IFR, the hand-over of a missed approach

/// One of the four states in which an IFR pilot is being handed over after a miss.
struct MissedRow {
    std::string_view Phase;
    std::string_view Text;
};

constexpr MissedRow MissedRows[] = {
    {"Acknowledge contact approach", ContactApproach},
    {"Contact Approach", TuneApproach},
    {"Acknowledge contact ARTCC (GO AROUND)", ContactArtcc},
    {"Contact ARTCC (GO AROUND)", TuneArtcc},
};

TEST(TowerArrivals, AContactAfterAMissStandsWhileThePilotIsNotBelow) {
    for (const MissedRow& row : MissedRows) {
        for (const int feet : {300, 301, 5000}) {
            TowerScene scene(row.Phase, Ifr);
            scene.IsIn("south", 1, feet);
            scene.N1().MenuText = OldText;
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(row.Text, row.Phase, Ifr));
        }
    }
}

TEST(TowerArrivals, APilotWhoComesBelowAfterAMissIsTerminatedAndTheGateIsShut) {
    for (const MissedRow& row : MissedRows) {
        TowerScene scene(row.Phase, Ifr);
        scene.IsIn("south", 1, 299);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedIfr));
        EXPECT_THAT(scene.LandingQueue(), IsEmpty());
    }
}

TEST(TowerArrivals, TheContactOfApproachIsAcknowledged) {
    for (const std::string_view text : {MissedContactApproach, GoAroundContactApproach, ContactApproach}) {
        TowerScene scene("Acknowledge contact approach", Ifr);
        scene.Answers(text, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneApproach, "Contact Approach", Ifr));
    }
}

TEST(TowerArrivals, ThePilotTunesApproachAndKeepsHisState) {
    TowerScene scene("Contact Approach", Ifr);
    scene.Answers(TuneApproach, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()),
              (Outcome{OnApproach, "Contact Approach", std::string(ApproachLabel), Ifr}));
}

TEST(TowerArrivals, TheContactOfArtccAfterAMissIsAcknowledged) {
    for (const std::string_view text : {MissedContactArtcc, GoAroundContactArtcc, ContactArtcc}) {
        TowerScene scene("Acknowledge contact ARTCC (GO AROUND)", Ifr);
        scene.Answers(text, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneArtcc, "Contact ARTCC (GO AROUND)", Ifr));
    }
}

TEST(TowerArrivals, ThePilotTunesArtccAfterAMissWithoutAWord) {
    TowerScene scene("Contact ARTCC (GO AROUND)", Ifr);
    scene.Answers(TuneArtcc, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "Missed Approach", std::string(Artcc), Ifr}));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
}

TEST(TowerArrivals, AMissIsAnsweredEvenByAPilotWhoIsBelow) {
    TowerScene scene("Acknowledge contact approach", Ifr);
    scene.IsIn("south", 1, 0);
    scene.Answers(ContactApproach, "1");
    EXPECT_EQ(scene.N1().Phase, "Contact Approach");
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedIfr));
}

// ---- The hand-over to Ground

TEST(TowerArrivals, TheContactOfGroundIsAcknowledged) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge contact ground", rules);
        scene.Answers(ContactGround, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneGround, "Contact Ground", rules));
    }
}

TEST(TowerArrivals, TheContactOfGroundStandsWhileThePilotIsLow) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene("Acknowledge contact ground", rules);
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactGround, "Acknowledge contact ground", rules));
        }
    }
}

TEST(TowerArrivals, ThePilotTunesGroundAndKeepsHisState) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Contact Ground", rules);
        scene.Answers(TuneGround, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OnGround, "Contact Ground", std::string(Ground), rules}));
    }
}

TEST(TowerArrivals, TheOfferOfGroundStandsWhileThePilotIsLow) {
    for (const std::uint8_t rules : BothRules) {
        for (const int feet : {0, 299, 300}) {
            TowerScene scene("Contact Ground", rules);
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneGround, "Contact Ground", rules));
        }
    }
}

TEST(TowerArrivals, APilotInTheAirAgainIsToldOffInTheWordsForATakeoff) {
    for (const std::string_view phase : {"Acknowledge contact ground", "Contact Ground"}) {
        TowerScene vfr(phase, Vfr);
        vfr.IsAt(301);
        vfr.Field.Tick();
        EXPECT_EQ(OutcomeOf(vfr.N1()), Terminated(NotClearedTakeoff));
        TowerScene ifr(phase, Ifr);
        ifr.IsAt(301);
        ifr.Field.Tick();
        EXPECT_EQ(OutcomeOf(ifr.N1()), Terminated(NotClearedTakeoffIfr));
    }
}

// ---- All states

TEST(TowerArrivals, EveryStateCanBeClosed) {
    const std::pair<std::string_view, std::uint8_t> states[] = {
        {"", Vfr},
        {"Acknowledge enter traffic pattern", Vfr},
        {"Flying traffic pattern", Vfr},
        {"Acknowledge Landing", Vfr},
        {"Landing", Vfr},
        {"Acknowledge going around", Vfr},
        {"Going Around", Vfr},
        {"Acknowledge contact ground", Vfr},
        {"Contact Ground", Vfr},
        {"Approach", Ifr},
        {"Acknowledge Landing", Ifr},
        {"Landing", Ifr},
        {"Acknowledge contact approach", Ifr},
        {"Contact Approach", Ifr},
        {"Acknowledge contact ARTCC (GO AROUND)", Ifr},
        {"Contact ARTCC (GO AROUND)", Ifr},
        {"Acknowledge contact ground", Ifr},
        {"Contact Ground", Ifr},
    };
    for (const auto& [phase, rules] : states) {
        TowerScene scene(phase, rules);
        scene.QueueForLanding("N2");
        scene.QueueForLanding("N1");
        scene.Answers("N1. 4-Close ATC Services", "4");
        EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "", "", Vfr})) << phase;
        EXPECT_EQ(scene.N1().InService, OpeningDialogue) << phase;
        EXPECT_THAT(scene.LandingQueue(), ElementsAre("N2"));

        TowerScene waits(phase, rules);
        waits.IsIn("south", 1, 0);
        waits.Answers("N1. 4-Close ATC Services", "5");
        EXPECT_EQ(OutcomeOf(waits.N1()),
                  (Outcome{"N1. 4-Close ATC Services", std::string(phase), std::string(Tower), rules, 5}));
        EXPECT_THAT(waits.LandingQueue(), IsEmpty());
    }
}

// ---- Whole circuits

/// From the first call to the hand-over to Ground.
void FlyCircuit(std::string_view quadrant, std::string_view entry) {
    SCOPED_TRACE(quadrant);
    TowerScene scene("");
    std::vector<std::string> heard;
    const auto tick = [&](std::string_view typed = "") {
        if (!typed.empty()) scene.Field.Types("N1", typed);
        scene.Field.Tick();
        for (const std::string& text : scene.Field.Heard("N1")) heard.push_back(text);
    };
    scene.IsIn(quadrant, 12, 1500);
    tick();
    tick("1");
    tick("1");
    scene.IsIn("southwest", 9, 1200);
    tick();
    scene.IsIn("south", 8, 1000);
    tick();
    tick("1");
    scene.IsIn("south", 1, 301);
    tick();
    scene.Field.Place("N1", 160, 0, 10);
    scene.N1().Heading = 158;
    tick();
    tick();
    scene.N1().Heading = 230;
    tick();
    tick("1");
    tick("1");
    EXPECT_THAT(heard, ElementsAre(OfferLandingOrApproach, entry, OfferCancel, ClearedToLand1, OfferGoAround,
                                   ExitRunway, ContactGround, TuneGround, OnGround));
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OnGround, "Contact Ground", std::string(Ground), Vfr}));
    EXPECT_THAT(scene.LandingQueue(), IsEmpty());
}

TEST(TowerArrivals, ACircuitFromEachOfTheEightQuadrantsEndsOnGround) {
    FlyCircuit("north", LeftDownwind);
    FlyCircuit("northwest", LeftDownwind);
    FlyCircuit("west", LeftDownwind);
    FlyCircuit("northeast", RightDownwind);
    FlyCircuit("east", RightDownwind);
    FlyCircuit("southeast", OnBase);
    FlyCircuit("southwest", OnBase);
    FlyCircuit("south", StraightIn);
}

TEST(TowerArrivals, APilotSentAroundComesBackThroughTheGate) {
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
