#include "fuzz/fuzz_input.h"
#include "world/byte_reader.h"
#include "world/errors.h"
#include "world/facility_layout.h"
#include "world/magnetic_table.h"

namespace {

using namespace corvenna;

/// The file's head from the input, the rest blank up to a length that the input names: a table is longer than
/// a fuzzer's inputs should be.
std::string FileOf(std::string_view input) {
    constexpr std::uint32_t LongestFile = 1 << 18;
    const std::size_t length = TakeNumber(input, 4) % LongestFile;
    std::string file(input);
    if (file.size() < length) file.resize(length);
    return file;
}

enum class Table { Damaged, None, Whole };

Table Expected(std::string_view file) {
    const auto size = static_cast<std::int64_t>(file.size());
    if (size < facility::magdec::TableOffset + 4) return Table::Damaged;
    const std::int64_t at = ByteReader::LongAt(reinterpret_cast<const std::uint8_t*>(file.data()) +
                                               facility::magdec::TableOffset);
    if (at < 1) return Table::None;
    const auto end = at + facility::magdec::TableHead + 2 * static_cast<std::int64_t>(MagVarGridSize);
    return end <= size ? Table::Whole : Table::Damaged;
}

}  // namespace

/// Any bytes as magdec.bgl: read when the whole table is there, refused without a change when it is not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::int16_t> untouched(MagVarGridSize, 32767);
    static Station station;
    station.MagVarGrid = untouched;
    const std::string file = FileOf(AsText(data, size));
    try {
        LoadMagVarBytes(file, station, "magdec");
        Require(Expected(file) != Table::Damaged, "a damaged file is refused");
    } catch (const FileError&) {
        Require(Expected(file) == Table::Damaged, "a sound file is read");
    }
    Require(station.MagVarGrid.size() == MagVarGridSize, "the grid keeps its size");
    Require(Expected(file) == Table::Whole || station.MagVarGrid == untouched, "no table, no change");
    return 0;
}
