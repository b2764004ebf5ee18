#include "airspace/tower_control.h"
#include "airspace/tower_scene.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What "N1" reads.
constexpr char OfferVfr[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Test Field Ground Frequency "
    "2-Request VFR Takeoff Clearance 3-Close ATC Services";
constexpr char OfferIfr[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Test Field Ground Frequency "
    "2-Request IFR Takeoff Clearance 3-Close ATC Services";
constexpr char Cleared[] =
    "N1, Test Field Tower, Cleared for takeoff on runway 16. Choose one of the following options for the "
    "Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char HoldShort[] =
    "N1, Test Field Tower, Hold short on runway 16. Choose one of the following options for the Tower "
    "frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char OnTower[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr char OnGround[] =
    "N1. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
constexpr char NotCleared[] = "N1, You were not cleared for take off. Tower Services terminated.";
constexpr char NotClearedIfr[] =
    "N1, You were not cleared for take off. Canceling IFR and turning to VFR. Tower Services terminated.";
constexpr char ContactDeparture[] =
    "N1, Contact Departure on 124.2. Good day. Choose one of the following options for the Tower frequency: "
    "1-Acknowledge 2-Close ATC Services";
constexpr char ContactArtcc[] =
    "N1, Contact ARTCC (Air Route Traffic Control Center). Good day. Choose one of the following options for "
    "the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr char TuneDeparture[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune Departure Frequency 2-Close ATC "
    "Services";
constexpr char TuneArtcc[] =
    "N1. Choose one of the following options for the Tower frequency: 1-Tune ARTCC Frequency 2-Close ATC "
    "Services";
constexpr char OnDeparture[] =
    "N1. Choose one of the following options for the Departure frequency: 1-Close ATC Services";

std::string OfferFor(int rules) { return rules == Vfr ? OfferVfr : OfferIfr; }
std::string NotClearedFor(int rules) { return rules == Vfr ? NotCleared : NotClearedIfr; }

// ---- "Taxiing to runway"

TEST(TowerDepartures, ATaxiingPilotWhoIsLowIsOfferedGroundAndTheRequestOfHisRules) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Taxiing to runway", rules);
        for (const int feet : {0, 299, 300}) {
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OfferFor(rules), "Taxiing to runway", rules))
                << feet;
        }
    }
}

TEST(TowerDepartures, ATaxiingPilotWhoIsHighIsTerminatedAndNoQueueChanges) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Taxiing to runway", rules);
        scene.QueueForTakeoff("N2");
        scene.IsAt(301);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedFor(rules)));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
    }
}

TEST(TowerDepartures, TheLastWordsGoToThoseOnNoFrequency) {
    TowerScene scene("Taxiing to runway");
    scene.Adds("N2", "Acknowledge Takeoff");
    scene.IsAt(301);
    scene.Field.Tick();
    EXPECT_EQ(scene.Field.LastHeard("N1"), NotCleared);
    EXPECT_THAT(scene.Field.Heard("N2"), ::testing::Not(::testing::Contains(NotCleared)));
}

TEST(TowerDepartures, ATaxiingPilotMayTuneGroundAndKeepsHisState) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Taxiing to runway", rules);
        scene.Answers(OfferFor(rules), "1");
        EXPECT_EQ(OutcomeOf(scene.N1()),
                  (Outcome{OnGround, "Taxiing to runway", std::string(Ground), rules}));
    }
}

TEST(TowerDepartures, ARequestWithNobodyAboutIsClearedAndThePilotEntersTheQueueAllTheSame) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Taxiing to runway", rules);
        scene.Answers(OfferFor(rules), "2");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(Cleared, "Acknowledge Takeoff", rules));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
    }
}

TEST(TowerDepartures, ARequestWhileSomebodyWaitsToTakeOffHoldsShort) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Taxiing to runway", rules);
        scene.QueueForTakeoff("N2");
        scene.Answers(OfferFor(rules), "2");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(HoldShort, "Acknowledge Hold short", rules));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2", "N1"));
    }
}

TEST(TowerDepartures, ARequestWhileSomebodyIsClearedToLandHoldsShort) {
    TowerScene scene("Taxiing to runway");
    scene.QueueForLanding("N2");
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(HoldShort, "Acknowledge Hold short", Vfr));
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
}

TEST(TowerDepartures, ARequestWhileSomebodyIsOnTheRunwayHoldsShort) {
    TowerScene scene("Taxiing to runway");
    scene.Field.Enters("N2", Role::Observer);
    scene.Field.Place("N2", 160, 1, 0);
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(HoldShort, "Acknowledge Hold short", Vfr));
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
}

TEST(TowerDepartures, ThePilotHimselfOnTheRunwayDoesNotHinderHisClearance) {
    TowerScene scene("Taxiing to runway");
    scene.Field.Place("N1", 160, 1, 0);
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
}

TEST(TowerDepartures, ABlankHeadOfTheQueueDoesNotHinderAClearance) {
    TowerScene scene("Taxiing to runway");
    scene.QueueForTakeoff("");
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("", "N1"));
}

TEST(TowerDepartures, OfTwoRequestsInOneTickTheSecondHoldsShort) {
    TowerScene scene("Taxiing to runway");
    scene.Adds("N2", "Taxiing to runway");
    scene.Field.Tick();
    scene.Field.Types("N1", "2");
    scene.Field.Types("N2", "2");
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
    EXPECT_EQ(scene.Field.Pilot("N2").Phase, "Acknowledge Hold short");
    EXPECT_EQ(scene.Field.LastHeard("N2"),
              "N2, Test Field Tower, Hold short on runway 16. Choose one of the following options for the "
              "Tower frequency: 1-Acknowledge 2-Close ATC Services");
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1", "N2"));
}

TEST(TowerDepartures, TheRequestOfTheOtherRulesIsNotUnderstood) {
    TowerScene vfr("Taxiing to runway", Vfr);
    vfr.Answers(OfferIfr, "2");
    EXPECT_EQ(OutcomeOf(vfr.N1()), (Outcome{OfferIfr, "Taxiing to runway", std::string(Tower), Vfr, 2}));
    TowerScene ifr("Taxiing to runway", Ifr);
    ifr.Answers(OfferVfr, "2");
    EXPECT_EQ(OutcomeOf(ifr.N1()), (Outcome{OfferVfr, "Taxiing to runway", std::string(Tower), Ifr, 2}));
}

TEST(TowerDepartures, ARequestIsTakenEvenFromAPilotWhoIsAlreadyHigh) {
    TowerScene scene("Taxiing to runway");
    scene.IsAt(500);
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
}

// ---- "Acknowledge Hold short"

TEST(TowerDepartures, TheHoldIsAcknowledged) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge Hold short", rules);
        scene.QueueForTakeoff("N1");
        scene.Answers(HoldShort, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Holding short in runway", rules));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
    }
}

TEST(TowerDepartures, TheHoldStandsWhileThePilotIsLowAndSaysNothing) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge Hold short", rules);
        scene.QueueForTakeoff("N1");
        for (const int feet : {0, 299, 300}) {
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(HoldShort, "Acknowledge Hold short", rules));
        }
    }
}

TEST(TowerDepartures, APilotToldToHoldWhoTakesOffIsTerminatedAndLeavesTheQueue) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge Hold short", rules);
        scene.QueueForTakeoff("N2");
        scene.QueueForTakeoff("N1");
        scene.IsAt(301);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedFor(rules)));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
    }
}

TEST(TowerDepartures, ATerminationFromAnEmptyQueueStandsAlthoughTheTickEnds) {
    for (const std::string_view phase : {"Acknowledge Hold short", "Holding short in runway"}) {
        TowerScene scene(phase, Ifr);
        scene.IsAt(301);
        EXPECT_THROW(scene.Field.Tick(), EmptyListError);
        EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedIfr));
        EXPECT_EQ(scene.S.TakeoffQueueCount(), 0);
        EXPECT_EQ(scene.S.TakeoffQueue[0], "");
        EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
    }
}

// ---- "Holding short in runway"

TEST(TowerDepartures, AHoldingPilotBehindAnotherWaitsOnAFreeRunway) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Holding short in runway", rules);
        scene.QueueForTakeoff("N2");
        scene.QueueForTakeoff("N1");
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Holding short in runway", rules));
    }
}

TEST(TowerDepartures, TheHeadOfTheQueueIsReleased) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Holding short in runway", rules);
        scene.QueueForTakeoff("N1");
        scene.QueueForTakeoff("N2");
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(Cleared, "Acknowledge Takeoff", rules));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1", "N2"));
    }
}

TEST(TowerDepartures, ALandingClearanceAnywhereBlocksTheRelease) {
    TowerScene scene("Holding short in runway");
    scene.QueueForTakeoff("N1");
    scene.QueueForLanding("N2");
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Holding short in runway", Vfr));
    scene.S.LandingQueue.Clear();
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
}

TEST(TowerDepartures, SomebodyOnTheRunwayBlocksTheRelease) {
    TowerScene scene("Holding short in runway");
    scene.QueueForTakeoff("N1");
    scene.Field.Enters("N2");
    scene.Field.Place("N2", 160, 1, 299);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Holding short in runway", Vfr));
    scene.Field.Place("N2", 160, 1, 300);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Acknowledge Takeoff");
}

TEST(TowerDepartures, AHoldingPilotWhoTakesOffIsTerminatedAndLeavesTheQueue) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Holding short in runway", rules);
        scene.QueueForTakeoff("N1");
        scene.QueueForTakeoff("N2");
        scene.IsAt(300);
        scene.S.LandingQueue.Add("N3");
        scene.Field.Tick();
        EXPECT_EQ(scene.N1().Phase, "Holding short in runway");  // exactly 300 ft is low
        scene.IsAt(301);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), Terminated(NotClearedFor(rules)));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
    }
}

TEST(TowerDepartures, TheReleaseIsTriedEvenForAPilotWhoHasJustBeenTerminated) {
    TowerScene scene("Holding short in runway", Ifr);
    scene.QueueForTakeoff("N9");
    scene.IsAt(301);
    scene.N1().Name = "";  // a name that equals the head of an empty queue
    scene.Field.Tick();
    EXPECT_EQ(
        OutcomeOf(scene.Field.Pilot("")),
        (Outcome{", Test Field Tower, Cleared for takeoff on runway 16. Choose one of the following options "
                 "for the Tower frequency: 1-Acknowledge 2-Close ATC Services",
                 "Acknowledge Takeoff", "", Vfr}));
    EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
}

TEST(TowerDepartures, AHoldingPilotCanOnlyClose) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Holding short in runway", rules);
        scene.QueueForTakeoff("N1");
        scene.Answers(HoldShort, "1");  // the label of a menu that is over
        EXPECT_EQ(OutcomeOf(scene.N1()),
                  (Outcome{HoldShort, "Holding short in runway", std::string(Tower), rules, 1}));
        scene.Answers(OnTower, "1");
        EXPECT_EQ(scene.N1().InService, OpeningDialogue);
        EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
    }
}

// ---- "Acknowledge Takeoff"

TEST(TowerDepartures, TheClearanceIsAcknowledged) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge Takeoff", rules);
        scene.QueueForTakeoff("N1");
        scene.Answers(Cleared, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Takingoff", rules));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
    }
}

TEST(TowerDepartures, APilotWhoNeverAcknowledgesKeepsTheHeadOfTheQueueAtAnyHeight) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Acknowledge Takeoff", rules);
        scene.QueueForTakeoff("N1");
        scene.Adds("N2", "Holding short in runway");
        scene.QueueForTakeoff("N2");
        for (const int feet : {0, 300, 301, 9000}) {
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(Cleared, "Acknowledge Takeoff", rules)) << feet;
            EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1", "N2"));
            EXPECT_EQ(scene.Field.Pilot("N2").Phase, "Holding short in runway");
        }
        scene.Answers(Cleared, "1");
        scene.Field.Tick();  // he acknowledged, and is through 300 ft: the next one may go
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
        EXPECT_EQ(scene.Field.Pilot("N2").Phase, "Acknowledge Takeoff");
    }
}

TEST(TowerDepartures, AClearedPilotIsNotClearedAgain) {
    TowerScene scene("Acknowledge Takeoff");
    scene.QueueForTakeoff("N1");
    scene.Field.Tick();
    EXPECT_EQ(scene.Field.LastHeard("N1"), Cleared);
    scene.Field.Tick(3);
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
}

// ---- "Takingoff"

TEST(TowerDepartures, APilotOnHisTakeoffRollKeepsTheHeadOfTheQueue) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Takingoff", rules);
        scene.QueueForTakeoff("N1");
        for (const int feet : {0, 299, 300}) {
            scene.IsAt(feet);
            scene.Field.Tick();
            EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "Takingoff", rules)) << feet;
            EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
        }
    }
}

TEST(TowerDepartures, AVfrPilotThrough300FeetStaysWithTheTowerInNoState) {
    TowerScene scene("Takingoff");
    scene.QueueForTakeoff("N1");
    scene.QueueForTakeoff("N2");
    scene.IsAt(301);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(OnTower, "", Vfr));
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
}

TEST(TowerDepartures, AnIfrPilotThrough300FeetIsSentToDeparture) {
    TowerScene scene("Takingoff", Ifr);
    scene.QueueForTakeoff("N1");
    scene.IsAt(301);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactDeparture, "Acknowledge contact departure", Ifr));
    EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
}

TEST(TowerDepartures, WithoutAnApproachFrequencyAnIfrPilotThrough300FeetIsSentToArtcc) {
    TowerScene scene("Takingoff", Ifr);
    scene.S.ApproachFrequency = "";
    scene.QueueForTakeoff("N1");
    scene.IsAt(301);
    scene.Field.Tick();
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactArtcc, "Acknowledge contact ARTCC (DEPARTURE)", Ifr));
    EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
}

TEST(TowerDepartures, AWaitingDigitKeepsAPilotInTheQueueThoughHeHasClimbedAway) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Takingoff", rules);
        scene.QueueForTakeoff("N1");
        scene.IsAt(2000);
        scene.Answers(OnTower, "7");
        EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{OnTower, "Takingoff", std::string(Tower), rules, 7}));
        EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
        scene.Answers(OnTower, "1");
        EXPECT_EQ(scene.N1().InService, OpeningDialogue);
        EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
    }
}

TEST(TowerDepartures, OnAnEmptyQueueATakeoffEndsTheTickAndTheStateStays) {
    for (const std::uint8_t rules : BothRules) {
        TowerScene scene("Takingoff", rules);
        scene.IsAt(301);
        EXPECT_THROW(scene.Field.Tick(), EmptyListError);
        EXPECT_EQ(scene.N1().Phase, "Takingoff");
        EXPECT_EQ(scene.S.TakeoffQueueCount(), 0);
        EXPECT_EQ(scene.S.TakeoffQueue[0], "");
    }
}

TEST(TowerDepartures, ATakeoffOfAPilotWhoIsNotQueuedCostsTheHeadItsPlace) {
    TowerScene scene("Takingoff");
    scene.QueueForTakeoff("N2");
    scene.QueueForTakeoff("N3");
    scene.IsAt(301);
    scene.Field.Tick();
    EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N3"));
}

// ---- The hand-over to Departure and to ARTCC, IFR only, at any height

TEST(TowerDepartures, TheContactOfDepartureIsAcknowledged) {
    TowerScene scene("Acknowledge contact departure", Ifr);
    scene.Answers(ContactDeparture, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneDeparture, "Contact Departure", Ifr));
}

TEST(TowerDepartures, TheContactOfDepartureStandsUntilItIsAcknowledged) {
    for (const int feet : {0, 300, 301, 5000}) {
        TowerScene scene("Acknowledge contact departure", Ifr);
        scene.IsAt(feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(ContactDeparture, "Acknowledge contact departure", Ifr));
    }
}

TEST(TowerDepartures, ThePilotTunesDepartureOnTheApproachFrequency) {
    TowerScene scene("Contact Departure", Ifr);
    scene.Answers(TuneDeparture, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()),
              (Outcome{OnDeparture, "Contact Departure", std::string(ApproachLabel), Ifr}));
}

TEST(TowerDepartures, TheOfferOfDepartureStandsUntilItIsTaken) {
    for (const int feet : {0, 300, 301, 5000}) {
        TowerScene scene("Contact Departure", Ifr);
        scene.IsAt(feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneDeparture, "Contact Departure", Ifr));
    }
}

TEST(TowerDepartures, TheContactOfArtccIsAcknowledged) {
    TowerScene scene("Acknowledge contact ARTCC (DEPARTURE)", Ifr);
    scene.Answers(ContactArtcc, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneArtcc, "Contact ARTCC (DEPARTURE)", Ifr));
}

TEST(TowerDepartures, TheContactOfArtccStandsUntilItIsAcknowledged) {
    for (const int feet : {0, 300, 301, 5000}) {
        TowerScene scene("Acknowledge contact ARTCC (DEPARTURE)", Ifr);
        scene.IsAt(feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()),
                  OnTowerWith(ContactArtcc, "Acknowledge contact ARTCC (DEPARTURE)", Ifr));
    }
}

TEST(TowerDepartures, ThePilotTunesArtccWithoutAWord) {
    TowerScene scene("Contact ARTCC (DEPARTURE)", Ifr);
    scene.Answers(TuneArtcc, "1");
    EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "Departure", std::string(Artcc), Ifr}));
    EXPECT_THAT(scene.Field.Heard("N1"), IsEmpty());
}

TEST(TowerDepartures, TheOfferOfArtccStandsUntilItIsTaken) {
    for (const int feet : {0, 300, 301, 5000}) {
        TowerScene scene("Contact ARTCC (DEPARTURE)", Ifr);
        scene.IsAt(feet);
        scene.Field.Tick();
        EXPECT_EQ(OutcomeOf(scene.N1()), OnTowerWith(TuneArtcc, "Contact ARTCC (DEPARTURE)", Ifr));
    }
}

TEST(TowerDepartures, AVfrPilotInAHandOverStateOfIfrGetsNothing) {
    for (const std::string_view phase :
         {"Acknowledge contact departure", "Contact Departure", "Acknowledge contact ARTCC (DEPARTURE)",
          "Contact ARTCC (DEPARTURE)"}) {
        TowerScene scene(phase, Vfr);
        scene.Answers(TuneDeparture, "1");
        EXPECT_EQ(OutcomeOf(scene.N1()),
                  (Outcome{TuneDeparture, std::string(phase), std::string(Tower), Vfr, 1}));
    }
}

// ---- All states

TEST(TowerDepartures, EveryStateCanBeClosed) {
    for (const std::uint8_t rules : BothRules) {
        for (const std::string_view phase :
             {"Taxiing to runway", "Acknowledge Hold short", "Holding short in runway", "Acknowledge Takeoff",
              "Takingoff", "Acknowledge contact departure", "Contact Departure",
              "Acknowledge contact ARTCC (DEPARTURE)", "Contact ARTCC (DEPARTURE)"}) {
            if (rules == Vfr && phase.find("ontact") != std::string_view::npos) continue;
            TowerScene scene(phase, rules);
            scene.QueueForTakeoff("N1");
            scene.QueueForTakeoff("N2");
            scene.Answers("N1. 4-Close ATC Services", "4");
            EXPECT_EQ(OutcomeOf(scene.N1()), (Outcome{"", "", "", Vfr})) << phase;
            EXPECT_EQ(scene.N1().InService, OpeningDialogue);
            EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N2"));
        }
    }
}

TEST(TowerDepartures, ADigitThatFitsNothingWaitsAndPositionIsNotLookedAt) {
    for (const std::uint8_t rules : BothRules) {
        for (const std::string_view phase : {"Taxiing to runway", "Acknowledge Hold short",
                                             "Holding short in runway", "Acknowledge Takeoff", "Takingoff"}) {
            TowerScene scene(phase, rules);
            scene.QueueForTakeoff("N1");
            scene.IsAt(5000);
            scene.Answers("N1. 1-Something else", "1");
            scene.Field.Tick(3);
            EXPECT_EQ(OutcomeOf(scene.N1()),
                      (Outcome{"N1. 1-Something else", std::string(phase), std::string(Tower), rules, 1}));
            EXPECT_THAT(scene.TakeoffQueue(), ElementsAre("N1"));
        }
    }
}

TEST(TowerDepartures, ALabelIsFoundInAnyCase) {
    TowerScene scene("Acknowledge Takeoff");
    scene.Answers("n1, 5-ACKNOWLEDGE", "5");
    EXPECT_EQ(scene.N1().Phase, "Takingoff");
}

TEST(TowerDepartures, AnAirportWithoutANameIsOfferedAndUnderstood) {
    TowerScene scene("Taxiing to runway");
    scene.S.AirportName = "";
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText,
              "N1. Choose one of the following options for the Tower frequency: 1-Tune  Ground Frequency "
              "2-Request VFR Takeoff Clearance 3-Close ATC Services");
    scene.Field.Types("N1", "1");
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().TunedFrequency, Ground);
}

TEST(TowerDepartures, BracesInNamesAreTextLikeAnyOther) {
    TowerScene scene("Taxiing to runway");
    scene.S.AirportName = "{callsign}";
    scene.N1().Name = "{}";
    scene.Field.Tick();
    EXPECT_EQ(scene.Field.Pilot("{}").MenuText,
              "{}. Choose one of the following options for the Tower frequency: 1-Tune {callsign} Ground "
              "Frequency 2-Request VFR Takeoff Clearance 3-Close ATC Services");
}

TEST(TowerDepartures, AVfrPilotGoesFromTheHoldToTheAir) {
    TowerScene scene("Taxiing to runway");
    scene.Adds("N2", "Acknowledge Takeoff");
    scene.QueueForTakeoff("N2");
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, OfferVfr);
    scene.Answers(OfferVfr, "2");
    EXPECT_EQ(scene.N1().MenuText, HoldShort);
    scene.Answers(HoldShort, "1");
    EXPECT_EQ(scene.N1().MenuText, OnTower);

    scene.Field.Types("N2", "1");
    scene.Field.Place("N2", 160, 1, 0);
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().Phase, "Holding short in runway");
    scene.Field.Place("N2", 160, 1, 301);
    scene.Field.Tick();  // N1 is served first and still sees N2 at the head
    EXPECT_EQ(scene.N1().Phase, "Holding short in runway");
    scene.Field.Tick();
    EXPECT_EQ(scene.N1().MenuText, Cleared);
    scene.Answers(Cleared, "1");
    EXPECT_EQ(scene.N1().MenuText, OnTower);
    scene.IsAt(301);
    scene.Field.Tick(2);
    EXPECT_EQ(scene.N1().MenuText,
              "N1. Choose one of the following options for the Tower frequency: 1-Request Full Stop Landing "
              "2-Tune Approach Frequency 3-Close ATC Services");
    EXPECT_THAT(scene.TakeoffQueue(), IsEmpty());
}

}  // namespace
}  // namespace corvenna
