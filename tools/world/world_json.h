#pragma once

#include <nlohmann/json.hpp>

#include "station/model.h"
#include "world/airport.h"

/// Airports and stations as JSON objects whose keys are the names of the fields, in their order. Each byte
/// of a text is the Unicode character of the same number.
namespace corvenna {

using Json = nlohmann::ordered_json;

/// A text of bytes as the UTF-8 that JSON wants.
std::string JsonText(std::string_view bytes);

/// An array that was never allocated is null.
Json AirportJson(const Airport& airport);

/// What the selection and the terrain load have filled, the box of the terrain aside.
Json StationJson(const Station& station);

}  // namespace corvenna
