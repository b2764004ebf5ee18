#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "practice/practice_pilot.h"
#include "practice/unruliness.h"

namespace corvenna {

/// Which pilots fly in a practice.
struct TrafficPlan {
    int Pilots = 6;          ///< so many at a time
    std::uint32_t Seed = 0;  ///< number of the first pilot, and what chance is made from
    bool Unruly = false;     ///< every third one behaves badly
};

/// What happens among them besides their talk; any may be missing.
struct TrafficEvents {
    PilotEvents Talk;
    std::function<void(const PracticePilot& pilot)> Came;
    std::function<void(const PracticePilot& pilot)> Left;

    /// A pilot could not join, or lost the session. Without this the error is thrown on.
    std::function<void(const PracticePilot& pilot, const std::string& why)> Failed;
};

/// The pilots of a practice session: so many at a time, arriving one after the other; whoever leaves is
/// followed by another one. Station's thread.
class PracticeTraffic {
  public:
    /// Between the arrivals of the first pilots, and from a leaving to the arrival that makes up for it.
    static constexpr std::chrono::milliseconds ArrivalInterval{3000};

    /// From a failure to the next attempt.
    static constexpr std::chrono::milliseconds RetryInterval{60000};

    /// makeSession gives each pilot his own access to the session of that name.
    PracticeTraffic(std::shared_ptr<const AirportChart> chart,
                    std::function<std::unique_ptr<Session>()> makeSession, std::string sessionName,
                    const TrafficPlan& plan, TrafficEvents events);

    /// Throws what the session layer throws, unless Failed takes it.
    void Step(std::chrono::milliseconds now);

    /// Everybody leaves the session, and nobody follows.
    void Leave();

    /// Whether somebody has joined whom the host has not admitted yet.
    bool SomebodyAwaitsAdmission() const;

    /// Calls back for each pilot who is in the session.
    void ForEach(const std::function<void(const PracticePilot& pilot)>& what) const;

  private:
    struct Seat {
        std::unique_ptr<PracticePilot> Pilot;
        int Number = 0;
        bool InSession = false;
        std::unique_ptr<Unruliness> Mischief;  ///< none: he behaves
    };

    void Fill(Seat& seat, int number, std::chrono::milliseconds arrivesAt);
    void StepPilot(Seat& seat, std::chrono::milliseconds now);

    std::shared_ptr<const AirportChart> chart_;
    std::function<std::unique_ptr<Session>()> makeSession_;
    std::string sessionName_;
    TrafficPlan plan_;
    TrafficEvents events_;
    int pilotsMade_ = 0;
    std::vector<Seat> seats_;
};

}  // namespace corvenna
