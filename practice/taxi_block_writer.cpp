#include "practice/taxi_block_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>

#include "station/model.h"

namespace corvenna {

namespace {

using namespace facility;

constexpr double MetresOfRadian = 10800 / std::numbers::pi * 1852;

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

/// Metres to go due east on a great circle to reach a longitude: the reader goes that way, and so leaves the
/// parallel a little.
double EastOffset(const ReferencePlace& from, double longitude) {
    const double difference = Radians(longitude - from.Longitude);
    return std::atan(std::tan(difference) * std::cos(Radians(from.Latitude))) * MetresOfRadian;
}

double NorthOffset(const ReferencePlace& from, double latitude) {
    return Radians(latitude - from.Latitude) * MetresOfRadian;
}

// ---- Names of taxiways

std::optional<std::size_t> AsNumber(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// The different names of the taxiways in an order in which a reader can apply them one by one. A path bears
/// the number of its name until the name comes in its place, so a name such as "3" would itself be taken for
/// the number of a later name: it must not stand before number 3. Blank names fill up.
std::vector<std::string> NameTable(const std::vector<PracticeTaxiPath>& paths) {
    constexpr std::size_t HighestNumericName = 99;
    std::vector<std::string> names;
    std::vector<std::size_t> numbers;
    for (const PracticeTaxiPath& path : paths) {
        if (path.Kind != TaxiPath::Taxiway) continue;
        const auto number = AsNumber(path.Name);
        if (number && *number <= HighestNumericName) {
            numbers.push_back(*number);
        } else {
            names.push_back(path.Name);
        }
    }
    const auto sortOut = [](auto& list) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    };
    sortOut(names);
    sortOut(numbers);
    for (const std::size_t number : numbers) {
        if (names.size() < number) names.resize(number);
        names.push_back(fmt::format("{}", number));
    }
    return names;
}

std::int32_t PlaceOfName(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<std::int32_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

std::int32_t RunwayOfPath(const PracticeAirport& airport, const PracticeTaxiPath& path) {
    for (std::size_t i = 0; i < airport.Runways.size(); ++i) {
        if (path.Name == "Runway " + airport.Runways[i].Ends[0].Designator)
            return static_cast<std::int32_t>(i);
    }
    throw std::invalid_argument(fmt::format("{} has no \"{}\" for a taxi path", airport.Code, path.Name));
}

// ---- The lists of the block

/// Appends the head of a list and its elements, blank; gives the place of the first one.
std::int32_t AddList(BglBytes& bgl, std::size_t count, std::int32_t elementSize) {
    if (count > INT16_MAX) throw std::length_error("a taxi list of more than 32767 elements");
    const auto elements = static_cast<std::int32_t>(count);
    const std::int32_t list = bgl.AddBlank(taxi_block::ListElements + elements * elementSize);
    bgl.PutLong(list + taxi_block::ListCount, elements);
    bgl.PutLong(list + taxi_block::ListElementSize, elementSize);
    return list + taxi_block::ListElements;
}

void AddPoints(BglBytes& bgl, const PracticeAirport& airport, const ReferencePlace& reference) {
    std::int32_t element = AddList(bgl, airport.TaxiPoints.size(), taxi_block::PointSize);
    for (const PracticeTaxiPoint& point : airport.TaxiPoints) {
        bgl.PutLong(element + taxi_point::Kind, point.Kind);
        bgl.PutSingle(element + taxi_point::EastOffset, EastOffset(reference, point.Longitude));
        bgl.PutSingle(element + taxi_point::NorthOffset, NorthOffset(reference, point.Latitude));
        element += taxi_block::PointSize;
    }
}

/// The simulator's types of parking spots, by what stands there: ramps for general aviation, gates.
std::int32_t SpotType(const PracticeParking& spot) {
    constexpr int FirstGate = 10;
    constexpr int Dock = 11;
    constexpr std::int32_t RampSmall = 2, GateSmall = 8, DockGa = 11;
    if (spot.NameCode == Dock) return DockGa;
    const bool gate = spot.NameCode >= FirstGate;
    const std::int32_t size = (gate ? spot.RadiusMetres > 18 : spot.RadiusMetres > 10) +
                              (gate ? spot.RadiusMetres > 28 : spot.RadiusMetres > 15);
    return (gate ? GateSmall : RampSmall) + size;
}

void AddSpots(BglBytes& bgl, const PracticeAirport& airport, const ReferencePlace& reference) {
    constexpr std::int32_t TypeUnit = parking_spot::PackedMask + 1;
    std::int32_t element = AddList(bgl, airport.Parking.size(), taxi_block::SpotSize);
    for (const PracticeParking& spot : airport.Parking) {
        const std::int32_t label = spot.Number * parking_spot::NameCodes + spot.NameCode;
        if (label > parking_spot::PackedMask) {
            throw std::invalid_argument(
                fmt::format("{}: spot number {} is too high", airport.Code, spot.Number));
        }
        bgl.PutSingle(element + parking_spot::EastOffset, EastOffset(reference, spot.Longitude));
        bgl.PutSingle(element + parking_spot::NorthOffset, NorthOffset(reference, spot.Latitude));
        bgl.PutSingle(element + parking_spot::Radius, spot.RadiusMetres);
        bgl.PutLong(element + parking_spot::Packed, SpotType(spot) * TypeUnit + label);
        element += taxi_block::SpotSize;
    }
}

void AddPaths(BglBytes& bgl, const PracticeAirport& airport, const std::vector<std::string>& names) {
    std::int32_t element = AddList(bgl, airport.TaxiPaths.size(), taxi_block::PathSize);
    for (const PracticeTaxiPath& path : airport.TaxiPaths) {
        bgl.PutLong(element + taxi_path::Kind, path.Kind);
        bgl.PutLong(element + taxi_path::StartPoint, path.Start);
        bgl.PutLong(element + taxi_path::EndPoint, path.End);
        if (path.Kind == TaxiPath::Taxiway) {
            bgl.PutLong(element + taxi_path::NameIndex, PlaceOfName(names, path.Name));
        } else if (path.Kind == TaxiPath::Runway) {
            bgl.PutLong(element + taxi_path::NameIndex, RunwayOfPath(airport, path));
        }
        element += taxi_block::PathSize;
    }
}

/// Also where there are no names: the table is what makes a reader name the runway paths.
void AddNames(BglBytes& bgl, const PracticeAirport& airport, const std::vector<std::string>& names) {
    std::int32_t element = AddList(bgl, names.size(), taxi_block::NameSize);
    for (const std::string& name : names) {
        if (name.size() > static_cast<std::size_t>(taxi_block::NameSize)) {
            throw std::length_error(fmt::format("{}: taxiway name \"{}\" is longer than {} bytes",
                                                airport.Code, name, taxi_block::NameSize));
        }
        bgl.PutText(element, name);
        element += taxi_block::NameSize;
    }
}

}  // namespace

void AddTaxiBlock(BglBytes& bgl, const PracticeAirport& airport, const ReferencePlace& reference) {
    const std::int32_t block = bgl.AddEntry(TaxiBlockId, taxi_block::Sublists);
    const std::vector<std::string> names = NameTable(airport.TaxiPaths);
    AddPoints(bgl, airport, reference);
    AddSpots(bgl, airport, reference);
    AddPaths(bgl, airport, names);
    AddNames(bgl, airport, names);
    bgl.SetLength(block, bgl.End() - block);
}

}  // namespace corvenna
