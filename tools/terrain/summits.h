#pragma once

#include <string>
#include <vector>

namespace corvenna {

/// A place of known height.
struct Summit {
    double Latitude = 0;  // degrees, north positive
    double Longitude = 0;
    int Elevation = 0;  // metres
};

/// Appends the places of a list: comma-separated text, plain or gzipped, whose first line names the columns,
/// lat, lon and elevation_m among them; no quotes. Elevations are rounded to whole metres. Throws
/// FileError with file and line.
void ReadSummits(const std::string& path, std::vector<Summit>& summits);

/// Finds summits by place.
class SummitIndex {
  public:
    explicit SummitIndex(std::vector<Summit> summits);

    /// The elevation of the highest summit of at least `lowest` metres within so many nautical miles of a
    /// place, on a sphere of 60 nautical miles to a degree; 0 if there is none.
    int HighestNear(double latitude, double longitude, double nauticalMiles, int lowest) const;

  private:
    std::vector<Summit> byLatitude_;
};

}  // namespace corvenna
