#include "link/directplay/wire_bytes.h"

#include <gtest/gtest.h>

#include "directplay/hex.h"

namespace corvenna::directplay {
namespace {

TEST(WireBytes, NumbersAreLittleEndianButForPortsAndAddresses) {
    ByteWriter writer;
    writer.U8(0x01);
    writer.U16(0x0203);
    writer.U32(0x04050607);
    writer.BigEndianU16(0x0809);
    writer.BigEndianU32(0x0A0B0C0D);
    const Bytes bytes = writer.Release();
    EXPECT_EQ(ToHex(bytes), "01 03 02 07 06 05 04 08 09 0a 0b 0c 0d");

    ByteReader reader(bytes);
    EXPECT_EQ(reader.U8(), 0x01);
    EXPECT_EQ(reader.U16(), 0x0203);
    EXPECT_EQ(reader.U32(), 0x04050607u);
    EXPECT_EQ(reader.BigEndianU16(), 0x0809);
    EXPECT_EQ(reader.BigEndianU32(), 0x0A0B0C0Du);
    EXPECT_EQ(reader.Left(), 0u);
}

TEST(WireBytes, NoReadGoesPastTheEnd) {
    const Bytes three = FromHex("01 02 03");
    EXPECT_THROW(ByteReader(three).U32(), WireError);
    EXPECT_THROW(ByteReader(three).BigEndianU32(), WireError);
    EXPECT_THROW(ByteReader(three).Take(4), WireError);
    EXPECT_THROW(ByteReader(three).At(3).U8(), WireError);
    EXPECT_THROW(ByteReader(three).At(2).U16(), WireError);
    EXPECT_THROW(ByteReader(three).At(4), WireError);
    EXPECT_THROW(ByteReader(three).At(0xFFFFFFFF), WireError);
    EXPECT_EQ(ByteReader(three).At(3).Left(), 0u);
}

TEST(WireBytes, ATextEndsAtItsNulAndMustHaveOne) {
    const Bytes bytes = FromHex("41 00 42 00 00 00 43 00");
    ByteReader reader(bytes);
    EXPECT_EQ(reader.Text(), u"AB");
    EXPECT_THROW(reader.Text(), WireError);
    EXPECT_THROW(ByteReader(ByteSpan(bytes).first(3)).Text(), WireError);
    EXPECT_THROW(ByteReader(ByteSpan()).Text(), WireError);
}

TEST(WireBytes, AWordKeptForLaterIsOverwrittenInItsPlace) {
    ByteWriter writer;
    writer.U32(0);
    writer.Text(u"A");
    writer.PutU32(0, 0x11223344);
    EXPECT_EQ(ToHex(writer.Release()), "44 33 22 11 41 00 00 00");
}

}  // namespace
}  // namespace corvenna::directplay
