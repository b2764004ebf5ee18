#include "practice/simulator_peer.h"

#include <gmock/gmock.h>

#include <vector>

#include "link/fs_messages.h"
#include "link/memory/memory_session.h"
#include "station/geometry.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Stage = SimulatorPeer::Stage;

/// A simulator that hosts a session, and a participant whose messages the test writes and reads by hand.
class SimulatorPeerTest : public testing::Test {
  protected:
    SimulatorPeerTest() {
        TheHost.Host("Friday", 8);
        Hand.Open(Found(), OpenMode::Join);
        HandId = Hand.CreatePlayer("HAND", "Player");
    }

    std::unique_ptr<Session> NewSession() { return std::make_unique<MemorySession>(Network); }
    SessionRecord Found() { return MemorySession(Network).GetDPEnumSessions({}).at(0); }

    SimulatorEvents NoteAll() {
        return {.Heard = [this](auto from,
                                auto text) { Heard.push_back(std::string(from) + ": " + std::string(text)); },
                .Noted = [this](auto line) { Noted.emplace_back(line); },
                .Admits = [this](auto) { return AdmitsNewcomers; }};
    }

    /// Sends to the host, who looks into his session at this moment.
    void Sends(const DirectPlayMessage& message, std::chrono::milliseconds now = 0ms) {
        Hand.Send(HandId, TheHost.Id(), message);
        TheHost.Step(now);
    }

    struct Received {
        std::int32_t From;
        std::int32_t Id;
        std::int32_t PlayerId;  ///< of an admission or introduction; 0 in all else
        bool operator==(const Received&) const = default;
    };

    /// What has arrived by hand since the last time, positions left out.
    std::vector<Received> TakeReceived() {
        std::vector<Received> all;
        DirectPlayMessage message;
        while (Hand.GetMessageCount(HandId) > 0) {
            const Envelope envelope = Hand.Receive(message);
            const MessageHeader header = ReadHeader(message);
            if (header.Id == MessageId::Position || header.Id == MessageId::PositionLong) continue;
            const bool names = header.Id == MessageId::AdmitPlayer || header.Id == MessageId::AdmitObserver;
            all.push_back({envelope.From, header.Id, names ? message.ReadLong() : 0});
        }
        return all;
    }

    /// The positions that have arrived by hand since the last time, as ids with their reports.
    std::vector<std::pair<std::int32_t, PositionReport>> TakePositions() {
        std::vector<std::pair<std::int32_t, PositionReport>> all;
        DirectPlayMessage message;
        while (Hand.GetMessageCount(HandId) > 0) {
            Hand.Receive(message);
            const std::int32_t id = ReadHeader(message).Id;
            if (id == MessageId::Position || id == MessageId::PositionLong) {
                all.emplace_back(id, ReadPosition(message, id));
            }
        }
        return all;
    }

    MemoryNetwork Network;
    std::vector<std::string> Heard;
    std::vector<std::string> Noted;
    bool AdmitsNewcomers = true;
    SimulatorPeer TheHost{NewSession(), {"HOST", "Learjet 45", false, {47.44, -122.31, 433, 160}}, NoteAll()};
    MemorySession Hand{Network};
    std::int32_t HandId = 0;
};

// ---- The host's duties

TEST_F(SimulatorPeerTest, AHostOpensASessionOfThatSizeWithTheGroup) {
    EXPECT_EQ(Found().SessionName, "Friday");
    EXPECT_EQ(Found().MaxPlayers, 8);
    ASSERT_EQ(Hand.GetDPEnumGroups().size(), 1u);
    EXPECT_EQ(Hand.GetDPEnumGroups()[0].ShortName, "FS61_REFUSE_PARAMS");
    EXPECT_EQ(Hand.GetPlayerFriendlyName(TheHost.Id()), "HOST");
    EXPECT_EQ(TheHost.InStage(), Stage::Flying);
}

TEST_F(SimulatorPeerTest, AHostAdmitsPlayersAndObserversByTheirOwnId) {
    Sends(WriteEmpty(MessageId::RequestJoinAsPlayer));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4099, HandId}));
    Sends(WriteEmpty(MessageId::RequestJoinAsObserver));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4100, HandId}));
    EXPECT_THAT(Noted, ElementsAre("HAND asks to join and is admitted", "HAND asks to join and is admitted"));
}

TEST_F(SimulatorPeerTest, AHostRefusesWhomItsPersonDoesNotWant) {
    AdmitsNewcomers = false;
    Sends(WriteEmpty(MessageId::RequestJoinAsPlayer));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4101, 0}));
    Sends(WriteEmpty(MessageId::RequestJoinAsObserver));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4102, 0}));
    EXPECT_THAT(Noted, ElementsAre("HAND asks to join and is refused", "HAND asks to join and is refused"));
}

TEST_F(SimulatorPeerTest, AHostThatLeavesSaysSo) {
    const std::int32_t host = TheHost.Id();
    TheHost.Leave();
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{host, 4114, 0}));
    EXPECT_EQ(TheHost.InStage(), Stage::Gone);
    EXPECT_EQ(Hand.GetDPEnumPlayers().size(), 1u);
    TheHost.Leave();
    TheHost.Step(0ms);
    EXPECT_THAT(TakeReceived(), IsEmpty());
}

TEST_F(SimulatorPeerTest, AHostRemovesEverybodyOfAName) {
    EXPECT_TRUE(TheHost.Remove("HAND"));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4118, 0}));
}

TEST_F(SimulatorPeerTest, AHostRemovesNeitherHimselfNorStrangers) {
    EXPECT_FALSE(TheHost.Remove("HOST"));
    EXPECT_FALSE(TheHost.Remove("N1"));
    EXPECT_THAT(TakeReceived(), IsEmpty());
}

// ---- What every simulator answers

TEST_F(SimulatorPeerTest, WhoIsAskedIntroducesHimself) {
    Sends(WriteEmpty(MessageId::WhoAreYou));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4099, TheHost.Id()}));
}

TEST_F(SimulatorPeerTest, AnObserverIntroducesHimselfAsOneAndTellsNoPosition) {
    SimulatorPeer watcher(NewSession(), {"WATCHER", "", true, {}});
    watcher.Host("Saturday", 2);
    MemorySession hand(Network);
    hand.Open(hand.GetDPEnumSessions({}).at(1), OpenMode::Join);
    const std::int32_t id = hand.CreatePlayer("HAND", "Player");
    hand.Send(id, watcher.Id(), WriteEmpty(MessageId::WhoAreYou));
    watcher.Step(0ms);
    watcher.Step(10s);
    ASSERT_EQ(hand.GetMessageCount(id), 1);
    DirectPlayMessage message;
    hand.Receive(message);
    EXPECT_EQ(ReadHeader(message).Id, 4100);
    EXPECT_EQ(message.ReadLong(), watcher.Id());
}

TEST_F(SimulatorPeerTest, TheAircraftIsToldWhoAsksForIt) {
    Sends(WriteEmpty(MessageId::AskAircraft), 0ms);
    DirectPlayMessage message;
    Hand.Receive(message);
    const MessageHeader header = ReadHeader(message);
    ASSERT_EQ(header.Id, 4110);
    EXPECT_EQ(ReadAircraft(message, header.PayloadSize), "Learjet 45");
}

TEST_F(SimulatorPeerTest, PositionsAreToldFourTimesASecondEveryFourthInTheLongForm) {
    for (auto now = 0ms; now < 2000ms; now += 50ms) TheHost.Step(now);
    std::vector<std::int32_t> ids;
    for (const auto& [id, report] : TakePositions()) {
        ids.push_back(id);
        EXPECT_NEAR(report.LatitudeDegrees(), 47.44, 0.00005);
        EXPECT_NEAR(report.LongitudeDegrees(), -122.31, 0.00005);
        EXPECT_NEAR(report.AltitudeFeet(), 433, 2);
        EXPECT_EQ(UnpackHeading(report.PackedAttitude), 160);
    }
    EXPECT_THAT(ids, ElementsAre(4120, 4120, 4120, 4121, 4120, 4120, 4120, 4121));
}

TEST_F(SimulatorPeerTest, AMovedAircraftIsSeenWhereItIs) {
    TheHost.MoveTo({-33.9, 18.6, 151, 10});
    TheHost.Step(0ms);
    const auto positions = TakePositions();
    ASSERT_EQ(positions.size(), 1u);
    EXPECT_NEAR(positions[0].second.LatitudeDegrees(), -33.9, 0.00005);
    EXPECT_NEAR(positions[0].second.LongitudeDegrees(), 18.6, 0.00005);
}

TEST_F(SimulatorPeerTest, ChatIsHeardBothWays) {
    TheHost.Say("good evening");
    DirectPlayMessage message;
    Hand.Receive(message);
    const MessageHeader header = ReadHeader(message);
    ASSERT_EQ(header.Id, 4131);
    EXPECT_EQ(ReadChat(message, header.PayloadSize), "good evening");
    Sends(WriteChat("and to you"));
    EXPECT_THAT(Heard, ElementsAre("HAND: and to you"));
}

TEST_F(SimulatorPeerTest, WhoHasLeftIsCalledByTheNameThatHeHad) {
    Sends(WriteEmpty(MessageId::RequestJoinAsPlayer));
    Hand.Send(HandId, TheHost.Id(), WriteChat("so long"));
    Hand.DestroyPlayer(HandId);
    TheHost.Step(0ms);
    EXPECT_THAT(Heard, ElementsAre("HAND: so long"));
}

TEST_F(SimulatorPeerTest, WhoHasLeftBeforeHeWasHeardOfHasNoName) {
    Hand.Send(HandId, TheHost.Id(), WriteChat("so long"));
    Hand.DestroyPlayer(HandId);
    TheHost.Step(0ms);
    EXPECT_THAT(Heard, ElementsAre(": so long"));
}

TEST_F(SimulatorPeerTest, WhatCannotBeReadIsPassedOver) {
    Sends(DirectPlayMessage{});
    DirectPlayMessage noText;
    noText.WriteLong(MessageId::Chat);
    noText.WriteLong(100);
    Sends(noText);
    Sends(WriteEmpty(4096));
    Sends(WriteEmpty(MessageId::WhoAreYou));
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{TheHost.Id(), 4099, TheHost.Id()}));
    EXPECT_THAT(Heard, IsEmpty());
}

// ---- Joining

class JoiningSimulator : public SimulatorPeerTest {
  protected:
    void Joins(bool observer = false) {
        Pilot.emplace(NewSession(), SimulatorPilot{"N1", "Cessna", observer, {}}, NoteAll());
        Pilot->Dp().GetDPEnumSessions({});
        Pilot->Join(Found());
    }
    std::optional<SimulatorPeer> Pilot;
};

TEST_F(JoiningSimulator, AsksAllAndWaits) {
    Joins();
    Pilot->Step(0ms);
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{Pilot->Id(), 4097, 0}));
    EXPECT_EQ(Pilot->InStage(), Stage::Joining);
    Pilot->Say("is anybody there?");
    EXPECT_THAT(TakeReceived(), IsEmpty());
}

TEST_F(JoiningSimulator, AnObserverAsksAsOne) {
    Joins(true);
    Pilot->Step(0ms);
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{Pilot->Id(), 4098, 0}));
}

TEST_F(JoiningSimulator, AsksAgainAfterThirtySeconds) {
    Joins();
    Pilot->Step(0ms);
    TakeReceived();
    Pilot->Step(29999ms);
    EXPECT_THAT(TakeReceived(), IsEmpty());
    Pilot->Step(30000ms);
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{Pilot->Id(), 4104, 0}, Received{Pilot->Id(), 4097, 0}));
}

TEST_F(JoiningSimulator, AdmittedEntersTheGroupAndIntroducesItselfToAll) {
    Joins();
    Pilot->Step(0ms);
    TakeReceived();
    TheHost.Step(0ms);
    Pilot->Step(0ms);
    EXPECT_EQ(Pilot->InStage(), Stage::Flying);
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{Pilot->Id(), 4099, Pilot->Id()}));
    Hand.Send(HandId, Hand.GetDPEnumGroups()[0].Id, WriteChat("for the group"));
    Pilot->Step(0ms);
    EXPECT_THAT(Heard, ElementsAre("HAND: for the group"));
}

TEST_F(JoiningSimulator, TheAdmissionOfSomebodyElseIsNotItsOwn) {
    Joins();
    Hand.Send(HandId, Pilot->Id(), WriteAdmission(MessageId::AdmitPlayer, HandId));
    Pilot->Step(0ms);
    EXPECT_EQ(Pilot->InStage(), Stage::Joining);
}

TEST_F(JoiningSimulator, RefusedLeaves) {
    AdmitsNewcomers = false;
    Joins();
    Pilot->Step(0ms);
    TheHost.Step(0ms);
    Pilot->Step(0ms);
    EXPECT_EQ(Pilot->InStage(), Stage::Gone);
    EXPECT_THAT(Noted, ElementsAre("N1 asks to join and is refused", "the host refuses admission"));
    EXPECT_EQ(Hand.GetDPEnumPlayers().size(), 2u);
}

TEST_F(JoiningSimulator, RemovedLeaves) {
    Joins();
    Hand.Send(HandId, Pilot->Id(), WriteEmpty(MessageId::Removed));
    Pilot->Step(0ms);
    EXPECT_EQ(Pilot->InStage(), Stage::Gone);
    EXPECT_THAT(Noted, ElementsAre("the host has put you out of the session"));
}

TEST_F(JoiningSimulator, DecidesNobodysAdmission) {
    Joins();
    Hand.Send(HandId, Pilot->Id(), WriteEmpty(MessageId::RequestJoinAsPlayer));
    Pilot->Step(0ms);
    EXPECT_THAT(TakeReceived(), ElementsAre(Received{Pilot->Id(), 4097, 0}));
}

}  // namespace
}  // namespace corvenna
