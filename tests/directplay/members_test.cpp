#include "link/directplay/members.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Ids as the wire may bring them: small, large, and where a sign bit would be.
constexpr std::uint32_t AllKinds[] = {0, 1, 2, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};

Player PlayerOf(std::uint32_t id, std::uint32_t machineId = 0) {
    Player player;
    player.Id = id;
    player.MachineId = machineId;
    return player;
}

Machine MachineOf(std::uint32_t id, const Endpoint& tcp = {}) {
    Machine machine;
    machine.Id = id;
    machine.Tcp = tcp;
    return machine;
}

std::vector<std::uint32_t> IdsOf(const IdList<Player>& list) {
    std::vector<std::uint32_t> ids;
    for (const Player& player : list) ids.push_back(player.Id);
    return ids;
}

IdList<Player> ListOf(std::initializer_list<std::uint32_t> ids) {
    IdList<Player> list;
    for (const std::uint32_t id : ids) list.Add(PlayerOf(id));
    return list;
}

Group GroupOf(std::uint32_t id, std::vector<std::uint32_t> members) {
    Group group;
    group.Id = id;
    group.Members = std::move(members);
    return group;
}

// ---- A list by ids

TEST(IdList, FindsARecordByItsIdWhateverItIs) {
    IdList<Player> list;
    for (const std::uint32_t id : AllKinds) list.Add(PlayerOf(id, ~id));
    EXPECT_EQ(list.Size(), std::size(AllKinds));
    for (const std::uint32_t id : AllKinds) {
        ASSERT_NE(list.Find(id), nullptr) << id;
        EXPECT_EQ(list.Find(id)->MachineId, ~id);
    }
    EXPECT_EQ(list.Find(3), nullptr);
}

TEST(IdList, KeepsTheOrderInWhichTheyCame) {
    EXPECT_THAT(IdsOf(ListOf({9, 0xFFFFFFFF, 0, 5})), ElementsAre(9, 0xFFFFFFFF, 0, 5));
}

TEST(IdList, BehindARemovalTheOthersAreStillFound) {
    IdList<Player> list = ListOf({9, 7, 5, 3});
    list.Remove(7);
    EXPECT_THAT(IdsOf(list), ElementsAre(9, 5, 3));
    EXPECT_EQ(list.Find(7), nullptr);
    for (const std::uint32_t id : {9U, 5U, 3U}) EXPECT_EQ(list.Find(id)->Id, id);
    list.Add(PlayerOf(7));
    EXPECT_THAT(IdsOf(list), ElementsAre(9, 5, 3, 7));
}

TEST(IdList, RemovingWhoIsNotThereChangesNothing) {
    IdList<Player> list = ListOf({9, 7});
    list.Remove(8);
    list.Remove(0xFFFFFFFF);
    EXPECT_THAT(IdsOf(list), ElementsAre(9, 7));
}

TEST(IdList, ClearedItTakesTheSameIdsAgain) {
    IdList<Player> list = ListOf({9, 7});
    list.Clear();
    EXPECT_EQ(list.Size(), 0U);
    EXPECT_EQ(list.Find(9), nullptr);
    list.Add(PlayerOf(9));
    EXPECT_THAT(IdsOf(list), ElementsAre(9));
}

// ---- Members

TEST(Members, AMachineIsFoundByTheWholeOfItsPlace) {
    Members members;
    const Endpoint place{0x7F000001, 2300};
    members.Machines.Add(MachineOf(1, place));
    members.Machines.Add(MachineOf(2, {0x7F000001, 2301}));
    members.Machines.Add(MachineOf(3, {0xFFFFFFFF, 0xFFFF}));
    ASSERT_NE(members.MachineAt(place), nullptr);
    EXPECT_EQ(members.MachineAt(place)->Id, 1U);
    EXPECT_EQ(members.MachineAt({0xFFFFFFFF, 0xFFFF})->Id, 3U);
    EXPECT_EQ(members.MachineAt({0x7F000002, 2300}), nullptr);
    EXPECT_EQ(members.MachineAt({0x7F000001, 0}), nullptr);
}

TEST(Members, OfTwoMachinesAtOnePlaceTheFirstIsFound) {
    Members members;
    members.Machines.Add(MachineOf(5, {0x7F000001, 2300}));
    members.Machines.Add(MachineOf(4, {0x7F000001, 2300}));
    EXPECT_EQ(members.MachineAt({0x7F000001, 2300})->Id, 5U);
}

TEST(Members, ThePlayersOfAMachineComeInTheirOrder) {
    Members members;
    members.Players.Add(PlayerOf(30, 1));
    members.Players.Add(PlayerOf(20, 2));
    members.Players.Add(PlayerOf(10, 1));
    EXPECT_THAT(members.PlayersOf(1), ElementsAre(30, 10));
    EXPECT_THAT(members.PlayersOf(0xFFFFFFFF), IsEmpty());
}

TEST(Members, WhoLeavesIsTakenOutOfAllGroups) {
    Members members;
    members.Players.Add(PlayerOf(10));
    members.Players.Add(PlayerOf(20));
    members.Groups.Add(GroupOf(100, {10, 20}));
    members.Groups.Add(GroupOf(200, {10, 10}));  // a peer may name one twice
    EXPECT_TRUE(members.InAnyGroup(10));
    members.RemovePlayer(10);
    EXPECT_EQ(members.Players.Find(10), nullptr);
    EXPECT_THAT(members.Groups.Find(100)->Members, ElementsAre(20));
    EXPECT_THAT(members.Groups.Find(200)->Members, IsEmpty());
    EXPECT_FALSE(members.InAnyGroup(10));
    EXPECT_TRUE(members.InAnyGroup(20));
}

TEST(Members, AGroupMayNameAPlayerWhomNobodyKnows) {
    Members members;
    members.Groups.Add(GroupOf(100, {0xFFFFFFFF}));
    EXPECT_TRUE(members.InAnyGroup(0xFFFFFFFF));
    members.RemovePlayer(0xFFFFFFFF);
    EXPECT_FALSE(members.InAnyGroup(0xFFFFFFFF));
}

TEST(Members, EveryIdInUseIsKnown) {
    Members members;
    members.Machines.Add(MachineOf(1));
    members.Players.Add(PlayerOf(0x80000000));
    members.Groups.Add(GroupOf(0xFFFFFFFE, {77}));
    for (const std::uint32_t id : {1U, 0x80000000U, 0xFFFFFFFEU}) EXPECT_TRUE(members.Knows(id)) << id;
    for (const std::uint32_t id : {0U, 2U, 77U, 0xFFFFFFFFU}) EXPECT_FALSE(members.Knows(id)) << id;
}

// ---- From the records of messages

PackedPlayer Record(std::optional<std::u16string> shortName = u"N1",
                    std::optional<std::u16string> longName = u"Player") {
    PackedPlayer record;
    record.Flags = 0xFFFFFFFF;
    record.Id = 0xFFFFFFFE;
    record.ShortName = std::move(shortName);
    record.LongName = std::move(longName);
    record.Data = Bytes(3, std::byte{7});
    record.Members = {1, 0xFFFFFFFF};
    record.SystemPlayerId = 0x80000000;
    record.ParentId = 0x7FFFFFFF;
    return record;
}

TEST(MembersFromRecords, APlayerTakesWhatTheRecordTells) {
    const Player player = MakePlayer(Record());
    EXPECT_EQ(player.Id, 0xFFFFFFFE);
    EXPECT_EQ(player.MachineId, 0x80000000);
    EXPECT_EQ(player.Flags, 0xFFFFFFFF);
    EXPECT_EQ(player.Name, "N1");
    EXPECT_EQ(player.ShortName, u"N1");
    EXPECT_EQ(player.LongName, u"Player");
    EXPECT_EQ(player.Data, Bytes(3, std::byte{7}));
}

TEST(MembersFromRecords, AGroupTakesItsParentAndMembersToo) {
    const Group group = MakeGroup(Record());
    EXPECT_EQ(group.Id, 0xFFFFFFFE);
    EXPECT_EQ(group.MachineId, 0x80000000);
    EXPECT_EQ(group.ParentId, 0x7FFFFFFF);
    EXPECT_THAT(group.Members, ElementsAre(1, 0xFFFFFFFF));
    EXPECT_TRUE(group.Has(0xFFFFFFFF));
    EXPECT_FALSE(group.Has(0));
    EXPECT_EQ(group.Name, "N1");
    EXPECT_EQ(group.Data, Bytes(3, std::byte{7}));
}

TEST(MembersFromRecords, WithoutANameTheNameIsEmptyAndStaysAbsent) {
    const Player player = MakePlayer(Record(std::nullopt, std::nullopt));
    EXPECT_EQ(player.Name, "");
    EXPECT_FALSE(player.ShortName);
    EXPECT_FALSE(player.LongName);
}

TEST(MembersFromRecords, ANameIsKeptAsItCameAndInTheCodePage) {
    EXPECT_EQ(MakePlayer(Record(u"M\u00FCller \u20AC")).Name, "M\xFCller \x80");
    const std::u16string halfACharacter{u'A', 0xD800, u'B'};
    const Player player = MakePlayer(Record(halfACharacter));
    EXPECT_EQ(player.ShortName, halfACharacter);
    EXPECT_EQ(player.Name.front(), 'A');
    EXPECT_EQ(player.Name.back(), 'B');
}

TEST(MembersFromRecords, RenamingReplacesBothNames) {
    Player player = MakePlayer(Record());
    Rename(player, u"N2", std::nullopt);
    EXPECT_EQ(player.Name, "N2");
    EXPECT_FALSE(player.LongName);
    Group group = MakeGroup(Record());
    Rename(group, std::nullopt, u"Long");
    EXPECT_EQ(group.Name, "");
    EXPECT_FALSE(group.ShortName);
    EXPECT_EQ(group.LongName, u"Long");
}

}  // namespace
}  // namespace corvenna::directplay
