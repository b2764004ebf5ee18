#include "tools/practice/session_access.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "practice/practice_folder.h"
#include "station/code_page.h"

namespace corvenna {

std::uint32_t OwnAddress(const std::string& text) {
    const auto ip = directplay::ParseIp(text);
    if (!ip) throw std::invalid_argument(fmt::format("\"{}\" is no address of this computer", text));
    return *ip;
}

DirectPlayOptions ReachHost(const SessionAccess& access) {
    DirectPlayOptions options;
    options.AskHost = [host = access.Host] { return std::optional<std::string>(host); };
    options.EnumerationFlags = directplay::EnumFlag::All;
    options.EnumerationSettle = std::chrono::milliseconds(0);
    options.Sockets = access.Sockets;
    return options;
}

std::unique_ptr<Session> MakeParticipant(const DirectPlayOptions& options) {
    auto session = std::make_unique<DirectPlaySession>(options);
    session->InitializeConnection(std::string(ConnectionAddress::TcpIp));
    return session;
}

SessionRecord FindSession(Session& session) {
    const auto sessions = session.GetDPEnumSessions({});
    if (sessions.empty()) {
        std::string why;
        for (const std::string& line : session.TakeNotices()) why += (why.empty() ? "" : "; ") + line;
        throw SessionError(why.empty() ? "no session answers" : why);
    }
    const SessionRecord& found = sessions.front();
    if (found.MaxPlayers > 0 && found.CurrentPlayers >= found.MaxPlayers) {
        throw SessionError(fmt::format("the session \"{}\" at {} is full: {} of {} are in it",
                                       CodePageToUtf8(found.SessionName), found.Host, found.CurrentPlayers,
                                       found.MaxPlayers));
    }
    return found;
}

std::optional<std::string> LabelOfWelcome(const std::filesystem::path& app, const std::string& name) {
    const auto labels = AirportLabels(app);
    const auto label = std::find_if(labels.begin(), labels.end(), [&](const std::string& candidate) {
        return candidate.starts_with(name + " (");
    });
    return label == labels.end() ? std::nullopt : std::optional(*label);
}

}  // namespace corvenna
