#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <ctime>
#include <fstream>

#include "bench/world/made_up_world.h"
#include "world/airport_database.h"
#include "world/airport_selection.h"
#include "world/facility_decoder.h"
#include "world/magnetic_table.h"
#include "world/scenery_scan.h"
#include "world/terrain.h"

namespace corvenna {
namespace {

constexpr int WorldAirports = 20000;
constexpr int TerrainLines = 200000;
constexpr std::size_t FiveMegabytes = 5'000'000;

/// All of a world of 20,000 airports but its scan, once for all benchmarks.
const MadeUpWorld& World() {
    static const MadeUpWorld world(WorldAirports);
    return world;
}

AirportList ScanOf(const MadeUpWorld& world) {
    BeginDatabase(world.SimFolder(), world.AppFolder());
    Station station;
    LoadMagVarOf(world.SimFolder(), station);
    ScanObserver nobody;
    SceneryScan scan(station, world.SimFolder(), nobody);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, world.SimFolder(), world.AppFolder());
    return scan.Airports();
}

/// A scanned world with a terrain file.
const MadeUpWorld& ScannedWorld() {
    static const bool scanned = [] {
        ScanOf(World());
        std::ofstream terrain(World().AppFolder() + "/world_terrain.db");
        for (int i = 0; i < TerrainLines; ++i) {
            terrain << fmt::format("{:.3f} {:.3f} {}\n", -80 + i % 400 * 0.4, -180 + i / 400 * 0.72,
                                   i % 5000);
        }
        return true;
    }();
    benchmark::DoNotOptimize(scanned);
    return World();
}

std::vector<std::uint8_t> SceneryOf(std::size_t size) {
    std::vector<std::uint8_t> buffer = MadeUpScenery(100, 1);
    return MadeUpScenery(static_cast<int>(100 * size / buffer.size()), 1);
}

void DecodeFacilities(benchmark::State& state) {
    const auto buffer = SceneryOf(FiveMegabytes);
    const Station station;
    for (auto _ : state) {
        AirportList airports;
        ScanFacilities(buffer, station, airports);
        benchmark::DoNotOptimize(airports);
    }
    state.SetBytesProcessed(state.iterations() * std::ssize(buffer));
}
BENCHMARK(DecodeFacilities)->Unit(benchmark::kMillisecond);

double ThreadMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The longest a window has to wait: a tick that reads a file of 5 MB, when the list is already long. Told in
/// processor time, which a busy machine does not blur.
void ScanTickOfFiveMegabytes(benchmark::State& state) {
    constexpr int Files = 20;
    const MadeUpWorld world(0);
    const auto buffer = SceneryOf(FiveMegabytes);
    const auto folder = std::filesystem::path(world.SimFolder());
    std::filesystem::create_directories(folder / "a/scenery");
    std::ofstream(folder / "scenery.cfg") << "[Area.1]\nLocal=a\n";
    for (int i = 0; i < Files; ++i) {
        std::ofstream(folder / fmt::format("a/scenery/{}.bgl", i), std::ios::binary)
            .write(reinterpret_cast<const char*>(buffer.data()), std::ssize(buffer) - 1);
    }
    const Station station;
    double longest = 0;
    double all = 0;
    for (auto _ : state) {
        ScanObserver nobody;
        SceneryScan scan(station, world.SimFolder(), nobody);
        double before = ThreadMilliseconds();
        const double start = before;
        while (scan.Tick()) {
            const double now = ThreadMilliseconds();
            longest = std::max(longest, now - before);
            before = now;
        }
        all = before - start;
    }
    state.counters["longest_tick_ms"] = longest;
    state.counters["mean_tick_ms"] = all / Files;
}
BENCHMARK(ScanTickOfFiveMegabytes)->Unit(benchmark::kMillisecond);

void ScanWorld(benchmark::State& state) {
    const MadeUpWorld& world = World();
    for (auto _ : state) ScanOf(world);
}
BENCHMARK(ScanWorld)->Unit(benchmark::kMillisecond);

void ReadAirportsOfTheWorld(benchmark::State& state) {
    const MadeUpWorld& world = ScannedWorld();
    std::size_t memory = 0;
    for (auto _ : state) {
        const AirportList airports = ReadDatabase(world.AppFolder());
        memory = airports.MemoryInUse();
    }
    const auto fileSize = std::filesystem::file_size(world.AppFolder() + "/world_airports.dat");
    state.counters["file_mb"] = static_cast<double>(fileSize) / 1e6;
    state.counters["memory_per_file_byte"] = static_cast<double>(memory) / static_cast<double>(fileSize);
}
BENCHMARK(ReadAirportsOfTheWorld)->Unit(benchmark::kMillisecond);

void SelectAirportAndLoadTerrain(benchmark::State& state) {
    const MadeUpWorld& world = ScannedWorld();
    const AirportList airports = ReadDatabase(world.AppFolder());
    const std::string label = AirportLabel(airports.Fields(airports.Count() / 2));
    for (auto _ : state) {
        Station station;
        const auto box = SelectAirport(station, airports, label);
        LoadTerrain(station, world.AppFolder(), box.value());
        benchmark::DoNotOptimize(station);
    }
}
BENCHMARK(SelectAirportAndLoadTerrain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace corvenna
