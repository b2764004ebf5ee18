// The terrain file that is shipped, held against its inputs and against summits of common knowledge.

#include <algorithm>
#include <cmath>
#include <sstream>

#include "terrain/terrain_scene.h"
#include "tools/terrain/raw_grid.h"
#include "tools/terrain/summits.h"
#include "tools/terrain/terrain_points.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

const std::string Data = "../data/";

/// The points of the shipped file, read as lines of three numbers.
std::vector<Summit> ShippedPoints() {
    std::istringstream text(BytesOf(Data + "world_terrain.db"));
    std::vector<Summit> points;
    Summit point;
    while (text >> point.Latitude >> point.Longitude >> point.Elevation) points.push_back(point);
    EXPECT_TRUE(text.eof()) << "line " << points.size() + 1;
    return points;
}

TEST(ShippedTerrain, IsRebuiltByteForByteFromItsInputs) {
    CellGrid cells;
    AddRawGrid(cells, ParseRawGridForm(Data + "terrain-base-5min.i16.gz"), NoProgress);
    std::vector<Summit> peaks;
    std::vector<Summit> extra;
    ReadSummits(Data + "peaks.csv.gz", peaks);
    ReadSummits(Data + "terrain-extra.csv", extra);
    const std::string rebuilt = TerrainText(TerrainPoints(cells, peaks, extra, {}, NoProgress));
    const std::string shipped = BytesOf(Data + "world_terrain.db");
    EXPECT_EQ(rebuilt.size(), shipped.size());
    EXPECT_TRUE(rebuilt == shipped);
}

TEST(ShippedTerrain, HoldsItsPointsSortedAndWithoutRepetitions) {
    const std::vector<Summit> points = ShippedPoints();
    EXPECT_EQ(points.size(), 219344u);
    const auto key = [](const Summit& p) { return std::tuple(p.Latitude, p.Longitude, p.Elevation); };
    EXPECT_TRUE(std::adjacent_find(points.begin(), points.end(), [&](const Summit& a, const Summit& b) {
                    return key(a) >= key(b);
                }) == points.end());
}

struct NamedSummit {
    const char* Name;
    double Latitude, Longitude;
    int True;   // metres
    int Found;  // the highest point of the file within 5 nm
};

constexpr NamedSummit NamedSummits[] = {
    {"Everest", 27.988, 86.925, 8849, 8849},
    {"K2", 35.881, 76.513, 8611, 8611},
    {"Kangchenjunga", 27.703, 88.147, 8586, 8586},
    {"Dhaulagiri I", 28.697, 83.493, 8167, 8167},
    {"Manaslu", 28.550, 84.560, 8163, 8163},
    {"Nanga Parbat", 35.237, 74.589, 8126, 8126},
    {"Annapurna I", 28.596, 83.820, 8091, 8091},
    {"Nanda Devi", 30.376, 79.971, 7816, 7816},
    {"Tirich Mir", 36.255, 71.842, 7708, 7708},
    {"Namcha Barwa", 29.631, 95.055, 7782, 7782},
    {"Gongga Shan", 29.595, 101.880, 7556, 7556},
    {"Muztagh Ata", 38.276, 75.116, 7509, 7509},
    {"Ismoil Somoni", 38.943, 72.016, 7495, 7495},
    {"Jengish Chokusu (Pobeda)", 42.035, 80.130, 7439, 7439},
    {"Lenin Peak", 39.344, 72.877, 7134, 7134},
    {"Damavand", 35.955, 52.110, 5610, 5610},
    {"Ararat", 39.702, 44.298, 5137, 5137},
    {"Elbrus", 43.352, 42.438, 5642, 5642},
    {"Kazbek", 42.700, 44.518, 5047, 5047},
    {"Mont Blanc", 45.833, 6.865, 4808, 4808},
    {"Dufourspitze (Monte Rosa)", 45.937, 7.867, 4634, 4634},
    {"Matterhorn", 45.976, 7.659, 4478, 4478},
    {"Finsteraarhorn", 46.537, 8.126, 4274, 4274},
    {"Grossglockner", 47.074, 12.694, 3798, 3798},
    {"Triglav", 46.378, 13.837, 2864, 2864},
    {"Etna", 37.751, 14.993, 3357, 3357},
    {"Teide", 28.272, -16.642, 3715, 3715},
    {"Mulhacen", 37.053, -3.311, 3479, 3479},
    {"Aneto", 42.631, 0.657, 3404, 3404},
    {"Galdhopiggen", 61.636, 8.312, 2469, 2469},
    {"Ben Nevis", 56.797, -5.004, 1345, 1345},
    {"Hvannadalshnukur", 64.014, -16.677, 2110, 2110},
    {"Kilimanjaro", -3.076, 37.353, 5895, 5895},
    {"Mount Kenya", -0.152, 37.307, 5199, 5199},
    {"Ras Dashen", 13.236, 38.373, 4550, 4550},
    {"Toubkal", 31.060, -7.915, 4167, 4167},
    {"Thabana Ntlenyana", -29.468, 29.269, 3482, 3482},
    {"Mount Cameroon", 4.203, 9.172, 4095, 4095},
    {"Fuji", 35.361, 138.727, 3776, 3776},
    {"Yushan", 23.470, 120.957, 3952, 3952},
    {"Kinabalu", 6.075, 116.558, 4095, 4095},
    {"Kerinci", -1.697, 101.264, 3805, 3805},
    {"Puncak Jaya", -4.079, 137.158, 4884, 4884},
    {"Aoraki (Cook)", -43.595, 170.142, 3724, 3724},
    {"Ruapehu", -39.282, 175.569, 2797, 2797},
    {"Kosciuszko", -36.456, 148.263, 2228, 2228},
    {"Mauna Kea", 19.821, -155.468, 4207, 4207},
    {"Denali", 63.069, -151.006, 6190, 6190},
    {"Logan", 60.567, -140.405, 5959, 5959},
    {"Mount Saint Elias", 60.293, -140.929, 5489, 5489},
    {"Rainier", 46.853, -121.760, 4392, 4392},
    {"Shasta", 41.409, -122.195, 4322, 4322},
    {"Whitney", 36.579, -118.292, 4421, 4421},
    {"Elbert", 39.118, -106.445, 4401, 4401},
    {"Pico de Orizaba", 19.030, -97.268, 5636, 5636},
    {"Popocatepetl", 19.022, -98.628, 5426, 5426},
    {"Aconcagua", -32.653, -70.011, 6961, 6961},
    {"Ojos del Salado", -27.109, -68.541, 6893, 6893},
    {"Huascaran", -9.122, -77.604, 6768, 6768},
    {"Illimani", -16.654, -67.784, 6438, 6438},
    {"Chimborazo", -1.469, -78.817, 6268, 6268},
    {"Cotopaxi", -0.681, -78.438, 5897, 5897},
    {"Pico Cristobal Colon", 10.838, -73.687, 5730, 5730},
    {"Vinson", -78.525, -85.617, 4892, 4897},
    {"Erebus", -77.529, 167.153, 3794, 3794},
    {"Gunnbjorn Fjeld", 68.919, -29.899, 3694, 3694},
};

TEST(ShippedTerrain, IsNowhereBelowANamedSummit) {
    ASSERT_EQ(std::size(NamedSummits), 66u);
    const SummitIndex points(ShippedPoints());
    for (const NamedSummit& summit : NamedSummits) {
        const int found = points.HighestNear(summit.Latitude, summit.Longitude, 5, 0);
        EXPECT_EQ(found, summit.Found) << summit.Name;
        EXPECT_GE(found, summit.True) << summit.Name;
    }
}

TEST(ShippedTerrain, IsNowhereBelowAListedSummitOf150MetresOrMore) {
    std::vector<Summit> peaks;
    ReadSummits(Data + "peaks.csv.gz", peaks);
    ASSERT_EQ(peaks.size(), 4024u);
    const SummitIndex points(ShippedPoints());
    for (const Summit& peak : peaks) {
        if (peak.Elevation < LowestPoint) continue;
        EXPECT_GE(points.HighestNear(peak.Latitude, peak.Longitude, 1, 0), peak.Elevation)
            << peak.Latitude << " " << peak.Longitude;
    }
}

}  // namespace
}  // namespace corvenna
