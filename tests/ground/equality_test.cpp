#include <gmock/gmock.h>

#include <algorithm>

#include "ground/ground_control.h"
#include "ground/plain_ground.h"
#include "ground/random_scene.h"
#include "ground/taxi_routing.h"
#include "ground/taxi_separation.h"
#include "station/runway_scan.h"
#include "station/tick.h"
#include "support/plain_lists.h"
#include "support/radio_log.h"

// The product against the plain version, on scenes made by chance. A failure names the seed of its scene.

namespace corvenna {
namespace {

constexpr std::uint64_t Scenes = 20000;

void ExpectSame(const Station& product, const Station& plain) {
    ASSERT_EQ(AllOf(product.Players), AllOf(plain.Players));
    ASSERT_EQ(AllOf(product.TaxiRoutes), AllOf(plain.TaxiRoutes));
    ASSERT_EQ(AllOf(product.TakeoffQueue), AllOf(plain.TakeoffQueue));
    ASSERT_EQ(AllOf(product.LandingQueue), AllOf(plain.LandingQueue));
    ASSERT_EQ(product.AirportParkingSpots, plain.AirportParkingSpots);
}

TEST(GroundAgainstThePlainVersion, GivesTheSameRoutesAndClearances) {
    int routed = 0;
    int restarted = 0;
    int unreachable = 0;
    for (std::uint64_t seed = 1; seed <= Scenes; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        RandomScene scene(seed);
        Station product = scene.Airport();
        scene.AddTraffic(product);
        Station plain = product;
        for (std::int32_t i = 0; i < product.PlayerCount(); ++i) {
            const GeoPoint target = scene.Target(product);
            AssignTaxiRoute(product, product.Players[i], target);
            const PlainSearchCount count = PlainAssignTaxiRoute(plain, plain.Players[i], target);
            routed += count.Links > 0 ? 1 : 0;
            restarted += count.Links > 0 && count.Attempts > 1 ? 1 : 0;
            unreachable += count.Links == 0 && count.Attempts > 0 ? 1 : 0;
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(product, plain));
    }
    EXPECT_GT(routed, 20000);  // the scenes are of use only if these come about
    EXPECT_GT(restarted, 5000);
    EXPECT_GT(unreachable, 5000);
}

TEST(GroundAgainstThePlainVersion, GivesTheSameRoutesOverLargeNetworks) {
    int mostAttempts = 0;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        RandomScene scene(seed);
        Station product = scene.Airport(120);
        scene.AddTraffic(product);
        Station plain = product;
        for (std::int32_t i = 0; i < product.PlayerCount(); ++i) {
            const GeoPoint target = scene.Target(product);
            AssignTaxiRoute(product, product.Players[i], target);
            const PlainSearchCount count = PlainAssignTaxiRoute(plain, plain.Players[i], target);
            if (count.Links > 0) mostAttempts = std::max(mostAttempts, count.Attempts);
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(product, plain));
    }
    EXPECT_GT(mostAttempts, 20);
}

TEST(GroundAgainstThePlainVersion, SeesTheSameRunwayTheSameSpotsAndTheSameHolds) {
    int holds = 0;
    int occupied = 0;
    for (std::uint64_t seed = 1; seed <= Scenes; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        RandomScene scene(seed);
        Station product = scene.Airport();
        scene.AddTraffic(product);
        Station plain = product;
        for (std::int32_t i = 0; i < product.PlayerCount(); ++i) {
            const PlayerRecord& pilot = product.Players[i];
            const bool runwayOccupied = PlainComputeRunwayOccupied(plain, plain.Players[i]);
            ASSERT_EQ(ComputeRunwayOccupied(product, pilot), runwayOccupied);
            ASSERT_EQ(FindRunwayOccupied(product, pilot), runwayOccupied);
            ASSERT_EQ(UpdateParkingAvailability(product), PlainUpdateParkingAvailability(plain));
            SeparateTaxiRoutes(product, runwayOccupied);
            PlainSeparateTaxiRoutes(plain, runwayOccupied);
            ASSERT_NO_FATAL_FAILURE(ExpectSame(product, plain));
            AdvanceTaxiRoutes(product);
            PlainAdvanceTaxiRoutes(plain);
            ASSERT_NO_FATAL_FAILURE(ExpectSame(product, plain));
            occupied += runwayOccupied ? 1 : 0;
            if (!scene.Chance(20)) continue;
            RandomScene same = scene;
            scene.Disturb(product);
            same.Disturb(plain);
        }
        for (const PlayerRecord& pilot : plain.Players.Valid()) {
            holds += pilot.MenuText.find("Hold position") != std::string::npos ? 1 : 0;
        }
    }
    EXPECT_GT(holds, 10000);
    EXPECT_GT(occupied, 10000);
}

TEST(GroundAgainstThePlainVersion, SaysTheSameInWholeTicksWithFieldsWrittenBetweenThem) {
    // On the Tower's frequency a pilot loses his route, in between the turns of those on Ground's.
    const FrequencyService productServices[] = {{&Station::GroundFrequency, &GroundControl},
                                                {&Station::TowerFrequency, &ResetPilot}};
    const FrequencyService plainServices[] = {{&Station::GroundFrequency, &PlainGroundControl},
                                              {&Station::TowerFrequency, &ResetPilot}};
    std::size_t said = 0;
    for (std::uint64_t seed = 1; seed <= Scenes; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        RandomScene scene(seed);
        Station product = scene.Airport();
        scene.AddTraffic(product);
        Station plain = product;
        RadioLog productLog;
        RadioLog plainLog;
        for (int tick = 0; tick < 4; ++tick) {
            RandomScene disturbance(seed * 10 + static_cast<std::uint64_t>(tick));
            RandomScene sameDisturbance = disturbance;
            disturbance.Disturb(product);
            sameDisturbance.Disturb(plain);
            AtcTimer(product, productServices, productLog);
            AtcTimer(plain, plainServices, plainLog);
            ASSERT_NO_FATAL_FAILURE(ExpectSame(product, plain));
        }
        ASSERT_EQ(productLog.Entries.size(), plainLog.Entries.size());
        for (std::size_t i = 0; i < plainLog.Entries.size(); ++i) {
            ASSERT_EQ(productLog.Entries[i].Text, plainLog.Entries[i].Text);
            ASSERT_EQ(productLog.Entries[i].Audience, plainLog.Entries[i].Audience);
        }
        said += plainLog.Entries.size();
    }
    EXPECT_GT(said, 50000U);
}

}  // namespace
}  // namespace corvenna
