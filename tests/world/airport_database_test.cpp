#include "world/airport_database.h"

#include <gmock/gmock.h>

#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

Airport Blank() { return {}; }

Airport Full() {
    Airport a;
    a.Name = "T\xE9st";
    a.Latitude = 47.5;
    a.Longitude = -122.25;
    a.Icao = "KTST";
    a.GroundFreq = "121.9";
    a.TowerFreq = "118.3";
    a.CtafFreq = "1";
    a.MainRunwayId = "16L";
    a.MainRunwayLatitude = 1;
    a.MainRunwayLongitude = 2;
    a.MainRunwayElevation = 433;
    a.MainRunwayLength = 11901;
    a.MainRunwayWidth = 150;
    a.MainRunwayHeading = 162;
    a.MainRunwayHasIls = -1;
    a.TaxiPoints = {{1, 47.5, -122.25}};
    a.TaxiPointCount = 1;
    a.ParkingSpots = {{{"GATE 1", 85, 3, 4, 0}}};
    a.ParkingSpotCount = 1;
    a.TaxiPaths = {{{2, 0, 7, "A"}, {0, -1, 1, ""}}};
    a.TaxiPathCount = 2;
    return a;
}

// clang-format off
/// Full(), field by field as it stands on disk.
Bytes FullOnDisk() {
    return ByteWriter()
        .Word(4).Text("T\xE9st")    // Name
        .Double(47.5)                // Latitude
        .Double(-122.25)             // Longitude
        .Word(4).Text("KTST")        // Icao
        .Word(5).Text("121.9")       // GroundFreq
        .Word(5).Text("118.3")       // TowerFreq
        .Word(0)                     // ApproachFreq
        .Word(0)                     // CenterFreq
        .Word(1).Text("1")           // CtafFreq
        .Word(3).Text("16L")         // MainRunwayId
        .Double(1).Double(2)         // its position
        .Long(433)                   // MainRunwayElevation
        .Long(11901)                 // MainRunwayLength
        .Long(150)                   // MainRunwayWidth
        .Word(162)                   // MainRunwayHeading
        .Word(0xFFFF)                // MainRunwayHasIls
        .Word(1).Long(1).Long(0)     // TaxiPoints: one dimension, one element, from 0
        .Long(1).Double(47.5).Double(-122.25)
        .Word(1)                     // TaxiPointCount
        .Word(1).Long(1).Long(0)     // ParkingSpots
        .Word(6).Text("GATE 1").Long(85).Double(3).Double(4).Byte(0)
        .Word(1)                     // ParkingSpotCount
        .Word(1).Long(2).Long(0)     // TaxiPaths
        .Long(2).Long(0).Long(7).Word(1).Text("A")
        .Long(0).Long(-1).Long(1).Word(0)
        .Word(2)                     // TaxiPathCount
        .Get();
}
// clang-format on

AirportList ListOf(const std::vector<Airport>& airports) {
    AirportList list;
    for (const Airport& airport : airports) list.Add(airport);
    return list;
}

TEST(AirportDatabase, ARecordStandsOnDiskFieldAfterField) {
    TempFolder app;
    WriteAirports(app.Path(), ListOf({Full()}));
    const std::string spare(76, '\0');
    EXPECT_EQ(app.Read("world_airports.dat"), Text(FullOnDisk()) + spare);
}

TEST(AirportDatabase, WithoutAirportsItIsASingleSpareRecordAndTheListIsEmpty) {
    TempFolder app;
    WriteAirports(app.Path(), AirportList());
    EXPECT_EQ(app.Read("world_airports.dat"), std::string(76, '\0'));
    EXPECT_EQ(ReadAirports(app.Path(), 0).Count(), 0);
}

TEST(AirportDatabase, ReadsBackWhatItWrote) {
    TempFolder app;
    const Airport full = Full();
    Airport same = full;
    same.TowerFreq = "119.1";
    WriteAirports(app.Path(), ListOf({full, Blank(), same}));
    const AirportList list = ReadAirports(app.Path(), 3);
    ASSERT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Record(0), full);
    EXPECT_EQ(list.Record(1), Blank());
    EXPECT_EQ(list.Record(2), same);
}

TEST(AirportDatabase, ArraysThatWereNeverAllocatedStayUnallocated) {
    TempFolder app;
    Airport empty;
    empty.TaxiPoints.emplace();
    WriteAirports(app.Path(), ListOf({Blank(), empty}));
    const AirportList list = ReadAirports(app.Path(), 2);
    EXPECT_FALSE(list.Record(0).TaxiPoints.has_value());
    EXPECT_FALSE(list.Record(0).TaxiPaths.has_value());
    EXPECT_EQ(list.Record(0).TaxiPointCount, 0);
    ASSERT_TRUE(list.Record(1).TaxiPoints.has_value());
    EXPECT_THAT(*list.Record(1).TaxiPoints, IsEmpty());
}

TEST(AirportDatabase, AirportsWithTheSameLabelBothStayAndTheLastIsFound) {
    Airport late = Full();
    late.TowerFreq = "late";
    const AirportList list = ListOf({Full(), late, Blank()});
    EXPECT_EQ(AirportLabel(list.Fields(0)), "T\xE9st (KTST)");
    EXPECT_EQ(list.FindLast("T\xE9st (KTST)"), 1);
    EXPECT_EQ(list.FindLast(" ()"), 2);
    EXPECT_EQ(list.FindLast("t\xE9st (KTST)"), -1);
    EXPECT_EQ(list.FindLast(""), -1);
}

TEST(AirportDatabase, BytesBehindTheRecordsDoNotMatterAndFewerCanBeRead) {
    TempFolder app;
    WriteAirports(app.Path(), ListOf({Full(), Full()}));
    app.Write("world_airports.dat", app.Read("world_airports.dat") + "junk");
    EXPECT_EQ(ReadAirports(app.Path(), 2).Count(), 2);
    EXPECT_EQ(ReadAirports(app.Path(), 1).Count(), 1);
}

TEST(AirportDatabase, AFileCutAnywhereIsRefusedWithThePlaceAndTheReason) {
    TempFolder app;
    WriteAirports(app.Path(), ListOf({Full(), Full()}));
    const std::string whole = app.Read("world_airports.dat");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        app.Write("world_airports.dat", std::string_view(whole).substr(0, length));
        const std::string what = WhatIsThrown<FileError>([&] { ReadAirports(app.Path(), 2); });
        ASSERT_THAT(what, HasSubstr("world_airports.dat: byte "));
    }
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadAirports(app.Path(), 2); }), HasSubstr("bytes are left"));
}

TEST(AirportDatabase, AWrongCountIsRefused) {
    TempFolder app;
    WriteAirports(app.Path(), ListOf({Full(), Full()}));
    for (const std::int32_t count : {3, 1000000000, 2147483647, -1, -2147483647 - 1}) {
        EXPECT_THROW(ReadAirports(app.Path(), count), FileError) << count;
    }
}

TEST(AirportDatabase, ArrayHeadsAreCheckedBeforeMemoryIsTaken) {
    const auto withHead = [](int dimensions, std::int64_t count, std::int64_t lowerBound) {
        Bytes bytes =
            ByteWriter().ZerosTo(64).Word(dimensions).Long(count).Long(lowerBound).ZerosTo(300).Get();
        return WhatIsThrown<DamagedData>([&] { AirportList::FromBytes(Text(bytes), 1); });
    };
    EXPECT_THAT(withHead(2, 1, 0), StartsWith("byte 64: an array of 1 dimension from 0 expected, found 2"));
    EXPECT_THAT(withHead(1, 1, 1), HasSubstr("from 1"));
    EXPECT_THAT(withHead(1, 2147483647, 0), HasSubstr("2147483647 elements can't stand"));
    EXPECT_THAT(withHead(1, -1, 0), HasSubstr("-1 elements can't stand"));
}

TEST(AirportDatabase, ATextTooLongForItsLengthFieldIsRefusedAndTheListIsAsBefore) {
    AirportList list = ListOf({Full()});
    Airport a;
    a.CtafFreq.assign(65535, 'x');
    list.Add(a);
    EXPECT_EQ(list.Record(1), a);
    a.CtafFreq += 'x';
    EXPECT_THROW(list.Add(a), std::length_error);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(AirportList::FromBytes(std::string(list.Bytes()) + AirportList::SpareRecord(), 2).Count(), 2);
}

TEST(AirportDatabase, TakingAirportsBackLeavesTheOthers) {
    AirportList list = ListOf({Full(), Blank(), Full()});
    list.Truncate(5);
    EXPECT_EQ(list.Count(), 3);
    list.Truncate(1);
    list.Add(Blank());
    EXPECT_EQ(list.Bytes(), Text(FullOnDisk()) + std::string(76, '\0'));
}

TEST(AirportDatabase, AMissingFileIsNamed) {
    TempFolder app;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadAirports(app.Path(), 0); }),
                HasSubstr("world_airports.dat: is not there"));
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadConfig(app.Path()); }),
                HasSubstr("Corvenna.cfg: is not there"));
}

// ---- Configuration

TEST(Configuration, IsATextAndACount) {
    TempFolder app;
    WriteConfig(app.Path(), {"C:\\FS", 258});
    EXPECT_EQ(app.Read("Corvenna.cfg"), Text(ByteWriter().Word(5).Text("C:\\FS").Long(258).Get()));
    EXPECT_EQ(ReadConfig(app.Path()), (ConfigRecord{"C:\\FS", 258}));
}

TEST(Configuration, IsOverwrittenFromItsFirstByteAndNeverCut) {
    TempFolder app;
    app.Write("Corvenna.cfg", "0123456789ABCDEF");
    WriteConfig(app.Path(), {"w", 1});
    EXPECT_EQ(app.Read("Corvenna.cfg"), Text(ByteWriter().Word(1).Text("w").Long(1).Get()) + "789ABCDEF");
    EXPECT_EQ(ReadConfig(app.Path()), (ConfigRecord{"w", 1}));
}

TEST(Configuration, CutAnywhereIsRefused) {
    TempFolder app;
    const std::string whole = Text(ByteWriter().Word(5).Text("C:\\FS").Long(258).Get());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        app.Write("Corvenna.cfg", std::string_view(whole).substr(0, length));
        EXPECT_THAT(WhatIsThrown<FileError>([&] { ReadConfig(app.Path()); }),
                    HasSubstr("Corvenna.cfg: byte "));
    }
}

// ---- The two files together

TEST(DatabaseFiles, ExistTogetherOrNotAtAll) {
    TempFolder app;
    EXPECT_FALSE(DatabaseIsThere(app.Path()));

    app.Write("Corvenna.cfg", "x");
    EXPECT_FALSE(DatabaseIsThere(app.Path()));
    EXPECT_THAT(app.Names(), IsEmpty());

    app.Write("world_airports.dat", "x");
    EXPECT_FALSE(DatabaseIsThere(app.Path()));
    EXPECT_THAT(app.Names(), IsEmpty());

    app.Write("Corvenna.cfg", "x");
    app.Write("world_airports.dat", "x");
    app.Write("world_terrain.db", "x");
    EXPECT_TRUE(DatabaseIsThere(app.Path()));
    RemoveDatabase(app.Path());
    EXPECT_THAT(app.Names(), ElementsAre("world_terrain.db"));
}

TEST(DatabaseFiles, TheSimulatorsFolderHoldsItsProgramInAnyCase) {
    TempFolder sim;
    EXPECT_FALSE(IsSimFolder(sim.Path()));
    std::filesystem::create_directory(sim.Path("fs2002.exe"));
    EXPECT_FALSE(IsSimFolder(sim.Path()));
    sim.Write("FS2002.EXE", "");
    EXPECT_TRUE(IsSimFolder(sim.Path()));
    EXPECT_FALSE(IsSimFolder(sim.Path("nowhere")));
}

}  // namespace
}  // namespace corvenna
