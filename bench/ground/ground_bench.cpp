#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "ground/ground_control.h"
#include "ground/plain_ground.h"
#include "ground/taxi_routing.h"
#include "ground_scenes.h"
#include "station/tick.h"

// The product against its plain form, on the same requests and the same traffic, in one run: a gain is how
// many times the plain form takes as long.

namespace corvenna {
namespace {

template <class Run>
double SecondsOf(Run run) {
    const auto begin = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The least of so many times, or of fewer when they are long.
template <class Run>
double FastestOf(int times, Run run) {
    constexpr double LongEnough = 0.05;
    double fastest = SecondsOf(run);
    double all = fastest;
    for (int i = 1; i < times && all < LongEnough; ++i) {
        const double seconds = SecondsOf(run);
        fastest = std::min(fastest, seconds);
        all += seconds;
    }
    return fastest;
}

// ---- The search

/// What a pilot's wish costs: assign is AssignTaxiRoute or its plain form.
template <class Assign>
auto Ask(Station& station, const TaxiRequest& request, Assign assign) {
    PlayerRecord pilot;
    pilot.Latitude = request.Latitude;
    pilot.Longitude = request.Longitude;
    station.TaxiRoutes.Clear();
    benchmark::DoNotOptimize(pilot);
    return assign(station, pilot, request.Target);
}

/// All the requests of an airport that get a route, one by one; those begun again often on their own too.
void Search(benchmark::State& state, Station station, std::size_t spots) {
    constexpr int OftenRestarted = 20;
    int routed = 0;
    int restarted = 0;
    double leastGain = 1e9;
    double leastGainRestarted = 1e9;
    for (auto _ : state) {
        for (const TaxiRequest& request : AllRequests(station, spots)) {
            PlainSearchCount count;
            const double plain = FastestOf(20, [&] { count = Ask(station, request, &PlainAssignTaxiRoute); });
            const double product = FastestOf(20, [&] { Ask(station, request, &AssignTaxiRoute); });
            if (count.Links == 0) continue;
            ++routed;
            leastGain = std::min(leastGain, plain / product);
            if (count.Attempts < OftenRestarted) continue;
            ++restarted;
            leastGainRestarted = std::min(leastGainRestarted, plain / product);
        }
    }
    state.counters["routed"] = routed;
    state.counters["leastGain"] = leastGain;
    state.counters["restarted"] = restarted;
    state.counters["leastGainRestarted"] = leastGainRestarted;
}
void SearchAtSeattle(benchmark::State& state) { Search(state, Seattle(), 75); }
void SearchAtTwoThousand(benchmark::State& state) { Search(state, TwoThousandPoints(), 20); }
BENCHMARK(SearchAtSeattle)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(SearchAtTwoThousand)->Iterations(1)->Unit(benchmark::kMillisecond);

/// The walk tries all there is before it gives up.
void SearchInVain(benchmark::State& state, Station station) {
    const TaxiRequest request = UnreachableRequest(station);
    for (auto _ : state) Ask(station, request, &AssignTaxiRoute);
}
void SearchInVainAtTwoThousand(benchmark::State& state) { SearchInVain(state, TwoThousandPoints()); }
void SearchInVainOnAStar(benchmark::State& state) { SearchInVain(state, StarOfTwoThousand()); }
BENCHMARK(SearchInVainAtTwoThousand)->Unit(benchmark::kMillisecond);
BENCHMARK(SearchInVainOnAStar)->Unit(benchmark::kMillisecond);

// ---- The tick

class Silence final : public ChatSender {
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {}
};

void RunTick(Station& station, int tick, void (*serve)(Station&, PlayerRecord&)) {
    const std::array<FrequencyService, 1> services{{{&Station::GroundFrequency, serve}}};
    Silence silence;
    MovePilots(station, tick);
    AtcTimer(station, services, silence);
}

/// The time is that of the product's tick; the gain is measured on ticks behind them.
void Tick(benchmark::State& state, Station station) {
    constexpr int Pilots = 200;
    constexpr int Links = 60;
    AddTaxiingPilots(station, Pilots, Links);
    int tick = 0;
    for (auto _ : state) RunTick(station, ++tick, &GroundControl);
    const double product = FastestOf(20, [&] { RunTick(station, ++tick, &GroundControl); });
    const double plain = SecondsOf([&] { RunTick(station, ++tick, &PlainGroundControl); });
    state.counters["gain"] = plain / product;
}
void TickAtSeattle(benchmark::State& state) { Tick(state, Seattle()); }
void TickAtTwoThousand(benchmark::State& state) { Tick(state, TwoThousandPoints()); }
BENCHMARK(TickAtSeattle)->Iterations(500)->Unit(benchmark::kMillisecond);
BENCHMARK(TickAtTwoThousand)->Iterations(500)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace corvenna
