#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "practice/practice_airports.h"

/// Scenery files as the simulator has them, made out of facts. What the format doesn't need is nought.
/// Pure functions, any thread.
namespace corvenna {

/// A BGL file with the airports whose names stand in its first and in its second chain. Those of the second
/// chain are written as add-on sceneries do it: the reference position is the middle of the first runway,
/// and the airport's own position comes as a second one. Between the airports stand entries that a reader
/// must pass: other facilities, skip entries, an entry of another kind. Throws std::length_error for a
/// taxiway name of more than 8 bytes and std::invalid_argument for what the format can't tell.
std::string FacilityFile(std::span<const PracticeAirport> firstChain,
                         std::span<const PracticeAirport> secondChain);

/// A BGL file that says that it has no facilities.
std::string EmptySceneryFile();

/// magdec.bgl with a table in the layout of Station::MagVarGrid. A reader that takes one too little off
/// negative values sees them one too high.
std::string MagneticTableFile(std::span<const std::int16_t> table);

}  // namespace corvenna
