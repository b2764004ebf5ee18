#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"

namespace corvenna::directplay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

struct MembersOfASession : testing::Test {
    void SetUp() override {
        TheStage.Guests = {One, Two};
        TheStage.Joins();
    }

    const Player* Find(const Remote& remote) const {
        return TheStage.Me.Everybody().Players.Find(remote.PlayerId);
    }

    Stage TheStage;
    Remote One = Stage::MachineNumber(2, 4);
    Remote Two = Stage::MachineNumber(3, 6);
};

// ---- Everybody speaks for himself

TEST_F(MembersOfASession, NobodyRenamesAnothersPlayer) {
    TheStage.Gets(Two.Tcp, NameChanged{Command::PlayerNameChanged, One.PlayerId, u"Thief", {}});
    EXPECT_EQ(Find(One)->Name, "Guest");
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 1u);
    TheStage.Gets(One.Tcp, NameChanged{Command::PlayerNameChanged, One.PlayerId, u"N1", {}});
    EXPECT_EQ(Find(One)->Name, "N1");
}

TEST_F(MembersOfASession, NobodyDeletesAnothersPlayerButTheHost) {
    TheStage.Gets(Two.Tcp, ChangeMember{Command::DeletePlayer, One.PlayerId, 0});
    TheStage.Gets(Two.Tcp, ChangeMember{Command::DeletePlayer, One.Id, 0});
    EXPECT_NE(Find(One), nullptr);
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 2u);
    TheStage.Gets(TheStage.Host.Tcp, ChangeMember{Command::DeletePlayer, One.PlayerId, 0});
    EXPECT_EQ(Find(One), nullptr);
}

TEST_F(MembersOfASession, NobodyCreatesAPlayerForAnother) {
    CreateMember forged = One.Announcement(u"Forged");
    forged.Member.Id = Stage::IdOfSlot(30);
    TheStage.Gets(Two.Tcp, forged);
    EXPECT_THAT(TheStage.PlayerIds(), Not(Contains(forged.Member.Id)));
}

TEST_F(MembersOfASession, NobodyTakesAnIdThatSomebodyHas) {
    for (const std::uint32_t id : {One.PlayerId, One.Id, TheStage.OwnId, TheStage.OwnPlayer}) {
        CreateMember forged = Two.Announcement(u"Forged");
        forged.Member.Id = id;
        TheStage.Gets(Two.Tcp, forged);
        forged.What = Command::CreateGroup;
        TheStage.Gets(Two.Tcp, forged);
    }
    EXPECT_EQ(Find(One)->Name, "Guest");
    EXPECT_EQ(TheStage.Me.Everybody().Players.Find(TheStage.OwnPlayer)->Name, "Tower");
    EXPECT_EQ(TheStage.Me.Everybody().Groups.Size(), 0u);
}

TEST_F(MembersOfASession, TheOperatorIsToldOnceOfWhoSpeaksForOthers) {
    for (int i = 0; i < 10; ++i) {
        TheStage.Gets(Two.Tcp, ChangeMember{Command::DeletePlayer, One.PlayerId, 0});
    }
    EXPECT_THAT(TheStage.Me.TakeNotices(), SizeIs(1));
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 10u);
}

TEST_F(MembersOfASession, OnlyTheHostMayPutTheStationOut) {
    TheStage.Gets(Two.Tcp, ChangeMember{Command::DeletePlayer, TheStage.OwnId, 0});
    EXPECT_FALSE(TheStage.Me.IsLost());
    TheStage.Gets(TheStage.Host.Tcp, ChangeMember{Command::DeletePlayer, TheStage.OwnId, 0});
    EXPECT_TRUE(TheStage.Me.IsLost());
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("removed this station")));
    EXPECT_NO_THROW(TheStage.Me.Send(TheStage.OwnPlayer, 0, Bytes(8), true));
}

TEST_F(MembersOfASession, OnlyTheHostMayChangeTheSession) {
    SessionDescChanged change{TheStage.Me.Description(), u"Forged", {}};
    TheStage.Gets(Two.Tcp, change);
    EXPECT_EQ(TheStage.Me.SessionName(), u"Test");
    change.Name = u"Renamed";
    TheStage.Gets(TheStage.Host.Tcp, change);
    EXPECT_EQ(TheStage.Me.SessionName(), u"Renamed");
    change.Description.Reserved1 ^= 1;
    change.Name = u"Another session";
    TheStage.Gets(TheStage.Host.Tcp, change);
    EXPECT_EQ(TheStage.Me.SessionName(), u"Renamed");
}

// ---- Odd records

TEST_F(MembersOfASession, IdsThatNobodyMayHaveAreNotCreated) {
    for (const std::uint32_t id : {EverybodyId, UnknownId}) {
        CreateMember odd = One.Announcement();
        odd.Member.Id = id;
        TheStage.Gets(One.Tcp, odd);
        odd.What = Command::CreateGroup;
        TheStage.Gets(One.Tcp, odd);
    }
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Malformed, 4u);
    EXPECT_THAT(TheStage.PlayerIds(), SizeIs(4));
}

TEST_F(MembersOfASession, ANameOutsideTheCodePageIsShownWithQuestionMarks) {
    TheStage.Gets(One.Tcp, NameChanged{Command::PlayerNameChanged, One.PlayerId, u"N\u4E00\xD83D\xDE00", {}});
    EXPECT_EQ(Find(One)->Name, "N???");
}

TEST_F(MembersOfASession, NamesAndDataBeyondAllMeasureAreNotTaken) {
    TheStage.Gets(One.Tcp,
                  NameChanged{Command::PlayerNameChanged, One.PlayerId, std::u16string(5000, 'x'), {}});
    TheStage.Gets(One.Tcp, DataChanged{Command::PlayerDataChanged, One.PlayerId, Bytes(20000)});
    EXPECT_EQ(Find(One)->Name, "Guest");
    EXPECT_THAT(Find(One)->Data, IsEmpty());
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Malformed, 2u);
}

TEST_F(MembersOfASession, AMachineWithTooManyPlayersIsCutOff) {
    for (std::uint32_t slot = 100; slot < 100 + TheStage.Bounds.PlayersOfMachine; ++slot) {
        CreateMember next = One.Announcement();
        next.Member.Id = Stage::IdOfSlot(slot);
        TheStage.Gets(One.Tcp, next);
    }
    EXPECT_THAT(TheStage.Net.WereCutOff, ElementsAre(One.Tcp));
    EXPECT_EQ(Find(One), nullptr);
    EXPECT_NE(Find(Two), nullptr);
}

TEST_F(MembersOfASession, APlayerAnnouncedTwiceIsOneBroughtUpToDate) {
    TheStage.Gets(One.Tcp, One.Announcement(u"Again"));
    EXPECT_THAT(TheStage.PlayerIds(), SizeIs(4));
    EXPECT_EQ(Find(One)->Name, "Again");
}

TEST_F(MembersOfASession, WhatIsNotThereCanBeDeletedAndChanged) {
    for (const Command what :
         {Command::DeletePlayer, Command::DeleteGroup, Command::AddPlayerToGroup,
          Command::DeletePlayerFromGroup, Command::AddShortcutToGroup, Command::DeleteGroupFromGroup}) {
        TheStage.Gets(One.Tcp, ChangeMember{what, 0xDEAD, 0xBEEF});
    }
    TheStage.Gets(One.Tcp, NameChanged{Command::GroupNameChanged, 0xBEEF, u"x", {}});
    TheStage.Gets(One.Tcp, DataChanged{Command::GroupDataChanged, 0xBEEF, Bytes(4)});
    EXPECT_THAT(TheStage.PlayerIds(), SizeIs(4));
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 0u);
}

// ---- Players of one moment

TEST_F(MembersOfASession, ANewPlayerIsToldOfThoseMadeLately) {
    Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    TheStage.Gets(newcomer.Tcp, newcomer.Announcement());
    const auto told = TheStage.Net.To<CreateMember>(newcomer.Tcp);
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_EQ(told[0].What, Command::CreatePlayerVerify);
    EXPECT_EQ(told[0].Member.Id, TheStage.OwnPlayer);
}

TEST_F(MembersOfASession, MachinesOfOldVersionsAreNot) {
    Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    CreateMember announcement = newcomer.Announcement();
    announcement.Member.Version = 11;
    TheStage.Gets(newcomer.Tcp, announcement);
    EXPECT_THAT(TheStage.Net.To<CreateMember>(newcomer.Tcp), IsEmpty());
}

TEST_F(MembersOfASession, AVerificationIsNeverAnsweredByAnother) {
    Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    CreateMember verify = newcomer.Announcement();
    verify.What = Command::CreatePlayerVerify;
    TheStage.Gets(newcomer.Tcp, verify);
    EXPECT_NE(Find(newcomer), nullptr);
    EXPECT_THAT(TheStage.Net.To<CreateMember>(newcomer.Tcp), IsEmpty());
}

TEST_F(MembersOfASession, LongAgoIsNotLately) {
    TheStage.Passes(TheStage.Times.RecentlyCreated + seconds(1));
    Remote newcomer = Stage::MachineNumber(4, 8);
    TheStage.Gets(TheStage.Host.Tcp, AddForward{newcomer.RecordWithPlace()});
    TheStage.Gets(newcomer.Tcp, newcomer.Announcement());
    EXPECT_THAT(TheStage.Net.To<CreateMember>(newcomer.Tcp), IsEmpty());
}

}  // namespace
}  // namespace corvenna::directplay
