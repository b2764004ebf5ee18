#include "practice/magnetic_field.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "practice/json_file.h"
#include "station/model.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

constexpr int HighestDegree = 13;
constexpr double NearestToPole = 89.999;  // degrees; at the pole itself east and west mean nothing

constexpr double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }
constexpr double Degrees(double radians) { return radians * (180 / std::numbers::pi); }

using ByDegree = std::array<double, HighestDegree + 1>;

/// A place on the ellipsoid as seen from the Earth's centre.
struct Geocentric {
    double RadiusKm;
    double CosColatitude;
    double SinColatitude;
    double Tilt;  ///< geodetic less geocentric latitude, radians
};

Geocentric FromGeodetic(double latitude, double equatorRadiusKm, double poleRadiusKm) {
    const double phi = Radians(latitude);
    const double a2 = equatorRadiusKm * equatorRadiusKm;
    const double b2 = poleRadiusKm * poleRadiusKm;
    const double curvature =
        a2 / std::sqrt(a2 * std::cos(phi) * std::cos(phi) + b2 * std::sin(phi) * std::sin(phi));
    const double fromAxis = curvature * std::cos(phi);
    const double fromEquator = curvature * (b2 / a2) * std::sin(phi);
    const double radius = std::hypot(fromAxis, fromEquator);
    return {radius, fromEquator / radius, fromAxis / radius, phi - std::atan2(fromEquator, fromAxis)};
}

/// Schmidt semi-normalised Legendre functions of the colatitude, and their derivatives by it.
struct SchmidtFunctions {
    using Table = std::array<ByDegree, HighestDegree + 1>;
    Table P{};
    Table Derivative{};

    SchmidtFunctions(int maxDegree, double cosColatitude, double sinColatitude) {
        P[0][0] = 1;
        for (int n = 1; n <= maxDegree; ++n) {
            for (int m = 0; m <= n; ++m) Step(n, m, cosColatitude, sinColatitude);
        }
    }

  private:
    /// Down the diagonal from the previous diagonal, elsewhere from the two degrees above.
    void Step(int n, int m, double c, double s) {
        const auto row = static_cast<std::size_t>(n);
        const auto column = static_cast<std::size_t>(m);
        if (n == m) {
            const double factor = n == 1 ? 1 : std::sqrt((2.0 * n - 1) / (2.0 * n));
            P[row][column] = factor * s * P[row - 1][column - 1];
            Derivative[row][column] =
                factor * (s * Derivative[row - 1][column - 1] + c * P[row - 1][column - 1]);
            return;
        }
        const double norm = std::sqrt(static_cast<double>(n * n - m * m));
        const double before = n - 1 > m ? std::sqrt(static_cast<double>((n - 1) * (n - 1) - m * m)) : 0;
        P[row][column] = (2.0 * n - 1) * c * P[row - 1][column] / norm;
        Derivative[row][column] =
            (2.0 * n - 1) * (c * Derivative[row - 1][column] - s * P[row - 1][column]) / norm;
        if (before == 0) return;
        P[row][column] -= before * P[row - 2][column] / norm;
        Derivative[row][column] -= before * Derivative[row - 2][column] / norm;
    }
};

/// The waves around the axis, by order.
struct Turns {
    ByDegree Cosine{};
    ByDegree Sine{};

    Turns(int maxDegree, double longitude) {
        for (int m = 0; m <= maxDegree; ++m) {
            Cosine[static_cast<std::size_t>(m)] = std::cos(m * Radians(longitude));
            Sine[static_cast<std::size_t>(m)] = std::sin(m * Radians(longitude));
        }
    }
};

/// How much of each degree is left so far out: the ratio of the radii to the power of the degree plus 2.
ByDegree FallWithHeight(int maxDegree, double ratio) {
    ByDegree fall{};
    fall[0] = ratio * ratio;
    for (std::size_t n = 1; n <= static_cast<std::size_t>(maxDegree); ++n) fall[n] = fall[n - 1] * ratio;
    return fall;
}

void ReadBoth(const JsonValue& json, double (&values)[2]) {
    const auto elements = json.Elements();
    if (elements.size() != 2) throw json.Complaint("does not hold one value for each epoch");
    values[0] = elements[0].Number();
    values[1] = elements[1].Number();
}

}  // namespace

MagneticField MagneticField::Load(const std::filesystem::path& path) {
    const JsonFile file(path);
    const JsonValue root = file.Root();
    MagneticField field;
    double years[2];
    ReadBoth(root["epochs"], years);
    field.firstYear_ = years[0];
    field.lastYear_ = years[1];
    if (!(field.firstYear_ < field.lastYear_)) throw root["epochs"].Complaint("is not in order");
    field.referenceRadiusKm_ = root["reference_radius_km"].NumberWithin(6000, 7000);
    field.equatorRadiusKm_ = root["ellipsoid"]["a_km"].NumberWithin(6000, 7000);
    field.poleRadiusKm_ = root["ellipsoid"]["b_km"].NumberWithin(6000, 7000);
    field.maxDegree_ = root["max_degree"].WholeWithin(1, HighestDegree);
    for (const auto& json : root["coefficients"].Elements()) {
        Harmonic harmonic;
        harmonic.Degree = json["n"].WholeWithin(1, field.maxDegree_);
        harmonic.Order = json["m"].WholeWithin(0, harmonic.Degree);
        ReadBoth(json["g"], harmonic.G);
        ReadBoth(json["h"], harmonic.H);
        field.harmonics_.push_back(harmonic);
    }
    return field;
}

double MagneticField::Declination(double latitude, double longitude, double year) const {
    if (!(year >= firstYear_ && year <= lastYear_)) {
        throw std::out_of_range(
            fmt::format("the magnetic field is known from {} to {}, not in {}", firstYear_, lastYear_, year));
    }
    const Geocentric place =
        FromGeodetic(std::clamp(latitude, -NearestToPole, NearestToPole), equatorRadiusKm_, poleRadiusKm_);
    const SchmidtFunctions schmidt(maxDegree_, place.CosColatitude, place.SinColatitude);
    const Turns around(maxDegree_, longitude);
    const ByDegree fall = FallWithHeight(maxDegree_, referenceRadiusKm_ / place.RadiusKm);
    const double late = (year - firstYear_) / (lastYear_ - firstYear_);

    double north = 0;  // the field's components in the geocentric frame
    double east = 0;
    double down = 0;
    for (const Harmonic& harmonic : harmonics_) {
        const auto n = static_cast<std::size_t>(harmonic.Degree);
        const auto m = static_cast<std::size_t>(harmonic.Order);
        const double g = harmonic.G[0] + late * (harmonic.G[1] - harmonic.G[0]);
        const double h = harmonic.H[0] + late * (harmonic.H[1] - harmonic.H[0]);
        const double along = g * around.Cosine[m] + h * around.Sine[m];
        const double across = harmonic.Order * (g * around.Sine[m] - h * around.Cosine[m]);
        north += fall[n] * along * schmidt.Derivative[n][m];
        east += fall[n] * across * schmidt.P[n][m] / place.SinColatitude;
        down -= fall[n] * (harmonic.Degree + 1) * along * schmidt.P[n][m];
    }
    const double geodeticNorth = north * std::cos(place.Tilt) + down * std::sin(place.Tilt);
    return Degrees(std::atan2(east, geodeticNorth));
}

std::vector<std::int16_t> WholeDegreeTable(const MagneticField& field, double year) {
    std::vector<std::int16_t> table;
    table.reserve(MagVarGridSize);
    for (int longitude = 0; longitude < 360; ++longitude) {
        for (int latitude = -90; latitude <= 90; ++latitude) {
            // 180 degrees either way is the same direction, and only the negative one fits the field.
            const double value = field.Declination(latitude, longitude, year) * 65536 / 360;
            table.push_back(ToWhole<std::int16_t>(RoundHalfEven(value) > 32767 ? value - 65536 : value));
        }
    }
    return table;
}

}  // namespace corvenna
