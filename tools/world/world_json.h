#pragma once

#include "station/model.h"
#include "tools/replay/model_json.h"
#include "world/airport.h"
#include "world/airport_selection.h"

/// Airports and stations as JSON objects whose keys are the names of the fields, in their order. The elements
/// of arrays are objects too.
namespace corvenna {

/// An array that was never allocated is null.
Json AirportJson(const Airport& airport);

/// What the selection and the terrain load have filled.
Json SelectionJson(const Station& station, const SearchBox& box);

}  // namespace corvenna
