#include "airspace/approach_control.h"

#include "airspace/approach_service.h"
#include "airspace/departure_service.h"
#include "airspace/radar_phases.h"
#include "airspace/radar_state.h"
#include "airspace/traffic.h"
#include "airspace/vectors.h"
#include "station/text.h"

namespace corvenna {

namespace {

/// Between 300 and 10000 ft above the runway and within 20 miles, all limits outside.
bool IsInAirspace(const Station& station, const PlayerRecord& pilot) {
    const std::int64_t feet = FeetAboveRunway(station, pilot);
    return feet > 300 && feet < 10000 && station.DistanceToAirport < 20;
}

/// Phases of an IFR pilot who is passed to ARTCC when he leaves the airspace, and what he is there.
struct PassOn {
    std::string_view Phase;
    std::string_view Next;
};

constexpr PassOn PassesToArtcc[] = {
    {RadarPhase::Departure, RadarPhase::EnRoute},
    {RadarPhase::AcknowledgeContactArtccEnRoute, RadarPhase::EnRoute},
    {RadarPhase::ContactArtccEnRoute, RadarPhase::EnRoute},
    {RadarPhase::Approach, RadarPhase::Approach},
    {RadarPhase::AcknowledgeContactArtccApproach, RadarPhase::Approach},
    {RadarPhase::ContactArtccApproach, RadarPhase::Approach},
    {RadarPhase::MissedApproach, RadarPhase::MissedApproach},
    {RadarPhase::AcknowledgeContactArtccMissedApproach, RadarPhase::MissedApproach},
    {RadarPhase::ContactArtccMissedApproach, RadarPhase::MissedApproach},
};

void ForgetText(PlayerRecord& pilot) {
    pilot.MenuText.clear();
    pilot.Choice = 0;
    Wipe(pilot);
}

void LeaveVfr(PlayerRecord& pilot) {
    ForgetText(pilot);
    pilot.FlightRules = Vfr;
    pilot.TunedFrequency.clear();
    pilot.Phase = RadarPhase::None;
}

/// A pilot with a state worth keeping goes to ARTCC without a word, one on his way to or from the Tower's
/// contact stays as he is, and all others are let go.
void LeaveIfr(Station& station, PlayerRecord& pilot) {
    const bool vectored = pilot.Phase == RadarPhase::Approach || pilot.Phase == RadarPhase::MissedApproach ||
                          pilot.Phase == RadarPhase::Departure;
    if (!vectored && !ContainsIgnoringCase(pilot.Phase, "contact")) {
        ResetPilot(station, pilot);
        return;
    }
    if (ContainsIgnoringCase(pilot.Phase, "tower")) {
        ResetPilot(station, pilot);
        return;
    }
    for (const PassOn& pass : PassesToArtcc) {
        if (pilot.Phase != pass.Phase) continue;
        ForgetText(pilot);
        pilot.Phase = pass.Next;
        pilot.TunedFrequency = station.ArtccFrequency;
        return;
    }
}

void LeaveAirspace(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules == Vfr) {
        LeaveVfr(pilot);
    } else if (pilot.FlightRules == Ifr) {
        LeaveIfr(station, pilot);
    }
}

}  // namespace

void ApproachControl(Station& station, PlayerRecord& pilot) {
    if (!IsInAirspace(station, pilot)) {
        LeaveAirspace(station, pilot);
        return;
    }
    const bool departing = pilot.Phase == RadarPhase::Departure;
    ScanTraffic(station, pilot, departing ? ServiceWord::Departure : ServiceWord::Approach);
    SteerToTarget(station, pilot, ServiceWord::Approach);
    if (pilot.FlightRules == Vfr) {
        RunVfrApproach(station, pilot);
    } else if (pilot.FlightRules == Ifr) {
        if (!RunDeparture(station, pilot)) RunApproach(station, pilot);
    }
}

}  // namespace corvenna
