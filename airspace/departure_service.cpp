#include "airspace/departure_service.h"

#include "airspace/radar_phases.h"
#include "airspace/radar_state.h"
#include "airspace/radar_texts.h"

namespace corvenna {

namespace {

constexpr std::string_view ApproachMenu =
    "{callsign}. Choose one of the following options for the Approach frequency: 1-Close ATC Services";
constexpr std::string_view OwnNavigation =
    "{callsign}, Climb and maintain cruise altitude and assume own navigation. "
    "Choose one of the following options for the Departure frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view DepartureMenu =
    "{callsign}. Choose one of the following options for the Departure frequency: 1-Close ATC Services";
constexpr std::string_view ContactArtcc =
    "{callsign}, Contact ARTCC ({artcc}). "
    "Choose one of the following options for the Departure frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TuneArtccMenu =
    "{callsign}. Choose one of the following options for the Departure frequency: "
    "1-Tune ARTCC Frequency 2-Close ATC Services";

// ---- VFR. At exactly 15 miles, and while a traffic call stands, nothing is written.

bool LeavesTower(Station& station, const PlayerRecord& pilot) {
    return station.DistanceToAirport > 15 &&
           (pilot.MenuText.empty() || MenuIs(station, pilot, ServiceWord::Approach, TuneTowerMenu));
}

bool NearsTower(Station& station, const PlayerRecord& pilot) {
    return station.DistanceToAirport < 15 &&
           (pilot.MenuText.empty() || MenuIs(station, pilot, ServiceWord::Approach, ApproachMenu));
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
     .Text = ApproachMenu,
     .Forgets = Forget::Vectors},
    {.Phase = RadarPhase::None,
     .Input = StateRow::NoChoice,
     .When = &NearsTower,
     .Text = TuneTowerMenu,
     .Forgets = Forget::Vectors},
    {.Phase = RadarPhase::None, .Input = StateRow::NoChoice},
};

// ---- IFR

bool NotAskedYet(Station& station, const PlayerRecord& pilot) {
    return !MenuIs(station, pilot, ServiceWord::Approach, AskDestination);
}

/// Departure keeps a pilot up to 5000 ft above the runway and 10 miles, both included.
void DepartureCheck(Station& station, PlayerRecord& pilot) {
    if (pilot.MenuText.empty()) RadarSay(station, pilot, ServiceWord::Departure, OwnNavigation);
    if (FeetAboveRunway(station, pilot) > 5000 || station.DistanceToAirport > 10) {
        RadarAnswer(station, pilot, ServiceWord::Departure, ContactArtcc);
        pilot.Phase = RadarPhase::AcknowledgeContactArtccEnRoute;
    }
}

constexpr StateRow OpeningStates[] = {
    {.Phase = RadarPhase::None,
     .Input = RadarLabel::ThisAirport,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::Approach},
    {.Phase = RadarPhase::None,
     .Input = RadarLabel::AnotherAirport,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::Departure},
    {.Phase = RadarPhase::None,
     .Input = StateRow::NoChoice,
     .When = &NotAskedYet,
     .Text = AskDestination,
     .Forgets = Forget::Everything},
    {.Phase = RadarPhase::None, .Input = StateRow::NoChoice},
};

constexpr StateRow DepartureStates[] = {
    // A digit that waits from the Tower is swallowed, even the one that closes the services.
    {.Phase = RadarPhase::ContactDeparture,
     .Input = StateRow::EveryCall,
     .Text = "",
     .Forgets = Forget::Everything,
     .Next = RadarPhase::Departure},
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::Acknowledge, .Text = DepartureMenu},
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::TrafficInSight, .Text = DepartureMenu},
    {.Phase = RadarPhase::Departure, .Input = RadarLabel::TrafficNotInSight, .Text = DepartureMenu},
    {.Phase = RadarPhase::Departure, .Input = StateRow::NoChoice, .Act = &DepartureCheck},
    {.Phase = RadarPhase::AcknowledgeContactArtccEnRoute,
     .Input = RadarLabel::Acknowledge,
     .Text = TuneArtccMenu,
     .Next = RadarPhase::ContactArtccEnRoute},
    {.Phase = RadarPhase::AcknowledgeContactArtccEnRoute, .Input = StateRow::NoChoice, .Text = ContactArtcc},
    {.Phase = RadarPhase::ContactArtccEnRoute,
     .Input = RadarLabel::TuneArtcc,
     .Text = "",
     .Forgets = Forget::Everything,
     .Tunes = &Station::ArtccFrequency,
     .Next = RadarPhase::EnRoute},
    {.Phase = RadarPhase::ContactArtccEnRoute, .Input = StateRow::NoChoice, .Text = TuneArtccMenu},
};

}  // namespace

void RunVfrApproach(Station& station, PlayerRecord& pilot) {
    RunStates(station, pilot, ServiceWord::Approach, VfrStates);
}

bool RunDeparture(Station& station, PlayerRecord& pilot) {
    return RunStates(station, pilot, ServiceWord::Departure, OpeningStates) ||
           RunStates(station, pilot, ServiceWord::Departure, DepartureStates);
}

}  // namespace corvenna
