#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "world/facility_layout.h"

namespace corvenna {

using Bytes = std::vector<std::uint8_t>;

/// Values put one behind the other, little-endian.
class ByteWriter {
  public:
    ByteWriter& Byte(int value) {
        bytes_.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    ByteWriter& Word(int value) { return Byte(value & 0xFF).Byte(value >> 8 & 0xFF); }
    ByteWriter& Long(std::int64_t value) {
        for (int shift = 0; shift < 32; shift += 8) Byte(static_cast<int>(value >> shift & 0xFF));
        return *this;
    }
    ByteWriter& Single(float value) { return Long(std::bit_cast<std::int32_t>(value)); }
    ByteWriter& Double(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        return Long(static_cast<std::int64_t>(bits & 0xFFFFFFFF)).Long(static_cast<std::int64_t>(bits >> 32));
    }
    ByteWriter& Text(std::string_view text) {
        for (const char c : text) Byte(static_cast<unsigned char>(c));
        return *this;
    }
    ByteWriter& Append(const Bytes& bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// Zeros up to a place.
    ByteWriter& ZerosTo(std::int64_t place) {
        bytes_.resize(static_cast<std::size_t>(place));
        return *this;
    }
    /// Overwrites the word at a place, with zeros up to there if need be.
    ByteWriter& PutLong(std::int64_t place, std::int64_t value) {
        if (Size() < place + 4) ZerosTo(place + 4);
        for (int i = 0; i < 4; ++i) {
            bytes_[static_cast<std::size_t>(place + i)] = static_cast<std::uint8_t>(value >> 8 * i);
        }
        return *this;
    }

    std::int64_t Size() const { return static_cast<std::int64_t>(bytes_.size()); }
    const Bytes& Get() const { return bytes_; }

  private:
    Bytes bytes_;
};

/// An entry or record: id, size, and whatever its fields are put at.
class RecordBuilder {
  public:
    explicit RecordBuilder(std::int64_t id) { writer_.Long(id).Long(0); }

    RecordBuilder& Put(std::int64_t place, std::int64_t value) {
        writer_.PutLong(place, value);
        return *this;
    }
    RecordBuilder& Append(const Bytes& bytes) {
        writer_.Append(bytes);
        return *this;
    }
    RecordBuilder& Text(std::string_view text) {
        writer_.Text(text);
        return *this;
    }
    Bytes Get() const {
        ByteWriter writer = writer_;
        return writer.PutLong(facility::EntrySize, writer.Size() - facility::EntryHeadLength).Get();
    }

  private:
    ByteWriter writer_;
};

std::int32_t LatitudeWord(double degrees);
std::int32_t LongitudeWord(double degrees);

/// The packed word of a parking spot.
constexpr std::int32_t PackedSpot(int number, int nameCode) { return number * 128 + nameCode; }

/// The lists of a taxi block.
class TaxiBlockBuilder {
  public:
    struct Point {
        std::int32_t Kind;
        float East, North;
    };
    struct Spot {
        float East, North, Radius;
        std::int32_t Packed;
    };
    struct Path {
        std::int32_t Kind, Start, End, NameIndex;
    };

    TaxiBlockBuilder& Points(const std::vector<Point>& points);
    TaxiBlockBuilder& Spots(const std::vector<Spot>& spots);
    TaxiBlockBuilder& Paths(const std::vector<Path>& paths);
    TaxiBlockBuilder& Names(const std::vector<std::string>& names);
    /// A head alone.
    TaxiBlockBuilder& Head(std::int64_t count, std::int64_t elementSize);

    const Bytes& Get() const { return lists_.Get(); }

  private:
    ByteWriter lists_;
};

/// The record stream of one airport.
class AirportBuilder {
  public:
    AirportBuilder& Position(double latitude, double longitude);
    AirportBuilder& SecondPosition(double latitude, double longitude);
    AirportBuilder& Runway(int length, int width, int number, int suffix = 0);
    AirportBuilder& RunwayExtra(int kind);
    AirportBuilder& RunwayEnd(double latitude, double longitude, int elevationMetres, double headingTrue,
                              int number, int suffix = 0, int decoded = 1);
    AirportBuilder& Ident(std::string_view icao);
    /// The frequency as the digits of the word show it: 0x1183000 for 118.3.
    AirportBuilder& Com(int type, std::int64_t frequencyWord);
    AirportBuilder& TaxiBlock(const TaxiBlockBuilder& lists);
    AirportBuilder& Record(const Bytes& record);

    /// The records with an unknown one at the end.
    Bytes Get() const;

  private:
    ByteWriter stream_;
};

/// A whole file: header, facility data, chains.
class BglBuilder {
  public:
    static constexpr std::int64_t HeaderLength = 256;

    BglBuilder();

    BglBuilder& First(std::string_view name, const AirportBuilder& airport);
    BglBuilder& Second(std::string_view name, const AirportBuilder& airport);
    /// Facility data of its own making; the entry's type and id can be wrong ones.
    BglBuilder& Entry(std::string_view name, const Bytes& facilityData,
                      std::int64_t type = facility::AirportType, std::int64_t id = facility::ListEntryId);

    Bytes Get() const;
    /// As the scan holds it: with one byte more.
    Bytes Buffer() const;

    static Bytes FacilityData(const AirportBuilder& airport, int firstWord = 1, int thirdWord = 1);
    /// A name list of list entries.
    static Bytes NameList(const std::vector<Bytes>& entries);
    static Bytes ListEntry(std::string_view name, std::int64_t dataOffset, std::int64_t type,
                           std::int64_t id);

  private:
    Bytes PutData(const Bytes& data, std::string_view name, std::int64_t type, std::int64_t id);

    ByteWriter file_;
    std::vector<Bytes> first_;
    std::vector<Bytes> second_;
};

}  // namespace corvenna
