#include "ground/taxi_routing.h"

#include <algorithm>
#include <span>

#include "ground/ground_texts.h"
#include "ground/taxi_network.h"
#include "ground/taxi_search.h"
#include "station/phases.h"
#include "station/say.h"
#include "station/text.h"

namespace corvenna {

namespace {

// ---- Texts. {route} begins and ends with a blank, and is a single one when no taxiway has a name.

constexpr std::string_view TaxiToRunwayByRouteText =
    "{callsign}, Taxi to and hold short runway {runway} using taxiway{route}. "
    "Contact tower on {tower} when ready. "
    "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TaxiToSpotByRouteText =
    "{callsign}, Taxi to {spot} using taxiway{route}. "
    "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";
constexpr std::string_view TaxiToSpotText =
    "{callsign}, Taxi to {spot}. "
    "Choose one of the following options for the Ground frequency: 1-Acknowledge 2-Close ATC Services";

struct Clearance {
    std::string_view TargetKind;
    std::string_view TextByRoute;
    std::string_view Text;
    std::string_view NextPhase;
};

constexpr Clearance Clearances[] = {
    {TaxiTarget::Runway, TaxiToRunwayByRouteText, TaxiToRunwayText, Phase::AcknowledgeTaxiToRunway},
    {TaxiTarget::Parking, TaxiToSpotByRouteText, TaxiToSpotText, Phase::AcknowledgeTaxiToGate},
};

// ---- Where a route begins and ends: a place in AirportTaxiPoints, which a damaged tie can miss

constexpr std::int32_t NoPoint = -1;

/// The nearest end of the paths that count. A path with both ends equally far counts for nothing, and among
/// equals the first path wins.
template <class Counts>
std::int32_t NearestPathEnd(const Station& station, PointDistances& distances, Counts counts) {
    std::int32_t nearest = NoPoint;
    std::int16_t nearestFeet = 0;
    for (const TaxiPath& path : station.AirportTaxiPaths) {
        if (!counts(path)) continue;
        const std::int16_t startFeet = distances.From(path.StartPoint);
        const std::int16_t endFeet = distances.From(path.EndPoint);
        if (startFeet == endFeet || std::min(startFeet, endFeet) == PointDistances::NoPoint) continue;
        if (nearest != NoPoint && std::min(startFeet, endFeet) >= nearestFeet) continue;
        nearest = startFeet < endFeet ? path.StartPoint : path.EndPoint;
        nearestFeet = std::min(startFeet, endFeet);
    }
    return nearest;
}

bool TiesSpot(const TaxiPath& path, std::size_t spot) {
    return path.Kind == TaxiPath::ParkingTie && path.EndPoint >= 0 &&
           static_cast<std::size_t>(path.EndPoint) == spot;
}

/// The point of the first tie of the first spot he stands in that has one; standing in none, the nearest
/// point that can be walked from.
std::int32_t FindStart(const Station& station, const PlayerRecord& pilot) {
    for (std::size_t spot = 0; spot < station.AirportParkingSpots.size(); ++spot) {
        if (!StandsWithin(pilot, station.AirportParkingSpots[spot])) continue;
        for (const TaxiPath& path : station.AirportTaxiPaths) {
            if (TiesSpot(path, spot)) return path.StartPoint;
        }
    }
    PointDistances toPilot(station, pilot.Latitude, pilot.Longitude);
    return NearestPathEnd(station, toPilot, IsWalkable);
}

/// The point of the runway's own paths that lies nearest to its threshold.
std::int32_t FindRunwayEnd(const Station& station) {
    PointDistances toThreshold(station, station.RunwayLatitude, station.RunwayLongitude);
    return NearestPathEnd(station, toThreshold, [&](const TaxiPath& path) {
        return path.Kind == TaxiPath::Runway && IsOfActiveRunway(station, path);
    });
}

/// The point of the last tie of the last spot that has the name.
std::int32_t FindSpotEnd(const Station& station, std::string_view spotName) {
    std::int32_t end = NoPoint;
    for (std::size_t spot = 0; spot < station.AirportParkingSpots.size(); ++spot) {
        if (!EqualIgnoringCase(station.AirportParkingSpots[spot].Name, spotName)) continue;
        for (const TaxiPath& path : station.AirportTaxiPaths) {
            if (TiesSpot(path, spot)) end = path.StartPoint;
        }
    }
    return end;
}

std::vector<TaxiPath> FindLinks(const Station& station, const PlayerRecord& pilot, const GeoPoint& target) {
    const std::int32_t start = FindStart(station, pilot);
    if (FindTaxiPoint(station, start) == nullptr) return {};
    const std::int32_t end =
        target.Kind == TaxiTarget::Runway ? FindRunwayEnd(station) : FindSpotEnd(station, target.Name);
    if (FindTaxiPoint(station, end) == nullptr) return {};
    PointDistances toTarget(station, target.Latitude, target.Longitude);
    return FindTaxiRoute(station, start, end, toTarget);
}

// ---- What is made of the links

void StoreRoute(Station& station, const PlayerRecord& pilot, const GeoPoint& target,
                std::span<const TaxiPath> links) {
    TaxiRouteRecord route;
    route.PilotName = pilot.Name;
    for (std::int16_t i = 0; i < station.PlayerCount(); ++i) {
        if (station.Players[i].Name == pilot.Name) route.PilotIndex = i;  // of several, the last
    }
    route.Links.assign(links.begin(), links.end());
    route.Links.emplace_back();
    route.Target = target;
    route.Target.Altitude = 0;  // of a runway too
    station.TaxiRoutes.Add(std::move(route));
}

/// The names of the links as they are spoken: a taxiway once, however many links of it follow each other.
std::string RouteText(std::span<const TaxiPath> links) {
    std::string route;
    for (const TaxiPath& link : links) {
        if (link.Name.empty() || link.Name == " ") continue;
        std::string name = UpperCase(link.Name);
        name.insert(name.begin(), ' ');
        if (!route.ends_with(name)) route += name;
    }
    route += ' ';
    return route;
}

}  // namespace

void AssignTaxiRoute(Station& station, PlayerRecord& pilot, const GeoPoint& target) {
    const auto* const clearance =
        std::find_if(std::begin(Clearances), std::end(Clearances),
                     [&](const Clearance& c) { return c.TargetKind == target.Kind; });
    if (clearance == std::end(Clearances)) return;

    const std::vector<TaxiPath> links = FindLinks(station, pilot, target);
    const std::string spot = UpperCase(target.Name);
    if (links.empty()) {
        Answer(station, pilot, clearance->Text, fmt::arg("spot", spot));
    } else {
        StoreRoute(station, pilot, target, links);
        Answer(station, pilot, clearance->TextByRoute, fmt::arg("spot", spot),
               fmt::arg("route", RouteText(links)));
    }
    pilot.Phase = clearance->NextPhase;
}

}  // namespace corvenna
