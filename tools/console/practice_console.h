#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "link/memory/memory_session.h"
#include "link/station_window.h"
#include "practice/practice_host.h"
#include "practice/practice_pilot.h"
#include "practice/practice_traffic.h"
#include "tools/console/radio_printer.h"
#include "tools/console/station_timers.h"

namespace corvenna {

/// Who takes part in a practice. Names are bytes of the 8-bit code page.
struct PracticeParty {
    std::string Controller;  ///< empty: "{AirportCode}_Controller"
    std::string Person;      ///< the callsign of the person at the keyboard
    int Pilots = 4;
};

/// A practice session within this process: host, controller, practice pilots, and the person at the keyboard
/// as one more pilot, with the radio traffic on a printer. It has no clock and never waits: Step is called
/// with the time since the start. One thread.
class PracticeConsole final : private OperatorDesk {
  public:
    static constexpr std::chrono::milliseconds TypingInterval{2000};
    static constexpr std::size_t MostLinesWaiting = 100;  ///< more than that typed ahead is dropped

    /// station: with the fields of its airport filled. The controller is in the session and monitors when
    /// the constructor returns. Throws SessionError.
    PracticeConsole(Station station, const PracticeParty& party, RadioPrinter& printer);
    ~PracticeConsole() override;
    PracticeConsole(const PracticeConsole&) = delete;
    PracticeConsole& operator=(const PracticeConsole&) = delete;

    /// All that is to be done by this time. An error that is more than a spoilt tick: the controller leaves
    /// the session, then it is thrown.
    void Step(std::chrono::milliseconds now);

    /// What the person at the keyboard types, in UTF-8. It is said once the controller has welcomed him, and
    /// at most every TypingInterval, so that a script on standard input works like a person: a digit before
    /// the welcome would spoil it, and of two digits between two ticks only the later one counts.
    void Type(std::string_view line);

    /// Leaves the session and prints what was done in all. The second call does nothing.
    void Leave();

    /// Whether the station has been closed, by Leave or by what happened in the session.
    bool Over() const { return !window_.Loaded(); }

    std::chrono::milliseconds NextDue() const { return timers_.NextDue(); }

    const Station& TheStation() const { return station_; }
    std::size_t PilotsServed() const { return served_.size(); }
    std::size_t TextsSent() const { return textsSent_; }

  private:
    void Join(const PracticeParty& party);
    bool Admitted();
    void LetPersonIn();
    void RunTraffic();
    void SayTypedLine();
    std::vector<StationTimer> Timers();
    void NotePilotsUnderService();
    void PrintOpening();
    const PlayerRecord* RecordOf(std::string_view name) const;
    void OnTransmitted(std::string_view frequency, std::string_view text);
    void OnSaid(std::string_view name, std::string_view text);
    void ShowBox(BoxIcon icon, std::string_view text) override;
    PilotEvents PrintReplies();

    RadioPrinter& printer_;
    std::chrono::milliseconds now_{0};
    std::set<std::string, std::less<>> served_;
    std::size_t textsSent_ = 0;
    bool totalsPrinted_ = false;
    std::deque<std::string> typed_;
    std::chrono::milliseconds nextTyping_{0};

    MemoryNetwork network_;
    Station station_;
    SessionObjects objects_;
    StationWindow window_;
    StationTimers timers_;
    PracticeHost host_;
    PracticePilot person_;
    PracticeTraffic traffic_;
};

}  // namespace corvenna
