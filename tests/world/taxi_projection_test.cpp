#include "world/taxi_projection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "station/geometry.h"
#include "station/numbers.h"

namespace corvenna {
namespace {

double PlainLatitude(double latitude, double longitude, double north) {
    return north == 0 ? latitude
                      : ProjectMetres(latitude, longitude, north > 0 ? 0 : 180, std::abs(north)).Latitude;
}

double PlainLongitude(double latitude, double longitude, double east) {
    return east == 0 ? longitude
                     : ProjectMetres(latitude, longitude, east > 0 ? 90 : 270, std::abs(east)).Longitude;
}

void ExpectPlain(double latitude, double longitude, double offset) {
    const TaxiProjection projection(latitude, longitude);
    ASSERT_EQ(projection.LatitudeAt(offset), PlainLatitude(latitude, longitude, offset))
        << latitude << ' ' << longitude << ' ' << offset;
    ASSERT_EQ(projection.LongitudeAt(offset), PlainLongitude(latitude, longitude, offset))
        << latitude << ' ' << longitude << ' ' << offset;
}

TEST(TaxiProjection, AnOffsetOf0IsTheReferencePositionToTheLastBit) {
    for (const double degrees : {47.123456, -179.999999, 180.0, 90.0, 19000.5}) {
        EXPECT_EQ(TaxiProjection(degrees, degrees).LatitudeAt(0), degrees);
        EXPECT_EQ(TaxiProjection(degrees, degrees).LongitudeAt(0), degrees);
    }
}

TEST(TaxiProjection, IsThePlainProjectionWhereverAnAirportStands) {
    const std::random_device::result_type seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> share(-1, 1);
    for (int i = 0; i < 300000 && !testing::Test::HasFatalFailure(); ++i) {
        const double reach = i % 4 == 0 ? 20000 : i % 101 == 0 ? 1e8 : 1500;
        ExpectPlain(RoundTo(share(random) * 90, 1e6), RoundTo(share(random) * 180, 1e6),
                    static_cast<float>(share(random) * reach));
    }
}

TEST(TaxiProjection, IsThePlainProjectionAtPolesMeridianAndEquator) {
    for (const double latitude :
         {0.0, 1e-6, -1e-6, 84.999999, 85.0, 85.000001, -85.0, 89.99, 90.0, -90.0, 200.0}) {
        for (const double longitude :
             {0.0, 178.999999, 179.0, 179.000001, 179.999999, -179.999999, 180.0, -180.0}) {
            for (const double offset :
                 {1e-38, 0.01, 1.0, -1.0, 999.5, -999.5, 30000.0, 2e5, -2e5, 3e7, 1e30}) {
                ExpectPlain(latitude, longitude, offset);
            }
        }
    }
}

/// Half a unit of the sixth decimal is 0.0555 metres; around these the rounding turns.
TEST(TaxiProjection, IsThePlainProjectionAroundRoundingTies) {
    constexpr double UnitMetres = 60 * 1852 / 1e6;
    for (const double latitude : {0.0, 12.345678, -47.5, 84.0}) {
        for (int unit = -2000; unit < 2000; ++unit) {
            const double north = (unit + 0.5) * UnitMetres;
            const double east = north * std::cos(latitude * 3.14159265358979 / 180);
            for (const double beside : {-1e-5, -1e-8, -1e-11, 0.0, 1e-11, 1e-8, 1e-5}) {
                ExpectPlain(latitude, -122.25, north + beside);
                ExpectPlain(latitude, -122.25, east + beside);
            }
        }
    }
}

}  // namespace
}  // namespace corvenna
