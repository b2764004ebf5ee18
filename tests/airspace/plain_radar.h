#pragma once

#include <string_view>

#include "station/model.h"

/// The radar services' searches in their plainest form, each place compared with each other by the formulas
/// as they are told, for the fast ones to be held against.
namespace corvenna::plain {

std::int16_t DistanceNm(double latitude1, double longitude1, double latitude2, double longitude2);
std::int16_t BearingTo(const Station& station, double latitude1, double longitude1, double latitude2,
                       double longitude2);
bool HeadingInSector(std::int16_t& x, std::int16_t low, std::int16_t high);
void UpdatePilotGeometry(Station& station, PlayerRecord& pilot);
std::int32_t RouteTerrainAltitude(const Station& station, std::int32_t altitude, const GeoPoint& from,
                                  const GeoPoint& to);

void ScanTraffic(Station& station, PlayerRecord& pilot, std::string_view service);
void SteerToTarget(Station& station, PlayerRecord& pilot, std::string_view service);

/// The two services with the searches above.
void ApproachControl(Station& station, PlayerRecord& pilot);
void ArtccControl(Station& station, PlayerRecord& pilot);

}  // namespace corvenna::plain
