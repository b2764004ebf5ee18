#include "ground_scenes.h"

#include <fmt/format.h>

#include <random>

#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"
#include "support/practice_station.h"

namespace corvenna {

namespace {

constexpr double Step = 0.0004;  // degrees between points of the made-up airport: 146 ft to the north

GeoPoint RunwayTarget(const Station& station) {
    return {station.ActiveRunway, std::string(TaxiTarget::Runway), station.RunwayLatitude,
            station.RunwayLongitude, station.RunwayElevation};
}

GeoPoint SpotTarget(const ParkingSpot& spot) {
    return {spot.Name, std::string(TaxiTarget::Parking), spot.Latitude, spot.Longitude, 0};
}

/// A northward runway 12,000 ft long, and nothing yet to taxi over.
Station MadeUpAirport() {
    Station station;
    station.AirportName = "Two Thousand";
    station.GroundFrequency = "121.9";
    station.TowerFrequency = "118.3";
    station.ActiveRunway = "36";
    station.RunwayLatitude = 47;
    station.RunwayLongitude = -122;
    station.RunwayElevation = 400;
    station.RunwayLength = 12000;
    station.RunwayWidth = 150;
    station.RunwayHeading = 360;
    ComputeSectorCentres(station);
    station.AirportTaxiPoints.clear();
    station.AirportTaxiPaths.clear();
    station.AirportParkingSpots.clear();
    return station;
}

}  // namespace

Station Seattle() {
    Station station = PracticeStation(CORVENNA_BENCH_DATA, "KSEA");
    ComputeSectorCentres(station);
    return station;
}

Station TwoThousandPoints() {
    constexpr int Columns = 50;
    constexpr int Rows = 40;
    Station station = MadeUpAirport();
    std::mt19937_64 engine(2000);
    const auto chance = [&](int percent) { return static_cast<int>(engine() % 100) < percent; };
    const auto place = [&](int row, int column) { return row * Columns + column; };
    for (int row = 0; row < Rows; ++row) {
        for (int column = 0; column < Columns; ++column) {
            station.AirportTaxiPoints.push_back(
                {1, station.RunwayLatitude + row * Step, station.RunwayLongitude + column * Step * 1.5});
        }
    }
    const int island = Rows * Columns - 1;
    for (int row = 0; row < Rows; ++row) {
        for (int column = 0; column < Columns; ++column) {
            const int here = place(row, column);
            if (here == island) continue;
            const std::string name = fmt::format("{}{}", static_cast<char>('A' + row % 26), row / 26);
            // Column 0 is the runway, the last one a taxiway that joins the rows.
            if (row + 1 < Rows && column == 0) {
                station.AirportTaxiPaths.push_back({TaxiPath::Runway, here, place(row + 1, 0), "Runway 36"});
            } else if (row + 1 < Rows && place(row + 1, column) != island &&
                       (column == Columns - 1 || chance(15))) {
                station.AirportTaxiPaths.push_back({TaxiPath::Taxiway, here, place(row + 1, column), "Z"});
            }
            if (column + 1 < Columns && place(row, column + 1) != island && (row == Rows - 1 || !chance(4))) {
                station.AirportTaxiPaths.push_back({TaxiPath::Taxiway, here, place(row, column + 1), name});
            }
        }
    }
    for (int i = 0; i < 200; ++i) {
        const int point = i == 199 ? island : place(1 + i % (Rows - 1), 5 + i * 7 % (Columns - 6));
        const TaxiPoint& at = station.AirportTaxiPoints[static_cast<std::size_t>(point)];
        station.AirportParkingSpots.push_back(
            {fmt::format("GATE {}", i), 40, at.Latitude + Step / 4, at.Longitude, 0});
        station.AirportTaxiPaths.push_back({TaxiPath::ParkingTie, point, i, ""});
    }
    return station;
}

Station StarOfTwoThousand() {
    constexpr int Points = 2000;
    Station station = MadeUpAirport();
    for (int i = 0; i < Points; ++i) {
        station.AirportTaxiPoints.push_back(
            {1, station.RunwayLatitude, station.RunwayLongitude + i * Step / 50});
        if (i > 0 && i + 1 < Points) station.AirportTaxiPaths.push_back({TaxiPath::Taxiway, 0, i, "A"});
    }
    const TaxiPoint& last = station.AirportTaxiPoints.back();
    station.AirportParkingSpots.push_back({"GATE 1", 40, last.Latitude + Step, last.Longitude, 0});
    station.AirportTaxiPaths.push_back({TaxiPath::ParkingTie, Points - 1, 0, ""});
    return station;
}

std::vector<TaxiRequest> AllRequests(const Station& station, std::size_t spots) {
    std::vector<TaxiRequest> requests;
    for (std::size_t i = 0; i < std::min(spots, station.AirportParkingSpots.size()); ++i) {
        const ParkingSpot& spot = station.AirportParkingSpots[i];
        requests.push_back(
            {.Latitude = spot.Latitude, .Longitude = spot.Longitude, .Target = RunwayTarget(station)});
        requests.push_back({.Latitude = station.RunwayLatitude,
                            .Longitude = station.RunwayLongitude,
                            .Target = SpotTarget(spot)});
    }
    return requests;
}

TaxiRequest UnreachableRequest(const Station& station) {
    const TaxiPoint& from = station.AirportTaxiPoints.front();
    return {.Latitude = from.Latitude,
            .Longitude = from.Longitude,
            .Target = SpotTarget(station.AirportParkingSpots.back())};
}

void AddTaxiingPilots(Station& station, int pilots, int links) {
    std::mt19937_64 engine(200);
    std::vector<std::vector<TaxiPath>> from(station.AirportTaxiPoints.size());
    for (const TaxiPath& path : station.AirportTaxiPaths) {
        if (!IsWalkable(path)) continue;
        from[static_cast<std::size_t>(path.StartPoint)].push_back(path);
        from[static_cast<std::size_t>(path.EndPoint)].push_back(
            {path.Kind, path.EndPoint, path.StartPoint, path.Name});
    }
    for (int i = 0; i < pilots; ++i) {
        PlayerRecord pilot;
        pilot.Name = fmt::format("N{}", i);
        pilot.Id = i + 2;
        pilot.Role = Role::Player;
        pilot.InService = UnderService;
        pilot.TunedFrequency = station.GroundFrequency;
        pilot.Phase = Phase::TaxiingToRunway;
        pilot.Altitude = station.RunwayElevation;
        station.Players.Add(pilot);

        TaxiRouteRecord route;
        route.PilotName = pilot.Name;
        route.PilotIndex = static_cast<std::int16_t>(i);
        route.Target = RunwayTarget(station);
        route.Links.clear();
        auto here = static_cast<std::size_t>(engine() % from.size());
        while (from[here].empty()) here = engine() % from.size();
        for (int link = 0; link < links; ++link) {
            route.Links.push_back(from[here][engine() % from[here].size()]);
            here = static_cast<std::size_t>(route.Links.back().EndPoint);
        }
        route.Links.emplace_back();
        station.TaxiRoutes.Add(route);
    }
    MovePilots(station, 0);
}

void MovePilots(Station& station, int tick) {
    for (const TaxiRouteRecord& route : station.TaxiRoutes.Valid()) {
        const TaxiPath& link = route.Links[0];
        const TaxiPoint& a = station.AirportTaxiPoints[static_cast<std::size_t>(link.StartPoint)];
        const TaxiPoint& b = station.AirportTaxiPoints[static_cast<std::size_t>(link.EndPoint)];
        const double along = 0.2 + 0.6 * ((tick + route.PilotIndex) % 50) / 50;
        PlayerRecord& pilot = station.Players[route.PilotIndex];
        pilot.Latitude = a.Latitude + (b.Latitude - a.Latitude) * along;
        pilot.Longitude = a.Longitude + (b.Longitude - a.Longitude) * along;
    }
}

}  // namespace corvenna
