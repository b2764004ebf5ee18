#include "airspace/radar_state.h"

#include <charconv>

#include "station/menu.h"
#include "station/say.h"

namespace corvenna {

namespace {

void RadarFill(std::string& into, const Station& station, const PlayerRecord& pilot, std::string_view service,
               std::string_view text) {
    Fill(into, station, pilot, text, fmt::arg("service", service), fmt::arg("artcc", station.ArtccFrequency),
         fmt::arg("approach", station.ApproachFrequency), fmt::arg("heading", pilot.AssignedHeading),
         fmt::arg("altitude", pilot.AssignedAltitude));
}

bool InputFits(const Station& station, const PlayerRecord& pilot, std::string_view input) {
    if (input == StateRow::EveryCall) return true;
    if (input == StateRow::NoChoice) return pilot.Choice == 0;
    return ChoiceIs(station, pilot, input);
}

void ForgetVectors(PlayerRecord& pilot) {
    pilot.AssignedHeading.clear();
    pilot.AssignedAltitude.clear();
    DropTarget(pilot);
}

void Perform(Station& station, PlayerRecord& pilot, std::string_view service, const StateRow& row) {
    if (row.Text) RadarSay(station, pilot, service, *row.Text);
    pilot.Choice = 0;
    if (row.Forgets == Forget::Vectors) ForgetVectors(pilot);
    if (row.Forgets == Forget::Everything) Wipe(pilot);
    if (row.Tunes != nullptr) pilot.TunedFrequency = station.*row.Tunes;
    if (row.Act != nullptr) row.Act(station, pilot);
    if (row.Next) pilot.Phase = *row.Next;
}

}  // namespace

bool RunStates(Station& station, PlayerRecord& pilot, std::string_view service,
               std::span<const StateRow> rows) {
    bool hasPhase = false;
    for (const StateRow& row : rows) {
        if (pilot.Phase != row.Phase) continue;
        hasPhase = true;
        if (!InputFits(station, pilot, row.Input)) continue;
        if (row.When != nullptr && !row.When(station, pilot)) continue;
        Perform(station, pilot, service, row);
        return true;
    }
    if (hasPhase && ChoiceIs(station, pilot, CloseLabel)) ResetPilot(station, pilot);
    return hasPhase;
}

void RadarSay(Station& station, PlayerRecord& pilot, std::string_view service, std::string_view text) {
    RadarFill(pilot.MenuText, station, pilot, service, text);
}

void RadarAnswer(Station& station, PlayerRecord& pilot, std::string_view service, std::string_view text) {
    RadarSay(station, pilot, service, text);
    pilot.Choice = 0;
}

bool MenuIs(Station& station, const PlayerRecord& pilot, std::string_view service, std::string_view text) {
    RadarFill(station.Line, station, pilot, service, text);
    return pilot.MenuText == station.Line;
}

void DropTarget(PlayerRecord& pilot) {
    pilot.Target.Name.clear();
    pilot.Target.Kind.clear();
    pilot.Target.Latitude = pilot.Target.Longitude = 0;
    pilot.Target.Altitude = 0;
}

void Wipe(PlayerRecord& pilot) {
    pilot.AdvisedTraffic.clear();
    ForgetVectors(pilot);
}

std::int64_t WholeNumber(std::string_view text) {
    constexpr std::int64_t Limit = 1'000'000'000'000;  // room to reckon with the number
    std::int64_t value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    return read.ec == std::errc{} && value > -Limit && value < Limit ? value : 0;
}

}  // namespace corvenna
