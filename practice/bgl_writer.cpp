#include "practice/bgl_writer.h"

#include <fmt/format.h>

#include <cmath>

#include "practice/bgl_bytes.h"
#include "practice/taxi_block_writer.h"
#include "station/model.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

using namespace facility;

constexpr std::int32_t HeaderLength = 256;
constexpr std::int32_t LongLength = 4;

/// Ids and types that mean nothing to a reader of airports.
constexpr std::int32_t EndId = 0;
constexpr std::int32_t OtherListEntryId = 0x30003;
constexpr std::int32_t NavaidType = 0x50002;
constexpr std::int32_t NavaidWord = 2;

/// Where a name stands and what it leads to.
struct FacilityName {
    std::string Name;
    std::int32_t Data;  // place of the facility data
};

void AddHeader(BglBytes& bgl) {
    bgl.AddBlank(HeaderLength);
    bgl.PutLong(header::Marker, static_cast<std::int32_t>(header::MarkerWord));
}

// ---- Units

std::int32_t LatitudeWord(double degrees) {
    return ToWhole<std::int32_t>(degrees * LatitudeWordsOfPole / 90);
}

/// A longitude or heading. 180 degrees and more come out negative, as they do in the files.
std::int32_t CircleWord(double degrees) {
    const auto word = ToWhole<std::int64_t>(degrees * LongitudeWordsOfCircle / 360);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(word & 0xFFFFFFFF));
}

/// A place as a reader gets it back from its words.
ReferencePlace AsRead(double latitude, double longitude) {
    return {.Latitude = RoundTo(LatitudeWord(latitude) * 90.0 / LatitudeWordsOfPole, 1e6),
            .Longitude = RoundTo(CircleWord(longitude) * 360.0 / LongitudeWordsOfCircle, 1e6)};
}

/// 118.3 MHz as 1183000h.
std::int32_t FrequencyWord(double megahertz) {
    const auto digits = fmt::format("{}", ToWhole<std::int32_t>(megahertz * 10000));
    return static_cast<std::int32_t>(std::stoul(digits, nullptr, 16));
}

// ---- Records of an airport

void AddPosition(BglBytes& bgl, std::int32_t id, double latitude, double longitude, double elevation) {
    const std::int32_t record = bgl.AddEntry(id, position::Altitude + LongLength);
    bgl.PutLong(record + position::Latitude, LatitudeWord(latitude));
    bgl.PutLong(record + position::Longitude, CircleWord(longitude));
    bgl.PutLong(record + position::Altitude, ToWhole<std::int32_t>(elevation));
}

void AddIdent(BglBytes& bgl, const std::string& code) {
    const std::int32_t record =
        bgl.AddEntry(AirportIdentId, ident::Text + static_cast<std::int32_t>(code.size()));
    bgl.PutText(record + ident::Text, code);
}

void AddRunwayEnd(BglBytes& bgl, const PracticeRunwayEnd& end) {
    const std::int32_t record = bgl.AddEntry(RunwayEndId, runway_end::Number + LongLength);
    bgl.PutLong(record + runway_end::Latitude, LatitudeWord(end.Latitude));
    bgl.PutLong(record + runway_end::Longitude, CircleWord(end.Longitude));
    bgl.PutLong(record + runway_end::Elevation, ToWhole<std::int32_t>(end.ElevationMetres));
    bgl.PutLong(record + runway_end::Heading, CircleWord(end.HeadingTrue));
    bgl.PutLong(record + runway_end::Decoded, 1);
    bgl.PutLong(record + runway_end::Suffix, end.SuffixCode);
    bgl.PutLong(record + runway_end::Number, end.Number);
}

/// The runway's own record bears the designator of its first end, and so does the ILS.
void AddRunway(BglBytes& bgl, const PracticeRunway& facts) {
    constexpr std::int32_t LightsOnly = 1;
    const PracticeRunwayEnd& first = facts.Ends[0];
    const std::int32_t record = bgl.AddEntry(RunwayRecordId, runway::Number + LongLength);
    bgl.PutLong(record + runway::Length, facts.LengthFeet);
    bgl.PutLong(record + runway::Width, facts.WidthFeet);
    bgl.PutLong(record + runway::Suffix, first.SuffixCode);
    bgl.PutLong(record + runway::Number, first.Number);
    const std::int32_t lights = bgl.AddEntry(RunwayExtraId, runway_extra::Kind + LongLength);
    bgl.PutLong(lights + runway_extra::Kind, LightsOnly);
    if (first.HasIls) {
        const std::int32_t ils = bgl.AddEntry(RunwayExtraId, runway_extra::Kind + LongLength);
        bgl.PutLong(ils + runway_extra::Kind, runway_extra::Ils);
    }
    for (const PracticeRunwayEnd& end : facts.Ends) AddRunwayEnd(bgl, end);
}

void AddRadio(BglBytes& bgl, const PracticeRadio& radio) {
    const std::int32_t record = bgl.AddEntry(ComRecordId, com::Type + LongLength);
    bgl.PutLong(record + com::Frequency, FrequencyWord(radio.Megahertz));
    bgl.PutLong(record + com::Type, static_cast<std::int32_t>(radio.Use));
}

ReferencePlace MiddleOf(const PracticeRunway& runway) {
    return {.Latitude = (runway.Ends[0].Latitude + runway.Ends[1].Latitude) / 2,
            .Longitude = (runway.Ends[0].Longitude + runway.Ends[1].Longitude) / 2};
}

/// Appends all that is told about an airport and gives its place.
std::int32_t AddAirport(BglBytes& bgl, const PracticeAirport& airport, bool twoPositions) {
    const std::int32_t data = bgl.AddBlank(facility_data::Records);
    bgl.PutLong(data + facility_data::FirstWord, facility_data::AirportWord);
    bgl.PutLong(data + facility_data::ThirdWord, facility_data::AirportWord);
    const ReferencePlace reference = twoPositions ? MiddleOf(airport.Runways.front())
                                                  : ReferencePlace{airport.Latitude, airport.Longitude};
    AddPosition(bgl, AirportPositionId, reference.Latitude, reference.Longitude, airport.ElevationMetres);
    AddIdent(bgl, airport.Code);
    for (const PracticeRunway& runway : airport.Runways) AddRunway(bgl, runway);
    if (twoPositions) {
        AddPosition(bgl, SecondPositionId, airport.Latitude, airport.Longitude, airport.ElevationMetres);
    }
    for (const PracticeRadio& radio : airport.Radios) AddRadio(bgl, radio);
    if (!airport.TaxiPoints.empty()) {
        AddTaxiBlock(bgl, airport, AsRead(reference.Latitude, reference.Longitude));
    }
    bgl.AddEntry(EndId, EntryHeadLength);
    return data;
}

/// A facility that is no airport: its third word says so.
std::int32_t AddNavaid(BglBytes& bgl) {
    const std::int32_t data = bgl.AddBlank(facility_data::Records);
    bgl.PutLong(data + facility_data::FirstWord, facility_data::AirportWord);
    bgl.PutLong(data + facility_data::ThirdWord, NavaidWord);
    return data;
}

// ---- Names

void AddListEntry(BglBytes& bgl, std::int32_t id, std::int32_t type, const FacilityName& facility) {
    const std::int32_t entry =
        bgl.AddEntry(id, list_entry::Name + static_cast<std::int32_t>(facility.Name.size()));
    bgl.PutLong(entry + list_entry::Type, type);
    bgl.PutLong(entry + list_entry::FacilityData, facility.Data);
    bgl.PutText(entry + list_entry::Name, facility.Name);
}

/// A name list of airports, between entries that lead to none.
void AddNameList(BglBytes& bgl, std::span<const FacilityName> airports, std::int32_t navaid) {
    const std::int32_t list = bgl.AddEntry(NameListId, name_list::Entries);
    AddListEntry(bgl, OtherListEntryId, AirportType, {"Closed Field", navaid});
    for (const FacilityName& airport : airports) AddListEntry(bgl, ListEntryId, AirportType, airport);
    AddListEntry(bgl, ListEntryId, NavaidType, {"Beacon", navaid});
    AddListEntry(bgl, ListEntryId, AirportType, {"Unsurveyed Strip", 0});
    bgl.PutLong(list + name_list::Count, static_cast<std::int32_t>(airports.size()) + 3);
    bgl.SetLength(list, bgl.End() - list);
}

/// Ends a run of name lists that began at a place, in the second chain. A reader goes on from the run's
/// begin by this entry's length, so the entry says a length that leads right behind it.
void EndSecondChainRun(BglBytes& bgl, std::int32_t runBegin) {
    const std::int32_t end = bgl.AddEntry(EndId, EntryHeadLength);
    bgl.SetLength(end, bgl.End() - runBegin);
}

/// Two halves of the names, one of them empty where there is a single name.
std::pair<std::span<const FacilityName>, std::span<const FacilityName>> Halves(
    std::span<const FacilityName> names) {
    const std::size_t half = (names.size() + 1) / 2;
    return {names.first(half), names.subspan(half)};
}

void AddFirstChain(BglBytes& bgl, std::span<const FacilityName> names, std::int32_t navaid) {
    bgl.PutLong(header::FirstChain, bgl.End());
    const auto [first, second] = Halves(names);
    AddNameList(bgl, first, navaid);
    AddNameList(bgl, second, navaid);
    bgl.AddEntry(EndId, EntryHeadLength);
}

void AddSecondChain(BglBytes& bgl, std::span<const FacilityName> names, std::int32_t navaid) {
    constexpr std::int32_t SkippedLength = 40;
    bgl.PutLong(header::SecondChain, bgl.End());
    const auto [first, second] = Halves(names);
    for (const auto& run : {first, second}) {
        bgl.AddEntry(SkipEntryId, SkippedLength);
        const std::int32_t begin = bgl.End();
        AddNameList(bgl, run, navaid);
        EndSecondChainRun(bgl, begin);
    }
    bgl.AddEntry(EndId, EntryHeadLength);
}

std::vector<FacilityName> AddAirports(BglBytes& bgl, std::span<const PracticeAirport> airports,
                                      bool twoPositions) {
    std::vector<FacilityName> names;
    names.reserve(airports.size());
    for (const PracticeAirport& airport : airports) {
        names.push_back({airport.Name, AddAirport(bgl, airport, twoPositions)});
    }
    return names;
}

}  // namespace

std::string FacilityFile(std::span<const PracticeAirport> firstChain,
                         std::span<const PracticeAirport> secondChain) {
    BglBytes bgl;
    AddHeader(bgl);
    bgl.PutLong(header::HasFacilities, 1);
    const std::int32_t navaid = AddNavaid(bgl);
    const auto first = AddAirports(bgl, firstChain, false);
    const auto second = AddAirports(bgl, secondChain, true);
    if (!first.empty()) AddFirstChain(bgl, first, navaid);
    if (!second.empty()) AddSecondChain(bgl, second, navaid);
    return bgl.Take();
}

std::string EmptySceneryFile() {
    BglBytes bgl;
    AddHeader(bgl);
    return bgl.Take();
}

std::string MagneticTableFile(std::span<const std::int16_t> table) {
    if (table.size() != MagVarGridSize) throw std::invalid_argument("a magnetic table of another size");
    constexpr std::int32_t ValueLength = 2;
    BglBytes bgl;
    AddHeader(bgl);
    const std::int32_t place = bgl.End();
    bgl.PutLong(magdec::TableOffset, place);
    bgl.AddBlank(magdec::TableHead);
    std::int32_t value = bgl.AddBlank(static_cast<std::int32_t>(table.size()) * ValueLength);
    for (const std::int16_t entry : table) {
        bgl.PutShort(value, entry);
        value += ValueLength;
    }
    return bgl.Take();
}

}  // namespace corvenna
