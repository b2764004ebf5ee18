#include "tools/world/world_json.h"

#include <span>

#include "station/fields.h"

namespace corvenna {

namespace {

Json FieldJson(const std::string& text) { return Utf8FromBytes(text); }
Json FieldJson(std::int16_t number) { return number; }
Json FieldJson(std::int32_t number) { return number; }
Json FieldJson(double number) { return number; }

Json FieldJson(const TaxiPoint& point) {
    return {{"Kind", point.Kind}, {"Latitude", point.Latitude}, {"Longitude", point.Longitude}};
}

Json FieldJson(const ParkingSpot& spot) {
    return {{"Name", FieldJson(spot.Name)},
            {"Radius", spot.Radius},
            {"Latitude", spot.Latitude},
            {"Longitude", spot.Longitude},
            {"Spare", spot.Spare}};
}

Json FieldJson(const TaxiPath& path) {
    return {{"Kind", path.Kind},
            {"StartPoint", path.StartPoint},
            {"EndPoint", path.EndPoint},
            {"Name", FieldJson(path.Name)}};
}

Json FieldJson(const GeoPoint& point) {
    Json object = Json::object();
    VisitGeoPointFields(point, [&](const char* name, const auto& field) { object[name] = FieldJson(field); });
    return object;
}

template <class Element>
Json ListJson(std::span<const Element> elements) {
    Json list = Json::array();
    for (const Element& element : elements) list.push_back(FieldJson(element));
    return list;
}

template <class Element>
Json FieldJson(const std::vector<Element>& elements) {
    return ListJson(std::span<const Element>(elements));
}

template <class Element>
Json FieldJson(const DynamicArray<Element>& array) {
    return array ? FieldJson(*array) : Json(nullptr);
}

}  // namespace

Json AirportJson(const Airport& airport) {
    Json object = Json::object();
    VisitAirportFields(airport,
                       [&](const char* name, const auto& field) { object[name] = FieldJson(field); });
    return object;
}

Json SelectionJson(const Station& station, const SearchBox& box) {
    Json object = Json::object();
    VisitStationFields(station,
                       [&](const char* name, const auto& field) { object[name] = FieldJson(field); });
    object["MountainCount"] = station.MountainCount;
    object["Mountains"] =
        ListJson(std::span(station.Mountains).first(static_cast<std::size_t>(station.MountainCount)));
    object["NorthLimit"] = box.NorthLimit;
    object["SouthLimit"] = box.SouthLimit;
    object["WestLimit"] = box.WestLimit;
    object["EastLimit"] = box.EastLimit;
    return object;
}

}  // namespace corvenna
