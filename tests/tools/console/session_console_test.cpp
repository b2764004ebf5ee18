#include "tools/console/session_console.h"

#include <gmock/gmock.h>

#include "link/directplay/directplay_session.h"
#include "link/fs_messages.h"
#include "support/scripted_session.h"
#include "tools/console/practice_field.h"
#include "tools/network_pilot.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;

template <class Action>
std::string WhyItFails(Action action) {
    try {
        action();
    } catch (const SessionError& error) {
        return error.what();
    }
    return "it does not fail";
}

// ---- Which session

/// A console in front of a session layer that plays what it is told.
class ChoosingASession : public testing::Test {
  protected:
    void Offers(const std::string& name, const std::string& host) {
        SessionRecord record;
        record.SessionName = name;
        record.Host = host;
        record.CurrentPlayers = 3;
        record.MaxPlayers = 16;
        Script.Sessions.push_back(record);
    }

    void Wants(const std::string& session, const std::string& callsign = "") {
        Console.emplace(
            PracticeField("KSEA"), SessionWish{session, callsign},
            [this] { return std::make_unique<ScriptedRoot>(Script); }, Printer);
        Console->Join();
    }

    SessionScript Script;
    std::ostringstream Out;
    RadioPrinter Printer{Out, false};
    std::optional<SessionConsole> Console;
};

TEST_F(ChoosingASession, TheOnlyOneIsTaken) {
    Offers("Friday", "10.0.0.5:2300");
    Wants("");
    EXPECT_THAT(Script.Calls, Contains("InitializeConnection 2"));
    EXPECT_THAT(Script.Calls, Contains("Open Friday"));
    EXPECT_THAT(Script.Calls, Contains("CreatePlayer KSEA_Controller"));
    EXPECT_FALSE(Console->Over());
}

TEST_F(ChoosingASession, OfSeveralTheOneOfThatNameIsTaken) {
    Offers("Friday", "10.0.0.5:2300");
    Offers("Saturday", "10.0.0.6:2300");
    Wants("Saturday", "Tower");
    EXPECT_THAT(Script.Calls, Contains("Open Saturday"));
    EXPECT_THAT(Script.Calls, Contains("CreatePlayer Tower"));
}

TEST_F(ChoosingASession, SeveralAreListed) {
    Offers("Friday", "10.0.0.5:2300");
    Offers("Saturday", "10.0.0.6:2300");
    EXPECT_EQ(WhyItFails([&] { Wants(""); }),
              "there are \"Friday\" (3/16) at 10.0.0.5:2300 and \"Saturday\" (3/16) at 10.0.0.6:2300; choose "
              "one by --session NAME");
}

TEST_F(ChoosingASession, ANameThatNoneBearsIsAnsweredWithThoseThatAreThere) {
    Offers("Friday", "10.0.0.5:2300");
    EXPECT_EQ(WhyItFails([&] { Wants("friday"); }),
              "there is no session \"friday\"; there is \"Friday\" (3/16) at 10.0.0.5:2300");
}

TEST_F(ChoosingASession, ANameThatSeveralBearIsAnsweredWithTheirAddresses) {
    Offers("Friday", "10.0.0.5:2300");
    Offers("Friday", "10.0.0.6:2300");
    EXPECT_THAT(WhyItFails([&] { Wants("Friday"); }), HasSubstr("at 10.0.0.6:2300; join one by the address"));
}

TEST_F(ChoosingASession, WithoutAnyItFails) {
    EXPECT_THROW(Wants(""), NoSessionError);
    EXPECT_THAT(Out.str(), EndsWith("Status: Disconnected\n"));
}

TEST_F(ChoosingASession, WhatTheSessionLayerSaysIsTold) {
    Offers("Friday", "10.0.0.5:2300");
    for (const char* operation : {"GetDPEnumSessions", "Open", "CreatePlayer"}) {
        Script.Fails = operation;
        EXPECT_EQ(WhyItFails([&] { Wants(""); }), std::string(operation) + " fails");
    }
    EXPECT_THAT(Out.str(), HasSubstr("User Canceled Connection."));
    EXPECT_THAT(Out.str(), HasSubstr("Failed to Join Game."));
    EXPECT_THAT(Out.str(), HasSubstr("Failed to Create Player."));
}

TEST_F(ChoosingASession, ARequestThatCannotBeRepeatedEndsItWithTheSessionLeft) {
    Offers("Friday", "10.0.0.5:2300");
    Wants("");
    Script.Fails = "Send";
    Console->Step(29s);
    std::string why = "it does not fail";
    try {
        for (auto now = 30s; now < 100s; now += 1s) Console->Step(now);
    } catch (const HandlerError& error) {
        why = error.what();
    }
    EXPECT_EQ(why, "the wait for admission failed: Send fails");
    EXPECT_TRUE(Console->Over());
    EXPECT_THAT(Script.Calls, Contains("Close"));
}

// ---- In a session

/// A console that joins a simulator's session over sockets, on a clock that the test moves.
class InASession : public testing::Test {
  protected:
    InASession() { Host.Peer.Host("Friday", 8); }

    void Joins() {
        Options.Sockets = TestSockets();
        Options.EnumerationSettle = 0ms;
        Options.AskHost = [this] { return Host.Address(); };
        Console.emplace(
            PracticeField("KSEA"), SessionWish{},
            [this] { return std::make_unique<DirectPlayRoot>(Options); }, Printer);
        Console->Join();
    }

    template <class Condition>
    bool Until(Condition isSo) {
        return Host.Until([&] {
            if (isSo()) return true;
            Console->Step(Now += 100ms);
            return isSo();
        });
    }

    void Serves() {
        Joins();
        ASSERT_TRUE(Until([&] { return Console->Admitted(); }));
    }

    std::vector<std::string> Lines() const { return LinesOf(Out); }

    NetworkPilot Host{{"HOST", "Learjet", true, {}}};
    DirectPlayOptions Options;
    std::ostringstream Out;
    RadioPrinter Printer{Out, false};
    std::optional<SessionConsole> Console;
    std::chrono::milliseconds Now{0};
};

TEST_F(InASession, TheWindowsAreLines) {
    Serves();
    std::string shown;
    for (const std::string& line : Lines()) {
        if (line.find("Resen") == std::string::npos) shown += line.substr(14) + "\n";
    }
    EXPECT_EQ(shown,
              "Status: Searching for FS Multiplayer Sessions\n"
              "Status: Done\n"
              "Status: Creating Player\n"
              "Status: Player created\n"
              "Status: First Request Sent\n"
              "Connected to FS Session!\n"
              "Status: Connected to Session\n"
              "Seattle-Tacoma Intl (KSEA), runway 16L: monitoring traffic. Ctrl-C leaves the session.\n");
    EXPECT_TRUE(Console->TheStation().SessionOpen);
    EXPECT_EQ(Console->TheStation().SessionMaxPlayers, 8);
}

TEST_F(InASession, TheAdmissionIsLookedForEachSecond) {
    Joins();
    EXPECT_EQ(Console->NextDue(), 1000ms);
    Console->Step(1000ms);
    EXPECT_EQ(Console->NextDue(), 2000ms);
}

TEST_F(InASession, ServingItWaitsForThePump) {
    Serves();
    EXPECT_EQ(Console->NextDue(), Now + 100ms);
}

TEST_F(InASession, ARefusalNamesTheHostAndLeaves) {
    Host.AdmitsNewcomers = false;
    Joins();
    const std::string why = WhyItFails([&] { Until([] { return false; }); });
    EXPECT_THAT(why, HasSubstr("127.0.0.1:" + std::to_string(Host.Dp().TcpPort())));
    EXPECT_THAT(why, HasSubstr("let KSEA_Controller in"));
    EXPECT_THAT(Lines(), Contains(EndsWith("Connection Refused.")));
    EXPECT_TRUE(Console->Over());
    EXPECT_TRUE(Host.SeesSoon(1));
}

TEST_F(InASession, LeavingWhileWaitingIsSeenByTheHost) {
    Joins();
    ASSERT_TRUE(Host.Until([&] { return Host.Dp().GetDPEnumPlayers().size() == 2; }));
    Console->Leave();
    EXPECT_TRUE(Console->Over());
    EXPECT_FALSE(Console->Admitted());
    EXPECT_THAT(Lines().back(), EndsWith("The session is left; the controller was not admitted."));
    EXPECT_TRUE(Host.SeesSoon(1));
}

TEST_F(InASession, LeavingWhileServingIsSeenByTheHostAndSaidOnce) {
    Serves();
    Console->Leave();
    Console->Leave();
    EXPECT_TRUE(Console->Over());
    EXPECT_THAT(Lines().back(), EndsWith("The session is left. Pilots served: 0, texts sent: 0."));
    EXPECT_EQ(Out.str().find("is left"), Out.str().rfind("is left"));
    EXPECT_TRUE(Host.SeesSoon(1));
}

TEST_F(InASession, RemovedByTheHostItIsOver) {
    Serves();
    Host.Peer.Remove("KSEA_Controller");
    EXPECT_TRUE(Until([&] { return Console->Over(); }));
    EXPECT_THAT(Lines(), Contains(HasSubstr("The host had removed you from the multiplayer session")));
    EXPECT_THAT(Lines().back(), HasSubstr("The session is left."));
    EXPECT_TRUE(Host.SeesSoon(1));
}

TEST_F(InASession, TheOperatorStopsAndStartsTheMonitoring) {
    Serves();
    Console->Type("stop");
    EXPECT_THAT(Lines().back(), EndsWith("NOT MONITORING TRAFFIC"));
    Console->Type("start");
    EXPECT_THAT(Lines().back(), EndsWith("    MONITORING TRAFFIC"));
    Console->Type("help");
    EXPECT_THAT(Lines().back(), EndsWith("Type \"stop\" or \"start\" for the monitoring, or \"close\"."));
    Console->Type("close");
    EXPECT_TRUE(Console->Over());
}

TEST_F(InASession, WhileWaitingTheOperatorCanOnlyGiveUp) {
    Joins();
    Console->Type("stop");
    EXPECT_THAT(Lines().back(), HasSubstr("has not admitted the controller yet"));
    Console->Type("close");
    EXPECT_TRUE(Console->Over());
}

TEST_F(InASession, WhatAPilotSaysIsPrinted) {
    Serves();
    Host.Peer.Dp().Send(Host.Peer.Id(), 0, WriteAdmission(MessageId::AdmitPlayer, Host.Peer.Id()));
    ASSERT_TRUE(Until([&] { return Console->TheStation().PlayerCount() == 1; }));
    Host.Peer.Say("good evening");
    EXPECT_TRUE(Until([&] { return Out.str().find("---    HOST: good evening") != std::string::npos; }));
}

}  // namespace
}  // namespace corvenna
