#include "link/fs_messages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "station/geometry.h"

namespace corvenna {
namespace {

constexpr std::int32_t Smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

std::vector<std::byte> Written(const DirectPlayMessage& message) {
    return {message.Bytes().begin(), message.Bytes().end()};
}

DirectPlayMessage Cut(const DirectPlayMessage& message, std::size_t length) {
    return DirectPlayMessage(message.Bytes().first(length));
}

// ---- Header and empty messages

TEST(FsMessages, TheHeaderIsTwoLongs) {
    DirectPlayMessage message(Bytes({0x23, 0x10, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF}));
    const MessageHeader header = ReadHeader(message);
    EXPECT_EQ(header.Id, 4131);
    EXPECT_EQ(header.PayloadSize, -2);
}

TEST(FsMessages, AHeaderOfFewerThan8BytesIsAnError) {
    const DirectPlayMessage whole = WriteEmpty(4097);
    for (std::size_t length = 0; length < 8; ++length) {
        DirectPlayMessage message = Cut(whole, length);
        EXPECT_THROW(ReadHeader(message), MessageError) << length;
    }
}

TEST(FsMessages, AnEmptyMessageIsAllHeader) {
    EXPECT_EQ(Written(WriteEmpty(MessageId::RequestJoinAsPlayer)), Bytes({0x01, 0x10, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Written(WriteEmpty(MessageId::JoinRequestRepeated)), Bytes({0x08, 0x10, 0, 0, 0, 0, 0, 0}));
}

TEST(FsMessages, AnAdmissionCarriesThePlayerId) {
    EXPECT_EQ(Written(WriteAdmission(MessageId::AdmitPlayer, 0x01020304)),
              Bytes({0x03, 0x10, 0, 0, 4, 0, 0, 0, 4, 3, 2, 1}));
    EXPECT_EQ(Written(WriteAdmission(MessageId::AdmitObserver, -1)),
              Bytes({0x04, 0x10, 0, 0, 4, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(FsMessages, TheIdsAreThoseOfTheSimulator) {
    EXPECT_EQ(MessageId::RequestJoinAsPlayer, 4097);
    EXPECT_EQ(MessageId::RequestJoinAsObserver, 4098);
    EXPECT_EQ(MessageId::AdmitPlayer, 4099);
    EXPECT_EQ(MessageId::AdmitObserver, 4100);
    EXPECT_EQ(MessageId::RefusePlayer, 4101);
    EXPECT_EQ(MessageId::RefuseObserver, 4102);
    EXPECT_EQ(MessageId::WhoAreYou, 4103);
    EXPECT_EQ(MessageId::JoinRequestRepeated, 4104);
    EXPECT_EQ(MessageId::Aircraft, 4110);
    EXPECT_EQ(MessageId::AskAircraft, 4111);
    EXPECT_EQ(MessageId::HostGone, 4114);
    EXPECT_EQ(MessageId::Removed, 4118);
    EXPECT_EQ(MessageId::Position, 4120);
    EXPECT_EQ(MessageId::PositionLong, 4121);
    EXPECT_EQ(MessageId::Chat, 4131);
    EXPECT_EQ(RefuseParamsGroup, "FS61_REFUSE_PARAMS");
}

// ---- Chat

TEST(FsMessages, AChatOf3IsTheDigitAndTwoZerosWithAPayloadSizeOf2) {
    EXPECT_EQ(Written(WriteChat("3")), Bytes({
                                           0x23,
                                           0x10,
                                           0,
                                           0,  // 4131
                                           2,
                                           0,
                                           0,
                                           0,  // PayloadSize
                                           0x33,
                                           0,
                                           0,
                                       }));
}

TEST(FsMessages, AChatIsLongerThanItSaysByTheNumberOfItsCharacters) {
    const DirectPlayMessage chat = WriteChat("N1, \xE9t\xE9");
    EXPECT_EQ(chat.Bytes().size(), 8u + 7 + 14);
    EXPECT_EQ(chat.Bytes()[4], std::byte{14});
    EXPECT_EQ(chat.Bytes()[12], std::byte{0xE9});
}

TEST(FsMessages, AnEmptyChatHasNoPayload) {
    EXPECT_EQ(Written(WriteChat("")), Bytes({0x23, 0x10, 0, 0, 0, 0, 0, 0}));
}

std::string ChatIn(std::initializer_list<int> bytes, std::int32_t payloadSize) {
    DirectPlayMessage message(Bytes(bytes));
    return ReadChat(message, payloadSize);
}

TEST(FsMessages, AChatIsReadBackAsItWasWritten) {
    for (const std::string text : {"3", "KTST,1", "R", "\xE9t\xE9 \xFF", "a b"}) {
        DirectPlayMessage chat = WriteChat(text);
        EXPECT_EQ(ReadChat(chat, ReadHeader(chat).PayloadSize), text);
    }
}

TEST(FsMessages, ZeroBytesOfAChatAreSkippedAlsoInTheMiddle) {
    EXPECT_EQ(ChatIn({0, 'K', 0, '1', 0, 0}, 6), "K1");
    EXPECT_EQ(ChatIn({0, 0}, 2), "");
}

TEST(FsMessages, AChatIsTrimmedOfBlanksAtBothEnds) {
    EXPECT_EQ(ChatIn({' ', ' ', '1', ' ', '2', ' '}, 6), "1 2");
    EXPECT_EQ(ChatIn({' ', 0, ' '}, 3), "");
}

TEST(FsMessages, OfAChatOnlyPayloadSizeBytesAreRead) { EXPECT_EQ(ChatIn({'1', '2', '3'}, 2), "12"); }

TEST(FsMessages, AChatWhosePayloadSizeRunsPastTheEndIsAnError) {
    EXPECT_THROW(ChatIn({'1', 0}, 3), MessageError);
    EXPECT_THROW(ChatIn({'1', 0}, Largest), MessageError);
}

// ---- Aircraft

std::string AircraftIn(std::initializer_list<int> bytes, std::int32_t payloadSize) {
    DirectPlayMessage message(Bytes(bytes));
    return ReadAircraft(message, payloadSize);
}

TEST(FsMessages, AnAircraftIsReadBackAsItWasWritten) {
    DirectPlayMessage message = WriteAircraft("Learjet 45");
    EXPECT_EQ(message.Bytes().size(), 8u + 2 + 10 + 1);
    const MessageHeader header = ReadHeader(message);
    EXPECT_EQ(header.Id, 4110);
    EXPECT_EQ(header.PayloadSize, 10);
    EXPECT_EQ(ReadAircraft(message, header.PayloadSize), "Learjet 45");
}

TEST(FsMessages, OfAnAircraftOneByteMoreThanPayloadSizeIsReadBehindTheKind) {
    EXPECT_EQ(AircraftIn({1, 0, 'B', '7', '3', '7'}, 2), "B73");
    EXPECT_EQ(AircraftIn({1, 0, 'B'}, 0), "B");
    EXPECT_THROW(AircraftIn({1, 0, 'B', '7'}, 2), MessageError);
    EXPECT_THROW(AircraftIn({1, 0}, 0), MessageError);
    EXPECT_THROW(AircraftIn({1}, 0), MessageError);
}

TEST(FsMessages, ZeroBytesOfAnAircraftAreSkipped) {
    EXPECT_EQ(AircraftIn({3, 0, 0, 'B', 0, 0xE9, 0}, 4), "B\xE9");
}

TEST(FsMessages, AKindOutside0To3HasNoWordAndHarmsNothing) {
    EXPECT_EQ(AircraftIn({0xFF, 0xFF, 'B', 0}, 1), "B");
    EXPECT_EQ(AircraftIn({4, 0, 'B', 0}, 1), "B");
}

TEST(FsMessages, ADeclaredSizeNeverSizesTheAircraftsText) {
    EXPECT_THROW(AircraftIn({0, 0, 'B', 'C'}, Largest), MessageError);
    EXPECT_EQ(AircraftIn({0, 0, 'B', 'C'}, -1), "");
    EXPECT_EQ(AircraftIn({0, 0, 'B', 'C'}, Smallest), "");
}

// ---- Position

/// A position by hand: so many leading longs, the four fields, three shorts.
DirectPlayMessage HandMadePosition(int leadingLongs) {
    DirectPlayMessage message;
    for (int i = 1; i <= leadingLongs; ++i) message.WriteLong(1000 + i);
    message.WriteLong(2048);
    message.WriteLong(5223136);
    message.WriteLong(-1455516672);
    message.WriteLong(122);
    for (int i = 1; i <= 3; ++i) message.WriteShort(static_cast<std::int16_t>(-i));
    return message;
}

constexpr PositionReport HandMadeReport{2048, 5223136, -1455516672, 122};

TEST(FsMessages, TheShortFormHasThreeLeadingLongs) {
    DirectPlayMessage message = HandMadePosition(3);
    EXPECT_EQ(message.Left(), 34u);
    EXPECT_EQ(ReadPosition(message, MessageId::Position), HandMadeReport);
    EXPECT_EQ(message.Left(), 0u);
}

TEST(FsMessages, TheLongFormHasSevenLeadingLongs) {
    DirectPlayMessage message = HandMadePosition(7);
    EXPECT_EQ(message.Left(), 50u);
    EXPECT_EQ(ReadPosition(message, MessageId::PositionLong), HandMadeReport);
    EXPECT_EQ(message.Left(), 0u);
}

TEST(FsMessages, WhatStandsBehindAPositionIsNotRead) {
    DirectPlayMessage message = HandMadePosition(3);
    message.WriteLong(-1);
    EXPECT_EQ(ReadPosition(message, MessageId::Position), HandMadeReport);
    EXPECT_EQ(message.Left(), 4u);
}

TEST(FsMessages, APositionCutAtAnyLengthIsAnError) {
    for (int leadingLongs : {3, 7}) {
        const DirectPlayMessage whole = HandMadePosition(leadingLongs);
        const auto id = leadingLongs == 3 ? MessageId::Position : MessageId::PositionLong;
        for (std::size_t length = 0; length < whole.Bytes().size(); ++length) {
            DirectPlayMessage message = Cut(whole, length);
            EXPECT_THROW(ReadPosition(message, id), MessageError) << length;
        }
    }
}

TEST(FsMessages, APositionIsWrittenInTheShortFormWithEveryUnusedField0) {
    EXPECT_EQ(Written(WritePosition({1, 2, 3, 4})),
              Bytes({0x18, 0x10, 0, 0, 34, 0, 0, 0,              // header
                     0,    0,    0, 0, 0,  0, 0, 0, 0, 0, 0, 0,  // three longs
                     1,    0,    0, 0, 2,  0, 0, 0,              // attitude, latitude
                     3,    0,    0, 0, 4,  0, 0, 0,              // longitude, altitude
                     0,    0,    0, 0, 0,  0}));                 // three shorts
}

TEST(FsMessages, EveryFieldOfAPositionKeepsItsExtremes) {
    for (std::int32_t value : {Smallest, -1, 0, 1, Largest}) {
        const PositionReport report{value, value, value, value};
        DirectPlayMessage message = WritePosition(report);
        ReadHeader(message);
        EXPECT_EQ(ReadPosition(message, MessageId::Position), report);
    }
}

// ---- Decoding

double Latitude(std::int32_t raw) { return PositionReport{0, raw, 0, 0}.LatitudeDegrees(); }
double Longitude(std::int32_t raw) { return PositionReport{0, 0, raw, 0}.LongitudeDegrees(); }
std::int32_t Altitude(std::int32_t raw) { return PositionReport{0, 0, 0, raw}.AltitudeFeet(); }

TEST(FsMessages, RawLatitude10001750GivesLatitude90) {
    EXPECT_EQ(Latitude(10001750), 90);
    EXPECT_EQ(Latitude(-10001750), -90);
    EXPECT_EQ(Latitude(0), 0);
    EXPECT_EQ(Latitude(5223136), 47);  // 46.9999996, to 5 decimals
}

TEST(FsMessages, ANegativeRawLongitudeGivesAWestLongitude) {
    EXPECT_EQ(Longitude(-1455516672), -122);
    EXPECT_EQ(Longitude(1073741824), 90);
    EXPECT_EQ(Longitude(Smallest), -180);
    EXPECT_EQ(Longitude(Largest), 180);
}

TEST(FsMessages, LatitudesBeyondThePolesAreTakenAsTheyAre) {
    EXPECT_EQ(Latitude(Largest), 19323.97113);
    EXPECT_EQ(Latitude(Smallest), -19323.97114);
}

TEST(FsMessages, AltitudeIsInMetresOnTheWire) {
    EXPECT_EQ(Altitude(0), 0);
    EXPECT_EQ(Altitude(1), 3);      // 3.28
    EXPECT_EQ(Altitude(122), 400);  // 400.26
    EXPECT_EQ(Altitude(-1), -3);
}

TEST(FsMessages, AnAltitudeBeyondItsFieldIsAnOverflow) {
    EXPECT_EQ(Altitude(654553015), 2147483645);
    EXPECT_THROW(Altitude(654553016), std::overflow_error);
    EXPECT_EQ(Altitude(-654553016), Smallest);  // -2147483648.29
    EXPECT_THROW(Altitude(-654553017), std::overflow_error);
    EXPECT_THROW(Altitude(Largest), std::overflow_error);
    EXPECT_THROW(Altitude(Smallest), std::overflow_error);
}

TEST(FsMessages, APlaceIsPackedIntoTheUnitsOfTheWire) {
    EXPECT_EQ(PackPosition(90, -122, 400, 180), (PositionReport{2048, 10001750, -1455516695, 122}));
    EXPECT_EQ(PackPosition(0, 0, 0, 0), (PositionReport{}));
    EXPECT_EQ(PackPosition(0, 0, 0, 360).PackedAttitude, 0);
    EXPECT_EQ(PackPosition(0, 0, 0, 359.9).PackedAttitude, 0);
    EXPECT_EQ(PackPosition(0, 0, 0, -90).PackedAttitude, 768 * 4);
}

TEST(FsMessages, APlaceThatDoesNotFitIsAnOverflow) {
    EXPECT_THROW(PackPosition(1e9, 0, 0, 0), std::overflow_error);
    EXPECT_THROW(PackPosition(0, 180, 0, 0), std::overflow_error);  // 2^31
    EXPECT_THROW(PackPosition(0, 0, 1e10, 0), std::overflow_error);
    EXPECT_THROW(PackPosition(0, 0, 0, 1e12), std::overflow_error);
}

TEST(FsMessages, WholeDegreesAndFeetSurviveTheWireButForItsGrain) {
    for (int latitude = -90; latitude <= 90; latitude += 3) {
        for (int heading = 0; heading < 360; heading += 7) {
            const PositionReport report = PackPosition(latitude, latitude * 1.9, heading * 10, heading);
            EXPECT_NEAR(report.LatitudeDegrees(), latitude, 0.00001);
            EXPECT_NEAR(report.LongitudeDegrees(), latitude * 1.9, 0.00001);
            EXPECT_NEAR(report.AltitudeFeet(), heading * 10, 2);
            EXPECT_NEAR(UnpackHeading(report.PackedAttitude), heading, 1);
        }
    }
}

}  // namespace
}  // namespace corvenna
