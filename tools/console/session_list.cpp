#include "tools/console/session_list.h"

#include <fmt/format.h>

#include "link/directplay/wire_structures.h"
#include "tools/console/radio_printer.h"

namespace corvenna {

namespace {

using namespace directplay;

std::string Players(const SessionRecord& session) {
    if (session.MaxPlayers == 0) return fmt::format("{}, no limit", session.CurrentPlayers);
    return fmt::format("{} of {}", session.CurrentPlayers, session.MaxPlayers);
}

bool HasFlag(const SessionRecord& session, std::uint32_t flag) { return (session.Flags & flag) != 0; }

}  // namespace

void PrintSessions(std::ostream& out, const std::vector<SessionRecord>& sessions) {
    std::string_view between;
    for (const SessionRecord& session : sessions) {
        out << fmt::format(
            "{}{}\n"
            "  players      {}\n"
            "  host         {}\n"
            "  flags        0x{:08X}\n"
            "  session      {}\n"
            "  application  {}\n",
            between, Printable(session.SessionName), Players(session), session.Host, session.Flags,
            session.GuidInstance, session.GuidApplication);
        if (const std::string why = WhyClosed(session); !why.empty()) out << "  closed       " << why << '\n';
        between = "\n";
    }
}

std::string SessionsInWords(const std::vector<SessionRecord>& sessions) {
    std::string words = sessions.size() == 1 ? "is " : "are ";
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        const SessionRecord& session = sessions[i];
        const bool last = i + 1 == sessions.size();
        words += i == 0 ? "" : last ? " and " : ", ";
        words += fmt::format("\"{}\" ({}/{}) at {}", Printable(session.SessionName), session.CurrentPlayers,
                             session.MaxPlayers, session.Host);
    }
    return words;
}

std::string WhyClosed(const SessionRecord& session) {
    if (session.MaxPlayers > 0 && session.CurrentPlayers >= session.MaxPlayers) {
        return "it is full: somebody must leave first, or its host must allow more players";
    }
    if (HasFlag(session, SessionFlag::NewPlayersDisabled | SessionFlag::JoinDisabled)) {
        return "its host lets nobody in any more";
    }
    if (HasFlag(session, SessionFlag::PasswordRequired | SessionFlag::Private)) {
        return "it wants a password, and the controller has none: its host must open it without";
    }
    return {};
}

}  // namespace corvenna
