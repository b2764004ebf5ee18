#include "practice/practice_traffic.h"

#include <algorithm>

#include "practice/practice_scripts.h"

namespace corvenna {

PracticeTraffic::PracticeTraffic(std::shared_ptr<const AirportChart> chart,
                                 std::function<std::unique_ptr<Session>()> makeSession,
                                 std::string sessionName, const TrafficPlan& plan, TrafficEvents events)
    : chart_(std::move(chart)),
      makeSession_(std::move(makeSession)),
      sessionName_(std::move(sessionName)),
      plan_(plan),
      events_(std::move(events)),
      pilotsMade_(static_cast<int>(plan.Seed)) {
    for (int i = 0; i < plan.Pilots; ++i) Fill(seats_.emplace_back(), pilotsMade_++, i * ArrivalInterval);
}

void PracticeTraffic::Step(std::chrono::milliseconds now) {
    for (Seat& seat : seats_) StepPilot(seat, now);
}

void PracticeTraffic::StepPilot(Seat& seat, std::chrono::milliseconds now) {
    try {
        if (seat.Mischief) seat.Mischief->Step(*seat.Pilot, now);
        if (seat.Mischief && seat.Mischief->Freezes(now)) return;
        seat.Pilot->Step(now);
    } catch (const SessionError& error) {
        if (!events_.Failed) throw;
        events_.Failed(*seat.Pilot, error.what());
        return Fill(seat, seat.Number, now + RetryInterval);
    }
    if (seat.Pilot->InSession() && !seat.InSession) {
        seat.InSession = true;
        if (events_.Came) events_.Came(*seat.Pilot);
    }
    if (!seat.Pilot->Gone()) return;
    if (events_.Left) events_.Left(*seat.Pilot);
    const bool returns = seat.Mischief && seat.Mischief->Returns();
    Fill(seat, returns ? seat.Number : pilotsMade_++, now + ArrivalInterval);
}

void PracticeTraffic::Leave() {
    for (Seat& seat : seats_) seat.Pilot->Leave();
    seats_.clear();
}

bool PracticeTraffic::SomebodyAwaitsAdmission() const {
    return std::any_of(seats_.begin(), seats_.end(),
                       [](const Seat& seat) { return seat.Pilot->AwaitsAdmission(); });
}

void PracticeTraffic::ForEach(const std::function<void(const PracticePilot& pilot)>& what) const {
    for (const Seat& seat : seats_) {
        if (seat.Pilot->InSession()) what(*seat.Pilot);
    }
}

void PracticeTraffic::Fill(Seat& seat, int number, std::chrono::milliseconds arrivesAt) {
    seat.Number = number;
    seat.InSession = false;
    PilotScript script = ScriptOfPilot(chart_, number, arrivesAt);
    script.Unruly = plan_.Unruly && Unruliness::IsOf(number);
    seat.Pilot = std::make_unique<PracticePilot>(makeSession_(), sessionName_, chart_->Code(),
                                                 std::move(script), events_.Talk);
    if (!seat.Pilot->IsUnruly()) {
        seat.Mischief.reset();
    } else if (!seat.Mischief) {
        seat.Mischief = std::make_unique<Unruliness>(plan_.Seed);
    }
}

}  // namespace corvenna
