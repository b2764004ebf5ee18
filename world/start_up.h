#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What the desktop program decides before its first window with controls. Any thread.
namespace corvenna {

/// The folders and the database that the windows hand on to each other.
struct ProgramFields {
    std::string AppFolder;  ///< where the program's own files are
    std::string SimFolder;  ///< the simulator's main folder
    std::int32_t AirportCount = 0;
    std::int16_t DatabaseMissing = 0;  ///< -1: the scenery is to be scanned first
};

enum class StartUp { TerrainMissing, ChooseSimFolder, ChooseAirport };

/// The decision at the start, from the files in AppFolder. A database that lacks one of its two files loses
/// the other one. Sets DatabaseMissing; for ChooseAirport also SimFolder and AirportCount, from Corvenna.cfg.
/// Without a terrain file nothing is touched. Throws FileError when Corvenna.cfg can't be read.
StartUp DecideStartUp(ProgramFields& program);

/// A folder without the separator at its end, if it has one.
std::string WithoutLastSeparator(std::string_view folder);

/// A folder as chosen or typed: a drive root, "C:\", loses its separator; anything else stays as it is.
std::string WithoutRootSeparator(std::string_view folder);

}  // namespace corvenna
