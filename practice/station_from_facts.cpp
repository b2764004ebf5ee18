#include "practice/station_from_facts.h"

#include <fmt/format.h>

#include <algorithm>

#include "station/geometry.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

constexpr double MetresPerFoot = 0.3048;
constexpr std::int32_t NeighbourMiles = 200;
constexpr std::int32_t HighestTerrainWithoutTerrain = 2000;  // feet

constexpr std::string_view UnnamedCentre = "Air Route Traffic Control Center";

constexpr std::string_view TowerSuffix = " (CT)";
constexpr std::string_view GroundSuffix = " (GNDCON)";
constexpr std::string_view ApproachSuffix = " (TRACON)";
constexpr std::string_view ArtccSuffix = " (ARTCC)";

std::int32_t Feet(double metres) { return ToWhole<std::int32_t>(metres / MetresPerFoot); }

/// The last frequency of its kind counts.
std::string LabelOf(const PracticeAirport& airport, PracticeRadio::Kind use) {
    std::string label;
    for (const PracticeRadio& radio : airport.Radios) {
        if (radio.Use == use) label = FrequencyLabel(radio.Megahertz);
    }
    return label;
}

/// Departure stands in where there is no approach frequency.
std::string ApproachLabelOf(const PracticeAirport& airport) {
    const std::string approach = LabelOf(airport, PracticeRadio::Kind::Approach);
    return approach.empty() ? LabelOf(airport, PracticeRadio::Kind::Departure) : approach;
}

/// The centre of the first other airport in the list that lies inside a box around this one and has one:
/// not of the nearest. The box knows no date line.
std::string CentreNearby(const PracticeAirport& airport, const std::vector<PracticeAirport>& neighbours) {
    const auto limit = [&](std::int32_t bearing) {
        return ProjectNm(airport.Latitude, airport.Longitude, bearing, NeighbourMiles);
    };
    const double north = limit(0).Latitude;
    const double east = limit(90).Longitude;
    const double west = limit(270).Longitude;
    const double south = limit(180).Latitude;
    for (const PracticeAirport& other : neighbours) {
        const bool inside = other.Latitude < north && other.Latitude > south && other.Longitude < east &&
                            other.Longitude > west;
        std::string centre = LabelOf(other, PracticeRadio::Kind::Centre);
        if (inside && other.Name != airport.Name && !centre.empty()) return centre;
    }
    return {};
}

void FillRunway(Station& station, const PracticeRunway& runway) {
    const PracticeRunwayEnd& end = runway.Ends[0];
    station.ActiveRunway = end.Designator;
    station.RunwayLatitude = RoundTo5(end.Latitude);
    station.RunwayLongitude = RoundTo5(end.Longitude);
    station.RunwayElevation = Feet(end.ElevationMetres);
    station.RunwayLength = runway.LengthFeet;
    station.RunwayWidth = runway.WidthFeet;
    station.RunwayHeading = TrueToMagnetic(station, ToWhole<std::int32_t>(end.HeadingTrue),
                                           station.RunwayLatitude, station.RunwayLongitude);
    station.RunwayHasIls = end.HasIls ? -1 : 0;
}

/// An empty list is one blank element.
template <class To, class From, class Convert>
void FillList(std::vector<To>& to, const std::vector<From>& from, Convert convert) {
    to.clear();
    for (const From& element : from) to.push_back(convert(element));
    if (to.empty()) to.emplace_back();
}

void FillTaxiNetwork(Station& station, const PracticeAirport& airport) {
    FillList(station.AirportTaxiPoints, airport.TaxiPoints, [](const PracticeTaxiPoint& point) {
        return TaxiPoint{point.Kind, RoundTo(point.Latitude, 1e6), RoundTo(point.Longitude, 1e6)};
    });
    FillList(station.AirportTaxiPaths, airport.TaxiPaths, [](const PracticeTaxiPath& path) {
        return TaxiPath{path.Kind, path.Start, path.End, path.Name};
    });
    FillList(station.AirportParkingSpots, airport.Parking, [](const PracticeParking& spot) {
        return ParkingSpot{spot.Name, Feet(spot.RadiusMetres), RoundTo(spot.Latitude, 1e6),
                           RoundTo(spot.Longitude, 1e6), 0};
    });
}

void TellApart(std::string& a, std::string_view suffixOfA, std::string& b, std::string_view suffixOfB) {
    if (a != b) return;
    a += suffixOfA;
    b += suffixOfB;
}

}  // namespace

std::string FrequencyLabel(double megahertz) {
    std::string label = fmt::format("{:.3f}", megahertz);
    label.erase(label.find_last_not_of('0') + 1);
    if (label.ends_with('.')) label.pop_back();
    return label;
}

void CompleteFrequencies(Station& station, std::string_view centre) {
    std::string& ground = station.GroundFrequency;
    std::string& tower = station.TowerFrequency;
    std::string& approach = station.ApproachFrequency;
    std::string& artcc = station.ArtccFrequency;
    if (ground.empty() && tower.empty()) {
        approach.clear();
        return;
    }
    if (ground.empty()) ground = tower;
    if (tower.empty()) tower = ground;
    if (artcc.empty()) artcc = centre.empty() ? UnnamedCentre : centre;

    // Each one sees what those before it have left, so a pair may escape.
    TellApart(ground, GroundSuffix, tower, TowerSuffix);
    TellApart(approach, ApproachSuffix, tower, TowerSuffix);
    TellApart(approach, ApproachSuffix, ground, GroundSuffix);
    TellApart(tower, TowerSuffix, artcc, ArtccSuffix);
    TellApart(ground, GroundSuffix, artcc, ArtccSuffix);
    TellApart(approach, ApproachSuffix, artcc, ArtccSuffix);
}

void FillStation(Station& station, const PracticeAirport& airport,
                 const std::vector<PracticeAirport>& neighbours, std::vector<std::int16_t> magVarGrid) {
    station.MagVarGrid = std::move(magVarGrid);
    station.AirportName = airport.Name;
    station.AirportLatitude = RoundTo(airport.Latitude, 1e6);
    station.AirportLongitude = RoundTo(airport.Longitude, 1e6);
    station.AirportCode = airport.Code;
    station.GroundFrequency = LabelOf(airport, PracticeRadio::Kind::Ground);
    station.TowerFrequency = LabelOf(airport, PracticeRadio::Kind::Tower);
    station.ApproachFrequency = ApproachLabelOf(airport);
    station.ArtccFrequency = LabelOf(airport, PracticeRadio::Kind::Centre);
    station.CtafFrequency = LabelOf(airport, PracticeRadio::Kind::Ctaf);
    CompleteFrequencies(station, CentreNearby(airport, neighbours));
    FillTaxiNetwork(station, airport);
    FillRunway(station, *std::max_element(airport.Runways.begin(), airport.Runways.end(),
                                          [](const PracticeRunway& a, const PracticeRunway& b) {
                                              return a.LengthFeet < b.LengthFeet;  // the first of equals
                                          }));
    station.Mountains.assign(1, {});
    station.MountainCount = 0;
    station.HighestTerrain = HighestTerrainWithoutTerrain;
}

}  // namespace corvenna
