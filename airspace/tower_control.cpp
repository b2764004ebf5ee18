#include "airspace/tower_control.h"

#include <algorithm>

#include "airspace/tower_phases.h"
#include "airspace/tower_states.h"
#include "station/text.h"

namespace corvenna {

namespace {

using namespace TowerShared;

/// Nautical miles from the airport. At the limit itself nothing is done for a pilot at all.
constexpr std::int16_t TowerRange = 15;

// ---- Beyond the range

/// An IFR pilot who was told to change, or was about to be, and has flown out of range meanwhile.
struct Departed {
    std::string_view Phase;
    std::string_view Text;
    std::string_view NextPhase;
    std::string Station::*Frequency;
};

constexpr Departed DepartedRows[] = {
    {Phase::AcknowledgeContactDeparture, OnDeparture, Phase::ContactDeparture, &Station::ApproachFrequency},
    {Phase::ContactDeparture, OnDeparture, Phase::ContactDeparture, &Station::ApproachFrequency},
    {Phase::AcknowledgeContactArtccDeparture, NoText, Phase::Departure, &Station::ArtccFrequency},
    {Phase::ContactArtccDeparture, NoText, Phase::Departure, &Station::ArtccFrequency},
    {Phase::AcknowledgeContactApproach, OnApproach, Phase::ContactApproach, &Station::ApproachFrequency},
    {Phase::ContactApproach, OnApproach, Phase::ContactApproach, &Station::ApproachFrequency},
    {Phase::AcknowledgeContactArtccGoAround, NoText, Phase::MissedApproach, &Station::ArtccFrequency},
    {Phase::ContactArtccGoAround, NoText, Phase::MissedApproach, &Station::ArtccFrequency},
};

bool IsKeptBeyondRange(const PlayerRecord& pilot) {
    if (ContainsIgnoringCase(pilot.Phase, "ground")) return false;
    return pilot.Phase == Phase::Landing || pilot.Phase == Phase::TakingOff ||
           ContainsIgnoringCase(pilot.Phase, "contact");
}

/// "Landing" and "Takingoff" are kept and find no row: such a pilot stays as he is, on the Tower frequency.
void PassOnIfr(Station& station, PlayerRecord& pilot) {
    if (!IsKeptBeyondRange(pilot)) {
        ResetPilot(station, pilot);
        return;
    }
    const auto* const row = std::find_if(std::begin(DepartedRows), std::end(DepartedRows),
                                         [&](const Departed& r) { return r.Phase == pilot.Phase; });
    if (row == std::end(DepartedRows)) return;
    Tune(station, pilot, row->Text, station.*row->Frequency);
    pilot.Phase = row->NextPhase;
}

void LeaveRange(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules == Vfr) {
        Terminate(station, pilot, NoText);
    } else {
        PassOnIfr(station, pilot);
    }
}

// ---- Within the range

bool Concerns(Rules rules, const PlayerRecord& pilot) {
    return rules == Rules::Either || rules == (pilot.FlightRules == Vfr ? Rules::VfrOnly : Rules::IfrOnly);
}

/// The pilot's state among these, or nullptr.
const TowerState* FindState(std::span<const TowerState> states, const PlayerRecord& pilot) {
    const auto state = std::find_if(states.begin(), states.end(), [&](const TowerState& s) {
        return s.Phase == pilot.Phase && Concerns(s.For, pilot);
    });
    return state == states.end() ? nullptr : &*state;
}

void TakeTurn(Station& station, PlayerRecord& pilot) {
    const TowerState* state = FindState(TowerDepartureStates(), pilot);
    if (state == nullptr) state = FindState(TowerArrivalStates(), pilot);
    if (state == nullptr) return;

    if (pilot.Choice == 0) {
        state->Watch(station, pilot);
    } else {
        ActOnChoice(station, pilot, state->Choices);
        if (ChoiceIs(station, pilot, CloseLabel)) ResetPilot(station, pilot);
    }
}

}  // namespace

void TowerControl(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules > Ifr) return;
    if (station.DistanceToAirport < TowerRange) {
        TakeTurn(station, pilot);
    } else if (station.DistanceToAirport > TowerRange) {
        LeaveRange(station, pilot);
    }
}

}  // namespace corvenna
