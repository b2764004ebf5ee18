#include "shell/window.h"

#include <gmock/gmock.h>

#include <QTest>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"

namespace corvenna {
namespace {

using testing::ElementsAre;

/// The operator without a mouse.
struct AtTheKeyboard : ShellScene {
    using ShellScene::ShellScene;

    /// Waits until keys go to the window.
    QWindow* Front(const char* window) {
        QWidget& front = FindWindow(window);
        front.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&front)) << window;
        return front.windowHandle();
    }
    /// A button acts a moment later, so that one sees it go down.
    void Alt(const char* window, char letter) { QTest::keyClick(Front(window), letter, Qt::AltModifier); }
    std::string Focus() const {
        const QWidget* const control = QApplication::focusWidget();
        return control == nullptr ? "" : control->objectName().toStdString();
    }

    /// The controls that Tab visits, from the one where the window opens until that comes again.
    std::vector<std::string> TabOrder(const char* window) {
        constexpr std::size_t TooMany = 20;
        std::vector<std::string> order;
        QWindow* const front = Front(window);
        for (auto at = Focus(); order.size() < TooMany && (order.empty() || at != order[0]); at = Focus()) {
            order.push_back(at);
            QTest::keyClick(front, Qt::Key_Tab);
        }
        return order;
    }
};

/// With a database, in front of the airports.
struct AtTheAirports : AtTheKeyboard {
    explicit AtTheAirports(std::uint16_t hostPort = 0) : AtTheKeyboard(hostPort) {
        HasDatabase();
        Starts();
    }
};

TEST(Keyboard, TabGoesThroughTheFolderChooser) {
    AtTheKeyboard scene;
    scene.Starts();
    EXPECT_THAT(scene.TabOrder("Form7"), ElementsAre("Dir1", "Text1", "Command1", "Drive1"));
}

TEST(Keyboard, TabGoesThroughTheAirportSelection) {
    AtTheAirports scene;
    EXPECT_THAT(scene.TabOrder("Form2"), ElementsAre("Combo1", "Command1", "Command2"));
}

TEST(Keyboard, TabGoesThroughTheSessionSearch) {
    AtTheAirports scene;
    scene.Chooses("Seattle-Tacoma Intl (KSEA)");
    EXPECT_THAT(scene.TabOrder("Form3"),
                ElementsAre("List1", "Command1", "List2", "Command2", "Command3", "Text2"));
}

TEST(Keyboard, TabGoesThroughTheButtonsOfTheStationThatAct) {
    HostThread host;
    AtTheKeyboard scene(host.Port());
    scene.OpensStation();
    EXPECT_THAT(scene.TabOrder("Form4"), ElementsAre("Command2", "Command3"));
}

TEST(Keyboard, TheFolderChooserHasMnemonics) {
    AtTheKeyboard scene;
    scene.Starts();
    scene.Alt("Form7", 'p');
    EXPECT_EQ(scene.Focus(), "Text1");
    scene.Alt("Form7", 'f');
    // The folder of the program is not the simulator's.
    EXPECT_TRUE(scene.Until([&] { return scene.Person.Boxes.size() == 1; }));
}

TEST(Keyboard, TheAirportSelectionHasMnemonics) {
    AtTheAirports scene;
    scene.Find<QComboBox>("Form2", "Combo1").setEditText("Seattle-Tacoma Intl (KSEA)");
    scene.Alt("Form2", 'n');
    EXPECT_TRUE(scene.Until([&] { return scene.Timer("Form2", "Wait_for_Close").isActive(); }));
}

TEST(Keyboard, TheAirportSelectionHasAMnemonicForItsEnd) {
    AtTheAirports scene;
    scene.Alt("Form2", 'x');
    EXPECT_TRUE(scene.Until([&] { return scene.Program.Status() == 0; }));
}

TEST(Keyboard, AnAirportIsChosenByTypingAndReturn) {
    AtTheAirports scene;
    QWindow* const front = scene.Front("Form2");
    for (const char letter : std::string("ksea")) QTest::keyClick(front, letter);
    QTest::keyClick(front, Qt::Key_Return);
    EXPECT_EQ(scene.Find<QComboBox>("Form2", "Combo1").currentText(), "Seattle-Tacoma Intl (KSEA)");
}

TEST(Keyboard, TheSessionSearchHasMnemonics) {
    HostThread host({.SessionName = "Busy", .Players = 16, .Admits = true, .Answers = false});
    AtTheAirports scene(host.Port());
    scene.Chooses("Seattle-Tacoma Intl (KSEA)");
    scene.Alt("Form3", 'l');
    EXPECT_EQ(scene.Focus(), "Text2");
    scene.Alt("Form3", 't');
    EXPECT_EQ(scene.Focus(), "List1");
    QTest::keyClick(scene.Front("Form3"), Qt::Key_End);
    scene.Alt("Form3", 's');
    EXPECT_TRUE(scene.Until([&] { return scene.List("Form3", "List2").count() == 1; }));
    scene.Alt("Form3", 'v');
    EXPECT_EQ(scene.Focus(), "List2");
    QTest::keyClick(scene.Front("Form3"), Qt::Key_Space);
    scene.Alt("Form3", 'j');
    EXPECT_TRUE(scene.Until([&] { return scene.Timer("Form3", "Timer1").isActive(); }));
    scene.Alt("Form3", 'c');
    EXPECT_TRUE(scene.Until([&] { return scene.Program.Status() == 0; }));
}

TEST(Keyboard, TheStationHasMnemonics) {
    HostThread host;
    AtTheKeyboard scene(host.Port());
    scene.OpensStation();
    scene.Alt("Form4", 's');
    EXPECT_TRUE(scene.Until([&] { return scene.Timer("Form4", "ATC_Timer").isActive(); }));
    scene.Alt("Form4", 't');
    EXPECT_TRUE(scene.Until([&] { return !scene.Timer("Form4", "ATC_Timer").isActive(); }));
    scene.Alt("Form4", 'c');
    EXPECT_TRUE(scene.Until([&] { return scene.IsOpen("Form2"); }));
}

TEST(Keyboard, TheAboutWindowHasAMnemonic) {
    AtTheAirports scene;
    QTest::keyClick(scene.Front("Form2"), Qt::Key_F1);
    scene.Alt("Form5", 'o');
    EXPECT_TRUE(scene.Until([&] { return !scene.IsOpen("Form5"); }));
}

TEST(Keyboard, F1OpensTheAboutWindowAndEscapeClosesIt) {
    AtTheAirports scene;
    QTest::keyClick(scene.Front("Form2"), Qt::Key_F1);
    EXPECT_THAT(scene.Open(), ElementsAre("Form2", "Form5"));
    QTest::keyClick(scene.Front("Form5"), Qt::Key_Escape);
    EXPECT_TRUE(scene.Until([&] { return !scene.IsOpen("Form5"); }));
    EXPECT_THAT(scene.Open(), ElementsAre("Form2"));
}

}  // namespace
}  // namespace corvenna
