#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

FoundSession SessionWithFlags(std::uint32_t flags) {
    FoundSession session;
    session.Description.Flags = flags;
    session.Description.Instance.Data1 = 0xABCD;
    session.Description.Application.Data1 = 0x1234;
    session.Host = {0x0A000001, 2300};
    return session;
}

// ---- Sessions that cannot be served

struct UnservableSession : testing::TestWithParam<std::uint32_t> {};

TEST_P(UnservableSession, IsNotEvenAskedAndShowsItsFlagsAndGuids) {
    Stage stage;
    stage.Me.BeginJoin(SessionWithFlags(GetParam() | SessionFlag::KeepAlive), {});
    ASSERT_TRUE(stage.Me.LastOutcome().Ready);
    const std::string& why = stage.Me.LastOutcome().Trouble;
    EXPECT_THAT(why, HasSubstr("flags 0x"));
    EXPECT_THAT(why, HasSubstr("{0000ABCD-0000-0000-0000-000000000000}"));
    EXPECT_THAT(why, HasSubstr("{00001234-0000-0000-0000-000000000000}"));
    EXPECT_THAT(stage.Net.All, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, UnservableSession,
                         testing::Values(SessionFlag::NoMessageId, SessionFlag::SecureServer,
                                         SessionFlag::MulticastServer, SessionFlag::ClientServer,
                                         SessionFlag::DirectPlayProtocol));

TEST(JoiningBySteps, AHostThatWantsALogonIsRefusedAndTheIdNotUsed) {
    Stage stage;
    stage.Me.BeginJoin(SessionWithFlags(0), {});
    RequestPlayerReply reply;
    reply.Id = 77;
    reply.Secure = true;
    stage.Gets(stage.Host.Tcp, reply);
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("logon"));
    EXPECT_THAT(stage.Net.To<AddForwardRequest>(stage.Host.Tcp), IsEmpty());
}

TEST(JoiningBySteps, ATableWithFlagsThatCannotBeServedIsRefused) {
    Stage stage;
    stage.Knocks();
    stage.Gets(stage.Host.Tcp, stage.Table(SessionFlag::MulticastServer));
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("relays"));
    EXPECT_FALSE(stage.Me.IsMember());
}

// ---- A host that falls silent, breaks off or talks nonsense at each step

TEST(JoiningBySteps, AHostThatGivesNoIdIsWaitedForOnlySoLong) {
    Stage stage;
    stage.Me.BeginJoin(SessionWithFlags(0), {});
    stage.Passes(stage.Times.Request - milliseconds(100));
    EXPECT_FALSE(stage.Me.LastOutcome().Ready);
    stage.Passes(milliseconds(200));
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("10.0.0.1:2300"));
    EXPECT_FALSE(stage.Me.IsMember());
}

TEST(JoiningBySteps, TheTableMayTakeAsLongAsTheOthersNeedToConfirm) {
    Stage stage;
    stage.Knocks();
    stage.Passes(seconds(15));  // so long other makes wait for a machine that does not answer
    EXPECT_FALSE(stage.Me.LastOutcome().Ready);
    stage.Gets(stage.Host.Tcp, stage.Table());
    EXPECT_TRUE(stage.Me.IsMember());
}

TEST(JoiningBySteps, AHostThatSendsNoTableIsWaitedForOnlySoLongAndToldSo) {
    Stage stage;
    stage.Knocks();
    stage.Passes(stage.Times.Table + milliseconds(100));
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("no answer"));
    const auto last = stage.Net.To<ChangeMember>(stage.Host.Tcp);
    ASSERT_THAT(last, SizeIs(1));
    EXPECT_EQ(last[0], (ChangeMember{Command::DeletePlayer, stage.OwnId, 0}));
    EXPECT_FALSE(stage.Me.IsMember());
}

TEST(JoiningBySteps, AHostThatBreaksOffIsProbedAndGivenUp) {
    for (const bool hasId : {false, true}) {
        Stage stage;
        if (hasId) {
            stage.Knocks();
        } else {
            stage.Me.BeginJoin(SessionWithFlags(0), {});
        }
        stage.Me.OnConnectionLost(stage.Host.Tcp);
        ASSERT_THAT(stage.Net.Probed, ElementsAre(stage.Host.Tcp));
        EXPECT_FALSE(stage.Me.LastOutcome().Ready);
        stage.Me.OnProbed(stage.Host.Tcp, false);
        EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("broken off"));
    }
}

TEST(JoiningBySteps, AHostThatIsNotThereIsNamedWithTheReason) {
    Stage stage;
    stage.Me.BeginJoin(SessionWithFlags(0), {});
    stage.Me.OnUnreachable(stage.Host.Tcp, "nobody listens");
    EXPECT_EQ(stage.Me.LastOutcome().Trouble, "the host at 10.0.0.1:2300: nobody listens");
}

TEST(JoiningBySteps, OneWhoIsNotTheHostCannotAnswerForIt) {
    Stage stage;
    stage.Me.BeginJoin(SessionWithFlags(0), {});
    RequestPlayerReply reply;
    reply.Id = 77;
    stage.Gets({0x0A000066, 2300}, reply);
    EXPECT_THAT(stage.Net.To<AddForwardRequest>(stage.Host.Tcp), IsEmpty());
    EXPECT_EQ(stage.Me.DroppedSoFar().Foreign, 1u);
}

TEST(JoiningBySteps, IdsThatNobodyMayHaveEndTheJoin) {
    for (const std::uint32_t id : {EverybodyId, UnknownId}) {
        Stage stage;
        stage.Me.BeginJoin(SessionWithFlags(0), {});
        RequestPlayerReply reply;
        reply.Id = id;
        stage.Gets(stage.Host.Tcp, reply);
        EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("gave out the id"));
    }
}

TEST(JoiningBySteps, ATableWithoutAHostEndsTheJoin) {
    Stage stage;
    stage.Knocks();
    NameTable table = stage.Table();
    table.Players.clear();
    stage.Gets(stage.Host.Tcp, table);
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("told of no host"));
}

TEST(JoiningBySteps, ATableWithTwoHostsIsReadAndOneOfThemCounts) {
    Stage stage;
    stage.Knocks();
    NameTable table = stage.Table();
    const Remote second = Stage::MachineNumber(7, 8);
    table.Players.push_back(second.Record(MemberFlag::System | MemberFlag::NameServer));
    stage.Gets(stage.Host.Tcp, table);
    EXPECT_TRUE(stage.Me.IsMember());
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 1u);  // both would listen at the one place
}

TEST(JoiningBySteps, RecordsThatNobodyMayHaveAreLeftOutOfTheTable) {
    Stage stage;
    stage.Knocks();
    NameTable table = stage.Table();
    const Remote odd = Stage::MachineNumber(7, 8);
    for (const std::uint32_t id : {EverybodyId, UnknownId, stage.OwnId, stage.Host.Id}) {
        PackedPlayer player = stage.Host.Announcement(u"Odd").Member;
        player.Id = id;
        table.Players.push_back(player);
        table.Groups.push_back(player);
        PackedPlayer machine = odd.RecordWithPlace();
        machine.Id = machine.SystemPlayerId = id;
        if (id != stage.Host.Id) table.Players.push_back(machine);
    }
    stage.Gets(stage.Host.Tcp, table);
    EXPECT_TRUE(stage.Me.IsMember());
    EXPECT_THAT(stage.PlayerIds(), ElementsAre(stage.Host.PlayerId));
    EXPECT_EQ(stage.Me.Everybody().Groups.Size(), 0u);
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 1u);
}

TEST(JoiningBySteps, AGroupThatNamesAMemberManyTimesHasHimOnce) {
    Stage stage;
    stage.Knocks();
    NameTable table = stage.Table();
    PackedPlayer group = stage.Host.Announcement(u"Group").Member;
    group.Id = Stage::IdOfSlot(9);
    group.Members.assign(1000, stage.Host.PlayerId);
    table.Groups.push_back(group);
    stage.Gets(stage.Host.Tcp, table);
    EXPECT_THAT(stage.Me.Everybody().Groups.Find(group.Id)->Members, ElementsAre(stage.Host.PlayerId));
}

TEST(JoiningBySteps, AHostThatSaysItDoesNotKnowUsEndsTheJoin) {
    Stage stage;
    stage.Knocks();
    stage.Gets(stage.Host.Tcp, YouAreDead{});
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("does not know"));
}

// ---- Ids later on

TEST(AskingForAPlayer, FailsWhenTheHostLeavesMeanwhile) {
    Stage stage;
    stage.Joins();
    stage.Me.BeginCreatePlayer(u"Second", {});
    stage.Gets(stage.Host.Tcp, ChangeMember{Command::DeletePlayer, stage.Host.Id, 0});
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("host has left"));
}

TEST(AskingForAPlayer, AnIdThatSomebodyHasIsRefused) {
    Stage stage;
    stage.Joins();
    stage.Me.BeginCreatePlayer(u"Second", {});
    RequestPlayerReply reply;
    reply.Id = stage.Host.PlayerId;
    stage.Gets(stage.Host.Tcp, reply);
    EXPECT_THAT(stage.Me.LastOutcome().Trouble, HasSubstr("in use"));
}

TEST(AskingForAPlayer, AnAnswerThatNobodyAskedForChangesNothing) {
    Stage stage;
    stage.Joins();
    const auto before = stage.PlayerIds();
    RequestPlayerReply reply;
    reply.Id = 4711;
    stage.Gets(stage.Host.Tcp, reply);
    EXPECT_EQ(stage.PlayerIds(), before);
}

TEST(Newcomers, AreToldOfByTheHostAlone) {
    Stage stage;
    stage.Guests = {Stage::MachineNumber(2, 4)};
    stage.Joins();
    const Remote newcomer = Stage::MachineNumber(4, 8);
    stage.Gets(stage.Guests[0].Tcp, AddForward{newcomer.RecordWithPlace()});
    EXPECT_EQ(stage.Me.Everybody().Machines.Find(newcomer.Id), nullptr);
    EXPECT_EQ(stage.Me.DroppedSoFar().Foreign, 1u);
}

}  // namespace
}  // namespace corvenna::directplay
