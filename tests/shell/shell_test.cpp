#include "shell/shell.h"

#include <gmock/gmock.h>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Shell, TheFirstRunLeadsToAStationAndBackToTheAirports) {
    HostThread host;
    ShellScene scene(host.Port());
    scene.Program.Start();
    EXPECT_THAT(scene.Open(), ElementsAre("Form1"));
    scene.Fire("Form1", "Timer1");
    EXPECT_THAT(scene.Open(), ElementsAre("Form7"));
    scene.ChoosesSimFolder();
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
    scene.Scans();
    scene.Chooses("Seattle-Tacoma Intl (KSEA)");
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
    scene.SearchesThisComputer();
    scene.Joins();
    EXPECT_THAT(scene.Open(), ElementsAre("Form4"));
    EXPECT_EQ(scene.Person.Boxes.back(), (SeenBox{BoxIcon::Information, "Connected to FS Session!"}));
    scene.Press("Form4", "Command3");
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
    EXPECT_FALSE(scene.Program.Status());
}

}  // namespace
}  // namespace corvenna
