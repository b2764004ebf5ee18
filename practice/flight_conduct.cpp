#include "practice/flight_conduct.h"

#include <algorithm>

#include "station/text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds LongestMove = 500ms;
constexpr auto LastWords = 3s;  // the answer to his good-bye may come

constexpr auto LongestWait = 30min;    // at the runway, when nobody uses it
constexpr auto LongestLine = 90min;    // at the runway, whoever uses it
constexpr auto LongestNoUse = 10min;   // of the runway, while somebody waits for it
constexpr auto LongestNoNews = 20min;  // on the way home
constexpr auto LongestHold = 12min;    // on a taxiway
constexpr auto LongestAtGate = 4min;   // beside the runway, without being offered a place to park
constexpr auto LongestParked = 3min;   // without being heard any more
constexpr auto LongestMissed = 6min;   // straight ahead, without vectors
constexpr auto AloneAtRamp = 3min;     // where nobody controls, nobody needs an answer
constexpr auto AloneAtRunway = 1min;
constexpr double LastMiles = 195;  // so far out a greeting means that the service is over

using enum FlightStage;

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
    if (stage == AwaitingTakeoff || stage == LiningUp) queued_ = true;
    if (stage == Vacated || stage == Over) queued_ = false;
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

bool Flight::IsComingHome() const {
    return IsFlying() && stage_ != ClimbingOut && stage_ != Outbound && stage_ != Leaving;
}

bool Flight::IsOnWayOut() const {
    return stage_ == AtRamp || stage_ == TaxiingOut || stage_ == HoldingShort || stage_ == AwaitingTakeoff;
}

bool Flight::IsOnTaxiways() const {
    return stage_ == TaxiingOut || stage_ == HoldingShort || stage_ == TaxiingIn;
}

// ---- What he is told

void Flight::Hear(std::string_view text) {
    sinceHeard_ = 0ms;
    NoteNews(text);
    if (ContainsIgnoringCase(text, "Want to use our ATC services")) LoseService();
    if (ContainsIgnoringCase(text, "Choose one of the following options: ")) LoseFrequency();
    if (ContainsIgnoringCase(text, "Canceling IFR")) startsOver_ = true;
    if (ContainsIgnoringCase(text, "for the Ground frequency:")) HearGround(text);
    // With the Tower nobody is held on the taxiways: his read-back was taken for the change of frequency.
    if (ContainsIgnoringCase(text, "Takeoff Clearance")) {
        holding_ = false;
        if (stage_ == AwaitingTakeoff) Enter(HoldingShort);
    }
    for (const Instruction& instruction : ReadInstructions(text)) Obey(instruction);
}

void Flight::NoteNews(std::string_view text) {
    if (text == news_ || ContainsIgnoringCase(text, "traffic in sight")) return;
    news_ = text;
    sinceNews_ = 0ms;
}

/// A hold and the end of it are not always told, but the options tell: whoever is held is offered nothing.
void Flight::HearGround(std::string_view text) {
    // Taken for somebody else, who taxies: the service that has him will not go on.
    const bool toGate = ContainsIgnoringCase(text, "Report us when you are parked");
    const bool toRunway =
        ContainsIgnoringCase(text, "-Tune") && ContainsIgnoringCase(text, "Tower Frequency");
    if (IsFlying() || stage_ == AwaitingTakeoff || (IsOnWayOut() && toGate) || (IsOnWayIn() && toRunway)) {
        startsOver_ = true;
    }
    if (IsOnTaxiways() && !ContainsIgnoringCase(text, "1-Acknowledge")) {
        holding_ = ContainsIgnoringCase(text, "for the Ground frequency: 1-Close ATC Services");
    }
}

/// The controller takes the name of somebody whom it loses out of no queue: that is done only for who closes
/// a service of his.
void Flight::LoseService() {
    LoseFrequency();
    takesNameOut_ = queued_;
    startsOver_ = false;
    startingOver_ = 0ms;
    sinceNews_ = 0ms;
    hasVector_ = false;
    hasAltitude_ = false;
    if (stage_ == AwaitingTakeoff) Enter(HoldingShort);
    if (stage_ == Leaving) Enter(Inbound);
    if (stage_ == Outbound && MilesOut() > LastMiles) Enter(Over);
}

/// Nobody has him any more: neither a hold nor a request for landing stands.
void Flight::LoseFrequency() {
    holding_ = false;
    askedToLand_ = false;
}

bool Flight::ReadsBack(std::string_view text) const {
    if (!IsFlying() || !ContainsIgnoringCase(text, "cleared to land")) return true;
    return (stage_ == OnApproach || stage_ == Final) && orbit_ <= 0 &&
           -chart_->SeenFromRunway(aircraft_.Where()).Along < DecisionMiles;
}

void Flight::Obey(const Instruction& told) {
    switch (told.What) {
        case Order::TaxiToRunway:
            if (stage_ == AtRamp || stage_ == TaxiingOut) StartTaxiOut(told);
            break;
        case Order::TaxiToSpot:
            if (stage_ == Vacated || stage_ == TaxiingIn) StartTaxiIn(told);
            break;
        case Order::HoldPosition:
            if (IsFlying()) startsOver_ = true;
            holding_ = IsOnTaxiways();
            break;
        case Order::ContinueTaxi:
            holding_ = false;
            break;
        case Order::HoldShort:
            if (stage_ == HoldingShort) Enter(AwaitingTakeoff);
            break;
        case Order::TakeOff:
            if (stage_ == HoldingShort || stage_ == AwaitingTakeoff) LineUp();
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
            clearedToLand_ = queued_ = true;
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
            if (stage_ != Inbound && stage_ != GoingAround) break;
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

void Flight::Move(std::chrono::milliseconds time, std::span<const Sighting> others) {
    others_ = others;
    for (; time > 0ms; time -= LongestMove) MoveOnce(std::min(time, LongestMove));
    others_ = {};
}

void Flight::MoveOnce(std::chrono::milliseconds time) {
    inStage_ += time;
    sinceHeard_ += time;
    sinceNews_ += time;
    sinceRunwayUsed_ = stage_ != AwaitingTakeoff || SomebodyOnRunway() ? 0ms : sinceRunwayUsed_ + time;
    heldFor_ = holding_ ? heldFor_ + time : 0ms;
    if (startsOver_) startingOver_ += time;
    IsFlying() ? MoveInAir(time) : MoveOnGround(time);
    RunOutOfPatience();
}

/// The controller answers, but not to what he needs: he has been taken for another, or is not heard.
bool Flight::HearsNothingNew() const {
    if (Announces() || news_.empty()) return false;
    if (stage_ == AtRamp || stage_ == HoldingShort) return sinceNews_ >= LongestHold;
    return IsComingHome() && !clearedToLand_ && sinceNews_ >= LongestNoNews;
}

/// What he does when nothing has come of waiting.
void Flight::RunOutOfPatience() {
    const auto waited = [&](FlightStage stage, std::chrono::milliseconds atMost) {
        return stage_ == stage && inStage_ >= atMost;
    };
    if (waited(AwaitingTakeoff, LongestWait) && sinceRunwayUsed_ >= LongestNoUse) startsOver_ = true;
    if (waited(AwaitingTakeoff, LongestLine)) startsOver_ = true;
    if (HearsNothingNew()) startsOver_ = true;
    if (heldFor_ >= LongestHold) {
        startsOver_ = true;
        Enter(stage_ == TaxiingIn ? Vacated : AtRamp);
        holding_ = false;
    }
    if (waited(GoingAround, LongestMissed)) {
        startsOver_ = true;
        Enter(Inbound);
    }
    if (waited(Vacated, LongestAtGate)) StartTaxiInUncleared();
    if (waited(Parked, LongestParked) || waited(Reported, LongestParked)) Enter(Over);
    if (Announces() && waited(AtRamp, AloneAtRamp)) StartTaxiOut({});
    if (Announces() && waited(HoldingShort, AloneAtRunway) && RunwayIsFree(3)) LineUp();
}

}  // namespace corvenna
