#include "link/directplay/reassembly.h"

#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

constexpr std::uint32_t Sender = 77;
const TimePoint Start{std::chrono::hours(1)};

Bytes Whole(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>(i * 7);
    return bytes;
}

Packet Piece(const Bytes& whole, std::size_t offset, std::size_t size, std::uint32_t message = 1) {
    Packet packet;
    packet.Message.Data1 = message;
    packet.Offset = static_cast<std::uint32_t>(offset);
    packet.MessageSize = static_cast<std::uint32_t>(whole.size());
    packet.Data.assign(whole.begin() + static_cast<std::ptrdiff_t>(offset),
                       whole.begin() + static_cast<std::ptrdiff_t>(offset + size));
    return packet;
}

struct Pieces : testing::Test {
    Limits Bounds;
    Reassembly Puzzle{Bounds};
    Bytes Message = Whole(30);
};

TEST_F(Pieces, AreJoinedInAnyOrder) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 20, 10), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    EXPECT_EQ(Puzzle.Put(Sender, Piece(Message, 10, 10), Start), Message);
}

TEST_F(Pieces, OneMayBeTheWhole) { EXPECT_EQ(Puzzle.Put(Sender, Piece(Message, 0, 30), Start), Message); }

TEST_F(Pieces, TheSameOneAgainChangesNothing) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    EXPECT_EQ(Puzzle.Put(Sender, Piece(Message, 10, 20), Start), Message);
}

TEST_F(Pieces, OfDifferentMessagesAndSendersAreNotMixed) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10, 1), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 10, 20, 2), Start));
    EXPECT_FALSE(Puzzle.Put(Sender + 1, Piece(Message, 10, 20, 1), Start));
    EXPECT_EQ(Puzzle.Put(Sender, Piece(Message, 10, 20, 1), Start), Message);
}

TEST_F(Pieces, ThatOverlapEndTheirMessage) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 9, 10), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 10, 20), Start));  // the first has been forgotten
}

TEST_F(Pieces, BehindTheEndOrOfAnotherSizeEndTheirMessage) {
    Packet beyond = Piece(Message, 20, 10);
    beyond.Offset = 21;
    EXPECT_FALSE(Puzzle.Put(Sender, beyond, Start));
    beyond.Offset = 0xFFFFFFFF;
    EXPECT_FALSE(Puzzle.Put(Sender, beyond, Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    Packet longer = Piece(Message, 10, 20);
    longer.MessageSize = 31;
    EXPECT_FALSE(Puzzle.Put(Sender, longer, Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 10, 20), Start));
}

TEST_F(Pieces, OfMoreThanAFrameAreNotKept) {
    Packet packet = Piece(Message, 0, 10);
    for (const std::uint32_t size : {0x100000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        packet.MessageSize = size;
        EXPECT_FALSE(Puzzle.Put(Sender, packet, Start));
    }
}

TEST_F(Pieces, WithoutAnythingInThemAreNotKept) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 0), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece({}, 0, 0), Start));
}

TEST_F(Pieces, AreForgottenAfterAWhile) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 10, 20), Start + Bounds.ReassemblyAge + seconds(1)));
}

TEST_F(Pieces, OfOneWhoBeginsManyMessagesDoNotPushOutThoseOfOthers) {
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 0, 10), Start));
    for (std::uint32_t i = 0; i < 1000; ++i) Puzzle.Put(Sender + 1, Piece(Message, 0, 10, 100 + i), Start);
    EXPECT_EQ(Puzzle.Put(Sender, Piece(Message, 10, 20), Start), Message);
}

TEST_F(Pieces, AreOnlySoManyToAMessage) {
    Bounds.PiecesOfMessage = 5;
    for (std::size_t i = 0; i < 5; ++i) EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, i, 1), Start));
    EXPECT_FALSE(Puzzle.Put(Sender, Piece(Message, 5, 25), Start));
}

}  // namespace
}  // namespace corvenna::directplay
