#include "shell/form4.h"

#include <gmock/gmock.h>

#include <QCloseEvent>
#include <QWindow>

#include "shell/host_thread.h"
#include "shell/shell_scene.h"
#include "station/geometry.h"
#include "support/session_field.h"

namespace corvenna {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

/// A station at Seattle, in the session of a host.
struct AtTheStation {
    AtTheStation() { Scene.OpensStation(); }

    const QLabel& Label() const { return Scene.Label("Form4", "Label1"); }
    std::vector<bool> Buttons() const {
        return {Scene.Button("Form4", "Command2").isEnabled(), Scene.Button("Form4", "Command1").isEnabled(),
                Scene.Button("Form4", "Command3").isEnabled()};
    }
    Qt::BrushStyle Fill(const char* lamp) const { return Scene.Find<Lamp>("Form4", lamp).Fill(); }
    QColor Colour() const { return Label().palette().color(QPalette::WindowText); }
    std::size_t Participants() {
        std::size_t count = 0;
        Host.Do([&](SimulatorPeer& simulator) { count = simulator.Dp().GetDPEnumPlayers().size(); });
        return count;
    }

    HostThread Host;
    ShellScene Scene{Host.Port()};
};

TEST(Form4, OpensWithoutMonitoring) {
    AtTheStation at;
    EXPECT_EQ(at.Label().text(), "NOT MONITORING TRAFFIC");
    EXPECT_EQ(at.Colour(), QColor(0, 128, 0));
    EXPECT_EQ(at.Fill("Shape2"), Qt::DiagCrossPattern);
    EXPECT_EQ(at.Fill("Shape3"), Qt::SolidPattern);
    EXPECT_THAT(at.Buttons(), ElementsAre(true, false, true));
    EXPECT_FALSE(at.Scene.Timer("Form4", "ATC_Timer").isActive());
    EXPECT_TRUE(at.Scene.Timer("Form4", "Connection_Timer").isActive());
    EXPECT_TRUE(at.Scene.Timer("Form4", "Refresh_Players").isActive());
    EXPECT_EQ(at.Scene.Timer("Form4", "ATC_Timer").interval(), 1000);
    EXPECT_EQ(at.Scene.Timer("Form4", "Connection_Timer").interval(), 100);
    EXPECT_EQ(at.Scene.Timer("Form4", "Refresh_Players").interval(), 30000);
}

TEST(Form4, StartsAndStopsMonitoring) {
    AtTheStation at;
    at.Scene.Press("Form4", "Command2");
    EXPECT_EQ(at.Label().text(), "MONITORING TRAFFIC");
    EXPECT_EQ(at.Colour(), QColor(128, 0, 0));
    EXPECT_EQ(at.Fill("Shape2"), Qt::SolidPattern);
    EXPECT_EQ(at.Fill("Shape3"), Qt::DiagCrossPattern);
    EXPECT_THAT(at.Buttons(), ElementsAre(false, true, true));
    EXPECT_TRUE(at.Scene.Timer("Form4", "ATC_Timer").isActive());
    at.Scene.Press("Form4", "Command1");
    EXPECT_EQ(at.Label().text(), "NOT MONITORING TRAFFIC");
    EXPECT_EQ(at.Colour(), QColor(0, 128, 0));
    EXPECT_THAT(at.Buttons(), ElementsAre(true, false, true));
    EXPECT_FALSE(at.Scene.Timer("Form4", "ATC_Timer").isActive());
}

TEST(Form4, APilotIsWelcomedWhileMonitoring) {
    AtTheStation at;
    at.Scene.Press("Form4", "Command2");
    at.Scene.Fire("Form4", "Refresh_Players");
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.Program.TheStation().PlayerCount() == 1; }));
    at.Scene.Fire("Form4", "ATC_Timer");
    EXPECT_TRUE(at.Scene.Until([&] { return !at.Host.Heard().empty(); }));
    EXPECT_THAT(at.Host.Heard(), Contains(HasSubstr("Welcome to Corvenna v1.3")));
}

TEST(Form4, ClosedByItsButtonItLeavesTheSessionAndTheAirportsCome) {
    AtTheStation at;
    EXPECT_EQ(at.Participants(), 2U);
    at.Scene.Press("Form4", "Command2");
    at.Scene.Press("Form4", "Command3");
    EXPECT_THAT(at.Scene.Open(), ElementsAre("Form2"));
    EXPECT_EQ(at.Scene.Program.TheStation().AirportName, "");
    EXPECT_TRUE(at.Scene.Until([&] { return at.Participants() == 1; }));
}

TEST(Form4, ItsCloseBoxDoesTheSame) {
    AtTheStation at;
    at.Scene.Press("Form4", "Command2");
    at.Scene.CloseBox("Form4");
    EXPECT_THAT(at.Scene.Open(), ElementsAre("Form2"));
    EXPECT_EQ(at.Scene.Program.TheStation().AirportName, "");
    EXPECT_EQ(at.Scene.Person.Boxes.size(), 1U);  // that of the connection
    EXPECT_TRUE(at.Scene.Until([&] { return at.Participants() == 1; }));
}

TEST(Form4, ItsCloseBoxPressedTwiceBringsTheAirportsOnce) {
    AtTheStation at;
    QWindow* const window = at.Scene.FindWindow("Form4").windowHandle();
    for (int press = 0; press < 2; ++press) {
        QCloseEvent event;
        QApplication::sendEvent(window, &event);
    }
    EXPECT_THAT(at.Scene.Open(), ElementsAre("Form2"));
}

TEST(Form4, RemovedFromTheSessionTheStationCloses) {
    AtTheStation at;
    at.Host.Do([](SimulatorPeer& simulator) { simulator.Remove("KSEA_Controller"); });
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.IsOpen("Form2"); }));
    EXPECT_EQ(at.Scene.Person.Boxes.back(),
              (SeenBox{BoxIcon::Information,
                       "The host had removed you from the multiplayer session, Corvenna "
                       "closes multiplayer session."}));
    EXPECT_THAT(at.Scene.Open(), ElementsAre("Form2"));
    EXPECT_FALSE(at.Scene.Program.TheStation().SessionOpen);
}

TEST(Form4, WithTheHostGoneAndNobodyLeftTheStationCloses) {
    AtTheStation at;
    at.Host.Do([](SimulatorPeer& simulator) { simulator.Leave(); });
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.IsOpen("Form2"); }));
    EXPECT_EQ(at.Scene.Person.Boxes.back(),
              (SeenBox{BoxIcon::Information,
                       "The FS multiplayer connection was lost, Corvenna closes "
                       "multiplayer session."}));
}

TEST(Form4, WithTheHostGoneAndAPilotLeftTheStationHosts) {
    AtTheStation at;
    at.Host.Joins("N1");
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.Program.TheStation().PlayerCount() == 1; }));
    at.Host.Do([](SimulatorPeer& simulator) { simulator.Leave(); });
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.Person.Boxes.size() == 2; }));
    EXPECT_EQ(at.Scene.Person.Boxes.back(),
              (SeenBox{BoxIcon::Information,
                       "The original host had left the session, Corvenna is now hosting "
                       "the session."}));
    EXPECT_THAT(at.Scene.Open(), ElementsAre("Form4"));
    EXPECT_TRUE(at.Scene.Program.TheStation().SessionHost);
}

TEST(Form4, WhileABoxIsOpenTheTimersRest) {
    AtTheStation at;
    at.Scene.Press("Form4", "Command2");
    at.Scene.Fire("Form4", "Refresh_Players");
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.Program.TheStation().PlayerCount() == 1; }));
    std::size_t heardInBox = 1;
    at.Scene.Person.WhileOpen = [&](QMessageBox&) {
        at.Scene.Fire("Form4", "ATC_Timer");
        at.Scene.Fire("Form4", "Refresh_Players");
        at.Scene.Press("Form4", "Command1");
        heardInBox = at.Host.Heard().size();
        EXPECT_EQ(at.Label().text(), "MONITORING TRAFFIC");
    };
    const std::size_t before = at.Host.Heard().size();
    at.Host.Do([](SimulatorPeer& simulator) { simulator.Remove("KSEA_Controller"); });
    EXPECT_TRUE(at.Scene.Until([&] { return at.Scene.IsOpen("Form2"); }));
    EXPECT_EQ(heardInBox, before);
}

TEST(Form4, AnEmptyQueueCostsOneLineAndTheStationGoesOn) {
    SessionField field;
    HandlerGate gate;
    gate.OnEscape = [](auto, const std::exception& error) { FAIL() << error.what(); };
    Form4 form(gate, field.S, field.Objects, field, [] {});
    form.Load();
    PlayerRecord& pilot = field.IsServed(2, "N2");
    pilot.TunedFrequency = field.S.TowerFrequency;
    pilot.Phase = "Takingoff";  // though nobody stands in the queue
    pilot.Altitude = field.S.RunwayElevation + 1000;
    const GeoPoint behindRunway = ProjectNm(field.S.RunwayLatitude, field.S.RunwayLongitude, 160, 3);
    pilot.Latitude = behindRunway.Latitude;
    pilot.Longitude = behindRunway.Longitude;
    form.findChild<QPushButton*>("Command2")->click();
    const QLabel& line = *form.findChild<QLabel*>("StatusLine");
    EXPECT_EQ(line.text(), "");
    form.findChild<GatedTimer*>("ATC_Timer")->Expire();
    EXPECT_EQ(line.text(),
              "The rest of this tick was skipped: a pilot was to leave the takeoff queue, but it is empty.");
    EXPECT_TRUE(form.findChild<GatedTimer*>("ATC_Timer")->isActive());
    EXPECT_EQ(form.findChild<QLabel*>("Label1")->text(), "MONITORING TRAFFIC");
}

}  // namespace
}  // namespace corvenna
