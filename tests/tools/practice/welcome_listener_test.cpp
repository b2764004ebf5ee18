#include "tools/practice/welcome_listener.h"

#include <gtest/gtest.h>

#include "link/memory/memory_session.h"
#include "practice/practice_session.h"
#include "tools/practice/loopback.h"

namespace corvenna {
namespace {

constexpr const char* AtSeattle = "N1. Want to use our ATC services at Seattle?: 1-Use ATC services";
constexpr const char* AtInnsbruck = "N1. Want to use our ATC services at Innsbruck?: 1-Use ATC services";

/// Somebody who hears controllers, in a session with two of them.
class HeardControllerTest : public testing::Test {
  protected:
    HeardControllerTest() { Ears.Open(Ears.GetDPEnumSessions({}).at(0), OpenMode::Join); }

    bool Hears(const char* from, const char* text) { return Controller.Hears(Ears, from, text); }

    MemoryNetwork Network;
    TestHost Host{Network, 8};
    std::unique_ptr<HandPlayed> Seattle = std::make_unique<HandPlayed>(Network, "KSEA_Controller");
    HandPlayed Innsbruck{Network, "LOWI_Controller"};
    MemorySession Ears{Network};
    HeardController Controller;
};

TEST_F(HeardControllerTest, NoneIsKnownBeforeTheFirstWelcome) {
    EXPECT_FALSE(Hears("KSEA_Controller", "N1. Choose one of the following options: 1-Close ATC Services"));
    EXPECT_EQ(Controller.Airport(), "");
}

TEST_F(HeardControllerTest, TheFirstOneTellsTheAirport) {
    EXPECT_TRUE(Hears("KSEA_Controller", AtSeattle));
    EXPECT_EQ(Controller.Airport(), "Seattle");
    EXPECT_FALSE(Hears("KSEA_Controller", AtSeattle));
}

TEST_F(HeardControllerTest, ASecondOneDoesNotCountWhileTheFirstIsThere) {
    Hears("KSEA_Controller", AtSeattle);
    EXPECT_FALSE(Hears("LOWI_Controller", AtInnsbruck));
    EXPECT_EQ(Controller.Airport(), "Seattle");
}

TEST_F(HeardControllerTest, WhenTheFirstHasLeftTheNextWelcomeCounts) {
    Hears("KSEA_Controller", AtSeattle);
    Seattle.reset();
    EXPECT_EQ(Controller.Airport(), "Seattle");
    EXPECT_TRUE(Hears("LOWI_Controller", AtInnsbruck));
    EXPECT_EQ(Controller.Airport(), "Innsbruck");
}

TEST_F(HeardControllerTest, UnderTheSameNameHeMayBeElsewhere) {
    Hears("Tower", AtSeattle);
    EXPECT_TRUE(Hears("Tower", AtInnsbruck));
}

TEST_F(HeardControllerTest, AnotherOneOfTheSameAirportIsNoNews) {
    Hears("KSEA_Controller", AtSeattle);
    Seattle.reset();
    EXPECT_FALSE(Hears("Tower", AtSeattle));
}

TEST(WelcomeListenerTest, JoinsHearsAndLeaves) {
    constexpr const char* Address = "127.0.24.1";
    LoopbackHost host(Address, 8, "KSEA_Controller");
    SessionAccess access;
    access.Host = Address;
    access.Sockets.BindIp = OwnAddress(Address);
    WelcomeListener listener(access, "Ears");
    host.Until([&] {
        listener.Step(std::chrono::milliseconds(0));
        return host.IdOf("Ears") != 0;
    });
    host.Peer.Say(AtSeattle);
    host.Until([&] {
        listener.Step(std::chrono::milliseconds(0));
        return listener.Airport() == "Seattle";
    });
    EXPECT_FALSE(listener.Gone());
    listener.Leave();
    host.Until([&] { return host.IdOf("Ears") == 0; });
}

TEST(WelcomeListenerTest, WhomTheHostRefusesIsGone) {
    constexpr const char* Address = "127.0.24.2";
    LoopbackHost host(Address, 8);
    host.Admits = false;
    SessionAccess access;
    access.Host = Address;
    access.Sockets.BindIp = OwnAddress(Address);
    WelcomeListener listener(access, "Ears");
    host.Until([&] {
        listener.Step(std::chrono::milliseconds(0));
        return listener.Gone();
    });
}

}  // namespace
}  // namespace corvenna
