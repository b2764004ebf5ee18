#pragma once

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "practice/flight_chart.h"
#include "practice/flight_phrases.h"
#include "practice/flight_plan.h"

namespace corvenna {

/// What a pilot is about.
enum class FlightStage {
    AtRamp,
    TaxiingOut,
    HoldingShort,
    AwaitingTakeoff,
    LiningUp,
    TakingOff,
    ClimbingOut,
    Outbound,
    Leaving,  ///< gives up the service of the way out before he turns back
    Inbound,
    OnApproach,
    Circuit,
    Final,
    GoingAround,
    RollingOut,
    Vacating,
    Vacated,
    TaxiingIn,
    Parked,
    Reported,
    Over,
};

/// Another aircraft, as seen from the cockpit.
struct Sighting {
    Place Where;
    double AltitudeFeet = 0;
};

/// One flight from its beginning to its end: moves the aircraft, obeys what is heard, and knows which
/// option of a menu he would like to have. Has no radio and no clock of its own. One thread.
class Flight {
  public:
    /// Before the threshold: whoever is nearer goes on to land, whoever is farther lets him.
    static constexpr double DecisionMiles = 3.5;

    Flight(std::shared_ptr<const AirportChart> chart, const FlightPlan& plan, const AircraftState& start);

    /// Obeys the instructions in a text that was meant for him.
    void Hear(std::string_view text);

    /// Lets so much time pass. He keeps clear of the others as far as he sees them.
    void Move(std::chrono::milliseconds time, std::span<const Sighting> others = {});

    /// The labels that he would pick now, best first; those of the opening dialogue among them.
    std::vector<std::string> WantedLabels() const;

    /// Told which of them he has picked.
    void Picked(std::string_view label);

    /// Whether silence is a reason to ask for a repeat: he waits for something to be offered or said.
    bool IsExpecting() const;

    /// Whether he reads an instruction back now. A landing clearance he reads back when nobody is before him
    /// any more: only then does the controller count him as landing, and send others around for him.
    bool ReadsBack(std::string_view text) const;

    /// Whether, and for how long already, he wants to close the service and to begin again.
    bool StartsOver() const { return startsOver_; }
    std::chrono::milliseconds StartsOverSince() const { return startingOver_; }

    /// The controller knows him no more: he is greeted as if he were new, or has joined anew.
    void LoseService();

    FlightStage Stage() const { return stage_; }
    bool IsOver() const;
    const AircraftState& Aircraft() const { return aircraft_; }
    bool Holding() const { return holding_; }

  private:
    void Enter(FlightStage stage);
    void Obey(const Instruction& instruction);
    void HearGround(std::string_view text);
    void NoteNews(std::string_view text);
    void LoseFrequency();
    bool HearsNothingNew() const;
    void RunOutOfPatience();
    void MoveOnce(std::chrono::milliseconds time);
    bool IsFlying() const;
    bool IsComingHome() const;
    bool IsOnWayOut() const;
    bool IsOnWayIn() const { return stage_ == FlightStage::Vacated || stage_ == FlightStage::TaxiingIn; }
    bool IsOnTaxiways() const;
    bool Announces() const { return plan_.Kind == FlightKind::SelfAnnounced; }

    // What he sees of the others: flight_sight.cpp
    bool SomebodyOnRunway() const;
    bool SomebodyOnFinal(double within) const;
    bool SomebodyInTheWay(double within) const;
    double FeetAboveOthers() const;
    bool RunwayIsFree(double finalMiles) const { return !SomebodyOnRunway() && !SomebodyOnFinal(finalMiles); }

    // On the ground: flight_ground.cpp
    void StartTaxiOut(const Instruction& clearance);
    void StartTaxiIn(const Instruction& clearance);
    void StartTaxiInUncleared();
    void MoveOnGround(std::chrono::milliseconds time);
    double TaxiSpeed() const;
    double GiveWay(double knots, std::chrono::milliseconds time);
    bool MustLeaveRoom() const;
    bool StandsInLine() const;
    void TaxiOut(std::chrono::milliseconds time);
    void LineUp();
    void RollForTakeoff(std::chrono::milliseconds time);
    void TouchDown();

    // In the air: flight_air.cpp
    void MoveInAir(std::chrono::milliseconds time);
    void EnterCircuit(double side, bool fromBase);
    void GoAround();
    void ClimbOut(std::chrono::milliseconds time);
    void FlyOutbound(std::chrono::milliseconds time);
    void FlyInbound(std::chrono::milliseconds time);
    void FlyCircuit(std::chrono::milliseconds time);
    void FlyFinal(std::chrono::milliseconds time);
    bool MustWaitOnFinal(double toGo) const;
    void FlyOrbit(double altitudeFeet, std::chrono::milliseconds time);
    double FinalSinkRate() const;
    bool IsTooHighFor(double toGo) const;
    void SteerTo(double heading, double altitudeFeet, double knots, std::chrono::milliseconds time,
                 Turn way = Turn::Shorter);
    double FeetAboveField() const { return aircraft_.AltitudeFeet - chart_->ElevationFeet(); }
    bool FliesAwayForgotten() const;
    double MilesOut() const { return MilesBetween(chart_->Middle(), aircraft_.Where()); }

    std::shared_ptr<const AirportChart> chart_;
    FlightPlan plan_;
    AircraftState aircraft_;
    FlightStage stage_ = FlightStage::AtRamp;
    std::chrono::milliseconds inStage_{0};
    bool announced_ = false;  ///< whether he has said in this stage what he is about
    bool startsOver_ = false;
    std::chrono::milliseconds startingOver_{0};
    std::chrono::milliseconds sinceHeard_{0};
    bool queued_ = false;        ///< whether his name stands in the Tower's queue, as far as he knows
    bool takesNameOut_ = false;  ///< he was forgotten with his name in the queue, where it blocks the runway
    std::string news_;           ///< the last text that was not merely said again, and no call of traffic
    std::chrono::milliseconds sinceNews_{0};
    std::chrono::milliseconds sinceRunwayUsed_{0};  ///< as seen from the holding point
    std::span<const Sighting> others_;              ///< while time passes

    // On the ground
    Place ramp_;
    Track track_;
    std::vector<Place> lineUp_;
    bool holding_ = false;
    std::chrono::milliseconds heldFor_{0};
    std::chrono::milliseconds gaveWay_{0};  ///< so long already to whom is in the way

    // In the air
    std::vector<Place> legs_;  ///< of the circuit, up to the turn to final
    bool hasVector_ = false;   ///< whether heading_ holds
    double heading_ = 0;       ///< assigned, true
    Turn way_ = Turn::Shorter;
    bool hasAltitude_ = false;
    double altitude_ = 0;   ///< assigned
    double steepest_ = 45;  ///< degrees at which the final is intercepted
    bool askedToLand_ = false;
    bool clearedToLand_ = false;
    bool missed_ = false;
    int orbits_ = 0;  ///< flown on this approach
    std::chrono::milliseconds sinceOrbit_{60000};
    double orbit_ = 0;  ///< degrees still to be turned on the spot, to let others land first
};

}  // namespace corvenna
