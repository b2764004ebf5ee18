#include "practice/taxi_network.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A ladder of two taxiways side by side, A in the north and B in the south, with rungs C, D and E:
///
///   0 -A- 1 -A- 2 -A- 3
///   C     D           E
///   4 ------B-------- 5
Station Ladder() {
    Station station;
    station.AirportTaxiPoints = {{1, 47.010, -122.00}, {1, 47.010, -121.99}, {1, 47.010, -121.98},
                                 {2, 47.010, -121.97}, {1, 47.000, -122.00}, {1, 47.000, -121.97}};
    station.AirportTaxiPaths = {{0, 0, 1, "A"}, {0, 1, 2, "A"}, {0, 3, 2, "a "},
                                {0, 0, 4, "C"}, {0, 4, 5, "B"}, {0, 5, 3, "E"}};
    station.AirportParkingSpots = {{"GATE 1", 50, 47.020, -122.00, 0}, {"GATE 2", 50, 47.020, -121.97, 0}};
    return station;
}

const std::vector<std::string> None;

TEST(TaxiNetwork, UntoldHeTakesTheShortestWay) {
    const TaxiNetwork network(Ladder());
    EXPECT_THAT(network.Way(0, 3, None), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(network.Way(3, 0, None), ElementsAre(3, 2, 1, 0));
}

TEST(TaxiNetwork, ToldAnotherWayHeTakesThatOne) {
    const TaxiNetwork network(Ladder());
    const std::vector<std::string> taxiways = {"C", "B", "E"};
    EXPECT_THAT(network.Way(0, 3, taxiways), ElementsAre(0, 4, 5, 3));
}

TEST(TaxiNetwork, TaxiwaysThatAreNotThereAreLeftOut) {
    const TaxiNetwork network(Ladder());
    const std::vector<std::string> taxiways = {"X", "C", "Y", "B", "E"};
    EXPECT_THAT(network.Way(0, 3, taxiways), ElementsAre(0, 4, 5, 3));
    const std::vector<std::string> unknown = {"X", "Y"};
    EXPECT_THAT(network.Way(0, 3, unknown), ElementsAre(0, 1, 2, 3));
}

TEST(TaxiNetwork, ATaxiwayUsedTwiceIsNamedTwice) {
    Station station = Ladder();
    station.AirportTaxiPaths.push_back({0, 1, 4, "D"});
    const TaxiNetwork network(station);
    const std::vector<std::string> taxiways = {"A", "D", "C", "A"};
    EXPECT_THAT(network.Way(0, 2, taxiways), ElementsAre(0, 1, 4, 0, 1, 2));
}

TEST(TaxiNetwork, AnUnnamedPieceMayLieInBetween) {
    Station station = Ladder();
    station.AirportTaxiPaths[4].Name.clear();
    const TaxiNetwork network(station);
    const std::vector<std::string> taxiways = {"C", "E"};
    EXPECT_THAT(network.Way(0, 3, taxiways), ElementsAre(0, 4, 5, 3));
}

TEST(TaxiNetwork, RunwaysAreLeftToThoseWhoAreToldToUseThem) {
    Station station = Ladder();
    for (auto i : {0, 1, 2}) {
        station.AirportTaxiPaths[static_cast<std::size_t>(i)].Kind = TaxiPath::Runway;
        station.AirportTaxiPaths[static_cast<std::size_t>(i)].Name = "Runway 9";
    }
    const TaxiNetwork network(station);
    EXPECT_THAT(network.Way(0, 3, None), ElementsAre(0, 4, 5, 3));
    const std::vector<std::string> taxiways = {"RUNWAY 9"};
    EXPECT_THAT(network.Way(0, 3, taxiways), ElementsAre(0, 1, 2, 3));
}

TEST(TaxiNetwork, SpotsLieBehindThePointsAndNobodyTaxiesAcrossThem) {
    Station station = Ladder();
    station.AirportTaxiPaths = {{2, 0, 0, ""}, {2, 3, 0, ""}, {2, 3, 1, ""}};
    const TaxiNetwork network(station);
    EXPECT_EQ(network.Spot("gate 2"), 7);
    EXPECT_EQ(network.Spot("GATE 3"), TaxiNetwork::None);
    EXPECT_THAT(network.Way(6, 7, None), ElementsAre(6, 3, 7));
    EXPECT_THAT(network.Way(0, 3, None), IsEmpty());
}

TEST(TaxiNetwork, WhatCannotBeReachedHasNoWay) {
    Station station = Ladder();
    station.AirportTaxiPaths.resize(1);
    const TaxiNetwork network(station);
    EXPECT_THAT(network.Way(0, 3, None), IsEmpty());
    EXPECT_THAT(network.Way(0, 0, None), ElementsAre(0));
}

TEST(TaxiNetwork, TheNearestNodeIsOneThatAPathLeadsTo) {
    Station station = Ladder();
    station.AirportTaxiPoints.push_back({1, 47.0101, -121.9799});
    const TaxiNetwork network(station);
    EXPECT_EQ(network.Nearest({47.0101, -121.9799}), 2);
}

TEST(TaxiNetwork, PathsToNowhereAreLeftOut) {
    Station station = Ladder();
    station.AirportTaxiPaths.push_back({0, 0, 600, "X"});
    station.AirportTaxiPaths.push_back({0, -1, 3, "X"});
    station.AirportTaxiPaths.push_back({2, 0, 2, ""});
    station.AirportTaxiPaths.push_back({0, 2, 2, "X"});
    EXPECT_THAT(TaxiNetwork(station).Way(0, 3, None), ElementsAre(0, 1, 2, 3));
}

TEST(TaxiNetwork, WithoutPathsItIsEmpty) {
    EXPECT_TRUE(TaxiNetwork(Station()).Empty());
    EXPECT_EQ(TaxiNetwork(Station()).Nearest({0, 0}), TaxiNetwork::None);
    EXPECT_FALSE(TaxiNetwork(Ladder()).Empty());
}

}  // namespace
}  // namespace corvenna
