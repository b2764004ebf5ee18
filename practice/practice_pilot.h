#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "link/direct_play_message.h"
#include "link/session.h"
#include "practice/flight_conduct.h"
#include "practice/menu_reader.h"

namespace corvenna {

/// Picks the option of this label, without number and hyphen, as soon as he is offered it.
struct Choose {
    std::string Label;
};

/// Asks for the text that stands to be said again.
struct AskAgain {};

/// Flies as planned, from where he is, until the flight is over: obeys what he is told and picks what the
/// flight wants of the menus.
struct Fly {
    std::shared_ptr<const AirportChart> Chart;
    FlightPlan Plan;
};

using PilotStep = std::variant<Choose, AskAgain, Fly>;

/// What a practice pilot is going to do, step by step.
struct PilotScript {
    std::string Name;      ///< his callsign
    std::string Aircraft;  ///< as his simulator tells it
    AircraftState Start;
    std::chrono::milliseconds ArrivesAt{0};
    std::vector<PilotStep> Steps;
    bool Unruly = false;  ///< whether he behaves badly on purpose
    bool Stays = false;   ///< whether he stays when the script is done; otherwise he leaves the session
};

/// Heard and said by one pilot; any may be missing.
struct PilotEvents {
    std::function<void(std::string_view name, std::string_view text)> Heard;
    std::function<void(std::string_view name, std::string_view text)> Said;
    std::function<void(std::string_view name)> Abandoned = {};  ///< who served him has left the session
};

/// A participant of a session who behaves like a simulator with a pilot in it: asks to be admitted,
/// introduces himself, tells his position, and goes through his script. He never waits: Step is called with
/// the time as often as one likes. Whatever is not in his script he acknowledges. All on the station's
/// thread.
class PracticePilot {
  public:
    /// The time from hearing a text to typing the answer.
    static constexpr std::chrono::milliseconds ThinkingTime{2000};
    /// How long he waits to be offered an option, or to be answered, before he goes on without.
    static constexpr std::chrono::milliseconds Patience{20000};
    static constexpr std::chrono::milliseconds PositionInterval{1000};
    /// In flight, and expecting to hear something: how long he listens before he asks for a repeat. After
    /// each one that has brought nothing new he listens twice as long, up to LongestSilence.
    static constexpr std::chrono::milliseconds Silence{30000};
    static constexpr std::chrono::milliseconds LongestSilence{120000};

    /// So long he tries to close a service that does not serve him; then he leaves, and joins anew.
    static constexpr std::chrono::milliseconds ClosingTime{180000};
    static constexpr std::chrono::milliseconds ClosingInterval{20000};

    /// So many requests in a row that bring no answer at all, or so long without a greeting while others are
    /// greeted: the controller has no ear for him, and he leaves and joins anew.
    static constexpr int MostUnheard = 3;
    static constexpr std::chrono::milliseconds LongestUngreeted{120000};

    /// Whom he has not heard of for so long is gone.
    static constexpr std::chrono::milliseconds SightLasts{5000};

    /// What he tells the others when nobody serves him any more.
    static constexpr std::string_view GoingOnAlone = "The controller has left, I go on by myself";

    /// The session is not open yet: he joins the first one that it offers under this name.
    PracticePilot(std::unique_ptr<Session> session, std::string sessionName, std::string airportCode,
                  PilotScript script, PilotEvents events = {});

    /// All that is to be done by this time. Throws what the session layer throws, and SessionError when
    /// somebody of his name is in the session already.
    void Step(std::chrono::milliseconds now);

    /// Types a text, besides his script. Nothing happens while he is not in the session.
    void Say(std::string_view text);

    /// Takes a text of nobody's for one of the controller's. Only who flies obeys it.
    void Imagine(std::string_view text);

    /// Tells the others this place instead of his own, until there is none any more.
    void ShowAt(std::optional<AircraftState> place) { shownAt_ = place; }

    void Leave();

    const std::string& Name() const { return script_.Name; }
    bool IsUnruly() const { return script_.Unruly; }
    bool AwaitsAdmission() const { return stage_ == Stage::Joining; }
    bool InSession() const { return stage_ == Stage::Flying; }
    bool Gone() const { return stage_ == Stage::Gone; }

    /// Whether he has done all of his script.
    bool Completed() const { return nextStep_ == script_.Steps.size(); }

    const AircraftState& Aircraft() const { return aircraft_; }
    const std::optional<Flight>& TheFlight() const { return flight_; }

    /// The last text that was addressed to him; empty before the first.
    const std::string& StandingText() const { return standingText_; }
    const std::vector<MenuOption>& StandingMenu() const { return standingMenu_; }

  private:
    enum class Stage { Waiting, Joining, Flying, Gone };

    void Join();
    void EnterRefuseParamsGroup();
    void ReceiveAll(std::chrono::milliseconds now);
    void Handle(std::int32_t sender, DirectPlayMessage& message, std::chrono::milliseconds now);
    void OnAdmission(std::int32_t admitted, std::chrono::milliseconds now);
    void OnText(std::int32_t sender, std::string text, std::chrono::milliseconds now);
    void HoldText(std::string text);
    void Overhear(std::string_view text);
    void Sight(std::int32_t id, const Sighting& sighting, std::chrono::milliseconds now);
    void ForgetGone(std::chrono::milliseconds now);
    void NoticeAbsence();
    void TellPosition(std::chrono::milliseconds now);
    void RunScript(std::chrono::milliseconds now);

    bool Acknowledge(std::chrono::milliseconds now);
    bool Done(const Choose& step, std::chrono::milliseconds now);
    bool Done(const AskAgain& step, std::chrono::milliseconds now);
    bool Done(const Fly& step, std::chrono::milliseconds now);
    void AnswerInFlight(std::chrono::milliseconds now);
    void AskForRepeat(std::chrono::milliseconds now);
    void StartOver(std::chrono::milliseconds now);
    void RequestAdmission();
    void JoinAnew();
    bool IsForgotten(std::chrono::milliseconds now) const;
    std::optional<std::string> RepeatOfOpening() const;
    bool AnswerTaken(const std::optional<std::string>& reply, std::chrono::milliseconds now);

    std::unique_ptr<Session> session_;
    std::string sessionName_;
    std::string airportCode_;
    PilotScript script_;
    PilotEvents events_;

    Stage stage_ = Stage::Waiting;
    std::int32_t id_ = 0;
    AircraftState aircraft_;
    std::optional<Flight> flight_;  ///< while the step in hand is to fly
    std::optional<AircraftState> shownAt_;
    std::vector<Sighting> others_;
    struct Seen {
        std::int32_t Id = 0;
        std::chrono::milliseconds At{0};
    };
    std::vector<Seen> seen_;  ///< whose the places in others_ are, and since when
    std::string standingText_;
    std::vector<MenuOption> standingMenu_;        ///< what that text offers
    std::int32_t controllerId_ = 0;               ///< who sent it; 0 when nobody serves him
    bool answered_ = false;                       ///< whether he has typed something since
    bool wantsAnswer_ = false;                    ///< whether that should bring him another text
    std::chrono::milliseconds silence_{Silence};  ///< until his next request for a repeat
    int unheard_ = 0;                             ///< requests since he last heard anything
    bool controllerHeard_ = false;                ///< whether he has heard a controller at all
    std::chrono::milliseconds ungreetedSince_{0};
    std::size_t nextStep_ = 0;
    bool stepAnswered_ = false;  ///< whether the step in hand has typed its answer
    std::chrono::milliseconds heardAt_{0};
    std::chrono::milliseconds saidAt_{0};
    std::chrono::milliseconds stepBegan_{0};
    std::chrono::milliseconds lastRun_{0};
    std::chrono::milliseconds positionDue_{0};
};

}  // namespace corvenna
