#include "ground/ground_control.h"

#include <gmock/gmock.h>

#include "ground/ground_field.h"
#include "station/phases.h"

namespace corvenna {
namespace {

using ::testing::StartsWith;

const std::string Menu(GroundMenu);
const std::string Cleared = "N1, Taxi to and hold short runway 16. Contact tower on 118.3 when ready. " +
                            Menu + "1-Acknowledge 2-Close ATC Services";
const std::string TuneTower = "N1. " + Menu + "1-Tune Test Field Tower Frequency 2-Close ATC Services";
const std::string OnTower =
    "N1. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
const std::string HoldPosition =
    "N1, Hold position, caution other traffic. " + Menu + "1-Acknowledge 2-Close ATC Services";
const std::string Holding = "N1. " + Menu + "1-Close ATC Services";
const std::string ReportParked = "N1, Report us when you are parked in the gate or parking. " + Menu +
                                 "1-Report Parking 2-Close ATC Services";
const std::string Parked =
    "N1. " + Menu + "1-Request Taxi to Runway 2-Request Taxi to Gate 3-Close ATC Services";

constexpr std::string_view AllPhases[] = {Phase::None,
                                          Phase::AcknowledgeTaxiToRunway,
                                          Phase::TaxiingToRunway,
                                          Phase::AcknowledgeHoldPosition,
                                          Phase::HoldPosition,
                                          Phase::AcknowledgeTaxiToGate,
                                          Phase::TaxiingToGate,
                                          Phase::ContactGround};

void ExpectReset(const PlayerRecord& pilot) {
    EXPECT_EQ(pilot.InService, OpeningDialogue);
    EXPECT_EQ(pilot.TunedFrequency, "");
    EXPECT_EQ(pilot.MenuText, "");
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.Phase, "");
}

// ---- The request menu

TEST(GroundRequests, AVfrPilotIsOfferedTheRunwayAlone) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1");
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, "N1. " + Menu + "1-Request Taxi to Runway 2-Close ATC Services");
    EXPECT_EQ(pilot.Phase, "");
    EXPECT_EQ(pilot.Choice, 0);
}

TEST(GroundRequests, WithAFreeGateAloneTheGateIsTwoAndTheCloseThree) {
    GroundField field;
    field.StraightNetwork();
    field.Move(field.Pilot("N2"), 1500, -200);  // in PARKING 1
    PlayerRecord& pilot = field.Pilot("N1");
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, Parked);
}

TEST(GroundRequests, WithFreeOtherParkingAloneItIsTwoAndTheCloseThree) {
    GroundField field;
    field.StraightNetwork();
    field.Move(field.Pilot("N2"), 1500, 200);  // in GATE A 1
    PlayerRecord& pilot = field.Pilot("N1");
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText,
              "N1. " + Menu + "1-Request Taxi to Runway 2-Request Taxi to Parking 3-Close ATC Services");
}

TEST(GroundRequests, WithBothFreeTheCloseIsFour) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, "N1. " + Menu +
                                  "1-Request Taxi to Runway 2-Request Taxi to Gate 3-Request Taxi to Parking "
                                  "4-Close ATC Services");
}

TEST(GroundRequests, TheMenuFollowsTheGatesAndIsSentWhenItChanges) {
    GroundField field;
    field.StraightNetwork();
    field.Pilot("N1");
    field.Pilot("N2");
    field.Field.Tick();
    EXPECT_THAT(field.Field.Heard("N1"), ::testing::Contains(StartsWith("N1. " + Menu)));
    field.Field.Tick();
    EXPECT_THAT(field.Field.Heard("N1"), ::testing::IsEmpty());
    field.Move(field.Field.Pilot("N2"), 1500, 200);
    field.Field.Tick();
    EXPECT_THAT(
        field.Field.Heard("N1"),
        ::testing::Contains("N1. " + Menu +
                            "1-Request Taxi to Runway 2-Request Taxi to Parking 3-Close ATC Services"));
}

TEST(GroundRequests, AnIfrPilotIsOfferedTaxiIfr) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1", Phase::None, Ifr);
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, "N1. " + Menu + "1-Request Taxi IFR 2-Close ATC Services");
    EXPECT_EQ(pilot.Phase, "");
}

TEST(GroundRequests, ARequestForTheRunwayIsClearedOverTheNetwork) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    field.Move(pilot, 1500, 0);
    field.Turn(pilot);
    field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText,
              "N1, Taxi to and hold short runway 16 using taxiway A B . Contact tower on 118.3 when ready. " +
                  Menu + "1-Acknowledge 2-Close ATC Services");
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToRunway);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(field.S.TaxiRouteCount(), 1);
}

TEST(GroundRequests, AnIfrRequestIsClearedInTheSameWords) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1", Phase::None, Ifr);
    field.Move(pilot, 1500, 0);
    field.Turn(pilot);
    field.Turn(pilot, 1);
    EXPECT_THAT(pilot.MenuText, StartsWith("N1, Taxi to and hold short runway 16 using taxiway A B ."));
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToRunway);
    EXPECT_EQ(pilot.FlightRules, Ifr);
}

TEST(GroundRequests, AnAirportWithoutANetworkClearsWithoutARoute) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", Phase::None, rules);
        field.Turn(pilot);
        field.Turn(pilot, 1);
        EXPECT_EQ(pilot.MenuText, Cleared);
        EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToRunway);
        EXPECT_EQ(pilot.Choice, 0);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0);
    }
}

TEST(GroundRequests, AnAirportWithOnePathOrOnePointHasNoNetworkAndNeverOffersASpot) {
    for (const bool onePath : {true, false}) {
        GroundField field;
        field.StraightNetwork();
        if (onePath) {
            field.S.AirportTaxiPaths = {{TaxiPath::ParkingTie, 0, 0, ""}};
        } else {
            field.S.AirportTaxiPoints.resize(1);
        }
        PlayerRecord& pilot = field.Pilot("N1");
        field.Turn(pilot);
        EXPECT_EQ(pilot.MenuText, "N1. " + Menu + "1-Request Taxi to Runway 2-Close ATC Services");
        field.Turn(pilot, 1);
        EXPECT_EQ(pilot.MenuText, Cleared);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0);
    }
}

// ---- Departures, row by row. VFR and IFR have the same rows.

class GroundDepartures : public ::testing::TestWithParam<std::uint8_t> {
  protected:
    PlayerRecord& Pilot(std::string_view phase, std::string_view menuText) {
        PlayerRecord& pilot = Field.Pilot("N1", phase, GetParam());
        pilot.MenuText = menuText;
        return pilot;
    }
    GroundField Field;
};

INSTANTIATE_TEST_SUITE_P(VfrAndIfr, GroundDepartures, ::testing::Values(Vfr, Ifr));

TEST_P(GroundDepartures, TheClearanceStandsUntilItIsAcknowledged) {
    PlayerRecord& pilot = Pilot(Phase::AcknowledgeTaxiToRunway, Cleared);
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, Cleared);
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToRunway);
}

TEST_P(GroundDepartures, AcknowledgingTheClearanceOffersTheTower) {
    PlayerRecord& pilot = Pilot(Phase::AcknowledgeTaxiToRunway, Cleared);
    Field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, TuneTower);
    EXPECT_EQ(pilot.Phase, Phase::TaxiingToRunway);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(pilot.TunedFrequency, "121.9");
}

TEST_P(GroundDepartures, AHoldIsRepeatedUntilItIsAcknowledged) {
    PlayerRecord& pilot = Pilot(Phase::AcknowledgeHoldPosition, "something else");
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, HoldPosition);
    pilot.MenuText.clear();
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, HoldPosition);
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeHoldPosition);
}

TEST_P(GroundDepartures, AcknowledgingAHoldLeavesOnlyTheClose) {
    PlayerRecord& pilot = Pilot(Phase::AcknowledgeHoldPosition, HoldPosition);
    Field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, Holding);
    EXPECT_EQ(pilot.Phase, Phase::HoldPosition);
    EXPECT_EQ(pilot.Choice, 0);
}

TEST_P(GroundDepartures, WhileHoldingTheMenuIsWrittenAgainInEachTurn) {
    PlayerRecord& pilot = Pilot(Phase::HoldPosition, "something else");
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, Holding);
    EXPECT_EQ(pilot.Phase, Phase::HoldPosition);
}

TEST_P(GroundDepartures, WhileHoldingAOneClosesTheService) {
    PlayerRecord& pilot = Pilot(Phase::HoldPosition, Holding);
    Field.Turn(pilot, 1);
    ExpectReset(pilot);
}

TEST_P(GroundDepartures, OnTheWayAChangedMenuIsPutBack) {
    PlayerRecord& pilot = Pilot(Phase::TaxiingToRunway, "something else");
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, TuneTower);
    EXPECT_EQ(pilot.Phase, Phase::TaxiingToRunway);
}

TEST_P(GroundDepartures, OnTheWayATextThatHoldsTheMenuIsLeftAlone) {
    const std::string release = "N1, Continue taxi. " + Menu +
                                "1-TUNE Test Field Tower Frequency 2-Close ATC Services";  // in any case
    PlayerRecord& pilot = Pilot(Phase::TaxiingToRunway, release);
    Field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, release);
}

TEST_P(GroundDepartures, TuningTheTowerEndsTheRouteAndKeepsThePhase) {
    PlayerRecord& pilot = Pilot(Phase::TaxiingToRunway, TuneTower);
    Field.Point(0, 0);
    Field.Route("N1", {0});
    Field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, OnTower);
    EXPECT_EQ(pilot.Phase, Phase::TaxiingToRunway);
    EXPECT_EQ(pilot.TunedFrequency, "118.3");
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(Field.S.TaxiRouteCount(), 0);  // so nobody holds him from here on
}

TEST_P(GroundDepartures, EveryMenuCanBeClosed) {
    const std::pair<std::string_view, std::string> menus[] = {
        {Phase::None, "N1. " + Menu + "1-Request Taxi IFR 2-Close ATC Services"},
        {Phase::AcknowledgeTaxiToRunway, Cleared},
        {Phase::AcknowledgeHoldPosition, HoldPosition},
        {Phase::TaxiingToRunway, TuneTower}};
    for (const auto& [phase, text] : menus) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase, GetParam());
        pilot.MenuText = text;
        field.Route("N1", {0});
        field.Turn(pilot, 2);
        ExpectReset(pilot);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0) << phase;
    }
}

TEST_P(GroundDepartures, ADigitThatFitsNoOptionStaysAndFreezesTheMenu) {
    for (const std::string_view phase :
         {Phase::None, Phase::AcknowledgeTaxiToRunway, Phase::AcknowledgeHoldPosition, Phase::HoldPosition,
          Phase::TaxiingToRunway}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase, GetParam());
        pilot.MenuText = "an old menu";
        const PlayerRecord before = pilot;
        field.Turn(pilot, 7);
        field.Turn(pilot);
        EXPECT_EQ(pilot.Choice, 7);
        pilot.Choice = before.Choice;
        EXPECT_EQ(pilot, before) << phase;
    }
}

TEST_P(GroundDepartures, AWordThatNoTableNamesIsNotServed) {
    for (const std::string_view phase :
         {std::string_view("taxiing to runway"), std::string_view("Landing")}) {
        PlayerRecord& pilot = Pilot(phase, HoldPosition);
        Field.Turn(pilot);
        EXPECT_EQ(pilot.MenuText, HoldPosition);
        Field.Turn(pilot, 2);
        EXPECT_EQ(pilot.Choice, 2);
        EXPECT_EQ(pilot.Phase, phase);
    }
}

TEST(GroundControl, NeitherVfrNorIfrIsNotServed) {
    for (const std::string_view phase : AllPhases) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase, 2);
        pilot.MenuText = Holding;
        const PlayerRecord before = pilot;
        field.Turn(pilot);
        EXPECT_EQ(pilot, before);
    }
}

// ---- Arrivals, row by row

TEST(GroundArrivals, ARequestForAGateIsClearedToTheFirstFreeOne) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    field.Move(pilot, 300, 0);
    field.Turn(pilot);
    field.Turn(pilot, 2);
    EXPECT_EQ(pilot.MenuText,
              "N1, Taxi to GATE A 1 using taxiway A . " + Menu + "1-Acknowledge 2-Close ATC Services");
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToGate);
    EXPECT_EQ(pilot.Choice, 0);
}

TEST(GroundArrivals, ARequestForParkingIsClearedToTheFirstFreeSpotThatIsNoGate) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    field.Move(pilot, 300, 0);
    field.Turn(pilot);
    field.Turn(pilot, 3);
    EXPECT_EQ(pilot.MenuText,
              "N1, Taxi to PARKING 1 using taxiway A . " + Menu + "1-Acknowledge 2-Close ATC Services");
    EXPECT_EQ(pilot.Phase, Phase::AcknowledgeTaxiToGate);
}

TEST(GroundArrivals, TheClearanceStandsUntilItIsAcknowledged) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1", Phase::AcknowledgeTaxiToGate);
    pilot.MenuText = "N1, Taxi to GATE A 1. 1-Acknowledge 2-Close ATC Services";
    const PlayerRecord before = pilot;
    field.Turn(pilot);
    EXPECT_EQ(pilot, before);
    field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, ReportParked);
    EXPECT_EQ(pilot.Phase, Phase::TaxiingToGate);
    EXPECT_EQ(pilot.Choice, 0);
}

TEST(GroundArrivals, OnTheWayAChangedMenuIsPutBack) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1", Phase::TaxiingToGate);
    pilot.MenuText = "something else";
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, ReportParked);
}

TEST(GroundArrivals, OnTheWayATextThatHoldsTheMenuIsLeftAlone) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1", Phase::TaxiingToGate);
    const std::string release = "N1, Continue taxi. " + ReportParked.substr(4);
    pilot.MenuText = release;
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, release);
}

TEST(GroundArrivals, ReportingParkedIsBelievedAnywhereAndEndsTheRoute) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1", Phase::TaxiingToGate);  // far from any spot
    pilot.MenuText = ReportParked;
    field.Route("N1", {0, 1}, "GATE A 1");
    field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, Parked);
    EXPECT_EQ(pilot.Phase, "");
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_EQ(field.S.TaxiRouteCount(), 0);
}

TEST(GroundArrivals, TheFixedTextBehindTheReportStandsForOneTurn) {
    GroundField field;  // nothing is free here, and still a gate is offered
    PlayerRecord& pilot = field.Pilot("N1", Phase::TaxiingToGate);
    pilot.MenuText = ReportParked;
    field.Turn(pilot, 1);
    EXPECT_EQ(pilot.MenuText, Parked);
    field.Turn(pilot);
    EXPECT_EQ(pilot.MenuText, "N1. " + Menu + "1-Request Taxi to Runway 2-Close ATC Services");
}

TEST(GroundArrivals, ADigitThatComesAtOnceIsReadAgainstTheFixedText) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1");
    pilot.MenuText = Parked;
    field.Turn(pilot, 3);
    ExpectReset(pilot);
}

TEST(GroundArrivals, BothMenusOnTheWayCanBeClosed) {
    for (const std::string_view phase : {Phase::AcknowledgeTaxiToGate, Phase::TaxiingToGate}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase);
        pilot.MenuText = ReportParked;
        field.Route("N1", {0}, "GATE A 1");
        field.Turn(pilot, 2);
        ExpectReset(pilot);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0);
    }
}

TEST(GroundArrivals, AnIfrPilotHasNoPhasesOfTheGate) {
    for (const std::string_view phase : {Phase::AcknowledgeTaxiToGate, Phase::TaxiingToGate}) {
        for (const std::uint8_t digit : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}}) {
            GroundField field;
            PlayerRecord& pilot = field.Pilot("N1", phase, Ifr);
            pilot.MenuText = HoldPosition;
            pilot.Choice = digit;
            const PlayerRecord before = pilot;
            field.Turn(pilot);
            EXPECT_EQ(pilot, before);  // not even the close is there
        }
    }
}

TEST(GroundArrivals, APilotFromTheTowerIsVfrFromThenOnAndHearsNothingForATick) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", Phase::ContactGround, rules);
        pilot.MenuText = Holding;
        field.Field.Tick();
        EXPECT_EQ(pilot.MenuText, "");
        EXPECT_EQ(pilot.Phase, "");
        EXPECT_EQ(pilot.FlightRules, Vfr);
        EXPECT_THAT(field.Field.Heard("N1"), ::testing::IsEmpty());
        field.Field.Tick();
        EXPECT_EQ(field.Field.LastHeard("N1"),
                  "N1. " + Menu + "1-Request Taxi to Runway 2-Close ATC Services");
    }
}

TEST(GroundArrivals, FromTheTowerWithADigitPendingHeStaysAsHeIs) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1", Phase::ContactGround, Ifr);
    pilot.MenuText = Holding;
    pilot.Choice = 1;  // the close of that menu, which this phase does not have
    const PlayerRecord before = pilot;
    field.Turn(pilot);
    field.Turn(pilot);
    EXPECT_EQ(pilot, before);
    pilot.Choice = 0;
    field.Turn(pilot);
    EXPECT_EQ(pilot.FlightRules, Vfr);
}

// ---- In the air

TEST(GroundInTheAir, At299FeetTheTablesServeHim) {
    for (const std::uint8_t rules : {Vfr, Ifr}) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", Phase::HoldPosition, rules);
        pilot.Altitude = 699;
        field.Turn(pilot);
        EXPECT_EQ(pilot.MenuText, Holding);
    }
}

TEST(GroundInTheAir, AtExactly300FeetNothingHappensInAnyPhase) {
    for (const std::string_view phase : AllPhases) {
        for (const std::uint8_t rules : {Vfr, Ifr}) {
            GroundField field;
            PlayerRecord& pilot = field.Pilot("N1", phase, rules);
            pilot.Altitude = 700;
            pilot.MenuText = "something";
            pilot.Choice = 1;
            const PlayerRecord before = pilot;
            field.Turn(pilot);
            EXPECT_EQ(pilot, before) << phase;
        }
    }
}

TEST(GroundInTheAir, AtExactly300FeetTheLooksAtTheTrafficAreTakenAllTheSame) {
    GroundField field;
    field.StraightNetwork();
    field.Pilot("N2", Phase::HoldPosition);
    PlayerRecord& pilot = field.Pilot("N1");
    pilot.Altitude = 700;
    field.Route("N2", {0, 1});
    field.Turn(pilot);
    EXPECT_EQ(field.Field.Pilot("N2").Phase, Phase::TaxiingToRunway);
    EXPECT_EQ(field.S.AirportParkingSpots[0].Spare, 0);
}

TEST(GroundInTheAir, Above300FeetAVfrPilotIsReproachedAndGoesBackToTheFrequencies) {
    for (const std::string_view phase : AllPhases) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase);
        pilot.Altitude = 701;
        pilot.Choice = 1;
        field.Route("N1", {0});
        field.Turn(pilot);
        EXPECT_EQ(pilot.MenuText, "N1, You were not cleared for takeoff. Ground Services terminated.");
        EXPECT_EQ(pilot.Choice, 0);
        EXPECT_EQ(pilot.TunedFrequency, "");
        EXPECT_EQ(pilot.Phase, "");
        EXPECT_EQ(pilot.InService, UnderService);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0);
    }
}

TEST(GroundInTheAir, Above300FeetAnIfrPilotIsResetWithoutAWord) {
    for (const std::string_view phase : AllPhases) {
        GroundField field;
        PlayerRecord& pilot = field.Pilot("N1", phase, Ifr);
        pilot.Altitude = 701;
        field.Route("N1", {0});
        field.Turn(pilot);
        ExpectReset(pilot);
        EXPECT_EQ(pilot.FlightRules, Vfr);
        EXPECT_EQ(field.S.TaxiRouteCount(), 0);
    }
}

TEST(GroundInTheAir, Above300FeetNeitherVfrNorIfrIsLeftAlone) {
    GroundField field;
    PlayerRecord& pilot = field.Pilot("N1", Phase::HoldPosition, 2);
    pilot.Altitude = 2147483647;
    field.S.RunwayElevation = 2147483647 - 200;  // no sum overflows
    const PlayerRecord before = pilot;
    field.Turn(pilot);
    EXPECT_EQ(pilot, before);
    field.S.RunwayElevation = -2147483647;
    field.Turn(pilot);
    EXPECT_EQ(pilot, before);
}

TEST(GroundInTheAir, TheReproachIsHeardByThoseOnNoFrequency) {
    GroundField field;
    field.Pilot("N1").Altitude = 701;
    field.Pilot("N2");
    field.Field.Tick();
    EXPECT_EQ(field.Field.Heard("N1").size(), 1U);
    EXPECT_THAT(field.Field.Heard("N2"), ::testing::Not(::testing::Contains(::testing::HasSubstr("N1"))));
}

// ---- The order of a turn

TEST(GroundControl, AHoldThatFallsDueInHisOwnTurnIsWhatHisDigitIsReadAgainst) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1", Phase::TaxiingToRunway);
    pilot.MenuText = TuneTower;
    TaxiRouteRecord& route = field.Route("N1", {3, 4});
    route.Links[0].Name = "Runway 16";
    field.S.TakeoffQueue.Add("N9");
    field.Turn(pilot, 1);  // typed for the Tower
    EXPECT_EQ(pilot.Phase, Phase::HoldPosition);
    EXPECT_EQ(pilot.MenuText, Holding);
}

TEST(GroundControl, AWholeDepartureWithARouteGoesToTheTower) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1");
    field.Move(pilot, 1500, 0);
    field.Field.Tick();
    for (const char* const digit : {"1", "1", "1"}) {
        field.Field.Types("N1", digit);
        field.Field.Tick();
    }
    EXPECT_EQ(field.Field.LastHeard("N1"), OnTower);
    EXPECT_EQ(pilot.TunedFrequency, "118.3");
    EXPECT_EQ(pilot.Phase, Phase::TaxiingToRunway);
}

TEST(GroundControl, AWholeArrivalParksAndMayTaxiOutAgain) {
    GroundField field;
    field.StraightNetwork();
    PlayerRecord& pilot = field.Pilot("N1", Phase::ContactGround, Ifr);
    field.Move(pilot, 300, 0);
    field.Field.Tick(2);
    for (const char* const digit : {"2", "1", "1"}) {
        field.Field.Types("N1", digit);
        field.Field.Tick();
    }
    EXPECT_EQ(field.Field.LastHeard("N1"), Parked);
    field.Field.Types("N1", "1");
    field.Field.Tick();
    EXPECT_THAT(field.Field.LastHeard("N1"),
                StartsWith("N1, Taxi to and hold short runway 16 using taxiway"));
}

}  // namespace
}  // namespace corvenna
