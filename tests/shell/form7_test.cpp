#include "shell/form7.h"

#include <gmock/gmock.h>

#include <QDir>

#include "shell/shell_scene.h"
#include "world/airport_database.h"

namespace corvenna {
namespace {

using testing::ElementsAre;

const SeenBox WrongFolder{
    BoxIcon::Exclamation,
    "The directory or path that you selected is not your currently FS2002 main folder, because this program "
    "didn't found the FS2002.EXE file. Please try again."};

TEST(Form7, OpensAtTheFolderOfTheProgram) {
    ShellScene scene;
    scene.Starts();
    EXPECT_EQ(scene.Text("Form7", "Text1").text().toStdString(), scene.App.Path());
}

TEST(Form7, AFolderWithoutTheSimulatorKeepsTheWindow) {
    ShellScene scene;
    scene.Starts();
    for (const char* folder : {"-none-", "", "/", "/no/such/folder"}) {
        scene.Person.Boxes.clear();
        scene.Text("Form7", "Text1").setText(folder);
        scene.Press("Form7", "Command1");
        EXPECT_THAT(scene.Person.Boxes, ElementsAre(WrongFolder)) << folder;
        EXPECT_THAT(scene.Open(), ElementsAre("Form7"));
        EXPECT_THAT(scene.App.Names(), ElementsAre(TerrainName));
    }
}

TEST(Form7, TheRightFolderMakesTheConfigurationAndGoesOn) {
    ShellScene scene;
    scene.Starts();
    scene.ChoosesSimFolder();
    EXPECT_EQ(scene.Person.Boxes[0],
              (SeenBox{BoxIcon::Information,
                       "The creation process of the configuration file for this program was completed!"}));
    EXPECT_EQ(ReadConfig(scene.App.Path()), (ConfigRecord{PracticeSimFolder(), 0}));
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
}

TEST(Form7, ADriveRootLosesItsSeparator) {
    ShellScene scene;
    scene.Starts();
    QLineEdit& text1 = scene.Text("Form7", "Text1");
    text1.setText("C:\\");
    EXPECT_EQ(text1.text(), "C:");
    text1.setText("D:/");
    EXPECT_EQ(text1.text(), "D:");
    text1.setText("C:\\FS");
    EXPECT_EQ(text1.text(), "C:\\FS");
}

TEST(Form7, TheFolderListLeadsThePath) {
    ShellScene scene;
    std::filesystem::path folder(scene.App.Path("games/FS2002"));
    std::filesystem::create_directories(folder);
    scene.Starts();
    FolderList& dir1 = scene.Find<FolderList>("Form7", "Dir1");
    dir1.SetPath(QString::fromStdString(scene.App.Path("games")));
    ASSERT_EQ(dir1.count(), 2);
    EXPECT_EQ(dir1.item(0)->text(), "..");
    EXPECT_EQ(dir1.item(1)->text(), "FS2002");
    emit dir1.itemActivated(dir1.item(1));
    EXPECT_EQ(scene.Text("Form7", "Text1").text().toStdString(), folder.make_preferred().string());
    emit dir1.itemActivated(dir1.item(0));
    EXPECT_EQ(scene.Text("Form7", "Text1").text().toStdString(), scene.App.Path("games"));
}

TEST(Form7, TheDriveListLeadsTheFolderList) {
    ShellScene scene;
    scene.Starts();
    DriveList& drive1 = scene.Find<DriveList>("Form7", "Drive1");
    ASSERT_GT(drive1.count(), 0);
    drive1.setCurrentIndex(0);
    emit drive1.activated(0);
    EXPECT_EQ(scene.Find<FolderList>("Form7", "Dir1").Path(), QDir::toNativeSeparators(drive1.Root()));
}

TEST(Form7, ClosedItEndsTheProgram) {
    ShellScene scene;
    scene.Starts();
    scene.CloseBox("Form7");
    EXPECT_EQ(scene.Program.Status(), 0);
}

}  // namespace
}  // namespace corvenna
