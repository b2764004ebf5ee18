#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/stage.h"

namespace corvenna::directplay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

RequestId AsksForAPlace() { return {Command::RequestPlayerId, MemberFlag::System | MemberFlag::OfSender}; }
RequestId AsksForAPlayer() { return {Command::RequestPlayerId, MemberFlag::OfSender}; }

// ---- Answering those who search

TEST(AHostThatIsSearched, AnswersEachAskerOnlySoOftenInASecond) {
    Stage stage;
    stage.Hosts();
    const Endpoint asker{0x0A000009, 2300};
    for (int i = 0; i < 100; ++i) stage.Gets(asker, EnumSessions{});
    EXPECT_THAT(stage.Net.To<EnumSessionsReply>(asker), SizeIs(stage.Bounds.SearchAnswersPerSecond));
    stage.Passes(seconds(1));
    stage.Gets(asker, EnumSessions{});
    EXPECT_THAT(stage.Net.To<EnumSessionsReply>(asker), SizeIs(stage.Bounds.SearchAnswersPerSecond + 1));
}

TEST(AHostThatIsSearched, OpensOnlySoManyConnectionsToStrangersInASecond) {
    Stage stage;
    stage.Hosts();
    for (std::uint16_t port = 1; port <= 10000; ++port) stage.Gets({0x0A000009, port}, EnumSessions{});
    EXPECT_THAT(stage.Net.All, SizeIs(stage.Bounds.StrangersPerSecond));
}

TEST(AHostThatIsSearched, ClosesTheConnectionBehindItsAnswer) {
    Stage stage;
    stage.Hosts();
    const Endpoint asker{0x0A000009, 2300};
    stage.Gets(asker, EnumSessions{});
    EXPECT_THAT(stage.Net.Disconnected, ElementsAre(asker));
}

TEST(AHostThatIsSearched, AnswersNobodyWithoutAPort) {
    Stage stage;
    stage.Hosts();
    stage.Gets({0x0A000009, 0}, EnumSessions{});
    EXPECT_THAT(stage.Net.All, IsEmpty());
}

// ---- Giving out ids

TEST(AHost, GivesAMachineThatDoesNotUseThemOnlyAFewIds) {
    Stage stage;
    stage.Hosts();
    const Endpoint asker{0x0A000009, 2300};
    for (int i = 0; i < 10; ++i) stage.Gets(asker, AsksForAPlace());
    std::size_t given = 0;
    for (const auto& reply : stage.Net.To<RequestPlayerReply>(asker)) given += reply.Id != 0 ? 1 : 0;
    EXPECT_EQ(given, 4u);
}

TEST(AHost, IsNotBarredToOthersByOneAddressThatAsksForManyIds) {
    Stage stage;
    stage.Hosts();
    for (std::uint16_t port = 1; port <= 500; ++port) stage.Gets({0x0A000066, port}, AsksForAPlace());
    stage.Passes(seconds(1));
    const Endpoint newcomer{0x0A000009, 2300};
    stage.Gets(newcomer, AsksForAPlace());
    ASSERT_THAT(stage.Net.To<RequestPlayerReply>(newcomer), SizeIs(1));
    EXPECT_EQ(stage.Net.To<RequestPlayerReply>(newcomer)[0].Result, Result::Ok);
}

TEST(AHost, ServesItsMembersHoweverManyStrangersAskForIds) {
    Stage stage;
    stage.Hosts();
    const Remote member = stage.Admits(2);
    for (std::uint32_t ip = 0; ip < 300; ++ip) {
        stage.Gets({0x0B000000 + ip, 2300}, AsksForAPlace());
        stage.Passes(milliseconds(100));
    }
    stage.Gets(member.Tcp, AsksForAPlayer());
    EXPECT_NE(stage.Net.To<RequestPlayerReply>(member.Tcp).back().Id, 0u);
}

TEST(AHost, RefusesOnlySoManyStrangersInASecond) {
    Stage stage;
    stage.Hosts(SessionFlag::JoinDisabled);
    for (std::uint16_t port = 1; port <= 10000; ++port) stage.Gets({0x0A000066, port}, AsksForAPlace());
    EXPECT_THAT(stage.Net.All, SizeIs(stage.Bounds.StrangersPerSecond));
}

TEST(AHost, TakesAnIdBackThatIsNotUsedInTime) {
    Stage stage;
    stage.Hosts();
    const Endpoint asker{0x0A000009, 2300};
    stage.Gets(asker, AsksForAPlace());
    const std::uint32_t id = stage.Net.To<RequestPlayerReply>(asker)[0].Id;
    stage.Passes(stage.Bounds.PendingJoinAge + seconds(1));
    EXPECT_THAT(stage.Net.Disconnected, Contains(asker));
    Remote late = Stage::MachineNumber(9, 0);
    late.Id = id;
    stage.Gets(asker, AddForwardRequest{late.Record(), {}, Stage::Key});
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 0u);
    EXPECT_EQ(stage.Me.DroppedSoFar().Foreign, 1u);
}

TEST(AHost, TakesNoPlayerWhoseIdItDidNotGiveOut) {
    Stage stage;
    stage.Hosts();
    Remote member = stage.Admits(2);
    member.PlayerId = 0x7FFFFFF0 ^ Stage::Key;
    stage.Gets(member.Tcp, member.Announcement());
    EXPECT_THAT(stage.PlayerIds(), Not(Contains(member.PlayerId)));
    EXPECT_EQ(stage.Me.DroppedSoFar().Foreign, 1u);
}

TEST(AHost, TakesNoPlayerWithAnIdGivenToAnother) {
    Stage stage;
    stage.Hosts();
    const Remote one = stage.Admits(2);
    Remote two = stage.Admits(3);
    stage.Gets(one.Tcp, AsksForAPlayer());
    two.PlayerId = stage.Net.To<RequestPlayerReply>(one.Tcp).back().Id;
    stage.Gets(two.Tcp, two.Announcement());
    EXPECT_THAT(stage.PlayerIds(), Not(Contains(two.PlayerId)));
    EXPECT_EQ(stage.Me.DroppedSoFar().Foreign, 1u);
}

// ---- Letting machines in

TEST(AHost, LetsAMachineInOnlyWithTheIdItWasGiven) {
    Stage stage;
    stage.Hosts();
    const Remote one = Stage::MachineNumber(2, 0);
    stage.Gets(one.Tcp, AsksForAPlace());
    Remote thief = Stage::MachineNumber(3, 0);
    thief.Id = stage.Net.To<RequestPlayerReply>(one.Tcp)[0].Id;
    stage.Gets(thief.Tcp, AddForwardRequest{thief.Record(), {}, Stage::Key});
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 0u);
}

TEST(AHost, RefusesNewcomersBeyondTheNumberOfMachines) {
    Limits bounds;
    bounds.Machines = 2;
    Stage stage(bounds);
    stage.Hosts();
    std::vector<Remote> newcomers;
    for (std::uint32_t number = 2; number < 6; ++number) {
        newcomers.push_back(Stage::MachineNumber(number, 0));
        stage.Gets(newcomers.back().Tcp, AsksForAPlace());
        newcomers.back().Id = stage.Net.To<RequestPlayerReply>(newcomers.back().Tcp)[0].Id;
    }
    for (const Remote& newcomer : newcomers) {
        stage.Gets(newcomer.Tcp, AddForwardRequest{newcomer.Record(), {}, Stage::Key});
    }
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 2u);
    const auto refusals = stage.Net.To<AddForwardReply>(newcomers[3].Tcp);
    ASSERT_THAT(refusals, SizeIs(1));
    EXPECT_EQ(refusals[0].Error, Result::NoNewPlayers);
}

TEST(AHost, DoesNotLetANewcomerWaitForAMachineThatDoesNotAnswer) {
    Stage stage;
    stage.Hosts();
    stage.Admits(2);  // says nothing about the next one
    Remote newcomer = Stage::MachineNumber(3, 0);
    stage.Gets(newcomer.Tcp, AsksForAPlace());
    newcomer.Id = stage.Net.To<RequestPlayerReply>(newcomer.Tcp)[0].Id;
    stage.Gets(newcomer.Tcp, AddForwardRequest{newcomer.Record(), {}, Stage::Key});
    EXPECT_THAT(stage.Net.To<NameTable>(newcomer.Tcp), IsEmpty());
    stage.Passes(seconds(4));  // other makes of newcomers wait for five
    EXPECT_THAT(stage.Net.To<NameTable>(newcomer.Tcp), SizeIs(1));
}

TEST(AHost, RefusesNewcomersWhenTheNameTableNoLongerFitsIntoAFrame) {
    Limits bounds;
    bounds.TableBytesOfMachine = 4 << 20;
    Stage stage(bounds);
    stage.Hosts();
    Remote member = stage.Admits(2);
    for (int i = 0; i < 60; ++i) {
        stage.Gets(member.Tcp, AsksForAPlayer());
        member.PlayerId = stage.Net.To<RequestPlayerReply>(member.Tcp).back().Id;
        CreateMember announcement = member.Announcement(std::u16string(4096, 'x'));
        announcement.Member.LongName = announcement.Member.ShortName;
        announcement.Member.Data.resize(16384);
        stage.Gets(member.Tcp, announcement);
    }
    stage.Guests = {member};
    Remote newcomer = Stage::MachineNumber(3, 0);
    stage.Gets(newcomer.Tcp, AsksForAPlace());
    newcomer.Id = stage.Net.To<RequestPlayerReply>(newcomer.Tcp)[0].Id;
    stage.Gets(newcomer.Tcp, AddForwardRequest{newcomer.Record(), {}, Stage::Key});
    stage.Gets(member.Tcp, AddForwardAck{newcomer.Id});
    EXPECT_NO_THROW(stage.Passes(seconds(20)));
    EXPECT_THAT(stage.Net.To<AddForwardReply>(newcomer.Tcp), SizeIs(1));
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 1u);
}

TEST(AHost, CutsAMachineOffWhosePlayersTakeTooMuchRoom) {
    Stage stage;
    stage.Hosts();
    Remote member = stage.Admits(2);
    stage.Gets(member.Tcp, DataChanged{Command::PlayerDataChanged, member.PlayerId, Bytes(16384)});
    EXPECT_THAT(stage.Net.WereCutOff, IsEmpty());
    stage.Gets(member.Tcp, AsksForAPlayer());
    member.PlayerId = stage.Net.To<RequestPlayerReply>(member.Tcp).back().Id;
    CreateMember announcement = member.Announcement();
    announcement.Member.Data.resize(16384);
    stage.Gets(member.Tcp, announcement);
    EXPECT_THAT(stage.Net.WereCutOff, ElementsAre(member.Tcp));
    EXPECT_THAT(stage.Me.TakeNotices(), Contains(testing::HasSubstr("cut off")));
}

TEST(AHost, SeesAMachineThatComesBackAsANewOne) {
    Stage stage;
    stage.Hosts();
    const Remote before = stage.Admits(2);
    Remote after = Stage::MachineNumber(2, 0);
    stage.Gets(after.Tcp, AsksForAPlace());
    after.Id = stage.Net.To<RequestPlayerReply>(after.Tcp).back().Id;
    stage.Gets(after.Tcp, AddForwardRequest{after.Record(), {}, Stage::Key});
    EXPECT_THAT(stage.PlayerIds(), Not(Contains(before.PlayerId)));
    EXPECT_EQ(stage.Me.Everybody().Machines.Size(), 1u);
    EXPECT_NE(after.Id, before.Id);
}

}  // namespace
}  // namespace corvenna::directplay
