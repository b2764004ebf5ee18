#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

namespace corvenna {

/// A read went past the end of a message.
class MessageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A message of the session layer: a cursor over bytes. Writes append, reads take the next bytes; numbers
/// are little-endian. A read behind the end throws MessageError. No sharing between threads.
class DirectPlayMessage {
  public:
    DirectPlayMessage() = default;
    explicit DirectPlayMessage(std::span<const std::byte> bytes) : bytes_(bytes.begin(), bytes.end()) {}

    /// Makes this a message of other bytes, to be read from the start. The memory is used again.
    void Assign(std::span<const std::byte> bytes);

    void WriteLong(std::int32_t value);
    void WriteShort(std::int16_t value);
    void WriteByte(std::uint8_t value);

    std::int32_t ReadLong();
    std::int16_t ReadShort();
    std::uint8_t ReadByte();

    /// How many bytes are left to be read.
    std::size_t Left() const { return bytes_.size() - next_; }

    std::span<const std::byte> Bytes() const { return bytes_; }

  private:
    void Append(std::uint32_t value, int byteCount);
    std::uint32_t Take(int byteCount);

    std::vector<std::byte> bytes_;
    std::size_t next_ = 0;
};

}  // namespace corvenna
