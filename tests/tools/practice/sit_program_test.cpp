// corvenna-practice sit as its users start it, in sessions on addresses of this computer's own.

#include "tools/practice/sit_program.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "link/fs_messages.h"
#include "tools/child_process.h"
#include "tools/practice/loopback.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* Welcome =
    "N1. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at Seattle-Tacoma Intl?: 1-Use "
    "ATC services";

std::vector<std::string> Sit(const std::string& address, const std::vector<std::string>& more = {}) {
    std::vector<std::string> command = {CORVENNA_PRACTICE,
                                        "sit",
                                        "N1",
                                        address,
                                        "--bind",
                                        address,
                                        "--app",
                                        PracticeApp().string(),
                                        "--data",
                                        CORVENNA_TEST_DATA,
                                        "--speed",
                                        "20"};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST(SitProgramTest, AConversationFromWelcomeToQuit) {
    constexpr const char* Address = "127.0.22.1";
    LoopbackHost host(Address, 8, "KSEA_Controller");
    ChildProcess sit(Sit(Address));
    sit.Type("KSEA,1");
    sit.Type("2");
    sit.Type("goto runway");
    sit.Type("where");
    sit.Type("quit");
    host.Until([&] { return host.IdOf("N1") != 0; });
    bool welcomed = false, asked = false;
    EXPECT_EQ(sit.WaitForEnd([&] {
        host.Step();
        if (!welcomed && host.IdOf("N1") != 0) {
            host.Peer.Say(Welcome);
            welcomed = true;
        }
        if (!asked && !host.Said.empty()) {
            host.Peer.Say("N1. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services");
            asked = true;
        }
    }),
              0)
        << sit.Output();
    host.Until([&] { return host.Said.size() == 2 && host.IdOf("N1") == 0; });
    EXPECT_THAT(host.Said, ElementsAre("N1: KSEA,1", "N1: 2"));
    EXPECT_THAT(sit.Output(), HasSubstr("KSEA_Controller> N1. Welcome to Corvenna v1.3"));
    EXPECT_THAT(sit.Output(), HasSubstr("You are N1 at Seattle-Tacoma Intl (KSEA)."));
    EXPECT_THAT(sit.Output(), HasSubstr("taxiing to the runway; it holds short of it"));
    EXPECT_THAT(sit.Output(), HasSubstr(" nm from the airport"));
}

TEST(SitProgramTest, AnAirportThatIsGivenNeedsNoWelcome) {
    constexpr const char* Address = "127.0.22.2";
    LoopbackHost host(Address, 8);
    ChildProcess sit(Sit(Address, {"--airport", "LOWI"}));
    sit.Type("help");
    sit.Type("takeoff");
    sit.Type("heading 400");
    sit.Type("wait x");
    sit.Type("quit");
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(sit.Output(), HasSubstr("(LOWI). Type help for what you can do."));
    EXPECT_THAT(sit.Output(), HasSubstr("altitude FEET"));
    EXPECT_THAT(sit.Output(), HasSubstr("taxiing onto the runway and taking off"));
    EXPECT_THAT(sit.Output(), HasSubstr("you are on the ground; takeoff takes you into the air"));
    EXPECT_THAT(sit.Output(), HasSubstr("\"x\" is no number of seconds"));
}

TEST(SitProgramTest, WhereTheNextControllerIsOneStandsAtAGateAgain) {
    constexpr const char* Address = "127.0.22.9";
    LoopbackHost host(Address, 8);
    ChildProcess sit(Sit(Address));
    sit.WaitFor("Waiting for a controller's welcome", host.Stepper());
    host.Until([&] { return host.IdOf("N1") != 0; });
    Session& dp = host.Peer.Dp();
    const std::int32_t first = dp.CreatePlayer("KSEA_Controller", "Player");
    dp.Send(first, host.IdOf("N1"), WriteChat(Welcome));
    sit.WaitFor("You are N1 at Seattle-Tacoma Intl (KSEA).", host.Stepper());
    dp.DestroyPlayer(first);
    const std::int32_t next = dp.CreatePlayer("LOWI_Controller", "Player");
    dp.Send(next, host.IdOf("N1"),
            WriteChat("N1. Want to use our ATC services at Innsbruck Kranebitten?: 1-Use ATC services"));
    sit.WaitFor("You are N1 at Innsbruck Kranebitten (LOWI).", host.Stepper());
    sit.Type("quit");
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 0);
}

TEST(SitProgramTest, TheEndOfTheInputAndOfPatienceEndsIt) {
    constexpr const char* Address = "127.0.22.3";
    LoopbackHost host(Address, 8);
    ChildProcess sit(Sit(Address, {"--airport", "KSEA"}));
    sit.Type("hello");
    sit.EndInput();
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 0);
    host.Until([&] { return !host.Said.empty(); });
    EXPECT_THAT(host.Said, ElementsAre("N1: hello"));
}

TEST(SitProgramTest, ATerminationSignalLeavesTheSession) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    constexpr const char* Address = "127.0.22.4";
    LoopbackHost host(Address, 8);
    ChildProcess sit(Sit(Address, {"--airport", "KSEA"}));
    sit.WaitFor("You are N1", host.Stepper());
    host.Until([&] { return host.IdOf("N1") != 0; });
    sit.Signal(SIGTERM);
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 0);
    host.Until([&] { return host.IdOf("N1") == 0; });
}

TEST(SitProgramTest, StandsAtTheSpotThatIsAskedFor) {
    constexpr const char* Address = "127.0.22.5";
    LoopbackHost host(Address, 8);
    ChildProcess sit(Sit(Address, {"--airport", "KSEA", "--spot", "HANGAR 99"}));
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 1);
    EXPECT_THAT(sit.Output(), HasSubstr("corvenna-practice: there is no parking spot HANGAR 99 here"));
}

// ---- Bad input

TEST(SitProgramTest, NoSessionAtTheAddress) {
    ChildProcess sit(Sit("127.0.22.6"));
    EXPECT_EQ(sit.WaitForEnd(), 1);
    EXPECT_THAT(sit.Output(), HasSubstr("no session answered at 127.0.22.6:47624"));
}

TEST(SitProgramTest, TwoOfOneName) {
    constexpr const char* Address = "127.0.22.7";
    LoopbackHost host(Address, 8);
    host.Peer.Dp().CreatePlayer("N1", "Player");
    ChildProcess sit(Sit(Address));
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 1);
    EXPECT_THAT(sit.Output(), HasSubstr("there is a N1 in the session already; choose another name"));
}

TEST(SitProgramTest, AHostThatRefuses) {
    constexpr const char* Address = "127.0.22.8";
    LoopbackHost host(Address, 8);
    host.Admits = false;
    ChildProcess sit(Sit(Address));
    EXPECT_EQ(sit.WaitForEnd(host.Stepper()), 0);
    EXPECT_THAT(sit.Output(), HasSubstr("the host refuses admission"));
}

TEST(SitProgramTest, NoName) {
    ChildProcess sit({CORVENNA_PRACTICE, "sit"});
    EXPECT_EQ(sit.WaitForEnd(), 2);
    EXPECT_THAT(sit.Output(), HasSubstr("NAME is required"));
}

}  // namespace
}  // namespace corvenna
