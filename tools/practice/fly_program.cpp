#include "tools/practice/fly_program.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "practice/practice_folder.h"
#include "station/code_page.h"
#include "tools/practice/welcome_listener.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr auto ListenInterval = 100ms;
constexpr auto MoveTime = 3s;  // between two airports: meanwhile everybody notices that the pilots left

/// Several programs that fly in one session have pilots of different numbers, and so listeners of different
/// names.
std::string ListenerName(const TrafficPlan& plan) {
    return plan.Seed == 0 ? "Practice_Listener" : fmt::format("Practice_Listener_{}", plan.Seed);
}

/// Pilots who fly for so long as the program runs, at one airport after the other.
class Flights {
  public:
    Flights(const FlyOptions& options, Terminal& terminal, std::ostream& out)
        : options_(options), terminal_(terminal), out_(out), began_(terminal.Now()) {}

    void AtOneAirport(std::string_view codeOrLabel) {
        FlyAt(codeOrLabel, options_.Length, [](std::chrono::milliseconds) { return true; });
    }

    void WhereTheControllerIs() {
        WelcomeListener listener(options_.Access, ListenerName(options_.Traffic));
        Print(Now(), "waiting for a controller's welcome; the pilots come to his airport");
        std::string airport;
        auto notBefore = Now();
        while (HearsOfAnother(listener, airport, notBefore)) {
            airport = listener.Airport();
            const auto label = LabelOfWelcome(options_.Access.App, airport);
            if (!label) {
                Print(Now(),
                      fmt::format(
                          "there is no {} in the airport database of {}; waiting for another controller",
                          CodePageToUtf8(airport), options_.Access.App.string()));
                continue;
            }
            Print(Now(),
                  fmt::format("the controller is at {}, and so are the pilots", CodePageToUtf8(*label)));
            FlyAt(*label, TimeLeft(), [&](std::chrono::milliseconds now) {
                listener.Step(now);
                return listener.Airport() == airport;
            });
            if (listener.Airport() == airport) break;
            notBefore = Now() + MoveTime;
        }
        listener.Leave();
    }

  private:
    std::chrono::milliseconds Now() const { return terminal_.Now() - began_; }

    std::optional<std::chrono::milliseconds> TimeLeft() const {
        if (!options_.Length) return std::nullopt;
        return std::max(*options_.Length - Now(), 0ms);
    }

    bool TimeIsOver() const { return options_.Length && Now() >= *options_.Length; }

    bool GoesOn(std::chrono::milliseconds now) const {
        return !options_.Meanwhile || options_.Meanwhile(now);
    }

    void Print(std::chrono::milliseconds time, std::string_view line) {
        if (!options_.Tells) return;
        out_ << ClockText(time) << "  " << line << std::endl;
    }

    /// Waits for the welcome of another airport, and in any case until a time. False when the program is to
    /// end.
    bool HearsOfAnother(WelcomeListener& listener, const std::string& airport,
                        std::chrono::milliseconds notBefore) {
        while (listener.Airport() == airport || Now() < notBefore) {
            listener.Step(Now());
            if (listener.Gone()) {
                throw SessionError(
                    fmt::format("the host of the session at {} refuses pilots", options_.Access.Host));
            }
            if (TimeIsOver() && airport.empty()) {
                throw SessionError(
                    fmt::format("no controller in the session at {} has said welcome; name his airport "
                                "with --airport to fly without one",
                                options_.Access.Host));
            }
            if (TimeIsOver()) return false;
            if (GoesOn(Now()) && !terminal_.Wait(ListenInterval).StopAsked) continue;
            if (airport.empty()) Print(Now(), "no controller has come");
            return false;
        }
        return true;
    }

    void FlyAt(std::string_view codeOrLabel, std::optional<std::chrono::milliseconds> length,
               const std::function<bool(std::chrono::milliseconds now)>& goOn) {
        Station station;
        SelectByName(station, options_.Access.App, codeOrLabel);
        const auto came = Now();
        FlyingParty party(std::move(station), options_.Access, options_.Traffic, !options_.Picture.empty(),
                          [&](auto time, const std::string& line) { Print(came + time, line); });
        FlyUntil(party, terminal_, length,
                 [&](std::chrono::milliseconds now) { return GoesOn(came + now) && goOn(now); });
        const std::string summary = party.Summary();
        party.Leave();
        if (!options_.Picture.empty()) party.DrawPicture(options_.Picture);
        out_ << summary << std::flush;
    }

    const FlyOptions& options_;
    Terminal& terminal_;
    std::ostream& out_;
    const std::chrono::milliseconds began_;
};

}  // namespace

std::string ClockText(std::chrono::milliseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return fmt::format("{:02}:{:02}", seconds / 60, seconds % 60);
}

void RunFly(const FlyOptions& options, Terminal& terminal, std::ostream& out) {
    Flights flights(options, terminal, out);
    if (options.Access.Airport.empty()) {
        flights.WhereTheControllerIs();
    } else {
        flights.AtOneAirport(Utf8ToCodePage(options.Access.Airport));
    }
}

}  // namespace corvenna
