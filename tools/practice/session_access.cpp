#include "tools/practice/session_access.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "practice/menu_reader.h"
#include "practice/practice_folder.h"
#include "practice/simulator_peer.h"
#include "station/code_page.h"

namespace corvenna {

namespace {

constexpr std::string_view ListenerName = "Practice_Listener";
constexpr std::chrono::milliseconds ListenInterval{100};

/// The name in the first welcome that is said to anybody.
std::string ListenForAirport(const SessionAccess& access, Terminal& terminal) {
    std::optional<std::string> airport;
    SimulatorEvents events;
    events.Heard = [&](std::string_view /*from*/, std::string_view text) {
        if (!airport) airport = AirportOfWelcome(text);
    };
    const DirectPlayOptions options = ReachHost(access);
    SimulatorPeer listener(MakeParticipant(options), {.Name = std::string(ListenerName), .Where = {}},
                           events);
    listener.Join(FindSession(listener.Dp()));
    const auto patience = std::chrono::steady_clock::now() + WelcomeTime;
    while (!airport && std::chrono::steady_clock::now() < patience) {
        listener.Step(terminal.Now());
        if (listener.InStage() == SimulatorPeer::Stage::Gone) {
            throw SessionError("the host of the session refuses pilots");
        }
        if (terminal.Wait(ListenInterval).StopAsked) break;
    }
    listener.Leave();
    if (!airport) {
        throw SessionError(
            fmt::format("no controller has said welcome in {} seconds; name his airport with --airport to "
                        "fly without one",
                        WelcomeTime.count()));
    }
    return *airport;
}

}  // namespace

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
        throw SessionError(fmt::format("the session \"{}\" is full: {} of {} are in it",
                                       CodePageToUtf8(found.SessionName), found.CurrentPlayers,
                                       found.MaxPlayers));
    }
    return found;
}

void SelectByWelcome(Station& station, const std::filesystem::path& app, const std::string& name) {
    const auto labels = AirportLabels(app);
    const auto label = std::find_if(labels.begin(), labels.end(), [&](const std::string& candidate) {
        return candidate.starts_with(name + " (");
    });
    SelectByName(station, app, label == labels.end() ? name : *label);
}

void FindAirport(Station& station, const SessionAccess& access, Terminal& terminal) {
    if (access.Airport.empty()) {
        SelectByWelcome(station, access.App, ListenForAirport(access, terminal));
    } else {
        SelectByName(station, access.App, Utf8ToCodePage(access.Airport));
    }
}

}  // namespace corvenna
