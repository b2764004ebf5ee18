#include "tools/practice/sit_program.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>

#include "practice/hand_flown.h"
#include "practice/menu_reader.h"
#include "practice/practice_folder.h"
#include "practice/simulator_peer.h"
#include "station/code_page.h"
#include "station/text.h"
#include "tools/console/session_name.h"
#include "tools/practice/fly_program.h"
#include "tools/practice/welcome_listener.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr auto StepInterval = 100ms;
constexpr auto Patience = 15s;     // how long a script waits for a text before it goes on
constexpr auto WelcomeTime = 45s;  // how long it waits for a controller to say welcome
constexpr auto ThinkingTime = 1s;  // from hearing a text to a script's answer
constexpr std::string_view WaitCommand = "wait ";

constexpr std::string_view Help =
    "Answer the welcome with the airport's code and the digit (KSEA,1), every later menu with its digit; R "
    "asks\n"
    "for a repeat. What is no command is said in the chat.\n";
constexpr std::string_view MoreCommands =
    "wait SECONDS        for scripts\n"
    "help                this text\n"
    "quit                leave the session\n";

class Seat {
  public:
    Seat(const SitOptions& options, Terminal& terminal, std::ostream& out)
        : options_(options),
          terminal_(terminal),
          out_(out),
          reach_(ReachHost(options.Access)),
          name_(NameInSession(options.Name, "your callsign")),
          peer_(MakeParticipant(reach_), {.Name = name_, .Aircraft = "Cessna Skylane 182S", .Where = {}},
                Events()) {
        if (!options_.Access.Airport.empty()) TakePlaceAt(Utf8ToCodePage(options_.Access.Airport));
        peer_.Join(FindSession(peer_.Dp()));
        if (!aircraft_)
            Print("Waiting for a controller's welcome, which brings you to a gate of his airport.");
    }

    void Run() {
        auto before = terminal_.Now();
        while (peer_.InStage() != SimulatorPeer::Stage::Gone && !quit_) {
            now_ = terminal_.Now();
            if (aircraft_) {
                aircraft_->Move(now_ - before);
                peer_.MoveTo(aircraft_->Aircraft());
            }
            before = now_;
            peer_.Step(now_);
            while (MayGoOn()) DoNextLine();
            if (inputEnded_ && lines_.empty() && now_ - lastLine_ >= Patience) break;
            const TerminalInput input = terminal_.Wait(StepInterval);
            for (const std::string& line : input.Lines) {
                if (!Trim(line).empty()) lines_.push_back(line);
            }
            if (input.EndOfInput) {
                inputEnded_ = true;
                lastLine_ = now_;
            }
            if (input.StopAsked) break;
        }
        peer_.Leave();
    }

  private:
    SimulatorEvents Events() {
        SimulatorEvents events;
        events.Heard = [this](std::string_view from, std::string_view text) { OnText(from, text); };
        events.Noted = [this](std::string_view line) { Print(line); };
        return events;
    }

    void Print(std::string_view line) {
        out_ << ClockText(now_) << "  " << CodePageToUtf8(line) << std::endl;
    }

    void OnText(std::string_view from, std::string_view text) {
        Print(fmt::format("{}> {}", from, text));
        if (IsAddressedTo(text, name_)) {
            standing_ = text;
            heardAt_ = now_;
        }
        if (options_.Access.Airport.empty() && controller_.Hears(peer_.Dp(), from, text)) GoToController();
    }

    void GoToController() {
        const auto label = LabelOfWelcome(options_.Access.App, controller_.Airport());
        if (label) return TakePlaceAt(*label);
        Print(fmt::format("There is no {} in the airport database: you have no aircraft there.",
                          controller_.Airport()));
    }

    /// The spot that was asked for is one of the first airport.
    void TakePlaceAt(const std::string& codeOrLabel) {
        Station station;
        SelectByName(station, options_.Access.App, codeOrLabel);
        const std::string spot = aircraft_ ? "" : Utf8ToCodePage(options_.Spot);
        aircraft_.emplace(std::make_shared<AirportChart>(station), spot);
        peer_.MoveTo(aircraft_->Aircraft());
        Print(fmt::format("You are {} at {} ({}). Type help for what you can do.", name_, station.AirportName,
                          station.AirportCode));
    }

    // ---- What is typed

    /// A person types when he likes; a script has to be held back until there is something to answer.
    bool MayGoOn() const {
        if (lines_.empty() || quit_ || now_ < waitUntil_) return false;
        if (peer_.InStage() != SimulatorPeer::Stage::Flying) return false;
        if (!options_.Scripted) return true;
        if (!aircraft_) return now_ - lastLine_ >= WelcomeTime;
        if (IsOwnCommand(lines_.front())) return true;
        if (now_ - std::max(lastLine_, heardAt_) >= Patience) return true;
        return now_ - heardAt_ >= ThinkingTime && IsOffered(Trim(lines_.front()));
    }

    static bool IsOwnCommand(std::string_view line) {
        const std::string word = LowerCase(Trim(line));
        return HandFlown::IsCommand(word) || word == "help" || word == "quit" ||
               word.starts_with(WaitCommand);
    }

    /// Whether the last text has an option of the digit that a line ends with. What is no digit may be said
    /// at any time.
    bool IsOffered(std::string_view line) const {
        if (line.empty() || line.back() < '0' || line.back() > '9') return true;
        const auto menu = ReadMenu(standing_);
        return std::any_of(menu.begin(), menu.end(),
                           [&](const auto& option) { return option.Digit == line.back(); });
    }

    void DoNextLine() {
        const std::string line = Utf8ToCodePage(Trim(lines_.front()));
        lines_.pop_front();
        lastLine_ = now_;
        const std::string word = LowerCase(line);
        try {
            if (word == "quit") {
                quit_ = true;
            } else if (word == "help") {
                out_ << Help << HandFlown::Commands << MoreCommands << std::flush;
            } else if (word.starts_with(WaitCommand)) {
                waitUntil_ = now_ + std::chrono::seconds(ReadSeconds(line.substr(WaitCommand.size())));
            } else if (HandFlown::IsCommand(line)) {
                if (!aircraft_)
                    throw std::invalid_argument("the airport is not known before a controller's welcome");
                Print(aircraft_->Do(line));
            } else {
                Print(fmt::format("{}> {}", name_, line));
                peer_.Say(line);
                standing_.clear();
            }
        } catch (const std::invalid_argument& error) {
            Print(error.what());
        }
    }

    static int ReadSeconds(const std::string& text) {
        std::size_t end = 0;
        int seconds = -1;
        try {
            seconds = std::stoi(text, &end);
        } catch (const std::logic_error&) {
            end = 0;
        }
        if (end != text.size() || seconds < 0) {
            throw std::invalid_argument(fmt::format("\"{}\" is no number of seconds", text));
        }
        return seconds;
    }

    const SitOptions& options_;
    Terminal& terminal_;
    std::ostream& out_;
    DirectPlayOptions reach_;
    std::string name_;
    std::chrono::milliseconds now_{0};
    HeardController controller_;
    std::optional<HandFlown> aircraft_;  ///< none before the airport is known
    std::string standing_;               ///< the last text meant for him, until he has answered it
    std::chrono::milliseconds heardAt_{0};
    std::deque<std::string> lines_;
    std::chrono::milliseconds lastLine_{0};
    std::chrono::milliseconds waitUntil_{0};
    bool inputEnded_ = false;
    bool quit_ = false;
    SimulatorPeer peer_;
};

}  // namespace

void RunSit(const SitOptions& options, Terminal& terminal, std::ostream& out) {
    Seat(options, terminal, out).Run();
}

}  // namespace corvenna
