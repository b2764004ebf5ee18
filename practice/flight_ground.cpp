#include <algorithm>

#include "practice/flight_conduct.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr double TaxiKnots = 18;
constexpr double ApronKnots = 10;  // near the spot
constexpr double ApronMiles = 0.06;
constexpr double LineUpKnots = 12;
constexpr double RollGain = 3.5;    // knots a second
constexpr double RunwayKnots = 45;  // on the runway, before and after the flight
constexpr double InTheWayFeet = 170;
constexpr double StoppingFeet = 150;
constexpr double RoomBehindFeet = 900;
constexpr double CloseMiles = 1.5;  // somebody so near on final goes first

constexpr auto LongestGivingWay = 45s;  // then he goes round whoever is there
constexpr auto GoingRound = 20s;
constexpr auto InLineAfter = 8s;
constexpr double InLineMiles = 0.5;  // before the runway: whoever stands there waits for it too
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

/// Nobody stops on the runway, whatever he is told, nor where he would close it.
double Flight::TaxiSpeed() const {
    if (holding_ && !chart_->IsNoPlaceToStop(aircraft_.Where())) return 0;
    const bool nearRamp = MilesBetween(aircraft_.Where(), ramp_) < ApronMiles ||
                          (stage_ == FlightStage::TaxiingIn && !track_.Points.empty() &&
                           MilesBetween(aircraft_.Where(), track_.Points.back()) < ApronMiles);
    return nearRamp ? ApronKnots : TaxiKnots;
}

/// Lets somebody go who is in the way, but not for ever, and not where he would close the runway: there he
/// goes only when there is room behind.
double Flight::GiveWay(double knots, std::chrono::milliseconds time) {
    if (chart_->IsNoPlaceToStop(aircraft_.Where())) return knots;
    if (gaveWay_ >= LongestGivingWay) {
        gaveWay_ += time;
        if (gaveWay_ >= LongestGivingWay + GoingRound) gaveWay_ = 0ms;
        return knots;
    }
    if (!SomebodyInTheWay(MustLeaveRoom() ? RoomBehindFeet : InTheWayFeet)) {
        gaveWay_ = 0ms;
        return knots;
    }
    gaveWay_ += time;
    return 0;
}

/// Whether he comes to a place that must be kept free.
bool Flight::MustLeaveRoom() const {
    const Place ahead = PlaceBeyond(aircraft_.Where(), aircraft_.HeadingTrue, StoppingFeet * (0.3048 / 1852));
    return chart_->IsWatched(ahead);
}

/// Behind others who wait for the runway.
bool Flight::StandsInLine() const {
    return gaveWay_ >= InLineAfter && !track_.Points.empty() && aircraft_.Knots == 0 && !holding_ &&
           !chart_->IsNoPlaceToStop(aircraft_.Where()) &&
           MilesBetween(aircraft_.Where(), track_.Points.back()) < InLineMiles;
}

void Flight::TaxiOut(std::chrono::milliseconds time) {
    const bool there = Taxi(aircraft_, track_, GiveWay(TaxiSpeed(), time), time);
    if (there || StandsInLine()) Enter(FlightStage::HoldingShort);
}

/// What is left of the way to the runway comes first.
void Flight::LineUp() {
    track_.Points.insert(track_.Points.end(), lineUp_.begin(), lineUp_.end());
    gaveWay_ = 0ms;
    Enter(FlightStage::LiningUp);
}

void Flight::MoveOnGround(std::chrono::milliseconds time) {
    const bool onRunway = chart_->IsOnRunway(aircraft_.Where());
    switch (stage_) {
        case FlightStage::TaxiingOut:
            TaxiOut(time);
            break;
        case FlightStage::LiningUp: {
            const bool lets = !onRunway && SomebodyOnFinal(CloseMiles);
            const double knots = lets ? 0 : onRunway ? RunwayKnots : GiveWay(LineUpKnots, time);
            if (Taxi(aircraft_, track_, knots, time)) Enter(FlightStage::TakingOff);
            break;
        }
        case FlightStage::TakingOff:
            RollForTakeoff(time);
            break;
        case FlightStage::RollingOut:
            if (!onRunway) Enter(FlightStage::Vacating);
            [[fallthrough]];
        case FlightStage::Vacating:
            if (Taxi(aircraft_, track_, onRunway ? RunwayKnots : GiveWay(TaxiKnots, time), time)) {
                Enter(FlightStage::Vacated);
            }
            break;
        case FlightStage::TaxiingIn:
            if (Taxi(aircraft_, track_, GiveWay(TaxiSpeed(), time), time)) Enter(FlightStage::Parked);
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

/// From now on he brakes along the runway, and leaves it by the first way that he can make.
void Flight::TouchDown() {
    aircraft_.AltitudeFeet = chart_->ElevationFeet();
    track_ = {chart_->WayOffRunway(aircraft_.Where(), MilesToBrake(aircraft_.Knots)), 0};
    Enter(FlightStage::RollingOut);
}

}  // namespace corvenna
