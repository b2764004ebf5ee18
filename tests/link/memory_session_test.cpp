#include "link/memory/memory_session.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "link/fs_messages.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

SessionRecord Wanted(std::string name = "Test session", std::int32_t maxPlayers = 4,
                     std::string application = "") {
    SessionRecord record;
    record.SessionName = std::move(name);
    record.MaxPlayers = maxPlayers;
    record.GuidApplication = std::move(application);
    return record;
}

std::vector<std::string> Names(const std::vector<SessionMember>& members) {
    std::vector<std::string> names;
    names.reserve(members.size());
    for (const SessionMember& member : members) names.push_back(member.ShortName);
    return names;
}

/// A host and a guest in one session.
class Memory : public testing::Test {
  protected:
    Memory() {
        host.Open(Wanted(), OpenMode::Create);
        hostId = host.CreatePlayer("Host", "Player");
        guest.Open(guest.GetDPEnumSessions({}).at(0), OpenMode::Join);
        guestId = guest.CreatePlayer("Guest", "Player");
    }

    static std::int32_t Number(MemorySession& session) {
        DirectPlayMessage message;
        session.Receive(message);
        return message.ReadLong();
    }

    static DirectPlayMessage Carrying(std::int32_t number) {
        DirectPlayMessage message;
        message.WriteLong(number);
        return message;
    }

    MemoryNetwork network;
    MemorySession host{network};
    MemorySession guest{network};
    std::int32_t hostId = 0;
    std::int32_t guestId = 0;
};

TEST_F(Memory, PlayersHaveIdsAbove0AndNames) {
    EXPECT_GT(hostId, 0);
    EXPECT_GT(guestId, hostId);
    EXPECT_EQ(guest.GetPlayerFriendlyName(hostId), "Host");
    EXPECT_EQ(host.GetPlayerFriendlyName(guestId), "Guest");
    EXPECT_THAT(Names(host.GetDPEnumPlayers()), ElementsAre("Host", "Guest"));
}

TEST_F(Memory, TheEnumerationTellsNameAndNumbers) {
    const auto found = guest.GetDPEnumSessions({});
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].SessionName, "Test session");
    EXPECT_EQ(found[0].CurrentPlayers, 2);
    EXPECT_EQ(found[0].MaxPlayers, 4);
}

TEST_F(Memory, TheEnumerationPassesOverFullSessionsAndOtherApplications) {
    network.AddRoom(Wanted("full", 0));
    network.AddRoom(Wanted("other", 4, "other application"));
    EXPECT_THAT(guest.GetDPEnumSessions({}), SizeIs(2));
    const auto found = guest.GetDPEnumSessions(Wanted("", 0, "other application"));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].SessionName, "other");
}

TEST_F(Memory, SessionsOfOneNameAreToldApart) {
    MemorySession second(network);
    second.Open(Wanted(), OpenMode::Create);
    second.CreatePlayer("Second host", "Player");
    MemorySession newcomer(network);
    newcomer.Open(newcomer.GetDPEnumSessions({}).at(1), OpenMode::Join);
    EXPECT_THAT(Names(newcomer.GetDPEnumPlayers()), ElementsAre("Second host"));
}

TEST_F(Memory, ASessionThatHasEndedCantBeJoined) {
    const auto record = guest.GetDPEnumSessions({}).at(0);
    host.Close();
    guest.Close();
    EXPECT_THAT(guest.GetDPEnumSessions({}), IsEmpty());
    EXPECT_THROW(guest.Open(record, OpenMode::Join), SessionError);
}

TEST_F(Memory, AnOpenSessionCantBeOpenedTwice) {
    EXPECT_THROW(guest.Open(Wanted(), OpenMode::Create), SessionError);
}

TEST_F(Memory, AFullSessionTakesNoFurtherPlayer) {
    guest.CreatePlayer("Third", "Player");
    guest.CreatePlayer("Fourth", "Player");
    EXPECT_THROW(guest.CreatePlayer("Fifth", "Player"), SessionError);
}

TEST_F(Memory, EveryOperationBeforeOpenAndAfterCloseThrows) {
    MemorySession closed(network);
    for (int round = 0; round < 2; ++round) {
        DirectPlayMessage message;
        EXPECT_THROW(closed.CreatePlayer("N1", "Player"), SessionError);
        EXPECT_THROW(closed.DestroyPlayer(1), SessionError);
        EXPECT_THROW(closed.Close(), SessionError);
        EXPECT_THROW(closed.GetDPEnumGroups(), SessionError);
        EXPECT_THROW(closed.CreateGroup("group"), SessionError);
        EXPECT_THROW(closed.AddPlayerToGroup(1, 1), SessionError);
        EXPECT_THROW(closed.GetDPEnumPlayers(), SessionError);
        EXPECT_THROW(closed.GetPlayerFriendlyName(1), SessionError);
        EXPECT_THROW(closed.GetMessageCount(1), SessionError);
        EXPECT_THROW(closed.Receive(message), SessionError);
        EXPECT_THROW(closed.Send(1, 2, message), SessionError);
        if (round == 0) {
            closed.Open(closed.GetDPEnumSessions({}).at(0), OpenMode::Join);
            closed.Close();
        }
    }
}

// ---- Messages

TEST_F(Memory, AMessageReachesItsAddresseeWithItsSender) {
    host.Send(hostId, guestId, Carrying(42));
    EXPECT_EQ(guest.GetMessageCount(guestId), 1);
    DirectPlayMessage message;
    const Envelope envelope = guest.Receive(message);
    EXPECT_EQ(envelope.From, hostId);
    EXPECT_EQ(envelope.To, guestId);
    EXPECT_EQ(message.ReadLong(), 42);
    EXPECT_EQ(guest.GetMessageCount(guestId), 0);
}

TEST_F(Memory, MessagesKeepTheirOrder) {
    for (int i = 0; i < 5; ++i) host.Send(hostId, guestId, Carrying(i));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Number(guest), i);
}

TEST_F(Memory, ReceivingWhenNothingWaitsThrows) {
    DirectPlayMessage message;
    EXPECT_THROW(guest.Receive(message), SessionError);
}

TEST_F(Memory, Addressee0IsEverybodyElse) {
    MemorySession third(network);
    third.Open(third.GetDPEnumSessions({}).at(0), OpenMode::Join);
    const auto thirdId = third.CreatePlayer("Third", "Player");
    host.Send(hostId, 0, Carrying(1));
    EXPECT_EQ(host.GetMessageCount(hostId), 0);
    EXPECT_EQ(guest.GetMessageCount(guestId), 1);
    EXPECT_EQ(third.GetMessageCount(thirdId), 1);
}

TEST_F(Memory, AMessageToSomebodyWhoHasGoneIsDroppedWithoutAWord) {
    guest.Close();
    EXPECT_NO_THROW(host.Send(hostId, guestId, Carrying(1)));
    EXPECT_NO_THROW(host.Send(hostId, 99, Carrying(1)));
}

TEST_F(Memory, AGroupsMessageReachesItsPlayers) {
    const auto group = host.CreateGroup("FS61_REFUSE_PARAMS");
    guest.AddPlayerToGroup(group, guestId);
    EXPECT_THAT(Names(guest.GetDPEnumGroups()), ElementsAre("FS61_REFUSE_PARAMS"));
    EXPECT_EQ(guest.GetDPEnumGroups()[0].Id, group);
    host.Send(hostId, group, Carrying(5));
    EXPECT_EQ(Number(guest), 5);
    EXPECT_EQ(host.GetMessageCount(hostId), 0);
}

TEST_F(Memory, WhoLeavesIsOutOfHisGroups) {
    const auto group = host.CreateGroup("group");
    guest.AddPlayerToGroup(group, guestId);
    guest.DestroyPlayer(guestId);
    EXPECT_NO_THROW(host.Send(hostId, group, Carrying(5)));
    EXPECT_EQ(guest.GetMessageCount(guestId), 0);
}

TEST_F(Memory, AGroupThatIsNotThereCantBeEntered) {
    EXPECT_THROW(guest.AddPlayerToGroup(99, guestId), SessionError);
}

TEST_F(Memory, WhoEntersAGroupTwiceHearsItsMessagesOnce) {
    const auto group = host.CreateGroup("group");
    guest.AddPlayerToGroup(group, guestId);
    guest.AddPlayerToGroup(group, guestId);
    host.Send(hostId, group, Carrying(5));
    EXPECT_EQ(guest.GetMessageCount(guestId), 1);
}

// ---- Coming and going

TEST_F(Memory, NobodyCanTakeSomebodyElseOutOfTheSession) {
    EXPECT_THROW(guest.DestroyPlayer(hostId), SessionError);
    EXPECT_THAT(Names(guest.GetDPEnumPlayers()), ElementsAre("Host", "Guest"));
}

TEST_F(Memory, TheNameOfSomebodyWhoHasGoneIsAnError) {
    guest.DestroyPlayer(guestId);
    EXPECT_THROW(host.GetPlayerFriendlyName(guestId), SessionError);
    EXPECT_THROW(host.GetPlayerFriendlyName(0), SessionError);
    EXPECT_THAT(Names(host.GetDPEnumPlayers()), ElementsAre("Host"));
}

TEST_F(Memory, WhenTheHostLeavesTheSessionGoesOnWithTheNext) {
    const auto record = guest.GetDPEnumSessions({}).at(0);
    host.Close();
    EXPECT_THAT(Names(guest.GetDPEnumPlayers()), ElementsAre("Guest"));
    EXPECT_NO_THROW(host.Open(record, OpenMode::Join));
}

TEST_F(Memory, ASessionObjectThatIsDroppedHasLeft) {
    {
        MemorySession third(network);
        third.Open(third.GetDPEnumSessions({}).at(0), OpenMode::Join);
        third.CreatePlayer("Third", "Player");
        EXPECT_THAT(host.GetDPEnumPlayers(), SizeIs(3));
    }
    EXPECT_THAT(host.GetDPEnumPlayers(), SizeIs(2));
}

TEST_F(Memory, AfterCloseTheQueueIsEmpty) {
    host.Send(hostId, guestId, Carrying(1));
    guest.Close();
    guest.Open(guest.GetDPEnumSessions({}).at(0), OpenMode::Join);
    EXPECT_EQ(guest.GetMessageCount(guestId), 0);
}

TEST_F(Memory, TheHostIsTheFirstWhoIsStillThere) {
    auto room = network.AddRoom(Wanted("room"));
    EXPECT_EQ(room->Host(), nullptr);
    MemorySession first(network);
    MemorySession second(network);
    first.Open(room->Record(), OpenMode::Join);
    second.Open(room->Record(), OpenMode::Join);
    EXPECT_EQ(room->Host(), &first);
    first.Close();
    EXPECT_EQ(room->Host(), &second);
}

TEST_F(Memory, OffersOneConnectionAndNeedsNoDetails) {
    const auto connections = guest.GetDPEnumConnections();
    ASSERT_THAT(connections, SizeIs(1));
    EXPECT_EQ(connections[0].Name, "Practice Session On This Computer");
    EXPECT_NO_THROW(guest.InitializeConnection(connections[0].Address));
}

TEST_F(Memory, TheRootMakesSessionsOfItsNetwork) {
    MemoryRoot root(network);
    EXPECT_THAT(root.DirectPlayCreate()->GetDPEnumSessions({}), SizeIs(1));
}

// ---- The room, as a script drives it

class Room : public testing::Test {
  protected:
    Room() {
        room = network.AddRoom(Wanted());
        room->NumberNextPlayer(10);
        session.Open(room->Record(), OpenMode::Join);
        own = session.CreatePlayer("Own", "Player");
    }

    MemoryNetwork network;
    std::shared_ptr<MemoryRoom> room;
    MemorySession session{network};
    std::int32_t own = 0;
};

TEST_F(Room, TheNextPlayersIdCanBeChosen) { EXPECT_EQ(own, 10); }

TEST_F(Room, WhoEntersIsListedInOrder) {
    room->Enter(3, "N3");
    room->Enter(2, "N2");
    EXPECT_THAT(Names(session.GetDPEnumPlayers()), ElementsAre("Own", "N3", "N2"));
    EXPECT_EQ(session.GetPlayerFriendlyName(2), "N2");
    EXPECT_EQ(room->Record().CurrentPlayers, 3);
}

TEST_F(Room, AnIdThatEntersTwiceIsListedTwiceAndTheFirstEntryGivesTheName) {
    room->Enter(2, "first");
    room->Enter(2, "second");
    EXPECT_THAT(Names(session.GetDPEnumPlayers()), ElementsAre("Own", "first", "second"));
    EXPECT_EQ(session.GetPlayerFriendlyName(2), "first");
}

TEST_F(Room, WhoLeavesAndComesBackIsFoundAtHisNewPlace) {
    room->Enter(2, "N2");
    room->Enter(3, "N3");
    EXPECT_EQ(session.GetPlayerFriendlyName(3), "N3");
    room->Leave(2);
    EXPECT_THROW(session.GetPlayerFriendlyName(2), SessionError);
    EXPECT_EQ(session.GetPlayerFriendlyName(3), "N3");
    room->Enter(2, "again");
    room->Enter(4, "N4");
    EXPECT_EQ(session.GetPlayerFriendlyName(2), "again");
    EXPECT_EQ(session.GetPlayerFriendlyName(4), "N4");
    room->Leave(99);  // unknown: nothing
    EXPECT_THAT(session.GetDPEnumPlayers(), SizeIs(4));
}

TEST_F(Room, ARenamedParticipantIsKnownByHisNewNameAtOnce) {
    room->Enter(2, "N2");
    room->Rename(2, "N9");
    room->Rename(99, "nobody");
    EXPECT_EQ(session.GetPlayerFriendlyName(2), "N9");
    EXPECT_THAT(Names(session.GetDPEnumPlayers()), ElementsAre("Own", "N9"));
}

TEST_F(Room, PostedBytesWaitAsSentByAnybody) {
    const DirectPlayMessage bytes = WriteEmpty(4103);
    room->Post(99, own, bytes.Bytes());
    room->Post(99, 5, bytes.Bytes());  // to nobody: dropped
    EXPECT_EQ(session.GetMessageCount(own), 1);
    DirectPlayMessage message;
    EXPECT_EQ(session.Receive(message).From, 99);
    EXPECT_EQ(ReadHeader(message).Id, 4103);
}

TEST_F(Room, EachMessageIsSeenOnceForEachAddresseeAlsoForOneWhoIsNotThere) {
    std::vector<std::int32_t> seen;
    room->OnSend = [&](std::int32_t from, std::int32_t to, std::span<const std::byte>) {
        EXPECT_EQ(from, own);
        seen.push_back(to);
    };
    room->Enter(2, "N2");
    room->Enter(3, "N3");
    session.Send(own, 0, WriteEmpty(4097));
    session.Send(own, 77, WriteEmpty(4097));
    EXPECT_THAT(seen, ElementsAre(2, 3, 77));
}

}  // namespace
}  // namespace corvenna
