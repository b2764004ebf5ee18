#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "practice/flight_chart.h"
#include "practice/flight_plan.h"

namespace corvenna {

/// An aircraft that a person moves by commands, as far as the talk with a controller needs it: it taxies,
/// takes off, flies headings and altitudes, and lands. Feet, knots, degrees magnetic. One thread.
class HandFlown {
  public:
    /// What Do understands, one command a line.
    static constexpr std::string_view Commands =
        "goto SPOT           taxi to a parking spot: goto GATE A 1\n"
        "goto runway         taxi to the active runway, and hold short of it\n"
        "goto LAT,LON        in the air: fly there\n"
        "takeoff             taxi onto the active runway and take off\n"
        "heading DEGREES     in the air: turn to a magnetic heading\n"
        "altitude FEET       in the air: climb or descend\n"
        "land                in the air: fly to the active runway, land and clear it\n"
        "stop                on the ground: stand still\n"
        "where               tell the position\n";

    /// Stands at the parking spot of that name, or at the first one. Throws std::invalid_argument for a name
    /// that no spot has.
    HandFlown(std::shared_ptr<const AirportChart> chart, std::string_view spot);

    static bool IsCommand(std::string_view line);

    /// Gives the answer for the person. Throws std::invalid_argument with what is wrong.
    std::string Do(std::string_view command);

    void Move(std::chrono::milliseconds time);

    const AircraftState& Aircraft() const { return aircraft_; }
    bool InAir() const { return doing_ == Doing::Flying || doing_ == Doing::Landing; }

  private:
    enum class Doing { Standing, Taxiing, LiningUp, TakingOff, Flying, Landing, RollingOut };

    std::string GoTo(std::string_view where);
    std::string TakeOff();
    std::string Where() const;
    void MoveOnce(std::chrono::milliseconds time);
    std::vector<Place> WayOff() const;
    void Roll(double knots, double heading, std::chrono::milliseconds time);
    void FlyTo(double headingTrue, double altitudeFeet, double knots, std::chrono::milliseconds time);
    void FlyLanding(std::chrono::milliseconds time);
    void NeedAir(bool inAir) const;

    std::shared_ptr<const AirportChart> chart_;
    Performance flies_;
    AircraftState aircraft_;
    Doing doing_ = Doing::Standing;
    Track track_;
    double heading_ = 0;   ///< true
    double altitude_ = 0;  ///< feet above sea level
    bool onFinal_ = false;
};

}  // namespace corvenna
