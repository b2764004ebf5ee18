#include "airspace/artcc_service.h"

#include "airspace/approach_service.h"
#include "airspace/fixes.h"
#include "airspace/radar_phases.h"
#include "airspace/radar_state.h"
#include "airspace/radar_texts.h"
#include "airspace/vector_words.h"
#include "station/geometry.h"

namespace corvenna {

namespace {

constexpr std::string_view ArtccMenu =
    "{callsign}. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";
constexpr std::string_view ClimbToCruise =
    "{callsign}, Climb and maintain cruise altitude and assume own navigation. "
    "Choose one of the following options for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view MaintainCruise =
    "{callsign}, Maintain cruise altitude and assume own navigation. "
    "Choose one of the following options for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view ContactApproach =
    "{callsign}, Contact approach frequency on {approach}. "
    "Choose one of the following options for the ARTCC frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneApproachMenu =
    "{callsign}. Choose one of the following options for the ARTCC frequency: "
    "1-Tune Approach Frequency 2-Close ATC Services";

// ---- VFR

bool LeavesTower(Station& station, const PlayerRecord& pilot) {
    return station.DistanceToAirport > 15 &&
           (pilot.MenuText.empty() || MenuIs(station, pilot, ServiceWord::Artcc, TuneTowerMenu));
}

bool NearsTower(Station& station, const PlayerRecord& pilot) {
    return station.DistanceToAirport < 15 &&
           (pilot.MenuText.empty() || MenuIs(station, pilot, ServiceWord::Artcc, ArtccMenu));
}

/// A pilot near an airport with an Approach frequency is dropped to the frequency menu. The altitude looked
/// at is not his own but that of the first player of the list.
void PassOn(Station& station, PlayerRecord& pilot) {
    const std::int64_t feet = FeetAboveRunway(station, station.Players[0]);
    if (station.ApproachFrequency.empty() || feet <= 300 || feet >= 10000 ||
        station.DistanceToAirport >= 20) {
        return;
    }
    pilot.MenuText.clear();
    pilot.Choice = 0;
    pilot.FlightRules = Vfr;
    Wipe(pilot);
    pilot.TunedFrequency.clear();
    pilot.Phase = RadarPhase::None;
}

constexpr StateRow VfrStates[] = {
    {.Phase = RadarPhase::None,
     .Input = RadarLabel::TuneTower,
     .Text = TowerMenu,
     .Forgets = Forget::Everything,
     .Tunes = &Station::TowerFrequency,
     .Next = RadarPhase::None},
    {.Phase = RadarPhase::None, .Input = RadarLabel::TrafficInSight, .Text = ""},
    {.Phase = RadarPhase::None, .Input = RadarLabel::TrafficNotInSight, .Text = ""},
    {.Phase = RadarPhase::None,
     .Input = StateRow::NoChoice,
     .When = &LeavesTower,
     .Text = ArtccMenu,
     .Forgets = Forget::Vectors,
     .Act = &PassOn},
    {.Phase = RadarPhase::None,
     .Input = StateRow::NoChoice,
     .When = &NearsTower,
     .Text = TuneTowerMenu,
     .Forgets = Forget::Vectors,
     .Act = &PassOn},
    {.Phase = RadarPhase::None, .Input = StateRow::NoChoice, .Act = &PassOn},
};

// ---- IFR, the opening; not for a pilot at or below 300 ft above the runway

bool NotAskedYet(Station& station, const PlayerRecord& pilot) {
    return !MenuIs(station, pilot, ServiceWord::Artcc, AskDestination);
}

constexpr StateRow OpeningStates[] = {
    {.Phase = RadarPhase::None,
     .Input = RadarLabel::ThisAirport,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::Descent},
    {.Phase = RadarPhase::None,
     .Input = RadarLabel::AnotherAirport,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::EnRoute},
    {.Phase = RadarPhase::None,
     .Input = StateRow::NoChoice,
     .When = &NotAskedYet,
     .Text = AskDestination,
     .Forgets = Forget::Everything},
    {.Phase = RadarPhase::None, .Input = StateRow::NoChoice},
};

// ---- IFR

bool HasNoText(Station& /*station*/, const PlayerRecord& pilot) { return pilot.MenuText.empty(); }

/// One altitude for the whole descent, safe anywhere around the airport.
void StepDescent(Station& station, PlayerRecord& pilot) {
    if (pilot.AssignedAltitude.empty()) {
        AssignAltitude(pilot, station.HighestTerrain);
        pilot.MenuText.assign(pilot.Name).append(",");
        AddAltitudeWords(pilot.MenuText, pilot);
        AddVectorMenu(pilot.MenuText, ServiceWord::Artcc);
    }
    if (station.DistanceToAirport < 100) {
        pilot.MenuText.clear();
        pilot.Choice = 0;
        Wipe(pilot);
        pilot.Phase = RadarPhase::Approach;
    }
}

/// A pilot whose fix, altitude and position lie in the airspace of Approach is handed in. Whether there is
/// an Approach frequency at all is not looked at.
void HandInCheck(Station& station, PlayerRecord& pilot, std::string_view nextPhase) {
    if (pilot.Target.Name.empty()) return;
    const auto distance = DistanceNm(pilot.Target.Latitude, pilot.Target.Longitude, station.AirportLatitude,
                                     station.AirportLongitude);
    const std::int64_t feet = FeetAboveRunway(station, pilot);
    if (WholeNumber(pilot.AssignedAltitude) >= std::int64_t{station.RunwayElevation} + 10000) return;
    if (distance >= 20 || feet <= 300 || feet >= 10000 || station.DistanceToAirport >= 20) return;
    RadarAnswer(station, pilot, ServiceWord::Artcc, ContactApproach);
    Wipe(pilot);
    pilot.Phase = nextPhase;
}

void StepApproach(Station& station, PlayerRecord& pilot) {
    if (station.DistanceToAirport < 100) {
        BuildPatternFixes(station, pilot, ServiceWord::Artcc);
        if (pilot.Quadrant == Side::South && station.DistanceToAirport < 15) {
            ClearForApproach(station, pilot, ServiceWord::Artcc);
        }
    }
    HandInCheck(station, pilot, RadarPhase::AcknowledgeContactApproach);
}

/// Beyond 30 miles the fix is dropped in the very call that built it, and its text stands.
void StepMissedApproach(Station& station, PlayerRecord& pilot) {
    BuildMissedApproachFixes(station, pilot, ServiceWord::Artcc);
    if (station.DistanceToAirport > 30) {
        DropTarget(pilot);
        pilot.Phase = RadarPhase::Approach;
    }
    HandInCheck(station, pilot, RadarPhase::AcknowledgeContactApproachMissedApproach);
}

void RepeatArtccClearance(Station& station, PlayerRecord& pilot) {
    RepeatClearance(station, pilot, ServiceWord::Artcc);
}

constexpr StateRow ArtccStates[] = {
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::Acknowledge, .Text = ArtccMenu},
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::TrafficInSight, .Text = ArtccMenu},
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::TrafficNotInSight, .Text = ArtccMenu},
    {.Phase = RadarPhase::Departure, .Input = StateRow::NoChoice, .When = &HasNoText, .Text = ClimbToCruise},
    {.Phase = RadarPhase::Departure, .Input = StateRow::NoChoice},

    {.Phase = RadarPhase::EnRoute, .Input = RadarLabel::Acknowledge, .Text = ArtccMenu},
    {.Phase = RadarPhase::EnRoute, .Input = RadarLabel::TrafficInSight, .Text = ArtccMenu},
    {.Phase = RadarPhase::EnRoute, .Input = RadarLabel::TrafficNotInSight, .Text = ArtccMenu},
    {.Phase = RadarPhase::EnRoute, .Input = StateRow::NoChoice, .When = &HasNoText, .Text = MaintainCruise},
    {.Phase = RadarPhase::EnRoute, .Input = StateRow::NoChoice},

    {.Phase = RadarPhase::Descent, .Input = RadarLabel::Acknowledge},
    {.Phase = RadarPhase::Descent, .Input = RadarLabel::TrafficInSight},
    {.Phase = RadarPhase::Descent, .Input = RadarLabel::TrafficNotInSight},
    {.Phase = RadarPhase::Descent, .Input = StateRow::NoChoice, .Act = &StepDescent},

    {.Phase = RadarPhase::Approach, .Input = RadarLabel::Acknowledge},
    {.Phase = RadarPhase::Approach, .Input = RadarLabel::TrafficInSight},
    {.Phase = RadarPhase::Approach, .Input = RadarLabel::TrafficNotInSight},
    {.Phase = RadarPhase::Approach, .Input = StateRow::NoChoice, .Act = &StepApproach},

    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::Acknowledge},
    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::TrafficInSight},
    {.Phase = RadarPhase::MissedApproach, .Input = RadarLabel::TrafficNotInSight},
    {.Phase = RadarPhase::MissedApproach, .Input = StateRow::NoChoice, .Act = &StepMissedApproach},

    {.Phase = RadarPhase::AcknowledgeContactApproach,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneApproachMenu,
     .Next = RadarPhase::ContactApproachFrequency},
    {.Phase = RadarPhase::AcknowledgeContactApproach, .Input = StateRow::NoChoice, .Text = ContactApproach},
    {.Phase = RadarPhase::ContactApproachFrequency,
     .Input = RadarLabel::TuneApproach,
     .Text = "",
     .Forgets = Forget::Everything,
     .Tunes = &Station::ApproachFrequency,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::ContactApproachFrequency, .Input = StateRow::NoChoice, .Text = TuneApproachMenu},

    {.Phase = RadarPhase::AcknowledgeContactApproachMissedApproach,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneApproachMenu,
     .Next = RadarPhase::ContactApproachFrequencyMissedApproach},
    {.Phase = RadarPhase::AcknowledgeContactApproachMissedApproach,
     .Input = StateRow::NoChoice,
     .Text = ContactApproach},
    {.Phase = RadarPhase::ContactApproachFrequencyMissedApproach,
     .Input = RadarLabel::TuneApproach,
     .Text = "",
     .Forgets = Forget::Everything,
     .Tunes = &Station::ApproachFrequency,
     .Next = RadarPhase::MissedApproach},
    {.Phase = RadarPhase::ContactApproachFrequencyMissedApproach,
     .Input = StateRow::NoChoice,
     .Text = TuneApproachMenu},

    {.Phase = RadarPhase::AcknowledgeContactTower,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneTowerMenu,
     .Next = RadarPhase::ContactTower},
    {.Phase = RadarPhase::AcknowledgeContactTower, .Input = StateRow::NoChoice, .Act = &RepeatArtccClearance},
    {.Phase = RadarPhase::ContactTower,
     .Input = RadarLabel::TuneTower,
     .Text = TowerMenu,
     .Forgets = Forget::Everything,
     .Tunes = &Station::TowerFrequency,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::ContactTower, .Input = StateRow::NoChoice, .Text = TuneTowerMenu},
};

}  // namespace

void RunVfrArtcc(Station& station, PlayerRecord& pilot) {
    RunStates(station, pilot, ServiceWord::Artcc, VfrStates);
}

void RunIfrArtcc(Station& station, PlayerRecord& pilot) {
    if (pilot.Phase != RadarPhase::None) {
        RunStates(station, pilot, ServiceWord::Artcc, ArtccStates);
    } else if (FeetAboveRunway(station, pilot) > 300) {
        RunStates(station, pilot, ServiceWord::Artcc, OpeningStates);
    }
}

}  // namespace corvenna
