#pragma once

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "practice/magnetic_field.h"
#include "practice/station_from_facts.h"

namespace corvenna {

/// A station at one of the shipped airports.
inline Station PracticeField(std::string_view code) {
    const std::filesystem::path data(CORVENNA_TEST_DATA);
    static const auto airports = LoadPracticeAirports(data / "practice-airports.json");
    static const auto variation = WholeDegreeTable(MagneticField::Load(data / "igrf.json"), 2002.0);
    Station station;
    FillStation(station, FindPracticeAirport(airports, code), airports, variation);
    return station;
}

/// What was printed, line by line.
inline std::vector<std::string> LinesOf(const std::ostringstream& out) {
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace corvenna
