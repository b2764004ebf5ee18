#include <fmt/format.h>

#include "practice/flight_conduct.h"
#include "station/text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

/// The stages in which he would like to be offered something.
constexpr unsigned In(FlightStage stage) { return 1u << static_cast<unsigned>(stage); }

using enum FlightStage;
constexpr unsigned WayOut = In(AtRamp) | In(TaxiingOut) | In(HoldingShort);
constexpr unsigned WayHome = In(Inbound) | In(OnApproach) | In(Circuit) | In(Final) | In(GoingAround);
constexpr unsigned WayIn = In(Vacated) | In(TaxiingIn);

enum class Who { Anybody, Visual, Instrument, Announcing };

struct WishRow {
    unsigned When;
    Who Whose;
    std::string_view Label;                 ///< {} is the airport's name
    std::chrono::milliseconds After = 0ms;  ///< only when the stage has lasted so long
};

/// Best first. The opening dialogue stands wherever the controller may have forgotten him: he loses pilots
/// now and then when somebody leaves the session, and greets them again wherever they are.
constexpr WishRow Wishes[] = {
    {WayOut, Who::Anybody, "Use ATC services"},
    {WayOut, Who::Visual, "VFR"},
    {WayOut, Who::Instrument, "IFR"},
    {In(HoldingShort), Who::Visual, "Request VFR Takeoff Clearance"},
    {In(HoldingShort), Who::Instrument, "Request IFR Takeoff Clearance"},
    {In(HoldingShort), Who::Anybody, "Tune {} Tower Frequency"},
    {WayOut, Who::Visual, "Request Taxi to Runway"},
    {WayOut, Who::Instrument, "Request Taxi IFR"},
    {WayOut, Who::Anybody, "Tune {} Ground Frequency"},
    {In(AtRamp), Who::Announcing, "Announce Taxi to Runway"},
    {In(HoldingShort), Who::Announcing, "Announce Takeoff"},

    {In(ClimbingOut) | In(Outbound), Who::Instrument, "Use ATC services"},
    {In(ClimbingOut) | In(Outbound), Who::Instrument, "IFR"},
    {In(ClimbingOut) | In(Outbound), Who::Instrument, "Another Airport"},
    {In(ClimbingOut) | In(Outbound), Who::Instrument, "Tune Departure Frequency"},
    {In(ClimbingOut) | In(Outbound), Who::Instrument, "Tune Approach Frequency"},
    {In(ClimbingOut) | In(Outbound), Who::Instrument, "Tune ARTCC Frequency"},
    {In(Leaving), Who::Anybody, "Close ATC Services"},

    {WayHome, Who::Anybody, "Use ATC services"},
    {WayHome, Who::Visual, "VFR"},
    {WayHome, Who::Instrument, "IFR"},
    {WayHome, Who::Visual, "Report Go Around"},
    {In(GoingAround), Who::Instrument, "Declare Missed Approach"},
    {WayHome, Who::Instrument, "{}"},
    {WayHome, Who::Anybody, "Tune {} Tower Frequency"},
    {WayHome, Who::Anybody, "Request Full Stop Landing"},
    {WayHome, Who::Instrument, "Tune Approach Frequency"},
    {WayHome, Who::Instrument, "Tune ARTCC Frequency"},
    {In(Circuit), Who::Announcing, "Announce Position"},
    {In(Final), Who::Announcing, "Announce Landing"},

    {In(Vacating), Who::Anybody, "Tune {} Ground Frequency"},
    {WayIn, Who::Anybody, "Use ATC services"},
    {WayIn, Who::Anybody, "VFR"},
    {WayIn, Who::Anybody, "Tune {} Ground Frequency"},
    {WayIn, Who::Anybody, "Request Taxi to Gate"},  // on his way again after a hold: see Hear
    {WayIn, Who::Anybody, "Request Taxi to Parking"},
    {In(Vacated), Who::Announcing, "Announce Taxi to Gate or Parking"},

    {In(Parked), Who::Anybody, "Report Parking"},
    {In(Parked), Who::Announcing, "Close ATC Services"},
    {In(Parked), Who::Anybody, "Close ATC Services", 1min},
    {In(Reported), Who::Anybody, "Close ATC Services"},
};

constexpr auto LongSilence = 10min;  // under vectors

constexpr std::string_view Close = "Close ATC Services";

}  // namespace

std::vector<std::string> Flight::WantedLabels() const {
    if (takesNameOut_) return {"Use ATC services", std::string(Close)};
    const auto mine = [&](Who who) {
        switch (who) {
            case Who::Anybody:
                return true;
            case Who::Announcing:
                return Announces();
            case Who::Visual:
                return !plan_.Instrument;
            default:
                return plan_.Instrument;
        }
    };
    const auto pointless = [&](const WishRow& row) {
        if (row.Whose == Who::Announcing && announced_) return true;  // once is enough
        if (row.Label == "Announce Takeoff") return !RunwayIsFree(3);
        if (row.Label == "Report Go Around") return !missed_ || clearedToLand_;
        if (row.Label == "Request Full Stop Landing") return askedToLand_;
        if (row.Label == "Use ATC services") return stage_ == Final && clearedToLand_;
        return false;
    };
    std::vector<std::string> labels;
    for (const WishRow& row : Wishes) {
        if ((row.When & In(stage_)) == 0 || !mine(row.Whose) || inStage_ < row.After || pointless(row))
            continue;
        labels.push_back(fmt::format(fmt::runtime(row.Label), chart_->Name()));
    }
    return labels;
}

void Flight::Picked(std::string_view label) {
    const auto picked = [&](FlightStage stage, std::string_view what) {
        return stage_ == stage && label == what;
    };
    if (label.starts_with("Announce")) announced_ = true;
    if (label == Close) {
        const bool nothingElse = takesNameOut_;
        queued_ = takesNameOut_ = false;
        if (nothingElse) return;
    }
    if (picked(Parked, "Report Parking")) {
        Enter(Reported);
    } else if (picked(Reported, Close) || picked(Parked, Close)) {
        Enter(Over);
    } else if (picked(Leaving, Close)) {
        Enter(Inbound);
    } else if (picked(AtRamp, "Announce Taxi to Runway")) {
        StartTaxiOut({});
    } else if (picked(HoldingShort, "Announce Takeoff")) {
        LineUp();
    } else if (picked(Vacated, "Announce Taxi to Gate or Parking")) {
        StartTaxiInUncleared();
    }
}

bool Flight::IsExpecting() const {
    switch (stage_) {
        case AtRamp:
        case HoldingShort:
        case AwaitingTakeoff:
        case Leaving:
        case Vacated:
        case Parked:
        case Reported:
            return !Announces();
        case TaxiingOut:
        case TaxiingIn:
            return holding_;
        case Inbound:
            if (Announces() || askedToLand_) return false;
            return (!hasVector_ && !hasAltitude_) || sinceHeard_ >= LongSilence;
        case Circuit:
            return !askedToLand_ && !Announces();
        default:
            return false;
    }
}

}  // namespace corvenna
