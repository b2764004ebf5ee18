#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "station/model.h"

/// The records of the airport database. Field order is the order on disk.
namespace corvenna {

/// An array that may never have been allocated, which the database tells apart from an empty one.
template <class Element>
using DynamicArray = std::optional<std::vector<Element>>;

/// What a record says ahead of its taxi network. `Text` is std::string in a record that stands for itself
/// and std::string_view in one that looks into an AirportList.
template <class Text>
struct AirportFields {
    Text Name;             ///< shown in lists and spoken in menus
    double Latitude = 0;   ///< degrees, rounded to 6 decimals
    double Longitude = 0;  ///< degrees, rounded to 6 decimals
    Text Icao;             ///< upper case
    Text GroundFreq;       ///< frequencies: MHz without trailing zeros, or empty
    Text TowerFreq;
    Text ApproachFreq;
    Text CenterFreq;
    Text CtafFreq;
    Text MainRunwayId;              ///< primary end of the longest runway, such as 9L; empty: no runway
    double MainRunwayLatitude = 0;  ///< threshold of that end, degrees, rounded to 5 decimals
    double MainRunwayLongitude = 0;
    std::int32_t MainRunwayElevation = 0;  ///< feet
    std::int32_t MainRunwayLength = 0;     ///< feet
    std::int32_t MainRunwayWidth = 0;      ///< feet
    std::int16_t MainRunwayHeading = 0;    ///< degrees magnetic
    std::int16_t MainRunwayHasIls = 0;     ///< 0 or -1

    bool operator==(const AirportFields&) const = default;
};

/// The fields of an airport in a list; its texts live as long as the list is not changed.
using AirportView = AirportFields<std::string_view>;

/// One airport. The count beside each array is what users test; the scan makes both agree.
struct Airport : AirportFields<std::string> {
    DynamicArray<TaxiPoint> TaxiPoints;
    std::int16_t TaxiPointCount = 0;
    DynamicArray<ParkingSpot> ParkingSpots;
    std::int16_t ParkingSpotCount = 0;
    DynamicArray<TaxiPath> TaxiPaths;
    std::int16_t TaxiPathCount = 0;

    bool operator==(const Airport&) const = default;
};

/// The text that stands for an airport in lists and by which it is found again: "Name (ICAO)".
template <class Text>
std::string AirportLabel(const AirportFields<Text>& airport) {
    std::string label(airport.Name);
    label.append(" (").append(airport.Icao).append(")");
    return label;
}

/// The fields of a record ahead of its arrays, by their names and in their order: visit("Name", field) with a
/// reference to each.
template <class Fields, class Visit>
void VisitFieldsAheadOfArrays(Fields& airport, Visit visit) {
    visit("Name", airport.Name);
    visit("Latitude", airport.Latitude);
    visit("Longitude", airport.Longitude);
    visit("Icao", airport.Icao);
    visit("GroundFreq", airport.GroundFreq);
    visit("TowerFreq", airport.TowerFreq);
    visit("ApproachFreq", airport.ApproachFreq);
    visit("CenterFreq", airport.CenterFreq);
    visit("CtafFreq", airport.CtafFreq);
    visit("MainRunwayId", airport.MainRunwayId);
    visit("MainRunwayLatitude", airport.MainRunwayLatitude);
    visit("MainRunwayLongitude", airport.MainRunwayLongitude);
    visit("MainRunwayElevation", airport.MainRunwayElevation);
    visit("MainRunwayLength", airport.MainRunwayLength);
    visit("MainRunwayWidth", airport.MainRunwayWidth);
    visit("MainRunwayHeading", airport.MainRunwayHeading);
    visit("MainRunwayHasIls", airport.MainRunwayHasIls);
}

/// All fields of an Airport, by their names and in their order.
template <class Record, class Visit>
void VisitAirportFields(Record& airport, Visit visit) {
    VisitFieldsAheadOfArrays(airport, visit);
    visit("TaxiPoints", airport.TaxiPoints);
    visit("TaxiPointCount", airport.TaxiPointCount);
    visit("ParkingSpots", airport.ParkingSpots);
    visit("ParkingSpotCount", airport.ParkingSpotCount);
    visit("TaxiPaths", airport.TaxiPaths);
    visit("TaxiPathCount", airport.TaxiPathCount);
}

/// Content of Corvenna.cfg.
struct ConfigRecord {
    std::string SimFolder;          ///< as the operator chose it
    std::int32_t AirportCount = 0;  ///< 0 until a scan has finished

    bool operator==(const ConfigRecord&) const = default;
};

}  // namespace corvenna
