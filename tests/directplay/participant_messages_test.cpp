#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"
#include "link/session.h"

namespace corvenna::directplay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Conversation : testing::Test {
    void SetUp() override {
        TheStage.Guests = {One, Two};
        TheStage.Joins();
        TheStage.Net.All.clear();
    }

    std::size_t Waiting() { return TheStage.Me.Mail().Count(TheStage.OwnPlayer); }

    std::vector<Endpoint> Places() const {
        std::vector<Endpoint> places;
        for (const Postbook::Sent& sent : TheStage.Net.All) places.push_back(sent.To);
        return places;
    }

    Stage TheStage;
    Remote One = Stage::MachineNumber(2, 4);
    Remote Two = Stage::MachineNumber(3, 6);
};

// ---- Sending

TEST_F(Conversation, AMessageToAllGoesOnceToEachMachine) {
    TheStage.Gets(One.Tcp, [&] {
        CreateMember second = One.Announcement(u"Second");
        second.Member.Id = Stage::IdOfSlot(30);
        return second;
    }());
    TheStage.Net.All.clear();
    TheStage.Me.Send(TheStage.OwnPlayer, 0, Bytes(8), true);
    EXPECT_THAT(Places(), ElementsAre(TheStage.Host.Tcp, One.Tcp, Two.Tcp));
}

TEST_F(Conversation, AMessageToAGroupGoesOnceToEachMachineWithAMember) {
    PackedPlayer group = One.Announcement(u"Group").Member;
    group.Id = Stage::IdOfSlot(70);
    TheStage.Gets(One.Tcp, CreateMember{Command::CreateGroup, group});
    for (const std::uint32_t member : {Two.PlayerId, TheStage.OwnPlayer}) {
        TheStage.Gets(One.Tcp, ChangeMember{Command::AddPlayerToGroup, member, group.Id});
    }
    TheStage.Net.All.clear();
    TheStage.Me.Send(TheStage.OwnPlayer, group.Id, Bytes(8), true);
    EXPECT_THAT(Places(), ElementsAre(Two.Tcp));
    EXPECT_EQ(Waiting(), 0u);
    TheStage.Hears(One, One.PlayerId, group.Id);
    EXPECT_EQ(Waiting(), 1u);
}

TEST_F(Conversation, AMessageToOneselfOrToNobodyGoesNowhere) {
    TheStage.Me.Send(TheStage.OwnPlayer, TheStage.OwnPlayer, Bytes(8), true);
    TheStage.Me.Send(TheStage.OwnPlayer, 0x4711, Bytes(8), true);
    EXPECT_THAT(TheStage.Net.All, IsEmpty());
    EXPECT_EQ(Waiting(), 0u);
}

TEST_F(Conversation, UnguaranteedOnesGoByDatagramUpToASize) {
    TheStage.Me.Send(TheStage.OwnPlayer, One.PlayerId, Bytes(MaxDatagramSize - PlayerIdsSize), false);
    TheStage.Me.Send(TheStage.OwnPlayer, One.PlayerId, Bytes(MaxDatagramSize - PlayerIdsSize + 1), false);
    ASSERT_THAT(TheStage.Net.All, SizeIs(2));
    EXPECT_TRUE(TheStage.Net.All[0].IsDatagram);
    EXPECT_FALSE(TheStage.Net.All[1].IsDatagram);
}

// ---- Everybody speaks for his own players

TEST_F(Conversation, NobodySpeaksForAnotherByStream) {
    TheStage.Hears(Two, One.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 1u);
    TheStage.Hears(One, One.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 1u);
}

TEST_F(Conversation, NobodySpeaksForAnotherByDatagram) {
    TheStage.HearsDatagram(Two, One.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 0u);
    TheStage.HearsDatagram(Stage::MachineNumber(66, 60), One.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 2u);
}

TEST_F(Conversation, NobodySpeaksForTheStation) {
    TheStage.Hears(One, TheStage.OwnPlayer, 0);
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 1u);
}

TEST_F(Conversation, NobodySpeaksForAnotherInAWrapperOrInPieces) {
    TheStage.Gets(Two.Tcp, PlayerWrapper{One.PlayerId, TheStage.OwnPlayer, Bytes(8)});
    Packet packet;
    packet.Data = Stage::PlayerMessage(One.PlayerId, TheStage.OwnPlayer);
    packet.MessageSize = static_cast<std::uint32_t>(packet.Data.size());
    packet.Count = 1;
    TheStage.Gets(Two.Tcp, packet);
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 2u);
}

TEST_F(Conversation, ADatagramFromAnotherPortOfTheMachineIsItsOwn) {
    Remote behindRouter = One;
    behindRouter.Udp.Port = 61000;
    TheStage.HearsDatagram(behindRouter, One.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 1u);
}

TEST_F(Conversation, AMessageForSomebodyElseIsNotHeard) {
    TheStage.Hears(One, One.PlayerId, Two.PlayerId);
    TheStage.Hears(One, One.PlayerId, 0x4711);
    EXPECT_EQ(Waiting(), 0u);
}

TEST_F(Conversation, AnEmptyMessageIsHeard) {
    TheStage.Hears(One, One.PlayerId, 0, 0);
    EXPECT_EQ(Waiting(), 1u);
}

// ---- Too much

TEST_F(Conversation, WhoSaysMoreThanMayWaitIsCutOffTheOthersAreHeard) {
    const std::size_t size = 1000000;
    for (int i = 0; i < 3; ++i) TheStage.Hears(One, One.PlayerId, TheStage.OwnPlayer, size);
    EXPECT_THAT(TheStage.Net.WereCutOff, ElementsAre(One.Tcp));
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("than the station can hold")));
    TheStage.Hears(Two, Two.PlayerId, TheStage.OwnPlayer);
    EXPECT_EQ(Waiting(), 3u);
    EXPECT_EQ(TheStage.Me.Everybody().Machines.Find(One.Id), nullptr);
}

TEST_F(Conversation, UnguaranteedMessagesBeyondWhatMayWaitAreMerelyLost) {
    for (std::size_t i = 0; i < TheStage.Bounds.WaitingMessages + 10; ++i) {
        TheStage.HearsDatagram(One, One.PlayerId, TheStage.OwnPlayer);
    }
    EXPECT_EQ(Waiting(), TheStage.Bounds.WaitingMessages);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Excess, 10u);
    EXPECT_THAT(TheStage.Net.WereCutOff, IsEmpty());
}

// ---- Pieces

TEST_F(Conversation, EveryGuaranteedPieceIsAcknowledgedOnTheWayItCame) {
    Packet packet;
    packet.What = Command::Packet2Data;
    packet.Index = 5;
    packet.MessageSize = 100;
    packet.Data = Bytes(10);
    TheStage.Gets(One.Tcp, packet);
    EXPECT_THAT(TheStage.Net.To<Packet2Ack>(One.Tcp), ElementsAre(Packet2Ack{packet.Message, 5}));
    TheStage.GetsDatagram(One, packet);
    EXPECT_THAT(TheStage.Net.To<Packet2Ack>(One.Udp), SizeIs(1));
}

TEST_F(Conversation, PiecesOfStrangersAreNot) {
    Packet packet;
    packet.What = Command::Packet2Data;
    packet.MessageSize = 100;
    packet.Data = Bytes(10);
    const Remote stranger = Stage::MachineNumber(66, 60);
    TheStage.Gets(stranger.Tcp, packet);
    EXPECT_THAT(TheStage.Net.All, IsEmpty());
}

TEST_F(Conversation, APieceWithinAPieceIsNotOpened) {
    Packet inner;
    inner.Data = Stage::PlayerMessage(One.PlayerId, TheStage.OwnPlayer);
    inner.MessageSize = static_cast<std::uint32_t>(inner.Data.size());
    Packet outer;
    outer.Message.Data1 = 1;
    outer.Data = EncodeSystemMessage(inner);
    outer.MessageSize = static_cast<std::uint32_t>(outer.Data.size());
    TheStage.Gets(One.Tcp, outer);
    EXPECT_EQ(Waiting(), 0u);
    TheStage.Gets(One.Tcp, inner);
    EXPECT_EQ(Waiting(), 1u);
}

}  // namespace
}  // namespace corvenna::directplay
