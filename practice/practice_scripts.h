#pragma once

#include "practice/practice_pilot.h"

namespace corvenna {

/// The script of the n-th practice pilot (from 0) at an airport, with arrival time. At a controlled airport
/// they fly by turns a visual circuit, a round trip under instrument rules, a visual arrival, an arrival
/// under instrument rules, one with a missed approach, a departure for good, a visual round trip, and an
/// arrival from far; elsewhere all of them fly a circuit and announce themselves, under either rules by
/// turns. The same airport and number give the same script.
PilotScript ScriptOfPilot(const std::shared_ptr<const AirportChart>& chart, int number,
                          std::chrono::milliseconds arrivesAt);

}  // namespace corvenna
