#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "support/practice_station.h"

namespace corvenna {

/// A station at one of the shipped airports.
inline Station PracticeField(std::string_view code) { return PracticeStation(CORVENNA_TEST_DATA, code); }

/// What was printed, line by line.
inline std::vector<std::string> LinesOf(const std::ostringstream& out) {
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace corvenna
