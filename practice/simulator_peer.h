#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "link/session.h"
#include "practice/motion.h"

namespace corvenna {

/// Who sits in a simulator. Names are bytes of the 8-bit code page.
struct SimulatorPilot {
    std::string Name;
    std::string Aircraft = "Practice aircraft";
    bool Observer = false;
    AircraftState Where;
};

/// What a simulator tells the person in front of it. Any may be missing.
struct SimulatorEvents {
    std::function<void(std::string_view from, std::string_view text)> Heard;
    std::function<void(std::string_view line)> Noted;   ///< who comes, who goes, who is refused
    std::function<bool(std::string_view name)> Admits;  ///< asked by a host for each newcomer; missing: all
};

/// A simulator of a multiplayer session, without a world around it: it speaks all that a simulator says
/// there, as the session's host or as one who joins. It never waits: Step is called with the time as often
/// as one likes. Only Host and Join wait for the session layer. Station's thread.
class SimulatorPeer {
  public:
    /// The time from one position message to the next. Every fourth is of the long form.
    static constexpr std::chrono::milliseconds PositionInterval{250};

    /// How long it waits for admission before it asks again.
    static constexpr std::chrono::seconds RequestInterval{30};

    enum class Stage { Outside, Joining, Flying, Gone };

    SimulatorPeer(std::unique_ptr<Session> session, SimulatorPilot pilot, SimulatorEvents events = {});

    /// Opens a session, with the group that admitted players enter.
    void Host(const std::string& sessionName, std::int32_t maxPlayers);

    /// Enters a session that the session layer has found, and asks for admission. Throws SessionError, also
    /// when somebody of the pilot's name is there already.
    void Join(const SessionRecord& session);

    /// Answers what has arrived, and tells the position when it is time.
    void Step(std::chrono::milliseconds now);

    /// Types a text into the chat.
    void Say(std::string_view text);

    void MoveTo(const AircraftState& where) { pilot_.Where = where; }

    /// As the host: puts everybody of that name out. False when there is nobody.
    bool Remove(std::string_view name);

    /// A host says first that he goes.
    void Leave();

    Stage InStage() const { return stage_; }
    std::int32_t Id() const { return id_; }
    Session& Dp() { return *session_; }

  private:
    void Handle(std::int32_t sender, DirectPlayMessage& message);
    void DecideAdmission(std::int32_t sender, std::int32_t admit, std::int32_t refuse);
    void OnAdmission(std::int32_t admitted);
    void Introduce(std::int32_t to);
    void RequestAdmission(std::chrono::milliseconds now);
    void TellPosition(std::chrono::milliseconds now);
    void Note(const std::string& line);
    const std::string& NameOf(std::int32_t id);

    std::unique_ptr<Session> session_;
    SimulatorPilot pilot_;
    SimulatorEvents events_;
    Stage stage_ = Stage::Outside;
    bool host_ = false;
    bool asked_ = false;
    std::int32_t id_ = 0;
    std::map<std::int32_t, std::string> names_;  ///< also of those who have gone
    std::chrono::milliseconds requestDue_{0};
    std::chrono::milliseconds positionDue_{0};
    int positionsTold_ = 0;
};

}  // namespace corvenna
