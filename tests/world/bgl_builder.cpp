#include "world/bgl_builder.h"

#include <cmath>

namespace corvenna {

using namespace facility;

std::int32_t LatitudeWord(double degrees) {
    return static_cast<std::int32_t>(std::lround(degrees * LatitudeWordsOfPole / 90));
}

std::int32_t LongitudeWord(double degrees) {
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(std::llround(degrees * LongitudeWordsOfCircle / 360)));
}

TaxiBlockBuilder& TaxiBlockBuilder::Head(std::int64_t count, std::int64_t elementSize) {
    lists_.Long(count).Long(elementSize);
    return *this;
}

TaxiBlockBuilder& TaxiBlockBuilder::Points(const std::vector<Point>& points) {
    Head(std::ssize(points), taxi_block::PointSize);
    for (const Point& point : points) lists_.Long(point.Kind).Single(point.East).Single(point.North);
    return *this;
}

TaxiBlockBuilder& TaxiBlockBuilder::Spots(const std::vector<Spot>& spots) {
    Head(std::ssize(spots), taxi_block::SpotSize);
    for (const Spot& spot : spots) {
        lists_.Single(spot.East).Single(spot.North).Single(spot.Radius).Long(0x7FFFFFFF).Long(spot.Packed);
    }
    return *this;
}

TaxiBlockBuilder& TaxiBlockBuilder::Paths(const std::vector<Path>& paths) {
    Head(std::ssize(paths), taxi_block::PathSize);
    for (const Path& path : paths) {
        lists_.Long(path.Kind)
            .Long(-1)
            .Long(-1)
            .Long(path.Start)
            .Long(path.End)
            .Long(-1)
            .Long(-1)
            .Long(path.NameIndex);
    }
    return *this;
}

TaxiBlockBuilder& TaxiBlockBuilder::Names(const std::vector<std::string>& names) {
    Head(std::ssize(names), taxi_block::NameSize);
    for (std::string name : names) {
        name.resize(taxi_block::NameSize);
        lists_.Text(name);
    }
    return *this;
}

AirportBuilder& AirportBuilder::Record(const Bytes& record) {
    stream_.Append(record);
    return *this;
}

AirportBuilder& AirportBuilder::Position(double latitude, double longitude) {
    return Record(RecordBuilder(AirportPositionId)
                      .Put(position::Latitude, LatitudeWord(latitude))
                      .Put(position::Longitude, LongitudeWord(longitude))
                      .Put(position::Altitude, 120)
                      .Get());
}

AirportBuilder& AirportBuilder::SecondPosition(double latitude, double longitude) {
    return Record(RecordBuilder(SecondPositionId)
                      .Put(position::Latitude, LatitudeWord(latitude))
                      .Put(position::Longitude, LongitudeWord(longitude))
                      .Get());
}

AirportBuilder& AirportBuilder::Runway(int length, int width, int number, int suffix) {
    return Record(RecordBuilder(RunwayRecordId)
                      .Put(runway::Length, length)
                      .Put(runway::Width, width)
                      .Put(runway::Suffix, suffix)
                      .Put(runway::Number, number)
                      .Get());
}

AirportBuilder& AirportBuilder::RunwayExtra(int kind) {
    return Record(RecordBuilder(RunwayExtraId).Put(runway_extra::Kind, kind).Get());
}

AirportBuilder& AirportBuilder::RunwayEnd(double latitude, double longitude, int elevationMetres,
                                          double headingTrue, int number, int suffix, int decoded) {
    return Record(RecordBuilder(RunwayEndId)
                      .Put(runway_end::Latitude, LatitudeWord(latitude))
                      .Put(runway_end::Longitude, LongitudeWord(longitude))
                      .Put(runway_end::Elevation, elevationMetres)
                      .Put(runway_end::Heading, LongitudeWord(headingTrue))
                      .Put(runway_end::Decoded, decoded)
                      .Put(runway_end::Suffix, suffix)
                      .Put(runway_end::Number, number)
                      .Get());
}

AirportBuilder& AirportBuilder::Ident(std::string_view icao) {
    return Record(RecordBuilder(AirportIdentId).Text(icao).Get());
}

AirportBuilder& AirportBuilder::Com(int type, std::int64_t frequencyWord) {
    return Record(RecordBuilder(ComRecordId).Put(com::Frequency, frequencyWord).Put(com::Type, type).Get());
}

AirportBuilder& AirportBuilder::TaxiBlock(const TaxiBlockBuilder& lists) {
    return Record(RecordBuilder(TaxiBlockId).Append(lists.Get()).Get());
}

Bytes AirportBuilder::Get() const {
    ByteWriter stream = stream_;
    return stream.Long(0).Long(0).Get();
}

BglBuilder::BglBuilder() {
    file_.ZerosTo(HeaderLength);
    file_.PutLong(header::Marker, header::MarkerWord).PutLong(header::HasFacilities, 1);
}

Bytes BglBuilder::FacilityData(const AirportBuilder& airport, int firstWord, int thirdWord) {
    return ByteWriter().Long(firstWord).Long(77).Long(thirdWord).Long(77).Append(airport.Get()).Get();
}

Bytes BglBuilder::ListEntry(std::string_view name, std::int64_t dataOffset, std::int64_t type,
                            std::int64_t id) {
    return RecordBuilder(id)
        .Put(list_entry::Type, type)
        .Put(list_entry::FacilityData, dataOffset)
        .Text(name)
        .Get();
}

Bytes BglBuilder::NameList(const std::vector<Bytes>& entries) {
    RecordBuilder list(NameListId);
    list.Put(name_list::Count, std::ssize(entries));
    for (const Bytes& entry : entries) list.Append(entry);
    return list.Get();
}

Bytes BglBuilder::PutData(const Bytes& data, std::string_view name, std::int64_t type, std::int64_t id) {
    const std::int64_t offset = data.empty() ? 0 : file_.Size();
    file_.Append(data);
    return ListEntry(name, offset, type, id);
}

BglBuilder& BglBuilder::First(std::string_view name, const AirportBuilder& airport) {
    return Entry(name, FacilityData(airport));
}

BglBuilder& BglBuilder::Second(std::string_view name, const AirportBuilder& airport) {
    second_.push_back(PutData(FacilityData(airport), name, AirportType, ListEntryId));
    return *this;
}

BglBuilder& BglBuilder::Entry(std::string_view name, const Bytes& facilityData, std::int64_t type,
                              std::int64_t id) {
    first_.push_back(PutData(facilityData, name, type, id));
    return *this;
}

Bytes BglBuilder::Get() const {
    ByteWriter file = file_;
    if (!first_.empty()) {
        file.PutLong(header::FirstChain, file.Size()).Append(NameList(first_)).Long(0).Long(0);
    }
    if (!second_.empty()) {
        file.PutLong(header::SecondChain, file.Size());
        file.Append(RecordBuilder(SkipEntryId).Put(16, 5).Get()).Append(NameList(second_)).Long(0).Long(0);
    }
    return file.Get();
}

Bytes BglBuilder::Buffer() const {
    Bytes buffer = Get();
    buffer.push_back(0);
    return buffer;
}

}  // namespace corvenna
