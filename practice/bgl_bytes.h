#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "world/facility_layout.h"

namespace corvenna {

/// The bytes of a BGL file while it is put together, little-endian. One thread at a time.
class BglBytes {
  public:
    /// Where the next bytes will stand, which is how the file refers to them.
    std::int32_t End() const {
        if (bytes_.size() > std::numeric_limits<std::int32_t>::max()) {
            throw std::length_error("a scenery file of more than 2 GB");
        }
        return static_cast<std::int32_t>(bytes_.size());
    }

    /// Appends bytes of nought and gives their place.
    std::int32_t AddBlank(std::int32_t length) {
        const std::int32_t place = End();
        bytes_.append(static_cast<std::size_t>(length), '\0');
        return place;
    }

    /// Appends an entry or record of a total length, blank but for its head, and gives its place.
    std::int32_t AddEntry(std::int32_t id, std::int32_t length) {
        const std::int32_t place = AddBlank(length);
        PutLong(place + facility::EntryId, id);
        SetLength(place, length);
        return place;
    }

    /// Makes an entry say that it is so long in all.
    void SetLength(std::int32_t entry, std::int32_t length) {
        PutLong(entry + facility::EntrySize, length - facility::EntryHeadLength);
    }

    void PutLong(std::int32_t place, std::int32_t value) {
        const auto bits = static_cast<std::uint32_t>(value);
        for (int i = 0; i < 4; ++i) At(place + i) = static_cast<char>(bits >> 8 * i & 0xFF);
    }

    void PutShort(std::int32_t place, std::int16_t value) {
        const auto bits = static_cast<std::uint16_t>(value);
        for (int i = 0; i < 2; ++i) At(place + i) = static_cast<char>(bits >> 8 * i & 0xFF);
    }

    void PutSingle(std::int32_t place, double value) {
        PutLong(place, std::bit_cast<std::int32_t>(static_cast<float>(value)));
    }

    void PutText(std::int32_t place, std::string_view text) {
        bytes_.replace(static_cast<std::size_t>(place), text.size(), text);
    }

    std::string Take() { return std::move(bytes_); }

  private:
    char& At(std::int32_t place) { return bytes_.at(static_cast<std::size_t>(place)); }

    std::string bytes_;
};

}  // namespace corvenna
