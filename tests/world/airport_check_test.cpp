#include "world/airport_check.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Runway 16 along points 0 and 1, taxiway A from 1 to 2, where GATE 1 is tied.
Station SoundAirport() {
    Station s;
    s.AirportName = "Test Field";
    s.GroundFrequency = "121.9";
    s.TowerFrequency = "118.3";
    s.ActiveRunway = "16";
    s.RunwayLatitude = 47;
    s.RunwayLongitude = -122;
    s.AirportTaxiPoints = {{1, 47, -122}, {1, 46.99, -122}, {1, 46.99, -122.001}};
    s.AirportParkingSpots = {{"GATE 1", 85, 46.99, -122.002, 0}};
    s.AirportTaxiPaths = {{1, 0, 1, "Runway 16"}, {0, 1, 2, "A"}, {2, 2, 0, "0"}};
    return s;
}

std::vector<std::string> Words(const Station& station) {
    std::vector<std::string> words;
    for (const AirportFinding& finding : CheckAirport(station)) words.push_back(finding.What);
    return words;
}

TEST(AirportCheck, ASoundAirportHasNoFindings) {
    EXPECT_THAT(CheckAirport(SoundAirport()), IsEmpty());
    EXPECT_EQ(FindingsInOneLine({}), "");
}

TEST(AirportCheck, AnEmptyAirportLacksEverything) {
    EXPECT_THAT(Words(Station()),
                ElementsAre("no runway", "no frequencies", "no taxi network", "no parking spots"));
    EXPECT_EQ(FindingsInOneLine(CheckAirport(Station())),
              "no runway; no frequencies; no taxi network; no parking spots");
}

TEST(AirportCheck, ARunwayWithoutItsEndIsTold) {
    Station s = SoundAirport();
    s.RunwayLatitude = s.RunwayLongitude = 0;
    EXPECT_THAT(Words(s), ElementsAre("runway 16 has no end, so its threshold is unknown"));
}

TEST(AirportCheck, ARunwayWithoutPathsOfItsNameIsTold) {
    Station s = SoundAirport();
    s.AirportTaxiPaths[0].Name = "Runway 34";
    EXPECT_THAT(Words(s), ElementsAre("runway 16 has no taxi paths, no route leads to it"));
    s.AirportTaxiPaths[0].Name = "RUNWAY 16";
    EXPECT_THAT(Words(s), IsEmpty());
}

TEST(AirportCheck, PathsThatEndFarFromTheThresholdAreTold) {
    Station s = SoundAirport();
    s.RunwayLatitude = 47.003;  // 1094 ft
    EXPECT_THAT(CheckAirport(s),
                ElementsAre(AirportFinding{"the taxi paths of runway 16 end 1094 ft from its threshold",
                                           {"threshold at 47.00300, -122.00000"}}));
    s.RunwayLatitude = 47.0027;  // 985 ft
    EXPECT_THAT(Words(s), IsEmpty());
}

TEST(AirportCheck, FrequenciesMatterAsFarAsServiceDependsOnThem) {
    Station s = SoundAirport();
    s.TowerFrequency = "";
    EXPECT_THAT(Words(s), IsEmpty());
    s.GroundFrequency = "";
    EXPECT_THAT(Words(s), ElementsAre("no frequencies"));
    s.CtafFrequency = "122.8";
    EXPECT_THAT(Words(s), ElementsAre("no ground and no tower frequency, pilots get advisories only"));
}

TEST(AirportCheck, ANetworkInPartsIsToldWithThePlacesAndSpotsOfTheSmallerOnes) {
    Station s = SoundAirport();
    s.AirportTaxiPoints.push_back({1, 46.5, -122.5});
    s.AirportTaxiPoints.push_back({1, 46.6, -122.6});
    s.AirportTaxiPoints.push_back({1, 46.7, -122.7});
    s.AirportTaxiPoints.push_back({1, 46.8, -122.8});  // used by nothing
    s.AirportParkingSpots.push_back({"GATE 2", 85, 46.5, -122.5, 0});
    s.AirportTaxiPaths.push_back({0, 3, 4, "B"});
    s.AirportTaxiPaths.push_back({2, 5, 1, "0"});  // a tie to a point of its own
    EXPECT_THAT(CheckAirport(s),
                ElementsAre(AirportFinding{"the taxi network is in 3 parts",
                                           {"apart: 2 points, the first at 46.50000, -122.50000 (point 3)",
                                            "apart: 1 point at 46.70000, -122.70000 (point 5), GATE 2"}}));
}

TEST(AirportCheck, PathsAndTiesThatPointNowhereAreTold) {
    Station s = SoundAirport();
    s.AirportTaxiPaths.push_back({0, 2, 3, "B"});
    s.AirportTaxiPaths.push_back({0, -1, 2, "C"});
    s.AirportTaxiPaths.push_back({2, 2, 1, "0"});
    s.AirportTaxiPaths.push_back({2, 2147483647, 0, "0"});
    s.AirportTaxiPaths.push_back({9, 77, 77, "0"});  // of no kind that anybody uses
    EXPECT_THAT(
        CheckAirport(s),
        ElementsAre(AirportFinding{"2 paths that point nowhere",
                                   {"path 3 \"B\": from point 2 to point 3; there are 3 points and 1 spot",
                                    "path 4 \"C\": from point -1 to point 2; there are 3 points and 1 spot"}},
                    AirportFinding{
                        "2 ties that point nowhere",
                        {"path 5 \"0\": from point 2 to spot 1; there are 3 points and 1 spot",
                         "path 6 \"0\": from point 2147483647 to spot 0; there are 3 points and 1 spot"}}));
}

TEST(AirportCheck, SpotsWithoutATieAreToldByNameAndPlace) {
    Station s = SoundAirport();
    s.AirportParkingSpots.push_back({"GATE 2", 85, 46.5, -122.5, 0});
    EXPECT_THAT(CheckAirport(s), ElementsAre(AirportFinding{"1 parking spot without a tie",
                                                            {"GATE 2 at 46.50000, -122.50000"}}));
}

TEST(AirportCheck, AnAirportOfPathsWithoutPointsIsToldAndDoesNoHarm) {
    Station s = SoundAirport();
    s.AirportTaxiPoints = {TaxiPoint{}};
    EXPECT_THAT(Words(s), Contains(HasSubstr("paths that point nowhere")));
}

}  // namespace
}  // namespace corvenna
