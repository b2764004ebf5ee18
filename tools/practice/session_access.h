#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "link/directplay/directplay_session.h"

namespace corvenna {

/// Which session a program joins, and what it knows of airports. Texts are in UTF-8.
struct SessionAccess {
    std::string Host = "127.0.0.1";  ///< name or address, with or without ":port"
    std::string Airport;             ///< code or label; empty: wherever a controller says welcome
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

/// The label of the airport that a controller names in his welcome; none when the database of the folder
/// lacks it. Texts are bytes of the 8-bit code page. Throws FileError.
std::optional<std::string> LabelOfWelcome(const std::filesystem::path& app, const std::string& name);

}  // namespace corvenna
