#include "practice/bgl_writer.h"

#include <gmock/gmock.h>

#include <bit>

#include "station/model.h"

namespace corvenna {
namespace {

using testing::ElementsAre;

std::int32_t Long(const std::string& file, std::int32_t offset) {
    std::uint32_t word = 0;
    for (int i = 3; i >= 0; --i) {
        word = word << 8 | static_cast<std::uint8_t>(
                               file.at(static_cast<std::size_t>(offset) + static_cast<std::size_t>(i)));
    }
    return static_cast<std::int32_t>(word);
}

float Single(const std::string& file, std::int32_t offset) {
    return std::bit_cast<float>(Long(file, offset));
}

std::int32_t Next(const std::string& file, std::int32_t entry) { return entry + Long(file, entry + 4) + 8; }

/// One runway 16/34 on the equator, a taxiway, a gate.
PracticeAirport TestAirport() {
    PracticeAirport airport;
    airport.Code = "XTST";
    airport.Name = "Test";
    airport.Latitude = 0;
    airport.Longitude = 45;
    airport.ElevationMetres = 100;
    PracticeRunway runway{.LengthFeet = 6000, .WidthFeet = 150, .Ends = {}};
    runway.Ends[0] = {"16L", 16, 1, 0.01, 45, 98, 170.5, true};
    runway.Ends[1] = {"34R", 34, 2, -0.01, 45, 102, 350.5, false};
    airport.Runways = {runway};
    airport.Radios = {{PracticeRadio::Kind::Tower, 118.3}, {PracticeRadio::Kind::Approach, 119.275}};
    airport.TaxiPoints = {{1, 0, 45}, {2, 0.001, 45}};
    airport.TaxiPaths = {{TaxiPath::Runway, 0, 1, "Runway 16L"},
                         {TaxiPath::Taxiway, 1, 0, "A"},
                         {TaxiPath::ParkingTie, 1, 0, ""}};
    airport.Parking = {{"GATE A 3", 12, 3, 0, 45.001, 20}};
    return airport;
}

/// The names that lead to airports in the run of name lists at a place, and the entry that ends the run.
std::vector<std::string> NamesOfRun(const std::string& file, std::int32_t& entry) {
    std::vector<std::string> names;
    for (; Long(file, entry) == 0x30001; entry = Next(file, entry)) {
        std::int32_t name = entry + 24;
        for (int left = Long(file, entry + 20); left > 0; --left, name = Next(file, name)) {
            const std::int32_t data = Long(file, name + 12);
            if (Long(file, name) != 0x30002 || Long(file, name + 8) != 0x50001 || data <= 0) continue;
            if (Long(file, data) != 1 || Long(file, data + 8) != 1) continue;
            names.push_back(file.substr(static_cast<std::size_t>(name) + 16,
                                        static_cast<std::size_t>(Next(file, name) - name - 16)));
        }
        EXPECT_EQ(name, Next(file, entry));
    }
    return names;
}

std::vector<PracticeAirport> Named(std::initializer_list<const char*> names) {
    std::vector<PracticeAirport> airports;
    for (const char* name : names) {
        airports.push_back(TestAirport());
        airports.back().Name = name;
    }
    return airports;
}

/// The place of the airport's facility data: the first one of a file stands behind a facility that is none.
constexpr std::int32_t FirstAirport = 256 + 16;

std::vector<std::int32_t> RecordIds(const std::string& file) {
    std::vector<std::int32_t> ids;
    std::int32_t record = FirstAirport + 16;
    do {
        ids.push_back(Long(file, record));
        record = Next(file, record);
    } while (ids.back() != 0);
    return ids;
}

/// The first record with an id.
std::int32_t Record(const std::string& file, std::int32_t id) {
    std::int32_t record = FirstAirport + 16;
    while (Long(file, record) != id) record = Next(file, record);
    return record;
}

std::string FirstChainFile(const PracticeAirport& airport) {
    return FacilityFile(std::vector<PracticeAirport>{airport}, {});
}

TEST(BglWriter, TheHeaderSaysThatThereAreFacilities) {
    const std::string file = FirstChainFile(TestAirport());
    EXPECT_EQ(file.substr(118, 4), "\x21\x43\x65\x87");
    EXPECT_EQ(Long(file, 144), 1);
    EXPECT_GT(Long(file, 156), 0);
    EXPECT_EQ(Long(file, 164), 0);
}

TEST(BglWriter, AFileOfNoAirportsHasNoChains) {
    const std::string file = FacilityFile({}, {});
    EXPECT_EQ(Long(file, 156), 0);
    EXPECT_EQ(Long(file, 164), 0);
}

TEST(BglWriter, TheFirstChainHasTheNamesInTheirOrder) {
    const std::string file = FacilityFile(Named({"One", "Two", "Three"}), Named({"Other"}));
    std::int32_t entry = Long(file, 156);
    EXPECT_THAT(NamesOfRun(file, entry), ElementsAre("One", "Two", "Three"));
    EXPECT_EQ(Long(file, entry), 0);
}

TEST(BglWriter, TheSecondChainSkipsEntriesAndEachRunsEndLeadsBehindItself) {
    const std::string file = FacilityFile({}, Named({"One", "Two", "Three"}));
    std::int32_t entry = Long(file, 164);
    EXPECT_EQ(Long(file, entry), 1);
    entry = Next(file, entry);

    const std::int32_t firstRun = entry;
    EXPECT_THAT(NamesOfRun(file, entry), ElementsAre("One", "Two"));
    EXPECT_EQ(firstRun + Long(file, entry + 4) + 8, entry + 8);
    entry += 8;
    EXPECT_EQ(Long(file, entry), 1);
    entry = Next(file, entry);

    const std::int32_t secondRun = entry;
    EXPECT_THAT(NamesOfRun(file, entry), ElementsAre("Three"));
    EXPECT_EQ(secondRun + Long(file, entry + 4) + 8, entry + 8);
    EXPECT_EQ(Long(file, entry + 8), 0);
}

TEST(BglWriter, RecordsStandInTheOrderInWhichTheyNeedEachOther) {
    const std::string first = FirstChainFile(TestAirport());
    EXPECT_THAT(RecordIds(first), ElementsAre(0x10001, 0x10006, 0x10002, 0x10004, 0x10004, 0x10005, 0x10005,
                                              0x20001, 0x20001, 0x11001, 0));
    const std::string second = FacilityFile({}, Named({"Test"}));
    EXPECT_THAT(RecordIds(second), ElementsAre(0x10001, 0x10006, 0x10002, 0x10004, 0x10004, 0x10005, 0x10005,
                                               0x10003, 0x20001, 0x20001, 0x11001, 0));
}

TEST(BglWriter, AnAirportWithoutTaxiPointsHasNoTaxiBlockAndOneWithoutIlsHasOnlyItsLights) {
    PracticeAirport airport = TestAirport();
    airport.TaxiPoints.clear();
    airport.TaxiPaths.clear();
    airport.Parking.clear();
    airport.Runways[0].Ends[0].HasIls = false;
    EXPECT_THAT(RecordIds(FirstChainFile(airport)),
                ElementsAre(0x10001, 0x10006, 0x10002, 0x10004, 0x10005, 0x10005, 0x20001, 0x20001, 0));
}

TEST(BglWriter, PositionsAreWordsOfTheirUnits) {
    PracticeAirport airport = TestAirport();
    airport.Latitude = -45;
    airport.Longitude = -90;
    const std::string file = FirstChainFile(airport);
    const std::int32_t record = Record(file, 0x10001);
    EXPECT_EQ(Long(file, record + 12), -5000875);
    EXPECT_EQ(Long(file, record + 20), -0x40000000);
    EXPECT_EQ(Long(file, record + 28), 100);
}

TEST(BglWriter, TheSecondPositionIsTheAirportsOwnAndTheFirstTheRunwaysMiddle) {
    std::vector<PracticeAirport> airports = {TestAirport()};
    airports[0].Latitude = 0.5;
    const std::string file = FacilityFile({}, airports);
    EXPECT_EQ(Long(file, Record(file, 0x10001) + 12), 0);
    EXPECT_EQ(Long(file, Record(file, 0x10003) + 12), 55565);  // 0.5 degrees, 55565.28 units
}

TEST(BglWriter, ARunwayBearsItsFirstEnd) {
    const std::string file = FirstChainFile(TestAirport());
    const std::int32_t runway = Record(file, 0x10002);
    EXPECT_EQ(Long(file, runway + 40), 6000);
    EXPECT_EQ(Long(file, runway + 44), 150);
    EXPECT_EQ(Long(file, runway + 48), 1);
    EXPECT_EQ(Long(file, runway + 52), 16);
    const std::int32_t lights = Next(file, runway);
    EXPECT_EQ(Long(file, lights + 40), 1);
    EXPECT_EQ(Long(file, Next(file, lights) + 40), 4);
}

TEST(BglWriter, HeadingsBeyond180DegreesAreNegativeWords) {
    const std::string file = FirstChainFile(TestAirport());
    const std::int32_t first = Record(file, 0x10005);
    const std::int32_t second = Next(file, first);
    EXPECT_EQ(Long(file, first + 12), 1111);  // 0.01 degrees, 1111.31 units
    EXPECT_EQ(Long(file, first + 28), 98);
    EXPECT_EQ(Long(file, first + 32), 2034144233);   // 170.5 degrees
    EXPECT_EQ(Long(file, second + 32), -113339415);  // 350.5 degrees
    EXPECT_EQ(Long(file, first + 36), 1);
    EXPECT_EQ(Long(file, first + 40), 1);
    EXPECT_EQ(Long(file, first + 44), 16);
    EXPECT_EQ(Long(file, second + 40), 2);
    EXPECT_EQ(Long(file, second + 44), 34);
}

TEST(BglWriter, FrequenciesShowTheirDigitsInHexadecimal) {
    const std::string file = FirstChainFile(TestAirport());
    const std::int32_t tower = Record(file, 0x20001);
    EXPECT_EQ(Long(file, tower + 8), 0x1183000);
    EXPECT_EQ(Long(file, tower + 12), 6);
    EXPECT_EQ(Long(file, Next(file, tower) + 8), 0x1192750);
    EXPECT_EQ(Long(file, Next(file, tower) + 12), 8);
}

TEST(BglWriter, TheTaxiBlockHoldsItsFourLists) {
    const std::string file = FirstChainFile(TestAirport());
    const std::int32_t block = Record(file, 0x11001);
    std::int32_t list = block + 8;
    EXPECT_EQ(Long(file, list), 2);
    EXPECT_EQ(Long(file, list + 4), 12);
    EXPECT_EQ(Long(file, list + 8), 1);
    EXPECT_EQ(Long(file, list + 12), 0);  // the first point is the reference itself
    EXPECT_EQ(Long(file, list + 16), 0);
    EXPECT_EQ(Long(file, list + 20), 2);
    EXPECT_FLOAT_EQ(Single(file, list + 28), 111.12f);  // a thousandth of a degree
    list += 8 + 2 * 12;
    EXPECT_EQ(Long(file, list), 1);
    EXPECT_EQ(Long(file, list + 4), 20);
    EXPECT_FLOAT_EQ(Single(file, list + 8), 111.12f);
    EXPECT_EQ(Long(file, list + 12), 0);
    EXPECT_EQ(Single(file, list + 16), 20);
    EXPECT_EQ(Long(file, list + 24), 0x00900000 + 3 * 128 + 12);  // a medium gate
    list += 8 + 20;
    EXPECT_EQ(Long(file, list), 3);
    EXPECT_EQ(Long(file, list + 4), 32);
    EXPECT_EQ(Long(file, list + 8), 1);  // the runway's path: from point 0 to 1, on runway 0
    EXPECT_EQ(Long(file, list + 20), 0);
    EXPECT_EQ(Long(file, list + 24), 1);
    EXPECT_EQ(Long(file, list + 36), 0);
    EXPECT_EQ(Long(file, list + 40), 0);  // the taxiway, its name the first one
    EXPECT_EQ(Long(file, list + 68), 0);
    EXPECT_EQ(Long(file, list + 72), 2);  // the tie of spot 0 to point 1
    EXPECT_EQ(Long(file, list + 84), 1);
    EXPECT_EQ(Long(file, list + 88), 0);
    list += 8 + 3 * 32;
    EXPECT_EQ(Long(file, list), 1);
    EXPECT_EQ(Long(file, list + 4), 8);
    EXPECT_EQ(file.substr(static_cast<std::size_t>(list) + 8, 8), std::string("A\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(list + 16, Next(file, block));
}

/// The name table of an airport with taxiways of these names.
std::vector<std::string> NameTable(std::initializer_list<const char*> names) {
    PracticeAirport airport = TestAirport();
    airport.TaxiPaths.clear();
    for (const char* name : names) airport.TaxiPaths.push_back({TaxiPath::Taxiway, 0, 1, name});
    const std::string file = FirstChainFile(airport);
    const std::int32_t block = Record(file, 0x11001);
    const auto count = static_cast<std::int32_t>(names.size());
    const std::int32_t list = block + 8 + (8 + 2 * 12) + (8 + 20) + (8 + count * 32);
    EXPECT_EQ(Long(file, list + 4), 8);
    std::vector<std::string> table(static_cast<std::size_t>(Long(file, list)));
    std::int32_t name = list + 8;
    for (std::string& text : table) {
        text = file.c_str() + name;
        name += 8;
    }
    return table;
}

TEST(NameTable, HoldsEachNameOnce) { EXPECT_THAT(NameTable({"B", "A", "B", ""}), ElementsAre("", "A", "B")); }

TEST(NameTable, IsThereAlsoWithoutNames) { EXPECT_THAT(NameTable({}), ElementsAre()); }

TEST(NameTable, ANumberNeverStandsBeforeTheNameThatHasItsNumber) {
    EXPECT_THAT(NameTable({"2", "A", "1"}), ElementsAre("A", "1", "2"));
    EXPECT_THAT(NameTable({"4", "A"}), ElementsAre("A", "", "", "", "4"));
    EXPECT_THAT(NameTable({"10", "9", "A"}), ElementsAre("A", "", "", "", "", "", "", "", "", "9", "10"));
    EXPECT_THAT(NameTable({"0"}), ElementsAre("0"));
}

TEST(BglWriter, WhatTheFormatCannotTellIsRefused) {
    PracticeAirport airport = TestAirport();
    airport.TaxiPaths[1].Name = "LONGNAME";
    EXPECT_NO_THROW(FirstChainFile(airport));
    airport.TaxiPaths[1].Name = "LONGNAMES";
    EXPECT_THROW(FirstChainFile(airport), std::length_error);
    airport = TestAirport();
    airport.TaxiPaths[0].Name = "Runway 34R";  // a runway goes by its first end
    EXPECT_THROW(FirstChainFile(airport), std::invalid_argument);
    airport = TestAirport();
    airport.Parking[0].Number = 8191;
    EXPECT_NO_THROW(FirstChainFile(airport));
    airport.Parking[0].Number = 8192;
    EXPECT_THROW(FirstChainFile(airport), std::invalid_argument);
    airport = TestAirport();
    airport.TaxiPoints.resize(32767);
    EXPECT_NO_THROW(FirstChainFile(airport));
    airport.TaxiPoints.resize(32768);
    EXPECT_THROW(FirstChainFile(airport), std::length_error);
}

TEST(EmptySceneryFile, IsASceneryFileWithoutFacilities) {
    const std::string file = EmptySceneryFile();
    EXPECT_EQ(file.substr(118, 4), "\x21\x43\x65\x87");
    EXPECT_EQ(Long(file, 144), 0);
}

TEST(MagneticTableFile, HoldsTheTableBehindTheWordThatTellsItsPlace) {
    std::vector<std::int16_t> table(MagVarGridSize);
    table[0] = 3292;
    table[1] = -2439;
    table.back() = -32768;
    const std::string file = MagneticTableFile(table);
    const std::int32_t values = Long(file, 110) + 8;
    EXPECT_EQ(static_cast<std::size_t>(values) + MagVarGridSize * 2, file.size());
    EXPECT_EQ(Long(file, values), static_cast<std::int32_t>(0xF6790CDC));  // -2439, 3292
    EXPECT_EQ(file.substr(file.size() - 2), std::string("\0\x80", 2));
}

TEST(MagneticTableFile, TakesNoTableOfAnotherSize) {
    EXPECT_THROW(MagneticTableFile(std::vector<std::int16_t>(MagVarGridSize - 1)), std::invalid_argument);
    EXPECT_THROW(MagneticTableFile(std::vector<std::int16_t>(MagVarGridSize + 1)), std::invalid_argument);
}

}  // namespace
}  // namespace corvenna
