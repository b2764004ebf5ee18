#include "tools/terrain/raw_grid.h"

#include <fmt/format.h>

#include "tools/terrain/input_file.h"
#include "tools/terrain/number_text.h"
#include "world/errors.h"

namespace corvenna {

namespace {

constexpr std::size_t BytesPerSample = 2;

void SetKey(RawGridForm& form, std::string_view key, std::string_view value) {
    const auto fail = [&](std::string_view expected) {
        throw FileError(form.File, fmt::format("{}={}: expected {}", key, value, expected));
    };
    const auto whole = [&](int lowest, int highest) {
        const auto number = ParseWhole(value, lowest, highest);
        if (!number) fail(fmt::format("a whole number from {} to {}", lowest, highest));
        return *number;
    };
    const auto degrees = [&] {
        const auto number = ParseReal(value);
        if (!number) fail("a number of degrees");
        return *number;
    };
    const auto oneOf = [&](std::string_view first, std::string_view second) {
        if (value != first && value != second) fail(fmt::format("{} or {}", first, second));
        return value == second;
    };
    if (key == "order")
        form.Order = oneOf("little", "big") ? ByteOrder::Big : ByteOrder::Little;
    else if (key == "rows")
        form.Rows = whole(1, LongestGridSide);
    else if (key == "columns")
        form.Columns = whole(1, LongestGridSide);
    else if (key == "north")
        form.North = degrees();
    else if (key == "south")
        form.South = degrees();
    else if (key == "west")
        form.West = degrees();
    else if (key == "east")
        form.East = degrees();
    else if (key == "samples")
        form.Stand = oneOf("cells", "points") ? SampleStand::Points : SampleStand::Cells;
    else if (key == "from")
        form.FromSouth = oneOf("north", "south");
    else if (key == "void")
        form.Void = whole(INT16_MIN, INT16_MAX);
    else
        throw FileError(form.File, fmt::format("\"{}\" is no key of a raw grid", key));
}

}  // namespace

RawGridForm ParseRawGridForm(std::string_view text) {
    RawGridForm form;
    std::size_t comma = text.find(',');
    form.File = text.substr(0, comma);
    while (comma != std::string_view::npos) {
        text.remove_prefix(comma + 1);
        comma = text.find(',');
        const std::string_view pair = text.substr(0, comma);
        const std::size_t equals = pair.find('=');
        if (equals == std::string_view::npos) {
            throw FileError(form.File, fmt::format("\"{}\" is not of the form key=value", pair));
        }
        SetKey(form, pair.substr(0, equals), pair.substr(equals + 1));
    }
    return form;
}

GridShape ShapeOf(const RawGridForm& form) {
    const bool points = form.Stand == SampleStand::Points;
    if (points && (form.Rows < 2 || form.Columns < 2)) {
        throw FileError(form.File, "a grid of points needs two rows and two columns at least");
    }
    const double latitudeStep = (form.North - form.South) / (points ? form.Rows - 1 : form.Rows);
    const double longitudeStep = (form.East - form.West) / (points ? form.Columns - 1 : form.Columns);
    const double inset = points ? 0 : 0.5;
    GridShape shape;
    shape.File = form.File;
    shape.Rows = form.Rows;
    shape.Columns = form.Columns;
    shape.LatitudeStep = form.FromSouth ? latitudeStep : -latitudeStep;
    shape.LongitudeStep = longitudeStep;
    shape.FirstLatitude =
        form.FromSouth ? form.South + inset * latitudeStep : form.North - inset * latitudeStep;
    shape.FirstLongitude = form.West + inset * longitudeStep;
    shape.North = form.North;
    shape.South = form.South;
    shape.West = form.West;
    shape.East = form.East;
    shape.EdgeSamplesCountTwice = points;
    return shape;
}

void DecodeHeights(std::span<const char> bytes, ByteOrder order, int voidMark, std::span<std::int16_t> into) {
    for (std::size_t i = 0; i < into.size(); ++i) {
        const auto first = static_cast<std::uint8_t>(bytes[2 * i]);
        const auto second = static_cast<std::uint8_t>(bytes[2 * i + 1]);
        const int word = order == ByteOrder::Little ? first | second << 8 : first << 8 | second;
        const auto height = static_cast<std::int16_t>(word);
        into[i] = height == voidMark ? CellGrid::NoData : height;
    }
}

void AddRawGrid(CellGrid& cells, const RawGridForm& form, const Progress& progress) {
    GridPlacing placing(cells, ShapeOf(form));
    InputFile file(form.File);
    const auto columns = static_cast<std::size_t>(form.Columns);
    std::vector<char> bytes(columns * BytesPerSample);
    std::vector<std::int16_t> heights(columns);
    for (int row = 0; row < form.Rows; ++row) {
        progress(form.File, static_cast<double>(row) / form.Rows);
        if (const std::size_t got = file.Read(bytes); got < bytes.size()) {
            throw FileError(form.File, fmt::format("ends at byte {} in row {} of {} (rows of {} samples)",
                                                   static_cast<std::size_t>(row) * bytes.size() + got,
                                                   row + 1, form.Rows, form.Columns));
        }
        DecodeHeights(bytes, form.Order, form.Void, heights);
        placing.AddRow(heights);
    }
    char oneMore[1];
    if (file.Read(oneMore) > 0) {
        throw FileError(form.File,
                        fmt::format("is longer than {} rows of {} samples", form.Rows, form.Columns));
    }
    placing.Finish();
}

}  // namespace corvenna
