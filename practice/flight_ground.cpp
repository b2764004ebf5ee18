#include <algorithm>

#include "practice/flight_conduct.h"

namespace corvenna {

namespace {

constexpr double TaxiKnots = 18;
constexpr double ApronKnots = 10;  // near the spot
constexpr double ApronMiles = 0.06;
constexpr double LineUpKnots = 12;
constexpr double RollGain = 3.5;   // knots a second
constexpr double RollBrake = 3.5;  // knots a second
constexpr double ExitKnots = 15;
constexpr double BacktrackKnots = 25;
constexpr double SecondsPerHour = 3600;

double Seconds(std::chrono::milliseconds time) { return static_cast<double>(time.count()) / 1000; }

}  // namespace

void Flight::StartTaxiOut(const Instruction& clearance) {
    auto way = chart_->WayToRunway(aircraft_.Where(), clearance.Taxiways);
    track_ = {std::move(way.ToHoldShort), 0};
    lineUp_ = std::move(way.ToLineUp);
    holding_ = false;
    Enter(FlightStage::TaxiingOut);
}

void Flight::StartTaxiIn(const Instruction& clearance) {
    track_ = {chart_->WayToSpot(aircraft_.Where(), clearance.Name, clearance.Taxiways), 0};
    holding_ = false;
    Enter(FlightStage::TaxiingIn);
}

/// Nobody tells him: back to where he came from.
void Flight::StartTaxiInUncleared() {
    const auto& spots = chart_->Spots();
    const auto own = std::min_element(spots.begin(), spots.end(), [&](const auto& a, const auto& b) {
        return MilesBetween(ramp_, {a.Latitude, a.Longitude}) <
               MilesBetween(ramp_, {b.Latitude, b.Longitude});
    });
    Instruction clearance;
    if (own != spots.end() && own->Radius > 0) clearance.Name = own->Name;
    StartTaxiIn(clearance);
    if (track_.Points.empty()) track_.Points = {ramp_};
}

/// Nobody stops on the runway, whatever he is told.
double Flight::TaxiSpeed() const {
    if (holding_ && !chart_->IsOnRunway(aircraft_.Where())) return 0;
    const bool nearRamp = MilesBetween(aircraft_.Where(), ramp_) < ApronMiles ||
                          (stage_ == FlightStage::TaxiingIn && !track_.Points.empty() &&
                           MilesBetween(aircraft_.Where(), track_.Points.back()) < ApronMiles);
    return nearRamp ? ApronKnots : TaxiKnots;
}

void Flight::MoveOnGround(std::chrono::milliseconds time) {
    switch (stage_) {
        case FlightStage::TaxiingOut:
            if (Taxi(aircraft_, track_, TaxiSpeed(), time)) Enter(FlightStage::HoldingShort);
            break;
        case FlightStage::LiningUp:
            if (Taxi(aircraft_, track_, chart_->IsOnRunway(aircraft_.Where()) ? BacktrackKnots : LineUpKnots,
                     time)) {
                Enter(FlightStage::TakingOff);
            }
            break;
        case FlightStage::TakingOff:
            RollForTakeoff(time);
            break;
        case FlightStage::RollingOut:
            RollOut(time);
            break;
        case FlightStage::Vacating:
            if (Taxi(aircraft_, track_, aircraft_.Knots > ExitKnots ? ExitKnots : TaxiKnots, time)) {
                Enter(FlightStage::Vacated);
            }
            break;
        case FlightStage::TaxiingIn:
            if (Taxi(aircraft_, track_, TaxiSpeed(), time)) Enter(FlightStage::Parked);
            break;
        default:
            aircraft_.Knots = 0;
            break;
    }
}

/// Straight along the runway, whose heading the nose takes up.
void Flight::RollForTakeoff(std::chrono::milliseconds time) {
    const double knots = Approached(aircraft_.Knots, plan_.Aircraft.RotateKnots, RollGain * Seconds(time));
    const double turn = TurnFrom(aircraft_.HeadingTrue, chart_->RunwayTrue());
    const double most = 15 * Seconds(time);
    aircraft_.HeadingTrue = WholeCircle(aircraft_.HeadingTrue + std::clamp(turn, -most, most));
    aircraft_.Knots = knots;
    const Place place =
        PlaceBeyond(aircraft_.Where(), chart_->RunwayTrue(), knots * Seconds(time) / SecondsPerHour);
    aircraft_.Latitude = place.Latitude;
    aircraft_.Longitude = place.Longitude;
    aircraft_.AltitudeFeet = chart_->ElevationFeet();
    if (knots >= plan_.Aircraft.RotateKnots) Enter(FlightStage::ClimbingOut);
}

/// Brakes along the runway; at walking pace of an aircraft he makes for the way off.
void Flight::RollOut(std::chrono::milliseconds time) {
    aircraft_.AltitudeFeet = chart_->ElevationFeet();
    aircraft_.Knots = Approached(aircraft_.Knots, BacktrackKnots, RollBrake * Seconds(time));
    const Place place = PlaceBeyond(aircraft_.Where(), aircraft_.HeadingTrue,
                                    aircraft_.Knots * Seconds(time) / SecondsPerHour);
    aircraft_.Latitude = place.Latitude;
    aircraft_.Longitude = place.Longitude;
    if (aircraft_.Knots > BacktrackKnots) return;
    track_ = {chart_->WayOffRunway(aircraft_.Where()), 0};
    Enter(FlightStage::Vacating);
}

}  // namespace corvenna
