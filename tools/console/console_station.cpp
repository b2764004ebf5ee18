#include "tools/console/console_station.h"

#include <fmt/format.h>

#include <algorithm>

#include "link/run_tick.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr auto PumpInterval = 100ms;
constexpr auto TickInterval = 1000ms;
constexpr auto RefreshInterval = 30000ms;

}  // namespace

ConsoleStation::ConsoleStation(Station station, RadioPrinter& printer)
    : printer_(printer),
      station_(std::move(station)),
      window_(station_, objects_, *this,
              {.Repaint = {},
               .Closed = {},
               .Transmitted = [this](auto frequency, auto text) { PrintController(frequency, text); },
               .Heard = [this](auto name, auto text) { PrintPilot(name, text); }}) {
    printer_.SetFrequencyWidth(std::max({RadioPrinter::PartyLine.size(), station_.GroundFrequency.size(),
                                         station_.TowerFrequency.size(), station_.ApproachFrequency.size()}));
}

ConsoleStation::~ConsoleStation() { Close(); }

void ConsoleStation::Open() {
    window_.Load();
    window_.StartMonitoring();
    timers_.emplace(Timers(), now_);
}

void ConsoleStation::StartMonitoring() {
    window_.StartMonitoring();
    Note(window_.Console().Label1);
}

void ConsoleStation::StopMonitoring() {
    window_.StopMonitoring();
    Note(window_.Console().Label1);
}

void ConsoleStation::Close() { window_.Close(); }

std::vector<StationTimer> ConsoleStation::Timers() {
    return {
        {"the pump", PumpInterval, [this] { return window_.Console().ConnectionTimer; },
         [this] { window_.RunConnectionTimer(); }},
        {"the tick", TickInterval, [this] { return window_.Console().AtcTimer; },
         [this] {
             RunTick([this] { window_.RunAtcTimer(); }, [this](std::string_view words) { Note(words); });
             NotePilotsUnderService();
         }},
        {"the refresh of the player list", RefreshInterval,
         [this] { return window_.Console().RefreshPlayers; }, [this] { window_.RunRefreshPlayers(); }},
    };
}

void ConsoleStation::NotePilotsUnderService() {
    for (const PlayerRecord& pilot : station_.Players.Valid()) {
        if (pilot.InService == UnderService && !served_.contains(pilot.Name)) served_.insert(pilot.Name);
    }
}

// ---- What is shown

/// Empty for somebody without a record.
std::string_view ConsoleStation::FrequencyOf(std::string_view name) const {
    const auto players = station_.Players.Valid();
    const auto found =
        std::find_if(players.begin(), players.end(), [&](const auto& record) { return record.Name == name; });
    return found == players.end() ? std::string_view() : found->TunedFrequency;
}

void ConsoleStation::PrintController(std::string_view frequency, std::string_view text) {
    ++textsSent_;
    printer_.Controller(now_, frequency, text);
}

void ConsoleStation::PrintPilot(std::string_view name, std::string_view text) {
    printer_.Pilot(now_, FrequencyOf(name), name, text);
}

void ConsoleStation::PrintOpening() {
    Note(fmt::format("{} ({}), runway {}: monitoring traffic. Ctrl-C leaves the session.",
                     station_.AirportName, station_.AirportCode, station_.ActiveRunway));
}

void ConsoleStation::PrintTotals() {
    if (totalsPrinted_) return;
    totalsPrinted_ = true;
    Note(fmt::format("The session is left. Pilots served: {}, texts sent: {}.", served_.size(), textsSent_));
}

void ConsoleStation::ShowBox(BoxIcon /*icon*/, std::string_view text) { Note(text); }

}  // namespace corvenna
