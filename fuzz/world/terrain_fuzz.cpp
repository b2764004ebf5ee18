#include <algorithm>

#include "fuzz/fuzz_input.h"
#include "world/errors.h"
#include "world/terrain.h"

namespace {

corvenna::Station StationAtSeattle() {
    corvenna::Station station;
    station.AirportLatitude = 47.449;
    station.AirportLongitude = -122.309;
    return station;
}

}  // namespace

/// Any bytes as world_terrain.db. A line that makes no sense leaves the station as it was; else there are no
/// more mountains than lines, none of them higher than the highest terrain.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    static Station station = StationAtSeattle();
    constexpr SearchBox Box{.NorthLimit = 50.8, .SouthLimit = 44.1, .WestLimit = -127.3, .EastLimit = -117.3};
    const std::string_view file = AsText(data, size);
    station.Mountains.assign(1, {});
    station.MountainCount = 0;
    station.HighestTerrain = -1;
    try {
        LoadTerrainText(station, file, Box, "terrain");
    } catch (const FileError&) {
        Require(station.MountainCount == 0 && station.Mountains.size() == 1 && station.HighestTerrain == -1,
                "a damaged file changes nothing");
        return 0;
    }
    Require(station.MountainCount <= std::count(file.begin(), file.end(), '\n') + 1, "a mountain has a line");
    Require(std::ssize(station.Mountains) == station.MountainCount + 1, "one spare mountain");
    for (std::int32_t i = 0; i < station.MountainCount; ++i) {
        const GeoPoint& mountain = station.Mountains[static_cast<std::size_t>(i)];
        Require(mountain.Altitude <= station.HighestTerrain - 2000,
                "no mountain is above the highest terrain");
        Require(Box.Holds(mountain.Latitude, mountain.Longitude), "a mountain is in the box");
    }
    return 0;
}
