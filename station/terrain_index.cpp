#include "station/terrain_index.h"

#include <algorithm>

#include "station/model.h"

namespace corvenna {

void TerrainIndex::Update(std::span<const GeoPoint> mountains, std::uint64_t tick) {
    if (tick != NoTick && tick == tick_) return;
    tick_ = tick;
    const auto isSame = [](const Peak& peak, const GeoPoint& mountain) {
        return peak.Latitude == mountain.Latitude && peak.Longitude == mountain.Longitude &&
               peak.Altitude == mountain.Altitude;
    };
    if (std::equal(peaks_.begin(), peaks_.end(), mountains.begin(), mountains.end(), isSame)) return;

    peaks_.clear();
    for (const GeoPoint& mountain : mountains) {
        peaks_.push_back({PointOnSphere(mountain.Latitude, mountain.Longitude), mountain.Latitude,
                          mountain.Longitude, mountain.Altitude});
    }
    byAltitude_ = peaks_;
    std::sort(byAltitude_.begin(), byAltitude_.end(),
              [](const Peak& a, const Peak& b) { return a.Altitude > b.Altitude; });
}

}  // namespace corvenna
