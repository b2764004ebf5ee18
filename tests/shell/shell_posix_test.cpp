// A folder of the program's in which nothing may be written, by the permissions of a posix system.

#include <gmock/gmock.h>

#include "shell/shell_scene.h"
#include "world/airport_database.h"
#include "world/ordinary_user.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Form7, AReadOnlyFolderOfTheProgramIsToldAndEndsIt) {
    PracticeSimFolder();  // made with the rights of whoever runs the test
    ShellScene scene;
    std::filesystem::permissions(scene.App.Path(), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        scene.Starts();
        scene.ChoosesSimFolder();
    }
    std::filesystem::permissions(scene.App.Path(), std::filesystem::perms::owner_all);
    ASSERT_EQ(scene.Person.Boxes.size(), 1U);
    EXPECT_THAT(scene.Person.Boxes[0].Text, HasSubstr("Corvenna.cfg: can't be written"));
    EXPECT_THAT(scene.App.Names(), ElementsAre(TerrainName));
    EXPECT_EQ(scene.Program.Status(), 1);
}

TEST(ShellStart, AReadOnlyFolderWithADatabaseIsEnough) {
    ShellScene scene;
    scene.HasDatabase();
    std::filesystem::permissions(scene.App.Path(), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        scene.Starts();
        scene.Chooses("Seattle-Tacoma Intl (KSEA)");
    }
    std::filesystem::permissions(scene.App.Path(), std::filesystem::perms::owner_all);
    EXPECT_THAT(scene.Person.Boxes, IsEmpty());
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
}

}  // namespace
}  // namespace corvenna
