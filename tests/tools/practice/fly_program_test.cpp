// corvenna-practice fly as its users start it, in sessions on addresses of this computer's own.

#include "tools/practice/fly_program.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "link/fs_messages.h"
#include "tools/child_process.h"
#include "tools/practice/loopback.h"

namespace corvenna {
namespace {

using testing::Contains;
using testing::HasSubstr;

std::string WelcomeAt(const std::string& airport, const std::string& callsign) {
    return callsign + ". Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at " + airport +
           "?: 1-Use ATC services";
}
constexpr const char* Seattle = "Seattle-Tacoma Intl";
constexpr const char* Innsbruck = "Innsbruck Kranebitten";
constexpr const char* Listener = "Practice_Listener";

std::vector<std::string> Fly(const std::string& address, const std::vector<std::string>& more = {}) {
    std::vector<std::string> command = {
        CORVENNA_PRACTICE,      "fly",    address,           "--bind", address, "--app",
        PracticeApp().string(), "--data", CORVENNA_TEST_DATA};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST(FlyProgramTest, PilotsComeAnswerAndLeaveWithASummaryWhenAsked) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.21.1";
    LoopbackHost host(Address, 8, "KSEA_Controller");
    ChildProcess fly(Fly(Address, {"--airport", "KSEA", "--pilots", "1", "--speed", "20"}));
    fly.WaitFor("N101CV is at the ramp", host.Stepper());
    host.Peer.Say(WelcomeAt(Seattle, "N101CV"));
    host.Until([&] { return !host.Said.empty(); });
    EXPECT_EQ(host.Said.front(), "N101CV: KSEA,1");
    fly.Signal(SIGTERM);
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(fly.Output(),
                HasSubstr("at Seattle-Tacoma Intl (KSEA): 1 pilot came, 0 served, 0 completed, 1 still "
                          "flying\nclearances 0, vectors 0, handoffs 0, landings 0, go-arounds 0, "
                          "stuck 0\n"));
    host.Until([&] { return host.IdOf("N101CV") == 0; });
}

// ---- Where the controller is

/// Somebody who says welcome in the session of a host.
class Controller {
  public:
    Controller(LoopbackHost& host, const std::string& name, const std::string& airport)
        : host_(host), airport_(airport), id_(host.Peer.Dp().CreatePlayer(name, "Player")) {}
    ~Controller() { host_.Peer.Dp().DestroyPlayer(id_); }
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    void Welcomes(const std::string& callsign) {
        host_.Peer.Dp().Send(id_, host_.IdOf(callsign), WriteChat(WelcomeAt(airport_, callsign)));
    }

  private:
    LoopbackHost& host_;
    std::string airport_;
    std::int32_t id_;
};

TEST(FlyProgramTest, PilotsFollowTheControllerToAnotherAirport) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.21.2";
    LoopbackHost host(Address, 8);
    ChildProcess fly(Fly(Address, {"--pilots", "1"}));
    fly.WaitFor("waiting for a controller's welcome", host.Stepper());
    host.Until([&] { return host.IdOf(Listener) != 0; });
    {
        Controller controller(host, "KSEA_Controller", Seattle);
        controller.Welcomes(Listener);
        fly.WaitFor("the controller is at Seattle-Tacoma Intl (KSEA)", host.Stepper());
        fly.WaitFor("N101CV is at the ramp", host.Stepper());
    }
    Controller next(host, "LOWI_Controller", Innsbruck);
    next.Welcomes(Listener);
    fly.WaitFor("(KSEA): 1 pilot came", host.Stepper());
    fly.WaitFor("the controller is at Innsbruck Kranebitten (LOWI)", host.Stepper());
    fly.WaitFor("N101CV is at the ramp", host.Stepper());
    fly.Signal(SIGTERM);
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(fly.Output(), HasSubstr("(LOWI): 1 pilot came"));
    host.Until([&] { return host.IdOf(Listener) == 0; });
}

TEST(FlyProgramTest, AnAirportThatTheDatabaseLacksIsNamedAndTheNextOneWaitedFor) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.21.12";
    LoopbackHost host(Address, 8);
    ChildProcess fly(Fly(Address, {"--pilots", "1", "--speed", "20"}));
    fly.WaitFor("waiting for a controller's welcome", host.Stepper());
    host.Until([&] { return host.IdOf(Listener) != 0; });
    {
        Controller controller(host, "XXXX_Controller", "Nowhere Municipal");
        controller.Welcomes(Listener);
        fly.WaitFor("there is no Nowhere Municipal in the airport database of " + PracticeApp().string(),
                    host.Stepper());
    }
    Controller next(host, "KSEA_Controller", Seattle);
    next.Welcomes(Listener);
    fly.WaitFor("N101CV is at the ramp", host.Stepper());
    fly.Signal(SIGTERM);
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
}

TEST(FlyProgramTest, WhoIsAskedToEndBeforeAControllerHasComeLeavesTidily) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.21.13";
    LoopbackHost host(Address, 8);
    ChildProcess fly(Fly(Address));
    fly.WaitFor("waiting for a controller's welcome", host.Stepper());
    fly.Signal(SIGINT);
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(fly.Output(), HasSubstr("no controller has come"));
    host.Until([&] { return host.IdOf(Listener) == 0; });
}

TEST(FlyProgramTest, TheMinutesOverBeforeAControllerHasComeItHasFailed) {
    constexpr const char* Address = "127.0.21.14";
    LoopbackHost host(Address, 8);
    ChildProcess fly(Fly(Address, {"--speed", "60", "--minutes", "0.005"}));
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 1);
    EXPECT_THAT(fly.Output(),
                HasSubstr("no controller in the session at 127.0.21.14 has said welcome; name his airport"));
}

/// A terminal with a clock of its own, on which a session's host is moved in each wait.
class HostingTerminal final : public Terminal {
  public:
    explicit HostingTerminal(std::function<bool(std::chrono::milliseconds now)> goesOn)
        : goesOn_(std::move(goesOn)) {}

    std::chrono::milliseconds Now() override { return now_; }
    TerminalInput Wait(std::chrono::milliseconds atMost) override {
        now_ += atMost;
        return {{}, false, !goesOn_(now_)};
    }

  private:
    std::function<bool(std::chrono::milliseconds now)> goesOn_;
    std::chrono::milliseconds now_{0};
};

TEST(FlyProgramTest, AControllerIsWaitedForAnHourIfNeedBe) {
    constexpr const char* Address = "127.0.21.15";
    LoopbackHost host(Address, 8, "KSEA_Controller");
    FlyOptions options;
    options.Access = {Address, "", PracticeApp(), {}};
    options.Access.Sockets.BindIp = OwnAddress(Address);
    options.Traffic.Pilots = 1;
    std::ostringstream out;
    bool welcomed = false;
    HostingTerminal terminal([&](std::chrono::milliseconds now) {
        host.Step();
        if (now > std::chrono::hours(1) && !welcomed) {
            host.Peer.Say(WelcomeAt(Seattle, Listener));
            welcomed = true;
        }
        return out.str().find("N101CV is at the ramp") == std::string::npos;
    });
    RunFly(options, terminal, out);
    EXPECT_THAT(out.str(), HasSubstr("(KSEA): 1 pilot came"));
}

// ---- The end

TEST(FlyProgramTest, TheMinutesOverItEndsByItselfAndDraws) {
    constexpr const char* Address = "127.0.21.3";
    LoopbackHost host(Address, 8);
    const std::string picture = testing::TempDir() + "/fly-program-test.svg";
    ChildProcess fly(Fly(Address, {"--airport", "KSEA", "--pilots", "2", "--speed", "60", "--minutes", "0.1",
                                   "--picture", picture}));
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0) << fly.Output();
    EXPECT_THAT(fly.Output(), HasSubstr("6 minutes at Seattle-Tacoma Intl (KSEA): 2 pilots came"));
    EXPECT_GT(std::filesystem::file_size(picture), 1000u);
    std::filesystem::remove(picture);
}

TEST(FlyProgramTest, WhenTheControllerLeavesPilotsGoOnAndSaySo) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.21.4";
    LoopbackHost host(Address, 8);
    ChildProcess fly(Fly(Address, {"--airport", "KSEA", "--pilots", "1", "--speed", "20"}));
    fly.WaitFor("N101CV is at the ramp", host.Stepper());
    const std::int32_t station = host.Peer.Dp().CreatePlayer("KSEA_Controller", "Player");
    host.Peer.Dp().Send(station, host.IdOf("N101CV"), WriteChat(WelcomeAt(Seattle, "N101CV")));
    host.Until([&] { return !host.Said.empty(); });
    host.Peer.Dp().DestroyPlayer(station);
    fly.WaitFor("N101CV goes on alone: the controller has left the session", host.Stepper());
    host.Until([&] { return host.Said.size() == 2; });
    fly.Signal(SIGTERM);
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(fly.Output(), HasSubstr("the controller left after "));
    EXPECT_THAT(host.Said, Contains("N101CV: " + std::string(PracticePilot::GoingOnAlone)));
}

// ---- Bad input

TEST(FlyProgramTest, NoSessionAtTheAddress) {
    ChildProcess fly(Fly("127.0.21.5", {"--airport", "KSEA"}));
    EXPECT_EQ(fly.WaitForEnd(), 1);
    EXPECT_THAT(fly.Output(), HasSubstr("no session answered at 127.0.21.5:47624"));
}

TEST(FlyProgramTest, AFullSession) {
    constexpr const char* Address = "127.0.21.6";
    LoopbackHost host(Address, 1);
    ChildProcess fly(Fly(Address, {"--airport", "KSEA"}));
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 1);
    EXPECT_THAT(fly.Output(), HasSubstr("the session \"Test Session\" at 127.0.21.6:"));
    EXPECT_THAT(fly.Output(), HasSubstr(" is full: 1 of 1 are in it"));
}

TEST(FlyProgramTest, ASessionWithRoomForSomeOnly) {
    constexpr const char* Address = "127.0.21.7";
    LoopbackHost host(Address, 2);
    ChildProcess fly(
        Fly(Address, {"--airport", "KSEA", "--pilots", "2", "--speed", "5", "--minutes", "0.1"}));
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(fly.Output(), HasSubstr("1 pilot came"));
    EXPECT_THAT(fly.Output(), HasSubstr("failed to join 1 time"));
}

TEST(FlyProgramTest, APilotOfTheSameNameIsThereAlready) {
    constexpr const char* Address = "127.0.21.8";
    LoopbackHost host(Address, 8);
    host.Peer.Dp().CreatePlayer("N101CV", "Player");
    ChildProcess fly(Fly(Address, {"--airport", "KSEA"}));
    EXPECT_EQ(fly.WaitForEnd(host.Stepper()), 1);
    EXPECT_THAT(fly.Output(), HasSubstr("there is a N101CV in the session already"));
}

TEST(FlyProgramTest, AnAirportThatIsNotKnown) {
    constexpr const char* Address = "127.0.21.9";
    ChildProcess fly(Fly(Address, {"--airport", "XXXX"}));
    EXPECT_EQ(fly.WaitForEnd(), 1);
    EXPECT_THAT(fly.Output(), HasSubstr("there is no airport XXXX; known are "));
}

TEST(FlyProgramTest, MorePilotsThanThereArePortsFor) {
    ChildProcess fly(Fly("127.0.21.10", {"--pilots", "5000"}));
    EXPECT_EQ(fly.WaitForEnd(), 2);
    EXPECT_THAT(fly.Output(), HasSubstr("--pilots: Value 5000 not in range 1 to 40"));
}

TEST(FlyProgramTest, AnAddressOfSomebodyElse) {
    ChildProcess fly({CORVENNA_PRACTICE, "fly", "127.0.21.11", "--bind", "nowhere", "--app",
                      PracticeApp().string(), "--data", CORVENNA_TEST_DATA});
    EXPECT_EQ(fly.WaitForEnd(), 1);
    EXPECT_THAT(fly.Output(), HasSubstr("\"nowhere\" is no address of this computer"));
}

}  // namespace
}  // namespace corvenna
