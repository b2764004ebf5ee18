#pragma once

#include "practice/practice_pilot.h"
#include "station/model.h"

namespace corvenna {

/// The script of the n-th practice pilot (from 0) at a station, with arrival time. At a controlled airport
/// the first of each three departs under visual rules, the second under instrument rules, and the third
/// arrives through the air; elsewhere all of them announce themselves, under either rules by turns. The same
/// station and number give the same script.
PilotScript ScriptOfPilot(const Station& station, int number, std::chrono::milliseconds arrivesAt);

/// Somebody who stands at the first parking spot and does nothing by himself.
PilotScript ScriptOfOnlooker(const Station& station, std::string name);

}  // namespace corvenna
