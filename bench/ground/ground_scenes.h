#pragma once

#include <cstdint>
#include <vector>

#include "station/model.h"

/// Airports and traffic of true size for the benchmarks.
namespace corvenna {

/// Seattle-Tacoma out of the practice airports: 153 points, 268 paths, 75 spots.
Station Seattle();

/// An airport of 2,000 points: rows of stands with taxiways between them that mostly end blind, so that the
/// walk to the runway is begun again and again; 200 spots. The last point is an island with a spot of its
/// own, the last one.
Station TwoThousandPoints();

/// A point from which 1,998 taxiways lead, all blind, and one more point that none of them leads to, with the
/// airport's only spot.
Station StarOfTwoThousand();

/// One pilot's wish to taxi.
struct TaxiRequest {
    double Latitude = 0;  ///< of the pilot
    double Longitude = 0;
    GeoPoint Target;
};

/// Each spot to the runway and the runway to each spot, in this order of the spots, at most so many spots.
std::vector<TaxiRequest> AllRequests(const Station& station, std::size_t spots);

/// From the first point of the airport to the last one, which has a spot of its own and no path.
TaxiRequest UnreachableRequest(const Station& station);

/// Pilots on Ground, each at the beginning of a route of so many links over the airport's network.
void AddTaxiingPilots(Station& station, int pilots, int links);

/// Moves each of them a little along the first link of his route; tick counts up.
void MovePilots(Station& station, int tick);

}  // namespace corvenna
