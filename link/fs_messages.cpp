#include "link/fs_messages.h"

#include "station/numbers.h"
#include "station/text.h"

namespace corvenna {

namespace {

constexpr double RawLatitudeOfPole = 10001750.0;
constexpr double RawLongitudeCircle = 4294967296.0;
constexpr double MetresPerFoot = 0.3048;

constexpr std::int32_t PositionPayload = 34;  // of the short form
constexpr int UnusedLongs = 3;
constexpr int MoreUnusedLongs = 7;
constexpr int UnusedShorts = 3;

int LeadingLongs(std::int32_t messageId) {
    return messageId == MessageId::PositionLong ? MoreUnusedLongs : UnusedLongs;
}

DirectPlayMessage WriteHeader(std::int32_t messageId, std::int32_t payloadSize) {
    DirectPlayMessage message;
    message.WriteLong(messageId);
    message.WriteLong(payloadSize);
    return message;
}

void WriteBytes(DirectPlayMessage& message, std::string_view text) {
    for (char c : text) message.WriteByte(static_cast<std::uint8_t>(c));
}

void WriteZeros(DirectPlayMessage& message, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) message.WriteByte(0);
}

/// The size declared never sizes the loop by itself: a read behind the end stops it.
std::string ReadText(DirectPlayMessage& message, std::int64_t byteCount) {
    std::string text;
    for (std::int64_t i = 0; i < byteCount; ++i) {
        if (const std::uint8_t byte = message.ReadByte(); byte != 0) text.push_back(static_cast<char>(byte));
    }
    return text;
}

}  // namespace

double PositionReport::LatitudeDegrees() const { return RoundTo5(RawLatitude * 90.0 / RawLatitudeOfPole); }

double PositionReport::LongitudeDegrees() const {
    return RoundTo5(RawLongitude * 360.0 / RawLongitudeCircle);
}

std::int32_t PositionReport::AltitudeFeet() const {
    return ToWhole<std::int32_t>(RawAltitude / MetresPerFoot);
}

MessageHeader ReadHeader(DirectPlayMessage& message) {
    MessageHeader header;
    header.Id = message.ReadLong();
    header.PayloadSize = message.ReadLong();
    return header;
}

PositionReport ReadPosition(DirectPlayMessage& message, std::int32_t messageId) {
    for (int i = LeadingLongs(messageId); i > 0; --i) message.ReadLong();
    PositionReport report;
    report.PackedAttitude = message.ReadLong();
    report.RawLatitude = message.ReadLong();
    report.RawLongitude = message.ReadLong();
    report.RawAltitude = message.ReadLong();
    for (int i = 0; i < UnusedShorts; ++i) message.ReadShort();
    return report;
}

std::string ReadAircraft(DirectPlayMessage& message, std::int32_t payloadSize) {
    message.ReadShort();  // the kind: piston, jet, none, helicopter
    return ReadText(message, std::int64_t{payloadSize} + 1);
}

std::string ReadChat(DirectPlayMessage& message, std::int32_t payloadSize) {
    return std::string(Trim(ReadText(message, payloadSize)));
}

DirectPlayMessage WriteEmpty(std::int32_t messageId) { return WriteHeader(messageId, 0); }

DirectPlayMessage WriteAdmission(std::int32_t messageId, std::int32_t playerId) {
    DirectPlayMessage message = WriteHeader(messageId, 4);
    message.WriteLong(playerId);
    return message;
}

DirectPlayMessage WriteChat(std::string_view text) {
    DirectPlayMessage message = WriteHeader(MessageId::Chat, Narrow<std::int32_t>(text.size() * 2));
    WriteBytes(message, text);
    WriteZeros(message, text.size() * 2);
    return message;
}

DirectPlayMessage WriteAircraft(std::string_view text) {
    DirectPlayMessage message = WriteHeader(MessageId::Aircraft, Narrow<std::int32_t>(text.size()));
    message.WriteShort(0);
    WriteBytes(message, text);
    message.WriteByte(0);
    return message;
}

DirectPlayMessage WritePosition(const PositionReport& report, std::int32_t messageId) {
    const int leading = LeadingLongs(messageId);
    DirectPlayMessage message = WriteHeader(messageId, PositionPayload + (leading - UnusedLongs) * 4);
    for (int i = 0; i < leading; ++i) message.WriteLong(0);
    message.WriteLong(report.PackedAttitude);
    message.WriteLong(report.RawLatitude);
    message.WriteLong(report.RawLongitude);
    message.WriteLong(report.RawAltitude);
    for (int i = 0; i < UnusedShorts; ++i) message.WriteShort(0);
    return message;
}

PositionReport PackPosition(double latitude, double longitude, double altitudeFeet, double headingTrue) {
    PositionReport report;
    report.PackedAttitude = (ToWhole<std::int32_t>(headingTrue * 1024 / 360) & 1023) * 4;
    report.RawLatitude = ToWhole<std::int32_t>(latitude * RawLatitudeOfPole / 90);
    report.RawLongitude = ToWhole<std::int32_t>(longitude * RawLongitudeCircle / 360);
    report.RawAltitude = ToWhole<std::int32_t>(altitudeFeet * MetresPerFoot);
    return report;
}

}  // namespace corvenna
