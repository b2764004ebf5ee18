#pragma once

#include <cstdint>
#include <span>

#include "station/model.h"
#include "world/airport_list.h"

namespace corvenna {

/// Finds the airports in a BGL file and adds them to the list. `buffer` holds the file and one byte more.
/// MagVarGrid of the station turns the runways' headings. Throws DamagedData when the file does not hold
/// together; what it had added is taken back then.
void ScanFacilities(std::span<const std::uint8_t> buffer, const Station& station, AirportList& airports);

/// Fills an airport that has its name with what the facility data at an offset say. An unknown record ends
/// the airport, with what it has by then.
void DecodeAirport(std::span<const std::uint8_t> buffer, std::int64_t facilityData, const Station& station,
                   Airport& airport);

}  // namespace corvenna
