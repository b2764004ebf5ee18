#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <string>

#include "link/directplay/directplay_session.h"
#include "station/model.h"
#include "tools/console/radio_printer.h"
#include "tools/console/run_loop.h"

namespace corvenna {

/// A session on the network, hosted by somebody else. Texts are in UTF-8 here.
struct JoinOptions {
    std::string Host;      ///< name or address, with or without ":port"; empty: the local network
    std::string Session;   ///< its name; empty: the only one there is
    std::string Callsign;  ///< the controller's; empty: "{AirportCode}_Controller"
    std::optional<std::chrono::milliseconds> Length;  ///< when to leave; none: when asked to
};

/// Joins a session and serves the pilots in it until the time is over, the terminal asks for the end or the
/// session ends. The session has been left when it returns, or throws. Throws SessionError with what went
/// wrong, where, and what to try next; also when the time is over before the controller was admitted.
void RunJoin(Station station, const JoinOptions& options, const directplay::SocketOptions& sockets,
             Terminal& terminal, RadioPrinter& printer);

/// Prints the sessions that answer, full and closed ones among them. Throws SessionError when none does.
void RunSearch(const std::string& host, const directplay::SocketOptions& sockets, Terminal& terminal,
               std::ostream& out);

}  // namespace corvenna
