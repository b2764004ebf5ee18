#include "world/magnetic_table.h"

#include "world/byte_reader.h"
#include "world/facility_layout.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::string_view MagdecName = "scenery/magdec.bgl";

std::vector<std::int16_t> ReadGrid(const ByteReader& reader, std::int64_t firstValue) {
    std::vector<std::int16_t> grid(MagVarGridSize);
    for (std::size_t entry = 0; entry < grid.size(); ++entry) {
        grid[entry] = reader.ReadShort(firstValue + 2 * static_cast<std::int64_t>(entry));
    }
    return grid;
}

}  // namespace

void LoadMagVar(std::string_view path, Station& station) {
    LoadMagVarBytes(ReadWholeFile(path), station, path);
}

void LoadMagVarBytes(std::string_view content, Station& station, std::string_view name) {
    const ByteReader reader({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    try {
        const std::int32_t table = reader.ReadLong(facility::magdec::TableOffset);
        if (table < 1) return;
        station.MagVarGrid = ReadGrid(reader, std::int64_t{table} + facility::magdec::TableHead);
    } catch (const DamagedData& damage) {
        throw FileError(name, damage.what());
    }
}

void LoadMagVarOf(std::string_view simFolder, Station& station) {
    LoadMagVar(JoinPath(simFolder, MagdecName), station);
}

}  // namespace corvenna
