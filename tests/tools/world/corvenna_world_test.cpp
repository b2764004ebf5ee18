#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/has_form.h"
#include "tools/world/world_tool.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(WorldTool, ScanBuildsTheDatabaseAndListPrintsTheLabelsAsTheyStand) {
    ScanSim();
    const Outcome list = Run("list app");
    EXPECT_EQ(list.Status, 0);
    EXPECT_EQ(list.Out, "Early (X)\nM\xFCnchen (KTST)\nEarly (X)\n");
    EXPECT_EQ(list.Err, "");
    EXPECT_EQ(folder.Read("app/Corvenna.cfg"), std::string("\3\0sim\3\0\0\0", 9));
}

TEST_F(WorldTool, ScanNamesSkippedFilesOnStandardErrorAndSucceeds) {
    MakeSim();
    folder.Write(
        "sim/Scenery/One/Scenery/Bad.bgl",
        BglBuilder().First("Bad", AirportBuilder().Record(ByteWriter().Long(0x10004).Long(-8).Get())).Get());
    const Outcome scan = Run("scan sim app");
    EXPECT_EQ(scan.Status, 0);
    EXPECT_THAT(scan.Err, HasForm(".*Bad\\.bgl: skipped: byte [0-9]+: an entry of 0 bytes\n"));
    EXPECT_EQ(Run("list app").Out, "Early (X)\nM\xFCnchen (KTST)\nEarly (X)\n");
}

TEST_F(WorldTool, ScanOfAFolderWithoutTheSimulatorWritesNothing) {
    MakeSim();
    std::filesystem::remove(folder.Path("sim/FS2002.EXE"));
    folder.Write("app/world_airports.dat", "old");
    const Outcome scan = Run("scan sim app");
    EXPECT_EQ(scan.Status, 1);
    EXPECT_THAT(scan.Err, HasForm("sim: [^\n]*fs2002.exe[^\n]*\n"));
    EXPECT_EQ(folder.Read("app/world_airports.dat"), "old");
}

TEST_F(WorldTool, ScanWithoutMagdecOrSceneryCfgLeavesNoAirports) {
    for (const char* const missing : {"sim/Scenery/Magdec.bgl", "sim/SCENERY.CFG"}) {
        ScanSim();
        std::filesystem::remove(folder.Path(missing));
        const Outcome scan = Run("scan sim app");
        EXPECT_EQ(scan.Status, 1);
        EXPECT_THAT(scan.Err, HasSubstr("is not there"));
        EXPECT_FALSE(folder.Has("app/world_airports.dat"));
        EXPECT_EQ(folder.Read("app/Corvenna.cfg"), std::string("\3\0sim\0\0\0\0", 9));
    }
}

TEST_F(WorldTool, ScanIntoAFolderThatIsNotThereFails) {
    MakeSim();
    const Outcome scan = Run("scan sim nowhere");
    EXPECT_EQ(scan.Status, 1);
    EXPECT_THAT(scan.Err, HasForm("nowhere/Corvenna.cfg: can't be written: [^\n]*\n"));
}

TEST_F(WorldTool, DumpPrintsTheLastRecordOfALabel) {
    ScanSim();
    const auto early = nlohmann::json::parse(Run("dump app \"Early (X)\"").Out);
    EXPECT_NEAR(early["Latitude"].get<double>(), 5, 1e-5);
    EXPECT_TRUE(early["TaxiPoints"].is_null());

    const auto field = nlohmann::ordered_json::parse(Run("dump app \"M\xFCnchen (KTST)\"").Out);
    std::vector<std::string> keys;
    for (const auto& [key, value] : field.items()) keys.push_back(key);
    EXPECT_THAT(
        keys, ElementsAre("Name", "Latitude", "Longitude", "Icao", "GroundFreq", "TowerFreq", "ApproachFreq",
                          "CenterFreq", "CtafFreq", "MainRunwayId", "MainRunwayLatitude",
                          "MainRunwayLongitude", "MainRunwayElevation", "MainRunwayLength", "MainRunwayWidth",
                          "MainRunwayHeading", "MainRunwayHasIls", "TaxiPoints", "TaxiPointCount",
                          "ParkingSpots", "ParkingSpotCount", "TaxiPaths", "TaxiPathCount"));
    EXPECT_EQ(field["Name"], "M\xC3\xBCnchen");
    EXPECT_EQ(field["TaxiPaths"][0]["Name"], "Runway 16");
    EXPECT_EQ(field["ParkingSpots"][0]["Name"], "GATE 1");
    EXPECT_EQ(field["ParkingSpots"][0]["Spare"], 0);
}

TEST_F(WorldTool, ALabelThatNobodyHasFails) {
    ScanSim();
    for (const char* const command : {"dump", "station", "check"}) {
        const Outcome outcome = Run(std::string(command) + " app \"Nobody (X)\"");
        EXPECT_EQ(outcome.Status, 1) << command;
        EXPECT_EQ(outcome.Out, "") << command;
        EXPECT_EQ(outcome.Err, "app: no airport \"Nobody (X)\" in the database\n") << command;
    }
}

TEST_F(WorldTool, StationPrintsTheSelectionWithItsTerrain) {
    ScanSim();
    folder.Write("app/world_terrain.db", "47.1 -122 1000\n");
    const Outcome outcome = Run("station app \"M\xFCnchen (KTST)\"");
    ASSERT_EQ(outcome.Status, 0) << outcome.Err;
    const auto station = nlohmann::json::parse(outcome.Out);
    EXPECT_EQ(station["TowerFrequency"], "118.3 (CT)");
    EXPECT_EQ(station["ArtccFrequency"], "Air Route Traffic Control Center");
    EXPECT_EQ(station["HighestTerrain"], 5281);
    EXPECT_EQ(station["MountainCount"], 1);
    EXPECT_EQ(station["Mountains"][0]["Name"], "Mountain No1");
    EXPECT_EQ(station["AirportTaxiPaths"][1]["Kind"], 2);
    for (const char* const limit : {"NorthLimit", "SouthLimit", "WestLimit", "EastLimit"}) {
        EXPECT_TRUE(station[limit].is_number()) << limit;
    }
}

TEST_F(WorldTool, WalkPrintsTheLogsAndStopsAtAnError) {
    ByteWriter file;
    file.Byte(21).ZerosTo(5).Long(16).ZerosTo(16);
    file.Byte(5).ZerosTo(26).Word(14).Byte(0x9A).Byte(0);
    file.Byte(8).ZerosTo(40).Word(13).Byte(0xFF).Byte(0);
    folder.Write("objects.bgl", file.Get());
    const Outcome walk = Run("walk objects.bgl 0 any.bgl");
    EXPECT_EQ(walk.Status, 1);
    EXPECT_EQ(walk.Out,
              "BGL Filename: any.bgl\r\nObject offset: 16\r\nOpcodes List:\r\n0x9A\r\n"
              "BGL Filename: any.bgl\r\nObject offset: 30\r\nOpcodes List:\r\n0xFF\r\n - Error Here!\n"
              "Error - Current Opcode: FF  Current File Offset: 42  Previous Opcode: 9A\n");
    EXPECT_EQ(walk.Err, "");
}

TEST_F(WorldTool, WalkOfADamagedListFailsInOneLine) {
    folder.Write("objects.bgl", ByteWriter().Byte(21).ZerosTo(5).Long(5000).Get());
    const Outcome walk = Run("walk objects.bgl 0 any.bgl");
    EXPECT_EQ(walk.Status, 1);
    EXPECT_EQ(walk.Err, "objects.bgl: byte 5000: a read of 1 bytes leaves the file\n");
    EXPECT_EQ(Run("walk nothing.bgl 0 any.bgl").Status, 1);
}

TEST_F(WorldTool, WalkTakesItsOffsetAsAPlainDecimalNumber) {
    folder.Write("objects.bgl", ByteWriter().ZerosTo(10).Byte(21).ZerosTo(15).Long(5000).Get());
    EXPECT_EQ(Run("walk objects.bgl 010 any.bgl").Err,
              "objects.bgl: byte 5010: a read of 1 bytes leaves the file\n");
    for (const char* const offset : {"0x10", "1.5", "1e1", "\"\"", "99999999999999999999"}) {
        const Outcome walk = Run(std::string("walk objects.bgl ") + offset + " any.bgl");
        EXPECT_EQ(walk.Status, 2) << offset;
        EXPECT_EQ(walk.Out, "") << offset;
    }
}

TEST_F(WorldTool, DrawWritesAnSvgAndPrintsNothing) {
    ScanSim();
    const Outcome draw = Run("draw app \"M\xFCnchen (KTST)\" field.svg");
    EXPECT_EQ(draw.Status, 0);
    EXPECT_EQ(draw.Out + draw.Err, "");
    EXPECT_THAT(folder.Read("field.svg"), StartsWith("<?xml"));
}

TEST_F(WorldTool, CheckTellsWhatIsWrongInPlainWords) {
    ScanSim();
    EXPECT_EQ(Run("check app \"M\xFCnchen (KTST)\"").Out, "nothing is wrong with this airport\n");
    EXPECT_EQ(Run("check app \"Early (X)\"").Out,
              "no runway\nno frequencies\nno taxi network\nno parking spots\n");
}

TEST_F(WorldTool, AWrongCommandLineIsStatus2) {
    for (const char* const arguments : {"", "scan", "scan one", "list", "dump app", "nonsense", "walk f x n",
                                        "list app more", "--nonsense"}) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.Status, 2) << arguments;
        EXPECT_EQ(outcome.Out, "") << arguments;
        EXPECT_THAT(outcome.Err, HasForm("corvenna-world: [^\n]+\n")) << arguments;
    }
    EXPECT_EQ(Run("--help").Status, 0);
    EXPECT_EQ(Run("scan --help").Status, 0);
}

TEST_F(WorldTool, ADamagedDatabaseIsToldByFilePlaceAndReason) {
    ScanSim();
    folder.Write("app/world_airports.dat", folder.Read("app/world_airports.dat").substr(0, 300));
    const Outcome list = Run("list app");
    EXPECT_EQ(list.Status, 1);
    EXPECT_THAT(list.Err, HasForm("app/world_airports.dat: byte [0-9]+: [^\n]*\n"));
    folder.Write("app/Corvenna.cfg", "x");
    EXPECT_THAT(Run("list app").Err, HasForm("app/Corvenna.cfg: byte 0: [^\n]*\n"));
}

}  // namespace
}  // namespace corvenna
