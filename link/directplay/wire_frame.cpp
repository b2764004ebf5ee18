#include "link/directplay/wire_frame.h"

#include <fmt/format.h>

namespace corvenna::directplay {

namespace {

/// Tokens in the upper 12 bits of a frame's first word.
constexpr std::uint32_t RemoteToken = 0xFAB;
constexpr std::uint32_t ForwardedToken = 0xCAB;
constexpr std::uint32_t HelperToken = 0xBAB;

constexpr std::uint16_t InternetFamily = 2;
constexpr std::size_t AddressAndPadding = 12;

std::uint32_t WordAt(ByteSpan bytes, std::size_t offset) { return ByteReader(bytes).At(offset).U32(); }

bool HasSignature(ByteSpan frame) {
    return frame.size() >= HeaderSize + EnvelopeSize && WordAt(frame, HeaderSize) == Signature;
}

}  // namespace

std::uint16_t SenderPort(ByteSpan frame) { return ByteReader(frame).At(6).BigEndianU16(); }

std::size_t FrameSize(std::uint32_t firstWord) {
    const std::uint32_t token = firstWord >> 20;
    if (token != RemoteToken && token != ForwardedToken && token != HelperToken) {
        throw WireError(fmt::format("0x{:03X} is no token of DirectPlay", token));
    }
    const std::size_t size = firstWord & MaxFrameSize;
    if (size < HeaderSize) throw WireError(fmt::format("a frame of {} bytes", size));
    return size;
}

Incoming SortFrame(ByteSpan frame) {
    if (HasSignature(frame)) return {Incoming::Kind::System, SenderPort(frame), frame.subspan(HeaderSize)};
    if (frame.size() < HeaderSize + PlayerIdsSize) throw WireError("a frame without a message");
    return {Incoming::Kind::Player, SenderPort(frame), frame.subspan(HeaderSize)};
}

Incoming SortDatagram(ByteSpan datagram) {
    if (HasSignature(datagram)) {
        const std::uint32_t firstWord = WordAt(datagram, 0);
        if (firstWord >> 20 == RemoteToken && (firstWord & MaxFrameSize) == datagram.size()) {
            return {Incoming::Kind::System, SenderPort(datagram), datagram.subspan(HeaderSize)};
        }
    }
    if (datagram.size() < PlayerIdsSize) throw WireError("a datagram without a message");
    return {Incoming::Kind::Player, 0, datagram};
}

Bytes Frame(std::uint16_t listeningPort, ByteSpan message) {
    const std::size_t size = HeaderSize + message.size();
    if (size > MaxFrameSize)
        throw WireError(fmt::format("a message of {} bytes is too long", message.size()));
    ByteWriter writer;
    writer.U32(RemoteToken << 20 | static_cast<std::uint32_t>(size));
    writer.U16(InternetFamily);
    writer.BigEndianU16(listeningPort);
    writer.Zeros(AddressAndPadding);
    writer.Append(message);
    return writer.Release();
}

std::optional<ByteSpan> FrameCutter::Next() {
    const ByteSpan rest = ByteSpan(buffer_).subspan(taken_);
    if (rest.size() < 4) return std::nullopt;
    const std::size_t size = FrameSize(WordAt(rest, 0));
    if (rest.size() < size) return std::nullopt;
    taken_ += size;
    return rest.first(size);
}

/// A buffer that once held a large frame gives its memory back.
void FrameCutter::Compact() {
    constexpr std::size_t keptCapacity = 8192;
    buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(taken_));
    taken_ = 0;
    if (buffer_.empty() && buffer_.capacity() > keptCapacity) Bytes().swap(buffer_);
}

}  // namespace corvenna::directplay
