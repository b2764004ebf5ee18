#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "link/session.h"

namespace corvenna {

/// Sessions as found, for a person to read, in UTF-8.
///
/// One block of lines for each, with all that is known of it.
void PrintSessions(std::ostream& out, const std::vector<SessionRecord>& sessions);

/// "are "Friday" (3/16) at 10.0.0.5:2300 and "Saturday" (1/8) at 10.0.0.6:2300"; "is" for one.
std::string SessionsInWords(const std::vector<SessionRecord>& sessions);

/// Why a session takes nobody in, and what to do about it. Empty when nothing of the kind is known.
std::string WhyClosed(const SessionRecord& session);

}  // namespace corvenna
