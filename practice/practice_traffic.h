#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "practice/practice_pilot.h"
#include "station/model.h"

namespace corvenna {

/// The pilots of a practice session: so many at a time, arriving one after the other; whoever leaves is
/// followed by another one. Station's thread.
class PracticeTraffic {
  public:
    /// Between the arrivals of the first pilots, and from a leaving to the arrival that makes up for it.
    static constexpr std::chrono::milliseconds ArrivalInterval{3000};

    /// makeSession gives each pilot his own access to the session of that name. The airport's fields of the
    /// station are read now.
    PracticeTraffic(const Station& station, std::function<std::unique_ptr<Session>()> makeSession,
                    std::string sessionName, int pilotCount, PilotEvents events);

    /// Throws what the session layer throws.
    void Step(std::chrono::milliseconds now);

  private:
    std::unique_ptr<PracticePilot> NextPilot(std::chrono::milliseconds arrivesAt);

    std::shared_ptr<const AirportChart> chart_;
    std::function<std::unique_ptr<Session>()> makeSession_;
    std::string sessionName_;
    PilotEvents events_;
    int pilotsMade_ = 0;
    std::vector<std::unique_ptr<PracticePilot>> pilots_;
};

}  // namespace corvenna
