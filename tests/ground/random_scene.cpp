#include "ground/random_scene.h"

#include "ground/taxi_network.h"
#include "station/geometry.h"
#include "station/phases.h"

namespace corvenna {

namespace {

constexpr double AirportLatitude = 47.0;
constexpr double AirportLongitude = -122.0;
constexpr double Step = 0.0005;  // degrees: some 180 ft to the north

constexpr std::string_view PathNames[] = {"A", "a",         "B",         "C2",       "",
                                          " ", "Runway 16", "runway 16", "Runway 34"};
constexpr std::string_view SpotNames[] = {"GATE A 1",    "GATE A 2", "gate b 1",    "PARKING 1",
                                          "N PARKING 2", "DOCK 1",   "n parking 2", "16"};
constexpr std::string_view Words[] = {Phase::None,
                                      Phase::AcknowledgeTaxiToRunway,
                                      Phase::TaxiingToRunway,
                                      Phase::AcknowledgeHoldPosition,
                                      Phase::HoldPosition,
                                      Phase::AcknowledgeTaxiToGate,
                                      Phase::TaxiingToGate,
                                      Phase::ContactGround,
                                      "Takingoff"};

}  // namespace

Station RandomScene::Airport(int points) {
    onLattice_ = Chance(40);
    damaged_ = Chance(25);
    Station station;
    station.AirportName = "Test Field";
    station.AirportLatitude = AirportLatitude;
    station.AirportLongitude = AirportLongitude;
    station.GroundFrequency = "121.9";
    station.TowerFrequency = "118.3";
    station.ArtccFrequency = "Air Route Traffic Control Center";
    station.ActiveRunway = "16";
    station.RunwayLatitude = AirportLatitude + Number(-4, 4) * Step;
    station.RunwayLongitude = AirportLongitude + Number(-4, 4) * Step;
    station.RunwayElevation = 400;
    station.RunwayLength = Number(0, 3000);
    station.RunwayWidth = Number(50, 900);
    station.RunwayHeading = static_cast<std::int16_t>(Number(0, 36) * 10);
    ComputeSectorCentres(station);
    if (Chance(30)) station.MagVarGrid.assign(MagVarGridSize, static_cast<std::int16_t>(Number(-4000, 4000)));

    const int spots = Number(1, 5);
    station.AirportTaxiPoints.clear();
    for (int i = 0; i < points; ++i) station.AirportTaxiPoints.push_back(Point());
    station.AirportParkingSpots.clear();
    for (int i = 0; i < spots; ++i) station.AirportParkingSpots.push_back(Spot(station, i));
    station.AirportTaxiPaths.clear();
    const int paths = Number(1, points * 2 + 3);
    for (int i = 0; i < paths; ++i) station.AirportTaxiPaths.push_back(Path(points, spots));
    return station;
}

TaxiPoint RandomScene::Point() {
    if (damaged_ && Chance(5)) {
        return Chance(50) ? TaxiPoint{1, 1000.0 * Number(-9, 9), 1e300} : TaxiPoint{1, -33, 151};
    }
    const double scale = onLattice_ ? 1 : 0.731;
    return {1, AirportLatitude + Number(-6, 6) * Step * scale,
            AirportLongitude + Number(-6, 6) * Step * scale};
}

TaxiPath RandomScene::Path(int points, int spots) {
    TaxiPath path;
    path.Name = Word(PathNames);
    path.StartPoint = Number(0, points - 1);
    if (Chance(25)) {
        path.Kind = TaxiPath::ParkingTie;
        path.EndPoint = Number(0, spots - 1);
    } else {
        // Mostly between neighbours in number, so that long chains, dead ends and islands come about.
        path.Kind = path.Name.size() > 2 || Chance(10) ? TaxiPath::Runway : TaxiPath::Taxiway;
        path.EndPoint = Chance(60) ? (path.StartPoint + 1) % points : Number(0, points - 1);
        if (Chance(3)) path.Kind = Number(-1, 4);
    }
    if (damaged_ && Chance(8)) path.StartPoint = Number(-3, points + 3);
    if (damaged_ && Chance(8)) path.EndPoint = Chance(20) ? 2147483647 : Number(-3, points + 3);
    return path;
}

ParkingSpot RandomScene::Spot(const Station& station, int number) {
    const TaxiPoint& near = station.AirportTaxiPoints[static_cast<std::size_t>(
        Number(0, static_cast<int>(station.AirportTaxiPoints.size()) - 1))];
    ParkingSpot spot;
    spot.Name = number == 0 && Chance(3) ? "" : Word(SpotNames);
    spot.Radius = Chance(10) ? Number(-5, 0) : Number(1, 600);
    if (Chance(2)) spot.Radius = 40000;
    spot.Latitude = near.Latitude + Number(-2, 2) * Step / 2;
    spot.Longitude = near.Longitude + Number(-2, 2) * Step / 2;
    if (damaged_ && Chance(5)) spot.Latitude = 1e300;
    spot.Spare = static_cast<std::uint8_t>(Number(0, 1));
    return spot;
}

void RandomScene::Place(const Station& station, PlayerRecord& pilot) {
    const auto pick = [&](const auto& list) -> const auto& {
        return list[static_cast<std::size_t>(Number(0, static_cast<int>(list.size()) - 1))];
    };
    double latitude = AirportLatitude;
    double longitude = AirportLongitude;
    const int where = Number(1, 100);
    if (where <= 40) {
        latitude = pick(station.AirportTaxiPoints).Latitude;
        longitude = pick(station.AirportTaxiPoints).Longitude;
    } else if (where <= 65) {
        const ParkingSpot& spot = pick(station.AirportParkingSpots);
        latitude = spot.Latitude;
        longitude = spot.Longitude;
    } else if (where <= 80) {
        const GeoPoint place = ProjectFeet(station.RunwayLatitude, station.RunwayLongitude,
                                           station.SectorNorth, Number(0, 3000));
        latitude = place.Latitude;
        longitude = place.Longitude;
    }
    if (!(latitude > 40 && latitude < 50)) latitude = AirportLatitude;
    if (!(longitude > -130 && longitude < -100)) longitude = AirportLongitude;
    if (!onLattice_ || Chance(30)) {
        latitude += Number(-300, 300) * 1e-6;
        longitude += Number(-300, 300) * 1e-6;
    }
    pilot.Latitude = latitude;
    pilot.Longitude = longitude;
    pilot.Altitude = station.RunwayElevation + (Chance(85) ? Number(-3, 20) : Number(298, 302));
}

PlayerRecord RandomScene::Pilot(const Station& station, int number) {
    PlayerRecord pilot;
    pilot.Name = "N" + std::to_string(Chance(5) ? Number(0, 3) : number);
    pilot.Id = number + 2;
    pilot.Role = Chance(90) ? Role::Player : Role::Observer;
    pilot.InService = UnderService;
    pilot.TunedFrequency = Chance(80) ? station.GroundFrequency : "";
    pilot.FlightRules = static_cast<std::uint8_t>(Chance(3) ? 2 : Number(0, 1));
    pilot.Phase = Word(Words);
    Place(station, pilot);
    return pilot;
}

TaxiRouteRecord RandomScene::Route(const Station& station) {
    const int points = static_cast<int>(station.AirportTaxiPoints.size());
    const int pilots = station.PlayerCount();
    TaxiRouteRecord route;
    route.PilotIndex = static_cast<std::int16_t>(Number(0, pilots > 0 ? pilots - 1 : 0));
    if (pilots > 0) route.PilotName = station.Players[route.PilotIndex].Name;
    if (Chance(10)) route.PilotIndex = static_cast<std::int16_t>(Number(-1, pilots + 1));
    if (Chance(1)) route.PilotIndex = 32767;
    route.Target = Target(station);
    route.Links.clear();
    int from = Number(0, points - 1);
    for (int i = Number(0, 6); i > 0; --i) {
        TaxiPath link{Number(0, 1), from, Number(0, points - 1), Word(PathNames)};
        if (Chance(10)) link.StartPoint = link.EndPoint = -1;
        if (damaged_ && Chance(5)) link.StartPoint = Number(-3, points + 2);
        if (damaged_ && Chance(5)) link.EndPoint = Number(-3, points + 2);
        from = link.EndPoint >= 0 && link.EndPoint < points ? link.EndPoint : 0;
        route.Links.push_back(link);
    }
    route.Links.emplace_back();
    return route;
}

GeoPoint RandomScene::Target(const Station& station) {
    GeoPoint target;
    if (Chance(45)) {
        target = {station.ActiveRunway, std::string(TaxiTarget::Runway), station.RunwayLatitude,
                  station.RunwayLongitude, station.RunwayElevation};
    } else if (Chance(93)) {
        const auto& spots = station.AirportParkingSpots;
        const ParkingSpot& spot =
            spots[static_cast<std::size_t>(Number(0, static_cast<int>(spots.size()) - 1))];
        target = {spot.Name, std::string(TaxiTarget::Parking), spot.Latitude, spot.Longitude, 0};
        if (!InMagVarGrid(spot.Latitude, spot.Longitude)) target.Latitude = AirportLatitude;
    } else {
        target.Kind = Chance(50) ? "" : "runway";
    }
    return target;
}

void RandomScene::AddTraffic(Station& station) {
    const int pilots = Number(1, 8);
    for (int i = 0; i < pilots; ++i) station.Players.Add(Pilot(station, i));
    const int routes = Number(0, 8);
    for (int i = 0; i < routes; ++i) station.TaxiRoutes.Add(Route(station));
    if (Chance(20)) station.TakeoffQueue.Add("N" + std::to_string(Number(0, 9)));
    if (Chance(10)) station.LandingQueue.Add("N" + std::to_string(Number(0, 9)));
    if (Chance(10)) station.Players[pilots].Phase = Word(Words);  // the spare record can have been written to
}

void RandomScene::Disturb(Station& station) {
    for (PlayerRecord& pilot : station.Players.Valid()) {
        if (Chance(50)) Place(station, pilot);
        if (Chance(40)) pilot.Choice = static_cast<std::uint8_t>(Number(0, 4));
        if (Chance(5)) pilot.Phase = Word(Words);
        if (Chance(50)) {
            pilot.TunedFrequency = Chance(85) ? station.GroundFrequency : station.TowerFrequency;
            pilot.InService = UnderService;
        }
    }
    if (station.TaxiRouteCount() > 0 && Chance(25)) {
        TaxiRouteRecord& route = station.TaxiRoutes[Number(0, station.TaxiRouteCount() - 1)];
        const TaxiRouteRecord other = Route(station);
        if (Chance(50)) route.PilotName = other.PilotName;
        if (Chance(50)) route.Links = other.Links;
        if (Chance(50)) route.PilotIndex = other.PilotIndex;
        if (Chance(50)) route.Target = other.Target;
    }
    if (Chance(10)) station.TaxiRoutes.Add(Route(station));
    if (Chance(10)) station.TakeoffQueue.Clear();
    if (Chance(10)) station.TakeoffQueue.Add("N1");
    if (Chance(10)) station.AirportTaxiPoints[0] = Point();
    if (Chance(10)) {
        auto& paths = station.AirportTaxiPaths;
        paths[static_cast<std::size_t>(Number(0, static_cast<int>(paths.size()) - 1))] =
            Path(static_cast<int>(station.AirportTaxiPoints.size()),
                 static_cast<int>(station.AirportParkingSpots.size()));
    }
    if (Chance(10)) station.AirportParkingSpots.back() = Spot(station, 1);
    if (Chance(5)) station.ActiveRunway = Chance(50) ? "16" : "34";
}

}  // namespace corvenna
