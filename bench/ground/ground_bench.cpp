#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "ground/ground_control.h"
#include "ground/plain_ground.h"
#include "ground/taxi_routing.h"
#include "ground_scenes.h"
#include "station/tick.h"

// Each figure of the product stands beside that of the plain form, measured in the same run.

namespace corvenna {
namespace {

class Silence final : public ChatSender {
    void SendChat(std::string_view /*frequency*/, std::string_view /*text*/,
                  std::span<const std::int32_t> /*audience*/) override {}
};

// ---- The search

constexpr int OftenRestarted = 20;

struct Requests {
    Station Airport;
    std::vector<TaxiRequest> All;
    std::vector<TaxiRequest> Direct;     ///< the first attempt arrives
    std::vector<TaxiRequest> Restarted;  ///< begun again often
};

Requests Sort(Station airport, std::size_t spots) {
    Requests requests{.Airport = std::move(airport), .All = {}, .Direct = {}, .Restarted = {}};
    requests.All = AllRequests(requests.Airport, spots);
    for (const TaxiRequest& request : requests.All) {
        if (request.Links == 0) continue;
        if (request.Attempts == 1) requests.Direct.push_back(request);
        if (request.Attempts >= OftenRestarted) requests.Restarted.push_back(request);
    }
    return requests;
}

const Requests& AtSeattle() {
    static const Requests requests = Sort(Seattle(), 75);
    return requests;
}

const Requests& AtTwoThousand() {
    static const Requests requests = Sort(TwoThousandPoints(), 40);
    return requests;
}

void Ask(Station& station, const TaxiRequest& request) {
    PlayerRecord pilot;
    pilot.Latitude = request.Latitude;
    pilot.Longitude = request.Longitude;
    AssignTaxiRoute(station, pilot, request.Target);
    benchmark::DoNotOptimize(pilot.Phase);
    station.TaxiRoutes.Clear();
}

void AskPlain(Station& station, const TaxiRequest& request) {
    PlayerRecord pilot;
    pilot.Latitude = request.Latitude;
    pilot.Longitude = request.Longitude;
    PlainAssignTaxiRoute(station, pilot, request.Target);
    benchmark::DoNotOptimize(pilot.Phase);
    station.TaxiRoutes.Clear();
}

using RequestsOf = const std::vector<TaxiRequest> Requests::*;

void AssignAll(benchmark::State& state, const Requests& requests, RequestsOf which,
               void (*ask)(Station&, const TaxiRequest&)) {
    Station station = requests.Airport;
    for (auto _ : state) {
        for (const TaxiRequest& request : requests.*which) ask(station, request);
    }
    const std::vector<TaxiRequest>& asked = requests.*which;
    int attempts = 0;
    for (const TaxiRequest& request : asked) attempts += request.Attempts;
    state.counters["requests"] = static_cast<double>(asked.size());
    state.counters["attempts"] = attempts;
}

#define CORVENNA_BENCH_SEARCH(place, which)                         \
    void Assign##which##place(benchmark::State& state) {            \
        AssignAll(state, place(), &Requests::which, &Ask);          \
    }                                                               \
    void Assign##which##place##Plain(benchmark::State& state) {     \
        AssignAll(state, place(), &Requests::which, &AskPlain);     \
    }                                                               \
    BENCHMARK(Assign##which##place)->Unit(benchmark::kMicrosecond); \
    BENCHMARK(Assign##which##place##Plain)->Unit(benchmark::kMicrosecond)

CORVENNA_BENCH_SEARCH(AtSeattle, Direct);
CORVENNA_BENCH_SEARCH(AtSeattle, Restarted);
CORVENNA_BENCH_SEARCH(AtTwoThousand, Direct);
CORVENNA_BENCH_SEARCH(AtTwoThousand, Restarted);

double FastestOf(int times, Station& station, const TaxiRequest& request,
                 void (*ask)(Station&, const TaxiRequest&)) {
    double fastest = 1e9;
    for (int i = 0; i < times; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        ask(station, request);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        fastest = std::min(fastest, took.count());
    }
    return fastest;
}

/// The request on which the product gains least, and the one on which it gains most, each as a ratio.
void AssignOneByOne(benchmark::State& state, const Requests& requests) {
    Station station = requests.Airport;
    double least = 1e9;
    double most = 0;
    for (auto _ : state) {
        for (const TaxiRequest& request : requests.All) {
            if (request.Links == 0) continue;
            const double plain = FastestOf(request.Attempts > 1 ? 3 : 20, station, request, &AskPlain);
            const double gain = plain / FastestOf(20, station, request, &Ask);
            least = std::min(least, gain);
            most = std::max(most, gain);
        }
    }
    state.counters["leastGain"] = least;
    state.counters["mostGain"] = most;
}

void AssignOneByOneAtSeattle(benchmark::State& state) { AssignOneByOne(state, AtSeattle()); }
void AssignOneByOneAtTwoThousand(benchmark::State& state) { AssignOneByOne(state, AtTwoThousand()); }
BENCHMARK(AssignOneByOneAtSeattle)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(AssignOneByOneAtTwoThousand)->Iterations(1)->Unit(benchmark::kMillisecond);

/// The spot on the island asked for from the runway: the walk tries all there is.
void AssignUnreachableAtTwoThousand(benchmark::State& state) {
    Station station = TwoThousandPoints();
    const ParkingSpot& spot = station.AirportParkingSpots.back();
    const TaxiRequest request{.Latitude = station.RunwayLatitude,
                              .Longitude = station.RunwayLongitude,
                              .Target = {spot.Name, "Gate or parking", spot.Latitude, spot.Longitude, 0}};
    for (auto _ : state) Ask(station, request);
}
BENCHMARK(AssignUnreachableAtTwoThousand)->Unit(benchmark::kMillisecond);

// ---- The tick

constexpr int Pilots = 200;
constexpr int Links = 60;

void RunTicks(benchmark::State& state, Station station, void (*serve)(Station&, PlayerRecord&)) {
    const std::array<FrequencyService, 1> services{{{&Station::GroundFrequency, serve}}};
    AddTaxiingPilots(station, Pilots, Links);
    Silence silence;
    int tick = 0;
    for (auto _ : state) {
        MovePilots(station, ++tick);
        AtcTimer(station, services, silence);
    }
}

void TickAtSeattle(benchmark::State& state) { RunTicks(state, Seattle(), &GroundControl); }
void TickAtSeattlePlain(benchmark::State& state) { RunTicks(state, Seattle(), &PlainGroundControl); }
void TickAtTwoThousand(benchmark::State& state) { RunTicks(state, TwoThousandPoints(), &GroundControl); }
void TickAtTwoThousandPlain(benchmark::State& state) {
    RunTicks(state, TwoThousandPoints(), &PlainGroundControl);
}
BENCHMARK(TickAtSeattle)->Unit(benchmark::kMillisecond);
BENCHMARK(TickAtSeattlePlain)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(TickAtTwoThousand)->Unit(benchmark::kMillisecond);
BENCHMARK(TickAtTwoThousandPlain)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace corvenna
