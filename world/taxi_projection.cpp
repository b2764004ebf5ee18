#include "world/taxi_projection.h"

#include <cmath>
#include <numbers>

#include "station/geometry.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

constexpr double MetresPerDegree = 60 * 1852;
constexpr double RadiansPerDegree = std::numbers::pi / 180;
constexpr double ScaleOf6Decimals = 1e6;

/// Up to here the plain projection is good to 1e-12 degrees.
constexpr double HighestLatitude = 85;
constexpr double HighestLongitude = 179;

/// Angles, in radians, for which the series below are good to 1e-16.
constexpr double LongestSeries = 0.02;

/// A result this close to a tie, in units of the sixth decimal, may round either way. That is a thousand
/// times more than the two ways of computing it can differ.
constexpr double TieMargin = 0.001;

/// tan x and atan x for small x.
double SmallTan(double x) {
    const double xx = x * x;
    return x * (1 + xx * (1.0 / 3 + xx * (2.0 / 15 + xx * (17.0 / 315))));
}
double SmallAtan(double x) {
    const double xx = x * x;
    return x * (1 - xx * (1.0 / 3 - xx * (1.0 / 5 - xx * (1.0 / 7))));
}

/// Rounds to 6 decimals; false where the rounding hangs on the last bits.
bool RoundSafely(double degrees, double& rounded) {
    const double scaled = degrees * ScaleOf6Decimals;
    const double whole = RoundHalfEven(scaled);
    rounded = whole / ScaleOf6Decimals;
    return std::abs(scaled - whole) < 0.5 - TieMargin;
}

}  // namespace

TaxiProjection::TaxiProjection(double latitude, double longitude)
    : latitude_(latitude),
      longitude_(longitude),
      secantOfLatitude_(std::abs(latitude) <= HighestLatitude ? 1 / std::cos(latitude * RadiansPerDegree)
                                                              : 0) {}

double TaxiProjection::LatitudeAt(double north) const {
    if (north == 0) return latitude_;
    const double there = latitude_ + north / MetresPerDegree;
    double rounded = 0;
    if (std::abs(latitude_) <= HighestLatitude && std::abs(there) <= HighestLatitude &&
        RoundSafely(there, rounded)) {
        return rounded;
    }
    return ProjectMetres(latitude_, longitude_, north > 0 ? 0 : 180, std::abs(north)).Latitude;
}

/// On a bearing of 90 degrees the tangent of the turn in longitude is that of the distance over the cosine of
/// the latitude.
double TaxiProjection::LongitudeAt(double east) const {
    if (east == 0) return longitude_;
    const double distance = east / MetresPerDegree * RadiansPerDegree;
    if (secantOfLatitude_ != 0 && std::abs(distance * secantOfLatitude_) < LongestSeries) {
        const double turn = SmallAtan(SmallTan(distance) * secantOfLatitude_);
        const double there = longitude_ + turn / RadiansPerDegree;
        double rounded = 0;
        if (std::abs(there) <= HighestLongitude && RoundSafely(there, rounded)) return rounded;
    }
    return ProjectMetres(latitude_, longitude_, east > 0 ? 90 : 270, std::abs(east)).Longitude;
}

}  // namespace corvenna
