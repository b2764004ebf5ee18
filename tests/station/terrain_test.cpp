#include <gtest/gtest.h>

#include "station/geometry.h"

namespace corvenna {
namespace {

class Terrain : public testing::Test {
  protected:
    GeoPoint from = Place(47, -122);

    static GeoPoint Place(double latitude, double longitude) {
        GeoPoint place;
        place.Latitude = latitude;
        place.Longitude = longitude;
        return place;
    }

    /// A mountain at a bearing and distance from the start.
    void Mountain(double bearing, double nauticalMiles, int altitude) {
        GeoPoint mountain = ProjectNmExact(47, -122, bearing, nauticalMiles);
        mountain.Altitude = altitude;
        station.Mountains[static_cast<std::size_t>(station.MountainCount++)] = mountain;
        station.Mountains.emplace_back();
    }

    /// For a route of 60 nm to the south.
    int Altitude(int altitude) { return RouteTerrainAltitude(station, altitude, from, Place(46, -122)); }

    Station station;
};

TEST_F(Terrain, WithoutMountainsTheAltitudeStands) {
    station.Mountains[0].Altitude = 9000;
    EXPECT_EQ(Altitude(3000), 3000);
    station.MagVarGrid.clear();  // and nothing is looked up
    EXPECT_EQ(Altitude(3000), 3000);
}

TEST_F(Terrain, TheHighestMountainAheadCountsWithoutAMargin) {
    Mountain(180.5, 20, 7000);
    Mountain(170.5, 30, 9000);
    Mountain(190.5, 30, 8000);
    EXPECT_EQ(Altitude(3000), 9000);
    EXPECT_EQ(Altitude(8999), 9000);
    EXPECT_EQ(Altitude(9000), 9000);
    EXPECT_EQ(Altitude(9001), 9001);
}

TEST_F(Terrain, AMountainExactlyAtTheTargetsDistanceCounts) {
    Mountain(179.5, 60, 7000);
    EXPECT_EQ(Altitude(3000), 7000);
}

TEST_F(Terrain, AMountainAMileBehindTheTargetDoesNotCount) {
    Mountain(179.5, 61, 7000);
    EXPECT_EQ(Altitude(3000), 3000);
}

TEST_F(Terrain, AMountainAtTheFansLowEdgeCounts) {
    Mountain(134.5, 20, 7000);  // bearing 135, 45 to the left
    EXPECT_EQ(Altitude(3000), 7000);
}

TEST_F(Terrain, AMountainADegreeOutsideTheLowEdgeDoesNotCount) {
    Mountain(133.5, 20, 7000);
    EXPECT_EQ(Altitude(3000), 3000);
}

TEST_F(Terrain, AMountainAtTheFansHighEdgeDoesNotCount) {
    Mountain(224.5, 20, 7000);  // bearing 225, 45 to the right
    EXPECT_EQ(Altitude(3000), 3000);
}

TEST_F(Terrain, AMountainADegreeInsideTheHighEdgeCounts) {
    Mountain(223.5, 20, 7000);
    EXPECT_EQ(Altitude(3000), 7000);
}

TEST_F(Terrain, OnlyTheCountedMountainsAreLookedAt) {
    Mountain(190, 20, 7000);
    Mountain(190, 20, 9000);
    station.MountainCount = 1;
    EXPECT_EQ(Altitude(3000), 7000);
}

}  // namespace
}  // namespace corvenna
