#include "practice/made_up_airports.h"

#include <gmock/gmock.h>

#include <cmath>
#include <queue>
#include <set>

#include "practice/bgl_writer.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

const std::vector<std::int16_t> NoVariation(MagVarGridSize);

TEST(MadeUpAirports, TheSeedAloneDecidesAndAShorterListIsTheBeginOfALongerOne) {
    const auto airports = MakeUpAirports(60, 7, NoVariation);
    ASSERT_EQ(airports.size(), 60u);
    EXPECT_EQ(FacilityFile(airports, {}), FacilityFile(MakeUpAirports(60, 7, NoVariation), {}));
    EXPECT_NE(FacilityFile(airports, {}), FacilityFile(MakeUpAirports(60, 8, NoVariation), {}));
    EXPECT_EQ(FacilityFile(std::span(airports).first(20), {}),
              FacilityFile(MakeUpAirports(20, 7, NoVariation), {}));
    EXPECT_TRUE(MakeUpAirports(0, 7, NoVariation).empty());
}

TEST(MadeUpAirports, HaveCodesOfTheirOwn) {
    std::set<std::string> codes;
    for (const PracticeAirport& airport : MakeUpAirports(18000, 1, NoVariation)) {
        codes.insert(airport.Code);
        EXPECT_EQ(airport.Code.front(), 'X');
    }
    EXPECT_EQ(codes.size(), 18000u);
}

TEST(MadeUpAirports, AreOfAllSizes) {
    std::set<std::size_t> radios;
    std::set<std::size_t> runways;
    bool withNetwork = false;
    bool withoutNetwork = false;
    for (const PracticeAirport& airport : MakeUpAirports(500, 1, NoVariation)) {
        radios.insert(airport.Radios.size());
        runways.insert(airport.Runways.size());
        (airport.TaxiPoints.empty() ? withoutNetwork : withNetwork) = true;
    }
    EXPECT_THAT(radios, testing::ElementsAre(1u, 3u, 5u));
    EXPECT_THAT(runways, testing::ElementsAre(1u, 2u));
    EXPECT_TRUE(withNetwork);
    EXPECT_TRUE(withoutNetwork);
}

/// How many points can be reached from the first one.
std::size_t Reached(const PracticeAirport& airport) {
    std::set<int> reached = {0};
    std::queue<int> open;
    open.push(0);
    for (; !open.empty(); open.pop()) {
        for (const PracticeTaxiPath& path : airport.TaxiPaths) {
            if (path.Kind == TaxiPath::ParkingTie) continue;
            if (path.Start == open.front() && reached.insert(path.End).second) open.push(path.End);
            if (path.End == open.front() && reached.insert(path.Start).second) open.push(path.Start);
        }
    }
    return reached.size();
}

TEST(MadeUpAirports, HaveNetworksInOnePieceAndEverySpotTied) {
    for (const PracticeAirport& airport : MakeUpAirports(300, 2, NoVariation)) {
        if (airport.TaxiPoints.empty()) continue;
        EXPECT_EQ(Reached(airport), airport.TaxiPoints.size()) << airport.Code;
        std::set<int> tied;
        for (const PracticeTaxiPath& path : airport.TaxiPaths) {
            if (path.Kind != TaxiPath::ParkingTie) continue;
            EXPECT_LT(static_cast<std::size_t>(path.Start), airport.TaxiPoints.size());
            tied.insert(path.End);
        }
        EXPECT_EQ(tied.size(), airport.Parking.size()) << airport.Code;
        EXPECT_EQ(*tied.rbegin(), static_cast<int>(airport.Parking.size()) - 1) << airport.Code;
    }
}

TEST(MadeUpAirports, HaveRunwaysAsLongAndAsTurnedAsTheySay) {
    const Station noVariation;
    for (const PracticeAirport& airport : MakeUpAirports(300, 3, NoVariation)) {
        for (const PracticeRunway& runway : airport.Runways) {
            const auto& [from, to] = runway.Ends;
            EXPECT_NEAR(DistanceFeet(from.Latitude, from.Longitude, to.Latitude, to.Longitude),
                        runway.LengthFeet, runway.LengthFeet * 0.01)
                << airport.Code;
            const double bearing =
                BearingTo(noVariation, from.Latitude, from.Longitude, to.Latitude, to.Longitude);
            EXPECT_LE(std::abs(std::remainder(bearing - from.HeadingTrue, 360)), 1.5) << airport.Code;
            EXPECT_LE(std::abs(std::remainder(from.Number * 10 - from.HeadingTrue, 360)), 6) << airport.Code;
            EXPECT_EQ(std::abs(from.Number - to.Number), 18);
        }
    }
}

TEST(MadeUpAirports, NumberTheirRunwaysByTheMagneticTable) {
    constexpr std::int16_t NinetyEast = 16384;
    const auto variation = std::vector<std::int16_t>(MagVarGridSize, NinetyEast);
    for (const PracticeAirport& airport : MakeUpAirports(50, 4, variation)) {
        const PracticeRunwayEnd& end = airport.Runways.front().Ends[0];
        EXPECT_LE(std::abs(std::remainder(end.Number * 10 - (end.HeadingTrue - 90), 360)), 6) << airport.Code;
    }
}

}  // namespace
}  // namespace corvenna
