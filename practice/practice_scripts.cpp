#include "practice/practice_scripts.h"

#include <fmt/format.h>

#include <array>

namespace corvenna {

namespace {

struct AircraftType {
    std::string_view Name;
    Performance Flies;
};

constexpr AircraftType Skylane = {"Cessna Skylane 182S", {55, 80, 130, 90, 68, 800, 800}};
constexpr AircraftType KingAir = {"Beechcraft King Air 350", {95, 150, 250, 150, 105, 2000, 1800}};
constexpr AircraftType Cub = {"Piper Cub", {40, 55, 75, 65, 48, 500, 600}};

/// What the pilots of a controlled airport fly, by turns.
struct PlanRow {
    FlightKind Kind;
    bool Instrument;
    const AircraftType* Type;
    double ArrivalMiles;       ///< arrivals: from the threshold
    double ArrivalBearing;     ///< arrivals: off the extended centreline, degrees
    double ArrivalHeightFeet;  ///< arrivals: above the field
    bool MissesFirstApproach;
};
constexpr PlanRow Plans[] = {
    {FlightKind::VisualCircuit, false, &Skylane, 0, 0, 0, false},
    {FlightKind::InstrumentRoundTrip, true, &KingAir, 0, 0, 0, false},
    {FlightKind::VisualArrival, false, &Cub, 10, 0, 2000, false},
    {FlightKind::InstrumentArrival, true, &KingAir, 60, 40, 9000, false},
    {FlightKind::InstrumentArrival, true, &Skylane, 30, -100, 5000, true},
    {FlightKind::InstrumentDeparture, true, &KingAir, 0, 0, 0, false},
};

constexpr double RoundTripMiles = 40;
constexpr double CruiseHeightFeet = 8000;
constexpr double OutboundOff =
    60;  // degrees off the runway, to the right for one and to the left for the next

/// N101CV, N114CV, ...: no name begins another.
std::string CallsignOf(int number) { return fmt::format("N{}CV", 101 + 13 * number); }

/// The number-th parking spot, counted round; the middle of the airport where there is none.
AircraftState Parked(const std::vector<ParkingSpot>& spots, Place middle, double elevationFeet, int number) {
    const ParkingSpot& spot = spots[static_cast<std::size_t>(number) % spots.size()];
    if (spot.Radius > 0) middle = {spot.Latitude, spot.Longitude};
    return {middle.Latitude, middle.Longitude, elevationFeet, 0, 0};
}

AircraftState ArrivingFrom(const AirportChart& chart, const PlanRow& row) {
    const double back = chart.RunwayTrue() + 180;
    const Place place = PlaceBeyond(chart.Threshold(), back + row.ArrivalBearing, row.ArrivalMiles);
    return {place.Latitude, place.Longitude, chart.ElevationFeet() + row.ArrivalHeightFeet,
            CourseTo(place, chart.Threshold()), row.Type->Flies.CruiseKnots};
}

}  // namespace

PilotScript ScriptOfPilot(const std::shared_ptr<const AirportChart>& chart, int number,
                          std::chrono::milliseconds arrivesAt) {
    PlanRow row = Plans[static_cast<std::size_t>(number) % std::size(Plans)];
    if (!chart->Controlled()) {
        row = {FlightKind::SelfAnnounced, number % 2 != 0, number % 2 == 0 ? &Skylane : &Cub, 0, 0, 0, false};
    }
    FlightPlan plan;
    plan.Kind = row.Kind;
    plan.Instrument = row.Instrument;
    plan.Aircraft = row.Type->Flies;
    plan.OutboundCourse = WholeCircle(chart->RunwayTrue() + (number % 4 == 1 ? OutboundOff : -OutboundOff));
    plan.CruiseFeet = chart->ElevationFeet() + CruiseHeightFeet;
    plan.TurnBackMiles = RoundTripMiles;
    plan.MissesFirstApproach = row.MissesFirstApproach;

    PilotScript script;
    script.Name = CallsignOf(number);
    script.Aircraft = row.Type->Name;
    script.ArrivesAt = arrivesAt;
    if (plan.FromRamp()) {
        script.Start = Parked(chart->Spots(), chart->Middle(), chart->ElevationFeet(), number + 1);
        script.Steps = {Choose{"Use ATC services"}, Choose{row.Instrument ? "IFR" : "VFR"}, AskAgain{}};
    } else {
        script.Start = ArrivingFrom(*chart, row);
    }
    script.Steps.push_back(Fly{chart, plan});
    return script;
}

PilotScript ScriptOfOnlooker(const Station& station, std::string name) {
    PilotScript script;
    script.Name = std::move(name);
    script.Aircraft = Skylane.Name;
    script.Start = Parked(station.AirportParkingSpots, {station.AirportLatitude, station.AirportLongitude},
                          station.RunwayElevation, 0);
    script.Stays = true;
    return script;
}

}  // namespace corvenna
