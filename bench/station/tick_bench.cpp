#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "station/geometry.h"
#include "station/tick.h"

namespace corvenna {
namespace {

class Silence final : public ChatSender {
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {}
};

Station TestField() {
    Station station;
    station.AirportName = "Test Field";
    station.AirportCode = "KTST";
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
    station.RunwayHeading = 160;
    ComputeSectorCentres(station);
    return station;
}

/// Pilots all round the airport, at all heights, who have what they were last told.
void AddPilots(Station& station, std::int64_t count, std::uint8_t inService) {
    for (std::int64_t i = 0; i < count; ++i) {
        PlayerRecord pilot;
        pilot.Name = fmt::format("N{}", i);
        pilot.Id = static_cast<std::int32_t>(i + 2);
        pilot.Role = Role::Player;
        pilot.Latitude = 46 + static_cast<double>(i % 200) / 100;
        pilot.Longitude = -123 + static_cast<double>(i % 170) / 85;
        pilot.Altitude = static_cast<std::int32_t>(400 + i % 20 * 600);
        pilot.InService = inService;
        pilot.FlightRules = i % 2 == 0 ? Vfr : Ifr;
        station.Players.Add(pilot);
    }
    Silence silence;
    AtcTimer(station, {}, silence);
}

void RunTick(benchmark::State& state, std::uint8_t inService) {
    Station station = TestField();
    AddPilots(station, state.range(0), inService);
    Silence silence;
    for (auto _ : state) AtcTimer(station, {}, silence);
    state.counters["perPilot"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void TickInTheOpeningDialogue(benchmark::State& state) { RunTick(state, OpeningDialogue); }
void TickInTheFrequencyMenu(benchmark::State& state) { RunTick(state, UnderService); }

void PilotCounts(benchmark::internal::Benchmark* bench) {
    for (const int pilots : {10, 100, 1000, 10000, 32767}) bench->Arg(pilots);
    bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(TickInTheOpeningDialogue)->Apply(PilotCounts);
BENCHMARK(TickInTheFrequencyMenu)->Apply(PilotCounts);

}  // namespace
}  // namespace corvenna
