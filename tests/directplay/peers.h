#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "link/directplay/directplay_session.h"

namespace corvenna {

/// The limit at which a test gives up what should have happened long before.
inline constexpr std::chrono::seconds Patience(60);

/// Looks again and again until it is so; false when it never was.
inline bool Eventually(const std::function<bool()>& isSo) {
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::yield();
    }
    return true;
}

/// Options with ports of their own on this computer's own address.
inline DirectPlayOptions TestOptions() {
    DirectPlayOptions options;
    options.Sockets.BindIp = 0x7F000001;
    options.Sockets.Tcp = {};
    options.Sockets.Udp = {};
    options.Sockets.NameServer = 0;
    options.EnumerationSettle = directplay::milliseconds(0);
    return options;
}

/// A participant with sockets of its own.
struct Peer {
    explicit Peer(DirectPlayOptions options = TestOptions()) : Options(std::move(options)), Dp(Options) {
        Options.AskHost = [this] { return Host; };
    }

    /// Opens a session, with a player of one's own.
    void Opens(const std::string& player, std::int32_t maxPlayers = 0,
               const std::string& sessionName = "Test") {
        SessionRecord record;
        record.SessionName = sessionName;
        record.MaxPlayers = maxPlayers;
        record.SessionPassword = Password;
        Dp.Open(record, OpenMode::Create);
        Id = Dp.CreatePlayer(player, "Player");
    }

    std::vector<SessionRecord> Searches(const Peer& host) { return SearchesAt(host.Dp.NameServerPort()); }

    std::vector<SessionRecord> SearchesAt(std::uint16_t port) {
        Host = "127.0.0.1:" + std::to_string(port);
        Dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
        SessionRecord wanted;
        wanted.SessionPassword = Password;
        return Dp.GetDPEnumSessions(wanted);
    }

    /// Enters the session of a host without making a player.
    void Enters(const Peer& host) {
        auto sessions = Searches(host);
        if (sessions.empty()) throw SessionError("no session found");
        sessions.front().SessionPassword = Password;
        Dp.Open(sessions.front(), OpenMode::Join);
    }

    void Joins(const Peer& host, const std::string& player) {
        Enters(host);
        Id = Dp.CreatePlayer(player, "Player");
    }

    void Says(std::int32_t to, const std::string& text) {
        DirectPlayMessage message;
        for (const char c : text) message.WriteByte(static_cast<std::uint8_t>(c));
        Dp.Send(Id, to, message);
    }

    void SaysOnce(std::int32_t to, const std::string& text) {
        DirectPlayMessage message;
        for (const char c : text) message.WriteByte(static_cast<std::uint8_t>(c));
        Dp.SendUnguaranteed(Id, to, message);
    }

    struct Heard {
        std::int32_t From = 0;
        std::string Text;
        bool operator==(const Heard&) const = default;
    };

    /// The next message; waits for it. An empty one from nobody when none comes.
    Heard Hears() {
        if (!Eventually([&] { return Dp.GetMessageCount(Id) > 0; })) return {};
        DirectPlayMessage message;
        const Envelope envelope = Dp.Receive(message);
        std::string text;
        while (message.Left() > 0) text.push_back(static_cast<char>(message.ReadByte()));
        return {envelope.From, text};
    }

    std::vector<std::string> Sees() {
        std::vector<std::string> names;
        for (const SessionMember& member : Dp.GetDPEnumPlayers()) names.push_back(member.ShortName);
        return names;
    }

    bool SeesSoon(std::size_t players) {
        return Eventually([&] { return Dp.GetDPEnumPlayers().size() == players; });
    }

    std::string Host;
    std::string Password;
    DirectPlayOptions Options;
    DirectPlaySession Dp;
    std::int32_t Id = 0;
};

}  // namespace corvenna
