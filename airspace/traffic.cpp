#include "airspace/traffic.h"

#include <cstdlib>

#include "airspace/radar_state.h"
#include "station/geometry.h"
#include "station/say.h"
#include "station/text.h"

namespace corvenna {

namespace {

constexpr std::string_view TrafficAlert =
    "{callsign}, TRAFFIC ALERT!, {miles} miles, {clock}, {altitude} ft, type {aircraft}. "
    "Avoid traffic and report them. Choose one of the following options for the {service} frequency: "
    "1-Report traffic in sight 2-Report traffic not in sight 3-Close ATC Services";
constexpr std::string_view TrafficCall =
    "{callsign}, Traffic is {miles} miles, {clock}, {altitude} ft, type {aircraft}. "
    "Report them in sight. Choose one of the following options for the {service} frequency: "
    "1-Report traffic in sight 2-Report traffic not in sight 3-Close ATC Services";

constexpr int CalledOutMiles = 5;
constexpr int AlertMiles = 2;
constexpr std::int64_t CalledOutFeet = 3000;

struct ClockArc {
    std::string_view Word;
    int Centre;  ///< degrees from the pilot's heading
    std::int16_t HalfWidth;
};

constexpr ClockArc ClockArcs[] = {
    {"twelve o'clock", 0, 30},   {"two o'clock", 45, 15},   {"ten o'clock", -45, 15},
    {"three o'clock", 90, 30},   {"nine o'clock", -90, 30}, {"five o'clock", 135, 15},
    {"eight o'clock", -135, 15}, {"six o'clock", -180, 30},
};

/// Sets the word of the last arc that holds the bearing. A bearing of 360 can fall between the arcs; the
/// word is then still that of the traffic before.
void ReadClock(std::int16_t heading, std::int16_t bearing, std::string_view& clock) {
    for (const ClockArc& arc : ClockArcs) {
        const std::int32_t centre = heading + arc.Centre;
        if (HeadingInSector(bearing, NormalizeHeading(centre - arc.HalfWidth),
                            NormalizeHeading(centre + arc.HalfWidth))) {
            clock = arc.Word;
        }
    }
}

bool IsNear(const PlayerRecord& pilot, const PlayerRecord& other, std::int16_t& miles) {
    if (std::abs(std::int64_t{pilot.Altitude} - other.Altitude) >= CalledOutFeet) return false;
    miles = DistanceNm(pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
    return miles < CalledOutMiles;
}

/// A name that is part of a longer one called out before counts as called out itself.
bool IsAdvised(const PlayerRecord& pilot, const PlayerRecord& other) {
    return ContainsIgnoringCase(pilot.AdvisedTraffic, other.Name);
}

void CallOut(const Station& station, PlayerRecord& pilot, const PlayerRecord& other, std::int16_t miles,
             std::string_view clock, std::string_view service) {
    Answer(station, pilot, miles < AlertMiles ? TrafficAlert : TrafficCall, fmt::arg("miles", miles),
           fmt::arg("clock", clock), fmt::arg("altitude", other.Altitude),
           fmt::arg("aircraft", other.AircraftName), fmt::arg("service", service));
    pilot.AdvisedTraffic.append(other.Name).append(", ");
}

}  // namespace

void ScanTraffic(Station& station, PlayerRecord& pilot, std::string_view service) {
    std::string_view clock;
    for (const PlayerRecord& other : station.Players.Valid()) {
        std::int16_t miles = 0;
        if (other.Name == pilot.Name || !IsNear(pilot, other, miles) || IsAdvised(pilot, other)) continue;
        pilot.Heading = NormalizeHeading(pilot.Heading);
        const auto bearing =
            BearingTo(station, pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
        ReadClock(pilot.Heading, bearing, clock);
        CallOut(station, pilot, other, miles, clock, service);
    }
}

}  // namespace corvenna
