#pragma once

#include <optional>
#include <string>

#include "world/airport.h"

namespace corvenna {

/// The diagram of an airport as an SVG document, true north up: runways with their designators, taxiways with
/// their names, parking with names and radii, the threshold of the active runway, north arrow and scale. Of
/// runways other than the main one the record knows only the taxi paths, so they are drawn as far as these
/// reach. `variation`, degrees east, is what headings are turned by; without it they count as true.
/// Any thread.
std::string DrawAirport(const Airport& airport, std::optional<std::int16_t> variation);

}  // namespace corvenna
