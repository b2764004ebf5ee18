#include "station/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace corvenna {
namespace {

constexpr double Pi = 3.14159265358979;  // the controller's own pi, not the full double
constexpr double NmPerRadian = 10800 / Pi;

bool InSector(int x, int low, int high) {
    auto heading = static_cast<std::int16_t>(x);
    return HeadingInSector(heading, static_cast<std::int16_t>(low), static_cast<std::int16_t>(high));
}

// ---- NormalizeHeading

TEST(NormalizeHeading, TakesOneTurnOff) {
    EXPECT_EQ(NormalizeHeading(360), 360);
    EXPECT_EQ(NormalizeHeading(361), 1);
    EXPECT_EQ(NormalizeHeading(-1), 359);
    EXPECT_EQ(NormalizeHeading(0), 0);
    EXPECT_EQ(NormalizeHeading(800), 440);
}

TEST(NormalizeHeading, Keeps720As360AndMinus360As0) {
    EXPECT_EQ(NormalizeHeading(720), 360);
    EXPECT_EQ(NormalizeHeading(721), 361);
    EXPECT_EQ(NormalizeHeading(-360), 0);
    EXPECT_EQ(NormalizeHeading(-361), -1);
}

TEST(NormalizeHeading, BeyondItsFieldIsAnOverflow) {
    EXPECT_EQ(NormalizeHeading(32767 + 360), 32767);
    EXPECT_THROW(NormalizeHeading(32768 + 360), std::overflow_error);
    EXPECT_THROW(NormalizeHeading(-32769 - 360), std::overflow_error);
    EXPECT_THROW(NormalizeHeading(std::numeric_limits<std::int32_t>::max()), std::overflow_error);
    EXPECT_THROW(NormalizeHeading(std::numeric_limits<std::int32_t>::min()), std::overflow_error);
}

// ---- HeadingInSector

TEST(HeadingInSector, LowIsInsideAndHighIsNot) {
    EXPECT_TRUE(InSector(0, 350, 10));  // 0 counts as 360
    EXPECT_FALSE(InSector(10, 350, 10));
    EXPECT_TRUE(InSector(350, 350, 10));
    EXPECT_TRUE(InSector(9, 350, 10));
    EXPECT_FALSE(InSector(349, 350, 10));
}

TEST(HeadingInSector, WithEqualBoundsHoldsNothing) {
    EXPECT_FALSE(InSector(5, 10, 10));
    EXPECT_FALSE(InSector(10, 10, 10));
}

TEST(HeadingInSector, ChangesItsCallersZeroTo360) {
    std::int16_t heading = 0;
    EXPECT_FALSE(HeadingInSector(heading, 10, 20));
    EXPECT_EQ(heading, 360);
    heading = 0;
    EXPECT_FALSE(HeadingInSector(heading, 10, 10));
    EXPECT_EQ(heading, 360);
    heading = 15;
    EXPECT_TRUE(HeadingInSector(heading, 10, 20));
    EXPECT_EQ(heading, 15);
}

TEST(HeadingInSector, ASectorThatStartsAt0DoesNotContain360) {
    EXPECT_FALSE(InSector(360, 0, 60));
    EXPECT_FALSE(InSector(0, 0, 60));
    EXPECT_TRUE(InSector(1, 0, 60));
    EXPECT_TRUE(InSector(59, 0, 60));
}

TEST(HeadingInSector, AHighOf0IsNeverReachedSoEveryHeadingIsInside) {
    for (int x = 1; x <= 360; ++x) ASSERT_TRUE(InSector(x, 300, 0)) << x;
}

/// The walk once more, degree by degree: which headings it visits between two bounds. A walk that never
/// meets its end is broken off after two laps, when it has seen all that it ever will.
class PlainWalk {
  public:
    void Walk(int low, int high) {
        ++walk_;
        int a = low;
        int laps = 0;
        while (a != high && laps < 2) {
            if (a > 360) {
                a = 1;
                ++laps;
            }
            At(a) = walk_;
            ++a;
        }
    }

    bool Visited(int x) { return At(x == 0 ? 360 : x) == walk_; }

  private:
    int& At(int heading) { return lastWalk_[static_cast<std::size_t>(heading) + 32768]; }

    std::vector<int> lastWalk_ = std::vector<int>(65536);
    int walk_ = 0;
};

void CompareWithWalk(PlainWalk& walk, int low, int high) {
    static constexpr int outside[] = {-32768, -361, -360, -10, -1, 361, 362, 370, 400, 720, 32767};
    walk.Walk(low, high);
    for (int x = 0; x <= 360; ++x) {
        ASSERT_EQ(InSector(x, low, high), walk.Visited(x)) << x << " in " << low << ".." << high;
    }
    for (int x : outside) {
        ASSERT_EQ(InSector(x, low, high), walk.Visited(x)) << x << " in " << low << ".." << high;
    }
}

TEST(HeadingInSector, EqualsThePlainWalkForAllBoundsOfACircle) {
    PlainWalk walk;
    for (int low = -10; low <= 370; ++low) {
        for (int high = -10; high <= 370; ++high) {
            CompareWithWalk(walk, low, high);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(HeadingInSector, EqualsThePlainWalkForExtremeBounds) {
    const std::vector<int> bounds = {-32768, -32767, -16384, -1000, -721, -720,  -719,  -361,
                                     -360,   -359,   -180,   -1,    0,    1,     2,     180,
                                     359,    360,    361,    362,   363,  400,   719,   720,
                                     721,    722,    1000,   1080,  1081, 16384, 32766, 32767};
    PlainWalk walk;
    for (int low : bounds) {
        for (int high : bounds) {
            CompareWithWalk(walk, low, high);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(HeadingWithin, NormalisesBothBounds) {
    std::int16_t heading = 350;
    EXPECT_TRUE(HeadingWithin(heading, 10, 30));  // 340 to 40
    heading = 340;
    EXPECT_TRUE(HeadingWithin(heading, 10, 30));
    heading = 339;
    EXPECT_FALSE(HeadingWithin(heading, 10, 30));
    heading = 39;
    EXPECT_TRUE(HeadingWithin(heading, 10, 30));
    heading = 40;
    EXPECT_FALSE(HeadingWithin(heading, 10, 30));
}

// ---- Distances

TEST(DistanceNm, IsSixtyMilesToADegree) {
    EXPECT_EQ(DistanceNm(47, -122, 48, -122), 60);
    EXPECT_EQ(DistanceNm(0, 0, 0, 1), 60);
    EXPECT_EQ(DistanceNm(0, 0, 0, -1), 60);
    EXPECT_EQ(DistanceNm(1, 5, 0, 5), 60);
}

TEST(DistanceNm, OfEqualPointsIs0) { EXPECT_EQ(DistanceNm(47.01, -122, 47.01, -122), 0); }

TEST(DistanceNm, RoundsTiesToTheEvenMile) {
    EXPECT_EQ(DistanceNm(0, 0, 0.025, 0), 2);   // 1.5
    EXPECT_EQ(DistanceNm(0, 0, 0.0249, 0), 1);  // 1.494
    EXPECT_EQ(DistanceNm(0, 0, 0.175, 0), 10);  // 10.5
    EXPECT_EQ(DistanceNm(0, 0, 0.1751, 0), 11);
}

TEST(DistanceNm, OfWellKnownCityPairs) {
    EXPECT_EQ(DistanceNm(40.6398, -73.7789, 33.9425, -118.4081), 2144);  // New York to Los Angeles
    EXPECT_EQ(DistanceNm(51.4775, -0.4614, 40.6398, -73.7789), 2989);    // London to New York
}

TEST(DistanceNm, BetweenPointsSeventyDegreesOfLongitudeApartFollowsTheLawOfCosines) {
    EXPECT_EQ(DistanceNm(0, -35, 0, 35), 4200);
    EXPECT_EQ(DistanceNm(30, -35, 30, 35), 3574);
    EXPECT_EQ(DistanceNm(60, -35, 60, 35), 2000);
}

/// Great circle distance by the haversine, whatever the points.
double HaversineNm(double lat1, double lon1, double lat2, double lon2) {
    const double r = Pi / 180;
    const double a = std::pow(std::sin((lat1 - lat2) * r / 2), 2) +
                     std::cos(lat1 * r) * std::cos(lat2 * r) * std::pow(std::sin((lon1 - lon2) * r / 2), 2);
    return 2 * std::asin(std::sqrt(a)) * NmPerRadian;
}

TEST(DistanceNm, IsTheSameByEitherFormulaButForTheRounding) {
    for (double latitude = -80; latitude <= 80; latitude += 20) {
        for (double apart = 50; apart <= 75; apart += 0.5) {  // a radian is 57.3 degrees
            EXPECT_NEAR(DistanceNm(latitude, 10, latitude, 10 + apart),
                        HaversineNm(latitude, 10, latitude, 10 + apart), 0.5001);
            EXPECT_NEAR(DistanceNm(-apart / 2, 10, apart / 2, 10), apart * 60, 0.5001);
        }
    }
}

TEST(DistanceNm, AcrossThe180thMeridianIsTheShortWay) {
    EXPECT_EQ(DistanceNm(10, 179.9, 10, -179.9), 12);
    EXPECT_EQ(DistanceNm(10, -179.9, 10, 179.9), 12);
    EXPECT_EQ(DistanceNm(0, 179.5, 0, -179.5), 60);
}

TEST(DistanceNm, AtThePoles) {
    EXPECT_EQ(DistanceNm(90, 0, 90, 77), 0);
    EXPECT_EQ(DistanceNm(-90, 0, 90, 0), 10800);
    EXPECT_EQ(DistanceNm(90, 0, 47, -122), 43 * 60);
    EXPECT_EQ(DistanceNm(89.5, 0, 89.5, 180), 60);  // over the pole
}

TEST(DistanceNm, OfAntipodesIsHalfTheCircle) { EXPECT_EQ(DistanceNm(0, 0, 0, 180), 10800); }

TEST(DistanceNm, OfALatitudeOverThePoleRunsOnDownTheOtherSide) {
    EXPECT_EQ(DistanceNm(0, 0, 91, 0), 5460);
    EXPECT_EQ(DistanceNm(47, -122, 133, 58), 0);
    EXPECT_EQ(DistanceNm(47, -122, 407, -122), 0);
}

TEST(DistanceFeet, IsSixThousandAndEightyFeetToAMile) {
    EXPECT_EQ(DistanceFeet(47, -122, 47.01, -122), 3648);
    EXPECT_EQ(DistanceFeet(47, -122, 47, -121.99), 2488);  // 2487.936
    EXPECT_EQ(DistanceFeet(47, -122, 47.00001, -122), 4);  // 3.648
    EXPECT_EQ(DistanceFeet(47, -122, 47, -122), 0);
}

TEST(DistanceFeet, SaturatesAt32767) {
    EXPECT_EQ(DistanceFeet(47, -122, 47.08982, -122), 32766);  // 32766.336
    EXPECT_EQ(DistanceFeet(47, -122, 47.08983, -122), 32767);  // 32769.984
    EXPECT_EQ(DistanceFeet(0, 0, 0, 0.0898), 32759);
    EXPECT_EQ(DistanceFeet(0, 0, 0, 180), 32767);
}

TEST(DistanceFeet, BetweenPointsSixMilesApartIs32767) { EXPECT_EQ(DistanceFeet(0, 0, 0.1, 0), 32767); }

// ---- Bearings

class Bearings : public testing::Test {
  protected:
    void Variation(int entry) { station.MagVarGrid.assign(MagVarGridSize, static_cast<std::int16_t>(entry)); }
    int To(double lat1, double lon1, double lat2, double lon2) {
        return BearingTo(station, lat1, lon1, lat2, lon2);
    }

    Station station;
};

TEST_F(Bearings, AlongTheMeridians) {
    EXPECT_EQ(To(47, -122, 48, -122), 0);  // 360 less a whole turn
    EXPECT_EQ(To(47, -122, 46, -122), 180);
}

// The cosine comes out a hair beyond -1 there, and its angle counts as 0.
TEST_F(Bearings, DueSouthCanComeOutAsDueNorth) {
    EXPECT_EQ(To(47, -122, 46.66667, -122), 0);
    EXPECT_EQ(To(47, -122, 46.66667, -122.001), 181);
}

TEST_F(Bearings, AlongTheEquator) {
    EXPECT_EQ(To(0, 0, 0, 1), 91);  // 360 less the floor of a hair below 270
    EXPECT_EQ(To(0, 0, 0, -1), 270);
}

TEST_F(Bearings, ToAllFourQuarters) {
    EXPECT_EQ(To(47, -122, 47.1, -121.9), 35);   // 34.23
    EXPECT_EQ(To(47, -122, 46.9, -121.9), 146);  // 145.64
    EXPECT_EQ(To(47, -122, 46.9, -122.1), 215);  // 214.36
    EXPECT_EQ(To(47, -122, 47.1, -122.1), 326);  // 325.77
}

TEST_F(Bearings, FarAway) {
    EXPECT_EQ(To(40.6398, -73.7789, 33.9425, -118.4081), 274);  // 273.84
    EXPECT_EQ(To(33.9425, -118.4081, 40.6398, -73.7789), 66);   // 65.87
}

TEST_F(Bearings, AcrossThe180thMeridian) {
    EXPECT_EQ(To(10, 179.9, 10, -179.9), 90);   // 89.98
    EXPECT_EQ(To(10, -179.9, 10, 179.9), 271);  // 270.02
}

TEST_F(Bearings, OfEqualPointsIs360CorrectedByTheVariation) {
    EXPECT_EQ(To(47, -122, 47, -122), 360);
    Variation(3641);  // 20 degrees
    EXPECT_EQ(To(47, -122, 47, -122), 340);
    Variation(-3641);
    EXPECT_EQ(To(47, -122, 47, -122), 20);
}

TEST_F(Bearings, AreWithinADegreeOfTheGreatCircleEverywhere) {
    const double r = std::acos(-1.0) / 180;
    for (double lat1 = -75; lat1 <= 75; lat1 += 25) {
        for (double lat2 = -70; lat2 <= 80; lat2 += 15) {
            for (double lon = -170; lon <= 175; lon += 15) {
                const double east = std::sin(lon * r) * std::cos(lat2 * r);
                const double north = std::cos(lat1 * r) * std::sin(lat2 * r) -
                                     std::sin(lat1 * r) * std::cos(lat2 * r) * std::cos(lon * r);
                const double wanted = std::atan2(east, north) / r;
                const double off = std::remainder(To(lat1, 0, lat2, lon) - wanted, 360);
                EXPECT_GE(off, -1e-4) << lat1 << ' ' << lat2 << ' ' << lon;  // rounded up, never down
                EXPECT_LE(off, 1 + 1e-4) << lat1 << ' ' << lat2 << ' ' << lon;
            }
        }
    }
}

TEST_F(Bearings, TakeTheVariationOfTheFirstPoint) {
    station.MagVarGrid[47 + 90 + 238 * 181] = 1821;  // 10 degrees at 47 north, 122 west
    EXPECT_EQ(To(47, -122, 46, -122), 170);
    EXPECT_EQ(To(46, -122, 46, -122.1), 271);  // there it is zero
}

// ---- Magnetic variation

TEST_F(Bearings, TheVariationIsCutTowardsZero) {
    Variation(182);  // 0.99976 degrees
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 0), 90);
    Variation(183);  // 1.005
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 0), 89);
    Variation(-182);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 0), 90);
    Variation(-183);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 0), 91);
    Variation(32767);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 0), 271);  // 90 - 179
    Variation(-32768);
    EXPECT_EQ(TrueToMagnetic(station, 190, 0, 0), 10);  // 190 + 180
}

TEST_F(Bearings, TheVariationKeepsAHeadingInRange) {
    EXPECT_EQ(TrueToMagnetic(station, 360, 0, 0), 360);
    Variation(-1821);
    EXPECT_EQ(TrueToMagnetic(station, 355, 0, 0), 5);
    Variation(1821);
    EXPECT_EQ(TrueToMagnetic(station, 5, 0, 0), 355);
    EXPECT_EQ(TrueToMagnetic(station, 10, 0, 0), 0);
}

TEST_F(Bearings, TheEntryIsThatOfTheNearestWholeDegrees) {
    station.MagVarGrid[48 + 90 + 238 * 181] = 1821;  // 48 north, 122 west
    EXPECT_EQ(TrueToMagnetic(station, 90, 48, -122), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, 47.51, -122.49), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, 47.49, -122), 90);
    EXPECT_EQ(TrueToMagnetic(station, 90, 48, -122.51), 90);
    EXPECT_EQ(TrueToMagnetic(station, 90, 47.5, -121.5), 80);  // ties go to the even degrees
    EXPECT_EQ(TrueToMagnetic(station, 90, 48.5, -122.5), 80);
}

TEST_F(Bearings, ALongitudeThatRoundsToMinus0IsGreenwich) {
    station.MagVarGrid[90] = 1821;
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, -0.4), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, -0.5), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, -0.51), 90);
}

TEST_F(Bearings, EastAndWest180AreTheSameEntry) {
    station.MagVarGrid[90 + 180 * 181] = 1821;
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, 180), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, 0, -180), 80);
}

TEST_F(Bearings, TheTableEndsAtEntries0And65159) {
    station.MagVarGrid[0] = 1821;
    station.MagVarGrid[65159] = 3642;
    EXPECT_EQ(TrueToMagnetic(station, 90, -90, 0), 80);                    // entry 0
    EXPECT_EQ(TrueToMagnetic(station, 90, 90, -1), 70);                    // entry 65159
    EXPECT_THROW(TrueToMagnetic(station, 90, -91, 0), std::out_of_range);  // entry -1
    EXPECT_THROW(TrueToMagnetic(station, 90, 91, -1), std::out_of_range);  // entry 65160
    EXPECT_TRUE(InMagVarGrid(-90, 0));
    EXPECT_TRUE(InMagVarGrid(90, -1));
    EXPECT_FALSE(InMagVarGrid(-91, 0));
    EXPECT_FALSE(InMagVarGrid(91, -1));
}

TEST_F(Bearings, ALatitudeOverThePoleReadsTheNextLongitudesEntry) {
    station.MagVarGrid[181] = 1821;  // 90 south at 1 east
    EXPECT_EQ(TrueToMagnetic(station, 90, 91, 0), 80);
    EXPECT_EQ(TrueToMagnetic(station, 90, -90, 1), 80);
}

TEST_F(Bearings, APlaceFarOutOfTheWorldIsOutsideTheTable) {
    for (double far : {1e6, -1e6, 1e18, -1e18, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_THROW(TrueToMagnetic(station, 90, far, 0), std::out_of_range) << far;
        EXPECT_THROW(TrueToMagnetic(station, 90, 0, far), std::out_of_range) << far;
        EXPECT_FALSE(InMagVarGrid(far, 0)) << far;
    }
}

TEST_F(Bearings, FromAPlaceOutsideTheTableAreAnError) {
    EXPECT_THROW(To(-91, 0, 0, 0), std::out_of_range);
    EXPECT_NO_THROW(To(0, 0, -91, 0));
}

// ---- Projections

void ExpectPlace(const GeoPoint& place, double latitude, double longitude) {
    EXPECT_EQ(place.Name, "");
    EXPECT_EQ(place.Kind, "");
    EXPECT_EQ(place.Altitude, 0);
    EXPECT_EQ(place.Latitude, latitude);
    EXPECT_EQ(place.Longitude, longitude);
}

TEST(ProjectNm, AlongTheFourWinds) {
    ExpectPlace(ProjectNm(47, -122, 0, 60), 48, -122);
    ExpectPlace(ProjectNm(47, -122, 180, 60), 46, -122);
    ExpectPlace(ProjectNm(47, -122, 90, 60), 46.99064, -120.53389);
    ExpectPlace(ProjectNm(47, -122, 270, 60), 46.99064, -123.46611);
    ExpectPlace(ProjectNm(47, -122, 45, 100), 48.16514, -120.23305);
}

TEST(ProjectNm, TakesTheBearingAsItStands) {
    ExpectPlace(ProjectNm(0, 10, 450, 60), 0, 11);
    ExpectPlace(ProjectNm(0, 10, -90, 60), 0, 9);
}

TEST(ProjectNm, WithANegativeDistanceReturnsTheStartPointRoundedTo5Decimals) {
    ExpectPlace(ProjectNm(47.123456, -122.123458, 77, -5), 47.12346, -122.12346);
    ExpectPlace(ProjectNm(47.123456, -122.123458, 77, 0), 47.12346, -122.12346);
    ExpectPlace(ProjectNm(47.123456, -122.123458, 77, std::numeric_limits<std::int32_t>::min()), 47.12346,
                -122.12346);
}

TEST(ProjectNm, AcrossThe180thMeridianTurnsTheSign) {
    ExpectPlace(ProjectNm(10, 179.9, 90, 30), 9.99962, -179.59229);
    ExpectPlace(ProjectNm(10, -179.9, 270, 30), 9.99962, 179.59229);
}

TEST(ProjectNm, OverThePoleComesBackOnItsOwnMeridian) {
    // The true place lies on the opposite meridian: the formula's arcsine can't tell the two apart.
    ExpectPlace(ProjectNm(89.5, 0, 0, 60), 89.5, 0);
    ExpectPlace(ProjectNm(-89.5, 0, 180, 60), -89.5, 0);
}

TEST(ProjectNm, NearAndAtThePole) {
    ExpectPlace(ProjectNm(89.9, 20, 90, 30), 89.4901, 98.69035);
    EXPECT_EQ(ProjectNm(0, 0, 0, 5400).Latitude, 90);
}

TEST(ProjectNm, AQuarterOfTheWorld) {
    ExpectPlace(ProjectNm(0, 0, 90, 5400), 0, 90);
    ExpectPlace(ProjectNm(60, 0, 90, 4000), 20.06068, 77.82894);
}

TEST(ProjectFeet, DividesBy6080) {
    ExpectPlace(ProjectFeet(47, -122, 90, 6080), 47, -121.97556);
    ExpectPlace(ProjectFeet(47, -122, 90, 3040), 47, -121.98778);
    ExpectPlace(ProjectFeet(47, -122, 213, 1500), 46.99655, -122.00328);
    ExpectPlace(ProjectFeet(47, -122, 213, -5), 47, -122);
}

TEST(ProjectNmExact, TakesFractionsOfBearingAndDistance) {
    ExpectPlace(ProjectNmExact(47.01, -122, 160, 2.5), 46.97084, -121.97912);
    ExpectPlace(ProjectNmExact(47.01, -122, 161.25, 2.75), 46.9666, -121.97841);
    ExpectPlace(ProjectNmExact(47.01, -122, 161.25, -0.001), 47.01, -122);
    ExpectPlace(ProjectNmExact(47.01, -122, 340, 9), 47.15093, -122.07544);
}

// ---- The functions below

TEST(ArcSin, IsTheArcSineWithinItsRange) {
    for (double x = -1; x <= 1; x += 1.0 / 64) EXPECT_NEAR(ArcSin(x), std::asin(x), 1e-12) << x;
    EXPECT_DOUBLE_EQ(ArcSin(1), std::acos(-1.0) / 2);
    EXPECT_EQ(ArcSin(0), 0);
}

TEST(ArcSin, OutsideItsRangeIs0) {
    EXPECT_EQ(ArcSin(1.0000001), 0);
    EXPECT_EQ(ArcSin(-1.0000001), 0);
    EXPECT_EQ(ArcSin(1e300), 0);
}

TEST(ArcCos, IsTheArcCosineWithinItsRange) {
    for (double x = -1; x <= 1; x += 1.0 / 64) EXPECT_NEAR(ArcCos(x), std::acos(x), 1e-12) << x;
    EXPECT_EQ(ArcCos(1), 0);
}

TEST(ArcCos, OfMinus1IsThePiGiven) { EXPECT_EQ(ArcCos(-1), 3.14159265358979); }

TEST(ArcCos, OutsideItsRangeIs0) {
    EXPECT_EQ(ArcCos(1.0000001), 0);
    EXPECT_EQ(ArcCos(-1.0000001), 0);
}

TEST(RealMod, IsNeverNegative) {
    EXPECT_EQ(RealMod(7, 5), 2);
    EXPECT_EQ(RealMod(-7, 5), 3);
    EXPECT_EQ(RealMod(10, 5), 0);
    EXPECT_EQ(RealMod(-10, 5), 0);
    EXPECT_EQ(RealMod(0.5, 5), 0.5);
}

TEST(UnpackHeading, ReadsBits2To11) {
    EXPECT_EQ(UnpackHeading(0), 0);
    EXPECT_EQ(UnpackHeading(3), 0);
    EXPECT_EQ(UnpackHeading(1024), 90);
    EXPECT_EQ(UnpackHeading(2048), 180);
    EXPECT_EQ(UnpackHeading(4092), 360);  // 359.6
    EXPECT_EQ(UnpackHeading(4096), 0);
    EXPECT_EQ(UnpackHeading(28), 2);  // 7 of 1024: 2.46
}

TEST(UnpackHeading, RoundsANegativeWordTowardsZeroBeforeTheMask) {
    EXPECT_EQ(UnpackHeading(-1), 0);
    EXPECT_EQ(UnpackHeading(-3), 0);
    EXPECT_EQ(UnpackHeading(-4), 360);  // all ten bits set
    EXPECT_EQ(UnpackHeading(-5), 360);
    EXPECT_EQ(UnpackHeading(-8), 359);
    EXPECT_EQ(UnpackHeading(std::numeric_limits<std::int32_t>::max()), 360);
    EXPECT_EQ(UnpackHeading(std::numeric_limits<std::int32_t>::min()), 0);
}

TEST(UnpackHeading, RoundsTiesToEven) {
    EXPECT_EQ(UnpackHeading(64 * 4), 22);   // 22.5
    EXPECT_EQ(UnpackHeading(192 * 4), 68);  // 67.5
}

// ---- The pilot in hand

class Quadrants : public testing::Test {
  protected:
    Quadrants() { Runway(160); }

    void Runway(int heading) {
        station.RunwayHeading = static_cast<std::int16_t>(heading);
        station.RunwayLatitude = 47;
        station.RunwayLongitude = -122;
        station.AirportLatitude = 47.1;
        station.AirportLongitude = -122;
        ComputeSectorCentres(station);
    }

    /// The word for a pilot on a bearing who had another word before.
    std::string SeenAt(int bearing, std::string_view before = {}) {
        // Half a degree back: bearings are rounded up.
        const GeoPoint place = ProjectNmExact(47, -122, bearing - 0.5, 30);
        pilot.Latitude = place.Latitude;
        pilot.Longitude = place.Longitude;
        pilot.Quadrant = before;
        UpdatePilotGeometry(station, pilot);
        EXPECT_EQ(station.BearingFromRunway, bearing);
        return pilot.Quadrant;
    }

    Station station;
    PlayerRecord pilot;
};

TEST_F(Quadrants, TheDistancesAreThoseFromTheAirportAndFromTheRunway) {
    pilot.Latitude = 48;
    pilot.Longitude = -122;
    UpdatePilotGeometry(station, pilot);
    EXPECT_EQ(station.DistanceToAirport, 54);
    EXPECT_EQ(station.DistanceToRunway, 60);
    EXPECT_EQ(station.BearingFromRunway, 360);  // 0, made 360 by the sector test
}

TEST_F(Quadrants, TheCentresFollowTheRunway) {
    EXPECT_EQ(station.SectorNorth, 160);
    EXPECT_EQ(station.SectorNortheast, 205);
    EXPECT_EQ(station.SectorNorthwest, 115);
    EXPECT_EQ(station.SectorEast, 250);
    EXPECT_EQ(station.SectorWest, 70);
    EXPECT_EQ(station.SectorSouth, 340);
    EXPECT_EQ(station.SectorSoutheast, 295);
    EXPECT_EQ(station.SectorSouthwest, 25);
}

TEST_F(Quadrants, TheCentresAreNormalised) {
    Runway(360);
    EXPECT_EQ(station.SectorNorth, 360);
    EXPECT_EQ(station.SectorNortheast, 45);
    EXPECT_EQ(station.SectorNorthwest, 315);
    EXPECT_EQ(station.SectorEast, 90);
    EXPECT_EQ(station.SectorWest, 270);
    EXPECT_EQ(station.SectorSouth, 180);
    EXPECT_EQ(station.SectorSoutheast, 135);
    EXPECT_EQ(station.SectorSouthwest, 225);
    Runway(90);
    EXPECT_EQ(station.SectorWest, 0);
}

struct SectorRow {
    const char* Word;
    int Low;
    int High;
};

// With runway 16: the wide sectors meet the narrow ones at their edges.
constexpr SectorRow SectorRows[] = {
    {"north", 130, 190}, {"northeast", 190, 220}, {"northwest", 100, 130}, {"east", 220, 280},
    {"west", 40, 100},   {"southeast", 280, 310}, {"southwest", 10, 40},   {"south", 310, 10},
};

TEST_F(Quadrants, EachSectorRunsFromItsLowEdgeUpToItsHighOne) {
    for (const SectorRow& row : SectorRows) {
        EXPECT_NE(SeenAt(row.Low - 1), row.Word) << row.Low - 1;
        EXPECT_EQ(SeenAt(row.Low), row.Word) << row.Low;
        EXPECT_EQ(SeenAt(row.Low + 1), row.Word) << row.Low + 1;
        EXPECT_EQ(SeenAt(row.High - 1), row.Word) << row.High - 1;
        EXPECT_NE(SeenAt(row.High), row.Word) << row.High;
    }
}

TEST_F(Quadrants, WithoutGapsEveryBearingHasItsWord) {
    for (int bearing = 1; bearing <= 360; ++bearing) EXPECT_NE(SeenAt(bearing), "") << bearing;
}

TEST_F(Quadrants, AWordOnceFoundFallsOnlyWithItsSector) {
    for (const SectorRow& row : SectorRows) {
        EXPECT_EQ(SeenAt(row.Low, row.Word), row.Word);
        EXPECT_EQ(SeenAt(row.High - 1, row.Word), row.Word);
        EXPECT_NE(SeenAt(row.High, row.Word), row.Word);
        EXPECT_NE(SeenAt(row.Low - 1, row.Word), row.Word);
    }
}

TEST_F(Quadrants, AnUnknownWordIsReplaced) { EXPECT_EQ(SeenAt(160, "above"), "north"); }

TEST_F(Quadrants, WhereSectorsOverlapTheStandingWordIsKept) {
    station.SectorNortheast = station.SectorNorth;  // as centres may stand for a heading out of range
    EXPECT_EQ(SeenAt(160), "north");
    EXPECT_EQ(SeenAt(160, "northeast"), "northeast");
}

// With runway 3 the sector "north" starts at 0 and so leaves 360 out, where "northwest" has just ended.
TEST_F(Quadrants, InAGapBetweenTheSectorsTheOldWordStays) {
    Runway(30);
    pilot.Longitude = -122;
    for (const char* word : {"", "northwest", "south"}) {
        pilot.Latitude = 48;
        pilot.Quadrant = word;
        UpdatePilotGeometry(station, pilot);
        EXPECT_EQ(station.BearingFromRunway, 360);
        EXPECT_EQ(pilot.Quadrant, word);
    }
    EXPECT_EQ(SeenAt(359), "northwest");
    EXPECT_EQ(SeenAt(1), "north");
}

}  // namespace
}  // namespace corvenna
