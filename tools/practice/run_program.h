#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/practice/flying_party.h"

namespace corvenna {

/// A whole practice on this computer. Texts are in UTF-8.
struct RunOptions {
    std::string Airport = "KSEA";    ///< code or label; empty: the pilots come wherever the station is
    std::filesystem::path App;       ///< folder of the airport database
    std::string Bind = "127.0.0.1";  ///< address of the session's host
    directplay::SocketOptions Sockets;
    TrafficPlan Traffic;
    std::optional<std::chrono::milliseconds> Length;  ///< by the terminal's clock
    std::filesystem::path Picture;                    ///< empty: none

    std::vector<std::string> Station;  ///< file and arguments of the program that controls the airport
};

/// Hosts a session, flies pilots in it, and runs a station's program that serves them, until the length is
/// over, the terminal asks for the end or the station ends. Prints the summary, and what the pilots do where
/// the airport is left to the station. Everything it has started is over when it returns, or throws. Standard
/// input is left to the station. Throws SessionError, FileError, and std::runtime_error when the station
/// fails.
void RunWholePractice(const RunOptions& options, Terminal& terminal, std::ostream& out);

}  // namespace corvenna
