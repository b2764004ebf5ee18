#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "practice/simulator_peer.h"
#include "tools/practice/session_access.h"

namespace corvenna {

/// Which airport has the session's controller, as welcomes tell. Where there are several controllers the
/// first one who is heard counts, until he has left the session.
class HeardController {
  public:
    /// A text from somebody in the session. True when it tells of another airport than before.
    bool Hears(Session& session, std::string_view from, std::string_view text);

    /// As the welcome names it; empty before the first one.
    const std::string& Airport() const { return airport_; }

  private:
    std::string name_;
    std::string airport_;
};

/// A participant who is there to be welcomed: whoever says welcome controls an airport. Station's thread.
class WelcomeListener {
  public:
    /// Joins the session, under that name. Throws SessionError.
    WelcomeListener(const SessionAccess& access, const std::string& name);
    WelcomeListener(const WelcomeListener&) = delete;
    WelcomeListener& operator=(const WelcomeListener&) = delete;

    void Step(std::chrono::milliseconds now) { peer_.Step(now); }
    void Leave() { peer_.Leave(); }

    const std::string& Airport() const { return controller_.Airport(); }

    /// Refused or put out of the session by its host: nothing more will be heard.
    bool Gone() const { return peer_.InStage() == SimulatorPeer::Stage::Gone; }

  private:
    DirectPlayOptions reach_;
    HeardController controller_;
    SimulatorPeer peer_;
};

}  // namespace corvenna
