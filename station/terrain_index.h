#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "station/traffic_index.h"

namespace corvenna {

struct GeoPoint;

/// The mountains by falling altitude, so that a search for the highest one ends at the first that fits.
class TerrainIndex {
  public:
    struct Peak {
        SpherePoint Point;
        double Latitude = 0;
        double Longitude = 0;
        std::int32_t Altitude = 0;
    };

    /// Compares the mountains with those sorted last, and sorts them anew if any differs. Within one tick
    /// they are taken to stay as they are: tick is its number from 1, or NoTick between ticks.
    void Update(std::span<const GeoPoint> mountains, std::uint64_t tick);
    static constexpr std::uint64_t NoTick = 0;

    std::span<const Peak> ByFallingAltitude() const { return byAltitude_; }

  private:
    std::uint64_t tick_ = NoTick;  // in which they were compared
    std::vector<Peak> peaks_;      // in the order of the mountains
    std::vector<Peak> byAltitude_;
};

}  // namespace corvenna
