// Writes seeds for the fuzz targets of world/: small sound files, made as the practice world is made.

#include <fmt/format.h>

#include <exception>
#include <filesystem>

#include "fuzz/fuzz_input.h"
#include "practice/bgl_writer.h"
#include "practice/made_up_airports.h"
#include "world/airport_database.h"
#include "world/facility_decoder.h"
#include "world/files.h"

namespace {

using namespace corvenna;

constexpr int SmallAirports = 12;

/// A little-endian number ahead of a file, which some targets take off their input.
std::string Prefixed(std::int32_t number, std::string_view file) {
    std::string seed;
    for (int i = 0; i < 4; ++i) seed += static_cast<char>(static_cast<std::uint32_t>(number) >> 8 * i & 0xFF);
    return seed.append(file);
}

/// Numbers the seeds of one target.
class SeedFolder {
  public:
    SeedFolder(const std::filesystem::path& seeds, std::string_view target) : folder_(seeds / target) {
        std::filesystem::create_directories(folder_);
    }

    void Add(std::string_view seed) {
        ReplaceFile((folder_ / fmt::format("seed{:02}", ++written_)).string(), {seed});
    }

  private:
    std::filesystem::path folder_;
    int written_ = 0;
};

/// Made-up airports without anything big.
std::vector<PracticeAirport> Airports() {
    constexpr std::uint64_t Seed = 7;
    auto airports = MakeUpAirports(SmallAirports, Seed, std::vector<std::int16_t>(MagVarGridSize));
    for (PracticeAirport& airport : airports) {
        if (airport.TaxiPoints.size() < 60) continue;
        airport.TaxiPoints.clear();
        airport.TaxiPaths.clear();
        airport.Parking.clear();
    }
    return airports;
}

void WriteSceneryAndDatabases(const std::filesystem::path& seeds) {
    SeedFolder scenery(seeds, "facility_decoder_fuzz");
    SeedFolder databases(seeds, "airport_list_fuzz");
    const Station station;
    for (const PracticeAirport& airport : Airports()) {
        for (const bool second : {false, true}) {
            const std::span<const PracticeAirport> one(&airport, 1);
            const std::span<const PracticeAirport> none;
            std::string file = second ? FacilityFile(none, one) : FacilityFile(one, none);
            scenery.Add(file);

            AirportList list;
            file += '\0';
            ScanFacilities({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()}, station, list);
            const std::string spare = AirportList::SpareRecord();
            databases.Add(Prefixed(list.Count(), Joined(list.Pieces()) + spare));
        }
    }
    databases.Add(Prefixed(0, AirportList::SpareRecord()));
}

void WriteTexts(const std::filesystem::path& seeds) {
    SeedFolder config(seeds, "config_record_fuzz");
    config.Add(ConfigBytes({.SimFolder = "C:\\FS2002", .AirportCount = 20000}));
    config.Add(ConfigBytes({}));

    SeedFolder library(seeds, "scenery_config_fuzz");
    library.Add(
        "[General]\r\nTitle=World\r\n\r\n[Area.001]\r\nTitle=Default\r\nTexture_ID=1\r\n"
        "Local=Scenery\\NAmer\r\nRemote=\r\nActive=TRUE\r\nRequired=FALSE\r\nLayer=1\r\n");
    library.Add("\xEF\xBB\xBF[Area.1]\nTitle=A\nLocal=a/b\n[Area.1]\nTitle=B\nLocal=\\\\server\\share");
    library.Add(" [area.2] \r\ntitle = x\r\nlocal=Scenery\r\n[other]\r\n[AREA.3]\r\nLOCAL=scenery");

    SeedFolder terrain(seeds, "terrain_fuzz");
    terrain.Add("46.853 -121.760 4392\n47.5 -122.3 100.5\n+48 -122 -3.25\n");
    terrain.Add("47 -122 1000\r\n0 0 0\r\n-78.525 -85.617 4892.0000");
}

void WriteMagneticTables(const std::filesystem::path& seeds) {
    SeedFolder tables(seeds, "magnetic_table_fuzz");
    const std::string file = MagneticTableFile(std::vector<std::int16_t>(MagVarGridSize));
    const auto size = static_cast<std::int32_t>(file.size());
    for (const std::int32_t length : {size, size - 1}) tables.Add(Prefixed(length, file.substr(0, 114)));
    tables.Add(Prefixed(0, file.substr(0, 113)));
}

/// An object list of one entry, and behind it an object of each opcode length that can be computed.
void WriteObjects(const std::filesystem::path& seeds) {
    constexpr int ListEntryLength = 9;
    constexpr int ListEnd = ListEntryLength + 1;
    constexpr std::string_view Streams[] = {
        {"\x22\x01\x76\x00\x00", 5},  // two of a fixed length, then an end
        {"\x15\x00\x01\x00\x02\x00", 6},
        {"\x36\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x05\x00", 16},
        {"\x8C\x00\x00\x00\x00\x00\x00\x00\x02\x00", 10},
        {"\x90\x00\x03\x00", 4},
        {"\x43\x00\x00\x00", 4},
    };
    SeedFolder objects(seeds, "object_walker_fuzz");
    for (const std::string_view stream : Streams) {
        constexpr char StreamRoom = 40;
        std::string file({21, 0, 0, 0, 0, ListEnd, 0, 0, 0, 0});
        file.append({5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 12 + StreamRoom, 0}).append(stream);
        file.resize(std::size_t{ListEnd} + 12 + StreamRoom);
        objects.Add(Prefixed(0, file));
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::invalid_argument("usage: world_seeds FOLDER");
    const std::filesystem::path seeds = argv[1];
    WriteSceneryAndDatabases(seeds);
    WriteTexts(seeds);
    WriteMagneticTables(seeds);
    WriteObjects(seeds);
    return 0;
} catch (const std::exception& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
}
