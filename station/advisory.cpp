#include "station/advisory.h"

#include "station/menu.h"
#include "station/say.h"
#include "station/text.h"

namespace corvenna {

namespace {

// {ctaf} is the frequency behind a hyphen, or nothing; the menu follows each text.
constexpr std::string_view Ask =
    "{callsign}. Choose one of the following options for the Advisory frequency (CTAF{ctaf}";
constexpr std::string_view TaxiToRunway =
    "Traffic, {callsign}, taxiing to runway {runway} at {airport} airport. "
    "Choose one of the following options for the Advisory frequency (CTAF{ctaf}";
constexpr std::string_view Takeoff =
    "Traffic, {callsign}, takingoff, runway {runway} at {airport} airport. "
    "Choose one of the following options for the Advisory frequency (CTAF{ctaf}";
constexpr std::string_view Position =
    "Traffic, {callsign}, {distance} miles, {quadrant}, {altitude} ft, at {airport} airport. "
    "Choose one of the following options for the Advisory frequency (CTAF{ctaf}";
constexpr std::string_view Landing =
    "Traffic, {callsign}, landing, runway {runway} at {airport} airport. "
    "Choose one of the following options for the Advisory frequency (CTAF{ctaf}";
constexpr std::string_view TaxiToGate =
    "Traffic, {callsign}, taxiing to gate or parking at {airport} airport. "
    "Choose one of the following options for the Advisory frequency (CTAF{ctaf}";

constexpr std::string_view AdvisoryMenu =
    "): 1-Announce Taxi to Runway 2-Announce Takeoff 3-Announce Position 4-Announce Landing "
    "5-Announce Taxi to Gate or Parking 6-Close ATC Services";

/// Found in every text that carries the menu, an announcement included.
constexpr std::string_view StandingMenu =
    "Choose one of the following options for the Advisory frequency (CTAF{}{}):";

std::string_view Hyphen(const Station& station) { return station.CtafFrequency.empty() ? "" : " - "; }

std::string FrequencyTag(const Station& station) {
    return std::string(Hyphen(station)) + station.CtafFrequency;
}

bool MenuStands(const Station& station, const PlayerRecord& pilot) {
    fmt::memory_buffer standing;  // on the stack: it is asked for each second
    fmt::format_to(std::back_inserter(standing), fmt::runtime(StandingMenu), Hyphen(station),
                   station.CtafFrequency);
    return ContainsIgnoringCase(pilot.MenuText, {standing.data(), standing.size()});
}

void SayWithMenu(Station& station, PlayerRecord& pilot, std::string_view text) {
    Say(station, pilot, text, fmt::arg("ctaf", FrequencyTag(station)),
        fmt::arg("distance", station.DistanceToAirport), fmt::arg("quadrant", pilot.Quadrant),
        fmt::arg("altitude", pilot.Altitude));
    pilot.MenuText += AdvisoryMenu;
}

void Announce(Station& station, PlayerRecord& pilot, std::string_view text) {
    SayWithMenu(station, pilot, text);
    pilot.Choice = 0;
}

void AnnounceTaxiToRunway(Station& station, PlayerRecord& pilot) { Announce(station, pilot, TaxiToRunway); }
void AnnounceTakeoff(Station& station, PlayerRecord& pilot) { Announce(station, pilot, Takeoff); }
void AnnouncePosition(Station& station, PlayerRecord& pilot) { Announce(station, pilot, Position); }
void AnnounceLanding(Station& station, PlayerRecord& pilot) { Announce(station, pilot, Landing); }
void AnnounceTaxiToGate(Station& station, PlayerRecord& pilot) { Announce(station, pilot, TaxiToGate); }

constexpr MenuRow AdvisoryRows[] = {
    {"-Announce Taxi to Runway", &AnnounceTaxiToRunway},
    {"-Announce Takeoff", &AnnounceTakeoff},
    {"-Announce Position", &AnnouncePosition},
    {"-Announce Landing", &AnnounceLanding},
    {"-Announce Taxi to Gate or Parking", &AnnounceTaxiToGate},
    {CloseLabel, &ResetPilot},
};

}  // namespace

void AdvisoryService(Station& station, PlayerRecord& pilot) {
    if (pilot.Choice != 0) {
        ActOnChoice(station, pilot, AdvisoryRows);
    } else if (!MenuStands(station, pilot)) {
        SayWithMenu(station, pilot, Ask);
    }
}

}  // namespace corvenna
