// corvenna-practice sit as its users start it, in sessions on addresses of this computer's own.

#include "tools/practice/sit_program.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "tools/practice/loopback.h"
#include "tools/practice/program.h"

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
    Program sit(Sit(Address));
    sit.Types("KSEA,1");
    sit.Types("2");
    sit.Types("goto runway");
    sit.Types("where");
    sit.Types("quit");
    while (host.IdOf("N1") == 0) host.Step();
    bool welcomed = false, asked = false;
    EXPECT_EQ(sit.Ends([&] {
        host.Step();
        if (!welcomed && sit.Output.find("hello") == std::string::npos && host.IdOf("N1") != 0) {
            host.Peer.Say(Welcome);
            welcomed = true;
        }
        if (!asked && !host.Said.empty()) {
            host.Peer.Say("N1. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services");
            asked = true;
        }
    }),
              0)
        << sit.Output;
    EXPECT_THAT(host.Said, ElementsAre("N1: KSEA,1", "N1: 2"));
    EXPECT_THAT(sit.Output, HasSubstr("KSEA_Controller> N1. Welcome to Corvenna v1.3"));
    EXPECT_THAT(sit.Output, HasSubstr("You are N1 at Seattle-Tacoma Intl (KSEA)."));
    EXPECT_THAT(sit.Output, HasSubstr("taxiing to the runway; it holds short of it"));
    EXPECT_THAT(sit.Output, HasSubstr(" nm from the airport"));
    EXPECT_EQ(host.IdOf("N1"), 0);
}

TEST(SitProgramTest, AnAirportThatIsGivenNeedsNoWelcome) {
    constexpr const char* Address = "127.0.22.2";
    LoopbackHost host(Address, 8);
    Program sit(Sit(Address, {"--airport", "LOWI"}));
    sit.Types("help");
    sit.Types("takeoff");
    sit.Types("heading 400");
    sit.Types("wait x");
    sit.Types("quit");
    EXPECT_EQ(sit.Ends(host.Stepper()), 0);
    EXPECT_THAT(sit.Output, HasSubstr("(LOWI). Type help for what you can do."));
    EXPECT_THAT(sit.Output, HasSubstr("altitude FEET"));
    EXPECT_THAT(sit.Output, HasSubstr("taxiing onto the runway and taking off"));
    EXPECT_THAT(sit.Output, HasSubstr("you are on the ground; takeoff takes you into the air"));
    EXPECT_THAT(sit.Output, HasSubstr("\"x\" is no number of seconds"));
}

TEST(SitProgramTest, TheEndOfTheInputAndOfPatienceEndsIt) {
    constexpr const char* Address = "127.0.22.3";
    LoopbackHost host(Address, 8);
    Program sit(Sit(Address, {"--airport", "KSEA"}));
    sit.Types("hello");
    sit.EndInput();
    EXPECT_EQ(sit.Ends(host.Stepper()), 0);
    EXPECT_THAT(host.Said, ElementsAre("N1: hello"));
}

TEST(SitProgramTest, ATerminationSignalLeavesTheSession) {
    constexpr const char* Address = "127.0.22.4";
    LoopbackHost host(Address, 8);
    Program sit(Sit(Address, {"--airport", "KSEA"}));
    ASSERT_TRUE(sit.Prints("You are N1", host.Stepper()));
    while (host.IdOf("N1") == 0) host.Step();
    sit.Receives(SIGTERM);
    EXPECT_EQ(sit.Ends(host.Stepper()), 0);
    EXPECT_EQ(host.IdOf("N1"), 0);
}

TEST(SitProgramTest, StandsAtTheSpotThatIsAskedFor) {
    constexpr const char* Address = "127.0.22.5";
    LoopbackHost host(Address, 8);
    Program sit(Sit(Address, {"--airport", "KSEA", "--spot", "HANGAR 99"}));
    EXPECT_EQ(sit.Ends(host.Stepper()), 1);
    EXPECT_THAT(sit.Output, HasSubstr("corvenna-practice: there is no parking spot HANGAR 99 here"));
}

// ---- Bad input

TEST(SitProgramTest, NoSessionAtTheAddress) {
    Program sit(Sit("127.0.22.6"));
    EXPECT_EQ(sit.Ends(), 1);
    EXPECT_THAT(sit.Output, HasSubstr("no session answered at 127.0.22.6:47624"));
}

TEST(SitProgramTest, TwoOfOneName) {
    constexpr const char* Address = "127.0.22.7";
    LoopbackHost host(Address, 8);
    host.Peer.Dp().CreatePlayer("N1", "Player");
    Program sit(Sit(Address));
    EXPECT_EQ(sit.Ends(host.Stepper()), 1);
    EXPECT_THAT(sit.Output, HasSubstr("there is a N1 in the session already; choose another name"));
}

TEST(SitProgramTest, AHostThatRefuses) {
    constexpr const char* Address = "127.0.22.8";
    LoopbackHost host(Address, 8);
    host.Admits = false;
    Program sit(Sit(Address));
    EXPECT_EQ(sit.Ends(host.Stepper()), 0);
    EXPECT_THAT(sit.Output, HasSubstr("the host refuses admission"));
}

TEST(SitProgramTest, NoName) {
    Program sit({CORVENNA_PRACTICE, "sit"});
    EXPECT_EQ(sit.Ends(), 2);
    EXPECT_THAT(sit.Output, HasSubstr("NAME is required"));
}

}  // namespace
}  // namespace corvenna
