#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <string_view>

#include "link/memory/memory_session.h"
#include "practice/practice_host.h"
#include "practice/practice_pilot.h"
#include "practice/practice_traffic.h"
#include "tools/console/console_program.h"
#include "tools/console/console_station.h"

namespace corvenna {

/// Who takes part in a practice. Names are bytes of the 8-bit code page.
struct PracticeParty {
    std::string Controller;  ///< empty: "{AirportCode}_Controller"
    std::string Person;      ///< the callsign of the person at the keyboard
    int Pilots = 4;
};

/// A practice session within this process: host, controller, practice pilots, and the person at the keyboard
/// as one more pilot, with the radio traffic on a printer. One thread.
class PracticeConsole final : public ConsoleProgram {
  public:
    static constexpr std::chrono::milliseconds TypingInterval{2000};
    static constexpr std::size_t MostLinesWaiting = 100;  ///< more than that typed ahead is dropped

    /// station: with the fields of its airport filled. The controller is in the session and monitors when
    /// the constructor returns. Throws SessionError.
    PracticeConsole(Station station, const PracticeParty& party, RadioPrinter& printer);
    PracticeConsole(const PracticeConsole&) = delete;
    PracticeConsole& operator=(const PracticeConsole&) = delete;

    void Step(std::chrono::milliseconds now) override;

    /// What the person at the keyboard types is said once the controller has welcomed him, and at most every
    /// TypingInterval, so that a script on standard input works like a person: a digit before the welcome
    /// would spoil it, and of two digits between two ticks only the later one counts.
    void Type(std::string_view line) override;

    bool EndsWithInput() const override { return true; }
    void Leave() override;
    bool Over() const override { return !station_.IsOpen(); }
    std::chrono::milliseconds NextDue() const override { return station_.NextDue(); }

    const Station& TheStation() const { return station_.TheStation(); }
    std::size_t PilotsServed() const { return station_.PilotsServed(); }
    std::size_t TextsSent() const { return station_.TextsSent(); }

  private:
    void Join(const PracticeParty& party);
    bool Admitted();
    void LetPersonIn();
    void RunTraffic();
    void SayTypedLine();
    void PrintOpening();
    PilotEvents PrintReplies();

    std::chrono::milliseconds now_{0};
    std::deque<std::string> typed_;
    std::chrono::milliseconds nextTyping_{0};

    MemoryNetwork network_;
    ConsoleStation station_;
    PracticeHost host_;
    PracticePilot person_;
    PracticeTraffic traffic_;
};

}  // namespace corvenna
