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

// ---- The fields, in the order on disk, for the writer and the reader alike.

template <class Direction, class Fields>
void HeadFields(Direction& d, Fields& airport) {
    d.Text(airport.Name);
    d.Number(airport.Latitude);
    d.Number(airport.Longitude);
    d.Text(airport.Icao);
    d.Text(airport.GroundFreq);
    d.Text(airport.TowerFreq);
    d.Text(airport.ApproachFreq);
    d.Text(airport.CenterFreq);
    d.Text(airport.CtafFreq);
    d.Text(airport.MainRunwayId);
    d.Number(airport.MainRunwayLatitude);
    d.Number(airport.MainRunwayLongitude);
    d.Number(airport.MainRunwayElevation);
    d.Number(airport.MainRunwayLength);
    d.Number(airport.MainRunwayWidth);
    d.Number(airport.MainRunwayHeading);
    d.Number(airport.MainRunwayHasIls);
}

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

void WriteRecord(RecordWriter& w, const Airport& airport) {
    HeadFields(w, airport);
    w.Array(airport.TaxiPoints, TaxiPointFields);
    w.Number(airport.TaxiPointCount);
    w.Array(airport.ParkingSpots, ParkingSpotFields);
    w.Number(airport.ParkingSpotCount);
    w.Array(airport.TaxiPaths, TaxiPathFields);
    w.Number(airport.TaxiPathCount);
}

void ReadRecord(RecordReader& r, Airport& airport) {
    HeadFields(r, airport);
    r.Array(airport.TaxiPoints, TaxiPointSize, TaxiPointFields);
    r.Number(airport.TaxiPointCount);
    r.Array(airport.ParkingSpots, SmallestSpot, ParkingSpotFields);
    r.Number(airport.ParkingSpotCount);
    r.Array(airport.TaxiPaths, SmallestPath, TaxiPathFields);
    r.Number(airport.TaxiPathCount);
}

/// The same walk as ReadRecord, without unpacking anything.
void SkipRecord(RecordReader& r) {
    AirportView fields;
    std::int16_t count = 0;
    HeadFields(r, fields);

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
    AirportList list;
    list.bytes_ = std::move(bytes);
    const std::size_t room = list.bytes_.size() / SmallestRecord;
    if (count < 0 || static_cast<std::size_t>(count) >= room) {
        throw DamagedData(
            0, fmt::format("{} airports and a spare record expected, but {} bytes can't hold them", count,
                           list.bytes_.size()));
    }
    list.starts_.reserve(static_cast<std::size_t>(count));
    RecordReader reader(list.bytes_, 0);
    for (std::int32_t i = 0; i < count; ++i) {
        list.starts_.push_back(reader.At());
        SkipRecord(reader);
    }
    const std::size_t end = reader.At();
    SkipRecord(reader);  // the spare one
    list.bytes_.resize(end);
    return list;
}

void AirportList::Add(const Airport& airport) {
    const std::size_t start = bytes_.size();
    try {
        RecordWriter writer(bytes_);
        WriteRecord(writer, airport);
        starts_.push_back(start);
    } catch (...) {
        bytes_.resize(start);
        throw;
    }
}

void AirportList::Truncate(std::int32_t count) {
    if (count >= Count()) return;
    bytes_.resize(starts_[static_cast<std::size_t>(count)]);
    starts_.resize(static_cast<std::size_t>(count));
}

AirportView AirportList::Fields(std::int32_t number) const {
    RecordReader reader(bytes_, starts_[static_cast<std::size_t>(number)]);
    AirportView fields;
    HeadFields(reader, fields);
    return fields;
}

Airport AirportList::Record(std::int32_t number) const {
    RecordReader reader(bytes_, starts_[static_cast<std::size_t>(number)]);
    Airport airport;
    ReadRecord(reader, airport);
    return airport;
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
    WriteRecord(writer, Airport{});
    return bytes;
}

}  // namespace corvenna
