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

    /// Mountains may change from now on.
    void Forget() { checked_ = false; }

    /// Whether nothing can have changed since the last Update.
    bool IsCurrent() const { return checked_; }

    /// Compares the mountains with those sorted last, and sorts them anew if any differs. With keep, they
    /// are taken to stay as they are until Forget.
    void Update(std::span<const GeoPoint> mountains, bool keep);

    std::span<const Peak> ByFallingAltitude() const { return byAltitude_; }

  private:
    bool checked_ = false;
    std::vector<Peak> peaks_;  // in the order of the mountains
    std::vector<Peak> byAltitude_;
};

}  // namespace corvenna
