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

/// A client whose machine has a higher id than One's and Two's.
struct Presence : testing::Test {
    void SetUp() override {
        TheStage.Guests = {One, Two};
        TheStage.Joins();
    }

    void HostLeaves() {
        TheStage.Gets(TheStage.Host.Tcp, ChangeMember{Command::DeletePlayer, TheStage.Host.PlayerId, 0});
        TheStage.Gets(TheStage.Host.Tcp, ChangeMember{Command::DeletePlayer, TheStage.Host.Id, 0});
    }

    static IAmNameServer Claim(const Remote& by) {
        IAmNameServer claim;
        claim.Host = by.Id;
        claim.Flags = 7;
        claim.Provider = by.Record().Provider;
        return claim;
    }

    bool Knows(const Remote& remote) const {
        return TheStage.Me.Everybody().Machines.Find(remote.Id) != nullptr;
    }

    Stage TheStage;
    Remote One = Stage::MachineNumber(2, 4);
    Remote Two = Stage::MachineNumber(3, 6);
};

// ---- Pings

TEST_F(Presence, PingsOfMembersAreAnsweredWithTheirTick) {
    TheStage.GetsDatagram(One, Ping{Command::Ping, One.Id, 0x01020304});
    EXPECT_THAT(TheStage.Net.To<Ping>(One.Udp),
                ElementsAre(Ping{Command::PingReply, TheStage.OwnId, 0x01020304}));
}

TEST_F(Presence, PingsOfStrangersAndImpostorsAreNot) {
    TheStage.GetsDatagram(Two, Ping{Command::Ping, One.Id, 1});
    TheStage.GetsDatagram(Stage::MachineNumber(66, 60), Ping{Command::Ping, 0x4711, 1});
    EXPECT_THAT(TheStage.Net.To<Ping>(One.Udp), IsEmpty());
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 1u);
}

TEST(AHostThatIsPinged, TellsStrangersThatItDoesNotKnowThem) {
    Stage stage;
    stage.Hosts();
    const Remote stranger = Stage::MachineNumber(66, 60);
    for (int i = 0; i < 100; ++i) stage.GetsDatagram(stranger, Ping{Command::Ping, stranger.Id, 1});
    EXPECT_THAT(stage.Net.To<YouAreDead>(stranger.Tcp), SizeIs(stage.Bounds.SearchAnswersPerSecond));
}

TEST_F(Presence, ASilentHostIsPingedThenProbedThenGivenUp) {
    for (int i = 0; i < TheStage.Times.PingsUntilDoubt; ++i) TheStage.Passes(TheStage.Times.Ping);
    EXPECT_THAT(TheStage.Net.To<Ping>(TheStage.Host.Udp), SizeIs(TheStage.Times.PingsUntilDoubt));
    EXPECT_THAT(TheStage.Net.Probed, IsEmpty());
    TheStage.Passes(TheStage.Times.Ping);
    ASSERT_THAT(TheStage.Net.Probed, ElementsAre(TheStage.Host.Tcp));
    TheStage.Me.OnProbed(TheStage.Host.Tcp, false);
    EXPECT_FALSE(Knows(TheStage.Host));
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("does not answer")));
}

TEST_F(Presence, AnyAnswerWithinMinutesIsEnough) {
    for (int i = 0; i < 100; ++i) {
        TheStage.Passes(TheStage.Times.Ping);
        if (i % 5 == 4) TheStage.GetsDatagram(TheStage.Host, Ping{Command::PingReply, TheStage.Host.Id, 1});
    }
    EXPECT_THAT(TheStage.Net.Probed, IsEmpty());
    EXPECT_TRUE(Knows(TheStage.Host));
}

TEST_F(Presence, AnAnswerIsASignOfLifeWhateverPortItsHeaderHas) {
    Remote behindRouter = TheStage.Host;
    behindRouter.Tcp.Port = 4711;
    for (int i = 0; i < 100; ++i) {
        TheStage.Passes(TheStage.Times.Ping);
        TheStage.GetsDatagram(behindRouter, Ping{Command::PingReply, TheStage.Host.Id, 1});
    }
    EXPECT_THAT(TheStage.Net.Probed, IsEmpty());
}

TEST_F(Presence, OthersAreNotPingedByAClientHoweverSilent) {
    for (int i = 0; i < 20; ++i) TheStage.Passes(TheStage.Times.Ping);
    EXPECT_THAT(TheStage.Net.To<Ping>(One.Udp), IsEmpty());
    EXPECT_TRUE(Knows(One));
}

TEST(AHostWithASilentMember, TellsTheOthersWhenItIsGone) {
    Stage stage;
    stage.Hosts();
    const Remote silent = stage.Admits(2);
    const Remote other = stage.Admits(3);
    for (int i = 0; i <= stage.Times.PingsUntilDoubt; ++i) {
        stage.Passes(stage.Times.Ping);
        stage.GetsDatagram(other, Ping{Command::PingReply, other.Id, 1});
    }
    ASSERT_THAT(stage.Net.Probed, ElementsAre(silent.Tcp));
    stage.Me.OnProbed(silent.Tcp, false);
    EXPECT_THAT(stage.Net.To<ChangeMember>(other.Tcp),
                ElementsAre(ChangeMember{Command::DeletePlayer, silent.PlayerId, 0},
                            ChangeMember{Command::DeletePlayer, silent.Id, 0}));
}

// ---- Doubt

TEST_F(Presence, AConnectionThatEndsProvesNothing) {
    TheStage.Me.OnConnectionLost(One.Tcp);
    TheStage.Me.OnDisconnected(One.Tcp);
    EXPECT_THAT(TheStage.Net.Probed, ElementsAre(One.Tcp));
    TheStage.Me.OnProbed(One.Tcp, true);
    EXPECT_TRUE(Knows(One));
}

TEST_F(Presence, NeitherDoesAProbeThatFailsWhenTheMachineWasHeardMeanwhile) {
    TheStage.Me.OnConnectionLost(One.Tcp);
    TheStage.Passes(milliseconds(10));
    TheStage.GetsDatagram(One, Ping{Command::PingReply, One.Id, 0});
    TheStage.Me.OnProbed(One.Tcp, false);
    EXPECT_TRUE(Knows(One));
}

TEST_F(Presence, AMachineThatMovedIsDoubtedAnew) {
    TheStage.Me.OnConnectionLost(One.Tcp);
    Remote moved = One;
    moved.Tcp.Port = 2399;
    TheStage.Gets(TheStage.Host.Tcp, AddForward{moved.RecordWithPlace()});
    TheStage.Me.OnProbed(One.Tcp, false);
    EXPECT_TRUE(Knows(One));
    TheStage.Me.OnConnectionLost(moved.Tcp);
    TheStage.Me.OnProbed(moved.Tcp, false);
    EXPECT_FALSE(Knows(One));
}

TEST_F(Presence, ProbesNobodyAskedForChangeNothing) {
    TheStage.Me.OnProbed(One.Tcp, false);
    TheStage.Me.OnProbed({0x0A000066, 1}, false);
    EXPECT_TRUE(Knows(One));
}

// ---- The host leaves

TEST_F(Presence, TheLowestIdBecomesTheHostAndIsBelieved) {
    HostLeaves();
    EXPECT_FALSE(TheStage.Me.IsHost());
    TheStage.Gets(One.Tcp, Claim(One));
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("is the session's host now")));
    TheStage.Gets(One.Tcp, ChangeMember{Command::DeletePlayer, Two.PlayerId, 0});  // as only a host may
    EXPECT_THAT(TheStage.PlayerIds(), Not(Contains(Two.PlayerId)));
}

TEST_F(Presence, WhenTheCandidateGoesTooTheNextOneIsIt) {
    HostLeaves();
    TheStage.Me.OnUnreachable(One.Tcp, "nobody listens");
    EXPECT_FALSE(TheStage.Me.IsHost());
    TheStage.Me.OnUnreachable(Two.Tcp, "nobody listens");
    EXPECT_TRUE(TheStage.Me.IsHost());
}

TEST_F(Presence, TheStationAsTheLowestTellsEverybodyFirst) {
    Stage stage;
    stage.Host = Stage::MachineNumber(1, 8);
    stage.Guests = {One, Two};
    stage.OwnId = Stage::IdOfSlot(1);
    stage.Joins();
    stage.Net.All.clear();
    stage.Gets(stage.Host.Tcp, ChangeMember{Command::DeletePlayer, stage.Host.Id, 0});
    ASSERT_TRUE(stage.Me.IsHost());
    for (const Remote& other : {One, Two}) {
        const auto claims = stage.Net.To<IAmNameServer>(other.Tcp);
        ASSERT_THAT(claims, SizeIs(1));
        EXPECT_EQ(claims[0].To, other.Id);
        EXPECT_EQ(claims[0].Host, stage.OwnId);
        EXPECT_EQ(claims[0].Flags, 7u);
    }
}

TEST_F(Presence, ANewHostGivesOutNoIdThatSomebodyHadBefore) {
    TheStage.Gets(One.Tcp, ChangeMember{Command::DeletePlayer, One.PlayerId, 0});
    TheStage.Me.OnUnreachable(One.Tcp, "gone");
    TheStage.Me.OnUnreachable(Two.Tcp, "gone");
    HostLeaves();
    ASSERT_TRUE(TheStage.Me.IsHost());
    const std::vector<std::uint32_t> used = {
        TheStage.Host.Id, TheStage.Host.PlayerId, One.Id, One.PlayerId, Two.Id, Two.PlayerId};
    for (int i = 0; i < 30; ++i) {
        TheStage.Me.BeginCreateGroup(u"Group");
        EXPECT_THAT(used, Not(Contains(TheStage.Me.LastOutcome().Id)));
    }
}

TEST_F(Presence, ANewHostTakesPlayersWhoseIdsTheOldOneGaveOut) {
    TheStage.Me.OnUnreachable(One.Tcp, "gone");
    Remote joining = Stage::MachineNumber(5, 40);
    TheStage.Gets(TheStage.Host.Tcp, AddForward{joining.RecordWithPlace()});
    TheStage.Me.OnUnreachable(Two.Tcp, "gone");
    HostLeaves();
    ASSERT_TRUE(TheStage.Me.IsHost());
    TheStage.Gets(joining.Tcp, joining.Announcement());
    EXPECT_THAT(TheStage.PlayerIds(), Contains(joining.PlayerId));
    TheStage.Passes(TheStage.Bounds.PendingJoinAge + seconds(1));
    joining.PlayerId = Stage::IdOfSlot(50);
    TheStage.Gets(joining.Tcp, joining.Announcement());
    EXPECT_THAT(TheStage.PlayerIds(), Not(Contains(joining.PlayerId)));
}

TEST_F(Presence, GroupsOfWhoHasLeftAreTheNextHosts) {
    PackedPlayer group = TheStage.Host.Announcement(u"Group").Member;
    group.Id = Stage::IdOfSlot(70);
    TheStage.Gets(TheStage.Host.Tcp, CreateMember{Command::CreateGroup, group});
    HostLeaves();
    ASSERT_NE(TheStage.Me.Everybody().Groups.Find(group.Id), nullptr);
    TheStage.Gets(One.Tcp, Claim(One));
    EXPECT_EQ(TheStage.Me.Everybody().Groups.Find(group.Id)->MachineId, One.Id);
}

TEST(ASessionThatKeepsItsHost, GoesOnWithoutOneWhenItLeaves) {
    Stage stage;
    stage.Guests = {Stage::MachineNumber(2, 30)};
    stage.Joins(SessionFlag::KeepAlive);
    stage.Gets(stage.Host.Tcp, ChangeMember{Command::DeletePlayer, stage.Host.Id, 0});
    EXPECT_FALSE(stage.Me.IsHost());
    EXPECT_THAT(stage.Me.TakeNotices(), Contains(HasSubstr("no host any more")));
    stage.Hears(stage.Guests[0], stage.Guests[0].PlayerId, 0);
    EXPECT_EQ(stage.Me.Mail().Count(stage.OwnPlayer), 1u);
    stage.Me.BeginCreatePlayer(u"Second", {});
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("no host"));
}

// ---- A second host

TEST_F(Presence, ASecondHostIsPutAsideWhenTheFirstAnswersTwice) {
    TheStage.Gets(One.Tcp, Claim(One));
    ASSERT_THAT(TheStage.Net.Probed, ElementsAre(TheStage.Host.Tcp));
    TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
    TheStage.Passes(TheStage.Times.ClaimRecheck);
    ASSERT_THAT(TheStage.Net.Probed, SizeIs(2));
    TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
    EXPECT_THAT(TheStage.Me.TakeNotices(), ElementsAre(HasSubstr("claims to be the host")));
    TheStage.Gets(One.Tcp, ChangeMember{Command::DeletePlayer, Two.PlayerId, 0});
    EXPECT_THAT(TheStage.PlayerIds(), Contains(Two.PlayerId));
}

TEST_F(Presence, WhatTheSecondHostSaysOfItsOwnMeanwhileIsNotLost) {
    TheStage.Gets(One.Tcp, Claim(One));
    TheStage.Gets(One.Tcp, NameChanged{Command::PlayerNameChanged, One.PlayerId, u"Renamed", {}});
    TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
    TheStage.Passes(TheStage.Times.ClaimRecheck);
    TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
    EXPECT_EQ(TheStage.Me.Everybody().Players.Find(One.PlayerId)->Name, "Renamed");
}

TEST_F(Presence, AClaimMadeAgainAndAgainIsToldOnce) {
    for (int i = 0; i < 10; ++i) {
        TheStage.Gets(One.Tcp, Claim(One));
        TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
        TheStage.Passes(TheStage.Times.ClaimRecheck);
        TheStage.Me.OnProbed(TheStage.Host.Tcp, true);
    }
    EXPECT_THAT(TheStage.Me.TakeNotices(), SizeIs(1));
}

TEST_F(Presence, ASecondHostIsBelievedWhenTheFirstDoesNotAnswer) {
    TheStage.Gets(One.Tcp, Claim(One));
    TheStage.Me.OnProbed(TheStage.Host.Tcp, false);
    EXPECT_FALSE(Knows(TheStage.Host));
    EXPECT_THAT(TheStage.Me.TakeNotices(), Contains(HasSubstr("is the session's host now")));
}

TEST_F(Presence, NobodyMakesSomebodyElseTheHost) {
    TheStage.Gets(One.Tcp, Claim(Two));
    EXPECT_THAT(TheStage.Net.Probed, IsEmpty());
    EXPECT_EQ(TheStage.Me.DroppedSoFar().Foreign, 1u);
}

TEST(AHostThatMeetsAnother, TellsItToLeave) {
    Stage stage;
    stage.Hosts();
    const Remote member = stage.Admits(2);
    IAmNameServer claim;
    claim.Host = member.Id;
    stage.Gets(member.Tcp, claim);
    EXPECT_TRUE(stage.Me.IsHost());
    EXPECT_THAT(stage.Net.To<YouAreDead>(member.Tcp), SizeIs(1));
}

TEST(AHostThatMeetsAnother, DoesNotObeyIt) {
    Stage stage;
    stage.Hosts();
    const Remote member = stage.Admits(2);
    stage.Gets(member.Tcp, YouAreDead{});
    EXPECT_TRUE(stage.Me.IsHost());
    EXPECT_FALSE(stage.Me.IsLost());
}

// ---- Being put out

TEST_F(Presence, ToldByTheHostThatItIsDeadTheStationIsAlone) {
    TheStage.GetsDatagram(TheStage.Host, YouAreDead{});
    EXPECT_TRUE(TheStage.Me.IsLost());
    EXPECT_THAT(TheStage.PlayerIds(), ElementsAre(TheStage.OwnPlayer));
    EXPECT_FALSE(TheStage.Me.IsHost());
    TheStage.Passes(std::chrono::minutes(10));
    EXPECT_NO_THROW(TheStage.Me.Leave());
}

TEST_F(Presence, ToldSoByAnybodyElseItIsNot) {
    TheStage.Gets(One.Tcp, YouAreDead{});
    EXPECT_FALSE(TheStage.Me.IsLost());
}

TEST_F(Presence, AHostThatIsCutOffIsNotReplacedByTheStation) {
    for (const Remote& guest : {One, Two}) TheStage.Me.OnUnreachable(guest.Tcp, "gone");
    TheStage.Me.OnMisbehaved(TheStage.Host.Tcp, "it does not read");
    EXPECT_THAT(TheStage.Net.WereCutOff, ElementsAre(TheStage.Host.Tcp));
    EXPECT_FALSE(TheStage.Me.IsHost());
}

}  // namespace
}  // namespace corvenna::directplay
