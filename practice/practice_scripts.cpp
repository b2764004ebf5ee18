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
    {FlightKind::VisualRoundTrip, false, &Skylane, 0, 0, 0, false},
    {FlightKind::InstrumentArrival, true, &KingAir, 150, -60, 12000, false},
};
constexpr int PlanCount = static_cast<int>(std::size(Plans));
constexpr double BearingPerLap = 25;  // degrees: those of the next round come from elsewhere

constexpr double RoundTripMiles = 40;
constexpr double VisualTripMiles = 20;
constexpr double CruiseHeightFeet = 8000;
constexpr double VisualHeightFeet = 2500;
constexpr double OutboundOff =
    60;  // degrees off the runway, to the right for one and to the left for the next
constexpr double BesideRunwayMiles = 0.1;
constexpr double RampRowMiles =
    0.02;  // where there are more pilots than spots, they stand in rows behind them

/// N101CV, N114CV, ...: no name begins another.
std::string CallsignOf(int number) { return fmt::format("N{}CV", 101 + 13 * number); }

/// The number-th parking spot, counted round and each time one row farther from the runway; beside the
/// runway where there is none.
AircraftState Parked(const AirportChart& chart, int number) {
    const auto& spots = chart.Spots();
    const int count = static_cast<int>(spots.size());
    const ParkingSpot& spot = spots[static_cast<std::size_t>(number % count)];
    Place first = {spot.Latitude, spot.Longitude};
    if (spot.Radius == 0) first = chart.FromRunway({chart.RunwayMiles() / 2, BesideRunwayMiles});
    const int row = number / count;
    const double away = chart.SeenFromRunway(first).Right < 0 ? -90 : 90;
    const Place place = PlaceBeyond(first, chart.RunwayTrue() + away, row * RampRowMiles);
    return {place.Latitude, place.Longitude, chart.ElevationFeet(), 0, 0};
}

AircraftState ArrivingFrom(const AirportChart& chart, const PlanRow& row, int lap) {
    const double back = chart.RunwayTrue() + 180 + row.ArrivalBearing + lap * BearingPerLap;
    const Place place = PlaceBeyond(chart.Threshold(), WholeCircle(back), row.ArrivalMiles);
    return {place.Latitude, place.Longitude, chart.ElevationFeet() + row.ArrivalHeightFeet,
            CourseTo(place, chart.Threshold()), row.Type->Flies.CruiseKnots};
}

}  // namespace

PilotScript ScriptOfPilot(const std::shared_ptr<const AirportChart>& chart, int number,
                          std::chrono::milliseconds arrivesAt) {
    PlanRow row = Plans[static_cast<std::size_t>(number % PlanCount)];
    if (!chart->Controlled()) {
        row = {FlightKind::SelfAnnounced, number % 2 != 0, number % 2 == 0 ? &Skylane : &Cub, 0, 0, 0, false};
    }
    FlightPlan plan;
    plan.Kind = row.Kind;
    plan.Instrument = row.Instrument;
    plan.Aircraft = row.Type->Flies;
    plan.OutboundCourse = WholeCircle(chart->RunwayTrue() + (number % 4 == 1 ? OutboundOff : -OutboundOff));
    plan.CruiseFeet = chart->ElevationFeet() + (row.Instrument ? CruiseHeightFeet : VisualHeightFeet);
    plan.TurnBackMiles = row.Instrument ? RoundTripMiles : VisualTripMiles;
    plan.MissesFirstApproach = row.MissesFirstApproach;

    PilotScript script;
    script.Name = CallsignOf(number);
    script.Aircraft = row.Type->Name;
    script.ArrivesAt = arrivesAt;
    if (plan.FromRamp()) {
        script.Start = Parked(*chart, number + 1);
        script.Steps = {Choose{"Use ATC services"}, Choose{row.Instrument ? "IFR" : "VFR"}, AskAgain{}};
    } else {
        script.Start = ArrivingFrom(*chart, row, number / PlanCount);
    }
    script.Steps.push_back(Fly{chart, plan});
    return script;
}

}  // namespace corvenna
