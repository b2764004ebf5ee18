#include "practice/practice_airports.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "practice/data_files.h"
#include "practice/json_file.h"

namespace corvenna {
namespace {

using testing::EndsWith;

/// A file with one small airport, after a change.
std::string ComplaintAbout(const std::function<void(nlohmann::json& airport)>& change) {
    nlohmann::json document = nlohmann::json::parse(R"({"airports": [{
        "icao": "KTST", "name": "Test Field", "lat": 47.0, "lon": -122.0, "elevation_m": 100,
        "runways": [{"length_ft": 5000, "width_ft": 100, "ends": [
            {"designator": "16", "number": 16, "suffix_code": 0, "lat": 47.01, "lon": -122.0,
             "elevation_m": 100, "heading_true": 180.0, "ils": false},
            {"designator": "34", "number": 34, "suffix_code": 0, "lat": 46.99, "lon": -122.0,
             "elevation_m": 100, "heading_true": 0.0, "ils": true}]}],
        "com": [{"code": 6, "mhz": 118.3}],
        "taxi_points": [{"kind": 1, "lat": 47.0, "lon": -122.0}, {"kind": 2, "lat": 47.0, "lon": -122.1}],
        "taxi_paths": [{"kind": 0, "start": 0, "end": 1, "name": "A"},
                       {"kind": 2, "start": 1, "end": 0, "name": ""}],
        "parking": [{"name": "GATE 1", "name_code": 10, "number": 1, "lat": 47.0, "lon": -122.0,
                     "radius_m": 20}]}]})");
    change(document["airports"][0]);
    const TemporaryFile file(document.dump());
    return ComplaintOf<DataFileError>([&] { LoadPracticeAirports(file.Path()); });
}

TEST(PracticeAirports, TheShippedFileHoldsEightAirports) {
    const auto airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    std::set<std::string> codes;
    for (const auto& airport : airports) codes.insert(airport.Code);
    EXPECT_EQ(codes, (std::set<std::string>{"KBFI", "KBID", "KFHR", "KSEA", "LOWI", "NZWN", "S31", "SCGE"}));
}

TEST(PracticeAirports, SeattleIsWhole) {
    const auto airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    const PracticeAirport& seattle = FindPracticeAirport(airports, "KSEA");
    EXPECT_EQ(seattle.Name, "Seattle-Tacoma Intl");
    EXPECT_EQ(seattle.TaxiPoints.size(), 153u);
    EXPECT_EQ(seattle.TaxiPaths.size(), 268u);
    EXPECT_EQ(seattle.Parking.size(), 75u);
    ASSERT_EQ(seattle.Runways.size(), 2u);
    EXPECT_EQ(seattle.Runways[0].LengthFeet, 11901);
    const PracticeRunwayEnd& end = seattle.Runways[0].Ends[0];
    EXPECT_EQ(end.Designator, "16L");
    EXPECT_EQ(end.Number, 16);
    EXPECT_EQ(end.SuffixCode, 1);
    EXPECT_EQ(end.ElevationMetres, 132);
    EXPECT_EQ(end.HeadingTrue, 180.34);
    EXPECT_TRUE(end.HasIls);
    ASSERT_EQ(seattle.Radios.size(), 5u);
    EXPECT_EQ(seattle.Radios[0].Use, PracticeRadio::Kind::Ground);
    EXPECT_EQ(seattle.Radios[0].Megahertz, 121.7);
    EXPECT_EQ(seattle.Parking[0].Name, "GATE A 1");
    EXPECT_EQ(seattle.Parking[0].NameCode, 12);
    EXPECT_EQ(seattle.Parking[0].Number, 1);
    EXPECT_EQ(seattle.Parking[0].RadiusMetres, 26);
    EXPECT_EQ(seattle.TaxiPaths[0].Kind, 1);
    EXPECT_EQ(seattle.TaxiPaths[0].Name, "Runway 16L");
}

TEST(PracticeAirports, AnAirportMayHaveNoTaxiNetwork) {
    const auto airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    const PracticeAirport& lopez = FindPracticeAirport(airports, "S31");
    EXPECT_TRUE(lopez.TaxiPoints.empty());
    EXPECT_TRUE(lopez.TaxiPaths.empty());
    EXPECT_TRUE(lopez.Parking.empty());
}

TEST(PracticeAirports, ACodeIsFoundInAnyCase) {
    const auto airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    EXPECT_EQ(FindPracticeAirport(airports, "lowi").Code, "LOWI");
}

TEST(PracticeAirports, AnUnknownCodeNamesTheKnownOnes) {
    const auto airports = LoadPracticeAirports(DataFile("practice-airports.json"));
    EXPECT_EQ(ComplaintOf<std::invalid_argument>([&] { FindPracticeAirport(airports, "KJFK"); }),
              "there is no airport KJFK; known are KSEA, LOWI, KBFI, SCGE, KFHR, KBID, NZWN, S31");
    EXPECT_THROW(FindPracticeAirport(airports, ""), std::invalid_argument);
}

TEST(PracticeAirports, TheSmallAirportOfTheseTestsIsInOrder) {
    EXPECT_EQ(ComplaintAbout([](auto&) {}), "");
}

TEST(PracticeAirports, APathThatLeadsNowhereIsRefused) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["taxi_paths"][0]["end"] = 2; }),
                EndsWith(": airports[0].taxi_paths[0].end is 2, but there are 2 to choose from"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["taxi_paths"][0]["start"] = -1; }),
                EndsWith(": airports[0].taxi_paths[0].start is -1, not within 0 to 32767"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["taxi_paths"][1]["end"] = 1; }),
                EndsWith(": airports[0].taxi_paths[1].end is 1, but there are 1 to choose from"));
}

TEST(PracticeAirports, WhatIsOutOfBoundsIsRefused) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["lat"] = 90.1; }),
                EndsWith(": airports[0].lat is 90.1, not within -90 to 90"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["runways"][0]["ends"][1]["lon"] = 181; }),
                EndsWith(": airports[0].runways[0].ends[1].lon is 181, not within -180 to 180"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["taxi_paths"][0]["kind"] = 3; }),
                EndsWith(": airports[0].taxi_paths[0].kind is 3, not within 0 to 2"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["runways"][0]["ends"][0]["number"] = 37; }),
                EndsWith(".number is 37, not within 1 to 36"));
}

TEST(PracticeAirports, AKindOfFrequencyThatNobodyKnowsIsRefused) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["com"][0]["code"] = 7; }),
                EndsWith(": airports[0].com[0].code is 7, which is no kind of frequency"));
}

TEST(PracticeAirports, ARunwayHasTwoEnds) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["runways"][0]["ends"].erase(1); }),
                EndsWith(": airports[0].runways[0].ends does not hold two ends"));
}

TEST(PracticeAirports, AnAirportHasARunway) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["runways"].clear(); }),
                EndsWith(": airports[0].runways is empty"));
}

TEST(PracticeAirports, AMissingFieldIsNamed) {
    EXPECT_THAT(ComplaintAbout([](auto& a) { a.erase("name"); }), EndsWith(": airports[0].name is missing"));
    EXPECT_THAT(ComplaintAbout([](auto& a) { a["parking"][0].erase("radius_m"); }),
                EndsWith(": airports[0].parking[0].radius_m is missing"));
}

}  // namespace
}  // namespace corvenna
