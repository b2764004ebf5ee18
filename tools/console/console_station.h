#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "link/station_window.h"
#include "tools/console/radio_printer.h"
#include "tools/console/station_timers.h"

namespace corvenna {

/// A station in a terminal: its window with the three timers on a clock that is handed in, what it sends and
/// what pilots say on a printer, and what it has done in all. How it gets into its session is for its owner.
/// One thread.
class ConsoleStation final : public OperatorDesk {
  public:
    /// station: with the fields of its airport filled. The printer must outlive this.
    ConsoleStation(Station station, RadioPrinter& printer);
    ~ConsoleStation() override;
    ConsoleStation(const ConsoleStation&) = delete;
    ConsoleStation& operator=(const ConsoleStation&) = delete;

    Station& TheStation() { return station_; }
    const Station& TheStation() const { return station_; }
    SessionObjects& Objects() { return objects_; }
    const SessionObjects& Objects() const { return objects_; }

    /// The time from which on things are printed.
    void SetTime(std::chrono::milliseconds now) { now_ = now; }
    std::chrono::milliseconds Now() const { return now_; }

    /// The controller has been admitted: the station window opens and monitors.
    void Open();

    // What the operator does at the open window.
    void StartMonitoring();
    void StopMonitoring();

    /// Serves the timers that are due by the time set. Throws HandlerError.
    void RunTimers() { timers_->Run(now_); }

    std::chrono::milliseconds NextDue() const { return timers_->NextDue(); }

    /// Leaves the session; does nothing unless the station is open.
    void Close();

    bool IsOpen() const { return window_.Loaded(); }

    void Note(std::string_view text) { printer_.Note(now_, text); }
    void PrintOpening();
    void PrintTotals();  ///< what was done in all; the second call does nothing

    void ShowBox(BoxIcon icon, std::string_view text) override;

  private:
    std::vector<StationTimer> Timers();
    void NotePilotsUnderService();
    std::string_view FrequencyOf(std::string_view name) const;
    void PrintController(std::string_view frequency, std::string_view text);
    void PrintPilot(std::string_view name, std::string_view text);

    RadioPrinter& printer_;
    std::chrono::milliseconds now_{0};
    std::set<std::string, std::less<>> served_;
    std::size_t textsSent_ = 0;
    bool totalsPrinted_ = false;

    Station station_;
    SessionObjects objects_;
    StationWindow window_;
    std::optional<StationTimers> timers_;  ///< none before Open
};

}  // namespace corvenna
