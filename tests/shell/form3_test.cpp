#include "shell/form3.h"

#include <gmock/gmock.h>

#include <QKeyEvent>
#include <QTest>
#include <QWindow>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Seattle = "Seattle-Tacoma Intl (KSEA)";

/// At the connection window.
struct AtTheSessions : ShellScene {
    explicit AtTheSessions(std::uint16_t hostPort) : ShellScene(hostPort) {
        HasDatabase();
        Starts();
        Chooses(Seattle);
    }
    std::string Status() const { return Label("Form3", "Label6").text().toStdString(); }
    void AsksToJoin() {
        SearchesThisComputer();
        List("Form3", "List2").setCurrentRow(0);
        Press("Form3", "Command2");
    }
};

TEST(Form3, OffersAllConnectionsButTheFirst) {
    HostThread host;
    AtTheSessions scene(host.Port());
    const QListWidget& list1 = scene.List("Form3", "List1");
    ASSERT_EQ(list1.count(), 2);
    EXPECT_EQ(list1.item(0)->text(), "Internet TCP/IP Connection For DirectPlay");
    EXPECT_EQ(list1.item(1)->text(), "Practice Session On This Computer");
    EXPECT_EQ(scene.Text("Form3", "Text2").text(), "KSEA_Controller");
    EXPECT_EQ(scene.Status(), "Disconnected");
}

TEST(Form3, ASearchWithoutAConnectionAsksForOne) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Press("Form3", "Command1");
    EXPECT_THAT(scene.Person.Boxes,
                ElementsAre(SeenBox{BoxIcon::Information, "Please Select one Type of Connection"}));
    EXPECT_EQ(scene.Status(), "Disconnected");
}

TEST(Form3, FindsTheSessionOnThisComputer) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.SearchesThisComputer();
    ASSERT_EQ(scene.List("Form3", "List2").count(), 1);
    EXPECT_EQ(scene.List("Form3", "List2").item(0)->text(), "Friday evening (1/16)");
    EXPECT_EQ(scene.Status(), "Done");
}

TEST(Form3, FindsTheSessionOfAHostThatIsNamed) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Person.Host = "127.0.0.1:" + std::to_string(host.Port());
    scene.List("Form3", "List1").setCurrentRow(0);
    scene.Press("Form3", "Command1");
    EXPECT_EQ(scene.List("Form3", "List2").count(), 1);
}

TEST(Form3, WhoDoesNotNameAHostHasCanceled) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Person.Host = std::nullopt;
    scene.List("Form3", "List1").setCurrentRow(0);
    scene.Press("Form3", "Command1");
    EXPECT_THAT(scene.Person.Boxes, ElementsAre(SeenBox{BoxIcon::Information, "User Canceled Connection."}));
    EXPECT_EQ(scene.Status(), "Disconnected");
}

TEST(Form3, AHostThatIsNoComputerIsToldInTheStatusLine) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Person.Host = "no.such.computer.invalid";
    scene.List("Form3", "List1").setCurrentRow(0);
    scene.Press("Form3", "Command1");
    EXPECT_THAT(scene.Person.Boxes, IsEmpty());
    EXPECT_EQ(scene.Status(), "Disconnected");
    EXPECT_THAT(scene.Label("Form3", "StatusLine").text().toStdString(),
                HasSubstr("no.such.computer.invalid"));
}

TEST(Form3, ClosedDuringASearchItGivesTheSearchUpAndCloses) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Person.Host = "127.0.0.1:1";
    scene.List("Form3", "List1").setCurrentRow(0);
    QTimer closing;
    QObject::connect(&closing, &QTimer::timeout, [&] {
        if (scene.Status() == "Searching for FS Multiplayer Sessions") scene.CloseBox("Form3");
    });
    closing.start(1);
    scene.Press("Form3", "Command1");
    EXPECT_THAT(scene.Person.Boxes, ElementsAre(SeenBox{BoxIcon::Information, "User Canceled Connection."}));
    EXPECT_TRUE(scene.Until([&] { return scene.Program.Status().has_value(); }));
}

TEST(Form3, EscapeGivesASearchUp) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.Person.Host = "127.0.0.1:1";
    scene.List("Form3", "List1").setCurrentRow(0);
    QTimer escaping;
    QObject::connect(&escaping, &QTimer::timeout, [&] {
        if (scene.Status() != "Searching for FS Multiplayer Sessions") return;
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(scene.FindWindow("Form3").windowHandle(), &escape);
    });
    escaping.start(1);
    scene.Press("Form3", "Command1");
    EXPECT_THAT(scene.Person.Boxes, ElementsAre(SeenBox{BoxIcon::Information, "User Canceled Connection."}));
    EXPECT_EQ(scene.Status(), "Disconnected");
    EXPECT_THAT(scene.Open(), ElementsAre("Form3"));
}

TEST(Form3, ASearchThatTakesLongTellsTheSecondsAndTheWayOut) {
    HostThread host;
    AtTheSessions scene(host.Port());
    static_cast<Form3&>(scene.FindWindow("Form3")).TellWaiting(3);
    EXPECT_EQ(scene.Label("Form3", "StatusLine").text(), "Waiting for the network: 3 s. Escape gives up.");
    scene.SearchesThisComputer();
    EXPECT_EQ(scene.Label("Form3", "StatusLine").text(), "");
}

TEST(Form3, JoiningWithoutASessionAndANameAsksForBoth) {
    HostThread host;
    AtTheSessions scene(host.Port());
    scene.SearchesThisComputer();
    scene.Text("Form3", "Text2").clear();
    scene.Press("Form3", "Command2");
    EXPECT_THAT(scene.Person.Boxes,
                ElementsAre(SeenBox{BoxIcon::Exclamation, "Please select a FS Multiplayer Session."},
                            SeenBox{BoxIcon::Exclamation, "Please write a nickname."}));
    EXPECT_EQ(scene.List("Form3", "List2").count(), 0);
}

TEST(Form3, ChoosingAConnectionAbandonsTheJoin) {
    HostThread host({.SessionName = "Busy", .Players = 16, .Admits = true, .Answers = false});
    AtTheSessions scene(host.Port());
    scene.AsksToJoin();
    EXPECT_EQ(scene.Status(), "First Request Sent");
    EXPECT_TRUE(scene.Timer("Form3", "Timer1").isActive());
    scene.List("Form3", "List1").setCurrentRow(0);
    EXPECT_EQ(scene.Status(), "Disconnected");
    EXPECT_FALSE(scene.Timer("Form3", "Timer1").isActive());
    EXPECT_EQ(scene.List("Form3", "List2").count(), 0);
}

TEST(Form3, AClickOnTheConnectionThatIsChosenAlreadyAbandonsTheJoinToo) {
    HostThread host({.SessionName = "Busy", .Players = 16, .Admits = true, .Answers = false});
    AtTheSessions scene(host.Port());
    scene.AsksToJoin();
    QListWidget& list1 = scene.List("Form3", "List1");
    QTest::mouseClick(list1.viewport(), Qt::LeftButton, {},
                      list1.visualItemRect(list1.currentItem()).center());
    EXPECT_EQ(scene.Status(), "Disconnected");
    EXPECT_FALSE(scene.Timer("Form3", "Timer1").isActive());
    EXPECT_EQ(scene.List("Form3", "List2").count(), 0);
}

TEST(Form3, TheRequestIsRepeatedAfterThirtySeconds) {
    HostThread host({.SessionName = "Busy", .Players = 16, .Admits = true, .Answers = false});
    AtTheSessions scene(host.Port());
    scene.AsksToJoin();
    for (int second = 1; second < 30; ++second) scene.Fire("Form3", "Timer1");
    EXPECT_EQ(scene.Status(), "First Request Sent");
    scene.Fire("Form3", "Timer1");
    EXPECT_EQ(scene.Status(), "Request Resent");
    host.SetAnswers(true);
    scene.AwaitsAnswer([&] { return scene.IsOpen("Form4"); });
    EXPECT_THAT(scene.Open(), ElementsAre("Form4"));
}

TEST(Form3, ARefusalIsToldAndTheNextTryMaySucceed) {
    HostThread host;
    host.SetAdmits(false);
    AtTheSessions scene(host.Port());
    scene.AsksToJoin();
    scene.AwaitsAnswer([&] { return !scene.Person.Boxes.empty(); });
    EXPECT_THAT(scene.Person.Boxes, ElementsAre(SeenBox{BoxIcon::Exclamation, "Connection Refused."}));
    EXPECT_EQ(scene.Status(), "Disconnected");
    host.SetAdmits(true);
    scene.SearchesThisComputer();
    scene.Joins();
    EXPECT_THAT(scene.Open(), ElementsAre("Form4"));
}

TEST(Form3, CloseAndTheCloseBoxEndTheProgram) {
    HostThread host;
    {
        AtTheSessions scene(host.Port());
        scene.Press("Form3", "Command3");
        EXPECT_EQ(scene.Program.Status(), 0);
    }
    AtTheSessions scene(host.Port());
    scene.CloseBox("Form3");
    EXPECT_EQ(scene.Program.Status(), 0);
}

TEST(Form3, ClosedWhileItWaitsItLeavesTheSession) {
    HostThread host({.SessionName = "Busy", .Players = 16, .Admits = true, .Answers = false});
    AtTheSessions scene(host.Port());
    scene.AsksToJoin();
    scene.CloseBox("Form3");
    EXPECT_EQ(scene.Program.Status(), 0);
    EXPECT_TRUE(scene.Until([&] {
        std::size_t count = 0;
        host.Do([&](SimulatorPeer& simulator) { count = simulator.Dp().GetDPEnumPlayers().size(); });
        return count == 1;
    }));
}

}  // namespace
}  // namespace corvenna
