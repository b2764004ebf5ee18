#include "airspace/approach_service.h"

#include "airspace/fixes.h"
#include "airspace/radar_phases.h"
#include "airspace/radar_state.h"
#include "airspace/radar_texts.h"
#include "station/geometry.h"

namespace corvenna {

namespace {

constexpr std::string_view ContactArtcc =
    "{callsign}, Contact ARTCC ({artcc}). "
    "Choose one of the following options for the Approach frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneArtccMenu =
    "{callsign}. Choose one of the following options for the Approach frequency: "
    "1-Tune ARTCC Frequency 2-Close ATC Services";

/// Within 15 miles a pilot whom the Tower sent back has missed his approach; further out he is an arrival.
bool IsFarOut(Station& station, const PlayerRecord& /*pilot*/) { return station.DistanceToAirport >= 15; }
bool IsCloseIn(Station& station, const PlayerRecord& /*pilot*/) { return station.DistanceToAirport < 15; }

/// A mountain that forces the pilot above this airspace, or a fix beside it, sends him to ARTCC.
void LimitCheck(Station& station, PlayerRecord& pilot, std::string_view nextPhase) {
    if (pilot.Target.Name.empty()) return;
    const auto distance = DistanceNm(pilot.Target.Latitude, pilot.Target.Longitude, station.AirportLatitude,
                                     station.AirportLongitude);
    const bool tooHigh = WholeNumber(pilot.AssignedAltitude) > std::int64_t{station.RunwayElevation} + 10000;
    if (!tooHigh && distance <= 20) return;
    RadarAnswer(station, pilot, ServiceWord::Approach, ContactArtcc);
    Wipe(pilot);
    pilot.Phase = nextPhase;
}

void StepApproach(Station& station, PlayerRecord& pilot) {
    if (station.DistanceToAirport < 20) {
        BuildPatternFixes(station, pilot, ServiceWord::Approach);
        if (pilot.Quadrant == Side::South && station.DistanceToAirport < 15) {
            ClearForApproach(station, pilot, ServiceWord::Approach);
        }
    }
    LimitCheck(station, pilot, RadarPhase::AcknowledgeContactArtccApproach);
}

/// The fix of a missed approach lies 30 miles out, so that as a rule ARTCC has to fly it.
void StepMissedApproach(Station& station, PlayerRecord& pilot) {
    BuildMissedApproachFixes(station, pilot, ServiceWord::Approach);
    if (station.DistanceToAirport > 30) {
        DropTarget(pilot);
        pilot.Phase = RadarPhase::Approach;
    }
    LimitCheck(station, pilot, RadarPhase::AcknowledgeContactArtccMissedApproach);
}

void RepeatApproachClearance(Station& station, PlayerRecord& pilot) {
    RepeatClearance(station, pilot, ServiceWord::Approach);
}

constexpr StateRow ApproachStates[] = {
    // As from the Tower's departures, a waiting digit is swallowed.
    {.Phase = RadarPhase::ContactApproach,
     .Input = StateRow::EveryCall,
     .When = &IsFarOut,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::ContactApproach,
     .Input = StateRow::EveryCall,
     .When = &IsCloseIn,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::MissedApproach},

    {.Phase = RadarPhase::Approach, .Input = RadarLabel::Acknowledge},
    {.Phase = RadarPhase::Approach, .Input = RadarLabel::TrafficInSight},
    {.Phase = RadarPhase::Approach, .Input = RadarLabel::TrafficNotInSight},
    {.Phase = RadarPhase::Approach, .Input = StateRow::NoChoice, .Act = &StepApproach},

    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::Acknowledge},
    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::TrafficInSight},
    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::TrafficNotInSight},
    {.Phase = RadarPhase::MissedApproach, .Input = StateRow::NoChoice, .Act = &StepMissedApproach},

    {.Phase = RadarPhase::AcknowledgeContactArtccApproach,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneArtccMenu,
     .Next = RadarPhase::ContactArtccApproach},
    {.Phase = RadarPhase::AcknowledgeContactArtccApproach, .Input = StateRow::NoChoice, .Text = ContactArtcc},
    {.Phase = RadarPhase::ContactArtccApproach,
     .Input = RadarLabel::TuneArtcc,
     .Text = "",
     .Forgets = Forget::Everything,
     .Tunes = &Station::ArtccFrequency,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::ContactArtccApproach, .Input = StateRow::NoChoice, .Text = TuneArtccMenu},

    {.Phase = RadarPhase::AcknowledgeContactArtccMissedApproach,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneArtccMenu,
     .Next = RadarPhase::ContactArtccMissedApproach},
    {.Phase = RadarPhase::AcknowledgeContactArtccMissedApproach,
     .Input = StateRow::NoChoice,
     .Text = ContactArtcc},
    {.Phase = RadarPhase::ContactArtccMissedApproach,
     .Input = RadarLabel::TuneArtcc,
     .Text = "",
     .Forgets = Forget::Everything,
     .Tunes = &Station::ArtccFrequency,
     .Next = RadarPhase::MissedApproach},
    {.Phase = RadarPhase::ContactArtccMissedApproach, .Input = StateRow::NoChoice, .Text = TuneArtccMenu},

    {.Phase = RadarPhase::AcknowledgeContactTower,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneTowerMenu,
     .Next = RadarPhase::ContactTower},
    {.Phase = RadarPhase::AcknowledgeContactTower,
     .Input = StateRow::NoChoice,
     .Act = &RepeatApproachClearance},
    {.Phase = RadarPhase::ContactTower,
     .Input = RadarLabel::TuneTower,
     .Text = TowerMenu,
     .Forgets = Forget::Everything,
     .Tunes = &Station::TowerFrequency,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::ContactTower, .Input = StateRow::NoChoice, .Text = TuneTowerMenu},
};

/// The wording for the runway's landing aid; nothing for a runway whose aid is not told.
std::string_view ClearanceText(const Station& station) {
    if (station.RunwayHasIls == -1) return ClearedIls;
    if (station.RunwayHasIls == 0) return ClearedVisual;
    return {};
}

}  // namespace

bool RunApproach(Station& station, PlayerRecord& pilot) {
    return RunStates(station, pilot, ServiceWord::Approach, ApproachStates);
}

void ClearForApproach(Station& station, PlayerRecord& pilot, std::string_view service) {
    if (ClearanceText(station).empty()) return;
    RepeatClearance(station, pilot, service);
    pilot.Phase = RadarPhase::AcknowledgeContactTower;
}

void RepeatClearance(Station& station, PlayerRecord& pilot, std::string_view service) {
    const std::string_view text = ClearanceText(station);
    if (text.empty()) return;
    RadarAnswer(station, pilot, service, text);
    DropTarget(pilot);
}

}  // namespace corvenna
