#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <ctime>
#include <fstream>
#include <random>

#include "practice/bgl_writer.h"
#include "practice/made_up_airports.h"
#include "practice/world_writer.h"
#include "world/airport_database.h"
#include "world/airport_selection.h"
#include "world/facility_decoder.h"
#include "world/magnetic_table.h"
#include "world/scenery_scan.h"
#include "world/terrain.h"

namespace corvenna {
namespace {

namespace fs = std::filesystem;

constexpr int WorldAirports = 20000;
constexpr int TerrainLines = 200000;
constexpr std::size_t FiveMegabytes = 5'000'000;

// ---- What is read

const std::vector<std::int16_t>& NoVariation() {
    static const std::vector<std::int16_t> table(MagVarGridSize);
    return table;
}

const std::vector<PracticeAirport>& MadeUp() {
    constexpr std::uint64_t Seed = 2002;
    static const auto airports = MakeUpAirports(WorldAirports, Seed, NoVariation());
    return airports;
}

const std::vector<PracticeAirport>& Real() {
    static const auto airports = LoadPracticeAirports(CORVENNA_BENCH_DATA "/practice-airports.json");
    return airports;
}

/// A BGL file of 5 MB with these airports, again and again if they are few, and the byte more that the
/// decoder wants.
std::string FiveMegabytesOf(const std::vector<PracticeAirport>& airports) {
    const std::size_t some = std::min<std::size_t>(airports.size(), 200);
    const auto sizeOfSome = FacilityFile({airports.data(), some}, {}).size();
    std::vector<PracticeAirport> enough;
    for (std::size_t i = 0; i < FiveMegabytes * some / sizeOfSome; ++i) {
        enough.push_back(airports[i % airports.size()]);
    }
    return FacilityFile(enough, {}) + '\0';
}

std::span<const std::uint8_t> AsBytes(const std::string& file) {
    return {reinterpret_cast<const std::uint8_t*>(file.data()), file.size()};
}

/// A folder for a simulator and a database, gone when the program ends.
class WorkFolder {
  public:
    WorkFolder()
        : folder_(fs::temp_directory_path() / fmt::format("corvenna-bench-{}", std::random_device{}())) {
        fs::create_directories(AppFolder());
    }
    ~WorkFolder() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    std::string SimFolder() const { return (folder_ / "sim").string(); }
    std::string AppFolder() const { return (folder_ / "app").string(); }

  private:
    fs::path folder_;
};

/// All of a world of 20,000 airports but its scan, once for all benchmarks.
const WorkFolder& World() {
    static const WorkFolder world;
    static const bool written = [] {
        WritePracticeWorld(world.SimFolder(), {}, MadeUp(), NoVariation());
        return true;
    }();
    benchmark::DoNotOptimize(written);
    return world;
}

void Scan(const WorkFolder& world) {
    BeginDatabase(world.SimFolder(), world.AppFolder());
    Station station;
    LoadMagVarOf(world.SimFolder(), station);
    ScanObserver nobody;
    SceneryScan scan(station, world.SimFolder(), nobody);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, world.SimFolder(), world.AppFolder());
}

/// A scanned world with a terrain file.
const WorkFolder& ScannedWorld() {
    static const bool scanned = [] {
        Scan(World());
        std::ofstream terrain(World().AppFolder() + "/world_terrain.db");
        for (int i = 0; i < TerrainLines; ++i) {
            const int row = i / 400;
            terrain << fmt::format("{:.3f} {:.3f} {}\n", -80 + i % 400 * 0.4, -180 + row * 0.72, i % 5000);
        }
        return true;
    }();
    benchmark::DoNotOptimize(scanned);
    return World();
}

// ---- The scan

void DecodeFacilities(benchmark::State& state, const std::vector<PracticeAirport>& airports) {
    const std::string file = FiveMegabytesOf(airports);
    const Station station;
    for (auto _ : state) {
        AirportList list;
        ScanFacilities(AsBytes(file), station, list);
        benchmark::DoNotOptimize(list);
    }
    state.SetBytesProcessed(state.iterations() * std::ssize(file));
}

void DecodeSmallAirports(benchmark::State& state) { DecodeFacilities(state, MadeUp()); }
BENCHMARK(DecodeSmallAirports)->Unit(benchmark::kMillisecond);

void DecodeLargeAirports(benchmark::State& state) { DecodeFacilities(state, Real()); }
BENCHMARK(DecodeLargeAirports)->Unit(benchmark::kMillisecond);

double ThreadMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The longest a window has to wait: a tick that reads a file of 5 MB, when the list is already long. Told in
/// processor time, which a busy machine does not blur.
void ScanTickOfFiveMegabytes(benchmark::State& state) {
    constexpr int Files = 20;
    const WorkFolder world;
    const fs::path folder = world.SimFolder();
    const std::string file = FiveMegabytesOf(MadeUp());
    fs::create_directories(folder / "a/scenery");
    std::ofstream(folder / "scenery.cfg") << "[Area.1]\nLocal=a\n";
    for (int i = 0; i < Files; ++i) std::ofstream(folder / fmt::format("a/scenery/{}.bgl", i)) << file;
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
    const WorkFolder& world = World();
    for (auto _ : state) Scan(world);
}
BENCHMARK(ScanWorld)->Unit(benchmark::kMillisecond);

// ---- The start of a station

void ReadAirportsOfTheWorld(benchmark::State& state) {
    const WorkFolder& world = ScannedWorld();
    std::size_t memory = 0;
    for (auto _ : state) {
        const AirportList airports = ReadDatabase(world.AppFolder());
        memory = airports.MemoryInUse();
    }
    const auto fileSize = fs::file_size(world.AppFolder() + "/world_airports.dat");
    state.counters["file_mb"] = static_cast<double>(fileSize) / 1e6;
    state.counters["memory_per_file_byte"] = static_cast<double>(memory) / static_cast<double>(fileSize);
}
BENCHMARK(ReadAirportsOfTheWorld)->Unit(benchmark::kMillisecond);

void SelectAirportAndLoadTerrain(benchmark::State& state) {
    const WorkFolder& world = ScannedWorld();
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
