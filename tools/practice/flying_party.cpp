#include "tools/practice/flying_party.h"

#include <fmt/format.h>

#include <algorithm>

#include "practice/practice_picture.h"
#include "station/code_page.h"
#include "tools/platform/platform.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::chrono::milliseconds StepInterval{100};

std::string Plural(int count, std::string_view what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

}  // namespace

FlyingParty::FlyingParty(Station station, const SessionAccess& access, const TrafficPlan& plan,
                         bool keepsTracks, Print print)
    : station_(std::move(station)),
      chart_(std::make_shared<AirportChart>(station_)),
      reach_(ReachHost(access)),
      plan_(plan),
      print_(std::move(print)),
      log_(chart_->ElevationFeet(), keepsTracks) {
    AllowManyOpenFiles();  // everybody has connections to everybody, all of them in this process
    log_.Remarkable = [this](auto name, auto what) { PrintLine(name, what); };
    const auto seeker = MakeParticipant(reach_);
    traffic_.emplace(
        chart_, [this] { return MakeParticipant(reach_); }, FindSession(*seeker).SessionName, plan, Events());
}

TrafficEvents FlyingParty::Events() {
    TrafficEvents events;
    events.Talk.Heard = [this](auto name, auto text) { log_.Heard(name, text, now_); };
    events.Talk.Said = [this](auto name, auto text) { log_.Said(name, text, now_); };
    events.Talk.Abandoned = [this](auto name) { OnAbandoned(name); };
    events.Came = [this](const PracticePilot& pilot) { log_.Came(pilot, now_); };
    events.Left = [this](const PracticePilot& pilot) { log_.Left(pilot.Name(), pilot.Completed()); };
    events.Failed = [this](const PracticePilot& pilot, const std::string& why) { OnFailed(pilot, why); };
    return events;
}

void FlyingParty::PrintLine(std::string_view name, std::string_view what) const {
    if (print_) print_(now_, fmt::format("{} {}", name, what));
}

/// While nobody has come in or is about to, a failure is everybody's.
void FlyingParty::OnFailed(const PracticePilot& pilot, const std::string& why) {
    const std::string words = CodePageToUtf8(why);
    if (log_.Totals().Pilots == 0 && !traffic_->SomebodyAwaitsAdmission()) {
        throw SessionError(fmt::format("{}: {}", pilot.Name(), words));
    }
    log_.Left(pilot.Name(), false);
    ++failures_;
    lastFailure_ = fmt::format("{}: {}", pilot.Name(), words);
    PrintLine(pilot.Name(), words);
}

void FlyingParty::OnAbandoned(std::string_view name) {
    controllerLeft_ = now_;
    PrintLine(name, "goes on alone: the controller has left the session");
}

void FlyingParty::Step(std::chrono::milliseconds now) {
    now_ = now;
    traffic_->Step(now);
    traffic_->ForEach([&](const PracticePilot& pilot) { log_.Flies(pilot, now); });
}

void FlyingParty::Leave() { traffic_->Leave(); }

std::string FlyingParty::Summary() const {
    const PracticeTotals totals = log_.Totals();
    const auto troubles = log_.Troubles(now_);
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(now_).count();
    const auto flying = std::count_if(log_.Pilots().begin(), log_.Pilots().end(),
                                      [](const auto& entry) { return entry.second.Present; });
    std::string text = fmt::format(
        "{} at {} ({}): {} came, {} served, {} completed, {} still flying\n"
        "clearances {}, vectors {}, handoffs {}, landings {}, go-arounds {}, stuck {}\n",
        Plural(static_cast<int>(minutes), "minute"), CodePageToUtf8(chart_->Name()), chart_->Code(),
        Plural(totals.Pilots, "pilot"), totals.Served, totals.Completed, flying, totals.Clearances,
        totals.Vectors, totals.Handoffs, totals.Landings, totals.GoArounds, troubles.size());
    for (const PilotTrouble& trouble : troubles)
        text += fmt::format("  {}: {}\n", trouble.Name, trouble.What);
    for (const PilotTrouble& trouble : log_.UnrulyTroubles(now_))
        text += fmt::format("  {}, who is unruly: {}\n", trouble.Name, trouble.What);
    if (chart_->Taxiways().Empty())
        text += "the airport has no taxi network: pilots taxi in straight lines\n";
    if (controllerLeft_) {
        text += fmt::format("the controller left after {}\n",
                            Plural(static_cast<int>(controllerLeft_->count() / 60000), "minute"));
    }
    if (failures_ > 0)
        text += fmt::format("failed to join {}, the last one {}\n", Plural(failures_, "time"), lastFailure_);
    return text;
}

void FlyingParty::DrawPicture(const std::filesystem::path& file) const {
    ReplaceFile(BytesOf(file), {DrawPractice(station_, log_)});
}

void FlyUntil(FlyingParty& party, Terminal& terminal, std::optional<std::chrono::milliseconds> length,
              const std::function<bool(std::chrono::milliseconds now)>& goOn) {
    const auto start = terminal.Now();
    while (true) {
        auto now = terminal.Now() - start;
        if (length) now = std::min(now, *length);
        party.Step(now);
        if (!goOn(now) || (length && now >= *length)) return;
        const auto wait = length ? std::min(StepInterval, *length - now) : StepInterval;
        if (terminal.Wait(wait).StopAsked) return;
    }
}

}  // namespace corvenna
