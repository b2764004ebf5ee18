#include "practice/practice_traffic.h"

#include "practice/practice_scripts.h"

namespace corvenna {

PracticeTraffic::PracticeTraffic(const Station& station,
                                 std::function<std::unique_ptr<Session>()> makeSession,
                                 std::string sessionName, int pilotCount, PilotEvents events)
    : chart_(std::make_shared<AirportChart>(station)),
      makeSession_(std::move(makeSession)),
      sessionName_(std::move(sessionName)),
      events_(std::move(events)) {
    for (int i = 0; i < pilotCount; ++i) pilots_.push_back(NextPilot(i * ArrivalInterval));
}

void PracticeTraffic::Step(std::chrono::milliseconds now) {
    for (auto& pilot : pilots_) {
        pilot->Step(now);
        if (pilot->Gone()) pilot = NextPilot(now + ArrivalInterval);
    }
}

std::unique_ptr<PracticePilot> PracticeTraffic::NextPilot(std::chrono::milliseconds arrivesAt) {
    return std::make_unique<PracticePilot>(makeSession_(), sessionName_, chart_->Code(),
                                           ScriptOfPilot(chart_, pilotsMade_++, arrivesAt), events_);
}

}  // namespace corvenna
