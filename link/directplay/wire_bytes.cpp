#include "link/directplay/wire_bytes.h"

namespace corvenna::directplay {

namespace {

std::uint32_t Number(std::byte value) { return std::to_integer<std::uint32_t>(value); }

}  // namespace

ByteSpan ByteReader::Take(std::size_t count) {
    if (Left() < count) throw WireError("a message ends too early");
    const ByteSpan taken = message_.subspan(next_, count);
    next_ += count;
    return taken;
}

std::uint8_t ByteReader::U8() { return static_cast<std::uint8_t>(Number(Take(1)[0])); }

std::uint16_t ByteReader::U16() {
    const ByteSpan b = Take(2);
    return static_cast<std::uint16_t>(Number(b[0]) | Number(b[1]) << 8);
}

std::uint32_t ByteReader::U32() {
    const ByteSpan b = Take(4);
    return Number(b[0]) | Number(b[1]) << 8 | Number(b[2]) << 16 | Number(b[3]) << 24;
}

std::uint16_t ByteReader::BigEndianU16() {
    const ByteSpan b = Take(2);
    return static_cast<std::uint16_t>(Number(b[0]) << 8 | Number(b[1]));
}

std::uint32_t ByteReader::BigEndianU32() {
    const ByteSpan b = Take(4);
    return Number(b[0]) << 24 | Number(b[1]) << 16 | Number(b[2]) << 8 | Number(b[3]);
}

std::u16string ByteReader::Text() {
    std::u16string text;
    while (Left() >= 2) {
        const auto unit = static_cast<char16_t>(U16());
        if (unit == 0) return text;
        text.push_back(unit);
    }
    throw WireError("a text has no end");
}

ByteReader ByteReader::At(std::size_t offset) const {
    if (offset > message_.size()) throw WireError("an offset points behind the message");
    ByteReader reader(message_);
    reader.next_ = offset;
    return reader;
}

void ByteWriter::U16(std::uint16_t value) {
    U8(static_cast<std::uint8_t>(value));
    U8(static_cast<std::uint8_t>(value >> 8));
}

void ByteWriter::U32(std::uint32_t value) {
    U16(static_cast<std::uint16_t>(value));
    U16(static_cast<std::uint16_t>(value >> 16));
}

void ByteWriter::BigEndianU16(std::uint16_t value) {
    U8(static_cast<std::uint8_t>(value >> 8));
    U8(static_cast<std::uint8_t>(value));
}

void ByteWriter::BigEndianU32(std::uint32_t value) {
    BigEndianU16(static_cast<std::uint16_t>(value >> 16));
    BigEndianU16(static_cast<std::uint16_t>(value));
}

void ByteWriter::Text(std::u16string_view text) {
    for (const char16_t unit : text) U16(unit);
    U16(0);
}

void ByteWriter::PutU32(std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes_.at(offset + i) = static_cast<std::byte>(value >> (8 * i));
}

}  // namespace corvenna::directplay
