#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "link/directplay/directplay_session.h"
#include "station/model.h"
#include "tools/console/run_loop.h"

namespace corvenna {

/// Which session a program joins, and what it knows of airports. Texts are in UTF-8.
struct SessionAccess {
    std::string Host = "127.0.0.1";  ///< name or address, with or without ":port"
    std::string Airport;             ///< code or label; empty: the one whose controller says welcome
    std::filesystem::path App;       ///< folder of the airport database
    directplay::SocketOptions Sockets;
};

/// An address of this computer. Throws std::invalid_argument for what is none.
std::uint32_t OwnAddress(const std::string& text);

/// How sessions at the host are reached. The result may be used by many participants.
DirectPlayOptions ReachHost(const SessionAccess& access);

/// Access of one's own for one more participant. The options must outlive it.
std::unique_ptr<Session> MakeParticipant(const DirectPlayOptions& options);

/// The session at the host. Throws SessionError when none answers, and for one without room.
SessionRecord FindSession(Session& session);

/// How long the controller of a session has to say welcome.
inline constexpr std::chrono::seconds WelcomeTime{30};

/// Selects the airport, after having listened in the session for its name when none is given. Throws
/// SessionError, and what SelectByName throws.
void FindAirport(Station& station, const SessionAccess& access, Terminal& terminal);

/// Selects an airport by the name that a controller uses in his welcome. Throws as SelectByName.
void SelectByWelcome(Station& station, const std::filesystem::path& app, const std::string& name);

}  // namespace corvenna
