#include "world/airport_database.h"

#include "world/files.h"
#include "world/record_stream.h"

namespace corvenna {

namespace {

constexpr std::string_view SimulatorName = "fs2002.exe";

/// Where a file of the database stands, or is to stand if there is none yet.
std::string DatabaseFile(std::string_view appFolder, std::string_view name) {
    std::string path = JoinPath(appFolder, name);
    const auto found = FindPath(path);
    return found ? BytesOf(*found) : path;
}

}  // namespace

ConfigRecord ReadConfig(std::string_view appFolder) {
    const std::string path = DatabaseFile(appFolder, ConfigName);
    try {
        return ConfigFromBytes(ReadWholeFile(path));
    } catch (const DamagedData& damage) {
        throw FileError(path, damage.what());
    }
}

ConfigRecord ConfigFromBytes(std::string_view content) {
    ConfigRecord config;
    RecordReader reader(content, 0);
    reader.Text(config.SimFolder);
    reader.Number(config.AirportCount);
    return config;
}

std::string ConfigBytes(const ConfigRecord& config) {
    std::string bytes;
    RecordWriter writer(bytes);
    writer.Text(config.SimFolder);
    writer.Number(config.AirportCount);
    return bytes;
}

void WriteConfig(std::string_view appFolder, const ConfigRecord& config) {
    const std::string path = DatabaseFile(appFolder, ConfigName);
    const std::string fresh = ConfigBytes(config);
    std::string beyond = FindPlainFile(path) ? ReadWholeFile(path) : std::string();
    beyond.erase(0, fresh.size());
    ReplaceFile(path, {fresh, beyond});
}

AirportList ReadAirports(std::string_view appFolder, std::int32_t airportCount) {
    const std::string path = DatabaseFile(appFolder, AirportsName);
    try {
        return AirportList::FromBytes(ReadWholeFile(path), airportCount);
    } catch (const DamagedData& damage) {
        throw FileError(path, damage.what());
    }
}

void WriteAirports(std::string_view appFolder, const AirportList& airports) {
    const std::string spare = AirportList::SpareRecord();
    std::vector<std::string_view> pieces = airports.Pieces();
    pieces.push_back(spare);
    ReplaceFile(DatabaseFile(appFolder, AirportsName), pieces);
}

AirportList ReadDatabase(std::string_view appFolder) {
    return ReadAirports(appFolder, ReadConfig(appFolder).AirportCount);
}

bool DatabaseIsThere(std::string_view appFolder) {
    const auto isThere = [&](std::string_view name) {
        return FindPlainFile(JoinPath(appFolder, name)).has_value();
    };
    if (!isThere(AirportsName)) RemoveFile(DatabaseFile(appFolder, ConfigName));
    if (isThere(ConfigName)) return true;
    RemoveAirports(appFolder);
    return false;
}

void RemoveAirports(std::string_view appFolder) { RemoveFile(DatabaseFile(appFolder, AirportsName)); }

void RemoveDatabase(std::string_view appFolder) {
    RemoveAirports(appFolder);
    RemoveFile(DatabaseFile(appFolder, ConfigName));
}

bool IsSimFolder(std::string_view folder) {
    return FindPlainFile(JoinPath(folder, SimulatorName)).has_value();
}

}  // namespace corvenna
