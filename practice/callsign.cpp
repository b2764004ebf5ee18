#include "practice/callsign.h"

#include <fmt/format.h>

namespace corvenna {

void RefuseTakenName(Session& session, std::string_view name) {
    for (const SessionMember& member : session.GetDPEnumPlayers()) {
        if (member.ShortName != name) continue;
        session.Close();
        throw SessionError(fmt::format("there is a {} in the session already; choose another name", name));
    }
}

}  // namespace corvenna
