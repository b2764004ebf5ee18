#include "shell/shell.h"

#include <gmock/gmock.h>

#include <QAction>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"
#include "world/airport_database.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Seattle = "Seattle-Tacoma Intl (KSEA)";

// ---- The start

TEST(ShellStart, ThePictureStandsUntilItsTimerFires) {
    ShellScene scene;
    scene.Program.Start();
    EXPECT_THAT(scene.Open(), ElementsAre("Form1"));
    EXPECT_TRUE(scene.Timer("Form1", "Timer1").isActive());
    EXPECT_EQ(scene.Timer("Form1", "Timer1").interval(), 3000);
}

TEST(ShellStart, WithBothFilesTheAirportsCome) {
    ShellScene scene;
    scene.HasDatabase();
    scene.Starts();
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
    EXPECT_THAT(scene.Person.Boxes, IsEmpty());
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Done!");
}

TEST(ShellStart, WithoutEitherFileTheFolderChooserComes) {
    for (const char* missing : {"Corvenna.cfg", "world_airports.dat"}) {
        ShellScene scene;
        scene.HasDatabase();
        std::filesystem::remove(scene.App.Path(missing));
        scene.Starts();
        EXPECT_THAT(scene.Open(), ElementsAre("Form7")) << missing;
        EXPECT_THAT(scene.App.Names(), ElementsAre(TerrainName)) << missing;
    }
}

TEST(ShellStart, WithoutBothFilesTheFolderChooserComes) {
    ShellScene scene;
    scene.Starts();
    EXPECT_THAT(scene.Open(), ElementsAre("Form7"));
}

TEST(ShellStart, WithoutTerrainTheProgramEndsAndTouchesNothing) {
    for (const bool database : {false, true}) {
        ShellScene scene;
        if (database) scene.HasDatabase();
        std::filesystem::remove(scene.App.Path(TerrainName));
        const auto before = scene.App.Names();
        scene.Starts();
        EXPECT_THAT(scene.Person.Boxes,
                    ElementsAre(SeenBox{
                        BoxIcon::Exclamation,
                        "The world_terrain.db file is missing. Please reinstall this ATC program again."}));
        EXPECT_EQ(scene.Program.Status(), 0);
        EXPECT_THAT(scene.Open(), IsEmpty());
        EXPECT_EQ(scene.App.Names(), before);
    }
}

TEST(ShellStart, AClosedPictureEndsTheProgram) {
    ShellScene scene;
    scene.Program.Start();
    scene.CloseBox("Form1");
    EXPECT_EQ(scene.Program.Status(), 0);
}

TEST(ShellStart, ASecondCopyInTheFolderOpensTheSameDatabase) {
    ShellScene first;
    first.HasDatabase();
    first.Starts();
    ShellScene second;
    std::filesystem::current_path(first.App.Path());
    std::size_t before = first.Open().size();
    second.Program.Start();
    second.Fire("Form1", "Timer1");
    EXPECT_EQ(second.Open().size(), before + 1);
    EXPECT_THAT(second.Open(), ElementsAre("Form2", "Form2"));
}

TEST(ShellStart, ASecondCopyDuringAScanScansTooAndBothLeaveAWholeDatabase) {
    ShellScene first;
    first.Starts();
    first.ChoosesSimFolder();
    first.Fire("Form2", "Scan_Bgl");
    ShellScene second;
    std::filesystem::current_path(first.App.Path());
    second.Starts();
    EXPECT_THAT(second.Open(), ElementsAre("Form2", "Form7"));
    first.Scans();
    const std::int32_t airports = ReadConfig(first.App.Path()).AirportCount;
    EXPECT_EQ(ReadDatabase(first.App.Path()).Count(), airports);
    first.Chooses(Seattle);
    second.ChoosesSimFolder();
    EXPECT_THAT(second.Open(), ElementsAre("Form2", "Form3"));
    second.Scans();
    EXPECT_EQ(ReadConfig(first.App.Path()).AirportCount, airports);
    EXPECT_EQ(ReadDatabase(first.App.Path()).Count(), airports);
    EXPECT_EQ(second.Find<QComboBox>("Form2", "Combo1").count(), airports);
}

// ---- From window to window

TEST(Shell, TheFirstRunLeadsToAStationAndBackToTheAirports) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.Starts();
    EXPECT_THAT(scene.Open(), ElementsAre("Form7"));
    scene.ChoosesSimFolder();
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
    scene.Scans();
    scene.Chooses(Seattle);
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
    scene.SearchesThisComputer();
    scene.Joins();
    EXPECT_THAT(scene.Open(), ElementsAre("Form4"));
    EXPECT_EQ(scene.Person.Boxes.back(), (SeenBox{BoxIcon::Information, "Connected to FS Session!"}));
    scene.Press("Form4", "Command3");
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
    EXPECT_EQ(scene.Label("Form2", "Label2").text(), "Done!");
    EXPECT_FALSE(scene.Program.Status());
    EXPECT_EQ(scene.Person.Boxes.size(), 4U);
}

TEST(Shell, AStationFollowsAStation) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.OpensStation();
    scene.Press("Form4", "Command3");
    scene.Chooses("Innsbruck Kranebitten (LOWI)");
    EXPECT_EQ(scene.Text("Form3", "Text2").text(), "LOWI_Controller");
    scene.SearchesThisComputer();
    scene.Joins();
    EXPECT_THAT(scene.Open(), ElementsAre("Form4"));
    EXPECT_EQ(scene.Program.TheStation().AirportCode, "LOWI");
}

TEST(Shell, TheAboutWindowBlocksNothing) {
    ShellScene scene;
    scene.HasDatabase();
    scene.Starts();
    scene.FindWindow("Form2").findChild<QAction*>("abot1")->trigger();
    EXPECT_THAT(scene.Open(), ElementsAre("Form2", "Form5"));
    scene.Chooses(Seattle);
    EXPECT_THAT(scene.Open(), ElementsAre("Form3", "Form5"));
    scene.Press("Form5", "Command1");
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
}

TEST(Shell, TheAboutWindowAloneKeepsTheProgramUntilItIsClosed) {
    ShellScene scene;
    scene.Starts();
    scene.FindWindow("Form7").findChild<QAction*>("abot1")->trigger();
    scene.CloseBox("Form7");
    EXPECT_THAT(scene.Open(), ElementsAre("Form5"));
    EXPECT_FALSE(scene.Program.Status());
    scene.CloseBox("Form5");
    EXPECT_EQ(scene.Program.Status(), 0);
}

// ---- Boxes

TEST(ShellBoxes, NothingRunsWhileOneIsOpen) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.Starts();
    bool ranInBox = false;
    scene.Person.WhileOpen = [&](QMessageBox&) {
        const auto before = scene.Text("Form7", "Text1").text();
        scene.Press("Form7", "Command1");
        ranInBox = scene.Person.Boxes.size() > 1 || scene.Text("Form7", "Text1").text() != before;
    };
    scene.Press("Form7", "Command1");  // a wrong folder
    EXPECT_EQ(scene.Person.Boxes.size(), 1U);
    EXPECT_FALSE(ranInBox);
}

TEST(ShellBoxes, ATimerThatCameDueIsServedBehindTheBox) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.OpensStation();
    scene.Fire("Form4", "Refresh_Players");
    EXPECT_TRUE(scene.Until([&] { return scene.Program.TheStation().PlayerCount() == 1; }));
    scene.Press("Form4", "Command2");
    bool heardInBox = true;
    scene.Person.WhileOpen = [&](QMessageBox&) {
        scene.Fire("Form4", "ATC_Timer");
        heardInBox = !host.Heard().empty();
    };
    host.Joins("N1");
    host.Do([](SimulatorPeer& simulator) { simulator.Leave(); });
    EXPECT_TRUE(scene.Until([&] { return scene.Person.Boxes.size() == 2; }));
    EXPECT_FALSE(heardInBox);
}

// ---- Errors that escape

TEST(ShellErrors, AConfigurationCutShortEndsTheProgramWithStatus1) {
    ShellScene scene;
    scene.HasDatabase();
    scene.App.Write("Corvenna.cfg", "\x40");
    scene.Starts();
    ASSERT_EQ(scene.Person.Boxes.size(), 1U);
    EXPECT_EQ(scene.Person.Boxes[0].Icon, BoxIcon::Exclamation);
    EXPECT_THAT(scene.Person.Boxes[0].Text, HasSubstr("The start failed: "));
    EXPECT_THAT(scene.Person.Boxes[0].Text, HasSubstr("Corvenna.cfg: byte 0"));
    EXPECT_EQ(scene.Program.Status(), 1);
    EXPECT_THAT(scene.Open(), IsEmpty());
}

TEST(ShellErrors, ADatabaseCutShortEndsTheProgramWithStatus1) {
    ShellScene scene;
    scene.HasDatabase();
    std::filesystem::resize_file(scene.App.Path("world_airports.dat"), 1000);
    scene.Starts();
    ASSERT_EQ(scene.Person.Boxes.size(), 1U);
    EXPECT_THAT(scene.Person.Boxes[0].Text, HasSubstr("world_airports.dat: byte"));
    EXPECT_EQ(scene.Program.Status(), 1);
    EXPECT_THAT(scene.Open(), IsEmpty());
}

TEST(ShellErrors, ABadTerrainLineIsNamedAndEndsTheProgram) {
    ShellScene scene;
    scene.HasDatabase();
    scene.App.Write(TerrainName, "46.8 -121.7 4392\n46.8 west 4392\n");
    scene.Starts();
    scene.Find<QComboBox>("Form2", "Combo1").setEditText(Seattle);
    scene.Press("Form2", "Command1");
    ASSERT_EQ(scene.Person.Boxes.size(), 1U);
    EXPECT_THAT(scene.Person.Boxes[0].Text, HasSubstr("world_terrain.db: line 2"));
    EXPECT_EQ(scene.Program.Status(), 1);
}

TEST(ShellErrors, NothingRunsBehindTheEnd) {
    ShellScene scene;
    scene.HasDatabase();
    scene.App.Write("Corvenna.cfg", "\x40");
    scene.Program.Start();
    GatedTimer& timer = scene.Timer("Form1", "Timer1");
    timer.Expire();
    timer.start();
    timer.Expire();
    EXPECT_EQ(scene.Person.Boxes.size(), 1U);
}

TEST(ShellErrors, TheSessionIsLeftBeforeTheBox) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.OpensStation();
    const auto participants = [&host] {
        std::size_t count = 0;
        host.Do([&](SimulatorPeer& simulator) { count = simulator.Dp().GetDPEnumPlayers().size(); });
        return count;
    };
    EXPECT_EQ(participants(), 2U);
    bool leftInBox = false;
    scene.Person.WhileOpen = [&](QMessageBox&) {
        leftInBox = scene.Until([&] { return participants() == 1; });
    };
    std::filesystem::remove(scene.App.Path("world_airports.dat"));
    scene.Press("Form4", "Command3");  // the airports can't be read any more
    EXPECT_TRUE(leftInBox);
    EXPECT_EQ(scene.Program.Status(), 1);
}

}  // namespace
}  // namespace corvenna
