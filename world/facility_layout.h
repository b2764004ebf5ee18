#pragma once

#include <cstdint>
#include <string_view>

/// The layout of the facility part of a BGL file, for whoever reads or writes one: record ids, places of
/// fields, units. Everything is little-endian. Offsets in the header and in list entries count from the
/// file's first byte, offsets in a record from the record's first byte. A record, list entry or chain
/// entry begins with a 32-bit id and a 32-bit size; its total length is size + EntryHeadLength.
namespace corvenna::facility {

inline constexpr std::int32_t EntryId = 0;
inline constexpr std::int32_t EntrySize = 4;
inline constexpr std::int32_t EntryHeadLength = 8;

/// File header.
namespace header {
inline constexpr std::int32_t Marker = 118;  ///< unsigned 32-bit, MarkerWord
inline constexpr std::uint32_t MarkerWord = 0x87654321;
inline constexpr std::int32_t MarkerEnd = Marker + 4;  ///< a shorter file is no BGL file
inline constexpr std::int32_t HasFacilities = 144;     ///< signed 32-bit, 1 when there is facility data
inline constexpr std::int32_t FirstChain = 156;        ///< offset of the first chain; 0 or less: none
inline constexpr std::int32_t SecondChain = 164;       ///< offset of the second chain; 0 or less: none
}  // namespace header

/// Chain entries. The first chain is a run of name lists; any other id ends it. In the second one skip
/// entries may stand before and between the runs.
inline constexpr std::int32_t NameListId = 0x30001;
inline constexpr std::int32_t SkipEntryId = 1;

/// A name list: the count, then that many list entries back to back.
namespace name_list {
inline constexpr std::int32_t Count = 20;    ///< signed 32-bit
inline constexpr std::int32_t Entries = 24;  ///< the first list entry
}  // namespace name_list

/// An entry of a name list. Entries with an id other than ListEntryId are stepped over.
inline constexpr std::int32_t ListEntryId = 0x30002;
namespace list_entry {
inline constexpr std::int32_t Type = 8;           ///< AirportType for an airport
inline constexpr std::int32_t FacilityData = 12;  ///< offset in the file; 0: none
inline constexpr std::int32_t Name = 16;          ///< text up to the end of the entry
}  // namespace list_entry
inline constexpr std::int32_t AirportType = 0x50001;

/// Facility data: four words, of which the first and the third are 1 for an airport; then its records.
namespace facility_data {
inline constexpr std::int32_t FirstWord = 0;
inline constexpr std::int32_t ThirdWord = 8;
inline constexpr std::int32_t Records = 16;
inline constexpr std::int32_t AirportWord = 1;
}  // namespace facility_data

/// Units of the coordinate words, degrees each: latitude words and longitude (and heading) words.
inline constexpr double LatitudeWordsOfPole = 10001750.0;       ///< so many to 90 degrees
inline constexpr double LongitudeWordsOfCircle = 4294967296.0;  ///< so many to 360 degrees
inline constexpr double MetresPerFoot = 0.3048;

/// Record ids of an airport's stream. Any other id ends the stream.
inline constexpr std::int32_t AirportPositionId = 0x10001;
inline constexpr std::int32_t RunwayRecordId = 0x10002;
inline constexpr std::int32_t SecondPositionId = 0x10003;
inline constexpr std::int32_t RunwayExtraId = 0x10004;
inline constexpr std::int32_t RunwayEndId = 0x10005;
inline constexpr std::int32_t AirportIdentId = 0x10006;
inline constexpr std::int32_t TaxiBlockId = 0x11001;
inline constexpr std::int32_t ComRecordId = 0x20001;

/// AirportPosition and SecondPosition; the latter has no altitude.
namespace position {
inline constexpr std::int32_t Latitude = 12;
inline constexpr std::int32_t Longitude = 20;
inline constexpr std::int32_t Altitude = 28;
}  // namespace position

namespace runway {
inline constexpr std::int32_t Length = 40;  ///< feet
inline constexpr std::int32_t Width = 44;   ///< feet
inline constexpr std::int32_t Suffix = 48;  ///< index into DesignatorSuffixes
inline constexpr std::int32_t Number = 52;
}  // namespace runway

namespace runway_extra {
inline constexpr std::int32_t Kind = 40;
inline constexpr std::int32_t Ils = 4;  ///< value of Kind
}  // namespace runway_extra

namespace runway_end {
inline constexpr std::int32_t Latitude = 12;
inline constexpr std::int32_t Longitude = 20;
inline constexpr std::int32_t Elevation = 28;  ///< metres
inline constexpr std::int32_t Heading = 32;    ///< degrees true, in longitude units
inline constexpr std::int32_t Decoded = 36;    ///< the designator counts only when this is at least 1
inline constexpr std::int32_t Suffix = 40;
inline constexpr std::int32_t Number = 44;
}  // namespace runway_end

inline constexpr std::int32_t HighestRunwayNumber = 36;
inline constexpr std::string_view DesignatorSuffixes[] = {"", "L", "R", "C", "H"};

namespace ident {
inline constexpr std::int32_t Text = 8;  ///< up to the end of the record
}  // namespace ident

/// A frequency word shows the frequency times 10000 in its hexadecimal digits: 118.3 MHz is 0x1183000.
namespace com {
inline constexpr std::int32_t Frequency = 8;
inline constexpr std::int32_t Type = 12;
inline constexpr std::int32_t Ctaf = 4;
inline constexpr std::int32_t Ground = 5;
inline constexpr std::int32_t Tower = 6;
inline constexpr std::int32_t Approach = 8;
inline constexpr std::int32_t Departure = 9;
inline constexpr std::int32_t Center = 10;
}  // namespace com

/// A taxi block: from Sublists on, lists with a head of count and element size each. The element size
/// tells what a list holds; any other size ends the block, and so does the name table.
namespace taxi_block {
inline constexpr std::int32_t Sublists = 8;
inline constexpr std::int32_t ListCount = 0;
inline constexpr std::int32_t ListElementSize = 4;
inline constexpr std::int32_t ListElements = 8;

inline constexpr std::int32_t PointSize = 12;
inline constexpr std::int32_t SpotSize = 20;
inline constexpr std::int32_t PathSize = 32;
inline constexpr std::int32_t NameSize = 8;
}  // namespace taxi_block

/// Element of the taxi points. Offsets are singles, metres from the airport's reference position.
namespace taxi_point {
inline constexpr std::int32_t Kind = 0;
inline constexpr std::int32_t EastOffset = 4;
inline constexpr std::int32_t NorthOffset = 8;
}  // namespace taxi_point

/// Element of the parking spots. The low 20 bits of the packed word are number * 128 + name code.
namespace parking_spot {
inline constexpr std::int32_t EastOffset = 0;
inline constexpr std::int32_t NorthOffset = 4;
inline constexpr std::int32_t Radius = 8;  ///< single, metres
inline constexpr std::int32_t Packed = 16;
inline constexpr std::int32_t PackedMask = 0xFFFFF;
inline constexpr std::int32_t NameCodes = 128;
}  // namespace parking_spot

/// Texts of the name codes 1 to 37 of a parking spot.
inline constexpr std::string_view SpotNames[] = {
    "Parking",   "N Parking",  "NE Parking", "E Parking", "SE Parking", "S Parking", "SW Parking",
    "W Parking", "NW Parking", "Gate",       "Dock",      "Gate A",     "Gate B",    "Gate C",
    "Gate D",    "Gate E",     "Gate F",     "Gate G",    "Gate H",     "Gate I",    "Gate J",
    "Gate K",    "Gate L",     "Gate M",     "Gate N",    "Gate O",     "Gate P",    "Gate Q",
    "Gate R",    "Gate S",     "Gate T",     "Gate U",    "Gate V",     "Gate W",    "Gate X",
    "Gate Y",    "Gate Z",
};

/// Element of the taxi paths.
namespace taxi_path {
inline constexpr std::int32_t Kind = 0;
inline constexpr std::int32_t StartPoint = 12;
inline constexpr std::int32_t EndPoint = 16;
inline constexpr std::int32_t NameIndex = 28;  ///< into the name table, or of the runway for a runway path
}  // namespace taxi_path

/// magdec.bgl: the word at TableOffset, plus TableHead, is where 360 x 181 signed 16-bit values begin, all
/// latitudes from -90 to 90 for longitude 0, then for 1, and so on; units of 360 / 65536 degrees, east
/// positive.
namespace magdec {
inline constexpr std::int32_t TableOffset = 110;
inline constexpr std::int32_t TableHead = 8;
}  // namespace magdec

}  // namespace corvenna::facility
