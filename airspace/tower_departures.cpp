#include "airspace/tower_phases.h"
#include "airspace/tower_states.h"
#include "station/runway_scan.h"

namespace corvenna {

namespace {

using namespace TowerShared;

// ---- Texts

constexpr std::string_view OfferVfrTakeoff =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune {airport} Ground Frequency 2-Request VFR Takeoff Clearance 3-Close ATC Services";
constexpr std::string_view OfferIfrTakeoff =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune {airport} Ground Frequency 2-Request IFR Takeoff Clearance 3-Close ATC Services";
constexpr std::string_view ClearedForTakeoff =
    "{callsign}, {airport} Tower, Cleared for takeoff on runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view HoldShort =
    "{callsign}, {airport} Tower, Hold short on runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view ContactDeparture =
    "{callsign}, Contact Departure on {approach}. Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneDeparture =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune Departure Frequency 2-Close ATC Services";

// ---- Taxiing to runway

void ClearForTakeoff(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, ClearedForTakeoff, Phase::AcknowledgeTakeoff);
}

/// The pilot enters the queue whether he is cleared or not, and keeps his place until he is through 300 ft.
void DecideTakeoff(Station& station, PlayerRecord& pilot) {
    const bool queuesEmpty = station.TakeoffQueue[0].empty() && station.LandingQueue[0].empty();
    AddToTakeoffQueue(station, pilot);
    if (queuesEmpty && !ComputeRunwayOccupied(station, pilot)) {
        ClearForTakeoff(station, pilot);
    } else {
        TowerAnswer(station, pilot, HoldShort, Phase::AcknowledgeHoldShort);
    }
}

void WatchTaxiing(Station& station, PlayerRecord& pilot) {
    if (IsHigh(station, pilot)) {
        TerminateForTakeoff(station, pilot);  // he is in no queue
    } else {
        TowerSay(station, pilot, pilot.FlightRules == Vfr ? OfferVfrTakeoff : OfferIfrTakeoff);
    }
}

constexpr MenuRow VfrTaxiingChoices[] = {
    {TuneGroundLabel, &TuneToGround},
    {"-Request VFR Takeoff Clearance", &DecideTakeoff},
};
constexpr MenuRow IfrTaxiingChoices[] = {
    {TuneGroundLabel, &TuneToGround},
    {"-Request IFR Takeoff Clearance", &DecideTakeoff},
};

// ---- Hold short

void AcknowledgeHold(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OnTower, Phase::HoldingShort);
}

void TerminateQueued(Station& station, PlayerRecord& pilot) {
    TerminateForTakeoff(station, pilot);
    RemoveFromTakeoffQueue(station, pilot);
}

void WatchHoldRepeated(Station& station, PlayerRecord& pilot) {
    if (IsHigh(station, pilot)) {
        TerminateQueued(station, pilot);
    } else {
        TowerSay(station, pilot, HoldShort);
    }
}

/// The release is tried even for a pilot who has just been terminated.
void WatchHolding(Station& station, PlayerRecord& pilot) {
    TowerSay(station, pilot, OnTower);
    if (IsHigh(station, pilot)) TerminateQueued(station, pilot);
    if (station.TakeoffQueue[0] == pilot.Name && station.LandingQueue[0].empty() &&
        !ComputeRunwayOccupied(station, pilot)) {
        ClearForTakeoff(station, pilot);
    }
}

constexpr MenuRow HoldRepeatedChoices[] = {{AcknowledgeLabel, &AcknowledgeHold}};

// ---- Takeoff

void AcknowledgeClearance(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OnTower, Phase::TakingOff);
}

/// Without a look at the altitude: who never acknowledges stays here and keeps the head of the queue.
void WatchCleared(Station& station, PlayerRecord& pilot) { TowerSay(station, pilot, ClearedForTakeoff); }

void WatchVfrTakeoff(Station& station, PlayerRecord& pilot) {
    TowerSay(station, pilot, OnTower);
    if (IsLow(station, pilot)) return;
    RemoveFromTakeoffQueue(station, pilot);
    pilot.Phase = Phase::None;  // he goes on as a VFR aircraft of the Tower
}

void WatchIfrTakeoff(Station& station, PlayerRecord& pilot) {
    if (IsLow(station, pilot)) {
        TowerSay(station, pilot, OnTower);
        return;
    }
    const bool byArtcc = station.ApproachFrequency.empty();
    TowerSay(station, pilot, byArtcc ? ContactArtcc : ContactDeparture);
    RemoveFromTakeoffQueue(station, pilot);
    pilot.Phase = byArtcc ? Phase::AcknowledgeContactArtccDeparture : Phase::AcknowledgeContactDeparture;
}

constexpr MenuRow ClearedChoices[] = {{AcknowledgeLabel, &AcknowledgeClearance}};

// ---- Hand-over to Departure, on the Approach frequency

void AcknowledgeDeparture(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, TuneDeparture, Phase::ContactDeparture);
}

void TuneToDeparture(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, OnDeparture, station.ApproachFrequency);
}

void WatchContactDeparture(Station& station, PlayerRecord& pilot) {
    TowerSay(station, pilot, ContactDeparture);
}
void WatchTuneDeparture(Station& station, PlayerRecord& pilot) { TowerSay(station, pilot, TuneDeparture); }

constexpr MenuRow ContactDepartureChoices[] = {{AcknowledgeLabel, &AcknowledgeDeparture}};
constexpr MenuRow TuneDepartureChoices[] = {{"-Tune Departure Frequency", &TuneToDeparture}};

// ---- Hand-over to ARTCC

void AcknowledgeArtcc(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, TuneArtcc, Phase::ContactArtccDeparture);
}

void TuneToArtcc(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, NoText, station.ArtccFrequency);
    pilot.Phase = Phase::Departure;
}

void WatchContactArtcc(Station& station, PlayerRecord& pilot) { TowerSay(station, pilot, ContactArtcc); }
void WatchTuneArtcc(Station& station, PlayerRecord& pilot) { TowerSay(station, pilot, TuneArtcc); }

constexpr MenuRow ContactArtccChoices[] = {{AcknowledgeLabel, &AcknowledgeArtcc}};
constexpr MenuRow TuneArtccChoices[] = {{TuneArtccLabel, &TuneToArtcc}};

// ---- The states

constexpr TowerState States[] = {
    {Rules::VfrOnly, Phase::TaxiingToRunway, VfrTaxiingChoices, &WatchTaxiing},
    {Rules::IfrOnly, Phase::TaxiingToRunway, IfrTaxiingChoices, &WatchTaxiing},
    {Rules::Either, Phase::AcknowledgeHoldShort, HoldRepeatedChoices, &WatchHoldRepeated},
    {Rules::Either, Phase::HoldingShort, {}, &WatchHolding},
    {Rules::Either, Phase::AcknowledgeTakeoff, ClearedChoices, &WatchCleared},
    {Rules::VfrOnly, Phase::TakingOff, {}, &WatchVfrTakeoff},
    {Rules::IfrOnly, Phase::TakingOff, {}, &WatchIfrTakeoff},
    {Rules::IfrOnly, Phase::AcknowledgeContactDeparture, ContactDepartureChoices, &WatchContactDeparture},
    {Rules::IfrOnly, Phase::ContactDeparture, TuneDepartureChoices, &WatchTuneDeparture},
    {Rules::IfrOnly, Phase::AcknowledgeContactArtccDeparture, ContactArtccChoices, &WatchContactArtcc},
    {Rules::IfrOnly, Phase::ContactArtccDeparture, TuneArtccChoices, &WatchTuneArtcc},
};

}  // namespace

std::span<const TowerState> TowerDepartureStates() { return States; }

}  // namespace corvenna
