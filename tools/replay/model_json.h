#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "station/model.h"

/// The model's values as JSON and back. A byte of a text is the Unicode character of the same number.
namespace corvenna {

using Json = nlohmann::ordered_json;

/// A value that does not fit its field. The words name what was expected.
class FieldError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

std::string BytesFromUtf8(std::string_view utf8);  ///< throws FieldError for a character above 255
std::string Utf8FromBytes(std::string_view bytes);

// ---- From JSON; each throws FieldError. A list that is empty becomes the one blank element.

void FromJson(const Json& value, std::string& field);
void FromJson(const Json& value, std::uint8_t& field);
void FromJson(const Json& value, std::int16_t& field);
void FromJson(const Json& value, std::int32_t& field);
void FromJson(const Json& value, double& field);
void FromJson(const Json& value, GeoPoint& field);  ///< an object; members not given are blank
void FromJson(const Json& value, std::vector<TaxiPoint>& field);
void FromJson(const Json& value, std::vector<ParkingSpot>& field);
void FromJson(const Json& value, std::vector<TaxiPath>& field);

/// [[Latitude, Longitude, Altitude], ...] as Mountains, with names, kinds and MountainCount.
void MountainsFromJson(const Json& value, Station& station);

/// Sets the field of that name; false when there is none.
bool SetPlayerField(PlayerRecord& player, std::string_view name, const Json& value);
bool SetStationField(Station& station, std::string_view name, const Json& value);

// ---- To JSON

Json ToJson(const PlayerRecord& player);
Json ToJson(const TaxiRouteRecord& route);

/// The session side of a station: who is in it and where each stands.
Json SessionToJson(const Station& station);

/// The fields of the airport, the mountains and their count.
Json StationToJson(const Station& station);

}  // namespace corvenna
