#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "practice/practice_log.h"
#include "practice/practice_traffic.h"
#include "practice/whole_session.h"
#include "support/practice_station.h"

namespace corvenna {

/// Practice traffic with its log, replenished for as long as one likes.
class TrafficSession {
  public:
    TrafficSession(std::string_view code, const TrafficPlan& plan,
                   std::chrono::milliseconds stepTime = std::chrono::milliseconds(100),
                   std::unique_ptr<SessionCarrier> carrier = std::make_unique<MemoryCarrier>())
        : Session(PracticeStation(CORVENNA_TEST_DATA, code), plan.Pilots + 3, stepTime, std::move(carrier)),
          Log(Session.TheStation.RunwayElevation, false),
          traffic_(
              std::make_shared<AirportChart>(Session.TheStation), [this] { return Session.MakeSession(); },
              WholeSession::Name, plan, Events()) {}

    void RunFor(std::chrono::milliseconds time) {
        for (const auto end = Session.Now + time; Session.Now < end;) {
            Session.Step([&](auto now) {
                traffic_.Step(now);
                if (now % std::chrono::seconds(1) == std::chrono::seconds(0))
                    traffic_.ForEach([&](const auto& pilot) { Log.Flies(pilot, now); });
            });
        }
    }

    WholeSession Session;
    PracticeLog Log;
    std::vector<std::string> Lost;  ///< who left without having flown to the end
    int Completed = 0;

  private:
    TrafficEvents Events() {
        return {.Talk = {.Heard = [this](auto name, auto text) { Log.Heard(name, text, Session.Now); },
                         .Said = [this](auto name, auto text) { Log.Said(name, text, Session.Now); }},
                .Came = [this](const auto& pilot) { Log.Came(pilot, Session.Now); },
                .Left =
                    [this](const auto& pilot) {
                        Log.Left(pilot.Name(), pilot.Completed());
                        if (pilot.Completed()) ++Completed;
                        if (!pilot.Completed()) Lost.push_back(pilot.Name());
                    },
                .Failed = {}};
    }

    PracticeTraffic traffic_;
};

}  // namespace corvenna
