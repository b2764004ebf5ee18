#include "world/facility_decoder.h"

#include "station/geometry.h"
#include "station/numbers.h"
#include "station/text.h"
#include "world/byte_reader.h"
#include "world/facility_layout.h"
#include "world/taxi_block.h"

namespace corvenna {

namespace {

using namespace facility;

double LatitudeDegrees(std::int32_t word) { return word * 90.0 / LatitudeWordsOfPole; }
double LongitudeDegrees(std::int32_t word) { return word * 360.0 / LongitudeWordsOfCircle; }
double RoundTo6(double x) { return RoundTo(x, 1e6); }

/// Total length of the chain entry, list entry or record at an offset.
std::int64_t EntryLength(const ByteReader& reader, std::int64_t offset) {
    const std::int64_t length = std::int64_t{reader.ReadLong(offset + EntrySize)} + EntryHeadLength;
    if (length <= 0) throw DamagedData(offset, fmt::format("an entry of {} bytes", length));
    return length;
}

/// Whether the words of a runway or runway end make a designator.
bool IsDesignator(std::int32_t number, std::int32_t suffix) {
    return number <= HighestRunwayNumber && suffix < static_cast<std::int32_t>(std::size(DesignatorSuffixes));
}

std::string Designator(std::int32_t number, std::int32_t suffix) {
    std::string designator = std::to_string(number);
    if (suffix > 0) designator += DesignatorSuffixes[suffix];
    return designator;
}

/// MHz as decimal text. A word with a letter among its hexadecimal digits says nothing.
std::optional<std::string> FrequencyText(std::int32_t word) {
    std::uint64_t digits = 0;
    for (int shift = 28; shift >= 0; shift -= 4) {
        const std::uint32_t digit = static_cast<std::uint32_t>(word) >> shift & 0xF;
        if (digit > 9) return std::nullopt;
        digits = digits * 10 + digit;
    }
    std::string text = std::to_string(digits / 10000);
    if (digits % 10000 != 0) {
        text += fmt::format(".{:04}", digits % 10000);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text;
}

/// Goes through the records of one airport.
class AirportDecoder {
  public:
    AirportDecoder(ByteReader reader, const Station& station, WalkMeter& meter, Airport& airport)
        : reader_(reader), station_(station), meter_(meter), airport_(airport) {}

    void Decode(std::int64_t offset) {
        try {
            for (at_ = offset; DecodeRecord();) {
            }
        } catch (const DamagedData&) {
            throw;
        } catch (const std::exception& failure) {  // a number too big for its field, a place off the table
            throw DamagedData(at_, failure.what());
        }
    }

  private:
    /// Decodes the record at at_ and steps to the one behind it; false: it is of no known kind.
    bool DecodeRecord() {
        const std::int64_t record = at_;
        const std::int32_t id = reader_.ReadLong(record);
        switch (id) {
            case AirportPositionId:
                ReadPosition(record);
                break;
            case RunwayRecordId:
                ReadRunway(record);
                break;
            case SecondPositionId:
                ReadSecondPosition(record);
                break;
            case RunwayExtraId:
                break;  // belongs to no runway here
            case RunwayEndId:
                ReadRunwayEnd(record);
                break;
            case AirportIdentId:
                ReadIdent(record);
                break;
            case TaxiBlockId:
                DecodeTaxiBlock(reader_, record, meter_, taxi_, airport_);
                break;
            case ComRecordId:
                ReadCom(record);
                break;
            default:
                return false;
        }
        Step(record);
        if (id == RunwayRecordId) ReadRunwayExtras();
        return true;
    }

    void Step(std::int64_t record) {
        const std::int64_t length = EntryLength(reader_, record);
        meter_.Walked(record, length);
        at_ = record + length;
    }

    std::int32_t Long(std::int64_t record, std::int32_t field) const {
        return reader_.ReadLong(record + field);
    }

    void ReadPosition(std::int64_t record) {
        ReadSecondPosition(record);
        Long(record, position::Altitude);  // not used, but it must be there
        taxi_.Projection = TaxiProjection(airport_.Latitude, airport_.Longitude);
    }

    /// Moves the airport, but not the point that its taxi network hangs on.
    void ReadSecondPosition(std::int64_t record) {
        airport_.Latitude = RoundTo6(LatitudeDegrees(Long(record, position::Latitude)));
        airport_.Longitude = RoundTo6(LongitudeDegrees(Long(record, position::Longitude)));
    }

    void ReadRunway(std::int64_t record) {
        const std::int32_t length = Long(record, runway::Length);
        const std::int32_t width = Long(record, runway::Width);
        const std::int32_t suffix = Long(record, runway::Suffix);
        const std::int32_t number = Long(record, runway::Number);
        if (IsDesignator(number, suffix)) runwayDesignator_ = Designator(number, suffix);
        taxi_.RunwayNames.push_back("Runway " + runwayDesignator_);
        if (length <= airport_.MainRunwayLength) return;
        airport_.MainRunwayId = runwayDesignator_;
        airport_.MainRunwayLength = length;
        airport_.MainRunwayWidth = width;
        airport_.MainRunwayHasIls = 0;
    }

    /// The extras directly behind a runway. They count for the main runway's designator, whichever runway
    /// they follow.
    void ReadRunwayExtras() {
        while (reader_.ReadLong(at_) == RunwayExtraId) {
            const bool ils = Long(at_, runway_extra::Kind) == runway_extra::Ils;
            if (ils && runwayDesignator_ == airport_.MainRunwayId) airport_.MainRunwayHasIls = -1;
            Step(at_);
        }
    }

    /// Counts when it is an end of what is the main runway by now; so the order of the records matters.
    void ReadRunwayEnd(std::int64_t record) {
        const std::int32_t suffix = Long(record, runway_end::Suffix);
        const std::int32_t number = Long(record, runway_end::Number);
        if (Long(record, runway_end::Decoded) >= 1 && IsDesignator(number, suffix)) {
            endDesignator_ = Designator(number, suffix);
        }
        if (endDesignator_ != airport_.MainRunwayId) return;
        const std::int32_t elevation = Long(record, runway_end::Elevation);
        const std::int32_t heading = Long(record, runway_end::Heading);
        airport_.MainRunwayLatitude = RoundTo5(LatitudeDegrees(Long(record, runway_end::Latitude)));
        airport_.MainRunwayLongitude = RoundTo5(LongitudeDegrees(Long(record, runway_end::Longitude)));
        airport_.MainRunwayElevation = ToWhole<std::int32_t>(elevation / MetresPerFoot);
        airport_.MainRunwayHeading =
            TrueToMagnetic(station_, ToWhole<std::int32_t>(LongitudeDegrees(heading)),
                           airport_.MainRunwayLatitude, airport_.MainRunwayLongitude);
    }

    void ReadIdent(std::int64_t record) {
        std::string text;
        reader_.ReadText(record + ident::Text, Long(record, EntrySize), text);
        airport_.Icao = UpperCase(text);
    }

    void ReadCom(std::int64_t record) {
        const auto frequency = FrequencyText(Long(record, com::Frequency));
        const std::int32_t type = Long(record, com::Type);
        if (!frequency) return;
        switch (type) {
            case com::Ctaf:
                airport_.CtafFreq = *frequency;
                break;
            case com::Ground:
                airport_.GroundFreq = *frequency;
                break;
            case com::Tower:
                airport_.TowerFreq = *frequency;
                break;
            case com::Approach:
                airport_.ApproachFreq = *frequency;
                break;
            case com::Departure:  // stands in where there is no Approach
                if (airport_.ApproachFreq.empty()) airport_.ApproachFreq = *frequency;
                break;
            case com::Center:
                airport_.CenterFreq = *frequency;
                break;
            default:
                break;
        }
    }

    ByteReader reader_;
    const Station& station_;
    WalkMeter& meter_;
    Airport& airport_;
    std::int64_t at_ = 0;
    TaxiContext taxi_;
    std::string runwayDesignator_;
    std::string endDesignator_;
};

/// Goes through the chains and name lists of one file.
class FacilityWalk {
  public:
    FacilityWalk(ByteReader reader, const Station& station, AirportList& airports)
        : reader_(reader), station_(station), airports_(airports), meter_(reader.Size()) {}

    void WalkFile() {
        if (reader_.ReadLong(header::HasFacilities) != 1) return;
        if (const std::int32_t chain = reader_.ReadLong(header::FirstChain); chain > 0) WalkRun(chain);
        if (const std::int32_t chain = reader_.ReadLong(header::SecondChain); chain > 0)
            WalkSecondChain(chain);
    }

  private:
    /// Processes name lists one behind the other; the offset of the entry that ended the run.
    std::int64_t WalkRun(std::int64_t entry) {
        while (reader_.ReadLong(entry) == NameListId) {
            const std::int64_t length = EntryLength(reader_, entry);
            meter_.Walked(entry, name_list::Entries);
            WalkNameList(entry);
            entry += length;
        }
        return entry;
    }

    /// Behind a run of name lists this walk steps on from the run's first entry, and by the size of the entry
    /// that ended the run. Where that leads is up to the file, and airports can come twice; files in use are
    /// made for it.
    void WalkSecondChain(std::int64_t entry) {
        while (true) {
            meter_.Walked(entry, EntryHeadLength);
            const std::int32_t id = reader_.ReadLong(entry);
            if (id == SkipEntryId) {
                entry += EntryLength(reader_, entry);
            } else if (id == NameListId) {
                entry += EntryLength(reader_, WalkRun(entry));
            } else {
                return;
            }
        }
    }

    void WalkNameList(std::int64_t list) {
        std::int64_t entry = list + name_list::Entries;
        for (std::int32_t left = reader_.ReadLong(list + name_list::Count); left > 0; --left) {
            const std::int64_t length = EntryLength(reader_, entry);
            meter_.Walked(entry, EntryHeadLength);  // of an entry that is stepped over, only the head is read
            if (reader_.ReadLong(entry) == ListEntryId) ReadListEntry(entry, length);
            entry += length;
        }
    }

    void ReadListEntry(std::int64_t entry, std::int64_t length) {
        name_.clear();
        reader_.ReadText(entry + list_entry::Name, length - list_entry::Name, name_);
        meter_.Walked(entry, length);
        const std::int32_t type = reader_.ReadLong(entry + list_entry::Type);
        const std::int32_t data = reader_.ReadLong(entry + list_entry::FacilityData);
        reader_.Range(data, facility_data::Records);  // all four words are read, whatever the entry is
        if (type == AirportType && data > 0 && IsAirport(data)) AddAirport(entry, data);
    }

    bool IsAirport(std::int64_t data) const {
        return reader_.ReadLong(data + facility_data::FirstWord) == facility_data::AirportWord &&
               reader_.ReadLong(data + facility_data::ThirdWord) == facility_data::AirportWord;
    }

    void AddAirport(std::int64_t entry, std::int64_t data) {
        constexpr std::int64_t CostOfAnAirport = 256;  // for the memory it takes, however little it says
        meter_.Walked(entry, CostOfAnAirport);
        Airport airport;
        airport.Name = name_;
        AirportDecoder(reader_, station_, meter_, airport).Decode(data + facility_data::Records);
        try {
            airports_.Add(airport);
        } catch (const std::length_error& tooLong) {
            throw DamagedData(entry, tooLong.what());
        }
    }

    ByteReader reader_;
    const Station& station_;
    AirportList& airports_;
    WalkMeter meter_;
    std::string name_;
};

}  // namespace

void ScanFacilities(std::span<const std::uint8_t> buffer, const Station& station, AirportList& airports) {
    const std::int32_t before = airports.Count();
    try {
        FacilityWalk(ByteReader(buffer), station, airports).WalkFile();
    } catch (...) {
        airports.Truncate(before);
        throw;
    }
}

void DecodeAirport(std::span<const std::uint8_t> buffer, std::int64_t facilityData, const Station& station,
                   Airport& airport) {
    const ByteReader reader(buffer);
    WalkMeter meter(reader.Size());
    AirportDecoder(reader, station, meter, airport).Decode(facilityData + facility_data::Records);
}

}  // namespace corvenna
