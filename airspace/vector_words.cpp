#include "airspace/vector_words.h"

#include <fmt/format.h>

#include <iterator>

#include "airspace/radar_state.h"
#include "station/geometry.h"

namespace corvenna {

namespace {

constexpr std::string_view TurnLeft = " Turn left heading {}.";
constexpr std::string_view TurnRight = " Turn right heading {}.";
constexpr std::string_view Climb = " Climb and Maintain {} ft.";
constexpr std::string_view Descend = " Descent and Maintain {} ft.";
constexpr std::string_view VectorMenu =
    " Choose one of the following options for the {} frequency: 1-Acknowledge 2-Close ATC Services";

template <class Value>
void Append(std::string& text, std::string_view words, const Value& value) {
    fmt::format_to(std::back_inserter(text), fmt::runtime(words), value);
}

}  // namespace

void AssignHeading(PlayerRecord& pilot, std::int16_t heading) {
    pilot.AssignedHeading.clear();
    Append(pilot.AssignedHeading, "{}", heading);
}

void AssignAltitude(PlayerRecord& pilot, std::int64_t feet) {
    pilot.AssignedAltitude.clear();
    Append(pilot.AssignedAltitude, "{}", feet);
}

void AddTurnWords(std::string& text, const PlayerRecord& pilot, std::int16_t heading) {
    const bool left =
        HeadingInSector(heading, NormalizeHeading(pilot.Heading - 180), NormalizeHeading(pilot.Heading));
    Append(text, left ? TurnLeft : TurnRight, heading);
}

void AddAltitudeWords(std::string& text, const PlayerRecord& pilot) {
    const std::int64_t assigned = WholeNumber(pilot.AssignedAltitude);
    if (pilot.Altitude < assigned) Append(text, Climb, assigned);
    if (pilot.Altitude > assigned) Append(text, Descend, assigned);
}

void AddVectorMenu(std::string& text, std::string_view service) { Append(text, VectorMenu, service); }

}  // namespace corvenna
