#include "tools/terrain/hgt_tile.h"

#include <fmt/format.h>

#include <optional>

#include "station/text.h"
#include "tools/terrain/input_file.h"
#include "tools/terrain/number_text.h"
#include "world/errors.h"

namespace corvenna {

namespace {

constexpr int Sides[] = {1201, 3601};
constexpr std::size_t TileBytes(int side) { return std::size_t{2} * static_cast<unsigned>(side * side); }

/// Degrees out of a hemisphere letter and digits.
std::optional<int> Corner(std::string_view text, char positive, char negative, int highest) {
    const char letter = UpperCase(text.front());
    const bool digit = text[1] >= '0' && text[1] <= '9';  // and no sign
    const auto degrees = digit ? ParseWhole(text.substr(1), 0, highest) : std::nullopt;
    if (!degrees || (letter != positive && letter != negative)) return std::nullopt;
    return letter == positive ? *degrees : -*degrees;
}

}  // namespace

RawGridForm HgtForm(const std::string& path, std::size_t bytes) {
    const std::string_view name = std::string_view(path).substr(path.find_last_of("/\\") + 1);
    constexpr std::size_t CornerLength = 7;
    const auto south = name.size() < CornerLength ? std::nullopt : Corner(name.substr(0, 3), 'N', 'S', 90);
    const auto west = name.size() < CornerLength ? std::nullopt : Corner(name.substr(3, 4), 'E', 'W', 180);
    if (!south || !west) {
        throw FileError(path, "the name does not begin with the south-west corner, such as N47E011");
    }
    for (const int side : Sides) {
        if (bytes != TileBytes(side)) continue;
        RawGridForm form;
        form.File = path;
        form.Order = ByteOrder::Big;
        form.Rows = form.Columns = side;
        form.South = *south;
        form.North = *south + 1;
        form.West = *west;
        form.East = *west + 1;
        form.Stand = SampleStand::Points;
        return form;
    }
    throw FileError(
        path, fmt::format("{} bytes; a tile has {} or {}", bytes, TileBytes(Sides[0]), TileBytes(Sides[1])));
}

void AddHgtTile(CellGrid& cells, const std::string& path, const Progress& progress) {
    progress(path, 0);
    const std::string bytes = InputFile(path).ReadAll(TileBytes(Sides[1]));
    const RawGridForm form = HgtForm(path, bytes.size());
    GridShape shape = ShapeOf(form);
    shape.EdgeSamplesCountTwice = false;  // the neighbouring tile has the same samples
    GridPlacing placing(cells, shape);
    const auto columns = static_cast<std::size_t>(form.Columns);
    std::vector<std::int16_t> heights(columns);
    for (int row = 0; row < form.Rows; ++row) {
        const std::size_t begin = static_cast<std::size_t>(row) * columns * 2;
        DecodeHeights(std::span(bytes).subspan(begin, columns * 2), form.Order, form.Void, heights);
        placing.AddRow(heights);
    }
    placing.Finish();
}

}  // namespace corvenna
