#include "fuzz/fuzz_input.h"
#include "world/errors.h"
#include "world/facility_decoder.h"

/// Any bytes as a BGL file. A damaged one leaves the list as it was; what a sound one adds can be read back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvenna;
    static const Station station;
    const auto buffer = FileBuffer(AsText(data, size));

    AirportList airports;
    Airport known;
    known.Name = "Known Field";
    airports.Add(known);
    const std::string before = Joined(airports.Pieces());
    try {
        ScanFacilities(buffer, station, airports);
    } catch (const DamagedData&) {
        Require(Joined(airports.Pieces()) == before && airports.Count() == 1, "a damaged file adds nothing");
        return 0;
    }
    const std::string bytes = Joined(airports.Pieces()) + AirportList::SpareRecord();
    const AirportList again = AirportList::FromBytes(bytes, airports.Count());
    for (std::int32_t i = 0; i < airports.Count(); ++i) {
        const Airport airport = again.Record(i);
        Require(airport.TaxiPoints.has_value() == (airport.TaxiPointCount > 0) &&
                    airport.ParkingSpots.has_value() == (airport.ParkingSpotCount > 0) &&
                    airport.TaxiPaths.has_value() == (airport.TaxiPathCount > 0),
                "an array is there when its count says so");
    }
    return 0;
}
