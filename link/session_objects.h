#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "link/session.h"

namespace corvenna {

/// The program's hold on the session layer. Station's thread.
struct SessionObjects {
    std::function<std::unique_ptr<SessionRoot>()> MakeRoot;  ///< which session layer the program uses

    std::unique_ptr<SessionRoot> DxRoot;
    std::unique_ptr<Session> Dp;
    std::vector<Connection> DpConnections;
    std::vector<SessionRecord> DpSessions;

    /// The open session. Throws SessionError when there is none.
    Session& OpenSession() const;
};

/// Makes the root if there is none yet, a session object, and the list of connections.
void CreateSessionObjects(SessionObjects& objects);

/// Drops connections, sessions and the session object, in that order. The root stays.
void ReleaseSessionObjects(SessionObjects& objects);

}  // namespace corvenna
