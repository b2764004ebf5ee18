#include "world/byte_reader.h"

#include <gmock/gmock.h>

#include <vector>

#include "world/temp_folder.h"

namespace corvenna {
namespace {

TEST(ToSingle, TheWordOfNoughtIs0AndAnExponentOfNoughtIsOneLikeAnyOther) {
    EXPECT_EQ(ToSingle(0), 0.0);
    EXPECT_EQ(ToSingle(std::bit_cast<std::int32_t>(1.5F)), 1.5);
    EXPECT_EQ(ToSingle(std::bit_cast<std::int32_t>(-250.25F)), -250.25);
    EXPECT_EQ(ToSingle(1), std::ldexp(1 + 1 / 8388608.0, -127));
    EXPECT_EQ(ToSingle(std::numeric_limits<std::int32_t>::min()), -std::ldexp(1, -127));
}

TEST(ByteReader, ReadShortLessensNegativeNumbersByOneTooLittle) {
    const std::vector<std::uint8_t> bytes = {0xFF, 0x7F, 0x00, 0x80, 0xFF, 0xFF, 0xFE, 0xFF};
    const ByteReader reader(bytes);
    EXPECT_EQ(reader.ReadShort(0), 32767);
    EXPECT_EQ(reader.ReadShort(2), -32767);
    EXPECT_EQ(reader.ReadShort(4), 0);
    EXPECT_EQ(reader.ReadShort(6), -1);
    EXPECT_THROW(reader.ReadShort(7), DamagedData);
    EXPECT_THROW(reader.ReadShort(-1), DamagedData);
}

TEST(ByteReader, ReadsLittleEndianValues) {
    const std::vector<std::uint8_t> bytes = {1, 2, 3, 0x84, 0xFF};
    const ByteReader reader(bytes);
    EXPECT_EQ(reader.ReadByte(4), 0xFF);
    EXPECT_EQ(reader.ReadWord(2), 0x8403);
    EXPECT_EQ(reader.ReadLong(0), static_cast<std::int32_t>(0x84030201));
}

TEST(ByteReader, ZeroBytesInATextAreSkippedAndEndNothing) {
    const std::vector<std::uint8_t> bytes = {'a', 0, 0, 'b', 0xE9, 0};
    const ByteReader reader(bytes);
    std::string text = "x";
    reader.ReadText(0, 6, text);
    EXPECT_EQ(text, "xab\xE9");
    reader.ReadText(400, 0, text);
    reader.ReadText(400, -7, text);
    EXPECT_EQ(text, "xab\xE9");
}

TEST(ByteReader, ARangeMustLieWhollyInTheBuffer) {
    const std::vector<std::uint8_t> bytes(4);
    const ByteReader reader(bytes);
    constexpr std::int64_t Highest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t Lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(reader.Range(4, 0), bytes.data() + 4);
    EXPECT_EQ(reader.Range(0, 4), bytes.data());
    for (const auto& [offset, length] : std::vector<std::pair<std::int64_t, std::int64_t>>{{1, 4},
                                                                                           {4, 1},
                                                                                           {5, 0},
                                                                                           {-1, 1},
                                                                                           {0, -1},
                                                                                           {Highest, 1},
                                                                                           {1, Highest},
                                                                                           {Lowest, 1},
                                                                                           {0, Lowest}}) {
        EXPECT_THROW(reader.Range(offset, length), DamagedData) << offset << " " << length;
    }
    EXPECT_EQ(WhatIsThrown<DamagedData>([&] { reader.ReadLong(1); }),
              "byte 1: a read of 4 bytes leaves the file");
}

}  // namespace
}  // namespace corvenna
