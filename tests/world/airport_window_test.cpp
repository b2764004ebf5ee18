#include "world/airport_window.h"

#include <gmock/gmock.h>

#include "world/airport_database.h"
#include "world/bgl_builder.h"
#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Log = std::vector<std::string>;

Bytes FileWith(std::string_view name, double latitude = 47) {
    return BglBuilder().First(name, AirportBuilder().Position(latitude, -122).Ident("KTST")).Get();
}

/// A simulator's folder, the program's folder, and the window with all that it tells.
struct Scene {
    Scene() {
        Sim.Write("fs2002.exe", "");
        Sim.Write("scenery/magdec.bgl", std::string(256, '\0'));
        App.Write(TerrainName, "47 -122 1000\n");
    }

    void Area(std::string_view title, std::string_view local) {
        config_ += "[Area." + std::to_string(++areas_) + "]\nTitle=" + std::string(title) +
                   "\nLocal=" + std::string(local) + "\n";
        Sim.Write("scenery.cfg", config_);
    }

    /// The database as an earlier run has left it.
    void Scanned() {
        BeginDatabase(Sim.Path(), App.Path());
        ScanObserver nobody;
        SceneryScan scan(TheStation, Sim.Path(), nobody);
        while (scan.Tick()) {
        }
        FinishDatabase(scan, Sim.Path(), App.Path());
        DecideStartUp(Program);
    }

    void FirstRun() {
        BeginDatabase(Sim.Path(), App.Path());
        Program.SimFolder = Sim.Path();
        Program.DatabaseMissing = -1;
    }

    void ScanAll() {
        for (int ticks = 0; Window.Form().ScanBgl && ticks < 100; ++ticks) Window.RunScanBgl();
    }

    const AirportForm& Form() const { return Window.Form(); }

    TempFolder Sim, App;
    ProgramFields Program{.AppFolder = App.Path(), .SimFolder = "", .AirportCount = 0, .DatabaseMissing = 0};
    Station TheStation;
    Log Steps, Boxes, Shown, Labels;
    bool Ended = false;
    AirportWindow Window{
        Program,
        TheStation,
        {.Repaint = [this] { Shown.push_back(std::string(Form().Label2) + "|" + Form().Text1); },
         .Loading = [this](auto step) { Steps.emplace_back(step); },
         .Inform = [this](auto text) { Boxes.emplace_back(text); },
         .EndProgram = [this] { Ended = true; },
         .List = [this](const auto& labels) { Labels = labels; }}};

  private:
    std::string config_;
    int areas_ = 0;
};

// ---- Opening

TEST(AirportWindow, AnOrdinaryStartReadsTheDatabase) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.Scanned();
    scene.Window.Load();
    EXPECT_THAT(scene.Steps,
                ElementsAre("Magdec.bgl file", "World_airports.dat file", "Adding airports to list", ""));
    EXPECT_THAT(scene.Labels, ElementsAre("Alpha (KTST)"));
    EXPECT_THAT(scene.Boxes, IsEmpty());
    EXPECT_EQ(scene.Form().Label2, "Done!");
    EXPECT_TRUE(scene.Form().InputsEnabled());
    EXPECT_FALSE(scene.Form().ScanBgl);
}

TEST(AirportWindow, TheFirstRunTellsWhatComesAndLocksTheInputs) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.FirstRun();
    scene.Window.Load();
    EXPECT_THAT(scene.Boxes, ElementsAre("This is the first time you run this program. Now this program will "
                                         "create a database of all the airports of the FS world. This "
                                         "process can take a few minutes, please wait."));
    EXPECT_THAT(scene.Steps, ElementsAre("Magdec.bgl file", "Scenery.cfg file"));
    EXPECT_EQ(scene.Form().Label2, "Processing Please Wait...");
    EXPECT_FALSE(scene.Form().InputsEnabled());
    EXPECT_TRUE(scene.Form().ScanBgl);
    EXPECT_EQ(scene.Form().ProgressValue, 0);
    EXPECT_EQ(scene.Form().ProgressMaximum, 2);
}

TEST(AirportWindow, AMissingMagneticTableIsThrown) {
    Scene scene;
    scene.Area("A", "a");
    scene.FirstRun();
    std::filesystem::remove(scene.Sim.Path("scenery/magdec.bgl"));
    EXPECT_THAT(WhatIsThrown<FileError>([&] { scene.Window.Load(); }), HasSubstr("magdec.bgl"));
}

TEST(AirportWindow, ADatabaseCutShortIsThrown) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.Scanned();
    scene.App.Write(AirportsName, scene.App.Read(AirportsName).substr(0, 20));
    EXPECT_THAT(WhatIsThrown<FileError>([&] { scene.Window.Load(); }),
                HasSubstr("world_airports.dat: byte "));
}

// ---- The scan

TEST(AirportWindow, TheScanShowsAreasAndCountsFiles) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Sim.Write("a/scenery/2.bgl", "no such thing");
    scene.Area("North West", "a");
    scene.FirstRun();
    scene.Window.Load();
    scene.Window.RunScanBgl();
    EXPECT_EQ(scene.Form().Text1, "North West");
    EXPECT_EQ(scene.Form().ProgressValue, 1);
    scene.Window.RunScanBgl();
    EXPECT_EQ(scene.Form().ProgressValue, 2);
    EXPECT_FALSE(scene.App.Has(AirportsName));
}

TEST(AirportWindow, TheEndOfTheScanMakesTheDatabaseAndFreesTheInputs) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Beta"));
    scene.Sim.Write("a/scenery/2.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.FirstRun();
    scene.Window.Load();
    scene.Boxes.clear();
    scene.Shown.clear();
    scene.ScanAll();
    EXPECT_THAT(scene.Boxes, ElementsAre("The creation process of the database was completed!. Now this "
                                         "program will display all the airports in a list. So you can select "
                                         "one of the airports."));
    EXPECT_THAT(scene.Labels, ElementsAre("Beta (KTST)", "Alpha (KTST)"));
    EXPECT_THAT(scene.Shown, Contains("Processing Please Wait...|Creating database"));
    EXPECT_THAT(scene.Shown, Contains("Processing Please Wait...|Adding airports to list"));
    EXPECT_EQ(scene.Form().Text1, "");
    EXPECT_EQ(scene.Form().ProgressValue, 0);
    EXPECT_TRUE(scene.Form().InputsEnabled());
    EXPECT_EQ(scene.Program.DatabaseMissing, 0);
    EXPECT_EQ(scene.Program.AirportCount, 2);
    EXPECT_EQ(ReadConfig(scene.App.Path()), (ConfigRecord{scene.Sim.Path(), 2}));
}

TEST(AirportWindow, TheScanIsOffWhileTheLastBoxIsOpen) {
    Scene scene;
    scene.Area("A", "a");
    scene.FirstRun();
    bool scanningInBox = true;
    AirportWindow window(scene.Program, scene.TheStation,
                         {.Repaint = {},
                          .Loading = {},
                          .Inform = [&](auto) { scanningInBox = window.Form().ScanBgl; },
                          .EndProgram = {},
                          .List = {}});
    window.Load();
    for (int ticks = 0; window.Form().ScanBgl && ticks < 10; ++ticks) window.RunScanBgl();
    EXPECT_FALSE(scanningInBox);
}

TEST(AirportWindow, WithoutAnyFileTheBarGoesToOne) {
    Scene scene;
    scene.Area("A", "gone");
    scene.FirstRun();
    scene.Window.Load();
    EXPECT_EQ(scene.Form().ProgressMaximum, 1);
    scene.Window.RunScanBgl();
    EXPECT_TRUE(scene.Form().ScanBgl);
    scene.Window.RunScanBgl();
    EXPECT_FALSE(scene.Form().ScanBgl);
}

TEST(AirportWindow, AFolderThatVanishesInMidScanIsPassedOver) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Sim.Write("b/scenery/1.bgl", FileWith("Beta"));
    scene.Area("A", "a");
    scene.Area("B", "b");
    scene.FirstRun();
    scene.Window.Load();
    scene.Window.RunScanBgl();
    std::filesystem::remove_all(scene.Sim.Path("b"));
    scene.ScanAll();
    EXPECT_THAT(scene.Window.Skips(), ElementsAre(HasSubstr("can't be listed")));
    EXPECT_THAT(scene.Labels, ElementsAre("Alpha (KTST)"));
}

// ---- The choice

TEST(AirportWindow, NextWithoutASelectionDoesNothing) {
    Scene scene;
    scene.Area("A", "a");
    scene.Scanned();
    scene.Window.Load();
    scene.Shown.clear();
    scene.Window.SelectAirport(std::nullopt);
    EXPECT_THAT(scene.Shown, IsEmpty());
    EXPECT_FALSE(scene.Form().WaitForClose);
}

TEST(AirportWindow, NextPreparesTheStationAndStaysLocked) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.Scanned();
    scene.Window.Load();
    scene.Shown.clear();
    scene.Window.SelectAirport("Alpha (KTST)");
    EXPECT_EQ(scene.TheStation.AirportName, "Alpha");
    EXPECT_EQ(scene.TheStation.HighestTerrain, 3281 + 2000);
    EXPECT_THAT(scene.Shown, ElementsAre("Processing Please Wait...|Getting Airport's Info",
                                         "Processing Please Wait...|World_terrain.db file",
                                         "Processing Please Wait...|World_terrain.db file"));
    EXPECT_FALSE(scene.Form().InputsEnabled());
    EXPECT_TRUE(scene.Form().WaitForClose);
}

TEST(AirportWindow, OfALabelThatStandsTwiceTheLastOneDecides) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Twin", 47));
    scene.Sim.Write("a/scenery/2.bgl", FileWith("Twin", 48));
    scene.Area("A", "a");
    scene.Scanned();
    scene.Window.Load();
    EXPECT_THAT(scene.Labels, ElementsAre("Twin (KTST)", "Twin (KTST)"));
    scene.Window.SelectAirport("Twin (KTST)");
    EXPECT_NEAR(scene.TheStation.AirportLatitude, 48, 0.001);
}

TEST(AirportWindow, ABadTerrainLineIsThrownWithItsNumber) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.App.Write(TerrainName, "47 -122 1000\n47 nonsense\n");
    scene.Scanned();
    scene.Window.Load();
    EXPECT_THAT(WhatIsThrown<FileError>([&] { scene.Window.SelectAirport("Alpha (KTST)"); }),
                HasSubstr("line 2"));
}

// ---- The window goes

TEST(AirportWindow, ExitAndTheCloseBoxEndTheProgram) {
    for (const bool byButton : {false, true}) {
        Scene scene;
        scene.Area("A", "a");
        scene.Scanned();
        scene.Window.Load();
        byButton ? scene.Window.Exit() : scene.Window.Unload();
        EXPECT_TRUE(scene.Ended);
        EXPECT_EQ(scene.Form().Text1, "Please wait...");
    }
}

TEST(AirportWindow, ClosedDuringTheScanItLeavesNoDatabase) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.FirstRun();
    scene.Window.Load();
    scene.Window.RunScanBgl();
    scene.Window.Unload();
    EXPECT_FALSE(scene.Ended);
    EXPECT_FALSE(scene.Form().ScanBgl);
    EXPECT_THAT(scene.App.Names(), ElementsAre(ConfigName, TerrainName));
    EXPECT_EQ(DecideStartUp(scene.Program), StartUp::ChooseSimFolder);
}

TEST(AirportWindow, ClosedWhileItHandsOverItGoesWithoutAWord) {
    Scene scene;
    scene.Sim.Write("a/scenery/1.bgl", FileWith("Alpha"));
    scene.Area("A", "a");
    scene.Scanned();
    scene.Window.Load();
    scene.Window.SelectAirport("Alpha (KTST)");
    scene.Window.Unload();
    EXPECT_FALSE(scene.Ended);
    EXPECT_FALSE(scene.Form().WaitForClose);
}

}  // namespace
}  // namespace corvenna
