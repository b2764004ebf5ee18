#pragma once

#include <cstdint>
#include <optional>

#include "link/directplay/wire_bytes.h"

/// How messages stand in streams and datagrams. Pure, any thread.
///
/// A frame is a header of 20 bytes (its size and a token, the sender's listening port, an address that is
/// never looked at) and a message. A system message begins with "play"; a player message with the ids of
/// sender and addressee. In a datagram a player message has no header at all.
namespace corvenna::directplay {

inline constexpr std::size_t HeaderSize = 20;
inline constexpr std::size_t EnvelopeSize = 8;   ///< "play", command, version
inline constexpr std::size_t PlayerIdsSize = 8;  ///< sender, addressee
inline constexpr std::size_t MaxFrameSize = 0xFFFFF;

/// Above this size a datagram would be cut into pieces on its way.
inline constexpr std::size_t MaxDatagramSize = 1400;

inline constexpr std::uint32_t Signature = 0x79616C70;  // "play"

/// What a frame's first word says. Throws WireError for a token that is none of ours, or a size that no
/// frame has.
std::size_t FrameSize(std::uint32_t firstWord);

/// The listening port in the header of a whole frame.
std::uint16_t SenderPort(ByteSpan frame);

/// A message as found in a frame or a datagram. Body belongs to the bytes it was found in.
struct Incoming {
    enum class Kind { System, Player };

    Kind What = Kind::Player;
    std::uint16_t Port = 0;  ///< the sender's listening port; 0 in a datagram without header
    ByteSpan Body;           ///< from "play" on, or from the sender's id on
};

/// Sorts a whole frame from a stream. Throws WireError when it is neither kind.
Incoming SortFrame(ByteSpan frame);

/// Sorts a datagram. Throws WireError when it is neither kind.
Incoming SortDatagram(ByteSpan datagram);

/// Puts a header in front of a message that begins with "play" or with the sender's id.
Bytes Frame(std::uint16_t listeningPort, ByteSpan message);

/// Cuts a stream into frames. Memory grows with the bytes received, never with what a header claims.
class FrameCutter {
  public:
    void Append(ByteSpan bytes) { buffer_.insert(buffer_.end(), bytes.begin(), bytes.end()); }

    /// The next whole frame, or nothing yet. Valid until Append. Throws WireError for a stream that cannot
    /// be cut any further.
    std::optional<ByteSpan> Next();

    /// Bytes of a frame that has not ended yet.
    std::size_t Pending() const { return buffer_.size() - taken_; }

    /// Forgets the frames taken. Spans from Next end here.
    void Compact();

  private:
    Bytes buffer_;
    std::size_t taken_ = 0;
};

}  // namespace corvenna::directplay
