#include "airspace/tower_arrivals_heard.h"
#include "airspace/tower_scene.h"

namespace corvenna {
namespace {

using namespace Heard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
    const auto tick = [&](std::string_view typed = {}) {
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

}  // namespace
}  // namespace corvenna
