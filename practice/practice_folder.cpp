#include "practice/practice_folder.h"

#include <fmt/format.h>

#include <algorithm>

#include "practice/magnetic_field.h"
#include "practice/practice_airports.h"
#include "practice/world_writer.h"
#include "world/airport_database.h"
#include "world/airport_selection.h"
#include "world/files.h"
#include "world/magnetic_table.h"
#include "world/scenery_scan.h"

namespace corvenna {

namespace {

namespace fs = std::filesystem;

constexpr double PracticeYear = 2002.0;
constexpr std::size_t FewAirports = 20;  // that many a complaint can name
constexpr std::string_view WorldName = "practice-world";

void WriteWorld(const fs::path& world, const fs::path& data) {
    fs::remove_all(world);  // what an interrupted run has left
    WritePracticeWorld(world, LoadPracticeAirports(data / "practice-airports.json"), {},
                       WholeDegreeTable(MagneticField::Load(data / "igrf.json"), PracticeYear));
}

void ScanWorld(const fs::path& world, const fs::path& folder) {
    BeginDatabase(BytesOf(world), BytesOf(folder));
    Station station;
    LoadMagVarOf(BytesOf(world), station);
    ScanObserver nobody;
    SceneryScan scan(station, BytesOf(world), nobody);
    while (scan.Tick()) {
    }
    FinishDatabase(scan, BytesOf(world), BytesOf(folder));
}

std::string FindLabel(const std::vector<std::string>& labels, std::string_view codeOrLabel) {
    const std::string code = fmt::format(" ({})", codeOrLabel);
    const auto fits = [&](const std::string& label) { return label == codeOrLabel || label.ends_with(code); };
    const auto label = std::find_if(labels.begin(), labels.end(), fits);
    if (label != labels.end()) return *label;
    if (labels.size() > FewAirports) {
        throw std::runtime_error(fmt::format("there is no airport {} among {}", codeOrLabel, labels.size()));
    }
    throw std::runtime_error(
        fmt::format("there is no airport {}; known are {}", codeOrLabel, fmt::join(labels, ", ")));
}

}  // namespace

void CompletePracticeFolder(const fs::path& folder, const fs::path& data,
                            const std::function<void(std::string_view)>& tell) {
    fs::create_directories(folder);
    if (!DatabaseIsThere(BytesOf(folder))) {
        const fs::path world = fs::absolute(folder) / WorldName;
        tell(fmt::format("The first time here: making a practice world and its airport database in {}",
                         BytesOf(folder)));
        WriteWorld(world, data);
        ScanWorld(world, folder);
    }
    if (!fs::exists(folder / TerrainName)) fs::copy_file(data / TerrainName, folder / TerrainName);
}

std::vector<std::string> AirportLabels(const fs::path& folder) {
    const AirportList airports = ReadDatabase(BytesOf(folder));
    std::vector<std::string> labels;
    labels.reserve(static_cast<std::size_t>(airports.Count()));
    for (std::int32_t i = 0; i < airports.Count(); ++i) labels.push_back(AirportLabel(airports.Fields(i)));
    return labels;
}

void SelectByName(Station& station, const fs::path& folder, std::string_view codeOrLabel) {
    const std::string label = FindLabel(AirportLabels(folder), codeOrLabel);
    LoadMagVarOf(ReadConfig(BytesOf(folder)).SimFolder, station);
    PrepareStation(station, BytesOf(folder), label);
}

}  // namespace corvenna
