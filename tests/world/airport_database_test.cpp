#include "world/airport_database.h"

#include <gmock/gmock.h>

#include "world/errors.h"
#include "world/full_airport.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
    sim.Write("FS2002.EXE", "");
    EXPECT_TRUE(IsSimFolder(sim.Path()));
    EXPECT_FALSE(IsSimFolder(sim.Path("nowhere")));
}

TEST(DatabaseFiles, AFolderOfTheProgramsNameIsNotTheProgram) {
    TempFolder sim;
    std::filesystem::create_directory(sim.Path("fs2002.exe"));
    EXPECT_FALSE(IsSimFolder(sim.Path()));
}

}  // namespace
}  // namespace corvenna
