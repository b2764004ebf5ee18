#include "tools/replay/model_json.h"

#include <fmt/format.h>

#include <cmath>

#include "station/fields.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

template <class Int>
void WholeFromJson(const Json& value, Int& field) {
    if (!value.is_number()) throw FieldError("a whole number is expected");
    const double number = value.get<double>();
    constexpr auto lowest = std::numeric_limits<Int>::min();
    constexpr auto highest = std::numeric_limits<Int>::max();
    if (number != std::floor(number) || number < lowest || number > highest) {
        throw FieldError(fmt::format("a whole number from {} to {} is expected", lowest, highest));
    }
    field = static_cast<Int>(number);
}

void RequireList(const Json& value, std::size_t size, std::string_view form) {
    if (!value.is_array() || (size != 0 && value.size() != size)) {
        throw FieldError(fmt::format("a list {} is expected", form));
    }
}

template <class Element, class Read>
void ListFromJson(const Json& value, std::vector<Element>& field, std::size_t size, std::string_view form,
                  Read read) {
    RequireList(value, 0, form);
    field.clear();
    for (const Json& entry : value) {
        RequireList(entry, size, form);
        read(entry, field.emplace_back());
    }
    if (field.empty()) field.emplace_back();
}

Json ToJson(const std::string& text) { return Utf8FromBytes(text); }
Json ToJson(std::uint8_t number) { return number; }
Json ToJson(std::int16_t number) { return number; }
Json ToJson(std::int32_t number) { return number; }
Json ToJson(double number) { return number; }

Json ToJson(const GeoPoint& point) {
    Json object = Json::object();
    VisitGeoPointFields(point, [&](const char* name, const auto& field) { object[name] = ToJson(field); });
    return object;
}

Json ToJson(const TaxiPoint& point) { return {point.Kind, point.Latitude, point.Longitude}; }

Json ToJson(const ParkingSpot& spot) {
    return {Utf8FromBytes(spot.Name), spot.Radius, spot.Latitude, spot.Longitude};
}

Json ToJson(const TaxiPath& path) {
    return {path.Kind, path.StartPoint, path.EndPoint, Utf8FromBytes(path.Name)};
}

template <class Elements>
Json ListToJson(const Elements& elements) {
    Json list = Json::array();
    for (const auto& element : elements) list.push_back(ToJson(element));
    return list;
}

template <class Element>
Json ToJson(const std::vector<Element>& elements) {
    return ListToJson(elements);
}

}  // namespace

std::string BytesFromUtf8(std::string_view utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes.push_back(utf8[i]);
        } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size()) {
            ++i;
            bytes.push_back(
                static_cast<char>((lead & 3U) << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3FU)));
        } else {
            throw FieldError("a text holds a character above 255");
        }
    }
    return bytes;
}

std::string Utf8FromBytes(std::string_view bytes) {
    std::string utf8;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            utf8.push_back(byte);
        } else {
            utf8.push_back(static_cast<char>(0xC0U | code >> 6));
            utf8.push_back(static_cast<char>(0x80U | (code & 0x3FU)));
        }
    }
    return utf8;
}

void FromJson(const Json& value, std::string& field) {
    if (!value.is_string()) throw FieldError("a text is expected");
    field = BytesFromUtf8(value.get_ref<const std::string&>());
}

void FromJson(const Json& value, std::uint8_t& field) { WholeFromJson(value, field); }
void FromJson(const Json& value, std::int16_t& field) { WholeFromJson(value, field); }
void FromJson(const Json& value, std::int32_t& field) { WholeFromJson(value, field); }

void FromJson(const Json& value, double& field) {
    if (!value.is_number()) throw FieldError("a number is expected");
    field = value.get<double>();
}

void FromJson(const Json& value, GeoPoint& field) {
    if (!value.is_object()) throw FieldError("an object is expected");
    field = GeoPoint{};
    for (const auto& [name, member] : value.items()) {
        bool known = false;
        VisitGeoPointFields(field, [&, &key = name, &given = member](const char* fieldName, auto& fixField) {
            if (key != fieldName) return;
            FromJson(given, fixField);
            known = true;
        });
        if (!known) throw FieldError(fmt::format("\"{}\" is no field of a fix", name));
    }
}

void FromJson(const Json& value, std::vector<TaxiPoint>& field) {
    ListFromJson(value, field, 3, "of [Kind, Latitude, Longitude]", [](const Json& entry, TaxiPoint& point) {
        FromJson(entry[0], point.Kind);
        FromJson(entry[1], point.Latitude);
        FromJson(entry[2], point.Longitude);
    });
}

void FromJson(const Json& value, std::vector<ParkingSpot>& field) {
    ListFromJson(value, field, 4, "of [Name, Radius, Latitude, Longitude]",
                 [](const Json& entry, ParkingSpot& spot) {
                     FromJson(entry[0], spot.Name);
                     FromJson(entry[1], spot.Radius);
                     FromJson(entry[2], spot.Latitude);
                     FromJson(entry[3], spot.Longitude);
                 });
}

void FromJson(const Json& value, std::vector<TaxiPath>& field) {
    ListFromJson(value, field, 4, "of [Kind, StartPoint, EndPoint, Name]",
                 [](const Json& entry, TaxiPath& path) {
                     FromJson(entry[0], path.Kind);
                     FromJson(entry[1], path.StartPoint);
                     FromJson(entry[2], path.EndPoint);
                     FromJson(entry[3], path.Name);
                 });
}

void MountainsFromJson(const Json& value, Station& station) {
    int number = 0;
    ListFromJson(value, station.Mountains, 3, "of [Latitude, Longitude, Altitude]",
                 [&](const Json& entry, GeoPoint& mountain) {
                     mountain.Name = fmt::format("Mountain No{}", ++number);
                     mountain.Kind = "Mountain";
                     FromJson(entry[0], mountain.Latitude);
                     FromJson(entry[1], mountain.Longitude);
                     FromJson(entry[2], mountain.Altitude);
                 });
    station.MountainCount = number;
}

bool SetPlayerField(PlayerRecord& player, std::string_view name, const Json& value) {
    bool known = false;
    VisitPlayerFields(player, [&](const char* fieldName, auto& field) {
        if (name != fieldName) return;
        FromJson(value, field);
        known = true;
    });
    return known;
}

bool SetStationField(Station& station, std::string_view name, const Json& value) {
    bool known = false;
    VisitStationFields(station, [&](const char* fieldName, auto& field) {
        if (name != fieldName) return;
        FromJson(value, field);
        known = true;
    });
    return known;
}

Json ToJson(const PlayerRecord& player) {
    Json object = Json::object();
    VisitPlayerFields(player, [&](const char* name, const auto& field) { object[name] = ToJson(field); });
    return object;
}

Json ToJson(const TaxiRouteRecord& route) {
    Json object = Json::object();
    object["PilotName"] = ToJson(route.PilotName);
    object["PilotIndex"] = route.PilotIndex;
    object["Links"] = ListToJson(std::span(route.Links).first(route.Links.size() - 1));
    object["Target"] = ToJson(route.Target);
    return object;
}

Json SessionToJson(const Station& station) {
    Json dump = Json::object();
    dump["SessionOpen"] = station.SessionOpen;
    dump["SessionHost"] = station.SessionHost;
    dump["PlayerCount"] = station.PlayerCount();
    dump["Players"] = ListToJson(station.Players.Valid());
    dump["TakeoffQueueCount"] = station.TakeoffQueueCount();
    dump["TakeoffQueue"] = ListToJson(station.TakeoffQueue.Valid());
    dump["LandingQueueCount"] = station.LandingQueueCount();
    dump["LandingQueue"] = ListToJson(station.LandingQueue.Valid());
    dump["TaxiRouteCount"] = station.TaxiRouteCount();
    dump["TaxiRoutes"] = ListToJson(station.TaxiRoutes.Valid());
    dump["Spare"] = Json::array();
    for (const ParkingSpot& spot : station.AirportParkingSpots) dump["Spare"].push_back(spot.Spare);
    return dump;
}

Json StationToJson(const Station& station) {
    Json dump = Json::object();
    VisitStationFields(station, [&](const char* name, const auto& field) { dump[name] = ToJson(field); });
    dump["Mountains"] = Json::array();
    for (std::int32_t i = 0; i < station.MountainCount; ++i) {
        const GeoPoint& mountain = station.Mountains[static_cast<std::size_t>(i)];
        dump["Mountains"].push_back({mountain.Latitude, mountain.Longitude, mountain.Altitude});
    }
    dump["MountainCount"] = station.MountainCount;
    return dump;
}

}  // namespace corvenna
