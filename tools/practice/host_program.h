#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "link/directplay/directplay_session.h"
#include "practice/simulator_peer.h"
#include "tools/console/run_loop.h"

namespace corvenna {

/// A practice session that is hosted on real sockets. Texts are in UTF-8 here.
struct HostOptions {
    std::string SessionName = "Practice";
    std::string Bind = "127.0.0.1";
    std::int32_t Players = 16;  ///< as many as the session takes, the host's pilot among them
    std::string Pilot = "Practice_Host";
    bool Observer = false;
    std::string Position;        ///< "latitude,longitude,feet,heading"; empty: 0,0,0,0
    std::uint16_t Port = 47624;  ///< where the session is searched
};

/// Hosts a session until the terminal asks for the end, and prints what happens in it. Lines typed are said
/// in the chat, except
///   /at LATITUDE,LONGITUDE,FEET,HEADING   moves the host's aircraft
///   /remove NAME                          puts somebody out of the session
/// The end of the input ends nothing. The session has been left when it returns. Throws SessionError and
/// std::invalid_argument.
void RunHost(const HostOptions& options, const directplay::SocketOptions& sockets, Terminal& terminal,
             std::ostream& out);

/// Reads "latitude,longitude,feet,heading", of which the last two may be missing. Throws
/// std::invalid_argument.
AircraftState ParsePosition(std::string_view text);

}  // namespace corvenna
