#include "station/opening.h"

#include "station/menu.h"
#include "station/say.h"

namespace corvenna {

namespace {

// ---- Opening dialogue

constexpr std::string_view Welcome =
    "{callsign}. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at {airport}?: "
    "1-Use ATC services";
constexpr std::string_view AskFlightType =
    "{callsign}. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services";
constexpr std::string_view ChooseOption =
    "{callsign}. Choose one of the following options: 1-Close ATC Services";

void UseServices(Station& station, PlayerRecord& pilot) { Answer(station, pilot, AskFlightType); }

void EnterService(Station& station, PlayerRecord& pilot, std::uint8_t flightRules) {
    Answer(station, pilot, ChooseOption);
    pilot.FlightRules = flightRules;
    pilot.InService = UnderService;
}

void FlyVfr(Station& station, PlayerRecord& pilot) { EnterService(station, pilot, Vfr); }
void FlyIfr(Station& station, PlayerRecord& pilot) { EnterService(station, pilot, Ifr); }

constexpr MenuRow OpeningRows[] = {
    {"-Use ATC services", &UseServices},
    {"-VFR", &FlyVfr},
    {"-IFR", &FlyIfr},
    {CloseLabel, &ResetPilot},
};

// ---- Frequency menu

constexpr std::string_view TuneArtccLabel = "-Tune ARTCC Frequency";
constexpr std::string_view TuneApproachLabel = "-Tune Approach Frequency";
constexpr std::string_view TuneTowerLabel = "-Tune {airport} Tower Frequency";
constexpr std::string_view TuneGroundLabel = "-Tune {airport} Ground Frequency";

constexpr std::string_view OfferArtcc = " 2-Tune ARTCC Frequency";
constexpr std::string_view OfferApproach = " 2-Tune Approach Frequency";

constexpr std::string_view OnArtcc =
    "{callsign}. Choose one of the following options for the ARTCC frequency: 1-Close ATC Services";
constexpr std::string_view OnApproach =
    "{callsign}. Choose one of the following options for the Approach frequency: 1-Close ATC Services";
constexpr std::string_view OnTower =
    "{callsign}. Choose one of the following options for the Tower frequency: 1-Close ATC Services";
constexpr std::string_view OnGround =
    "{callsign}. Choose one of the following options for the Ground frequency: 1-Close ATC Services";

void Tune(Station& station, PlayerRecord& pilot, std::string_view text, const std::string& frequency) {
    Answer(station, pilot, text);
    pilot.TunedFrequency = frequency;
}

void TuneArtcc(Station& s, PlayerRecord& pilot) { Tune(s, pilot, OnArtcc, s.ArtccFrequency); }
void TuneApproach(Station& s, PlayerRecord& pilot) { Tune(s, pilot, OnApproach, s.ApproachFrequency); }
void TuneTower(Station& s, PlayerRecord& pilot) { Tune(s, pilot, OnTower, s.TowerFrequency); }
void TuneGround(Station& s, PlayerRecord& pilot) { Tune(s, pilot, OnGround, s.GroundFrequency); }

constexpr MenuRow VfrFrequencyRows[] = {
    {TuneArtccLabel, &TuneArtcc},   {TuneApproachLabel, &TuneApproach}, {TuneTowerLabel, &TuneTower},
    {TuneGroundLabel, &TuneGround}, {CloseLabel, &ResetPilot},
};

constexpr MenuRow IfrFrequencyRows[] = {
    {TuneArtccLabel, &TuneArtcc},
    {TuneApproachLabel, &TuneApproach},
    {TuneGroundLabel, &TuneGround},
    {CloseLabel, &ResetPilot},
};

/// At exactly 300 ft above the field a pilot is neither above nor below: no frequency is offered.
void WriteFrequencyMenu(Station& station, PlayerRecord& pilot) {
    const std::int64_t aboveField = std::int64_t{pilot.Altitude} - station.RunwayElevation;
    const bool airborne = aboveField > 300;
    const int distance = station.DistanceToAirport;
    std::string& menu = pilot.MenuText;

    Say(station, pilot, ChooseOption);
    if (airborne && aboveField < 10000 && distance < 20 && !station.ApproachFrequency.empty()) {
        menu += OfferApproach;  // stands in for ARTCC where both would fit
    } else if (airborne && distance < 200) {
        menu += OfferArtcc;
    }
    if (pilot.FlightRules == Vfr && airborne && distance < 15) {
        // A callsign with "2-" in it pushes the Tower to 3 as well.
        menu.append(menu.find("2-") == std::string::npos ? " 2-Tune " : " 3-Tune ");
        menu.append(station.AirportName).append(" Tower Frequency");
    }
    if (aboveField < 300 && distance < 20) {
        menu.append(" 2-Tune ").append(station.AirportName).append(" Ground Frequency");
    }
}

}  // namespace

void RunOpeningDialogue(Station& station, PlayerRecord& pilot) {
    if (pilot.Choice != 0) {
        ActOnChoice(station, pilot, OpeningRows);
    } else if (pilot.MenuText.empty() && !pilot.Name.empty() && pilot.Id > 0) {
        Say(station, pilot, Welcome);
    }
}

void RunFrequencyMenu(Station& station, PlayerRecord& pilot) {
    if (pilot.FlightRules > Ifr) return;
    if (pilot.Choice == 0) {
        WriteFrequencyMenu(station, pilot);
    } else if (pilot.FlightRules == Vfr) {
        ActOnChoice(station, pilot, VfrFrequencyRows);
    } else {
        ActOnChoice(station, pilot, IfrFrequencyRows);
    }
}

}  // namespace corvenna
