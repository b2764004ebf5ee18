#include "airspace/tower_states.h"

namespace corvenna::TowerShared {

void TowerSay(const Station& station, PlayerRecord& pilot, std::string_view text) {
    Say(station, pilot, text, fmt::arg("approach", station.ApproachFrequency),
        fmt::arg("artcc", station.ArtccFrequency), fmt::arg("ground", station.GroundFrequency));
}

void TowerAnswer(const Station& station, PlayerRecord& pilot, std::string_view text) {
    TowerSay(station, pilot, text);
    pilot.Choice = 0;
}

void TowerAnswer(const Station& station, PlayerRecord& pilot, std::string_view text, std::string_view phase) {
    TowerAnswer(station, pilot, text);
    pilot.Phase = phase;
}

void Terminate(const Station& station, PlayerRecord& pilot, std::string_view text) {
    TowerAnswer(station, pilot, text);
    pilot.FlightRules = Vfr;
    pilot.TunedFrequency.clear();
    pilot.Phase.clear();
}

void TerminateForTakeoff(const Station& station, PlayerRecord& pilot) {
    Terminate(station, pilot, pilot.FlightRules == Ifr ? NotClearedForTakeoffIfr : NotClearedForTakeoff);
}

void Tune(const Station& station, PlayerRecord& pilot, std::string_view text, const std::string& frequency) {
    TowerAnswer(station, pilot, text);
    pilot.TunedFrequency = frequency;
}

void TuneToGround(Station& station, PlayerRecord& pilot) {
    Tune(station, pilot, OnGround, station.GroundFrequency);
}

}  // namespace corvenna::TowerShared
