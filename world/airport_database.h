#pragma once

#include <string_view>

#include "world/airport.h"
#include "world/airport_list.h"

/// The two files of the airport database in the folder the program was started in. A scan makes both;
/// they belong together, and neither has a header or a checksum. All failures of reading and
/// writing are FileErrors that name the file, the place and what was expected. Any thread.
namespace corvenna {

inline constexpr std::string_view ConfigName = "Corvenna.cfg";
inline constexpr std::string_view AirportsName = "world_airports.dat";
inline constexpr std::string_view TerrainName = "world_terrain.db";

/// Reads Corvenna.cfg.
ConfigRecord ReadConfig(std::string_view appFolder);

/// The record in the content of Corvenna.cfg, what follows it ignored; DamagedData when it is not whole.
ConfigRecord ConfigFromBytes(std::string_view content);

/// A record as it stands on disk. Throws std::length_error for a folder of more than 65535 bytes.
std::string ConfigBytes(const ConfigRecord& config);

/// Writes Corvenna.cfg from its first byte. What an earlier, longer one holds beyond that stays.
void WriteConfig(std::string_view appFolder, const ConfigRecord& config);

/// Reads so many airports, and the spare record behind them, from world_airports.dat.
AirportList ReadAirports(std::string_view appFolder, std::int32_t airportCount);

/// Writes world_airports.dat, spare record included.
void WriteAirports(std::string_view appFolder, const AirportList& airports);

/// Both files read, the count being that of the configuration.
AirportList ReadDatabase(std::string_view appFolder);

/// The test at each start: a database is there if both files are. A file without the other one is deleted; a
/// configuration that can't be deleted counts as a database, and what it lacks shows when it is read.
bool DatabaseIsThere(std::string_view appFolder);

/// Deletes world_airports.dat, if it is there.
void RemoveAirports(std::string_view appFolder);

/// Deletes both files, as far as they are there.
void RemoveDatabase(std::string_view appFolder);

/// Whether a folder is the simulator's main folder: it holds fs2002.exe.
bool IsSimFolder(std::string_view folder);

}  // namespace corvenna
