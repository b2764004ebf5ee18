#pragma once

#include "world/airport.h"

namespace corvenna {

/// Runway 16L southward from its threshold, taxiway A beside it, two gates.
inline Airport Field() {
    Airport a;
    a.Name = "Test Field";
    a.Icao = "KTST";
    a.Latitude = 47;
    a.Longitude = -122;
    a.TowerFreq = "118.3";
    a.MainRunwayId = "16L";
    a.MainRunwayLatitude = 47.01;
    a.MainRunwayLongitude = -122;
    a.MainRunwayLength = 6000;
    a.MainRunwayWidth = 150;
    a.MainRunwayHeading = 160;
    a.TaxiPoints = {{1, 47.01, -122}, {1, 46.9935, -122}, {1, 47.01, -122.004}, {1, 46.9935, -122.004}};
    a.TaxiPointCount = 4;
    a.ParkingSpots = {{{"GATE 1", 85, 47, -122.008, 0}, {"GATE 2", 85, 47.002, -122.008, 0}}};
    a.ParkingSpotCount = 2;
    a.TaxiPaths = {{{1, 0, 1, "Runway 16L"}, {0, 2, 3, "A"}, {0, 0, 2, " "}, {2, 3, 0, "0"}}};
    a.TaxiPathCount = 4;
    return a;
}

}  // namespace corvenna
