#include "airspace/traffic.h"

#include <algorithm>

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
constexpr std::string_view AfterEach = ", ";

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

/// Looks names up in the text of those called out before. A name that is part of a longer one counts too.
/// Traffic mostly comes in the order in which it was entered, so the place behind the last hit goes first.
class AdvisedNames {
  public:
    bool Holds(const std::string& advised, std::string_view name) {
        const std::string_view text = advised;
        if (EqualIgnoringCase(text.substr(next_, name.size()), name)) {
            MoveBehind(text, next_, name);
            return true;
        }
        const std::size_t at = FindIgnoringCase(text, name);
        if (at == std::string_view::npos) return false;
        MoveBehind(text, at, name);
        return true;
    }

  private:
    void MoveBehind(std::string_view text, std::size_t at, std::string_view name) {
        next_ = std::min(text.size(), at + name.size() + AfterEach.size());
    }

    std::size_t next_ = 0;
};

void CallOut(const Station& station, PlayerRecord& pilot, const PlayerRecord& other, std::int16_t miles,
             std::string_view clock, std::string_view service) {
    Answer(station, pilot, miles < AlertMiles ? TrafficAlert : TrafficCall, fmt::arg("miles", miles),
           fmt::arg("clock", clock), fmt::arg("altitude", other.Altitude),
           fmt::arg("aircraft", other.AircraftName), fmt::arg("service", service));
    pilot.AdvisedTraffic.append(other.Name).append(AfterEach);
}

}  // namespace

void ScanTraffic(Station& station, PlayerRecord& pilot, std::string_view service) {
    const auto players = station.Players.Valid();
    const auto candidates = station.TickInProgress ? station.Traffic.Near(players, pilot, station.TicksBegun)
                                                   : station.Traffic.NearInHeight(players, pilot);
    AdvisedNames advised;
    std::string_view clock;
    for (const std::int32_t place : candidates) {
        const PlayerRecord& other = players[static_cast<std::size_t>(place)];
        if (other.Name == pilot.Name) continue;
        if (advised.Holds(pilot.AdvisedTraffic, other.Name)) continue;
        const auto miles = DistanceNm(pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
        if (miles >= CalledOutMiles) continue;
        pilot.Heading = NormalizeHeading(pilot.Heading);
        const auto bearing =
            BearingTo(station, pilot.Latitude, pilot.Longitude, other.Latitude, other.Longitude);
        ReadClock(pilot.Heading, bearing, clock);
        CallOut(station, pilot, other, miles, clock, service);
    }
}

}  // namespace corvenna
