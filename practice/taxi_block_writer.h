#pragma once

#include "practice/bgl_bytes.h"
#include "practice/practice_airports.h"

namespace corvenna {

/// The place that an airport's taxi network hangs on, as a reader of its position words sees it.
struct ReferencePlace {
    double Latitude = 0;
    double Longitude = 0;
};

/// Appends the taxi points, parking spots, taxi paths and taxiway names of an airport as one record.
/// The airport's runways must stand before it, since runway paths tell their number. Throws
/// std::length_error and std::invalid_argument.
void AddTaxiBlock(BglBytes& bgl, const PracticeAirport& airport, const ReferencePlace& reference);

}  // namespace corvenna
