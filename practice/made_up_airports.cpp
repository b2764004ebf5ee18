#include "practice/made_up_airports.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <string_view>

#include "station/geometry.h"
#include "station/model.h"
#include "station/numbers.h"
#include "station/text.h"
#include "world/facility_layout.h"

namespace corvenna {

namespace {

constexpr double MetresPerFoot = 0.3048;
constexpr double MetresPerDegree = 60 * 1852;

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

/// Chance that comes out the same with every compiler.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : generator_(seed) {}

    int From(int lowest, int highest) {
        const auto choices = static_cast<std::uint64_t>(highest - lowest) + 1;
        return lowest + static_cast<int>(generator_() % choices);
    }
    double Within(double lowest, double highest) {
        return lowest + (highest - lowest) * (From(0, 1'000'000) / 1e6);
    }
    bool OneIn(int times) { return From(1, times) == 1; }

    /// Dice of their own for one airport, so that what one makes of them changes nothing for the next.
    Dice Branch() { return Dice(generator_()); }

    template <class List>
    auto Of(const List& list) {
        return list[static_cast<std::size_t>(From(0, static_cast<int>(std::size(list)) - 1))];
    }

  private:
    std::mt19937_64 generator_;
};

enum class Size { Strip, Field, Regional, Large };

/// What an airport of a size has.
struct SizeRow {
    Size Of;
    int ShortestFeet;
    int LongestFeet;
    int MostSpots;
    std::vector<PracticeRadio::Kind> Radios;
};

const SizeRow& RowOf(Size size) {
    using enum PracticeRadio::Kind;
    static const SizeRow rows[] = {
        {Size::Strip, 1500, 3500, 0, {Ctaf}},
        {Size::Field, 2500, 5000, 8, {Ctaf}},
        {Size::Regional, 5000, 9000, 16, {Ground, Tower, Centre}},
        {Size::Large, 8000, 13000, 40, {Ground, Tower, Approach, Departure, Centre}},
    };
    return rows[static_cast<std::size_t>(size)];
}

// ---- Names

std::string MakeUpName(Dice& dice, Size size) {
    constexpr std::string_view Begins[] = {"Nor", "Kel", "Bran", "Al",  "Tor", "Wes",
                                           "Mar", "Hol", "Ost",  "Fen", "Lin", "Gra"};
    constexpr std::string_view Middles[] = {"a", "e", "ing", "der", "o", "ber", "", "", ""};
    constexpr std::string_view Ends[] = {"ton",  "vale", "field", "sund", "mark",
                                         "wick", "stad", "mere",  "ford"};
    constexpr std::string_view Kinds[] = {"", " Field", " Regional", " Intl"};
    std::string name(dice.Of(Begins));
    name.append(dice.Of(Middles)).append(dice.Of(Ends));
    return name.append(Kinds[static_cast<std::size_t>(size)]);
}

/// XAAA, XAAB, ..., XZZZ, XBAAA, ...
std::string MakeUpCode(int number) {
    std::string letters;
    for (int left = number; left > 0 || letters.size() < 3; left /= 26) {
        letters.insert(letters.begin(), static_cast<char>('A' + left % 26));
    }
    return "X" + letters;
}

// ---- Places

/// A plane laid on the airport, its x axis along the first runway, metres.
class Plane {
  public:
    Plane(double latitude, double longitude, double heading)
        : latitude_(latitude), longitude_(longitude), heading_(Radians(heading)) {}

    double Latitude(double along, double right) const {
        const double north = along * std::cos(heading_) - right * std::sin(heading_);
        return RoundTo(latitude_ + north / MetresPerDegree, 1e6);
    }
    double Longitude(double along, double right) const {
        const double east = along * std::sin(heading_) + right * std::cos(heading_);
        return RoundTo(longitude_ + east / (MetresPerDegree * std::cos(Radians(latitude_))), 1e6);
    }

  private:
    double latitude_;
    double longitude_;
    double heading_;
};

// ---- Runways

int RunwayNumber(const Station& variation, double heading, const PracticeAirport& airport) {
    const int magnetic =
        TrueToMagnetic(variation, ToWhole<std::int32_t>(heading), airport.Latitude, airport.Longitude);
    const int number = ToWhole<int>(magnetic / 10.0) % 36;
    return number == 0 ? 36 : number;
}

PracticeRunwayEnd MakeUpEnd(const PracticeAirport& airport, const Plane& plane, double along, double right,
                            double heading, int number, int suffixCode) {
    constexpr std::string_view Suffixes[] = {"", "L", "R"};
    PracticeRunwayEnd end;
    end.Number = number;
    end.SuffixCode = suffixCode;
    end.Designator = fmt::format("{}{}", number, Suffixes[static_cast<std::size_t>(suffixCode)]);
    end.Latitude = plane.Latitude(along, right);
    end.Longitude = plane.Longitude(along, right);
    end.ElevationMetres = airport.ElevationMetres;
    end.HeadingTrue = heading;
    return end;
}

/// A runway so far to the right of the plane's axis. suffixCode is that of its first end: 0, 1 L, 2 R.
PracticeRunway MakeUpRunway(const PracticeAirport& airport, const Plane& plane, double right, double heading,
                            int number, int suffixCode, int lengthFeet) {
    const double half = lengthFeet * MetresPerFoot / 2;
    const int otherNumber = number > 18 ? number - 18 : number + 18;
    const int otherSuffix = suffixCode == 0 ? 0 : 3 - suffixCode;
    const double otherHeading = heading >= 180 ? heading - 180 : heading + 180;
    PracticeRunway runway;
    runway.LengthFeet = lengthFeet;
    runway.WidthFeet = lengthFeet < 5000 ? 75 : 150;
    runway.Ends = {MakeUpEnd(airport, plane, -half, right, heading, number, suffixCode),
                   MakeUpEnd(airport, plane, half, right, otherHeading, otherNumber, otherSuffix)};
    return runway;
}

void MakeUpRunways(Dice& dice, const Station& variation, const SizeRow& row, const Plane& plane,
                   double heading, PracticeAirport& airport) {
    constexpr double Spacing = -500;  // the second runway lies to the left, away from the apron
    const int number = RunwayNumber(variation, heading, airport);
    const int length = dice.From(row.ShortestFeet, row.LongestFeet);
    const bool two = row.Of == Size::Large && dice.OneIn(2);
    airport.Runways.push_back(MakeUpRunway(airport, plane, 0, heading, number, two ? 2 : 0, length));
    airport.Runways.front().Ends[0].HasIls = row.Of >= Size::Regional && !dice.OneIn(3);
    if (two)
        airport.Runways.push_back(MakeUpRunway(airport, plane, Spacing, heading, number, 1, length - 1000));
}

// ---- Taxiways: one along the first runway, with a connector every 500 metres or so, and an apron beside it

class NetworkMaker {
  public:
    NetworkMaker(const Plane& plane, PracticeAirport& airport) : plane_(plane), airport_(airport) {}

    void MakeUp(Dice& dice, const SizeRow& row) {
        const double length = airport_.Runways.front().LengthFeet * MetresPerFoot;
        const int connectors = std::max(2, static_cast<int>(length / 500) + 1);
        for (int i = 0; i < connectors; ++i) AddConnector(-length / 2 + i * length / (connectors - 1), i);
        const int spots = dice.From(2, row.MostSpots);
        for (int i = 0; i < spots; ++i) AddSpot(dice, row, i, spots, length / 2, connectors);
    }

  private:
    static constexpr int OrdinaryPoint = 1;
    static constexpr int HoldingPoint = 2;
    static constexpr int PointsOfConnector = 3;  // on the runway, at the holding position, on the taxiway

    int AddPoint(int kind, double along, double right) {
        airport_.TaxiPoints.push_back({kind, plane_.Latitude(along, right), plane_.Longitude(along, right)});
        return static_cast<int>(airport_.TaxiPoints.size()) - 1;
    }

    void AddPath(int kind, int start, int end, std::string name) {
        airport_.TaxiPaths.push_back({kind, start, end, std::move(name)});
    }

    void AddConnector(double along, int number) {
        const std::string name = fmt::format("A{}", number + 1);
        const int onRunway = AddPoint(OrdinaryPoint, along, 0);
        const int holding = AddPoint(HoldingPoint, along, 60);
        const int onTaxiway = AddPoint(OrdinaryPoint, along, 140);
        AddPath(TaxiPath::Taxiway, onRunway, holding, name);
        AddPath(TaxiPath::Taxiway, holding, onTaxiway, name);
        if (number == 0) return;
        AddPath(TaxiPath::Runway, onRunway - PointsOfConnector, onRunway,
                "Runway " + airport_.Runways.front().Ends[0].Designator);
        AddPath(TaxiPath::Taxiway, onTaxiway - PointsOfConnector, onTaxiway, "A");
    }

    void AddSpot(Dice& dice, const SizeRow& row, int number, int spots, double half, int connectors) {
        constexpr int Parking = 1;
        constexpr int Gate = 10;
        constexpr int GateA = 12;
        const double along = half * (2.0 * (number + 1) / (spots + 1) - 1);
        PracticeParking spot;
        spot.NameCode = Parking;
        if (row.Of == Size::Regional) spot.NameCode = Gate;
        if (row.Of == Size::Large) spot.NameCode = GateA + dice.From(0, 3);
        spot.Number = number + 1;
        const std::string_view text = facility::SpotNames[spot.NameCode - 1];
        spot.Name = fmt::format("{} {}", UpperCase(text), spot.Number);
        spot.Latitude = plane_.Latitude(along, 260);
        spot.Longitude = plane_.Longitude(along, 260);
        spot.RadiusMetres = row.Of == Size::Field ? 10 : dice.From(15, 36);
        airport_.Parking.push_back(spot);
        const double place = (along / half + 1) / 2 * (connectors - 1);
        AddPath(TaxiPath::ParkingTie, ToWhole<int>(place) * PointsOfConnector + 2, number, "");
    }

    const Plane& plane_;
    PracticeAirport& airport_;
};

// ---- An airport

/// Most airports are small.
Size MakeUpSize(Dice& dice) {
    const int percent = dice.From(1, 100);
    if (percent <= 45) return Size::Strip;
    if (percent <= 80) return Size::Field;
    if (percent <= 95) return Size::Regional;
    return Size::Large;
}

/// In steps of 25 kHz.
double MakeUpMegahertz(Dice& dice) { return dice.From(118 * 40, 137 * 40 - 1) / 40.0; }

PracticeAirport MakeUpAirport(Dice dice, int number, const Station& variation) {
    const SizeRow& row = RowOf(MakeUpSize(dice));
    PracticeAirport airport;
    airport.Code = MakeUpCode(number);
    airport.Name = MakeUpName(dice, row.Of);
    airport.Latitude = RoundTo(dice.Within(-60, 75), 1e6);
    airport.Longitude = RoundTo(dice.Within(-179.9, 179.9), 1e6);
    airport.ElevationMetres = dice.From(0, 2500);
    const double heading = dice.From(0, 3599) / 10.0;
    const Plane plane(airport.Latitude, airport.Longitude, heading);
    MakeUpRunways(dice, variation, row, plane, heading, airport);
    for (const PracticeRadio::Kind use : row.Radios) airport.Radios.push_back({use, MakeUpMegahertz(dice)});
    if (row.MostSpots > 0) NetworkMaker(plane, airport).MakeUp(dice, row);
    return airport;
}

}  // namespace

std::vector<PracticeAirport> MakeUpAirports(int count, std::uint64_t seed,
                                            std::span<const std::int16_t> magVarGrid) {
    Station variation;
    variation.MagVarGrid.assign(magVarGrid.begin(), magVarGrid.end());
    Dice seeds(seed);
    std::vector<PracticeAirport> airports;
    airports.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
        airports.push_back(MakeUpAirport(seeds.Branch(), number, variation));
    }
    return airports;
}

}  // namespace corvenna
