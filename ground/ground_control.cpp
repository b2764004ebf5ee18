#include "ground/ground_control.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "ground/ground_texts.h"
#include "ground/taxi_separation.h"
#include "station/menu.h"
#include "station/phases.h"
#include "station/say.h"
#include "station/text.h"

namespace corvenna {

namespace {

// ---- Texts

constexpr std::string_view NotClearedForTakeoffText =
    "{callsign}, You were not cleared for takeoff. Ground Services terminated.";
constexpr std::string_view RequestMenuText =
    "{callsign}. Choose one of the following options for the Ground frequency: 1-Request Taxi to Runway";
constexpr std::string_view RequestIfrText =
    "{callsign}. Choose one of the following options for the Ground frequency: "
    "1-Request Taxi IFR 2-Close ATC Services";
constexpr std::string_view TuneTowerText =
    "{callsign}. Choose one of the following options for the Ground frequency: "
    "1-Tune {airport} Tower Frequency 2-Close ATC Services";
constexpr std::string_view OnTowerText =
    "{callsign}. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr std::string_view HoldingText =
    "{callsign}. Choose one of the following options for the Ground frequency: 1-Close ATC Services";
constexpr std::string_view ReportParkedText =
    "{callsign}, Report us when you are parked in the gate or parking. "
    "Choose one of the following options for the Ground frequency: 1-Report Parking 2-Close ATC Services";
constexpr std::string_view ParkedText =
    "{callsign}. Choose one of the following options for the Ground frequency: "
    "1-Request Taxi to Runway 2-Request Taxi to Gate 3-Close ATC Services";

// What keeps a text standing that ends in the menu of the state, whatever was said in front of it.
constexpr std::string_view TuneTowerMenu =
    "Choose one of the following options for the Ground frequency: "
    "1-Tune {airport} Tower Frequency 2-Close ATC Services";
constexpr std::string_view ReportParkedMenu =
    "Report us when you are parked in the gate or parking. "
    "Choose one of the following options for the Ground frequency: 1-Report Parking 2-Close ATC Services";

// ---- Labels

constexpr std::string_view RequestRunwayLabel = "-Request Taxi to Runway";
constexpr std::string_view RequestGateLabel = "-Request Taxi to Gate";
constexpr std::string_view RequestParkingLabel = "-Request Taxi to Parking";
constexpr std::string_view RequestIfrLabel = "-Request Taxi IFR";
constexpr std::string_view AcknowledgeLabel = "-Acknowledge";
constexpr std::string_view TuneTowerLabel = "-Tune {airport} Tower Frequency";
constexpr std::string_view ReportParkingLabel = "-Report Parking";

// ---- No clearance yet

/// Built anew in each turn, so that an option comes and goes as spots fill and empty.
void OfferTaxi(Station& station, PlayerRecord& pilot, const ParkingOffer& offer) {
    Say(station, pilot, RequestMenuText);
    int digit = 1;
    const auto append = [&](std::string_view label) {
        pilot.MenuText.append(" ").append(std::to_string(++digit)).append(label);
    };
    if (offer.Gate) append(RequestGateLabel);
    if (offer.Parking) append(RequestParkingLabel);
    append(CloseLabel);
}

void OfferTaxiIfr(Station& station, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    Say(station, pilot, RequestIfrText);
}

void RequestGate(Station& station, PlayerRecord& pilot) { RequestParkingTaxi(station, pilot, true); }
void RequestParking(Station& station, PlayerRecord& pilot) { RequestParkingTaxi(station, pilot, false); }

constexpr MenuRow VfrRequestChoices[] = {
    {RequestRunwayLabel, &RequestRunwayTaxi},
    {RequestGateLabel, &RequestGate},
    {RequestParkingLabel, &RequestParking},
    {CloseLabel, &ResetPilot},
};
constexpr MenuRow IfrRequestChoices[] = {
    {RequestIfrLabel, &RequestRunwayTaxi},
    {CloseLabel, &ResetPilot},
};

// ---- Steps of more than one state

void AnswerAndGoTo(Station& station, PlayerRecord& pilot, std::string_view text, std::string_view nextPhase) {
    Answer(station, pilot, text);
    pilot.Phase = nextPhase;
}

bool Stands(const Station& station, const PlayerRecord& pilot, std::string_view menu) {
    fmt::memory_buffer filled;  // on the stack: it is asked for each second
    FillBehind(filled, station, pilot, menu);
    return ContainsIgnoringCase(pilot.MenuText, {filled.data(), filled.size()});
}

// ---- To the runway

void StartToRunway(Station& station, PlayerRecord& pilot) {
    AnswerAndGoTo(station, pilot, TuneTowerText, Phase::TaxiingToRunway);
}

void KeepTuneTower(Station& station, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    if (!Stands(station, pilot, TuneTowerMenu)) Say(station, pilot, TuneTowerText);
}

void TuneTower(Station& station, PlayerRecord& pilot) {
    AnswerAndGoTo(station, pilot, OnTowerText, Phase::TaxiingToRunway);
    pilot.TunedFrequency = station.TowerFrequency;
    RemoveTaxiRoutesOf(station, pilot);
}

constexpr MenuRow ToRunwayChoices[] = {{AcknowledgeLabel, &StartToRunway}, {CloseLabel, &ResetPilot}};
constexpr MenuRow TaxiingToRunwayChoices[] = {{TuneTowerLabel, &TuneTower}, {CloseLabel, &ResetPilot}};

// ---- On hold. The pilot can't leave it by himself.

void RepeatHold(Station& station, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    Say(station, pilot, HoldPositionText);
}

void Hold(Station& station, PlayerRecord& pilot) {
    AnswerAndGoTo(station, pilot, HoldingText, Phase::HoldPosition);
}

void KeepHolding(Station& station, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    Say(station, pilot, HoldingText);
}

constexpr MenuRow ToHoldChoices[] = {{AcknowledgeLabel, &Hold}, {CloseLabel, &ResetPilot}};
constexpr MenuRow HoldingChoices[] = {{CloseLabel, &ResetPilot}};

// ---- To a gate or other parking

void StartToGate(Station& station, PlayerRecord& pilot) {
    AnswerAndGoTo(station, pilot, ReportParkedText, Phase::TaxiingToGate);
}

void KeepReportParked(Station& station, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    if (!Stands(station, pilot, ReportParkedMenu)) Say(station, pilot, ReportParkedText);
}

/// Believed without a look at where he is. The text offers a gate whether one is free or not; the next turn
/// replaces it by what is on offer.
void ReportParked(Station& station, PlayerRecord& pilot) {
    AnswerAndGoTo(station, pilot, ParkedText, Phase::None);
    RemoveTaxiRoutesOf(station, pilot);
}

constexpr MenuRow ToGateChoices[] = {{AcknowledgeLabel, &StartToGate}, {CloseLabel, &ResetPilot}};
constexpr MenuRow TaxiingToGateChoices[] = {{ReportParkingLabel, &ReportParked}, {CloseLabel, &ResetPilot}};

// ---- From the Tower

/// Every arrival is a VFR pilot on the ground. The empty text is not sent; his next turn brings the menu.
void TakeOver(Station& /*station*/, PlayerRecord& pilot, const ParkingOffer& /*offer*/) {
    pilot.MenuText.clear();
    pilot.FlightRules = Vfr;
    pilot.Phase = Phase::None;
}

// ---- The state tables

struct GroundState {
    std::string_view Phase;
    void (*Wait)(Station&, PlayerRecord&, const ParkingOffer&);  ///< without a digit; nullptr: the text stays
    std::span<const MenuRow> Choices;                            ///< with one
};

constexpr GroundState VfrStates[] = {
    {Phase::None, &OfferTaxi, VfrRequestChoices},
    {Phase::AcknowledgeTaxiToRunway, nullptr, ToRunwayChoices},
    {Phase::AcknowledgeHoldPosition, &RepeatHold, ToHoldChoices},
    {Phase::HoldPosition, &KeepHolding, HoldingChoices},
    {Phase::TaxiingToRunway, &KeepTuneTower, TaxiingToRunwayChoices},
    {Phase::AcknowledgeTaxiToGate, nullptr, ToGateChoices},
    {Phase::TaxiingToGate, &KeepReportParked, TaxiingToGateChoices},
    {Phase::ContactGround, &TakeOver, {}},
};

constexpr GroundState IfrStates[] = {
    {Phase::None, &OfferTaxiIfr, IfrRequestChoices},
    {Phase::AcknowledgeTaxiToRunway, nullptr, ToRunwayChoices},
    {Phase::AcknowledgeHoldPosition, &RepeatHold, ToHoldChoices},
    {Phase::HoldPosition, &KeepHolding, HoldingChoices},
    {Phase::TaxiingToRunway, &KeepTuneTower, TaxiingToRunwayChoices},
    {Phase::ContactGround, &TakeOver, {}},
};

void TakeStateTurn(Station& station, PlayerRecord& pilot, const ParkingOffer& offer,
                   std::span<const GroundState> states) {
    const auto state = std::find_if(states.begin(), states.end(),
                                    [&](const GroundState& s) { return s.Phase == pilot.Phase; });
    if (state == states.end()) return;
    if (pilot.Choice != 0) {
        ActOnChoice(station, pilot, state->Choices);
    } else if (state->Wait != nullptr) {
        state->Wait(station, pilot, offer);
    }
}

// ---- In the air

/// A VFR pilot keeps the service and is back at the frequency menu. An IFR pilot is told nothing.
void LeaveGround(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules == Vfr) {
        AnswerAndGoTo(station, pilot, NotClearedForTakeoffText, Phase::None);
        pilot.TunedFrequency.clear();
        RemoveTaxiRoutesOf(station, pilot);
    } else if (pilot.FlightRules == Ifr) {
        ResetPilot(station, pilot);
    }
}

}  // namespace

void GroundControl(Station& station, PlayerRecord& pilot) {
    const bool runwayOccupied = FindRunwayOccupied(station, pilot);
    const ParkingOffer offer = UpdateParkingAvailability(station);
    if (station.TaxiRouteCount() > 0) {
        SeparateTaxiRoutes(station, runwayOccupied);
        AdvanceTaxiRoutes(station);
    }
    TakeGroundTurn(station, pilot, offer);
}

/// At exactly 300 ft above the runway a pilot is neither served nor sent away.
void TakeGroundTurn(Station& station, PlayerRecord& pilot, const ParkingOffer& offer) {
    const std::int64_t aboveRunway = std::int64_t{pilot.Altitude} - station.RunwayElevation;
    if (aboveRunway > 300) {
        LeaveGround(station, pilot);
    } else if (aboveRunway < 300 && pilot.FlightRules == Vfr) {
        TakeStateTurn(station, pilot, offer, VfrStates);
    } else if (aboveRunway < 300 && pilot.FlightRules == Ifr) {
        TakeStateTurn(station, pilot, offer, IfrStates);
    }
}

}  // namespace corvenna
