#include "practice/flight_conduct.h"

#include <fmt/format.h>

#include <algorithm>

#include "station/text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds LongestMove = 500ms;
constexpr auto LastWords = 3s;  // the answer to his good-bye may come

// ---- What he would like to be offered

enum class Who { Anybody, Visual, Instrument, Announcing };

struct WantedRow {
    FlightStage When;
    Who Whose;
    std::string_view Label;                 ///< {} is the airport's name
    std::chrono::milliseconds After = 0ms;  ///< only when the stage has lasted so long
};

using enum FlightStage;
constexpr WantedRow Wanted[] = {
    {AtRamp, Who::Anybody, "Use ATC services"},
    {AtRamp, Who::Visual, "VFR"},
    {AtRamp, Who::Instrument, "IFR"},
    {AtRamp, Who::Anybody, "Tune {} Ground Frequency"},
    {AtRamp, Who::Visual, "Request Taxi to Runway"},
    {AtRamp, Who::Instrument, "Request Taxi IFR"},
    {AtRamp, Who::Announcing, "Announce Taxi to Runway"},

    {HoldingShort, Who::Anybody, "Tune {} Tower Frequency"},
    {HoldingShort, Who::Visual, "Request VFR Takeoff Clearance"},
    {HoldingShort, Who::Instrument, "Request IFR Takeoff Clearance"},
    {HoldingShort, Who::Announcing, "Announce Takeoff"},

    {ClimbingOut, Who::Visual, "Request Full Stop Landing"},
    {ClimbingOut, Who::Instrument, "Tune Departure Frequency"},
    {ClimbingOut, Who::Instrument, "Tune ARTCC Frequency"},
    {Outbound, Who::Instrument, "Tune Departure Frequency"},
    {Outbound, Who::Instrument, "Tune ARTCC Frequency"},
    {Leaving, Who::Anybody, "Close ATC Services"},

    {Inbound, Who::Anybody, "Use ATC services"},
    {Inbound, Who::Visual, "VFR"},
    {Inbound, Who::Instrument, "IFR"},
    {Inbound, Who::Instrument, "{}"},
    {Inbound, Who::Instrument, "Tune Approach Frequency"},
    {Inbound, Who::Instrument, "Tune ARTCC Frequency"},
    {Inbound, Who::Anybody, "Tune {} Tower Frequency"},
    {Inbound, Who::Anybody, "Request Full Stop Landing"},

    {OnApproach, Who::Anybody, "Tune {} Tower Frequency"},
    {OnApproach, Who::Anybody, "Request Full Stop Landing"},

    {Circuit, Who::Anybody, "Use ATC services"},
    {Circuit, Who::Visual, "VFR"},
    {Circuit, Who::Anybody, "Tune {} Tower Frequency"},
    {Circuit, Who::Anybody, "Request Full Stop Landing"},
    {Circuit, Who::Announcing, "Announce Position"},
    {Final, Who::Anybody, "Tune {} Tower Frequency"},
    {Final, Who::Anybody, "Request Full Stop Landing"},
    {Final, Who::Announcing, "Announce Landing"},
    {GoingAround, Who::Visual, "Report Go Around"},
    {GoingAround, Who::Instrument, "Declare Missed Approach"},
    {GoingAround, Who::Instrument, "Tune Approach Frequency"},
    {GoingAround, Who::Instrument, "Tune ARTCC Frequency"},

    {Vacating, Who::Anybody, "Tune {} Ground Frequency"},
    {Vacated, Who::Anybody, "Use ATC services"},
    {Vacated, Who::Anybody, "VFR"},
    {Vacated, Who::Anybody, "Tune {} Ground Frequency"},
    {Vacated, Who::Anybody, "Request Taxi to Gate"},
    {Vacated, Who::Anybody, "Request Taxi to Parking"},
    {Vacated, Who::Announcing, "Announce Taxi to Gate or Parking"},
    {Vacated, Who::Anybody, "Close ATC Services", 2min},  // starts again from the beginning

    // Held, and his read-back was taken for a report: he has to ask anew.
    {TaxiingIn, Who::Anybody, "Request Taxi to Gate"},
    {TaxiingIn, Who::Anybody, "Request Taxi to Parking"},

    {Parked, Who::Anybody, "Report Parking"},
    {Parked, Who::Announcing, "Close ATC Services"},
    {Parked, Who::Anybody, "Close ATC Services", 2min},
    {Reported, Who::Anybody, "Close ATC Services"},
};

}  // namespace

Flight::Flight(std::shared_ptr<const AirportChart> chart, const FlightPlan& plan, const AircraftState& start)
    : chart_(std::move(chart)), plan_(plan), aircraft_(start), ramp_(start.Where()) {
    if (plan_.FromRamp()) return;
    stage_ = Inbound;
    aircraft_.Knots = plan_.Aircraft.CruiseKnots;
}

void Flight::Enter(FlightStage stage) {
    stage_ = stage;
    inStage_ = 0ms;
    announced_ = false;
}

std::vector<std::string> Flight::WantedLabels() const {
    const auto mine = [&](Who who) {
        switch (who) {
            case Who::Anybody:
                return true;
            case Who::Announcing:
                return plan_.Kind == FlightKind::SelfAnnounced;
            case Who::Visual:
                return !plan_.Instrument;
            default:
                return plan_.Instrument;
        }
    };
    std::vector<std::string> labels;
    for (const WantedRow& row : Wanted) {
        if (row.When != stage_ || !mine(row.Whose) || inStage_ < row.After) continue;
        if (announced_ && row.Whose == Who::Announcing) continue;  // once is enough
        if (askedToLand_ && row.Label == "Request Full Stop Landing") continue;
        labels.push_back(fmt::format(fmt::runtime(row.Label), chart_->Name()));
    }
    return labels;
}

void Flight::Picked(std::string_view label) {
    const auto picked = [&](FlightStage stage, std::string_view what) {
        return stage_ == stage && label == what;
    };
    if (label.starts_with("Announce")) announced_ = true;
    if (picked(Parked, "Report Parking")) {
        Enter(Reported);
    } else if (picked(Reported, "Close ATC Services") || picked(Parked, "Close ATC Services")) {
        Enter(Over);
    } else if (picked(Leaving, "Close ATC Services")) {
        Enter(Inbound);
    } else if (picked(AtRamp, "Announce Taxi to Runway")) {
        StartTaxiOut({});
    } else if (picked(HoldingShort, "Announce Takeoff")) {
        Obey({Order::TakeOff, "", 0, {}});
    } else if (picked(Vacated, "Announce Taxi to Gate or Parking")) {
        StartTaxiInUncleared();
    }
}

bool Flight::IsExpecting() const {
    const bool announcing = plan_.Kind == FlightKind::SelfAnnounced;
    switch (stage_) {
        case AtRamp:
        case HoldingShort:
        case Leaving:
        case Vacated:
        case Parked:
        case Reported:
            return true;
        case TaxiingOut:
        case TaxiingIn:
            return holding_;
        case Inbound:
            return !hasVector_ && !askedToLand_ && !announcing;
        case Circuit:
            return !askedToLand_ && !announcing;
        default:
            return false;
    }
}

bool Flight::IsOver() const { return stage_ == Over && inStage_ >= LastWords; }

bool Flight::IsFlying() const {
    switch (stage_) {
        case ClimbingOut:
        case Outbound:
        case Leaving:
        case Inbound:
        case OnApproach:
        case Circuit:
        case Final:
        case GoingAround:
            return true;
        default:
            return false;
    }
}

// ---- What he is told

void Flight::Hear(std::string_view text) {
    // With the Tower nobody is held on the taxiways: his read-back was taken for the change of frequency.
    if (ContainsIgnoringCase(text, "Takeoff Clearance")) holding_ = false;
    for (const Instruction& instruction : ReadInstructions(text)) Obey(instruction);
}

void Flight::Obey(const Instruction& told) {
    switch (told.What) {
        case Order::TaxiToRunway:
            if (stage_ == AtRamp) StartTaxiOut(told);
            break;
        case Order::TaxiToSpot:
            if (stage_ == Vacated || stage_ == TaxiingIn) StartTaxiIn(told);
            break;
        case Order::HoldPosition:
            holding_ = true;
            break;
        case Order::ContinueTaxi:
            holding_ = false;
            break;
        case Order::HoldShort:
            if (stage_ == HoldingShort) Enter(AwaitingTakeoff);
            break;
        case Order::TakeOff:
            if (stage_ != HoldingShort && stage_ != AwaitingTakeoff) break;
            track_ = {lineUp_, 0};
            Enter(LiningUp);
            break;
        case Order::LeftDownwind:
        case Order::RightDownwind:
            askedToLand_ = true;
            EnterCircuit(told.What == Order::LeftDownwind ? -1 : 1, false);
            break;
        case Order::Base:
        case Order::StraightIn:
            askedToLand_ = true;
            EnterCircuit(chart_->SeenFromRunway(aircraft_.Where()).Right < 0 ? -1 : 1, true);
            break;
        case Order::Land:
            clearedToLand_ = true;
            break;
        case Order::GoAround:
            if (IsFlying()) GoAround();
            break;
        case Order::TurnLeft:
        case Order::TurnRight:
            hasVector_ = true;
            heading_ = chart_->MagneticToTrue(told.Number, aircraft_.Where());
            way_ = told.What == Order::TurnLeft ? Turn::Left : Turn::Right;
            break;
        case Order::Climb:
        case Order::Descend:
            hasAltitude_ = true;
            altitude_ = told.Number;
            break;
        case Order::FlyApproach:
            if (stage_ != Inbound) break;
            steepest_ = 45;
            Enter(OnApproach);
            break;
        case Order::ContactApproach:
            if (told.Name.empty()) hasVector_ = false;  // nobody there: he goes on by himself
            break;
        case Order::ExitRunway:
        case Order::OwnNavigation:
            break;
    }
}

// ---- Time passes

void Flight::Move(std::chrono::milliseconds time) {
    for (; time > 0ms; time -= LongestMove) MoveOnce(std::min(time, LongestMove));
}

void Flight::MoveOnce(std::chrono::milliseconds time) {
    inStage_ += time;
    IsFlying() ? MoveInAir(time) : MoveOnGround(time);
}

}  // namespace corvenna
