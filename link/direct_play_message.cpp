#include "link/direct_play_message.h"

namespace corvenna {

void DirectPlayMessage::Assign(std::span<const std::byte> bytes) {
    bytes_.assign(bytes.begin(), bytes.end());
    next_ = 0;
}

void DirectPlayMessage::WriteLong(std::int32_t value) { Append(static_cast<std::uint32_t>(value), 4); }

void DirectPlayMessage::WriteShort(std::int16_t value) { Append(static_cast<std::uint16_t>(value), 2); }

void DirectPlayMessage::WriteByte(std::uint8_t value) { Append(value, 1); }

std::int32_t DirectPlayMessage::ReadLong() { return static_cast<std::int32_t>(Take(4)); }

std::int16_t DirectPlayMessage::ReadShort() { return static_cast<std::int16_t>(Take(2)); }

std::uint8_t DirectPlayMessage::ReadByte() { return static_cast<std::uint8_t>(Take(1)); }

void DirectPlayMessage::Append(std::uint32_t value, int byteCount) {
    for (int i = 0; i < byteCount; ++i) bytes_.push_back(static_cast<std::byte>(value >> (8 * i)));
}

std::uint32_t DirectPlayMessage::Take(int byteCount) {
    if (Left() < static_cast<std::size_t>(byteCount)) throw MessageError("a message ends too early");
    std::uint32_t value = 0;
    for (int i = 0; i < byteCount; ++i) value |= std::to_integer<std::uint32_t>(bytes_[next_++]) << (8 * i);
    return value;
}

}  // namespace corvenna
