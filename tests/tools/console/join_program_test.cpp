#include "tools/console/join_program.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "support/has_form.h"
#include "tools/child_process.h"
#include "tools/console/practice_field.h"
#include "tools/network_pilot.h"

/// The console joining sessions of other processes, and of simulators within the test, over real sockets.
namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* Nobody = "127.0.0.1:9";

std::vector<std::string> HostCommand(std::vector<std::string> options) {
    options.insert(options.begin(), {CORVENNA_PRACTICE, "host"});
    return options;
}

/// A practice host in a process of its own.
class HostProcess : public ChildProcess {
  public:
    explicit HostProcess(std::vector<std::string> options = {"--port", "0"})
        : ChildProcess(HostCommand(std::move(options))) {
        const std::string ready = WaitFor("ready: ");
        Address = ready.substr(std::min(ready.size(), ready.rfind(' ') + 1));
    }
    std::string Address;
};

/// The console in a process of its own.
class ConsoleProcess : public ChildProcess {
  public:
    explicit ConsoleProcess(std::vector<std::string> options) : ChildProcess(Command(std::move(options))) {}

  private:
    static std::vector<std::string> Command(std::vector<std::string> options) {
        options.insert(options.begin(), {CORVENNA_CONSOLE, "--app", CORVENNA_TEST_APP});
        return options;
    }
};

/// A pilot who stands at a gate of Seattle-Tacoma.
struct PilotAtSeattle : NetworkPilot {
    explicit PilotAtSeattle(const std::string& callsign)
        : NetworkPilot({callsign, "Cessna", false, Gate()}) {}

    static AircraftState Gate() {
        const Station seattle = PracticeField("KSEA");
        const ParkingSpot& spot = seattle.AirportParkingSpots[0];
        return {spot.Latitude, spot.Longitude, static_cast<double>(seattle.RunwayElevation), 160};
    }

    std::function<void()> Flies() {
        return [this] { Step(); };
    }
};

// ---- Whole conversations

TEST(JoinedSession, APilotIsServedFromTheWelcomeToAFrequency) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    HostProcess host({"--port", "0", "--observer", "--name", "Friday evening"});
    ConsoleProcess console({"--join", host.Address, "--airport", "KSEA", "--callsign", "Seattle"});
    console.WaitFor("monitoring traffic");
    host.WaitFor("Seattle asks to join and is admitted");

    PilotAtSeattle pilot("N123AB");
    pilot.Joins(host.Address);
    console.WaitFor("---    N123AB. Welcome to Corvenna", pilot.Flies());
    EXPECT_TRUE(pilot.HearsSoon("Want to use our ATC services at Seattle-Tacoma Intl?"));
    pilot.Peer.Say("KSEA,1");
    console.WaitFor("---    N123AB: KSEA,1", pilot.Flies());
    console.WaitFor("---    N123AB. What type of flight you want to fly?", pilot.Flies());
    pilot.Peer.Say("KSEA,1");
    console.WaitFor("2-Tune Seattle-Tacoma Intl Ground Frequency", pilot.Flies());
    pilot.Peer.Say("2");
    console.WaitFor("121.7  N123AB. Choose one of the following options for the Ground frequency",
                    pilot.Flies());
    EXPECT_TRUE(pilot.HearsSoon("N123AB. Choose one of the following options for the Ground frequency"));

    console.Signal(SIGINT);
    EXPECT_THAT(console.WaitFor("The session is left."), HasSubstr("Pilots served: 1"));
    EXPECT_EQ(console.WaitForEnd(), 0);
    EXPECT_TRUE(pilot.SeesSoon(2));  // the host and he himself
    host.Signal(SIGTERM);
    EXPECT_EQ(host.WaitForEnd(pilot.Flies()), 0);
    EXPECT_TRUE(pilot.Until([&] { return !pilot.Noted.empty(); }));
    EXPECT_THAT(pilot.Noted, Contains("the host has left the session"));
}

TEST(JoinedSession, WhenTheHostGoesTheStationServesOn) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    HostProcess host({"--port", "0", "--observer"});
    ConsoleProcess console({"--join", host.Address});
    console.WaitFor("monitoring traffic");
    PilotAtSeattle pilot("N123AB");
    pilot.Joins(host.Address);
    console.WaitFor("N123AB. Welcome to Corvenna", pilot.Flies());

    host.Signal(SIGTERM);
    EXPECT_EQ(host.WaitForEnd(pilot.Flies()), 0);
    console.WaitFor("The original host had left the session, Corvenna is now hosting the session.",
                    pilot.Flies());
    pilot.Peer.Say("KSEA,1");
    console.WaitFor("N123AB. What type of flight you want to fly?", pilot.Flies());
    console.Signal(SIGTERM);
    EXPECT_EQ(console.WaitForEnd(pilot.Flies()), 0);
    EXPECT_TRUE(pilot.SeesSoon(1));
}

TEST(JoinedSession, WhomTheHostRemovesEndsProperly) {
    HostProcess host;
    ConsoleProcess console({"--join", host.Address});
    console.WaitFor("monitoring traffic");
    host.Type("/remove KSEA_Controller");
    console.WaitFor("The host had removed you from the multiplayer session");
    EXPECT_EQ(console.WaitForEnd(), 0);
}

/// An address for this test process alone, so that the usual port is free there.
TEST(JoinedSession, AtTheUsualPortTheAddressIsEnough) {
    const auto pid = static_cast<unsigned>(getpid());
    const std::string address =
        fmt::format("127.{}.{}.{}", 1 + pid / 65025 % 100, pid / 255 % 255, 1 + pid % 254);
    HostProcess host({"--bind", address, "--name", "Usual"});
    EXPECT_EQ(host.Address, address);
    ConsoleProcess search({"--search", address});
    EXPECT_EQ(search.WaitForEnd(), 0);
    ASSERT_FALSE(search.Lines.empty());
    EXPECT_EQ(search.Lines[0], "Usual");
    ConsoleProcess console({"--join", address});
    console.WaitFor("monitoring traffic");
    console.Type("close");
    EXPECT_EQ(console.WaitForEnd(), 0);
}

// ---- Ctrl-C

TEST(CtrlC, EndsTheSearch) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    ConsoleProcess console({"--join", Nobody});
    console.WaitFor("Status: Searching");
    console.Signal(SIGINT);
    EXPECT_EQ(console.WaitForEnd(), 0);
    EXPECT_THAT(console.Lines, Contains(HasSubstr("User Canceled Connection.")));
}

TEST(CtrlC, EndsTheListOfSessionsWithoutAWord) {
    struct Stopping final : Terminal {
        std::chrono::milliseconds Now() override { return 0ms; }
        TerminalInput Wait(std::chrono::milliseconds) override { return {{}, false, true}; }
    } terminal;
    std::ostringstream out;
    EXPECT_NO_THROW(RunSearch(Nobody, TestSockets(), terminal, out));
    EXPECT_EQ(out.str(), "");
}

TEST(CtrlC, EndsTheWaitForAdmissionWithTheSessionLeft) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    NetworkPilot host({"HOST", "", true, {}});
    host.Peer.Host("Friday", 8);
    ConsoleProcess console({"--join", host.Address()});
    console.WaitFor("Status: First Request Sent");
    EXPECT_TRUE(host.SeesSoon(2));
    console.Signal(SIGINT);
    EXPECT_EQ(console.WaitForEnd(), 0);
    EXPECT_THAT(console.Lines.back(), EndsWith("The session is left; the controller was not admitted."));
    EXPECT_TRUE(host.SeesSoon(1));
}

// ---- Joins that fail

TEST(FailedJoin, WhereNobodyIsNamesTheAddressAndWhatToTry) {
    ConsoleProcess console({"--join", Nobody});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Lines,
                Contains(AllOf(StartsWith("corvenna-console: no session answered at 127.0.0.1:9"),
                               HasSubstr("connection refused"), HasSubstr("Is a session open there"),
                               HasSubstr("firewall"), HasSubstr("one there port 9"))));
}

TEST(FailedJoin, AFullSessionIsCalledFull) {
    HostProcess host({"--port", "0", "--players", "1", "--name", "Small"});
    ConsoleProcess console({"--join", host.Address});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Lines,
                Contains(AllOf(HasSubstr("\"Small\" (1/1) at 127.0.0.1:"), HasSubstr("it is full"))));
}

TEST(FailedJoin, ARefusalNamesTheHost) {
    NetworkPilot host({"HOST", "", true, {}});
    host.AdmitsNewcomers = false;
    host.Peer.Host("Friday", 8);
    ConsoleProcess console({"--join", host.Address()});
    EXPECT_EQ(console.WaitForEnd([&] { host.Step(); }), 1);
    EXPECT_THAT(console.Lines, Contains(EndsWith("Connection Refused.")));
    EXPECT_THAT(console.Lines,
                Contains(HasSubstr("the host at 127.0.0.1:" + std::to_string(host.Dp().TcpPort()) +
                                   " refuses the controller")));
    EXPECT_TRUE(host.SeesSoon(1));
}

TEST(FailedJoin, WithoutAdmissionInTimeLeavesAndSaysSo) {
    NetworkPilot host({"HOST", "", true, {}});
    host.Peer.Host("Friday", 8);
    ConsoleProcess console({"--join", host.Address(), "--minutes", "0.03"});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Lines, Contains("corvenna-console: the host has not admitted the controller"));
    EXPECT_TRUE(host.SeesSoon(1));
}

TEST(FailedJoin, OfAnotherSessionNameTellsTheOneThatIsThere) {
    HostProcess host({"--port", "0", "--name", "Friday"});
    ConsoleProcess console({"--join", host.Address, "--session", "Saturday"});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Lines,
                Contains(HasSubstr("there is no session \"Saturday\"; there is \"Friday\" (1/16)")));
}

TEST(FailedJoin, ACallsignOutsideTheCodePageIsRefused) {
    ConsoleProcess console({"--join", Nobody, "--callsign", "\xD0\x9C"});
    EXPECT_EQ(console.WaitForEnd(), 1);
    EXPECT_THAT(console.Output(), StartsWith("corvenna-console: the controller's name"));
}

/// A terminal at which nothing happens.
struct QuietTerminal final : Terminal {
    std::chrono::milliseconds Now() override { return 0ms; }
    TerminalInput Wait(std::chrono::milliseconds) override { return {}; }
};

TEST(FailedJoin, WithoutAFreePortNamesThem) {
    NetworkPilot other({"HOST", "", true, {}});
    other.Peer.Host("Friday", 8);
    directplay::SocketOptions sockets = TestSockets();
    sockets.Tcp = {other.Dp().TcpPort(), other.Dp().TcpPort()};
    QuietTerminal terminal;
    std::ostringstream out;
    RadioPrinter printer(out, false);
    try {
        RunJoin(PracticeField("KSEA"), {other.Address(), "", "", {}}, sockets, terminal, printer);
        FAIL();
    } catch (const SessionError& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr(std::to_string(other.Dp().TcpPort())),
                                        HasSubstr("do other programs have them?")));
    }
}

// ---- Search

TEST(SearchProgram, ListsASessionWithItsFlagsAndGuids) {
    HostProcess host({"--port", "0", "--players", "5", "--name", "Z\xC3\xBCrich"});
    ConsoleProcess search({"--search", host.Address});
    EXPECT_EQ(search.WaitForEnd(), 0);
    EXPECT_THAT(search.Lines,
                testing::ElementsAre("Z\xC3\xBCrich", "  players      1 of 5",
                                     StartsWith("  host         127.0.0.1:"), "  flags        0x00000044",
                                     HasForm("  session      \\{[0-9A-F-]{36}\\}"),
                                     "  application  {CC080A27-6D4E-11D0-8E21-00A0C90542EF}"));
}

TEST(SearchProgram, ShowsAFullSessionToo) {
    HostProcess host({"--port", "0", "--players", "1"});
    ConsoleProcess search({"--search", host.Address});
    EXPECT_EQ(search.WaitForEnd(), 0);
    EXPECT_THAT(search.Lines, Contains(HasSubstr("it is full")));
}

TEST(SearchProgram, WhereNobodyAnswersSaysWhatToTry) {
    ConsoleProcess search({"--search", Nobody});
    EXPECT_EQ(search.WaitForEnd(), 1);
    EXPECT_THAT(search.Output(), AllOf(StartsWith("corvenna-console: no session answered at 127.0.0.1:9"),
                                       HasSubstr("firewall")));
}

}  // namespace
}  // namespace corvenna
