#include "link/session_objects.h"

namespace corvenna {

Session& SessionObjects::OpenSession() const {
    if (!Dp) throw SessionError("there is no session");
    return *Dp;
}

void CreateSessionObjects(SessionObjects& objects) {
    if (!objects.DxRoot) objects.DxRoot = objects.MakeRoot();
    objects.Dp = objects.DxRoot->DirectPlayCreate();
    objects.DpConnections = objects.Dp->GetDPEnumConnections();
}

void ReleaseSessionObjects(SessionObjects& objects) {
    objects.DpConnections.clear();
    objects.DpSessions.clear();
    objects.Dp.reset();
}

}  // namespace corvenna
