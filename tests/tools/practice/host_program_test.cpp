#include "tools/practice/host_program.h"

#include <gmock/gmock.h>

#include "link/fs_messages.h"
#include "tools/child_process.h"
#include "tools/network_pilot.h"

/// The practice host as a process, seen by others in its session.
namespace corvenna {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

class HostProcess : public ChildProcess {
  public:
    explicit HostProcess(std::vector<std::string> options) : ChildProcess(Command(std::move(options))) {}

    /// Waits until it can be joined; where it is.
    std::string Ready() {
        const std::string line = WaitFor("ready: ");
        return line.substr(std::min(line.size(), line.rfind(' ') + 1));
    }

  private:
    static std::vector<std::string> Command(std::vector<std::string> options) {
        options.insert(options.begin(), {CORVENNA_PRACTICE, "host"});
        return options;
    }
};

/// A participant whose messages the test writes and reads by hand.
struct Hand : NetworkPilot {
    explicit Hand(const std::string& host) : NetworkPilot({"HAND", "", true, {}}) {
        Dp().Open(Searches(host).at(0), OpenMode::Join);
        Id = Dp().CreatePlayer("HAND", "Player");
        Host = Dp().GetDPEnumPlayers().at(0).Id;
    }

    void Sends(const DirectPlayMessage& message) { Dp().Send(Id, Host, message); }

    /// The next message of this kind, with its header read; what comes before it is passed over.
    DirectPlayMessage Next(std::int32_t kind) {
        DirectPlayMessage message;
        const bool come = Until([&] {
            while (Dp().GetMessageCount(Id) > 0) {
                Dp().Receive(message);
                if (ReadHeader(message).Id == kind) return true;
            }
            return false;
        });
        EXPECT_TRUE(come) << "no message " << kind;
        return message;
    }

    std::int32_t Id = 0;
    std::int32_t Host = 0;
};

// ---- Beginning and end

TEST(PracticeHostProgram, SaysInOneLineWhenItCanBeJoined) {
    HostProcess host({"--port", "0", "--name", "Friday evening"});
    const std::string address = host.Ready();
    EXPECT_EQ(host.Lines.at(0), "ready: Friday evening at " + address);
    NetworkPilot pilot({"N1", "", true, {}});
    const auto sessions = pilot.Searches(address);
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(sessions[0].SessionName, "Friday evening");
    EXPECT_EQ(sessions[0].CurrentPlayers, 1);
    EXPECT_EQ(sessions[0].MaxPlayers, 16);
}

TEST(PracticeHostProgram, EndsCleanlyByEitherSignal) {
    if (!ChildProcess::CanSignal()) GTEST_SKIP() << ChildProcess::NoSignals;
    for (const int signal : {SIGTERM, SIGINT}) {
        HostProcess host({"--port", "0"});
        Hand hand(host.Ready());
        host.Signal(signal);
        hand.Next(MessageId::HostGone);
        EXPECT_TRUE(hand.SeesSoon(1));
        EXPECT_EQ(host.WaitForEnd(), 0);
        EXPECT_THAT(host.Lines, SizeIs(1));  // no complaint
    }
}

TEST(PracticeHostProgram, TakesAsManyPlayersAsItIsTold) {
    HostProcess host({"--port", "0", "--players", "2"});
    const std::string address = host.Ready();
    NetworkPilot late({"LATE", "", true, {}});
    const auto sessions = late.Searches(address);
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(sessions[0].MaxPlayers, 2);
    Hand hand(address);
    hand.Sends(WriteEmpty(MessageId::WhoAreYou));
    hand.Next(MessageId::AdmitPlayer);  // the host knows of him by now
    try {
        late.Peer.Join(sessions[0]);
        FAIL() << "there was room for a third";
    } catch (const SessionError& error) {
        EXPECT_THAT(error.what(), HasSubstr("full"));
    }
}

TEST(PracticeHostProgram, SessionNamesThatCannotBeUsedAreRefused) {
    HostProcess longName({"--port", "0", "--name", std::string(1000, 'x')});
    EXPECT_EQ(longName.WaitForEnd(), 1);
    EXPECT_EQ(longName.Output(),
              "corvenna-practice: the session's name has 1000 characters; there is room for 255 at most\n");
    HostProcess foreign({"--port", "0", "--name", "\xD0\x9C\xD0\xBE"});
    EXPECT_EQ(foreign.WaitForEnd(), 1);
    EXPECT_THAT(foreign.Output(), AllOf(StartsWith("corvenna-practice: the session's name \"\xD0\x9C"),
                                        HasSubstr("Windows-1252")));
    HostProcess pilot({"--port", "0", "--pilot", "two\nlines"});
    EXPECT_EQ(pilot.WaitForEnd(), 1);
    EXPECT_EQ(pilot.Output(), "corvenna-practice: the host's own name has a control character in it\n");
}

TEST(PracticeHostProgram, AddressesAndPositionsThatAreNoneAreRefused) {
    HostProcess address({"--bind", "here"});
    EXPECT_EQ(address.WaitForEnd(), 1);
    EXPECT_EQ(address.Output(), "corvenna-practice: \"here\" is no address of this computer\n");
    HostProcess position({"--port", "0", "--position", "91,0"});
    EXPECT_EQ(position.WaitForEnd(), 1);
    EXPECT_THAT(position.Output(), HasSubstr("\"91,0\" is no position"));
}

TEST(PracticeHostProgram, APortThatIsTakenIsNamed) {
    HostProcess first({"--port", "0"});
    const std::string address = first.Ready();
    const std::string port = address.substr(address.find(':') + 1);
    HostProcess second({"--port", port});
    EXPECT_EQ(second.WaitForEnd(), 1);
    EXPECT_THAT(second.Output(), AllOf(StartsWith("corvenna-practice: port " + port),
                                       HasSubstr("is taken by another program")));
}

// ---- In its session

TEST(PracticeHostProgram, DoesWhatASimulatorThatHostsDoes) {
    HostProcess host({"--port", "0", "--position", "47.44,-122.31,433,160"});
    Hand hand(host.Ready());
    ASSERT_THAT(hand.Dp().GetDPEnumGroups(), SizeIs(1));
    EXPECT_EQ(hand.Dp().GetDPEnumGroups()[0].ShortName, "FS61_REFUSE_PARAMS");
    hand.Sends(WriteEmpty(MessageId::RequestJoinAsPlayer));
    EXPECT_EQ(hand.Next(MessageId::AdmitPlayer).ReadLong(), hand.Id);
    hand.Sends(WriteEmpty(MessageId::RequestJoinAsObserver));
    EXPECT_EQ(hand.Next(MessageId::AdmitObserver).ReadLong(), hand.Id);
    hand.Sends(WriteEmpty(MessageId::WhoAreYou));
    EXPECT_EQ(hand.Next(MessageId::AdmitPlayer).ReadLong(), hand.Host);
    hand.Sends(WriteEmpty(MessageId::AskAircraft));
    hand.Next(MessageId::Aircraft);
    for (const std::int32_t kind : {MessageId::Position, MessageId::PositionLong}) {
        DirectPlayMessage message = hand.Next(kind);
        EXPECT_NEAR(ReadPosition(message, kind).LatitudeDegrees(), 47.44, 0.00005);
    }
}

TEST(PracticeHostProgram, ChatsMovesAndRemovesByWhatIsTyped) {
    HostProcess host({"--port", "0", "--pilot", "BOSS"});
    Hand hand(host.Ready());
    hand.Sends(WriteChat("red\x1B[31m"));
    EXPECT_EQ(host.WaitFor("HAND> "), "HAND> red?[31m");
    host.Type("good evening");
    DirectPlayMessage chat = hand.Next(MessageId::Chat);
    EXPECT_EQ(ReadChat(chat, 24), "good evening");
    host.Type("/at 10,20,3000,90");
    EXPECT_TRUE(hand.Until([&] {
        DirectPlayMessage message = hand.Next(MessageId::Position);
        return ReadPosition(message, MessageId::Position).LatitudeDegrees() > 9.9;
    }));
    host.Type("/at nowhere");
    host.WaitFor("\"nowhere\" is no position");
    host.Type("/remove N9");
    host.WaitFor("there is no N9 in the session");
    host.Type("/remove HAND");
    hand.Next(MessageId::Removed);
}

// ---- Positions

TEST(ParsePosition, ReadsDegreesFeetAndHeading) {
    const AircraftState all = ParsePosition("47.5,-122.25,433,160");
    EXPECT_EQ(all.Latitude, 47.5);
    EXPECT_EQ(all.Longitude, -122.25);
    EXPECT_EQ(all.AltitudeFeet, 433);
    EXPECT_EQ(all.HeadingTrue, 160);
    EXPECT_EQ(ParsePosition("-90,180").AltitudeFeet, 0);
    EXPECT_EQ(ParsePosition("1,2,3").AltitudeFeet, 3);
}

TEST(ParsePosition, RefusesEverythingElse) {
    for (const char* text :
         {"", "1", "1,", "1,2,", "1,2,3,4,5", "1,2,3,4,", "1;2", "x,2", "91,0", "-90.1,0", "0,180.5",
          "0,0,-2001", "0,0,100001", "0,0,0,-1", "0,0,0,361", "nan,0", "inf,0", "1,2 "}) {
        EXPECT_THROW(ParsePosition(text), std::invalid_argument) << text;
    }
}

}  // namespace
}  // namespace corvenna
