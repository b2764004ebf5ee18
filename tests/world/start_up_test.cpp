#include "world/start_up.h"

#include <gmock/gmock.h>

#include "world/airport_database.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A folder with some of the three files, and what the start makes of it.
struct Start {
    explicit Start(bool terrain, bool airports, bool config) {
        if (terrain) App.Write(TerrainName, "x");
        if (airports) App.Write(AirportsName, "x");
        if (config) WriteConfig(App.Path(), {.SimFolder = "C:\\FS2002", .AirportCount = 7});
    }
    StartUp Decide() { return DecideStartUp(Program); }

    TempFolder App;
    ProgramFields Program{.AppFolder = App.Path(), .SimFolder = "", .AirportCount = 0, .DatabaseMissing = 0};
};

TEST(DecideStartUp, WithBothFilesTheAirportIsChosen) {
    Start start(true, true, true);
    start.Program.DatabaseMissing = -1;
    EXPECT_EQ(start.Decide(), StartUp::ChooseAirport);
    EXPECT_EQ(start.Program.DatabaseMissing, 0);
    EXPECT_EQ(start.Program.SimFolder, "C:\\FS2002");
    EXPECT_EQ(start.Program.AirportCount, 7);
}

TEST(DecideStartUp, WithoutADatabaseTheFolderIsChosen) {
    Start start(true, false, false);
    EXPECT_EQ(start.Decide(), StartUp::ChooseSimFolder);
    EXPECT_EQ(start.Program.DatabaseMissing, -1);
    EXPECT_THAT(start.App.Names(), ElementsAre(TerrainName));
}

TEST(DecideStartUp, AConfigurationWithoutAirportsIsForgotten) {
    Start start(true, false, true);
    EXPECT_EQ(start.Decide(), StartUp::ChooseSimFolder);
    EXPECT_EQ(start.Program.SimFolder, "");
    EXPECT_THAT(start.App.Names(), ElementsAre(TerrainName));
}

TEST(DecideStartUp, AirportsWithoutAConfigurationAreDeleted) {
    Start start(true, true, false);
    EXPECT_EQ(start.Decide(), StartUp::ChooseSimFolder);
    EXPECT_EQ(start.Program.DatabaseMissing, -1);
    EXPECT_THAT(start.App.Names(), ElementsAre(TerrainName));
}

TEST(DecideStartUp, WithoutTerrainNoFileIsTouched) {
    for (const bool airports : {false, true}) {
        for (const bool config : {false, true}) {
            Start start(false, airports, config);
            const auto before = start.App.Names();
            EXPECT_EQ(start.Decide(), StartUp::TerrainMissing);
            EXPECT_EQ(start.App.Names(), before);
        }
    }
}

TEST(DecideStartUp, AConfigurationCutShortIsTold) {
    Start start(true, true, false);
    start.App.Write(ConfigName, "\x08");
    EXPECT_THAT(WhatIsThrown<FileError>([&] { start.Decide(); }), HasSubstr("Corvenna.cfg: byte 0"));
}

TEST(WithoutLastSeparator, DropsOneOfEitherKind) {
    EXPECT_EQ(WithoutLastSeparator("C:\\Corvenna\\"), "C:\\Corvenna");
    EXPECT_EQ(WithoutLastSeparator("/home/atc/"), "/home/atc");
    EXPECT_EQ(WithoutLastSeparator("/home/atc"), "/home/atc");
    EXPECT_EQ(WithoutLastSeparator("C:\\"), "C:");
    EXPECT_EQ(WithoutLastSeparator("/"), "");
    EXPECT_EQ(WithoutLastSeparator(""), "");
}

TEST(WithoutRootSeparator, OnlyADriveRootLosesIt) {
    EXPECT_EQ(WithoutRootSeparator("C:\\"), "C:");
    EXPECT_EQ(WithoutRootSeparator("c:/"), "c:");
    EXPECT_EQ(WithoutRootSeparator("C:"), "C:");
    EXPECT_EQ(WithoutRootSeparator("C:\\a"), "C:\\a");
    EXPECT_EQ(WithoutRootSeparator("/fs"), "/fs");
    EXPECT_EQ(WithoutRootSeparator("\\\\a"), "\\\\a");
    EXPECT_EQ(WithoutRootSeparator(""), "");
}

}  // namespace
}  // namespace corvenna
