#include "world/start_up.h"

#include "world/airport_database.h"
#include "world/files.h"

namespace corvenna {

namespace {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

}  // namespace

StartUp DecideStartUp(ProgramFields& program) {
    if (!FindPlainFile(JoinPath(program.AppFolder, TerrainName))) return StartUp::TerrainMissing;
    if (!DatabaseIsThere(program.AppFolder)) {
        program.DatabaseMissing = -1;
        return StartUp::ChooseSimFolder;
    }
    program.DatabaseMissing = 0;
    const ConfigRecord config = ReadConfig(program.AppFolder);
    program.SimFolder = config.SimFolder;
    program.AirportCount = config.AirportCount;
    return StartUp::ChooseAirport;
}

std::string WithoutLastSeparator(std::string_view folder) {
    if (!folder.empty() && IsSeparator(folder.back())) folder.remove_suffix(1);
    return std::string(folder);
}

std::string WithoutRootSeparator(std::string_view folder) {
    const bool driveRoot = folder.size() == 3 && folder[1] == ':' && IsSeparator(folder[2]);
    return std::string(folder.substr(0, driveRoot ? 2 : folder.size()));
}

}  // namespace corvenna
