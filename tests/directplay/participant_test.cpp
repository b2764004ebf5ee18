#include "link/directplay/participant.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"

namespace corvenna::directplay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct AmongOthers : testing::Test {
    void SetUp() override {
        TheStage.Guests = {One, Two};
        TheStage.Joins();
    }

    Stage TheStage;
    Remote One = Stage::MachineNumber(2, 4);
    Remote Two = Stage::MachineNumber(3, 6);
};

// ---- What cannot be read

TEST_F(AmongOthers, FramesThatCannotBeReadAreCountedAndDropped) {
    Bytes cut = Frame(One.Tcp.Port, EncodeSystemMessage(One.Announcement()));
    cut.resize(60);
    TheStage.Me.OnFrame(One.Tcp.Ip, cut);
    TheStage.Me.OnFrame(One.Tcp.Ip, Bytes(20));
    TheStage.Me.OnDatagram(One.Udp, Bytes(7));
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Malformed, 3u);
    EXPECT_EQ(TheStage.Me.Everybody().Machines.Size(), 3u);
}

TEST_F(AmongOthers, MessagesOfKindsNobodyKnowsAreIgnored) {
    Bytes unknown = EncodeSystemMessage(YouAreDead{});
    for (const int command : {0x00, 0x14, 0x36, 0x7F, 0xFF}) {
        unknown[4] = static_cast<std::byte>(command);
        TheStage.Me.OnFrame(TheStage.Host.Tcp.Ip, Frame(TheStage.Host.Tcp.Port, unknown));
    }
    EXPECT_EQ(TheStage.Me.Everybody().Machines.Size(), 3u);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Malformed, 0u);
}

TEST_F(AmongOthers, AnyVersionWordIsRead) {
    for (const std::uint16_t version : {std::uint16_t{0}, std::uint16_t{9}, std::uint16_t{0xFFFF}}) {
        NameChanged message{
            Command::PlayerNameChanged, One.PlayerId, std::u16string(1, 'a' + version % 20), {}};
        TheStage.Me.OnFrame(One.Tcp.Ip, Frame(One.Tcp.Port, EncodeSystemMessage(message, version)));
        EXPECT_EQ(TheStage.Me.Everybody().Players.Find(One.PlayerId)->ShortName, message.ShortName);
    }
}

// ---- Who sends

TEST_F(AmongOthers, AFrameWithoutAPortIsNobodys) {
    Remote hidden = Stage::MachineNumber(4, 8);
    AddForward forward{hidden.RecordWithPlace()};
    forward.Player.Provider.clear();  // nobody knows where it listens
    TheStage.Gets(TheStage.Host.Tcp, forward);
    TheStage.Gets(TheStage.Host.Tcp, hidden.Announcement());
    ASSERT_THAT(TheStage.PlayerIds(), Contains(hidden.PlayerId));
    TheStage.Gets({0x0A000066, 0}, ChangeMember{Command::DeletePlayer, hidden.PlayerId, 0});
    EXPECT_THAT(TheStage.PlayerIds(), Contains(hidden.PlayerId));
}

TEST_F(AmongOthers, WhatBelongsToAStreamIsNotTakenFromADatagram) {
    TheStage.GetsDatagram(TheStage.Host, ChangeMember{Command::DeletePlayer, One.Id, 0});
    TheStage.GetsDatagram(One, NameChanged{Command::PlayerNameChanged, One.PlayerId, u"Forged", {}});
    EXPECT_EQ(TheStage.Me.Everybody().Players.Find(One.PlayerId)->Name, "Guest");
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 2u);
}

TEST_F(AmongOthers, AMachineThatSendsTooMuchIsCutOffWithTheReasonTheOthersAreNot) {
    for (std::size_t i = 0; i <= TheStage.Bounds.MessagesPerSecond; ++i) {
        TheStage.HearsDatagram(One, One.PlayerId, 0x12345678);
    }
    TheStage.GetsDatagram(Two, Ping{Command::Ping, Two.Id, 7});
    EXPECT_THAT(TheStage.Net.WereCutOff, ElementsAre(One.Tcp));
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("20000 messages within a second")));
    EXPECT_THAT(TheStage.Net.To<Ping>(Two.Udp), SizeIs(1));
}

TEST_F(AmongOthers, AMachineIsNotCountedForWhatItSentInAnEarlierSecond) {
    for (int second = 0; second < 3; ++second) {
        for (std::size_t i = 0; i < TheStage.Bounds.MessagesPerSecond; ++i) {
            TheStage.HearsDatagram(One, One.PlayerId, 0x12345678);
        }
        TheStage.Passes(seconds(1));
    }
    EXPECT_THAT(TheStage.Net.WereCutOff, IsEmpty());
}

// ---- Messages that are too early

TEST_F(AmongOthers, WhatAMachineSaysBeforeTheHostToldOfItIsKept) {
    const Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(newcomer.Tcp, newcomer.Announcement(u"New"));
    TheStage.HearsDatagram(newcomer, newcomer.PlayerId, TheStage.OwnPlayer);
    EXPECT_THAT(TheStage.PlayerIds(), SizeIs(4));
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    EXPECT_THAT(TheStage.PlayerIds(), Contains(newcomer.PlayerId));
    EXPECT_EQ(TheStage.Me.Mail().Count(TheStage.OwnPlayer), 1u);
}

TEST_F(AmongOthers, WhatIsTooEarlyForTooLongIsDropped) {
    const Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(newcomer.Tcp, newcomer.Announcement(u"New"));
    TheStage.Passes(TheStage.Bounds.EarlyAge + seconds(1));
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    EXPECT_THAT(TheStage.PlayerIds(), SizeIs(4));
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Unknown, 1u);
}

TEST_F(AmongOthers, AStrangersFloodDoesNotPushOutWhatIsKeptForOthers) {
    const Remote stranger = Stage::MachineNumber(66, 60);
    for (int i = 0; i < 2000; ++i) TheStage.HearsDatagram(stranger, 0x12345678, TheStage.OwnPlayer);
    const Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(newcomer.Tcp, newcomer.Announcement(u"New"));
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    EXPECT_THAT(TheStage.PlayerIds(), Contains(newcomer.PlayerId));
}

TEST(WhileJoining, WhatPlayersSayDoesNotPushOutWhoTheyAre) {
    Stage stage;
    stage.Knocks();
    for (int i = 0; i < 2000; ++i) stage.HearsDatagram(stage.Host, stage.Host.PlayerId, 0);
    const Remote newcomer = Stage::MachineNumber(4, 8);
    stage.Gets(stage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    stage.Gets(newcomer.Tcp, newcomer.Announcement(u"New"));
    stage.Gets(stage.Host.Tcp, stage.Table());
    EXPECT_THAT(stage.PlayerIds(), ElementsAre(stage.Host.PlayerId, newcomer.PlayerId));
}

TEST(WhileJoining, ANewcomerIsAcknowledgedOnceAtOnce) {
    Stage stage;
    stage.Knocks();
    const Remote newcomer = Stage::MachineNumber(4, 8);
    stage.Gets(stage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    EXPECT_THAT(stage.Net.To<AddForwardAck>(stage.Host.Tcp), SizeIs(1));
    stage.Gets(stage.Host.Tcp, stage.Table());
    EXPECT_THAT(stage.Net.To<AddForwardAck>(stage.Host.Tcp), SizeIs(1));
    EXPECT_NE(stage.Me.Everybody().Machines.Find(newcomer.Id), nullptr);
}

}  // namespace
}  // namespace corvenna::directplay
