#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Bytes of DirectPlay messages: a reader that never leaves its message, and a writer. Numbers are
/// little-endian but for ports and addresses. Texts are UTF-16 with a NUL behind them. Pure, any thread.
namespace corvenna::directplay {

using ByteSpan = std::span<const std::byte>;
using Bytes = std::vector<std::byte>;

/// A message cannot be decoded. The words say what is wrong with it.
class WireError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Takes bytes from the front of a message. Every read asks first how much is left, and throws WireError
/// when it is too little.
class ByteReader {
  public:
    explicit ByteReader(ByteSpan message) : message_(message) {}

    std::uint8_t U8();
    std::uint16_t U16();
    std::uint32_t U32();
    std::uint16_t BigEndianU16();
    std::uint32_t BigEndianU32();
    ByteSpan Take(std::size_t count);
    void Skip(std::size_t count) { Take(count); }

    /// A text up to its NUL, which must stand inside the message.
    std::u16string Text();

    /// A reader of the same message that starts at an offset.
    ByteReader At(std::size_t offset) const;

    std::size_t Left() const { return message_.size() - next_; }

  private:
    ByteSpan message_;
    std::size_t next_ = 0;
};

class ByteWriter {
  public:
    void U8(std::uint8_t value) { bytes_.push_back(static_cast<std::byte>(value)); }
    void U16(std::uint16_t value);
    void U32(std::uint32_t value);
    void BigEndianU16(std::uint16_t value);
    void BigEndianU32(std::uint32_t value);
    void Append(ByteSpan bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    void Zeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }

    /// The text and its NUL.
    void Text(std::u16string_view text);

    /// Overwrites a U32 that was written earlier.
    void PutU32(std::size_t offset, std::uint32_t value);

    std::size_t Size() const { return bytes_.size(); }
    Bytes Release() { return std::move(bytes_); }

  private:
    Bytes bytes_;
};

}  // namespace corvenna::directplay
