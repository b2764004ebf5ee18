#include "station/traffic_index.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

#include "station/geometry.h"
#include "station/model.h"

namespace corvenna {
namespace {

using ::testing::ElementsAre;

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

/// Players in the order in which they are added; each search is one of a new tick unless a test says not.
class NearTraffic : public testing::Test {
  protected:
    using Places = std::vector<std::int32_t>;

    PlayerRecord& Add(double latitude, double longitude, std::int32_t altitude) {
        PlayerRecord& player = players_.emplace_back();
        player.Latitude = latitude;
        player.Longitude = longitude;
        player.Altitude = altitude;
        return player;
    }

    /// At so many miles from a place.
    void AddBeside(double latitude, double longitude, int bearing, double miles, std::int32_t altitude) {
        const GeoPoint place = ProjectNmExact(latitude, longitude, bearing, miles);
        Add(place.Latitude, place.Longitude, altitude);
    }

    Places Near(std::size_t place) {
        ++tick_;
        return NearInTheSameTick(place);
    }
    Places NearInTheSameTick(std::size_t place) {
        const auto near = index_.Near(players_, players_[place], tick_);
        return {near.begin(), near.end()};
    }
    Places NearInHeight(std::size_t place) {
        const auto near = index_.NearInHeight(players_, players_[place]);
        return {near.begin(), near.end()};
    }

    std::vector<PlayerRecord> players_;

  private:
    TrafficIndex index_;
    std::uint64_t tick_ = 0;
};

TEST_F(NearTraffic, OneWhoIsAloneFindsHimself) {
    Add(47, -122, 5000);
    EXPECT_THAT(Near(0), ElementsAre(0));
}

TEST_F(NearTraffic, TheAnswerIsInTheOrderOfThePlayers) {
    for (const int bearing : {200, 20, 110, 290}) AddBeside(47, -122, bearing, 4, 5000);
    Add(47, -122, 5000);
    EXPECT_THAT(Near(4), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(NearTraffic, WhoeverRoundsToFourMilesIsFoundAndWhoeverIsFarIsNot) {
    Add(47, -122, 5000);
    for (int bearing = 0; bearing < 360; ++bearing) {
        players_.resize(1);
        AddBeside(47, -122, bearing, 4.4999, 5000);
        AddBeside(47, -122, bearing, 4.6, 5000);
        AddBeside(47, -122, bearing, 60, 5000);
        EXPECT_THAT(Near(0), ElementsAre(0, 1)) << bearing;
    }
}

TEST_F(NearTraffic, ThreeThousandFeetAreTooFar) {
    Add(47, -122, 5000);
    for (const std::int32_t altitude : {2000, 2001, 7999, 8000}) Add(47, -122, altitude);
    EXPECT_THAT(Near(0), ElementsAre(0, 2, 3));
    EXPECT_THAT(NearInHeight(0), ElementsAre(0, 2, 3));
}

TEST_F(NearTraffic, EveryHeightHasItsNeighbours) {
    for (const std::int32_t altitude :
         {Lowest, Lowest + 2999, -6000, -3001, -1, 0, 2999, Highest - 1, Highest}) {
        Add(47, -122, altitude);
    }
    EXPECT_THAT(Near(0), ElementsAre(0, 1));
    EXPECT_THAT(Near(2), ElementsAre(2, 3));
    EXPECT_THAT(Near(4), ElementsAre(4, 5));
    EXPECT_THAT(Near(5), ElementsAre(4, 5, 6));
    EXPECT_THAT(Near(8), ElementsAre(7, 8));
}

TEST_F(NearTraffic, ThePolesAndThe180thMeridianAreLikeAnyOtherPlace) {
    Add(90, 0, 0);
    Add(89.98, 170, 0);
    Add(-89.98, 10, 0);
    Add(-89.99, -170, 0);
    Add(10, 179.99, 0);
    Add(10, -179.99, 0);
    Add(10, 180.01, 0);
    EXPECT_THAT(Near(0), ElementsAre(0, 1));
    EXPECT_THAT(Near(2), ElementsAre(2, 3));
    EXPECT_THAT(Near(4), ElementsAre(4, 5, 6));
}

/// Their distance can come out as 0.
TEST_F(NearTraffic, OneExactlyOppositeIsFound) {
    Add(47, -122, 0);
    Add(-47, 58, 0);
    EXPECT_THAT(Near(0), ElementsAre(0, 1));
}

TEST_F(NearTraffic, NobodyIsFoundTwiceThoughCellsShareABucket) {
    for (int i = 0; i < 40; ++i) AddBeside(47, -122, i * 9, 4.4, i % 2 == 0 ? 2900 : 3100);
    Places all(40);
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::int32_t>(i);
    Add(47, -122, 3000);
    all.push_back(40);
    EXPECT_EQ(Near(40), all);
}

TEST_F(NearTraffic, WithinATickPositionsAreTakenToStand) {
    Add(47, -122, 0);
    Add(47, -122, 0);
    EXPECT_THAT(Near(0), ElementsAre(0, 1));
    players_[1].Latitude = 50;
    EXPECT_THAT(NearInTheSameTick(0), ElementsAre(0, 1));
    EXPECT_THAT(Near(0), ElementsAre(0));
}

TEST_F(NearTraffic, AListThatHasGrownIsSortedAnew) {
    Add(47, -122, 0);
    EXPECT_THAT(Near(0), ElementsAre(0));
    Add(47, -122, 0);
    EXPECT_THAT(NearInTheSameTick(0), ElementsAre(0, 1));
}

TEST_F(NearTraffic, BetweenTicksAllWhoAreNearInHeightAreNear) {
    Add(47, -122, 0);
    Add(-20, 30, 2999);
    Add(47, -122, 3000);
    EXPECT_THAT(NearInHeight(0), ElementsAre(0, 1));
}

TEST_F(NearTraffic, WithAPositionBeyondAllReasonNobodyIsLeftOutForHisPlace) {
    Add(47, -122, 0);
    Add(1e7, -122, 0);
    Add(-1e300, std::numeric_limits<double>::infinity(), 0);
    Add(0, std::numeric_limits<double>::quiet_NaN(), 4000);
    EXPECT_THAT(Near(0), ElementsAre(0, 1, 2));
    EXPECT_THAT(Near(3), ElementsAre(3));
}

}  // namespace
}  // namespace corvenna
