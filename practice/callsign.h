#pragma once

#include <string_view>

#include "link/session.h"

namespace corvenna {

/// For who has opened a session and wants to enter it under a name. A controller tells pilots apart by their
/// names alone, so that two of one name would hear and answer for each other. Throws SessionError, and leaves
/// the session, when somebody has the name.
void RefuseTakenName(Session& session, std::string_view name);

}  // namespace corvenna
