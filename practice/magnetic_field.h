#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace corvenna {

/// The Earth's magnetic field at sea level as a sum of spherical harmonics, whose coefficients are known
/// for two years and go straight from the one to the other. Immutable once loaded; any thread.
class MagneticField {
  public:
    /// Reads igrf.json. Throws DataFileError, naming the file and the place in it.
    static MagneticField Load(const std::filesystem::path& path);

    /// Degrees, east positive, at a geodetic place (degrees, north and east positive) in a decimal year
    /// such as 2002.0. Throws std::out_of_range for a year outside the two of the coefficients. At a pole
    /// every direction is south or north: the value is that of 89.999 degrees.
    double Declination(double latitude, double longitude, double year) const;

    double FirstYear() const { return firstYear_; }
    double LastYear() const { return lastYear_; }

  private:
    /// The coefficients of degree n and order m, at FirstYear and at LastYear, in nanotesla.
    struct Harmonic {
        int Degree = 0;
        int Order = 0;
        double G[2] = {0, 0};
        double H[2] = {0, 0};
    };

    double firstYear_ = 0;
    double lastYear_ = 0;
    double referenceRadiusKm_ = 0;
    double equatorRadiusKm_ = 0;
    double poleRadiusKm_ = 0;
    int maxDegree_ = 0;
    std::vector<Harmonic> harmonics_;
};

/// The declination of every whole degree in the layout of Station::MagVarGrid.
std::vector<std::int16_t> WholeDegreeTable(const MagneticField& field, double year);

}  // namespace corvenna
