#include "bench/world/made_up_world.h"

#include <fmt/format.h>

#include <fstream>
#include <random>

#include "world/bgl_builder.h"

namespace corvenna {

namespace {

using Random = std::mt19937;

int Between(Random& random, int low, int high) { return std::uniform_int_distribution(low, high)(random); }

float Metres(Random& random, float reach) {
    return std::uniform_real_distribution<float>(-reach, reach)(random);
}

/// From a strip with a handful of points to a large airport.
TaxiBlockBuilder Network(Random& random, int points) {
    std::vector<TaxiBlockBuilder::Point> nodes;
    std::vector<TaxiBlockBuilder::Path> paths;
    std::vector<TaxiBlockBuilder::Spot> spots;
    for (int i = 0; i < points; ++i) {
        nodes.push_back({Between(random, 1, 2), Metres(random, 1500), Metres(random, 1500)});
        paths.push_back({0, i, Between(random, 0, points - 1), Between(random, 0, 9)});
        if (i % 4 == 0) paths.push_back({1, i, i + 1, 0});
        if (i % 4 != 1) continue;
        paths.push_back({2, i, static_cast<int>(spots.size()), 0});
        spots.push_back(
            {Metres(random, 900), Metres(random, 900), 18, PackedSpot(i, Between(random, 1, 37))});
    }
    return TaxiBlockBuilder().Points(nodes).Spots(spots).Paths(paths).Names(
        {"A", "B", "C", "D", "E", "F1", "F2", "G", "H", ""});
}

AirportBuilder MadeUpAirport(Random& random, int number) {
    const double latitude = Between(random, -60000, 70000) / 1000.0;
    const double longitude = Between(random, -180000, 179000) / 1000.0;
    const int runway = Between(random, 1, 36);
    const int length = Between(random, 1500, 12000);
    AirportBuilder airport;
    airport.Position(latitude, longitude)
        .Ident(fmt::format("X{:04X}", number))
        .Runway(length, 150, runway)
        .RunwayExtra(Between(random, 3, 4))
        .RunwayEnd(latitude + 0.01, longitude, Between(random, 0, 2000), runway * 10, runway)
        .RunwayEnd(latitude - 0.01, longitude, Between(random, 0, 2000), runway * 10 + 180,
                   (runway + 17) % 36 + 1);
    if (length > 5000) airport.Com(5, 0x1219000).Com(6, 0x1183000).Com(8, 0x1192500).Com(10, 0x1285000);
    airport.Com(4, 0x1228000);
    if (number % 3 != 0) airport.TaxiBlock(Network(random, length / 100));
    return airport;
}

}  // namespace

std::vector<std::uint8_t> MadeUpScenery(int airports, unsigned seed) {
    Random random(seed);
    BglBuilder file;
    for (int i = 0; i < airports; ++i)
        file.First(fmt::format("Made-up Field {}", i), MadeUpAirport(random, i));
    return file.Buffer();
}

MadeUpWorld::MadeUpWorld(int airports)
    : folder_(std::filesystem::temp_directory_path() /
              fmt::format("corvenna-bench-{}", std::random_device{}())) {
    constexpr int AirportsPerFile = 200;
    namespace fs = std::filesystem;
    fs::create_directories(folder_ / "app");
    fs::create_directories(folder_ / "sim/scenery");
    std::ofstream(folder_ / "sim/FS2002.EXE");
    std::ofstream(folder_ / "sim/scenery/magdec.bgl") << std::string(200000, '\0');
    std::ofstream config(folder_ / "sim/scenery.cfg");
    for (int file = 0; file * AirportsPerFile < airports; ++file) {
        const auto area = fmt::format("Area{}", file / 4);
        if (file % 4 == 0)
            config << "[Area." << file << "]\r\nTitle=" << area << "\r\nLocal=" << area << "\r\n";
        fs::create_directories(folder_ / "sim" / area / "scenery");
        const auto bytes = MadeUpScenery(AirportsPerFile, static_cast<unsigned>(file));
        std::ofstream(folder_ / "sim" / area / "scenery" / fmt::format("AP{}.BGL", file), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes) - 1);
    }
}

MadeUpWorld::~MadeUpWorld() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace corvenna
