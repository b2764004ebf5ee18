#include "practice/station_from_facts.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "practice/data_files.h"
#include "practice/magnetic_field.h"

namespace corvenna {
namespace {

/// The shipped airports in the magnetic field of 2002.
class StationFromFacts : public testing::Test {
  protected:
    Station Of(std::string_view code) const {
        Station station;
        FillStation(station, FindPracticeAirport(Airports, code), Airports, Variation);
        return station;
    }

    std::vector<PracticeAirport> Airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    static inline const std::vector<std::int16_t> Variation =
        WholeDegreeTable(MagneticField::Load(DataFile("igrf.json")), 2002.0);
};

TEST_F(StationFromFacts, TheMainRunwayIsTheOneThatTheFactsExpect) {
    std::ifstream file(DataFile("practice-airports.json"));
    const auto document = nlohmann::json::parse(file);
    for (const auto& facts : document.at("airports")) {
        const auto& expected = facts.at("expected_main_runway");
        const Station station = Of(facts.at("icao").get<std::string>());
        SCOPED_TRACE(station.AirportCode);
        EXPECT_EQ(station.ActiveRunway, expected.at("id").get<std::string>());
        EXPECT_EQ(station.RunwayLatitude, expected.at("lat").get<double>());
        EXPECT_EQ(station.RunwayLongitude, expected.at("lon").get<double>());
        EXPECT_EQ(station.RunwayElevation, expected.at("elevation_ft").get<int>());
        EXPECT_EQ(station.RunwayLength, expected.at("length").get<int>());
        EXPECT_EQ(station.RunwayWidth, expected.at("width").get<int>());
        EXPECT_EQ(station.RunwayHeading, expected.at("heading_magnetic").get<int>());
    }
}

TEST_F(StationFromFacts, IlsIsThatOfTheActiveEnd) {
    EXPECT_EQ(Of("KSEA").RunwayHasIls, -1);
    EXPECT_EQ(Of("LOWI").RunwayHasIls, 0);  // only at the other end
}

TEST_F(StationFromFacts, SeattleHasAllFrequencies) {
    const Station station = Of("KSEA");
    EXPECT_EQ(station.AirportName, "Seattle-Tacoma Intl");
    EXPECT_EQ(station.GroundFrequency, "121.7");
    EXPECT_EQ(station.TowerFrequency, "119.9");
    EXPECT_EQ(station.ApproachFrequency, "119.2");  // departure is there as well, and gives way
    EXPECT_EQ(station.ArtccFrequency, "128.5");
    EXPECT_EQ(station.CtafFrequency, "");
}

TEST_F(StationFromFacts, TowerStandsInForGroundAndBothGetSuffixes) {
    const Station station = Of("LOWI");
    EXPECT_EQ(station.GroundFrequency, "120.1 (GNDCON)");
    EXPECT_EQ(station.TowerFrequency, "120.1 (CT)");
    EXPECT_EQ(station.ApproachFrequency, "119.275");
}

TEST_F(StationFromFacts, TheCentreOfANeighbourStandsIn) { EXPECT_EQ(Of("KBFI").ArtccFrequency, "128.5"); }

TEST_F(StationFromFacts, WithoutANeighbourTheCentreHasNoNumber) {
    EXPECT_EQ(Of("NZWN").ArtccFrequency, "Air Route Traffic Control Center");
    EXPECT_EQ(Of("SCGE").ArtccFrequency, "Air Route Traffic Control Center");
}

TEST_F(StationFromFacts, AnAirportOfTheSameNameIsNoNeighbour) {
    for (PracticeAirport& airport : Airports) airport.Name = "Everywhere";
    EXPECT_EQ(Of("KBFI").ArtccFrequency, "Air Route Traffic Control Center");
}

TEST_F(StationFromFacts, AnUncontrolledAirportKeepsNothingButItsCommonFrequency) {
    const Station station = Of("KFHR");
    EXPECT_EQ(station.GroundFrequency, "");
    EXPECT_EQ(station.TowerFrequency, "");
    EXPECT_EQ(station.ApproachFrequency, "");
    EXPECT_EQ(station.ArtccFrequency, "");
    EXPECT_EQ(station.CtafFrequency, "128.25");
}

TEST_F(StationFromFacts, DepartureStandsInForApproach) {
    PracticeAirport airport = FindPracticeAirport(Airports, "KSEA");
    std::erase_if(airport.Radios, [](const auto& r) { return r.Use == PracticeRadio::Kind::Approach; });
    Station station;
    FillStation(station, airport, Airports, Variation);
    EXPECT_EQ(station.ApproachFrequency, "120.4");
}

TEST_F(StationFromFacts, OfEqualRunwaysTheFirstIsMain) {
    PracticeAirport airport = FindPracticeAirport(Airports, "KSEA");
    airport.Runways[1].LengthFeet = airport.Runways[0].LengthFeet;
    Station station;
    FillStation(station, airport, Airports, Variation);
    EXPECT_EQ(station.ActiveRunway, "16L");
    airport.Runways[1].LengthFeet += 1;
    FillStation(station, airport, Airports, Variation);
    EXPECT_EQ(station.ActiveRunway, "16R");
}

TEST_F(StationFromFacts, TheTaxiNetworkIsTakenOver) {
    const Station station = Of("KSEA");
    EXPECT_EQ(station.AirportTaxiPoints.size(), 153u);
    EXPECT_EQ(station.AirportTaxiPaths.size(), 268u);
    EXPECT_EQ(station.AirportTaxiPaths[0], (TaxiPath{TaxiPath::Runway, 0, 1, "Runway 16L"}));
    ASSERT_EQ(station.AirportParkingSpots.size(), 75u);
    EXPECT_EQ(station.AirportParkingSpots[0],
              (ParkingSpot{"GATE A 1", 85, 47.44221, -122.302137, 0}));  // 26 metres
}

TEST_F(StationFromFacts, AnEmptyTaxiNetworkIsOneBlankElement) {
    const Station station = Of("S31");
    EXPECT_EQ(station.AirportTaxiPoints, std::vector<TaxiPoint>(1));
    EXPECT_EQ(station.AirportTaxiPaths, std::vector<TaxiPath>(1));
    EXPECT_EQ(station.AirportParkingSpots, std::vector<ParkingSpot>(1));
}

TEST(FrequencyLabel, HasNoTrailingZeros) {
    EXPECT_EQ(FrequencyLabel(121.7), "121.7");
    EXPECT_EQ(FrequencyLabel(119.275), "119.275");
    EXPECT_EQ(FrequencyLabel(128.25), "128.25");
    EXPECT_EQ(FrequencyLabel(123.0), "123");
    EXPECT_EQ(FrequencyLabel(120.0), "120");
}

// ---- Labels: ground, tower, approach, artcc

struct Labels {
    std::string Ground, Tower, Approach, Artcc;
    bool operator==(const Labels&) const = default;
    friend void PrintTo(const Labels& l, std::ostream* out) {
        *out << l.Ground << " | " << l.Tower << " | " << l.Approach << " | " << l.Artcc;
    }
};

Labels Completed(const Labels& given, std::string_view centre = "") {
    Station station;
    station.GroundFrequency = given.Ground;
    station.TowerFrequency = given.Tower;
    station.ApproachFrequency = given.Approach;
    station.ArtccFrequency = given.Artcc;
    CompleteFrequencies(station, centre);
    return {station.GroundFrequency, station.TowerFrequency, station.ApproachFrequency,
            station.ArtccFrequency};
}

TEST(CompleteFrequencies, FourDifferentOnesStay) {
    EXPECT_EQ(Completed({"1", "2", "3", "4"}, "5"), (Labels{"1", "2", "3", "4"}));
}

TEST(CompleteFrequencies, GroundAloneServesAsTowerToo) {
    EXPECT_EQ(Completed({"1", "", "3", "4"}), (Labels{"1 (GNDCON)", "1 (CT)", "3", "4"}));
}

TEST(CompleteFrequencies, NeitherGroundNorTowerWipesApproachAndKeepsTheCentre) {
    EXPECT_EQ(Completed({"", "", "3", "4"}), (Labels{"", "", "", "4"}));
    EXPECT_EQ(Completed({"", "", "3", ""}, "5"), (Labels{"", "", "", ""}));
}

TEST(CompleteFrequencies, TheCentreFoundNearbyFillsIn) {
    EXPECT_EQ(Completed({"1", "2", "", ""}, "5"), (Labels{"1", "2", "", "5"}));
}

TEST(CompleteFrequencies, EachPairOfEqualOnesIsToldApart) {
    EXPECT_EQ(Completed({"1", "1", "3", "4"}), (Labels{"1 (GNDCON)", "1 (CT)", "3", "4"}));
    EXPECT_EQ(Completed({"1", "2", "2", "4"}), (Labels{"1", "2 (CT)", "2 (TRACON)", "4"}));
    EXPECT_EQ(Completed({"1", "2", "1", "4"}), (Labels{"1 (GNDCON)", "2", "1 (TRACON)", "4"}));
    EXPECT_EQ(Completed({"1", "2", "3", "2"}), (Labels{"1", "2 (CT)", "3", "2 (ARTCC)"}));
    EXPECT_EQ(Completed({"1", "2", "3", "1"}), (Labels{"1 (GNDCON)", "2", "3", "1 (ARTCC)"}));
    EXPECT_EQ(Completed({"1", "2", "3", "3"}), (Labels{"1", "2", "3 (TRACON)", "3 (ARTCC)"}));
}

TEST(CompleteFrequencies, OfThreeEqualOnesApproachEscapes) {
    EXPECT_EQ(Completed({"1", "1", "1", "4"}), (Labels{"1 (GNDCON)", "1 (CT)", "1", "4"}));
}

TEST(CompleteFrequencies, OfFourEqualOnesTheLastTestTellsTheOtherTwoApart) {
    EXPECT_EQ(Completed({"1", "1", "1", "1"}), (Labels{"1 (GNDCON)", "1 (CT)", "1 (TRACON)", "1 (ARTCC)"}));
}

}  // namespace
}  // namespace corvenna
