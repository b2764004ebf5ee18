#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <stdexcept>

#include "airspace/plain_tower.h"
#include "airspace/tower_control.h"
#include "station/geometry.h"
#include "station/tick.h"

namespace corvenna {
namespace {

/// Counts the texts, and keeps none.
class Radio final : public ChatSender {
  public:
    int Sent = 0;

  private:
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {
        ++Sent;
    }
};

Station TestField() {
    Station station;
    station.AirportName = "Test Field";
    station.AirportLatitude = 47;
    station.AirportLongitude = -122;
    station.GroundFrequency = "121.9";
    station.TowerFrequency = "118.3";
    station.ApproachFrequency = "124.2";
    station.ArtccFrequency = "Air Route Traffic Control Center";
    station.ActiveRunway = "16";
    station.RunwayLatitude = 47.01;
    station.RunwayLongitude = -122;
    station.RunwayElevation = 400;
    station.RunwayLength = 9000;
    station.RunwayWidth = 150;
    station.RunwayHeading = 160;
    ComputeSectorCentres(station);
    return station;
}

struct State {
    std::string_view Phase;
    std::uint8_t Rules;
    int Bearing;
    int NauticalMiles;
    int FeetAboveRunway;
};

/// Where pilots of the Tower stay for a while.
constexpr State States[] = {
    {"Taxiing to runway", Vfr, 340, 1, 0},
    {"Taxiing to runway", Ifr, 340, 1, 0},
    {"Holding short in runway", Vfr, 340, 0, 0},
    {"Holding short in runway", Ifr, 340, 0, 0},
    {"Contact Departure", Ifr, 160, 5, 3000},
    {"", Vfr, 250, 6, 2500},
    {"Flying traffic pattern", Vfr, 70, 4, 1200},
    {"Landing", Vfr, 340, 4, 1200},
    {"Landing", Ifr, 340, 6, 2000},
    {"Contact Ground", Ifr, 70, 0, 0},
};

/// Pilots in all these states. The head of the takeoff queue waits for the last of the records, who stands on
/// the runway, so the scan goes all the way.
void AddPilots(Station& station, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        const State& state = States[static_cast<std::size_t>(i) % std::size(States)];
        const bool onRunway = i == count - 1;
        const GeoPoint place = ProjectNm(station.RunwayLatitude, station.RunwayLongitude,
                                         onRunway ? 160 : state.Bearing, onRunway ? 1 : state.NauticalMiles);
        PlayerRecord pilot;
        pilot.Name = fmt::format("N{}", i);
        pilot.Id = static_cast<std::int32_t>(i + 2);
        pilot.Role = Role::Player;
        pilot.Latitude = place.Latitude;
        pilot.Longitude = place.Longitude;
        pilot.Altitude = station.RunwayElevation + (onRunway ? 0 : state.FeetAboveRunway);
        pilot.InService = UnderService;
        pilot.TunedFrequency = station.TowerFrequency;
        pilot.FlightRules = state.Rules;
        pilot.Phase = onRunway ? "Taxiing to runway" : state.Phase;
        station.Players.Add(pilot);
    }
    station.TakeoffQueue.Add("N2");
}

void RunTick(benchmark::State& state, void (*tower)(Station&, PlayerRecord&)) {
    Station station = TestField();
    AddPilots(station, state.range(0));
    const std::array services{FrequencyService{&Station::TowerFrequency, tower}};
    Radio radio;
    for (PlayerRecord& pilot : station.Players.Valid()) {  // the texts settle; nobody need hear them
        UpdatePilotGeometry(station, pilot);
        TowerControl(station, pilot);
    }
    for (auto _ : state) AtcTimer(station, services, radio);
    if (radio.Sent != 0) throw std::logic_error("a tick that was to be quiet has sent something");
    state.counters["perPilot"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void TowerTick(benchmark::State& state) { RunTick(state, &TowerControl); }
void TowerTickPlain(benchmark::State& state) { RunTick(state, &plain::TowerControl); }

BENCHMARK(TowerTick)->Arg(100)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(TowerTickPlain)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace corvenna
