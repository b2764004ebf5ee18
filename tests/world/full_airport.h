#pragma once

#include <string>
#include <vector>

#include "world/airport_list.h"
#include "world/bgl_builder.h"

/// Airports for the tests of the database.
namespace corvenna {

inline std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

inline Airport Blank() { return {}; }

inline Airport Full() {
    Airport a;
    a.Name = "T\xE9st";
    a.Latitude = 47.5;
    a.Longitude = -122.25;
    a.Icao = "KTST";
    a.GroundFreq = "121.9";
    a.TowerFreq = "118.3";
    a.CtafFreq = "1";
    a.MainRunwayId = "16L";
    a.MainRunwayLatitude = 1;
    a.MainRunwayLongitude = 2;
    a.MainRunwayElevation = 433;
    a.MainRunwayLength = 11901;
    a.MainRunwayWidth = 150;
    a.MainRunwayHeading = 162;
    a.MainRunwayHasIls = -1;
    a.TaxiPoints = {{1, 47.5, -122.25}};
    a.TaxiPointCount = 1;
    a.ParkingSpots = {{{"GATE 1", 85, 3, 4, 0}}};
    a.ParkingSpotCount = 1;
    a.TaxiPaths = {{{2, 0, 7, "A"}, {0, -1, 1, ""}}};
    a.TaxiPathCount = 2;
    return a;
}

// clang-format off
/// Full(), field by field as it stands on disk.
inline Bytes FullOnDisk() {
    return ByteWriter()
        .Word(4).Text("T\xE9st")    // Name
        .Double(47.5)                // Latitude
        .Double(-122.25)             // Longitude
        .Word(4).Text("KTST")        // Icao
        .Word(5).Text("121.9")       // GroundFreq
        .Word(5).Text("118.3")       // TowerFreq
        .Word(0)                     // ApproachFreq
        .Word(0)                     // CenterFreq
        .Word(1).Text("1")           // CtafFreq
        .Word(3).Text("16L")         // MainRunwayId
        .Double(1).Double(2)         // its position
        .Long(433)                   // MainRunwayElevation
        .Long(11901)                 // MainRunwayLength
        .Long(150)                   // MainRunwayWidth
        .Word(162)                   // MainRunwayHeading
        .Word(0xFFFF)                // MainRunwayHasIls
        .Word(1).Long(1).Long(0)     // TaxiPoints: one dimension, one element, from 0
        .Long(1).Double(47.5).Double(-122.25)
        .Word(1)                     // TaxiPointCount
        .Word(1).Long(1).Long(0)     // ParkingSpots
        .Word(6).Text("GATE 1").Long(85).Double(3).Double(4).Byte(0)
        .Word(1)                     // ParkingSpotCount
        .Word(1).Long(2).Long(0)     // TaxiPaths
        .Long(2).Long(0).Long(7).Word(1).Text("A")
        .Long(0).Long(-1).Long(1).Word(0)
        .Word(2)                     // TaxiPathCount
        .Get();
}
// clang-format on

/// The records of a list as they go to the disk.
inline std::string BytesOf(const AirportList& airports) {
    std::string bytes;
    for (const std::string_view piece : airports.Pieces()) bytes += piece;
    return bytes;
}

inline AirportList ListOf(const std::vector<Airport>& airports) {
    AirportList list;
    for (const Airport& airport : airports) list.Add(airport);
    return list;
}

}  // namespace corvenna
