#include "practice/unruliness.h"

#include <fmt/format.h>

#include "practice/menu_reader.h"

namespace corvenna {

namespace {

constexpr std::string_view Chatter[] = {"hello?",     "anybody there",   "9999",  "-1",
                                        "KSEA",       "1-VFR 2-IFR",     "  3 4", "0",
                                        "3.7 please", "what is the wind"};
constexpr double JumpDegrees = 1;

}  // namespace

void Unruliness::Step(PracticePilot& pilot, std::chrono::milliseconds now) {
    if (now >= jumpEnds_) pilot.ShowAt(std::nullopt);
    if (!pilot.InSession()) {
        due_ = now + Interval;
        return;
    }
    if (now < due_) return;
    due_ = now + Interval + std::chrono::milliseconds(chance_() % Interval.count());
    Commit(static_cast<Misdeed>(chance_() % Misdeeds), pilot, now);
}

void Unruliness::Commit(Misdeed misdeed, PracticePilot& pilot, std::chrono::milliseconds now) {
    switch (misdeed) {
        case Misdeed::WrongDigit:
            return pilot.Say(fmt::format("{}", chance_() % 10));
        case Misdeed::Nonsense:
            return pilot.Say(Chatter[chance_() % std::size(Chatter)]);
        case Misdeed::CloseServices:
            if (const auto reply = ReplyFor(pilot.StandingMenu(), "Close ATC Services", ""))
                pilot.Say(*reply);
            return;
        case Misdeed::TakeOffUncleared:
            return pilot.Imagine("Cleared for takeoff on runway ");
        case Misdeed::Silence:
            frozenUntil_ = now + SilenceTime;
            return;
        case Misdeed::Jump: {
            AircraftState elsewhere = pilot.Aircraft();
            elsewhere.Latitude += elsewhere.Latitude > 0 ? -JumpDegrees : JumpDegrees;
            elsewhere.AltitudeFeet += 10000;
            pilot.ShowAt(elsewhere);
            jumpEnds_ = now + JumpTime;
            return;
        }
        case Misdeed::Vanish:
        case Misdeed::Reconnect:
            returns_ = misdeed == Misdeed::Reconnect;
            return pilot.Leave();
    }
}

}  // namespace corvenna
