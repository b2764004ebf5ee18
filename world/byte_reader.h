#pragma once

#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>

#include "world/errors.h"

namespace corvenna {

/// Reads little-endian values out of a buffer by absolute offsets. A read that is not wholly inside the
/// buffer throws DamagedData. Any thread, as long as the buffer stays as it is.
class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> buffer) : buffer_(buffer) {}

    std::int64_t Size() const { return static_cast<std::int64_t>(buffer_.size()); }

    /// The bytes of a range, after a check that all are there.
    const std::uint8_t* Range(std::int64_t offset, std::int64_t length) const {
        if (offset < 0 || length < 0 || offset > Size() || length > Size() - offset) {
            throw DamagedData(offset, fmt::format("a read of {} bytes leaves the file", length));
        }
        return buffer_.data() + offset;
    }

    std::uint8_t ReadByte(std::int64_t offset) const { return *Range(offset, 1); }

    /// Two bytes without a sign.
    std::uint16_t ReadWord(std::int64_t offset) const {
        const std::uint8_t* const bytes = Range(offset, 2);
        return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
    }

    /// Two bytes with a sign. A value above 32767 is lessened by 65535, not 65536, so that negative numbers
    /// come out one too high and FFFFh is 0. The magnetic table has always been read that way, and
    /// headings depend on it.
    std::int16_t ReadShort(std::int64_t offset) const {
        const int value = ReadWord(offset);
        return static_cast<std::int16_t>(value > 32767 ? value - 65535 : value);
    }

    std::int32_t ReadLong(std::int64_t offset) const { return LongAt(Range(offset, 4)); }

    /// Appends a text. Zero bytes are skipped and end nothing; a length of 0 or less is no text.
    void ReadText(std::int64_t offset, std::int64_t length, std::string& into) const {
        if (length <= 0) return;
        const std::uint8_t* const bytes = Range(offset, length);
        for (std::int64_t i = 0; i < length; ++i) {
            if (bytes[i] != 0) into.push_back(static_cast<char>(bytes[i]));
        }
    }

    /// The signed 32-bit value at bytes that are known to be there.
    static std::int32_t LongAt(const std::uint8_t* bytes) {
        return static_cast<std::int32_t>(
            static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
            static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24);
    }

  private:
    std::span<const std::uint8_t> buffer_;
};

/// The value of the word of an IEEE 754 single. A word of nought is 0; but for that, an exponent field of
/// nought is one like any other, with the leading 1 of the fraction implied. Infinities and NaN come back
/// as such.
inline double ToSingle(std::int32_t word) {
    if (word == 0) return 0;
    if ((word & 0x7F800000) != 0) return std::bit_cast<float>(word);
    const double fraction = 1 + (word & 0x7FFFFF) / 8388608.0;
    return std::ldexp(word < 0 ? -fraction : fraction, -127);
}

}  // namespace corvenna
