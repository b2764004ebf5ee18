#include "tools/world/world_json.h"

namespace corvenna {

namespace {

Json ElementJson(const TaxiPoint& point) {
    return {{"Kind", point.Kind}, {"Latitude", point.Latitude}, {"Longitude", point.Longitude}};
}

Json ElementJson(const ParkingSpot& spot) {
    return {{"Name", JsonText(spot.Name)},
            {"Radius", spot.Radius},
            {"Latitude", spot.Latitude},
            {"Longitude", spot.Longitude},
            {"Spare", spot.Spare}};
}

Json ElementJson(const TaxiPath& path) {
    return {{"Kind", path.Kind},
            {"StartPoint", path.StartPoint},
            {"EndPoint", path.EndPoint},
            {"Name", JsonText(path.Name)}};
}

Json ElementJson(const GeoPoint& point) {
    return {{"Name", JsonText(point.Name)},
            {"Kind", JsonText(point.Kind)},
            {"Latitude", point.Latitude},
            {"Longitude", point.Longitude},
            {"Altitude", point.Altitude}};
}

template <class Range>
Json ListJson(const Range& elements) {
    Json list = Json::array();
    for (const auto& element : elements) list.push_back(ElementJson(element));
    return list;
}

template <class Element>
Json ArrayJson(const DynamicArray<Element>& array) {
    return array ? ListJson(*array) : Json(nullptr);
}

}  // namespace

std::string JsonText(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

Json AirportJson(const Airport& a) {
    return {
        {"Name", JsonText(a.Name)},
        {"Latitude", a.Latitude},
        {"Longitude", a.Longitude},
        {"Icao", JsonText(a.Icao)},
        {"GroundFreq", JsonText(a.GroundFreq)},
        {"TowerFreq", JsonText(a.TowerFreq)},
        {"ApproachFreq", JsonText(a.ApproachFreq)},
        {"CenterFreq", JsonText(a.CenterFreq)},
        {"CtafFreq", JsonText(a.CtafFreq)},
        {"MainRunwayId", JsonText(a.MainRunwayId)},
        {"MainRunwayLatitude", a.MainRunwayLatitude},
        {"MainRunwayLongitude", a.MainRunwayLongitude},
        {"MainRunwayElevation", a.MainRunwayElevation},
        {"MainRunwayLength", a.MainRunwayLength},
        {"MainRunwayWidth", a.MainRunwayWidth},
        {"MainRunwayHeading", a.MainRunwayHeading},
        {"MainRunwayHasIls", a.MainRunwayHasIls},
        {"TaxiPoints", ArrayJson(a.TaxiPoints)},
        {"TaxiPointCount", a.TaxiPointCount},
        {"ParkingSpots", ArrayJson(a.ParkingSpots)},
        {"ParkingSpotCount", a.ParkingSpotCount},
        {"TaxiPaths", ArrayJson(a.TaxiPaths)},
        {"TaxiPathCount", a.TaxiPathCount},
    };
}

Json StationJson(const Station& s) {
    const auto mountains = std::span(s.Mountains).first(static_cast<std::size_t>(s.MountainCount));
    return {
        {"AirportName", JsonText(s.AirportName)},
        {"AirportLatitude", s.AirportLatitude},
        {"AirportLongitude", s.AirportLongitude},
        {"AirportCode", JsonText(s.AirportCode)},
        {"GroundFrequency", JsonText(s.GroundFrequency)},
        {"TowerFrequency", JsonText(s.TowerFrequency)},
        {"ApproachFrequency", JsonText(s.ApproachFrequency)},
        {"ArtccFrequency", JsonText(s.ArtccFrequency)},
        {"CtafFrequency", JsonText(s.CtafFrequency)},
        {"ActiveRunway", JsonText(s.ActiveRunway)},
        {"RunwayLatitude", s.RunwayLatitude},
        {"RunwayLongitude", s.RunwayLongitude},
        {"RunwayElevation", s.RunwayElevation},
        {"RunwayLength", s.RunwayLength},
        {"RunwayWidth", s.RunwayWidth},
        {"RunwayHeading", s.RunwayHeading},
        {"RunwayHasIls", s.RunwayHasIls},
        {"HighestTerrain", s.HighestTerrain},
        {"AirportTaxiPoints", ListJson(s.AirportTaxiPoints)},
        {"AirportParkingSpots", ListJson(s.AirportParkingSpots)},
        {"AirportTaxiPaths", ListJson(s.AirportTaxiPaths)},
        {"MountainCount", s.MountainCount},
        {"Mountains", ListJson(mountains)},
    };
}

}  // namespace corvenna
