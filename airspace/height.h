#pragma once

#include <cstdint>

#include "station/model.h"

namespace corvenna {

/// How high a pilot is above the runway, in feet; wide, since altitudes come from peers.
inline std::int64_t FeetAboveRunway(const Station& station, const PlayerRecord& pilot) {
    return std::int64_t{pilot.Altitude} - station.RunwayElevation;
}

}  // namespace corvenna
