#include "link/directplay/wire_frame.h"

#include <gtest/gtest.h>

#include "directplay/hex.h"
#include "directplay/wire_vectors.h"

namespace corvenna::directplay {
namespace {

TEST(Frames, ThreeTokensAreKnown) {
    EXPECT_EQ(FrameSize(0xFAB00020), 0x20u);
    EXPECT_EQ(FrameSize(0xCAB00020), 0x20u);
    EXPECT_EQ(FrameSize(0xBAB00020), 0x20u);
    EXPECT_THROW(FrameSize(0xAAB00020), WireError);
    EXPECT_THROW(FrameSize(0x00000020), WireError);
    EXPECT_THROW(FrameSize(0x20544547), WireError);  // the start of a web request
}

TEST(Frames, AFrameIsAtLeastItsHeader) {
    EXPECT_THROW(FrameSize(0xFAB00000), WireError);
    EXPECT_THROW(FrameSize(0xFAB00013), WireError);
    EXPECT_EQ(FrameSize(0xFAB00014), 20u);
    EXPECT_EQ(FrameSize(0xFABFFFFF), MaxFrameSize);
}

TEST(Frames, AHeaderCarriesTheListeningPortAndNoAddress) {
    const Bytes message = FromHex("70 6c 61 79 18 00 0e 00");
    EXPECT_EQ(Frame(2300, message), FromHex(vectors::V32));
}

TEST(Frames, AMessageLongerThanAFrameIsRefused) {
    EXPECT_EQ(Frame(2300, Bytes(MaxFrameSize - HeaderSize)).size(), MaxFrameSize);
    EXPECT_THROW(Frame(2300, Bytes(MaxFrameSize - HeaderSize + 1)), WireError);
}

TEST(Frames, ASystemMessageIsToldByItsSignature) {
    const Bytes frame = FromHex(vectors::V5);
    const Incoming incoming = SortFrame(frame);
    EXPECT_EQ(incoming.What, Incoming::Kind::System);
    EXPECT_EQ(incoming.Port, 2301);
    EXPECT_EQ(incoming.Body.size(), 12u);
}

TEST(Frames, AnythingElseOfSufficientLengthIsAPlayerMessage) {
    const Bytes frame = FromHex(vectors::V20);
    const Incoming incoming = SortFrame(frame);
    EXPECT_EQ(incoming.What, Incoming::Kind::Player);
    EXPECT_EQ(incoming.Port, 2349);
    EXPECT_EQ(ToHex(incoming.Body), "34 77 00 00 37 13 00 00 01 02 03 04 05 06 07 08");

    Bytes bare(27);
    EXPECT_THROW(SortFrame(bare), WireError);
    bare.resize(28);
    EXPECT_EQ(SortFrame(bare).Body.size(), 8u);
}

TEST(Datagrams, APlayerMessageHasNoHeader) {
    const Bytes datagram = FromHex(vectors::V13);
    const Incoming incoming = SortDatagram(datagram);
    EXPECT_EQ(incoming.What, Incoming::Kind::Player);
    EXPECT_EQ(incoming.Port, 0);
    EXPECT_EQ(incoming.Body.size(), 21u);
}

TEST(Datagrams, ASystemMessageHasAHeaderOfItsOwnLength) {
    Bytes datagram = FromHex(vectors::V22);
    EXPECT_EQ(SortDatagram(datagram).What, Incoming::Kind::System);
    EXPECT_EQ(SortDatagram(datagram).Port, 2349);
    datagram.push_back(std::byte{0});  // the length no longer agrees: a player message that looks like one
    EXPECT_EQ(SortDatagram(datagram).What, Incoming::Kind::Player);
}

TEST(Datagrams, SevenBytesAreNoMessage) {
    EXPECT_THROW(SortDatagram(Bytes(7)), WireError);
    EXPECT_THROW(SortDatagram(Bytes()), WireError);
    EXPECT_EQ(SortDatagram(Bytes(8)).Body.size(), 8u);
}

TEST(Cutting, AFrameMayArriveByteByByte) {
    const Bytes frame = FromHex(vectors::V9);
    FrameCutter cutter;
    for (std::size_t i = 0; i + 1 < frame.size(); ++i) {
        cutter.Append(ByteSpan(frame).subspan(i, 1));
        ASSERT_FALSE(cutter.Next()) << i;
    }
    cutter.Append(ByteSpan(frame).last(1));
    const auto cut = cutter.Next();
    ASSERT_TRUE(cut);
    EXPECT_EQ(ToHex(*cut), ToHex(frame));
    EXPECT_EQ(cutter.Pending(), 0u);
}

TEST(Cutting, SeveralFramesMayArriveAtOnce) {
    const Bytes one = FromHex(vectors::V5);
    const Bytes two = FromHex(vectors::V7);
    Bytes stream = one;
    stream.insert(stream.end(), two.begin(), two.end());
    stream.insert(stream.end(), one.begin(), one.begin() + 5);
    FrameCutter cutter;
    cutter.Append(stream);
    EXPECT_EQ(ToHex(*cutter.Next()), ToHex(one));
    EXPECT_EQ(ToHex(*cutter.Next()), ToHex(two));
    EXPECT_FALSE(cutter.Next());
    cutter.Compact();
    EXPECT_EQ(cutter.Pending(), 5u);
    cutter.Append(ByteSpan(one).subspan(5));
    EXPECT_EQ(ToHex(*cutter.Next()), ToHex(one));
}

TEST(Cutting, AStreamOfOtherBytesCannotBeCut) {
    FrameCutter cutter;
    cutter.Append(FromHex("47 45 54 20 2f 20"));
    EXPECT_THROW(cutter.Next(), WireError);
}

}  // namespace
}  // namespace corvenna::directplay
