#pragma once

#include <cstdint>

#include "station/model.h"

/// The controller's spherical functions, written for dialogue and not for navigation: whole nautical
/// miles, whole degrees, whole feet, on a sphere of 60 nautical miles to a degree. Latitudes and
/// longitudes are degrees, north and east positive. Called from the station's thread.
namespace corvenna {

/// One full turn off a heading above 360, then one onto a heading below 0. 0 and 360 both stay, and so
/// does what lies further out: 800 becomes 440.
std::int16_t NormalizeHeading(std::int32_t heading);

/// Whether x lies in the sector that runs clockwise from low up to, but not including, high.
/// x 0 becomes 360, also for the caller. Equal bounds: never. The sector is walked degree by degree with a
/// wrap from 360 to 1, so a high bound of 1 or less that lies behind low is missed by the walk, and every
/// heading from 1 to 360 then counts as inside.
bool HeadingInSector(std::int16_t& x, std::int16_t low, std::int16_t high);

/// HeadingInSector with the bounds centre - halfWidth and centre + halfWidth, both normalised.
bool HeadingWithin(std::int16_t& x, std::int16_t centre, std::int16_t halfWidth);

/// Nautical miles, ties to even, at most 32767.
std::int16_t DistanceNm(double latitude1, double longitude1, double latitude2, double longitude2);

/// Feet, at most 32767: a little over 5 nautical miles.
std::int16_t DistanceFeet(double latitude1, double longitude1, double latitude2, double longitude2);

/// Degrees magnetic from point 1 to point 2, by the variation at point 1. Equal points: 360 less the
/// variation. Throws std::out_of_range where TrueToMagnetic does.
std::int16_t BearingTo(const Station& station, double latitude1, double longitude1, double latitude2,
                       double longitude2);

/// DistanceNm and BearingTo from point 1 to point 2, for less than the price of both.
struct Way {
    std::int16_t Distance = 0;  ///< nautical miles
    std::int16_t Bearing = 0;   ///< degrees magnetic
};
Way WayTo(const Station& station, double latitude1, double longitude1, double latitude2, double longitude2);

/// Whether MagVarGrid has an entry for a place.
bool InMagVarGrid(double latitude, double longitude);

/// The variation at a place, degrees, cut towards zero. Throws std::out_of_range for a place whose entry lies
/// outside MagVarGrid.
std::int32_t MagneticVariation(const Station& station, double latitude, double longitude);

/// A true heading made magnetic by the variation at a place. Throws std::out_of_range for a place whose
/// entry lies outside MagVarGrid.
std::int16_t TrueToMagnetic(const Station& station, std::int32_t heading, double latitude, double longitude);

/// The place at a distance on a bearing, rounded to 5 decimals. The bearing is used as it stands, with no
/// magnetic correction. A negative distance counts as 0.
GeoPoint ProjectNm(double latitude, double longitude, std::int32_t bearing, std::int32_t nauticalMiles);
GeoPoint ProjectFeet(double latitude, double longitude, std::int32_t bearing, std::int32_t feet);
GeoPoint ProjectNmExact(double latitude, double longitude, double bearing, double nauticalMiles);

/// The same in metres, 1852 to a nautical mile, rounded to 6 decimals: for places on an airport.
GeoPoint ProjectMetres(double latitude, double longitude, std::int32_t bearing, double metres);

/// The altitude given, or the highest mountain in the 90-degree fan from one place towards another as far
/// as that other place, whichever is higher; feet, no margin added.
std::int32_t RouteTerrainAltitude(const Station& station, std::int32_t altitude, const GeoPoint& from,
                                  const GeoPoint& to);

/// Sets DistanceToAirport, DistanceToRunway and BearingFromRunway for the pilot in hand, and his Quadrant.
/// A quadrant once found is kept as long as its sector holds him; in the gaps between the sectors the old
/// word stays.
void UpdatePilotGeometry(Station& station, PlayerRecord& pilot);

/// The eight sector centres, from RunwayHeading: "north" is the side along the takeoff direction.
void ComputeSectorCentres(Station& station);

/// Degrees true out of a packed attitude word, whose bits 2 to 11 hold the heading. The division by 4
/// rounds towards zero, also for a negative word.
std::int32_t UnpackHeading(std::int32_t packedAttitude);

/// Radians; 0 for x outside -1 to 1.
double ArcSin(double x);
double ArcCos(double x);

/// y modulo x, never negative.
double RealMod(double y, double x);

}  // namespace corvenna
