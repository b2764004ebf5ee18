#pragma once

#include <fmt/format.h>

#include <bit>
#include <concepts>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "world/airport.h"
#include "world/errors.h"

/// Values as they stand in the database files: little-endian, nothing padded; a text is a 16-bit length and
/// its bytes; an array is the 16-bit number of its dimensions, which is 1, the 32-bit count and the 32-bit
/// lower bound 0, then the elements, or a single 16-bit 0 if it was never allocated.
namespace corvenna {

/// Appends values to a string of bytes.
class RecordWriter {
  public:
    explicit RecordWriter(std::string& into) : into_(into) {}

    template <class Value>
    void Number(Value value) {
        const std::uint64_t bits = Bits(value);
        char bytes[sizeof(Value)];
        for (std::size_t i = 0; i < sizeof bytes; ++i) bytes[i] = static_cast<char>(bits >> 8 * i & 0xFF);
        into_.append(bytes, sizeof bytes);
    }

    /// Throws std::length_error when the text is longer than its 16-bit length can tell.
    void Text(std::string_view text) {
        if (text.size() > std::numeric_limits<std::uint16_t>::max()) {
            throw std::length_error(fmt::format("a text of {} bytes does not fit a record", text.size()));
        }
        Number(static_cast<std::uint16_t>(text.size()));
        into_.append(text);
    }

    /// elementFields(writer, element) writes one element. Their size matters to the reader alone.
    template <class Element, class ElementFields>
    void Array(const DynamicArray<Element>& array, std::size_t, ElementFields elementFields) {
        Number<std::uint16_t>(array ? 1 : 0);
        if (!array) return;
        Number(static_cast<std::int32_t>(array->size()));
        Number<std::int32_t>(0);
        for (const Element& element : *array) elementFields(*this, element);
    }

  private:
    static std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }
    static std::uint64_t Bits(std::integral auto value) { return static_cast<std::uint64_t>(value); }

    std::string& into_;
};

/// Takes values off bytes, from a place on. Nothing beyond them is ever read: DamagedData tells the place
/// and what was expected there.
class RecordReader {
  public:
    RecordReader(std::string_view bytes, std::size_t at) : bytes_(bytes), at_(at) {}

    std::size_t At() const { return at_; }

    /// The next `length` bytes.
    std::string_view Take(std::size_t length, std::string_view what) {
        if (length > bytes_.size() - at_) {
            throw DamagedData(
                static_cast<std::int64_t>(at_),
                fmt::format("{} of {} bytes expected, {} bytes are left", what, length, bytes_.size() - at_));
        }
        at_ += length;
        return bytes_.substr(at_ - length, length);
    }

    template <class Value>
    void Number(Value& value) {
        const std::string_view bytes = Take(sizeof(Value), "a number");
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof(Value); ++i) {
            bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << 8 * i;
        }
        if constexpr (std::is_floating_point_v<Value>) {
            value = std::bit_cast<double>(bits);
        } else {
            value = static_cast<Value>(bits);
        }
    }

    /// A text, as a copy or as a view of the bytes.
    template <class TextType>
    void Text(TextType& text) {
        std::uint16_t length = 0;
        Number(length);
        text = Take(length, "a text");
    }

    void SkipText() {
        std::string_view text;
        Text(text);
    }

    /// The count of an array whose elements take at least `smallest` bytes each; -1: never allocated.
    std::int64_t ArrayHead(std::size_t smallest) {
        const auto start = static_cast<std::int64_t>(at_);
        std::uint16_t dimensions = 0;
        Number(dimensions);
        if (dimensions == 0) return -1;
        std::int32_t count = 0;
        std::int32_t lowerBound = 0;
        Number(count);
        Number(lowerBound);
        if (dimensions != 1 || lowerBound != 0) {
            throw DamagedData(
                start, fmt::format("an array of 1 dimension from 0 expected, found {} dimensions from {}",
                                   dimensions, lowerBound));
        }
        if (count < 0 || static_cast<std::size_t>(count) > (bytes_.size() - at_) / smallest) {
            throw DamagedData(start, fmt::format("an array of {} elements can't stand in the {} bytes left",
                                                 count, bytes_.size() - at_));
        }
        return count;
    }

    /// elementFields(reader, element) reads one element of at least `smallest` bytes.
    template <class Element, class ElementFields>
    void Array(DynamicArray<Element>& array, std::size_t smallest, ElementFields elementFields) {
        const std::int64_t count = ArrayHead(smallest);
        array.reset();
        if (count < 0) return;
        array.emplace(static_cast<std::size_t>(count));
        for (Element& element : *array) elementFields(*this, element);
    }

  private:
    std::string_view bytes_;
    std::size_t at_;
};

}  // namespace corvenna
