#pragma once

#include <functional>
#include <string>

#include "link/directplay/socket_options.h"
#include "tools/console/run_loop.h"

namespace corvenna {

/// What is to be found out for those who mend joins that fail.
struct JoinReportOptions {
    std::string Host;     ///< as in JoinOptions
    std::string Session;  ///< as in JoinOptions; without it the first one that takes somebody in is tried
    std::string System;   ///< the operating system's name and version
    std::chrono::milliseconds AdmissionTime =
        std::chrono::seconds(15);  ///< how long the host may think it over
    directplay::SocketOptions Sockets;
};

/// Looks at the ports, searches, joins one session as "Corvenna_Report", asks for admission and leaves. Gives
/// what was seen on the way, in UTF-8, without names, addresses and texts. Takes up to half a minute; ends
/// earlier when the terminal asks for the end. Failures of the network stand in the report and are not
/// thrown. `tell` gets a line for each step as it begins.
std::string ReportOfJoin(const JoinReportOptions& options, Terminal& terminal,
                         const std::function<void(std::string_view line)>& tell);

}  // namespace corvenna
