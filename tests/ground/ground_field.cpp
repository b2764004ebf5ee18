#include "ground/ground_field.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ground/ground_control.h"
#include "ground/taxi_network.h"
#include "ground/taxi_routing.h"
#include "ground/taxi_separation.h"
#include "station/numbers.h"

namespace corvenna {

namespace {

constexpr double FeetPerDegree = 60 * 6080;

/// Puts an element last; the blank one of an empty array gives way to the first.
template <class Element>
std::int32_t Append(std::vector<Element>& array, const Element& element) {
    if (array.size() == 1 && array[0] == Element{}) array.clear();
    array.push_back(element);
    return static_cast<std::int32_t>(array.size()) - 1;
}

}  // namespace

double GroundField::Latitude(double north) const { return S.RunwayLatitude + north / FeetPerDegree; }

double GroundField::Longitude(double east) const {
    return S.RunwayLongitude + east / FeetPerDegree / std::cos(S.RunwayLatitude * 3.14159265358979 / 180);
}

std::int32_t GroundField::Point(double east, double north) {
    return Append(S.AirportTaxiPoints, TaxiPoint{1, Latitude(north), Longitude(east)});
}

std::int32_t GroundField::Spot(std::string_view name, double east, double north, std::int32_t radius) {
    return Append(S.AirportParkingSpots,
                  ParkingSpot{std::string(name), radius, Latitude(north), Longitude(east), 0});
}

void GroundField::Path(std::int32_t kind, std::int32_t start, std::int32_t end, std::string_view name) {
    Append(S.AirportTaxiPaths, TaxiPath{kind, start, end, std::string(name)});
}

void GroundField::StraightNetwork() {
    const std::int32_t apron = Point(1500, 0);
    const std::int32_t first = Point(800, 0);
    const std::int32_t second = Point(300, 0);
    const std::int32_t threshold = Point(0, 0);
    const std::int32_t runway = Point(342, -940);
    Taxiway(apron, first, "A");
    Taxiway(first, second, "A");
    Taxiway(second, threshold, "B");
    Runway(threshold, runway);
    Tie(apron, Spot("GATE A 1", 1500, 200));
    Tie(apron, Spot("PARKING 1", 1500, -200));
}

PlayerRecord& GroundField::Pilot(std::string_view name, std::string_view phase, std::uint8_t flightRules) {
    PlayerRecord& pilot = Field.OnFrequency(name, S.GroundFrequency, phase, flightRules);
    Move(pilot, 2000, 3000);
    return pilot;
}

void GroundField::Move(PlayerRecord& pilot, double east, double north) {
    pilot.Latitude = RoundTo5(Latitude(north));
    pilot.Longitude = RoundTo5(Longitude(east));
}

TaxiRouteRecord& GroundField::Route(std::string_view pilot, std::initializer_list<std::int32_t> points,
                                    std::string_view spot) {
    TaxiRouteRecord route;
    route.PilotName = pilot;
    for (std::int16_t i = 0; i < S.PlayerCount(); ++i) {
        if (S.Players[i].Name == pilot) route.PilotIndex = i;
    }
    route.Links.clear();
    for (const auto* from = points.begin(); from + 1 < points.end(); ++from) {
        route.Links.push_back({TaxiPath::Taxiway, *from, *(from + 1), ""});
    }
    route.Links.emplace_back();
    route.Target.Name = spot.empty() ? S.ActiveRunway : spot;
    route.Target.Kind = spot.empty() ? TaxiTarget::Runway : TaxiTarget::Parking;
    S.TaxiRoutes.Add(route);
    return S.TaxiRoutes[S.TaxiRouteCount() - 1];
}

void GroundField::Turn(PlayerRecord& pilot, std::uint8_t choice) {
    if (choice != 0) pilot.Choice = choice;
    GroundControl(S, pilot);
}

// ---- RoutingField

std::vector<std::int32_t> PointsOf(std::span<const TaxiPath> links) {
    std::vector<std::int32_t> points;
    if (!links.empty()) points.push_back(links.front().StartPoint);
    for (const TaxiPath& link : links) {
        EXPECT_EQ(link.StartPoint, points.back());
        points.push_back(link.EndPoint);
    }
    return points;
}

PlayerRecord& RoutingField::PilotAt(double east, double north) {
    PlayerRecord& pilot = Pilot("N1");
    Move(pilot, east, north);
    return pilot;
}

GeoPoint RoutingField::RunwayTarget() const {
    return {S.ActiveRunway, std::string(TaxiTarget::Runway), S.RunwayLatitude, S.RunwayLongitude,
            S.RunwayElevation};
}

GeoPoint RoutingField::SpotTarget(std::size_t spot) const {
    const ParkingSpot& s = S.AirportParkingSpots[spot];
    return {s.Name, std::string(TaxiTarget::Parking), s.Latitude, s.Longitude, 0};
}

std::vector<std::int32_t> RoutingField::Assign(const GeoPoint& target) {
    const std::int16_t before = S.TaxiRouteCount();
    AssignTaxiRoute(S, Field.Pilot("N1"), target);
    if (S.TaxiRouteCount() == before) return {};
    const std::vector<TaxiPath>& links = S.TaxiRoutes[before].Links;
    EXPECT_EQ(links.back(), TaxiPath{});  // the spare element
    return PointsOf(std::span(links).first(links.size() - 1));
}

// ---- JunctionField

JunctionField::JunctionField() {
    Point(0, 0);
    Point(1000, 0);
    Point(-1000, 0);
    Point(50, -1000);
}

PlayerRecord& JunctionField::At(std::string_view name, double east, double north, std::string_view phase) {
    PlayerRecord& pilot = Pilot(name, phase);
    Move(pilot, east, north);
    return pilot;
}

void JunctionField::Separate(bool runwayOccupied) { SeparateTaxiRoutes(S, runwayOccupied); }

}  // namespace corvenna
