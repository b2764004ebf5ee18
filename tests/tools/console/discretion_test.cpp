#include "tools/console/discretion.h"

#include <gmock/gmock.h>

#include "link/directplay/wire_frame.h"
#include "link/directplay/wire_messages.h"

namespace corvenna {
namespace {

using namespace directplay;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(KindOfAddressTest, TellsWhereItIsGoodAndNoMore) {
    EXPECT_EQ(KindOfAddress(0x00000000), "no address");
    EXPECT_EQ(KindOfAddress(0x7F001701), "this computer");
    EXPECT_EQ(KindOfAddress(0x0A0000FE), "private IPv4");
    EXPECT_EQ(KindOfAddress(0xAC1F0001), "private IPv4");
    EXPECT_EQ(KindOfAddress(0xAC200001), "public IPv4");
    EXPECT_EQ(KindOfAddress(0xC0A80105), "private IPv4");
    EXPECT_EQ(KindOfAddress(0xA9FE0001), "self-assigned IPv4");
    EXPECT_EQ(KindOfAddress(0x64400001), "provider's shared IPv4");
    EXPECT_EQ(KindOfAddress(0xFFFFFFFF), "broadcast IPv4");
    EXPECT_EQ(KindOfAddress(0xFFFFFFFE), "public IPv4");
    EXPECT_EQ(KindOfAddress(0x08080808), "public IPv4");
}

TEST(KindOfPlaceTest, KeepsThePort) {
    EXPECT_EQ(KindOfPlace("192.168.1.5:2300"), "private IPv4, port 2300");
    EXPECT_EQ(KindOfPlace("8.8.8.8"), "public IPv4");
    EXPECT_EQ(KindOfPlace("somewhere"), "an address that can't be read");
    EXPECT_EQ(KindOfPlace(""), "an address that can't be read");
}

TEST(WithoutNodeTest, CrossesTheNetworkCardsNumberOut) {
    EXPECT_EQ(WithoutNode("{CC080A27-6D4E-11D0-8E21-00A0C90542EF}"),
              "{CC080A27-6D4E-11D0-8E21-xxxxxxxxxxxx}");
    EXPECT_EQ(WithoutNode("Friday"), "no GUID");
}

TEST(DiscretionTest, HidesAddressesAndQuotations) {
    const Discretion discretion;
    EXPECT_EQ(discretion.Told("no session answered at 192.168.1.5:47624 (TCP: refused by 8.8.4.4)"),
              "no session answered at (private IPv4):47624 (TCP: refused by (public IPv4))");
    EXPECT_EQ(discretion.Told("cannot join \"Friday\": it is full"),
              "cannot join (6 characters): it is full");
    EXPECT_EQ(discretion.Told("\"cut off"), "(7 characters)");
    EXPECT_EQ(discretion.Told("999.1.2.3 and 1.2.3"), "(a number) and 1.2.3");
    EXPECT_EQ(discretion.Told(""), "");
}

TEST(DiscretionTest, HidesNamesWhereTheyAreWordsInAnyCase) {
    Discretion discretion;
    discretion.Keep("");
    discretion.Keep("N1");
    discretion.Keep("N1 Heavy");
    discretion.Keep("M\xFCller");
    discretion.Keep("pc.example");
    EXPECT_EQ(discretion.Told("N1 HEAVY has left, n1 too, N12 has not"),
              "(name of 8 characters) has left, (name of 2 characters) too, N12 has not");
    EXPECT_EQ(discretion.Told("M\xFCller: no connection to pc.example:2300"),
              "(name of 6 characters): no connection to (name of 10 characters):2300");
}

TEST(DiscretionTest, HidesANameThatIsAnAddressOrHasOneInIt) {
    Discretion discretion;
    discretion.Keep("Server 10.0.0.1");
    EXPECT_EQ(discretion.Told("Server 10.0.0.1 has left"), "(name of 15 characters) has left");
    EXPECT_EQ(discretion.Told("cannot join \"server 10.0.0.1\""), "cannot join (name of 15 characters)");
}

// ---- Messages

constexpr Endpoint Host{0xC0A80105, 2300};

TEST(ArrivalTest, OfAnAnswerToASearchShowsTheHeaderAndNoName) {
    EnumSessionsReply reply;
    reply.Description.Flags = 0x44;
    reply.Description.Instance = *ParseGuid("{01020304-0506-0708-090A-A1A2A3A4A5A6}");
    reply.Description.MaxPlayers = 16;
    reply.Description.User = {0x11, 0x22, 0x33, 0x44};
    reply.Name = u"Friday";
    const std::string words = ArrivalInWords(Host, false, Frame(2300, EncodeSystemMessage(reply)));
    EXPECT_THAT(words, StartsWith("TCP from private IPv4, port 2300: message 0x01, version 14, "));
    EXPECT_THAT(words, HasSubstr(" 70 6C 61 79 "));                  // "play"
    EXPECT_THAT(words, HasSubstr("44 00 00 00 04 03 02 01"));        // the flags
    EXPECT_THAT(words, HasSubstr("09 0A xx xx xx xx xx xx"));        // the session's GUID
    EXPECT_THAT(words, HasSubstr("22 00 00 00 33 00 00 00 44 00"));  // the user's fields
    EXPECT_THAT(words, Not(HasSubstr("46 00 72 00")));               // "Fr"
}

TEST(ArrivalTest, OfAnyOtherSystemMessageShowsTheFirstBytesOnly) {
    CreateMember message;
    message.Member.ShortName = u"Friday";
    Bytes frame = Frame(2300, EncodeSystemMessage(message));
    frame[8] = std::byte{192};  // somebody's address stands in the header
    frame[9] = std::byte{168};
    const std::string words = ArrivalInWords(Host, false, frame);
    EXPECT_THAT(words, HasSubstr("message 0x08, version 14, "));
    EXPECT_THAT(words, HasSubstr(" 02 00 08 FC xx xx 00 00 "));
    EXPECT_THAT(words, EndsWith(" 70 6C 61 79 08 00 0E 00"));
}

TEST(ArrivalTest, OfAPlayersMessageShowsItsNumberOnly) {
    ByteWriter writer;
    writer.U32(1);
    writer.U32(2);
    writer.U32(4131);
    for (const char c : std::string("secret")) writer.U8(static_cast<std::uint8_t>(c));
    EXPECT_EQ(ArrivalInWords({0x7F000001, 2350}, true, writer.Release()),
              "UDP from this computer, port 2350: player's message 4131, 10 bytes");
    EXPECT_EQ(ArrivalInWords({0x7F000001, 2350}, true, Bytes(9)),
              "UDP from this computer, port 2350: player's message, 1 bytes");
}

TEST(ArrivalTest, OfWhatIsNoMessageSaysSo) {
    EXPECT_THAT(ArrivalInWords(Host, true, Bytes(3)), HasSubstr("3 bytes that can't be read: "));
    EXPECT_THAT(ArrivalInWords(Host, false, Bytes(20)), HasSubstr("20 bytes that can't be read: "));
}

}  // namespace
}  // namespace corvenna
