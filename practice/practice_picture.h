#pragma once

#include <string>

#include "practice/practice_log.h"
#include "station/model.h"

namespace corvenna {

/// What happened in a practice as an SVG document, true north up: the tracks of all pilots coloured by the
/// service that had them, the airport with its extended centreline, the fixes that were assigned, and a mark
/// where each text was heard. The instructions to a pilot who was alone are written beside it, by the numbers
/// of their marks. station: with the fields of the airport; the log must keep tracks. Any thread.
std::string DrawPractice(const Station& station, const PracticeLog& log);

/// The fixes by which a pilot is vectored who is told to expect vectors at that place.
std::vector<GeoPoint> FixesAssignedAt(Station station, const AircraftState& where);

}  // namespace corvenna
