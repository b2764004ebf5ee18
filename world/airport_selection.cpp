#include "world/airport_selection.h"

#include "station/geometry.h"
#include "world/airport_database.h"
#include "world/terrain.h"

namespace corvenna {

namespace {

constexpr std::int32_t BoxReachNm = 200;
constexpr std::string_view NoCenterFound = "Air Route Traffic Control Center";

/// The whole array, or one blank element: the station's loops need an element to look at.
template <class Element>
std::vector<Element> ElementsOrBlank(const DynamicArray<Element>& array, std::int16_t count) {
    if (count == 0 || !array || array->empty()) return std::vector<Element>(1);
    return *array;
}

void CopyAirport(Station& station, const Airport& airport) {
    station.AirportName = airport.Name;
    station.AirportLatitude = airport.Latitude;
    station.AirportLongitude = airport.Longitude;
    station.AirportCode = airport.Icao;
    station.GroundFrequency = airport.GroundFreq;
    station.TowerFrequency = airport.TowerFreq;
    station.ApproachFrequency = airport.ApproachFreq;
    station.ArtccFrequency = airport.CenterFreq;
    station.CtafFrequency = airport.CtafFreq;
    station.AirportTaxiPoints = ElementsOrBlank(airport.TaxiPoints, airport.TaxiPointCount);
    station.AirportParkingSpots = ElementsOrBlank(airport.ParkingSpots, airport.ParkingSpotCount);
    station.AirportTaxiPaths = ElementsOrBlank(airport.TaxiPaths, airport.TaxiPathCount);
    station.ActiveRunway = airport.MainRunwayId;
    station.RunwayLatitude = airport.MainRunwayLatitude;
    station.RunwayLongitude = airport.MainRunwayLongitude;
    station.RunwayElevation = airport.MainRunwayElevation;
    station.RunwayHeading = airport.MainRunwayHeading;
    station.RunwayLength = airport.MainRunwayLength;
    station.RunwayWidth = airport.MainRunwayWidth;
    station.RunwayHasIls = airport.MainRunwayHasIls;
}

SearchBox BoxAround(double latitude, double longitude) {
    return {
        .NorthLimit = ProjectNm(latitude, longitude, 0, BoxReachNm).Latitude,
        .SouthLimit = ProjectNm(latitude, longitude, 180, BoxReachNm).Latitude,
        .WestLimit = ProjectNm(latitude, longitude, 270, BoxReachNm).Longitude,
        .EastLimit = ProjectNm(latitude, longitude, 90, BoxReachNm).Longitude,
    };
}

/// The centre frequency of the first airport in the box that has one, in the order of the list. An airport of
/// the same name, such as a second copy of the selected one, does not count.
std::string_view NeighboursCenter(const Station& station, const AirportList& airports, const SearchBox& box) {
    for (std::int32_t i = 0; i < airports.Count(); ++i) {
        const AirportView airport = airports.Fields(i);
        if (!airport.CenterFreq.empty() && airport.Name != station.AirportName &&
            box.Holds(airport.Latitude, airport.Longitude)) {
            return airport.CenterFreq;
        }
    }
    return NoCenterFound;
}

// ---- Labels that differ

constexpr std::string_view Tower = " (CT)";
constexpr std::string_view Ground = " (GNDCON)";
constexpr std::string_view Approach = " (TRACON)";
constexpr std::string_view Artcc = " (ARTCC)";

struct SuffixRow {
    std::string Station::*One;
    std::string Station::*Other;
    std::string_view OneSuffix;
    std::string_view OtherSuffix;
};

/// Each row looks at the labels as the rows before have left them. So of three equal ones the third keeps
/// its bare text, and a label can get two suffixes.
constexpr SuffixRow SuffixRows[] = {
    {&Station::GroundFrequency, &Station::TowerFrequency, Ground, Tower},
    {&Station::ApproachFrequency, &Station::TowerFrequency, Approach, Tower},
    {&Station::ApproachFrequency, &Station::GroundFrequency, Approach, Ground},
    {&Station::TowerFrequency, &Station::ArtccFrequency, Tower, Artcc},
    {&Station::GroundFrequency, &Station::ArtccFrequency, Ground, Artcc},
    {&Station::ApproachFrequency, &Station::ArtccFrequency, Approach, Artcc},
};

void TellLabelsApart(Station& station) {
    for (const SuffixRow& row : SuffixRows) {
        if (station.*row.One != station.*row.Other) continue;
        (station.*row.One).append(row.OneSuffix);
        (station.*row.Other).append(row.OtherSuffix);
    }
}

void CompleteFrequencies(Station& station, const AirportList& airports, const SearchBox& box) {
    if (station.GroundFrequency.empty() && station.TowerFrequency.empty()) {  // uncontrolled
        station.ApproachFrequency.clear();
        return;
    }
    if (station.GroundFrequency.empty()) station.GroundFrequency = station.TowerFrequency;
    if (station.TowerFrequency.empty()) station.TowerFrequency = station.GroundFrequency;
    if (station.ArtccFrequency.empty()) station.ArtccFrequency = NeighboursCenter(station, airports, box);
    TellLabelsApart(station);
}

}  // namespace

std::optional<SearchBox> SelectAirport(Station& station, const AirportList& airports,
                                       std::string_view label) {
    const std::int32_t number = airports.FindLast(label);
    if (number < 0) return std::nullopt;
    CopyAirport(station, airports.Record(number));
    const SearchBox box = BoxAround(station.AirportLatitude, station.AirportLongitude);
    CompleteFrequencies(station, airports, box);
    return box;
}

std::optional<SearchBox> PrepareStation(Station& station, std::string_view appFolder,
                                        std::string_view label) {
    const auto box = SelectAirport(station, ReadDatabase(appFolder), label);
    if (box) LoadTerrain(station, appFolder, *box);
    return box;
}

}  // namespace corvenna
