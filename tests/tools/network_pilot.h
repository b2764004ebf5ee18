#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "link/directplay/directplay_session.h"
#include "practice/simulator_peer.h"

namespace corvenna {

/// The limit at which a test gives up what should have happened long before.
inline constexpr std::chrono::seconds Patience(60);

/// Sockets with ports of their own on this computer's own address.
inline directplay::SocketOptions TestSockets() {
    directplay::SocketOptions sockets;
    sockets.BindIp = 0x7F000001;
    sockets.Tcp = sockets.Udp = {};
    sockets.NameServer = 0;
    return sockets;
}

/// A simulator on sockets within the test, as host or as one who joins.
class NetworkPilot {
  public:
    explicit NetworkPilot(SimulatorPilot pilot)
        : Peer(std::make_unique<DirectPlaySession>(options_), std::move(pilot),
               {.Heard = [this](auto, auto text) { Heard.emplace_back(text); },
                .Noted = [this](auto line) { Noted.emplace_back(line); },
                .Admits = [this](auto) { return AdmitsNewcomers; }}) {}

    DirectPlaySession& Dp() { return static_cast<DirectPlaySession&>(Peer.Dp()); }

    /// Where a session of its own is searched.
    std::string Address() { return "127.0.0.1:" + std::to_string(Dp().NameServerPort()); }

    /// All sessions at a host: "127.0.0.1:47624".
    std::vector<SessionRecord> Searches(const std::string& host) {
        host_ = host;
        Dp().InitializeConnection(std::string(ConnectionAddress::TcpIp));
        return Dp().GetDPEnumSessions({});
    }

    void Joins(const std::string& host) { Peer.Join(Searches(host).at(0)); }

    void Step() {
        Peer.Step(
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_));
    }

    /// Looks again and again until it is so; false when it never was.
    template <class Condition>
    bool Until(Condition isSo) {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (!isSo()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            Step();
            std::this_thread::yield();
        }
        return true;
    }

    bool HearsSoon(const std::string& words) {
        return Until([&] {
            return std::any_of(Heard.begin(), Heard.end(),
                               [&](const auto& text) { return text.find(words) != std::string::npos; });
        });
    }

    bool SeesSoon(std::size_t players) {
        return Until([&] { return Dp().GetDPEnumPlayers().size() == players; });
    }

    std::vector<std::string> Heard;
    std::vector<std::string> Noted;
    bool AdmitsNewcomers = true;

  private:
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::string host_;
    DirectPlayOptions options_ = [this] {
        DirectPlayOptions options;
        options.AskHost = [this] { return host_; };
        options.Sockets = TestSockets();
        return options;
    }();

  public:
    SimulatorPeer Peer;
};

}  // namespace corvenna
