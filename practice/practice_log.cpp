#include "practice/practice_log.h"

#include <fmt/format.h>

#include <algorithm>

#include "practice/flight_phrases.h"
#include "practice/menu_reader.h"
#include "station/code_page.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr double AirborneFeet = 30;   // above the field
constexpr double MovedMiles = 0.03;   // some 200 ft
constexpr auto TrackInterval = 5s;    // between two spots of a track
constexpr auto GroundInterval = 15s;  // likewise, on the ground

struct ServiceRow {
    std::string_view Words;
    ServiceHeard On;
};
constexpr ServiceRow Services[] = {
    {"options for the Ground frequency", ServiceHeard::Ground},
    {"options for the Tower frequency", ServiceHeard::Tower},
    {"options for the Departure frequency", ServiceHeard::Departure},
    {"options for the Approach frequency", ServiceHeard::Approach},
    {"options for the ARTCC frequency", ServiceHeard::Artcc},
    {"options for the Advisory frequency", ServiceHeard::Advisory},
    {"Choose one of the following options:", ServiceHeard::None},
    {"Want to use our ATC services", ServiceHeard::None},
};
constexpr std::string_view UnderServiceWords = "Choose one of the following options";

bool IsClearance(Order order) {
    switch (order) {
        case Order::TaxiToRunway:
        case Order::TaxiToSpot:
        case Order::TakeOff:
        case Order::LeftDownwind:
        case Order::RightDownwind:
        case Order::Base:
        case Order::StraightIn:
        case Order::Land:
        case Order::FlyApproach:
            return true;
        default:
            return false;
    }
}

}  // namespace

ServiceHeard ReadService(std::string_view text, ServiceHeard before) {
    for (const ServiceRow& row : Services) {
        if (text.find(row.Words) != std::string_view::npos) return row.On;
    }
    return before;
}

PilotLog* PracticeLog::Find(std::string_view name) {
    const auto found = pilots_.find(name);
    return found == pilots_.end() ? nullptr : &found->second;
}

void PracticeLog::Remark(std::string_view name, std::string_view what) const {
    if (Remarkable) Remarkable(name, what);
}

void PracticeLog::Came(const PracticePilot& pilot, std::chrono::milliseconds now) {
    PilotLog log;
    log.Name = pilot.Name();
    log.Unruly = pilot.IsUnruly();
    log.Where = pilot.Aircraft();
    log.StandsAt = log.Where.Where();
    log.CameAt = log.MovedAt = now;
    log.Airborne = log.Where.AltitudeFeet > fieldFeet_ + AirborneFeet;
    ++totals_.Pilots;
    Remark(log.Name, log.Airborne ? "arrives by air" : "is at the ramp");
    pilots_.insert_or_assign(log.Name, std::move(log));
}

void PracticeLog::Left(std::string_view name, bool completed) {
    PilotLog* const log = Find(name);
    if (log == nullptr) return;
    if (completed) ++totals_.Completed;
    Remark(name, completed ? "has completed the flight" : "has left in mid-flight");
    log->Present = false;
    if (!keepsTracks_) pilots_.erase(log->Name);
}

void PracticeLog::Heard(std::string_view name, std::string_view text, std::chrono::milliseconds now) {
    PilotLog* const log = Find(name);
    if (log == nullptr || !IsAddressedTo(text, name)) return;
    log->Unanswered.reset();
    log->LastText = text;
    if (!log->Served && text.find(UnderServiceWords) != std::string_view::npos) {
        log->Served = true;
        ++totals_.Served;
    }
    const ServiceHeard on = ReadService(text, log->On);
    if (on != log->On && on != ServiceHeard::None && log->On != ServiceHeard::None) ++totals_.Handoffs;
    log->On = on;
    CountInstructions(*log, text);
    if (keepsTracks_) log->Texts.push_back({now, log->Where, std::string(text)});
}

/// A text that is said again counts again.
void PracticeLog::CountInstructions(const PilotLog& log, std::string_view text) {
    for (const Instruction& told : ReadInstructions(text)) {
        if (IsClearance(told.What)) ++totals_.Clearances;
        if (told.What == Order::TurnLeft || told.What == Order::TurnRight) ++totals_.Vectors;
        if (told.What == Order::GoAround) {
            ++totals_.GoArounds;
            Remark(log.Name, "goes around");
        }
    }
}

void PracticeLog::Said(std::string_view name, std::string_view /*text*/, std::chrono::milliseconds now) {
    PilotLog* const log = Find(name);
    if (log != nullptr && !log->Unanswered) log->Unanswered = now;
}

void PracticeLog::Flies(const PracticePilot& pilot, std::chrono::milliseconds now) {
    PilotLog* const log = Find(pilot.Name());
    if (log == nullptr) return;
    log->Where = pilot.Aircraft();
    log->Asks = pilot.TheFlight() && pilot.TheFlight()->IsExpecting();
    if (!log->Asks) log->Unanswered.reset();  // an acknowledgement may go without an answer
    NoteMovement(*log, now);
    if (keepsTracks_) KeepTrack(*log, now);
}

void PracticeLog::NoteMovement(PilotLog& log, std::chrono::milliseconds now) {
    const bool airborne = log.Where.AltitudeFeet > fieldFeet_ + AirborneFeet;
    if (airborne != log.Airborne) {
        log.Airborne = airborne;
        log.MovedAt = runwayUsedAt_ = now;
        log.StandsAt = log.Where.Where();
        if (!airborne) ++totals_.Landings;
        Remark(log.Name, airborne ? "takes off" : "lands");
    } else if (!airborne && MilesBetween(log.StandsAt, log.Where.Where()) > MovedMiles) {
        log.MovedAt = now;
        log.StandsAt = log.Where.Where();
    }
}

void PracticeLog::KeepTrack(PilotLog& log, std::chrono::milliseconds now) {
    if (spots_ == MostSpots) return;
    const auto interval = log.Airborne ? TrackInterval : GroundInterval;
    if (!log.Track.empty() && now - log.Track.back().Time < interval && log.Track.back().On == log.On) return;
    log.Track.push_back({now, log.Where, log.On});
    ++spots_;
}

// ---- Who is stuck

/// Empty when nothing is.
std::string PracticeLog::WhatIsWrong(const PilotLog& log, std::chrono::milliseconds now) const {
    const auto minutes = [&](std::chrono::milliseconds since) {
        return std::chrono::duration_cast<std::chrono::minutes>(now - since).count();
    };
    const auto still = now - log.MovedAt;
    const auto nobodyMoves = now - std::max(log.MovedAt, runwayUsedAt_);
    if (log.Unanswered && log.Asks && now - *log.Unanswered > LongestSilence) {
        return fmt::format("the conversation has stalled, no answer for {} minutes",
                           minutes(*log.Unanswered));
    }
    if (!log.Airborne && (nobodyMoves > LongestStand || still > LongestTurn)) {
        return fmt::format("stuck on the ground for {} minutes", minutes(log.MovedAt));
    }
    if (log.Airborne && still > LongestFlight) {
        return fmt::format("stuck in the air for {} minutes", minutes(log.MovedAt));
    }
    if (log.LastText.empty() && now - log.CameAt > LongestSilence) return "has never been welcomed";
    return "";
}

std::vector<PilotTrouble> PracticeLog::TroublesOf(bool unruly, std::chrono::milliseconds now) const {
    std::vector<PilotTrouble> troubles;
    for (const auto& [name, log] : pilots_) {
        if (!log.Present || log.Unruly != unruly) continue;
        std::string what = WhatIsWrong(log, now);
        if (what.empty()) continue;
        if (!log.LastText.empty()) what += fmt::format("; last heard: {}", CodePageToUtf8(log.LastText));
        troubles.push_back({name, std::move(what)});
    }
    return troubles;
}

std::vector<PilotTrouble> PracticeLog::Troubles(std::chrono::milliseconds now) const {
    return TroublesOf(false, now);
}

std::vector<PilotTrouble> PracticeLog::UnrulyTroubles(std::chrono::milliseconds now) const {
    return TroublesOf(true, now);
}

}  // namespace corvenna
