#include "shell/form2.h"

#include <gmock/gmock.h>

#include "shell/shell_scene.h"
#include "world/airport_database.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Seattle = "Seattle-Tacoma Intl (KSEA)";

std::vector<bool> Inputs(const ShellScene& scene) {
    return {scene.Find<QComboBox>("Form2", "Combo1").isEnabled(),
            scene.Button("Form2", "Command1").isEnabled(), scene.Button("Form2", "Command2").isEnabled()};
}

/// At the airport list, the database being there.
struct AtTheAirports : ShellScene {
    AtTheAirports() {
        HasDatabase();
        Starts();
    }
};

/// In the scan of a first run.
struct Scanning : ShellScene {
    explicit Scanning(const std::string& simFolder = PracticeSimFolder()) {
        Starts();
        Text("Form7", "Text1").setText(QString::fromStdString(simFolder));
        Press("Form7", "Command1");
    }
};

TEST(Form2, TheScanLocksTheInputsAndItsEndFreesThem) {
    Scanning scene;
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Processing Please Wait...");
    EXPECT_THAT(Inputs(scene), ElementsAre(false, false, false));
    EXPECT_EQ(scene.Timer("Form2", "Scan_Bgl").interval(), 5);
    scene.Scans();
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Done!");
    EXPECT_THAT(Inputs(scene), ElementsAre(true, true, true));
    EXPECT_EQ(scene.Text("Form2", "Text1").text(), "");
    EXPECT_EQ(scene.Find<QProgressBar>("Form2", "ProgressBar1").value(), 0);
    EXPECT_EQ(scene.Find<QComboBox>("Form2", "Combo1").count(), ReadConfig(scene.App.Path()).AirportCount);
}

TEST(Form2, TheScanMovesTheBarAndNamesTheArea) {
    Scanning scene;
    const QProgressBar& bar = scene.Find<QProgressBar>("Form2", "ProgressBar1");
    EXPECT_EQ(bar.minimum(), 0);
    EXPECT_GT(bar.maximum(), 1);
    int last = 0;
    QStringList areas;
    for (int ticks = 0; ticks < 8; ++ticks) {
        scene.Fire("Form2", "Scan_Bgl");
        EXPECT_GE(bar.value(), last);
        last = bar.value();
        areas.append(scene.Text("Form2", "Text1").text());
    }
    EXPECT_GT(last, 0);
    EXPECT_GT(areas.removeDuplicates(), 0);
}

TEST(Form2, ClosedDuringTheScanTheProgramGoesWithoutADatabase) {
    Scanning scene;
    scene.Fire("Form2", "Scan_Bgl");
    scene.CloseBox("Form2");
    EXPECT_EQ(scene.Program.Status(), 0);
    EXPECT_THAT(scene.App.Names(), ElementsAre(ConfigName, TerrainName));
    EXPECT_EQ(ReadConfig(scene.App.Path()).AirportCount, 0);
}

TEST(Form2, AFolderThatVanishesInMidScanIsNamedInTheStatusLine) {
    const TempFolder temporary;
    const std::filesystem::path sim = temporary.Path("sim");
    std::filesystem::copy(PracticeSimFolder(), sim, std::filesystem::copy_options::recursive);
    Scanning scene(sim.string());
    scene.Fire("Form2", "Scan_Bgl");
    for (const auto& folder : std::filesystem::directory_iterator(sim / "scenery")) {
        if (folder.is_directory()) std::filesystem::remove_all(folder.path());
    }
    scene.Scans();
    EXPECT_THAT(scene.Label("Form2", "StatusLine").text().toStdString(), HasSubstr("can't be listed"));
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Done!");
}

TEST(Form2, NextWithoutASelectionChangesNothing) {
    AtTheAirports scene;
    for (const char* text : {"", "Seattle", "seattle-tacoma intl (KSEA)"}) {
        scene.Find<QComboBox>("Form2", "Combo1").setEditText(text);
        scene.Press("Form2", "Command1");
        EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Done!") << text;
        EXPECT_FALSE(scene.Timer("Form2", "Wait_for_Close").isActive());
    }
    EXPECT_THAT(scene.Person.Boxes, IsEmpty());
}

TEST(Form2, NextLocksTheInputsAndHandsOverOnce) {
    AtTheAirports scene;
    scene.Find<QComboBox>("Form2", "Combo1").setEditText(Seattle);
    scene.Press("Form2", "Command1");
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Processing Please Wait...");
    EXPECT_THAT(Inputs(scene), ElementsAre(false, false, false));
    EXPECT_EQ(scene.Text("Form2", "Text1").text(), "World_terrain.db file");
    EXPECT_EQ(scene.Timer("Form2", "Wait_for_Close").interval(), 3000);
    EXPECT_EQ(scene.Program.TheStation().AirportCode, "KSEA");
    EXPECT_EQ(scene.Program.TheStation().HighestTerrain, 14409 + 2000);
    scene.Fire("Form2", "Wait_for_Close");
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
}

TEST(Form2, PressedFastNextActsOnce) {
    AtTheAirports scene;
    scene.Find<QComboBox>("Form2", "Combo1").setEditText(Seattle);
    for (int presses = 0; presses < 5; ++presses) scene.Press("Form2", "Command1");
    EXPECT_EQ(scene.Program.TheStation().MountainCount, 1);
    scene.Fire("Form2", "Wait_for_Close");
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
}

TEST(Form2, ClosedBeforeTheHandOverTheProgramGoes) {
    AtTheAirports scene;
    scene.Find<QComboBox>("Form2", "Combo1").setEditText(Seattle);
    scene.Press("Form2", "Command1");
    scene.CloseBox("Form2");
    EXPECT_EQ(scene.Program.Status(), 0);
    EXPECT_THAT(scene.Open(), IsEmpty());
}

TEST(Form2, ExitAndTheCloseBoxEndTheProgram) {
    {
        AtTheAirports scene;
        scene.Press("Form2", "Command2");
        EXPECT_EQ(scene.Program.Status(), 0);
    }
    AtTheAirports scene;
    scene.CloseBox("Form2");
    EXPECT_EQ(scene.Program.Status(), 0);
    EXPECT_THAT(scene.App.Names(), ElementsAre(ConfigName, AirportsName, TerrainName));
}

TEST(Form2, OfALabelThatStandsTwiceTheLastAirportIsTaken) {
    ShellScene scene;
    scene.HasDatabase();
    AirportList airports = ReadDatabase(scene.App.Path());
    Airport twin = airports.Record(airports.FindLast(Seattle));
    twin.MainRunwayId = "99X";
    airports.Add(twin);
    WriteAirports(scene.App.Path(), airports);
    WriteConfig(scene.App.Path(), {PracticeSimFolder(), airports.Count()});
    scene.Starts();
    EXPECT_EQ(scene.Find<QComboBox>("Form2", "Combo1").count(), airports.Count());
    scene.Chooses(Seattle);
    EXPECT_EQ(scene.Program.TheStation().ActiveRunway, "99X");
}

}  // namespace
}  // namespace corvenna
