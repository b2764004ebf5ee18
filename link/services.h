#pragma once

#include <array>

#include "airspace/approach_control.h"
#include "airspace/artcc_control.h"
#include "airspace/tower_control.h"
#include "ground/ground_control.h"
#include "station/tick.h"

namespace corvenna {

/// The services in the order in which the tick tries their labels.
inline constexpr std::array<FrequencyService, 4> ControllerServices{{
    {&Station::GroundFrequency, &GroundControl},
    {&Station::TowerFrequency, &TowerControl},
    {&Station::ApproachFrequency, &ApproachControl},
    {&Station::ArtccFrequency, &ArtccControl},
}};

}  // namespace corvenna
