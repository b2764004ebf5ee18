#include "link/directplay/id_table.h"

#include <gtest/gtest.h>

#include <set>

namespace corvenna::directplay {
namespace {

TEST(IdTables, GiveOutSlotAndUseBehindTheKey) {
    IdTable ids(0x08D80E77);
    EXPECT_EQ(ids.Allocate(), 0x08D90E77u);
    EXPECT_EQ(ids.Allocate(), 0x08D90E76u);
    EXPECT_EQ(ids.Allocate(), 0x08D90E75u);
    EXPECT_EQ(ids.Allocate(), 0x08D90E74u);
}

TEST(IdTables, UseTheLowestFreeSlotAgainUnderAnotherId) {
    IdTable ids(0x0195FDA9);
    for (int i = 0; i < 5; ++i) ids.Allocate();
    ids.Free(0x0194FDAD);  // slot 4
    EXPECT_EQ(ids.Allocate(), 0x0197FDADu);
    EXPECT_EQ(ids.Allocate(), 0x0194FDACu);  // slot 5, its first use
}

TEST(IdTables, FreeingWhatTheyDoNotHaveChangesNothing) {
    IdTable ids(0x100);
    const std::uint32_t id = ids.Allocate().value();
    ids.Free(id ^ 0x00030000);  // the same slot, another use
    ids.Free(0xFFFF);
    EXPECT_NE((ids.Allocate().value() ^ 0x100) & 0xFFFF, 0u);
    ids.Free(id);
    ids.Free(id);
    EXPECT_EQ((ids.Allocate().value() ^ 0x100) & 0xFFFF, 0u);
}

TEST(IdTables, PassOverIdsThatMeanSomethingElse) {
    EXPECT_EQ(IdTable(0x00010000).Allocate(), 2u);           // 0 is everybody, 1 the server's player
    EXPECT_EQ(IdTable(0xFFFEFFFF).Allocate(), 0xFFFFFFFEu);  // 0xFFFFFFFF is nobody
}

TEST(IdTables, ContinueBehindTheIdsOfAnEarlierHost) {
    IdTable ids(0);
    ids.TakeOver(0x00050000);
    ids.TakeOver(0x00020003);
    EXPECT_EQ(ids.Allocate(), 0x00010001u);
    EXPECT_EQ(ids.Allocate(), 0x00010002u);
    EXPECT_EQ(ids.Allocate(), 0x00010004u);
    ids.Free(0x00050000);
    EXPECT_EQ(ids.Allocate(), 0x00060000u);
}

TEST(IdTables, NeverGiveAnIdTwice) {
    IdTable ids(0x12345678);
    std::set<std::uint32_t> seen;
    for (int i = 0; i < 100000; ++i) {
        const std::uint32_t id = ids.Allocate().value();
        ASSERT_TRUE(seen.insert(id).second) << i;
        ids.Free(id);
    }
}

TEST(IdTables, LeaveTheHighestBitAsTheKeyHasIt) {
    IdTable ids(0x12345678);
    ids.TakeOver((0x7FFFu << 16) ^ 0x12345678);  // as often as slot 0 can be used
    ids.Free((0x7FFFu << 16) ^ 0x12345678);
    EXPECT_EQ((ids.Allocate().value() ^ 0x12345678) & 0xFFFF, 1u);
    for (int i = 0; i < 70000; ++i) {
        const std::uint32_t id = ids.Allocate().value();
        ASSERT_LT(id, 0x80000000u) << i;
        ids.Free(id);
    }
}

TEST(IdTables, EndWhenEverySlotIsTaken) {
    IdTable ids(0x12340000);
    for (int i = 0; i < 0x10000; ++i) ASSERT_TRUE(ids.Allocate()) << i;
    EXPECT_FALSE(ids.Allocate());
    ids.Free(0x12350000 ^ 0xABCD);
    EXPECT_EQ(ids.Allocate(), (0x00020000u | 0xABCD) ^ 0x12340000);
}

}  // namespace
}  // namespace corvenna::directplay
