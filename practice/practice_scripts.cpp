#include "practice/practice_scripts.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "station/geometry.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr double TaxiKnots = 25;
constexpr double AirKnots = 120;
constexpr std::int32_t ArrivalMiles = 10;
constexpr double ArrivalHeightFeet = 2000;
constexpr double DepartureHeightFeet = 1500;
constexpr double CruiseHeightFeet = 4000;
constexpr std::int32_t FirstOutMiles = 3;
constexpr std::int32_t LastOutMiles = 20;
constexpr auto ClearancePatience = 2min;
constexpr std::int32_t HoldingKind = 2;  // of a taxi point

constexpr std::array<std::string_view, 3> Types = {"Cessna Skylane 182S", "Beechcraft King Air 350",
                                                   "Piper Cub"};

/// N101CV, N114CV, ...: no name begins another.
std::string CallsignOf(int number) { return fmt::format("N{}CV", 101 + 13 * number); }

bool Controlled(const Station& station) {
    return !station.TowerFrequency.empty() && !station.GroundFrequency.empty();
}

bool HasGates(const Station& station) {
    const auto& spots = station.AirportParkingSpots;
    return std::any_of(spots.begin(), spots.end(),
                       [](const ParkingSpot& spot) { return spot.Name.starts_with("GATE"); });
}

/// The number-th parking spot, counted round; the middle of the airport where there is none.
AircraftState Parked(const Station& station, int number) {
    AircraftState aircraft{station.AirportLatitude, station.AirportLongitude,
                           static_cast<double>(station.RunwayElevation), 0};
    const auto& spots = station.AirportParkingSpots;
    const ParkingSpot& spot = spots[static_cast<std::size_t>(number) % spots.size()];
    if (spot.Radius > 0) {
        aircraft.Latitude = spot.Latitude;
        aircraft.Longitude = spot.Longitude;
    }
    return aircraft;
}

std::int32_t TrueRunwayHeading(const Station& station) {
    const std::int16_t variation =
        TrueToMagnetic(station, 0, station.RunwayLatitude, station.RunwayLongitude);
    return NormalizeHeading(station.RunwayHeading - variation);
}

/// A place so far out from the threshold, on a true bearing.
Leg Out(const Station& station, std::int32_t bearing, std::int32_t miles, double heightFeet) {
    const GeoPoint place = ProjectNm(station.RunwayLatitude, station.RunwayLongitude, bearing, miles);
    return {place.Latitude, place.Longitude, station.RunwayElevation + heightFeet, AirKnots};
}

Leg Threshold(const Station& station, double knots) {
    return {station.RunwayLatitude, station.RunwayLongitude, static_cast<double>(station.RunwayElevation),
            knots};
}

/// How far apart two places are, good enough to compare places of one airport.
double Apart(const Leg& a, const TaxiPoint& b) {
    return std::hypot(a.Latitude - b.Latitude,
                      (a.Longitude - b.Longitude) * std::cos(a.Latitude * (std::numbers::pi / 180)));
}

/// The holding point nearest to the threshold; the threshold itself where there is none.
Leg HoldingPoint(const Station& station) {
    const Leg threshold = Threshold(station, TaxiKnots);
    const TaxiPoint* nearest = nullptr;
    for (const TaxiPoint& point : station.AirportTaxiPoints) {
        if (point.Kind != HoldingKind) continue;
        if (nearest == nullptr || Apart(threshold, point) < Apart(threshold, *nearest)) nearest = &point;
    }
    if (nearest == nullptr) return threshold;
    return {nearest->Latitude, nearest->Longitude, threshold.AltitudeFeet, TaxiKnots};
}

Leg To(const AircraftState& place, double knots) {
    return {place.Latitude, place.Longitude, place.AltitudeFeet, knots};
}

Choose Tune(const Station& station, std::string_view which) {
    return {fmt::format("Tune {} {} Frequency", station.AirportName, which)};
}

std::vector<PilotStep> Departure(const Station& station, std::string_view rules,
                                 std::string_view taxiRequest) {
    const std::int32_t heading = TrueRunwayHeading(station);
    return {
        Choose{"Use ATC services"},
        Choose{std::string(rules)},
        AskAgain{},
        Tune(station, "Ground"),
        Choose{std::string(taxiRequest)},
        Travel{HoldingPoint(station)},
        Tune(station, "Tower"),
        Choose{fmt::format("Request {} Takeoff Clearance", rules)},
        Await{"Cleared for takeoff", ClearancePatience},
        Travel{Threshold(station, TaxiKnots)},
        Travel{Out(station, heading, FirstOutMiles, DepartureHeightFeet)},
        Choose{"Tune Departure Frequency"},
        Travel{Out(station, heading, LastOutMiles, CruiseHeightFeet)},
        Choose{"Close ATC Services"},
    };
}

std::vector<PilotStep> Arrival(const Station& station, const AircraftState& spot) {
    return {
        Choose{"Use ATC services"},
        Choose{"VFR"},
        Tune(station, "Tower"),
        Choose{"Request Full Stop Landing"},
        Travel{Out(station, NormalizeHeading(TrueRunwayHeading(station) + 180), FirstOutMiles,
                   DepartureHeightFeet)},
        Travel{Threshold(station, AirKnots)},
        Travel{HoldingPoint(station)},
        Tune(station, "Ground"),
        Choose{HasGates(station) ? "Request Taxi to Gate" : "Request Taxi to Parking"},
        Travel{To(spot, TaxiKnots)},
        Choose{"Report Parking"},
        Choose{"Close ATC Services"},
    };
}

std::vector<PilotStep> SelfAnnounced(const Station& station, std::string_view rules) {
    return {
        Choose{"Use ATC services"},
        Choose{std::string(rules)},
        AskAgain{},
        Choose{"Announce Taxi to Runway"},
        Travel{HoldingPoint(station)},
        Choose{"Announce Takeoff"},
        Travel{Threshold(station, TaxiKnots)},
        Travel{Out(station, TrueRunwayHeading(station), FirstOutMiles, DepartureHeightFeet)},
        Choose{"Announce Position"},
        Travel{Threshold(station, AirKnots)},
        Choose{"Announce Landing"},
        Choose{"Announce Taxi to Gate or Parking"},
        Linger{30s},
        Choose{"Close ATC Services"},
    };
}

}  // namespace

PilotScript ScriptOfPilot(const Station& station, int number, std::chrono::milliseconds arrivesAt) {
    PilotScript script;
    script.Name = CallsignOf(number);
    script.Aircraft = Types[static_cast<std::size_t>(number) % Types.size()];
    script.Start = Parked(station, number + 1);
    script.ArrivesAt = arrivesAt;
    if (!Controlled(station)) {
        script.Steps = SelfAnnounced(station, number % 2 == 0 ? "VFR" : "IFR");
    } else if (number % 3 == 0) {
        script.Steps = Departure(station, "VFR", "Request Taxi to Runway");
    } else if (number % 3 == 1) {
        script.Steps = Departure(station, "IFR", "Request Taxi IFR");
    } else {
        const Leg from =
            Out(station, NormalizeHeading(TrueRunwayHeading(station) + 180), ArrivalMiles, ArrivalHeightFeet);
        script.Start = {from.Latitude, from.Longitude, from.AltitudeFeet, 0};
        script.Steps = Arrival(station, Parked(station, number + 1));
    }
    return script;
}

PilotScript ScriptOfOnlooker(const Station& station, std::string name) {
    PilotScript script;
    script.Name = std::move(name);
    script.Aircraft = Types[0];
    script.Start = Parked(station, 0);
    script.Stays = true;
    return script;
}

}  // namespace corvenna
