#include "tools/practice/welcome_listener.h"

#include <algorithm>

#include "practice/menu_reader.h"

namespace corvenna {

namespace {

bool IsThere(Session& session, std::string_view name) {
    const auto players = session.GetDPEnumPlayers();
    return std::any_of(players.begin(), players.end(),
                       [&](const SessionMember& player) { return player.ShortName == name; });
}

}  // namespace

bool HeardController::Hears(Session& session, std::string_view from, std::string_view text) {
    const auto airport = AirportOfWelcome(text);
    if (!airport || (from != name_ && IsThere(session, name_))) return false;
    name_ = from;
    if (airport_ == *airport) return false;
    airport_ = *airport;
    return true;
}

WelcomeListener::WelcomeListener(const SessionAccess& access, const std::string& name)
    : reach_(ReachHost(access)),
      peer_(MakeParticipant(reach_), {.Name = name, .Where = {}},
            {.Heard = [this](auto from, auto text) { controller_.Hears(peer_.Dp(), from, text); },
             .Noted = {},
             .Admits = {}}) {
    peer_.Join(FindSession(peer_.Dp()));
}

}  // namespace corvenna
