#include "world/airport_list.h"

#include <fmt/format.h>

#include "world/record_stream.h"

namespace corvenna {

namespace {

// Bytes on disk of the smallest record and the smallest elements: those whose texts are empty.
constexpr std::size_t SmallestRecord = 76;
constexpr std::size_t TaxiPointSize = 20;
constexpr std::size_t SmallestSpot = 23;
constexpr std::size_t SmallestPath = 14;
constexpr std::size_t TextLengthSize = 2;

/// A piece that is as long as this gets no more records.
constexpr std::size_t FullPiece = 1 << 20;

// ---- Each kind of field, for the writer and the reader. VisitAirportFields puts them in order.

constexpr auto TaxiPointFields = [](auto& d, auto& point) {
    d.Number(point.Kind);
    d.Number(point.Latitude);
    d.Number(point.Longitude);
};

constexpr auto ParkingSpotFields = [](auto& d, auto& spot) {
    d.Text(spot.Name);
    d.Number(spot.Radius);
    d.Number(spot.Latitude);
    d.Number(spot.Longitude);
    d.Number(spot.Spare);
};

constexpr auto TaxiPathFields = [](auto& d, auto& path) {
    d.Number(path.Kind);
    d.Number(path.StartPoint);
    d.Number(path.EndPoint);
    d.Text(path.Name);
};

/// Passes one field of a record to or from the disk.
template <class Direction, class Field>
void PassField(Direction& d, Field& field) {
    using Value = std::remove_const_t<Field>;
    if constexpr (std::is_same_v<Value, DynamicArray<TaxiPoint>>) {
        d.Array(field, TaxiPointSize, TaxiPointFields);
    } else if constexpr (std::is_same_v<Value, DynamicArray<ParkingSpot>>) {
        d.Array(field, SmallestSpot, ParkingSpotFields);
    } else if constexpr (std::is_same_v<Value, DynamicArray<TaxiPath>>) {
        d.Array(field, SmallestPath, TaxiPathFields);
    } else if constexpr (std::is_arithmetic_v<Value>) {
        d.Number(field);
    } else {
        d.Text(field);
    }
}

template <class Direction, class Record>
void PassRecord(Direction& d, Record& airport) {
    VisitAirportFields(airport, [&](const char*, auto& field) { PassField(d, field); });
}

AirportView ReadView(RecordReader& r) {
    AirportView fields;
    VisitFieldsAheadOfArrays(fields, [&](const char*, auto& field) { PassField(r, field); });
    return fields;
}

/// Steps over a record without unpacking anything.
void SkipRecord(RecordReader& r) {
    std::int16_t count = 0;
    ReadView(r);

    const std::int64_t points = r.ArrayHead(TaxiPointSize);
    if (points > 0) r.Take(static_cast<std::size_t>(points) * TaxiPointSize, "taxi points");
    r.Number(count);

    for (std::int64_t left = r.ArrayHead(SmallestSpot); left > 0; --left) {
        r.SkipText();
        r.Take(SmallestSpot - TextLengthSize, "a parking spot");
    }
    r.Number(count);

    for (std::int64_t left = r.ArrayHead(SmallestPath); left > 0; --left) {
        r.Take(SmallestPath - TextLengthSize, "a taxi path");
        r.SkipText();
    }
    r.Number(count);
}

bool HasLabel(const AirportView& airport, std::string_view label) {
    return label.size() == airport.Name.size() + airport.Icao.size() + 3 && label.starts_with(airport.Name) &&
           AirportLabel(airport) == label;
}

}  // namespace

AirportList AirportList::FromBytes(std::string bytes, std::int32_t count) {
    const std::size_t room = bytes.size() / SmallestRecord;
    if (count < 0 || static_cast<std::size_t>(count) >= room) {
        throw DamagedData(
            0, fmt::format("{} airports and a spare record expected, but {} bytes can't hold them", count,
                           bytes.size()));
    }
    AirportList list;
    list.starts_.reserve(static_cast<std::size_t>(count));
    RecordReader reader(bytes, 0);
    for (std::int32_t i = 0; i < count; ++i) {
        list.starts_.push_back({.Piece = 0, .Offset = reader.At()});
        SkipRecord(reader);
    }
    const std::size_t end = reader.At();
    SkipRecord(reader);  // the spare one
    bytes.resize(end);
    list.pieces_.push_back(std::move(bytes));
    return list;
}

void AirportList::Add(const Airport& airport) {
    if (pieces_.empty() || pieces_.back().size() >= FullPiece) pieces_.emplace_back();
    std::string& piece = pieces_.back();
    const std::size_t start = piece.size();
    try {
        RecordWriter writer(piece);
        PassRecord(writer, airport);
        starts_.push_back({pieces_.size() - 1, start});
    } catch (...) {
        piece.resize(start);
        throw;
    }
}

void AirportList::Truncate(std::int32_t count) {
    if (count >= Count()) return;
    const Place end = starts_[static_cast<std::size_t>(count)];
    starts_.resize(static_cast<std::size_t>(count));
    pieces_.resize(end.Piece + 1);
    pieces_.back().resize(end.Offset);
}

AirportView AirportList::Fields(std::int32_t number) const {
    const Place& start = starts_[static_cast<std::size_t>(number)];
    RecordReader reader(pieces_[start.Piece], start.Offset);
    return ReadView(reader);
}

Airport AirportList::Record(std::int32_t number) const {
    const Place& start = starts_[static_cast<std::size_t>(number)];
    RecordReader reader(pieces_[start.Piece], start.Offset);
    Airport airport;
    PassRecord(reader, airport);
    return airport;
}

std::vector<std::string_view> AirportList::Pieces() const { return {pieces_.begin(), pieces_.end()}; }

std::size_t AirportList::MemoryInUse() const {
    std::size_t bytes = starts_.capacity() * sizeof(Place) + pieces_.capacity() * sizeof(std::string);
    for (const std::string& piece : pieces_) bytes += piece.capacity();
    return bytes;
}

std::int32_t AirportList::FindLast(std::string_view label) const {
    for (std::int32_t number = Count() - 1; number >= 0; --number) {
        if (HasLabel(Fields(number), label)) return number;
    }
    return -1;
}

std::string AirportList::SpareRecord() {
    std::string bytes;
    RecordWriter writer(bytes);
    const Airport spare;
    PassRecord(writer, spare);
    return bytes;
}

}  // namespace corvenna
