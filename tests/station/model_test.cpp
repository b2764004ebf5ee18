#include "station/model.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/plain_lists.h"

namespace corvenna {
namespace {

PlayerRecord Named(std::string name) {
    PlayerRecord pilot;
    pilot.Name = std::move(name);
    return pilot;
}

TaxiRouteRecord RouteOf(std::string name, int links = 0) {
    TaxiRouteRecord route;
    route.PilotName = std::move(name);
    for (int i = 0; i < links; ++i) route.Links.insert(route.Links.begin(), TaxiPath{0, i, i + 1, "A"});
    return route;
}

/// A record with something in every field.
PlayerRecord BusyPilot(std::string name) {
    PlayerRecord pilot;
    pilot.Name = std::move(name);
    pilot.Id = 7;
    pilot.Role = Role::Observer;
    pilot.Latitude = 47.5;
    pilot.Longitude = -122.5;
    pilot.Altitude = 3000;
    pilot.Heading = 270;
    pilot.AircraftName = "Learjet 45";
    pilot.InService = 1;
    pilot.TunedFrequency = "118.3";
    pilot.MenuText = "menu";
    pilot.Choice = 3;
    pilot.AdvisedTraffic = "N2, ";
    pilot.AssignedHeading = "270";
    pilot.AssignedAltitude = "5000";
    pilot.Target = {"Final", "Fix", 1, 2, 3};
    pilot.FlightRules = Ifr;
    pilot.Quadrant = "north";
    pilot.Phase = "Approach";
    return pilot;
}

using Names = std::vector<std::string>;

TEST(Queues, AddingPutsTheNameLastAndKeepsABlankElementBehind) {
    Station s;
    AddToTakeoffQueue(s, Named("N1"));
    AddToTakeoffQueue(s, Named("N2"));
    AddToLandingQueue(s, Named("N3"));
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"N1", "N2", ""}));
    EXPECT_EQ(s.TakeoffQueueCount(), 2);
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N3", ""}));
    EXPECT_EQ(s.LandingQueueCount(), 1);
}

TEST(Queues, TheSameNameCanStandTwice) {
    Station s;
    AddToLandingQueue(s, Named("N1"));
    AddToLandingQueue(s, Named("N1"));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N1", "N1", ""}));
}

TEST(Queues, TheCountIs16BitAndAnOverflowIsAnError) {
    Station s;
    const PlayerRecord pilot = Named("N1");
    for (int i = 0; i < 32767; ++i) AddToTakeoffQueue(s, pilot);
    EXPECT_THROW(AddToTakeoffQueue(s, pilot), std::overflow_error);
    EXPECT_EQ(s.TakeoffQueueCount(), 32767);
}

TEST(Queues, AnUnknownNamePassedToRemoveFromLandingQueueRemovesTheFirstEntry) {
    Station s;
    for (const char* name : {"N1", "N2", "N3"}) AddToLandingQueue(s, Named(name));
    RemoveFromLandingQueue(s, Named("N9"));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N2", "N3", ""}));
    EXPECT_EQ(s.LandingQueueCount(), 2);
}

TEST(Queues, AnUnknownNamePassedToRemoveFromTakeoffQueueRemovesTheFirstEntry) {
    Station s;
    for (const char* name : {"N1", "N2"}) AddToTakeoffQueue(s, Named(name));
    RemoveFromTakeoffQueue(s, Named("N9"));
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"N2", ""}));
}

TEST(Queues, ARemovalBlanksEachPlaceOfTheNameAndTakesOutTheLast) {
    Station s;
    for (const char* name : {"N1", "N2", "N1", "N3"}) AddToTakeoffQueue(s, Named(name));
    RemoveFromTakeoffQueue(s, Named("N1"));
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"", "N2", "N3", ""}));
}

TEST(Queues, NamesAreComparedExactly) {
    Station s;
    for (const char* name : {"N1", "n2"}) AddToTakeoffQueue(s, Named(name));
    RemoveFromTakeoffQueue(s, Named("N2"));
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"n2", ""}));
}

TEST(Queues, RemovingFromAnEmptyQueueThrowsAndLeavesCount0WithOneBlank) {
    Station s;
    EXPECT_THROW(RemoveFromTakeoffQueue(s, Named("N1")), EmptyListError);
    EXPECT_THROW(RemoveFromLandingQueue(s, Named("N1")), EmptyListError);
    EXPECT_THROW(RemoveTaxiRoute(s, Named("N1")), EmptyListError);
    EXPECT_EQ(s.TakeoffQueueCount(), 0);
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{""}));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{""}));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>(1)));
}

TEST(TaxiRoutes, ARemovalMovesEachElementWithItsLinks) {
    Station s;
    s.TaxiRoutes.Add(RouteOf("N1", 2));
    s.TaxiRoutes.Add(RouteOf("N2", 3));
    RemoveTaxiRoute(s, Named("N1"));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>{RouteOf("N2", 3), {}}));
}

TEST(TaxiRoutes, AnUnknownPilotCostsTheFirstRoute) {
    Station s;
    s.TaxiRoutes.Add(RouteOf("N1"));
    s.TaxiRoutes.Add(RouteOf("N2"));
    RemoveTaxiRoute(s, Named("N9"));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>{RouteOf("N2"), {}}));
}

TEST(TaxiRoutes, RemovingAllRoutesOfAPilotWithoutOneChangesNothing) {
    Station s;
    RemoveTaxiRoutesOf(s, Named("N1"));
    s.TaxiRoutes.Add(RouteOf("N2"));
    RemoveTaxiRoutesOf(s, Named("N1"));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>{RouteOf("N2"), {}}));
}

TEST(ResetPilot, ClearsTheDialogueAndLeavesWhoHeIsAndWhereHeIs) {
    Station s;
    PlayerRecord pilot = BusyPilot("N1");
    ResetPilot(s, pilot);
    PlayerRecord expected;
    expected.Name = "N1";
    expected.Id = 7;
    expected.Role = Role::Observer;
    expected.Latitude = 47.5;
    expected.Longitude = -122.5;
    expected.Altitude = 3000;
    expected.Heading = 270;
    expected.AircraftName = "Learjet 45";
    EXPECT_EQ(pilot, expected);
}

TEST(ResetPilot, TakesHimOutOfAllThreeLists) {
    Station s;
    for (const char* name : {"N1", "N2", "N3"}) {
        AddToTakeoffQueue(s, Named(name));
        AddToLandingQueue(s, Named(name));
        s.TaxiRoutes.Add(RouteOf(name));
    }
    PlayerRecord pilot = BusyPilot("N2");
    ResetPilot(s, pilot);
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"N1", "N3", ""}));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N1", "N3", ""}));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>{RouteOf("N1"), RouteOf("N3"), {}}));
}

TEST(ResetPilot, OnARecordOfAPilotOnNoListChangesNoList) {
    Station s;
    AddToTakeoffQueue(s, Named("N1"));
    AddToLandingQueue(s, Named("N2"));
    s.TaxiRoutes.Add(RouteOf("N3"));
    PlayerRecord pilot = BusyPilot("N9");
    ResetPilot(s, pilot);
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"N1", ""}));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N2", ""}));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>{RouteOf("N3"), {}}));
}

// The first removal blanks both places, so that the walk finds him no second time.
TEST(ResetPilot, OfAPilotWhoStandsTwiceInAQueueMakesOneRemovalAndLeavesABlank) {
    Station s;
    for (const char* name : {"N1", "N2", "N1", "N3"}) AddToTakeoffQueue(s, Named(name));
    PlayerRecord pilot = BusyPilot("N1");
    ResetPilot(s, pilot);
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{"", "N2", "N3", ""}));
}

TEST(ResetPilot, OfARecordWithoutANameMakesARemovalForEachBlankThatItsWalkMeets) {
    Station s;
    for (const char* name : {"", "N1", "", "N2"}) AddToLandingQueue(s, Named(name));
    PlayerRecord nobody;
    ResetPilot(s, nobody);
    // Place 0 is blank: both blanks become one. Place 3, the spare element by then, is blank: one more.
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{"N1", "N2", ""}));
}

TEST(ResetPilot, OfARecordWithoutANameNeverEmptiesAnEmptyQueue) {
    for (int blanks = 0; blanks < 6; ++blanks) {
        Station s;
        for (int i = 0; i < blanks; ++i) AddToTakeoffQueue(s, Named(""));
        PlayerRecord nobody;
        EXPECT_NO_THROW(ResetPilot(s, nobody)) << blanks;
        EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{""})) << blanks;
    }
}

TEST(ResetPilot, AndTheQueuesEqualThePlainVersionOnRandomTraffic) {
    const Names names = {"", "N1", "N2", "N3"};
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Station s;
        PlainTraffic plain;
        for (int step = 0; step < 30; ++step) {
            const std::string& name = names[random() % names.size()];
            PlayerRecord pilot = BusyPilot(name);
            PlayerRecord plainPilot = pilot;
            switch (random() % 8) {
                case 0:
                case 1:
                    AddToTakeoffQueue(s, pilot);
                    plain.TakeoffQueue.Add(name);
                    break;
                case 2:
                case 3:
                    AddToLandingQueue(s, pilot);
                    plain.LandingQueue.Add(name);
                    break;
                case 4:
                    s.TaxiRoutes.Add(RouteOf(name, step % 3));
                    plain.TaxiRoutes.Add(RouteOf(name, step % 3));
                    break;
                case 5:
                    if (plain.TakeoffQueue.Remove([&](const std::string& n) { return n == name; })) {
                        RemoveFromTakeoffQueue(s, pilot);
                    } else {
                        EXPECT_THROW(RemoveFromTakeoffQueue(s, pilot), EmptyListError);
                    }
                    break;
                case 6:
                    if (plain.LandingQueue.Remove([&](const std::string& n) { return n == name; })) {
                        RemoveFromLandingQueue(s, pilot);
                    } else {
                        EXPECT_THROW(RemoveFromLandingQueue(s, pilot), EmptyListError);
                    }
                    break;
                default:
                    ResetPilot(s, pilot);
                    plain.Reset(plainPilot);
                    ASSERT_EQ(pilot, plainPilot);
            }
            ASSERT_EQ(AllOf(s.TakeoffQueue), plain.TakeoffQueue.Elements);
            ASSERT_EQ(AllOf(s.LandingQueue), plain.LandingQueue.Elements);
            ASSERT_EQ(AllOf(s.TaxiRoutes), plain.TaxiRoutes.Elements);
        }
    }
}

TEST(Traffic, ClearingLeavesEachListWithOneBlankElement) {
    Station s;
    s.Players.Add(BusyPilot("N1"));
    s.TaxiRoutes.Add(RouteOf("N1"));
    AddToTakeoffQueue(s, Named("N1"));
    AddToLandingQueue(s, Named("N1"));
    ClearTraffic(s);
    EXPECT_EQ(AllOf(s.Players), (std::vector<PlayerRecord>(1)));
    EXPECT_EQ(AllOf(s.TaxiRoutes), (std::vector<TaxiRouteRecord>(1)));
    EXPECT_EQ(AllOf(s.TakeoffQueue), (Names{""}));
    EXPECT_EQ(AllOf(s.LandingQueue), (Names{""}));
}

TEST(StationModel, StartsBlank) {
    const Station s;
    EXPECT_EQ(s.PlayerCount() + s.TaxiRouteCount() + s.LandingQueueCount() + s.TakeoffQueueCount(), 0);
    EXPECT_EQ(s.AirportTaxiPoints.size(), 1u);
    EXPECT_EQ(s.AirportParkingSpots.size(), 1u);
    EXPECT_EQ(s.AirportTaxiPaths.size(), 1u);
    EXPECT_EQ(s.Mountains.size(), 1u);
    EXPECT_EQ(s.MagVarGrid, std::vector<std::int16_t>(65160));
    EXPECT_FALSE(s.SessionOpen);
    EXPECT_FALSE(s.SessionHost);
}

}  // namespace
}  // namespace corvenna
