#pragma once

#include <iosfwd>
#include <string>

#include "tools/console/run_loop.h"
#include "tools/practice/session_access.h"

namespace corvenna {

/// A person as one more pilot of a session. Texts are in UTF-8.
struct SitOptions {
    SessionAccess Access;
    std::string Name;
    std::string Spot;       ///< where the aircraft stands; empty: at the first one
    bool Scripted = false;  ///< the lines come from a file: each digit waits until it is offered
};

/// Sits in a simulator of the session until the terminal asks for the end: prints what is heard, says what is
/// typed, and does the commands of HandFlown. The end of the input ends it too, once all has been said and
/// there has been time for an answer. Throws SessionError and std::runtime_error.
void RunSit(const SitOptions& options, Terminal& terminal, std::ostream& out);

}  // namespace corvenna
