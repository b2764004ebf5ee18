#include "world/object_walker.h"

#include <fmt/format.h>

#include <array>

#include "station/numbers.h"
#include "world/byte_reader.h"
#include "world/walk_meter.h"

namespace corvenna {

namespace {

// ---- The format

constexpr std::uint8_t ListEntryMark = 21;
constexpr std::int64_t ListEntryLength = 9;
constexpr std::int64_t EntryObjectOffset = 5;  // counts from the list

constexpr std::int64_t ObjectSize = 10;
constexpr std::int64_t ObjectStream = 12;

bool IsObject(std::uint8_t firstByte) { return firstByte == 5 || firstByte == 8 || firstByte == 11; }

/// Opcodes of a fixed length, the opcode byte included.
struct FixedLengthRow {
    int Length = 0;
    std::initializer_list<std::uint8_t> Opcodes;
};

std::array<int, 256> FixedLengths() {
    const FixedLengthRow rows[] = {
        {2, {0x02, 0x04, 0x05, 0x08, 0x09, 0x0C, 0x22, 0x38, 0x76, 0x7D, 0x7F, 0x85, 0xAE}},
        {3, {0x86}},
        {4, {0x0D, 0x0F, 0x10, 0x12, 0x13, 0x14, 0x17, 0x1E, 0x1F, 0x23, 0x30, 0x32, 0x3F,
             0x47, 0x48, 0x50, 0x51, 0x52, 0x53, 0x56, 0x59, 0x5A, 0x5B, 0x5E, 0x65, 0x66,
             0x67, 0x71, 0x75, 0x80, 0x81, 0x87, 0x8E, 0x92, 0x93, 0x99, 0xA4, 0xA5, 0xAC}},
        {6, {0x26, 0x2B, 0x2D, 0x2E, 0x3B, 0x41, 0x4D, 0x4E, 0x4F, 0x54, 0x5C,
             0x74, 0x7E, 0x88, 0x89, 0x8A, 0x8F, 0x96, 0x97, 0x9C, 0x9F}},
        {8, {0x06, 0x07, 0x0E, 0x37, 0x39, 0x5D, 0x5F, 0x68, 0x6A, 0x6C, 0x6D, 0x6F, 0x8B, 0x9B, 0xA2, 0xA6}},
        {10,
         {0x0A, 0x0B, 0x24, 0x28, 0x33, 0x34, 0x55, 0x57, 0x58, 0x69, 0x6B, 0x6E, 0x78, 0x79, 0x7C, 0x84,
          0x95, 0xA1}},
        {12, {0x11, 0x2C, 0x3A, 0x40, 0x4A, 0x91, 0x94, 0xA8}},
        {14, {0x25, 0x9D, 0xB3}},
        {16, {0x19, 0x1C, 0x35, 0x45, 0x4C, 0x73}},
        {18, {0x31, 0x49}},
        {20, {0x63, 0x72, 0x82, 0x9E}},
        {22, {0x1B, 0x21, 0x46, 0x98, 0xA7, 0xA9}},
        {24, {0x18, 0x3D}},
        {28, {0x3C}},
        {30, {0xAD}},
        {32, {0x2F, 0x77, 0x83}},
        {38, {0xAB}},
        {40, {0x42, 0x44}},
        {44, {0xB2}},
        {158, {0x8D}},
    };
    std::array<int, 256> lengths{};
    for (const FixedLengthRow& row : rows) {
        for (const std::uint8_t opcode : row.Opcodes) lengths[opcode] = row.Length;
    }
    return lengths;
}

bool EndsStream(std::uint8_t opcode) {
    return opcode == 0x00 || opcode == 0x01 || opcode == 0x16 || opcode == 0x9A || opcode == 0xA3;
}

/// Reads at a position that may have a fraction, which is rounded.
class StreamReader {
  public:
    explicit StreamReader(ByteReader reader) : reader_(reader) {}

    std::uint8_t Opcode(double position) const { return reader_.ReadByte(ToWhole<std::int64_t>(position)); }

    /// The length of an opcode that is computed from its operands; 0 for an unknown one.
    double ComputedLength(std::uint8_t opcode, double position) const {
        const auto u = [&](int place) -> double {
            return reader_.ReadWord(ToWhole<std::int64_t>(position + place));
        };
        switch (opcode) {
            case 0x15:
                return 18 + 3 * u(2) * u(4);
            case 0x03:
                return 8 + 2 * u(2);
            case 0x1D:
                return 16 + 2 * u(2);
            case 0x27:
            case 0x2A:
            case 0x3E:
                return 14 + 2 * u(2);
            case 0x20:
            case 0x60:
            case 0x7A:
                return 14 + 6 * u(2);
            case 0x7B:
                return 16 + 6 * u(2);
            case 0x1A:
                return 6 + 6 * u(4);
            case 0x29:
                return 6 + 12 * u(4);
            case 0x62:
            case 0x64:
                return 6 + 2 * u(4);
            case 0x70:
                return 6 + 4 * u(4);
            case 0x36:
                return 16 + 2 * (u(14) / 16 + 1);  // not a whole number of bytes
            case 0x8C:
                return 6 + u(8);
            case 0x43:
            case 0x4B:
            case 0xA0:
            case 0xAA:
                return u(2);
            case 0x90:
                return static_cast<int>(u(2) + 16) & ~1;
            default:
                return 0;
        }
    }

  private:
    ByteReader reader_;
};

/// One walk over an object list.
class ObjectWalk {
  public:
    ObjectWalk(std::span<const std::uint8_t> buffer, std::string_view name)
        : reader_(buffer), name_(name), meter_(reader_.Size()) {}

    void WalkList(std::int64_t list, const std::function<void(const std::string&)>& takeLog) {
        for (std::int64_t entry = list; reader_.ReadByte(entry) == ListEntryMark; entry += ListEntryLength) {
            WalkRun(list + reader_.ReadLong(entry + EntryObjectOffset), takeLog);
        }
    }

  private:
    /// Objects back to back.
    void WalkRun(std::int64_t object, const std::function<void(const std::string&)>& takeLog) {
        while (IsObject(reader_.ReadByte(object))) {
            const std::int64_t size = reader_.ReadWord(object + ObjectSize);
            if (size == 0) throw DamagedData(object, "an object of 0 bytes");
            WalkStream(object, size - ObjectStream);
            takeLog(log_);
            meter_.Walked(object, ObjectStream + size);  // the log of an empty one takes time and room too
            object += size;
        }
    }

    void WalkStream(std::int64_t object, std::int64_t streamSize) {
        log_ = fmt::format("BGL Filename: {}\r\nObject offset: {}\r\nOpcodes List:\r\n", name_, object);
        const StreamReader stream(reader_);
        const auto end = static_cast<double>(streamSize);
        for (double j = 0; j <= end - 1;) {
            const double position = static_cast<double>(object + ObjectStream) + j;
            const std::uint8_t previous = opcode_;
            opcode_ = stream.Opcode(position);
            fmt::format_to(std::back_inserter(log_), "0x{:X}\r\n", opcode_);
            if (EndsStream(opcode_)) {
                j = end;
                continue;
            }
            const int fixed = fixedLengths_[opcode_];
            const double length = fixed != 0 ? fixed : stream.ComputedLength(opcode_, position);
            if (length == 0) throw Error(position, previous);
            j += length;
        }
    }

    OpcodeError Error(double position, std::uint8_t previous) const {
        return {log_ + " - Error Here!",
                fmt::format("Error - Current Opcode: {:X}  Current File Offset: {}  Previous Opcode: {:X}",
                            opcode_, position, previous)};
    }

    ByteReader reader_;
    std::string_view name_;
    WalkMeter meter_;
    std::array<int, 256> fixedLengths_ = FixedLengths();
    std::string log_;
    std::uint8_t opcode_ = 0;  // kept from object to object
};

}  // namespace

void WalkObjects(std::span<const std::uint8_t> buffer, std::int64_t listOffset, std::string_view name,
                 const std::function<void(const std::string& log)>& takeLog) {
    ObjectWalk(buffer, name).WalkList(listOffset, takeLog);
}

}  // namespace corvenna
