#include "link/directplay/inbox.h"

#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

Letter LetterOf(std::uint32_t machine, std::uint32_t to, std::size_t size = 10) {
    return {machine + 1, to, machine, Bytes(size)};
}

TEST(Inboxes, KeepTheOrderOfArrival) {
    const Limits limits;
    Inbox inbox(limits);
    for (std::uint32_t i = 0; i < 100; ++i) inbox.Put(LetterOf(i % 3, 7, i + 1));
    for (std::uint32_t i = 0; i < 100; ++i) EXPECT_EQ(inbox.Take()->Payload.size(), i + 1);
    EXPECT_FALSE(inbox.Take());
}

TEST(Inboxes, CountForEachPlayer) {
    const Limits limits;
    Inbox inbox(limits);
    inbox.Put(LetterOf(1, 7));
    inbox.Put(LetterOf(1, 8));
    inbox.Put(LetterOf(2, 7));
    EXPECT_EQ(inbox.Count(7), 2u);
    EXPECT_EQ(inbox.Count(8), 1u);
    EXPECT_EQ(inbox.Count(9), 0u);
    inbox.Take();
    EXPECT_EQ(inbox.Count(7), 1u);
    inbox.Forget(7);
    EXPECT_EQ(inbox.Count(7), 0u);
    EXPECT_EQ(inbox.Take()->To, 8u);
    EXPECT_FALSE(inbox.Take());
}

TEST(Inboxes, HoldSoManyMessagesOfOneMachineAndThoseOfOthersToo) {
    Limits limits;
    limits.WaitingMessages = 3;
    Inbox inbox(limits);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(inbox.Put(LetterOf(1, 7)));
    EXPECT_FALSE(inbox.Put(LetterOf(1, 7)));
    EXPECT_TRUE(inbox.Put(LetterOf(2, 7)));
    inbox.Take();
    EXPECT_TRUE(inbox.Put(LetterOf(1, 7)));
    EXPECT_FALSE(inbox.Put(LetterOf(1, 7)));
}

TEST(Inboxes, HoldSoManyBytesOfOneMachine) {
    Limits limits;
    limits.WaitingBytes = 100;
    Inbox inbox(limits);
    EXPECT_TRUE(inbox.Put(LetterOf(1, 7, 99)));
    EXPECT_TRUE(inbox.Put(LetterOf(1, 7, 1)));
    EXPECT_FALSE(inbox.Put(LetterOf(1, 7, 1)));
    EXPECT_FALSE(inbox.Put(LetterOf(2, 7, 101)));
    inbox.Forget(7);
    EXPECT_TRUE(inbox.Put(LetterOf(1, 7, 100)));
}

}  // namespace
}  // namespace corvenna::directplay
