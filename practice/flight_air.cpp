#include <algorithm>
#include <cmath>

#include "practice/flight_conduct.h"

namespace corvenna {

namespace {

constexpr double FeetPerMileOnGlide = 318;  // three degrees
constexpr double CrossingFeet = 50;         // over the threshold
constexpr double FlareRate = 450;           // feet a minute
constexpr double LowestUncleared = 500;     // feet above the field
constexpr double PatternFeet = 1000;        // above the field
constexpr double CrosswindFeet = 500;       // above the field: the first turn of a circuit
constexpr double OwnWayFeet = 1500;         // above the field: the first turn of a departure
constexpr double DownwindMiles = 2;         // beside the runway
constexpr double BaseMiles = 5;             // before the threshold: there is room to wait on final
constexpr double TurnLeadMiles = 0.4;
constexpr double InterceptFeet = 2500;  // above the field, when nobody has said
constexpr double OwnFixMiles = 9;       // before the threshold: where he goes without vectors
constexpr double SlowMiles = 12;
constexpr double ForgottenMiles = 35;  // so far out, flying away by an old vector: nobody will turn him back
constexpr std::chrono::minutes OldVector{8};
constexpr double MinutesPerHour = 60;
constexpr double CloseMiles = 0.6;   // before the threshold: by then all must fit
constexpr double TooHighFeet = 350;  // above the glide path
constexpr double BesideMiles = 0.1;  // off the centreline
constexpr double ThresholdMiles = 0.1;
constexpr double FarSteering = 90;  // degrees towards the centreline for each mile beside it
constexpr double NearSteering = 180;
constexpr double MissedMiles = 1.2;                // before the threshold
constexpr double SlowFinalMiles = 4;               // before the threshold
constexpr double FarthestOrbit = 12;               // miles before the threshold
constexpr double FinalSink = 1500;                 // feet a minute: the least that anybody can on final
constexpr std::chrono::seconds BetweenOrbits{15};  // two who circle in step would wait for each other
constexpr int MostOrbits = 20;                     // then he leaves it to the controller
constexpr double OrbitLead = 60;  // degrees: how far the heading is ahead of the nose in an orbit
constexpr double AlignedDegrees = 25;
constexpr double LowMiles = 0.4;  // before the threshold: by then the runway must be free

}  // namespace

void Flight::SteerTo(double heading, double altitudeFeet, double knots, std::chrono::milliseconds time,
                     Turn way) {
    const Performance& own = plan_.Aircraft;
    Steer(aircraft_, {heading, way, altitudeFeet, knots, own.ClimbRate, own.DescentRate}, time);
}

void Flight::MoveInAir(std::chrono::milliseconds time) {
    switch (stage_) {
        case FlightStage::ClimbingOut:
        case FlightStage::GoingAround:
            return ClimbOut(time);
        case FlightStage::Outbound:
            return FlyOutbound(time);
        case FlightStage::Circuit:
            return FlyCircuit(time);
        case FlightStage::OnApproach:
        case FlightStage::Final:
            return FlyFinal(time);
        default:
            return FlyInbound(time);
    }
}

/// Straight ahead until it is high enough to turn.
void Flight::ClimbOut(std::chrono::milliseconds time) {
    const bool missed = stage_ == FlightStage::GoingAround;
    const bool circuit = plan_.StaysInCircuit() || (missed && !plan_.Instrument);
    const double top = chart_->ElevationFeet() + (circuit  ? PatternFeet
                                                  : missed ? InterceptFeet
                                                           : OwnWayFeet);
    SteerTo(chart_->RunwayTrue(), top, plan_.Aircraft.ClimbKnots, time);
    if (circuit) {
        const bool past = chart_->SeenFromRunway(aircraft_.Where()).Along > chart_->RunwayMiles();
        if (FeetAboveField() >= CrosswindFeet && past) EnterCircuit(-1, false);
    } else if (missed) {
        if (hasVector_) Enter(FlightStage::Inbound);
    } else if (FeetAboveField() >= OwnWayFeet) {
        Enter(FlightStage::Outbound);
    }
}

void Flight::FlyOutbound(std::chrono::milliseconds time) {
    SteerTo(plan_.OutboundCourse, plan_.CruiseFeet, plan_.Aircraft.CruiseKnots, time);
    if (plan_.TurnsBack() && MilesOut() >= plan_.TurnBackMiles) {
        Enter(plan_.Instrument ? FlightStage::Leaving : FlightStage::Inbound);
    }
    constexpr double Reach = 202;
    if (MilesOut() >= Reach) Enter(FlightStage::Over);
}

/// The controller corrects whoever strays from his course only once.
bool Flight::FliesAwayForgotten() const {
    return hasVector_ && sinceHeard_ >= OldVector && MilesOut() > ForgottenMiles &&
           std::abs(TurnFrom(aircraft_.HeadingTrue, CourseTo(aircraft_.Where(), chart_->Middle()))) > 90;
}

/// By vectors; without them to a fix before the runway.
void Flight::FlyInbound(std::chrono::milliseconds time) {
    if (FliesAwayForgotten()) hasVector_ = false;
    const Place fix = plan_.Instrument ? chart_->FromRunway({-OwnFixMiles, 0}) : chart_->Threshold();
    const double heading = hasVector_ ? heading_ : CourseTo(aircraft_.Where(), fix);
    const double own = std::max(aircraft_.AltitudeFeet > chart_->ElevationFeet() + InterceptFeet &&
                                        MilesBetween(aircraft_.Where(), fix) > SlowMiles
                                    ? aircraft_.AltitudeFeet
                                    : chart_->ElevationFeet() + InterceptFeet,
                                0.0);
    const double visual = chart_->ElevationFeet() + PatternFeet;
    const double altitude = hasAltitude_       ? altitude_
                            : plan_.Instrument ? std::max(own, FeetAboveOthers())
                                               : visual;
    const double knots = MilesOut() > SlowMiles ? plan_.Aircraft.CruiseKnots : plan_.Aircraft.PatternKnots;
    SteerTo(heading, altitude, knots, time, hasVector_ ? way_ : Turn::Shorter);
    if (std::abs(TurnFrom(aircraft_.HeadingTrue, heading)) < 1) way_ = Turn::Shorter;
}

/// From where he is: along the downwind leg of a side (-1 left, 1 right), or straight to base or final.
void Flight::EnterCircuit(double side, bool fromBase) {
    const RunwayPlace seen = chart_->SeenFromRunway(aircraft_.Where());
    legs_.clear();
    steepest_ = 80;
    if (!fromBase) {
        const double abeam = std::clamp(seen.Along + DownwindMiles / 2, -1.0, chart_->RunwayMiles() + 2);
        legs_.push_back(chart_->FromRunway({abeam, side * DownwindMiles}));
        legs_.push_back(chart_->FromRunway({-BaseMiles, side * DownwindMiles}));
    } else if (std::abs(seen.Right) > DownwindMiles) {
        legs_.push_back(chart_->FromRunway({-BaseMiles - 0.5, side * DownwindMiles / 2}));
    }
    Enter(FlightStage::Circuit);
}

void Flight::FlyCircuit(std::chrono::milliseconds time) {
    if (legs_.empty()) {
        Enter(FlightStage::Final);
        return FlyFinal(time);
    }
    const double pattern = chart_->ElevationFeet() + PatternFeet;
    SteerTo(CourseTo(aircraft_.Where(), legs_.front()), pattern, plan_.Aircraft.PatternKnots, time);
    if (MilesBetween(aircraft_.Where(), legs_.front()) < TurnLeadMiles) legs_.erase(legs_.begin());
}

double Flight::FinalSinkRate() const { return std::max(plan_.Aircraft.DescentRate, FinalSink); }

/// Over mountains he is brought in so high that he can't get down to the runway on the way to it.
bool Flight::IsTooHighFor(double toGo) const {
    const double feetPerMile = FinalSinkRate() * MinutesPerHour / plan_.Aircraft.PatternKnots;
    return FeetAboveField() > CrossingFeet + feetPerMile * (toGo - CloseMiles);
}

/// Somebody is nearer, or on the runway, and he would have to be sent around; or he is too high.
bool Flight::MustWaitOnFinal(double toGo) const {
    if (toGo < DecisionMiles || toGo > FarthestOrbit || orbits_ >= MostOrbits) return false;
    if (std::abs(TurnFrom(aircraft_.HeadingTrue, chart_->RunwayTrue())) > AlignedDegrees) return false;
    return SomebodyOnRunway() || SomebodyOnFinal(toGo) || IsTooHighFor(toGo);
}

/// Once around on the spot, down to an altitude.
void Flight::FlyOrbit(double altitudeFeet, std::chrono::milliseconds time) {
    const double before = aircraft_.HeadingTrue;
    const double lowest = std::min(altitudeFeet, aircraft_.AltitudeFeet);
    SteerTo(WholeCircle(before + OrbitLead), lowest, plan_.Aircraft.PatternKnots, time);
    orbit_ -= TurnFrom(before, aircraft_.HeadingTrue);
}

/// Onto the extended centreline and down the glide path, which is never climbed to.
void Flight::FlyFinal(std::chrono::milliseconds time) {
    const RunwayPlace seen = chart_->SeenFromRunway(aircraft_.Where());
    const double field = chart_->ElevationFeet();
    const double toGo = -seen.Along;
    sinceOrbit_ = orbit_ > 0 ? std::chrono::milliseconds(0) : sinceOrbit_ + time;
    if (sinceOrbit_ >= BetweenOrbits && MustWaitOnFinal(toGo)) {
        orbit_ = 360;
        ++orbits_;
    }
    const double steering = toGo < SlowFinalMiles ? NearSteering : FarSteering;
    const double off = std::clamp(-steering * seen.Right, -steepest_, steepest_);
    const bool landing = clearedToLand_ || Announces();
    const double hold = hasAltitude_ ? altitude_ : aircraft_.AltitudeFeet;
    const double glide = field + CrossingFeet + FeetPerMileOnGlide * std::max(toGo, 0.0);
    double goal = std::min(std::max(hold, field), glide);
    if (!landing || orbit_ > 0) goal = std::max(goal, field + LowestUncleared);
    if (orbit_ > 0) return FlyOrbit(goal, time);
    if (landing && toGo <= 0) goal = field;
    const double knots = toGo < SlowFinalMiles ? plan_.Aircraft.FinalKnots : plan_.Aircraft.PatternKnots;
    const double sink = toGo <= 0 ? FlareRate : FinalSinkRate();
    Steer(aircraft_, {chart_->RunwayTrue() + off, Turn::Shorter, goal, knots, plan_.Aircraft.ClimbRate, sink},
          time);
    const bool high = aircraft_.AltitudeFeet > glide + TooHighFeet;
    const double beside = toGo < ThresholdMiles ? chart_->RunwayHalfMiles() : BesideMiles;
    const bool unable = toGo < CloseMiles && (!landing || high || std::abs(seen.Right) > beside);
    const bool misses = plan_.MissesFirstApproach && !missed_ && landing && toGo < MissedMiles;
    const bool blocked = Announces() && toGo > 0 && toGo < LowMiles && SomebodyOnRunway();
    if (unable || misses || blocked) return GoAround();
    if (aircraft_.AltitudeFeet <= field && toGo <= 0) TouchDown();
}

void Flight::GoAround() {
    missed_ = true;
    clearedToLand_ = false;
    hasVector_ = false;
    hasAltitude_ = false;
    orbit_ = 0;
    orbits_ = 0;
    if (stage_ != FlightStage::Circuit) Enter(FlightStage::GoingAround);
}

}  // namespace corvenna
