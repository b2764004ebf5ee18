#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "link/direct_play_message.h"

/// The simulator's own messages within the session. Every message begins with a header of two longs,
/// MessageId and PayloadSize. The codec knows bytes, nothing of stations. Pure functions, any thread.
namespace corvenna {

namespace MessageId {
inline constexpr std::int32_t RequestJoinAsPlayer = 4097;
inline constexpr std::int32_t RequestJoinAsObserver = 4098;
inline constexpr std::int32_t AdmitPlayer = 4099;
inline constexpr std::int32_t AdmitObserver = 4100;
inline constexpr std::int32_t RefusePlayer = 4101;
inline constexpr std::int32_t RefuseObserver = 4102;
inline constexpr std::int32_t WhoAreYou = 4103;
inline constexpr std::int32_t JoinRequestRepeated = 4104;
inline constexpr std::int32_t Aircraft = 4110;
inline constexpr std::int32_t AskAircraft = 4111;
inline constexpr std::int32_t HostGone = 4114;
inline constexpr std::int32_t Removed = 4118;
inline constexpr std::int32_t Position = 4120;
inline constexpr std::int32_t PositionLong = 4121;
inline constexpr std::int32_t Chat = 4131;
}  // namespace MessageId

/// The group that an admitted player enters.
inline constexpr std::string_view RefuseParamsGroup = "FS61_REFUSE_PARAMS";

struct MessageHeader {
    std::int32_t Id = 0;
    std::int32_t PayloadSize = 0;  ///< as declared by the sender, who may be wrong
};

/// Where a pilot is, in the units of the wire.
struct PositionReport {
    std::int32_t PackedAttitude = 0;  ///< bits 2 to 11: true heading in 1/1024 of a circle
    std::int32_t RawLatitude = 0;     ///< 10001750 to 90 degrees
    std::int32_t RawLongitude = 0;    ///< 2^32 to 360 degrees
    std::int32_t RawAltitude = 0;     ///< metres

    bool operator==(const PositionReport&) const = default;

    double LatitudeDegrees() const;
    double LongitudeDegrees() const;
    std::int32_t AltitudeFeet() const;  ///< throws std::overflow_error beyond 32 bits
};

// ---- Reading. A message that is too short throws MessageError.

MessageHeader ReadHeader(DirectPlayMessage& message);

/// The payload of a Position or PositionLong message; what stands behind the fields is not read.
PositionReport ReadPosition(DirectPlayMessage& message, std::int32_t messageId);

/// The aircraft's text. One byte more than PayloadSize is read behind the kind, zero bytes are skipped.
std::string ReadAircraft(DirectPlayMessage& message, std::int32_t payloadSize);

/// The chat's text, zero bytes skipped, blanks cut off at both ends. payloadSize must be above 1.
std::string ReadChat(DirectPlayMessage& message, std::int32_t payloadSize);

// ---- Writing.

/// A message that is all header: requests, refusals, questions.
DirectPlayMessage WriteEmpty(std::int32_t messageId);

/// AdmitPlayer or AdmitObserver: admission or introduction of a player id.
DirectPlayMessage WriteAdmission(std::int32_t messageId, std::int32_t playerId);

/// PayloadSize is twice the number of characters, and as many zero bytes follow them: the message is longer
/// than it says.
DirectPlayMessage WriteChat(std::string_view text);

/// Kind 0, the text, and the zero byte that ReadAircraft asks for.
DirectPlayMessage WriteAircraft(std::string_view text);

/// A Position or a PositionLong, every unused field 0.
DirectPlayMessage WritePosition(const PositionReport& report, std::int32_t messageId = MessageId::Position);

/// A position in degrees, feet and degrees true put into the units of the wire.
/// Throws std::overflow_error for what does not fit.
PositionReport PackPosition(double latitude, double longitude, double altitudeFeet, double headingTrue);

}  // namespace corvenna
