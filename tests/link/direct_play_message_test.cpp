#include "link/direct_play_message.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace corvenna {
namespace {

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

std::vector<std::byte> Written(const DirectPlayMessage& message) {
    return {message.Bytes().begin(), message.Bytes().end()};
}

TEST(DirectPlayMessage, WritesAppendLittleEndian) {
    DirectPlayMessage message;
    message.WriteLong(0x01020304);
    message.WriteShort(0x0506);
    message.WriteByte(0x07);
    EXPECT_EQ(Written(message), Bytes({4, 3, 2, 1, 6, 5, 7}));
}

TEST(DirectPlayMessage, NegativeNumbersAreTwosComplement) {
    DirectPlayMessage message;
    message.WriteLong(-2);
    message.WriteShort(-3);
    EXPECT_EQ(Written(message), Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0xFD, 0xFF}));
}

TEST(DirectPlayMessage, ReadsTakeTheNextBytes) {
    DirectPlayMessage message(Bytes({4, 3, 2, 1, 6, 5, 7}));
    EXPECT_EQ(message.ReadLong(), 0x01020304);
    EXPECT_EQ(message.ReadShort(), 0x0506);
    EXPECT_EQ(message.Left(), 1u);
    EXPECT_EQ(message.ReadByte(), 7);
    EXPECT_EQ(message.Left(), 0u);
}

TEST(DirectPlayMessage, EveryExtremeComesBackAsItWasWritten) {
    for (std::int32_t value : {std::numeric_limits<std::int32_t>::min(), -1, 0, 1, 255, 256, 65535, 65536,
                               std::numeric_limits<std::int32_t>::max()}) {
        DirectPlayMessage message;
        message.WriteLong(value);
        EXPECT_EQ(message.ReadLong(), value);
    }
    for (int value = -32768; value <= 32767; ++value) {
        DirectPlayMessage message;
        message.WriteShort(static_cast<std::int16_t>(value));
        ASSERT_EQ(message.ReadShort(), value);
    }
    for (int value = 0; value <= 255; ++value) {
        DirectPlayMessage message;
        message.WriteByte(static_cast<std::uint8_t>(value));
        ASSERT_EQ(message.ReadByte(), value);
    }
}

TEST(DirectPlayMessage, AReadBehindTheEndThrowsAndTakesNothing) {
    for (std::size_t size = 0; size < 4; ++size) {
        DirectPlayMessage message(std::vector<std::byte>(size, std::byte{1}));
        EXPECT_THROW(message.ReadLong(), MessageError) << size;
        EXPECT_EQ(message.Left(), size);
    }
    DirectPlayMessage oneByte(Bytes({9}));
    EXPECT_THROW(oneByte.ReadShort(), MessageError);
    EXPECT_EQ(oneByte.ReadByte(), 9);
    EXPECT_THROW(oneByte.ReadByte(), MessageError);
}

TEST(DirectPlayMessage, ABlankMessageHoldsNothing) {
    DirectPlayMessage message;
    EXPECT_EQ(message.Left(), 0u);
    EXPECT_TRUE(message.Bytes().empty());
    EXPECT_THROW(message.ReadByte(), MessageError);
}

TEST(DirectPlayMessage, AssigningStartsAtTheFirstByteAgain) {
    DirectPlayMessage message(Bytes({1, 2, 3, 4}));
    message.ReadLong();
    message.Assign(Bytes({5, 6}));
    EXPECT_EQ(message.Left(), 2u);
    EXPECT_EQ(message.ReadByte(), 5);
}

TEST(DirectPlayMessage, ACopyHasItsOwnCursor) {
    DirectPlayMessage message(Bytes({1, 2}));
    DirectPlayMessage copy = message;
    message.ReadByte();
    EXPECT_EQ(copy.ReadByte(), 1);
}

}  // namespace
}  // namespace corvenna
