#include "world/taxi_block.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "station/numbers.h"
#include "station/text.h"
#include "world/facility_layout.h"

namespace corvenna {

namespace {

using namespace facility;

/// One list of the block, its elements checked to be there.
struct Sublist {
    std::int64_t Offset = 0;
    std::int16_t Count = 0;
    const std::uint8_t* Elements = nullptr;
};

std::string Decimal(std::int32_t number) {
    char digits[12];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    return std::string(digits, end);
}

/// The number that a text shows in plain decimal, if it does: no blank, no plus, no leading nought.
std::optional<std::int32_t> PlainDecimal(std::string_view text) {
    const bool negative = text.starts_with('-');
    const std::string_view digits = text.substr(negative ? 1 : 0);
    if (digits.starts_with('0') && text != "0") return std::nullopt;
    std::int32_t number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

double Metres(const std::uint8_t* word) {
    const double metres = ToSingle(ByteReader::LongAt(word));
    if (!std::isfinite(metres)) throw std::overflow_error("an offset or radius is no number");
    return metres;
}

// ---- The four lists

void ReadTaxiPoints(const Sublist& list, const TaxiContext& context, Airport& airport) {
    auto& points = airport.TaxiPoints.emplace(static_cast<std::size_t>(list.Count));
    airport.TaxiPointCount = list.Count;
    const std::uint8_t* element = list.Elements;
    for (TaxiPoint& point : points) {
        point.Kind = ByteReader::LongAt(element + taxi_point::Kind);
        point.Longitude = context.Projection.LongitudeAt(Metres(element + taxi_point::EastOffset));
        point.Latitude = context.Projection.LatitudeAt(Metres(element + taxi_point::NorthOffset));
        element += taxi_block::PointSize;
    }
}

/// "GATE A 12". The number is rounded, not cut, so a name code above 64 raises it and itself becomes
/// negative; a code that names nothing leaves the text of the spot before.
std::string SpotName(std::int32_t packed, TaxiContext& context) {
    const std::int32_t low = packed & parking_spot::PackedMask;
    const auto number = ToWhole<std::int32_t>(static_cast<double>(low) / parking_spot::NameCodes);
    const std::int32_t code = low - number * parking_spot::NameCodes;
    if (code >= 1 && code <= static_cast<std::int32_t>(std::size(SpotNames))) {
        context.SpotText = UpperCase(SpotNames[code - 1]);
    }
    return context.SpotText + ' ' + Decimal(number);
}

void ReadParkingSpots(const Sublist& list, TaxiContext& context, Airport& airport) {
    auto& spots = airport.ParkingSpots.emplace(static_cast<std::size_t>(list.Count));
    airport.ParkingSpotCount = list.Count;
    const std::uint8_t* element = list.Elements;
    for (ParkingSpot& spot : spots) {
        spot.Longitude = context.Projection.LongitudeAt(Metres(element + parking_spot::EastOffset));
        spot.Latitude = context.Projection.LatitudeAt(Metres(element + parking_spot::NorthOffset));
        spot.Radius = ToWhole<std::int32_t>(Metres(element + parking_spot::Radius) / MetresPerFoot);
        spot.Name = SpotName(ByteReader::LongAt(element + parking_spot::Packed), context);
        element += taxi_block::SpotSize;
    }
}

void ReadTaxiPaths(const Sublist& list, Airport& airport) {
    auto& paths = airport.TaxiPaths.emplace(static_cast<std::size_t>(list.Count));
    airport.TaxiPathCount = list.Count;
    const std::uint8_t* element = list.Elements;
    for (TaxiPath& path : paths) {
        path.Kind = ByteReader::LongAt(element + taxi_path::Kind);
        path.StartPoint = ByteReader::LongAt(element + taxi_path::StartPoint);
        path.EndPoint = ByteReader::LongAt(element + taxi_path::EndPoint);
        path.Name = Decimal(ByteReader::LongAt(element + taxi_path::NameIndex));
        element += taxi_block::PathSize;
    }
}

/// The names of the table, each one as it ends up on a path. The table is applied name by name, and a name
/// that is itself the number of a later one is then replaced by that.
std::vector<std::string> FinalNames(const ByteReader& reader, const Sublist& list) {
    std::vector<std::string> names(static_cast<std::size_t>(list.Count));
    for (std::int32_t i = list.Count - 1; i >= 0; --i) {
        std::string& name = names[static_cast<std::size_t>(i)];
        reader.ReadText(list.Offset + taxi_block::ListElements + std::int64_t{i} * taxi_block::NameSize,
                        taxi_block::NameSize, name);
        const auto later = PlainDecimal(name);
        if (later && *later > i && *later < list.Count) name = names[static_cast<std::size_t>(*later)];
    }
    return names;
}

void NameTaxiways(const ByteReader& reader, const Sublist& list, Airport& airport) {
    if (!airport.TaxiPaths) return;
    const std::vector<std::string> names = FinalNames(reader, list);
    for (TaxiPath& path : *airport.TaxiPaths) {
        if (path.Kind != TaxiPath::Taxiway) continue;
        const auto index = PlainDecimal(path.Name);
        if (index && *index >= 0 && *index < list.Count) path.Name = names[static_cast<std::size_t>(*index)];
    }
}

/// Runway paths get the name of the runway that they have the number of. One whose name is no number has
/// been through this already.
void NameRunwayPaths(std::int64_t offset, const TaxiContext& context, Airport& airport) {
    if (!airport.TaxiPaths) return;
    for (TaxiPath& path : *airport.TaxiPaths) {
        if (path.Kind != TaxiPath::Runway) continue;
        const auto index = PlainDecimal(path.Name);
        if (!index) continue;
        if (*index < 0 || static_cast<std::size_t>(*index) >= context.RunwayNames.size()) {
            throw DamagedData(offset, fmt::format("a taxi path on runway number {} of {}", *index,
                                                  context.RunwayNames.size()));
        }
        path.Name = context.RunwayNames[static_cast<std::size_t>(*index)];
    }
}

/// The list at an offset. An empty one is its head alone.
Sublist ReadSublist(const ByteReader& reader, std::int64_t offset, std::int32_t elementSize) {
    const std::int32_t count = reader.ReadLong(offset + taxi_block::ListCount);
    if (count > std::numeric_limits<std::int16_t>::max()) {
        throw DamagedData(offset, fmt::format("a list of {} elements, 32767 at the most", count));
    }
    Sublist list{.Offset = offset};
    if (count < 1) return list;
    list.Count = static_cast<std::int16_t>(count);
    list.Elements = reader.Range(offset + taxi_block::ListElements, std::int64_t{count} * elementSize);
    return list;
}

}  // namespace

void DecodeTaxiBlock(const ByteReader& reader, std::int64_t block, WalkMeter& meter, TaxiContext& context,
                     Airport& airport) {
    std::int64_t offset = block + taxi_block::Sublists;
    while (true) {
        const std::int32_t elementSize = reader.ReadLong(offset + taxi_block::ListElementSize);
        const bool known = elementSize == taxi_block::PointSize || elementSize == taxi_block::SpotSize ||
                           elementSize == taxi_block::PathSize || elementSize == taxi_block::NameSize;
        if (!known) return;

        const Sublist list = ReadSublist(reader, offset, elementSize);
        const std::int64_t length = taxi_block::ListElements + std::int64_t{list.Count} * elementSize;
        meter.Walked(offset, length);
        if (elementSize == taxi_block::NameSize) {
            if (list.Count > 0) NameTaxiways(reader, list, airport);
            NameRunwayPaths(offset, context, airport);
            return;
        }
        if (list.Count > 0) {
            if (elementSize == taxi_block::PointSize) ReadTaxiPoints(list, context, airport);
            if (elementSize == taxi_block::SpotSize) ReadParkingSpots(list, context, airport);
            if (elementSize == taxi_block::PathSize) ReadTaxiPaths(list, airport);
        }
        offset += length;
    }
}

}  // namespace corvenna
