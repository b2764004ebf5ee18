#include "station/terrain_index.h"

#include <gmock/gmock.h>

#include <vector>

#include "station/model.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PeaksByAltitude : public testing::Test {
  protected:
    void Add(double latitude, double longitude, std::int32_t altitude) {
        GeoPoint& mountain = mountains_.emplace_back();
        mountain.Latitude = latitude;
        mountain.Longitude = longitude;
        mountain.Altitude = altitude;
    }

    std::vector<std::int32_t> Altitudes(std::uint64_t tick) {
        index_.Update(mountains_, tick);
        std::vector<std::int32_t> altitudes;
        for (const TerrainIndex::Peak& peak : index_.ByFallingAltitude()) altitudes.push_back(peak.Altitude);
        return altitudes;
    }

    std::vector<GeoPoint> mountains_;
    TerrainIndex index_;
};

TEST_F(PeaksByAltitude, StandFromTheHighestToTheLowest) {
    for (const std::int32_t altitude : {400, 9000, -200, 5000, 9000}) Add(47, -122, altitude);
    EXPECT_THAT(Altitudes(1), ElementsAre(9000, 9000, 5000, 400, -200));
}

TEST_F(PeaksByAltitude, KnowTheirPlaceInDegreesAndOnTheSphere) {
    Add(0, 90, 5000);
    Altitudes(1);
    const TerrainIndex::Peak& peak = index_.ByFallingAltitude()[0];
    EXPECT_EQ(peak.Latitude, 0);
    EXPECT_EQ(peak.Longitude, 90);
    EXPECT_NEAR(peak.Point.X, 0, 1e-9);
    EXPECT_NEAR(peak.Point.Y, 1, 1e-9);
    EXPECT_NEAR(peak.Point.Z, 0, 1e-9);
}

TEST_F(PeaksByAltitude, AreTakenToStandWithinATick) {
    Add(47, -122, 400);
    EXPECT_THAT(Altitudes(7), ElementsAre(400));
    mountains_[0].Altitude = 900;
    EXPECT_THAT(Altitudes(7), ElementsAre(400));
    EXPECT_THAT(Altitudes(8), ElementsAre(900));
}

TEST_F(PeaksByAltitude, AreLookedAtEachTimeBetweenTicks) {
    Add(47, -122, 400);
    EXPECT_THAT(Altitudes(TerrainIndex::NoTick), ElementsAre(400));
    mountains_[0].Altitude = 900;
    EXPECT_THAT(Altitudes(TerrainIndex::NoTick), ElementsAre(900));
    mountains_.clear();
    EXPECT_THAT(Altitudes(TerrainIndex::NoTick), IsEmpty());
}

/// Only the place of one differs, and only the count.
TEST_F(PeaksByAltitude, AreSortedAnewForAnyDifference) {
    Add(47, -122, 400);
    Altitudes(1);
    mountains_[0].Latitude = 48;
    Altitudes(2);
    EXPECT_EQ(index_.ByFallingAltitude()[0].Latitude, 48);
    mountains_[0].Longitude = -121;
    Altitudes(3);
    EXPECT_EQ(index_.ByFallingAltitude()[0].Longitude, -121);
    Add(48, -121, 400);
    EXPECT_THAT(Altitudes(4), ElementsAre(400, 400));
}

}  // namespace
}  // namespace corvenna
