#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "practice/practice_scripts.h"
#include "practice/whole_session.h"

namespace corvenna {

/// A whole session with the first so many practice pilots, each followed through the stages of his flight.
class FlownSession {
  public:
    static constexpr int FewPilots = 10;

    struct Flown {
        std::unique_ptr<PracticePilot> Pilot;
        FlightPlan Plan;
        std::set<FlightStage> Stages;  ///< those that he has been in
        FlightStage Last = FlightStage::AtRamp;

        bool Completed() const { return Pilot->Gone() && Last == FlightStage::Over; }
    };

    FlownSession(Station station, int pilots, int firstNumber = 0, const PilotEvents& events = {},
                 std::unique_ptr<SessionCarrier> carrier = std::make_unique<MemoryCarrier>())
        : Session(std::move(station), pilots + 2, StepTimeFor(pilots), std::move(carrier)) {
        const auto chart = std::make_shared<AirportChart>(Session.TheStation);
        for (int i = 0; i < pilots; ++i) {
            PilotScript script = ScriptOfPilot(chart, firstNumber + i, i * std::chrono::seconds(3));
            const FlightPlan plan = std::get<Fly>(script.Steps.back()).Plan;
            Pilots.push_back({std::make_unique<PracticePilot>(Session.MakeSession(), WholeSession::Name,
                                                              chart->Code(), std::move(script), events),
                              plan,
                              {}});
        }
    }

    void Step() {
        Session.Step([&](auto now) {
            for (Flown& flown : Pilots) {
                flown.Pilot->Step(now);
                if (!flown.Pilot->TheFlight()) continue;
                flown.Last = flown.Pilot->TheFlight()->Stage();
                flown.Stages.insert(flown.Last);
            }
        });
    }

    bool AllGone() const {
        return std::all_of(Pilots.begin(), Pilots.end(),
                           [](const Flown& flown) { return flown.Pilot->Gone(); });
    }

    /// Until nobody is left, or the time is up.
    void Run(std::chrono::milliseconds until) {
        while (Session.Now < until && !AllGone()) Step();
    }

    static std::chrono::milliseconds StepTimeFor(int pilots) {
        return std::chrono::milliseconds(pilots <= FewPilots ? 100 : 1000);
    }

    WholeSession Session;
    std::vector<Flown> Pilots;
};

}  // namespace corvenna
