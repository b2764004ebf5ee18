#include <algorithm>

#include "airspace/tower_phases.h"
#include "airspace/tower_states.h"
#include "station/geometry.h"
#include "station/runway_scan.h"

namespace corvenna {

namespace {

using namespace TowerShared;

// ---- Texts

constexpr std::string_view OfferLandingOrApproach =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Request Full Stop Landing 2-Tune Approach Frequency 3-Close ATC Services";
constexpr std::string_view OfferLandingOrArtcc =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Request Full Stop Landing 2-Tune ARTCC Frequency 3-Close ATC Services";
constexpr std::string_view OnArtcc =
    "{callsign}. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";

constexpr std::string_view EnterLeftDownwind =
    "{callsign}, {airport} Tower, Enter left downwind runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view EnterRightDownwind =
    "{callsign}, {airport} Tower, Enter right downwind runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view FlyOnBase =
    "{callsign}, {airport} Tower, Fly on base to runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view FlyStraightIn =
    "{callsign}, {airport} Tower, Fly straight in runway {runway}. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";

constexpr std::string_view OfferCancel =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Cancel Landing 2-Close ATC Services";
constexpr std::string_view NotClearedToLand =
    "{callsign}, You were not cleared for land. Tower Services terminated.";
constexpr std::string_view NotClearedToLandIfr =
    "{callsign}, You were not cleared for land. Canceling IFR and turning to VFR. "
    "Tower Services terminated.";

constexpr std::string_view ClearedToLand =
    "{callsign}, You are cleared to land on runway {runway}. Number {number} for landing. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view OfferCancelOrGoAround =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Cancel Landing 2-Report Go Around 3-Close ATC Services";
constexpr std::string_view OfferMissedApproach =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Declare Missed Approach 2-Close ATC Services";

constexpr std::string_view CancelReceived =
    "{callsign}, Roger landing cancel received. "
    "Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr std::string_view GoAroundReceived =
    "{callsign}, Roger. "
    "Choose one of the following options for the Tower frequency: 1-Cancel Landing 2-Close ATC Services";
constexpr std::string_view MissedContactApproach =
    "{callsign}, Roger. Contact Approach on {approach}. Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view MissedContactArtcc =
    "{callsign}, Roger. Contact ARTCC ({artcc}). Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";

constexpr std::string_view GoAround =
    "{callsign}, Go around. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view GoAroundContactApproach =
    "{callsign}, Go around. Contact Approach on {approach}. Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view GoAroundContactArtcc =
    "{callsign}, Go around. Contact ARTCC ({artcc}). Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";

constexpr std::string_view ExitRunway =
    "{callsign}, Exit runway when able. "
    "Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr std::string_view ContactGround =
    "{callsign}, Contact Ground on {ground}. Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneGround =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune {airport} Ground Frequency 2-Close ATC Services";

constexpr std::string_view ContactApproach =
    "{callsign}, Contact Approach on {approach}. Good day. "
    "Choose one of the following options for the Tower frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneApproach =
    "{callsign}. Choose one of the following options for the Tower frequency: "
    "1-Tune Approach Frequency 2-Close ATC Services";

constexpr std::string_view TuneApproachLabel = "-Tune Approach Frequency";
constexpr std::string_view CancelLandingLabel = "-Cancel Landing";

// ---- The pattern entry, chosen by the quadrant alone

struct PatternEntry {
    std::string_view Quadrant;
    std::string_view Text;
};

constexpr PatternEntry PatternEntries[] = {
    {"north", EnterLeftDownwind},      {"northwest", EnterLeftDownwind}, {"west", EnterLeftDownwind},
    {"northeast", EnterRightDownwind}, {"east", EnterRightDownwind},     {"southeast", FlyOnBase},
    {"southwest", FlyOnBase},          {"south", FlyStraightIn},
};

/// In no quadrant the request waits.
void EnterPattern(Station& station, PlayerRecord& pilot) {
    const auto* const entry =
        std::find_if(std::begin(PatternEntries), std::end(PatternEntries),
                     [&](const PatternEntry& e) { return e.Quadrant == pilot.Quadrant; });
    if (entry == std::end(PatternEntries)) return;
    TowerAnswer(station, pilot, entry->Text, Phase::AcknowledgeEnterPattern);
}

// ---- The landing gate: clearance on the last 8 nm of the final approach, whoever else is about

constexpr std::int16_t GateDistance = 9;

void TryLandingGate(Station& station, PlayerRecord& pilot) {
    if (pilot.Quadrant != "south" || station.DistanceToRunway >= GateDistance) return;
    AddToLandingQueue(station, pilot);
    Answer(station, pilot, ClearedToLand, fmt::arg("number", station.LandingQueueCount()));
    pilot.Phase = Phase::AcknowledgeLanding;
}

/// Somebody who comes down without a clearance loses the service; the gate then clears him all the same,
/// if he is in it. He is left on no frequency, with a clearance.
void TerminateThenTryGate(Station& station, PlayerRecord& pilot, std::string_view text) {
    if (IsBelow(station, pilot)) Terminate(station, pilot, text);
    TryLandingGate(station, pilot);
}

// ---- Go-around and rollout

constexpr std::int16_t GoAroundDistance = 2;
constexpr std::int16_t RunwayTrackHalfWidth = 10;  // degrees of heading, as long as he follows the runway

/// Wherever they are: of two who land, the one who comes near first goes around.
bool SomebodyLandsOrTakesOff(const Station& station, const PlayerRecord& pilot) {
    const auto players = station.Players.Valid();
    return std::any_of(players.begin(), players.end(), [&](const PlayerRecord& other) {
        return (other.Phase == Phase::Landing || other.Phase == Phase::TakingOff) && other.Name != pilot.Name;
    });
}

void CommandGoAround(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules == Vfr) {
        TowerAnswer(station, pilot, GoAround, Phase::AcknowledgeGoingAround);
    } else if (station.ApproachFrequency.empty()) {
        TowerAnswer(station, pilot, GoAroundContactArtcc, Phase::AcknowledgeContactArtccGoAround);
    } else {
        TowerAnswer(station, pilot, GoAroundContactApproach, Phase::AcknowledgeContactApproach);
    }
    RemoveFromLandingQueue(station, pilot);
}

void WatchLanding(Station& station, PlayerRecord& pilot) {
    if (station.DistanceToRunway < GoAroundDistance &&
        (SomebodyLandsOrTakesOff(station, pilot) || ComputeRunwayOccupied(station, pilot))) {
        CommandGoAround(station, pilot);
        return;
    }
    if (IsHigh(station, pilot)) return;
    if (HeadingWithin(pilot.Heading, station.SectorNorth, RunwayTrackHalfWidth)) {
        TowerSay(station, pilot, ExitRunway);
    } else {
        TowerAnswer(station, pilot, ContactGround, Phase::AcknowledgeContactGround);
        RemoveFromLandingQueue(station, pilot);
    }
}

// ---- VFR, in no state

void TuneToApproach(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, OnApproach, station.ApproachFrequency);
}

void TuneToArtcc(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, OnArtcc, station.ArtccFrequency);
}

/// At exactly 300 ft the text stays as it is.
void WatchVfr(Station& station, PlayerRecord& pilot) {
    if (IsHigh(station, pilot)) {
        TowerSay(station, pilot,
                 station.ApproachFrequency.empty() ? OfferLandingOrArtcc : OfferLandingOrApproach);
    } else if (IsBelow(station, pilot)) {
        Terminate(station, pilot, NoText);
    }
}

constexpr MenuRow VfrChoices[] = {
    {"-Request Full Stop Landing", &EnterPattern},
    {TuneApproachLabel, &TuneToApproach},
    {TuneArtccLabel, &TuneToArtcc},
};

// ---- VFR, in the pattern

void AcknowledgePattern(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OfferCancel, Phase::FlyingPattern);
}

/// Also from states in which he is in no queue: the removal then costs the head of the queue his place.
void CancelLanding(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, CancelReceived);
    RemoveFromLandingQueue(station, pilot);
    pilot.Phase = Phase::None;
}

void WatchPatternAcknowledge(Station& station, PlayerRecord& pilot) {
    if (IsBelow(station, pilot)) Terminate(station, pilot, NotClearedToLand);
}

void WatchPattern(Station& station, PlayerRecord& pilot) {
    TowerSay(station, pilot, OfferCancel);
    TerminateThenTryGate(station, pilot, NotClearedToLand);
}

constexpr MenuRow PatternAcknowledgeChoices[] = {{AcknowledgeLabel, &AcknowledgePattern}};
constexpr MenuRow CancelChoices[] = {{CancelLandingLabel, &CancelLanding}};

// ---- VFR, landing

void KeepText(Station& /*station*/, PlayerRecord& /*pilot*/) {}

void AcknowledgeVfrLanding(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OfferCancelOrGoAround, Phase::Landing);
}

void ReportGoAround(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, GoAroundReceived);
    RemoveFromLandingQueue(station, pilot);
    pilot.Phase = Phase::GoingAround;
}

void AcknowledgeGoAround(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OfferCancel, Phase::GoingAround);
}

constexpr MenuRow VfrLandingAcknowledgeChoices[] = {{AcknowledgeLabel, &AcknowledgeVfrLanding}};
constexpr MenuRow VfrLandingChoices[] = {
    {CancelLandingLabel, &CancelLanding},
    {"-Report Go Around", &ReportGoAround},
};
constexpr MenuRow GoAroundAcknowledgeChoices[] = {{AcknowledgeLabel, &AcknowledgeGoAround}};

// ---- IFR, landing

void WatchIfrFinal(Station& station, PlayerRecord& pilot) {
    TowerSay(station, pilot, OnTower);
    TerminateThenTryGate(station, pilot, NotClearedToLandIfr);
}

void AcknowledgeIfrLanding(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, OfferMissedApproach, Phase::Landing);
}

void DeclareMissedApproach(Station& station, PlayerRecord& pilot) {
    const bool byArtcc = station.ApproachFrequency.empty();
    TowerAnswer(station, pilot, byArtcc ? MissedContactArtcc : MissedContactApproach);
    RemoveFromLandingQueue(station, pilot);
    pilot.Phase = byArtcc ? Phase::AcknowledgeContactArtccGoAround : Phase::AcknowledgeContactApproach;
}

constexpr MenuRow IfrLandingAcknowledgeChoices[] = {{AcknowledgeLabel, &AcknowledgeIfrLanding}};
constexpr MenuRow IfrLandingChoices[] = {{"-Declare Missed Approach", &DeclareMissedApproach}};

// ---- IFR, hand-over of a missed approach

void AcknowledgeApproach(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, TuneApproach, Phase::ContactApproach);
}

void AcknowledgeArtcc(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, TuneArtcc, Phase::ContactArtccGoAround);
}

void TuneToArtccAfterMiss(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, NoText, station.ArtccFrequency);
    pilot.Phase = Phase::MissedApproach;
}

/// Repeats a text until the pilot answers it, or comes down.
void WatchMissed(Station& station, PlayerRecord& pilot, std::string_view text) {
    if (IsBelow(station, pilot)) {
        Terminate(station, pilot, NotClearedToLandIfr);
    } else {
        TowerSay(station, pilot, text);
    }
}

void WatchContactApproach(Station& station, PlayerRecord& p) { WatchMissed(station, p, ContactApproach); }
void WatchTuneApproach(Station& station, PlayerRecord& p) { WatchMissed(station, p, TuneApproach); }
void WatchContactArtcc(Station& station, PlayerRecord& p) { WatchMissed(station, p, ContactArtcc); }
void WatchTuneArtcc(Station& station, PlayerRecord& p) { WatchMissed(station, p, TuneArtcc); }

constexpr MenuRow ContactApproachChoices[] = {{AcknowledgeLabel, &AcknowledgeApproach}};
constexpr MenuRow TuneApproachChoices[] = {{TuneApproachLabel, &TuneToApproach}};
constexpr MenuRow ContactArtccChoices[] = {{AcknowledgeLabel, &AcknowledgeArtcc}};
constexpr MenuRow TuneArtccChoices[] = {{TuneArtccLabel, &TuneToArtccAfterMiss}};

// ---- Hand-over to Ground

void AcknowledgeGround(Station& station, PlayerRecord& pilot) {
    TowerAnswer(station, pilot, TuneGround, Phase::ContactGround);
}

/// Somebody in the air again is told off in the words for a takeoff.
void WatchGround(Station& station, PlayerRecord& pilot, std::string_view text) {
    if (IsHigh(station, pilot)) {
        TerminateForTakeoff(station, pilot);
    } else {
        TowerSay(station, pilot, text);
    }
}

void WatchContactGround(Station& station, PlayerRecord& p) { WatchGround(station, p, ContactGround); }
void WatchTuneGround(Station& station, PlayerRecord& p) { WatchGround(station, p, TuneGround); }

constexpr MenuRow ContactGroundChoices[] = {{AcknowledgeLabel, &AcknowledgeGround}};
constexpr MenuRow TuneGroundChoices[] = {{TuneGroundLabel, &TuneToGround}};

// ---- The states

constexpr TowerState States[] = {
    {Rules::VfrOnly, Phase::None, VfrChoices, &WatchVfr},
    {Rules::VfrOnly, Phase::AcknowledgeEnterPattern, PatternAcknowledgeChoices, &WatchPatternAcknowledge},
    {Rules::VfrOnly, Phase::FlyingPattern, CancelChoices, &WatchPattern},
    {Rules::VfrOnly, Phase::AcknowledgeLanding, VfrLandingAcknowledgeChoices, &KeepText},
    {Rules::VfrOnly, Phase::Landing, VfrLandingChoices, &WatchLanding},
    {Rules::VfrOnly, Phase::AcknowledgeGoingAround, GoAroundAcknowledgeChoices, &KeepText},
    {Rules::VfrOnly, Phase::GoingAround, CancelChoices, &TryLandingGate},

    {Rules::IfrOnly, Phase::Approach, {}, &WatchIfrFinal},
    {Rules::IfrOnly, Phase::AcknowledgeLanding, IfrLandingAcknowledgeChoices, &KeepText},
    {Rules::IfrOnly, Phase::Landing, IfrLandingChoices, &WatchLanding},
    {Rules::IfrOnly, Phase::AcknowledgeContactApproach, ContactApproachChoices, &WatchContactApproach},
    {Rules::IfrOnly, Phase::ContactApproach, TuneApproachChoices, &WatchTuneApproach},
    {Rules::IfrOnly, Phase::AcknowledgeContactArtccGoAround, ContactArtccChoices, &WatchContactArtcc},
    {Rules::IfrOnly, Phase::ContactArtccGoAround, TuneArtccChoices, &WatchTuneArtcc},

    {Rules::Either, Phase::AcknowledgeContactGround, ContactGroundChoices, &WatchContactGround},
    {Rules::Either, Phase::ContactGround, TuneGroundChoices, &WatchTuneGround},
};

}  // namespace

std::span<const TowerState> TowerArrivalStates() { return States; }

}  // namespace corvenna
