#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "link/directplay/participant.h"
#include "link/directplay/socket_options.h"
#include "link/session.h"

namespace corvenna {

/// How a program uses the session layer over sockets.
struct DirectPlayOptions {
    /// Asks the operator for the host's name or address, with or without ":port". An empty answer searches
    /// the local network; none means that he gave up. Without this the local network is searched.
    std::function<std::optional<std::string>()> AskHost;

    /// Called every now and then while an operation waits for the network, on the station's thread. False
    /// gives the operation up.
    std::function<bool()> KeepWaiting;

    /// What an enumeration shows: bits of EnumFlag. The usual value leaves out what cannot be joined.
    std::uint32_t EnumerationFlags = directplay::EnumFlag::Available;

    /// How long an enumeration waits for answers, and how long behind the last one if a host was named.
    directplay::milliseconds EnumerationTime = directplay::seconds(5);
    directplay::milliseconds EnumerationSettle{400};

    /// Is shown every message from the network as it arrives, before it is read. Called on the sockets'
    /// thread. The port of a connection is the one at which its other end listens.
    std::function<void(const directplay::Endpoint& from, bool isDatagram, directplay::ByteSpan message)>
        WatchArrivals;

    directplay::SocketOptions Sockets;
};

/// Addresses of the connections offered, for InitializeConnection.
namespace ConnectionAddress {
inline constexpr std::string_view Ipx = "ipx";
inline constexpr std::string_view TcpIp = "tcpip";
inline constexpr std::string_view ThisComputer = "this computer";
}  // namespace ConnectionAddress

/// DirectPlay 4 over TCP/IP, as a client and as a host. Every operation is called from the one thread of the
/// station; sockets have a thread of their own behind it. Only GetDPEnumSessions, Open, CreatePlayer and
/// CreateGroup wait for others, with a limit; Close waits a moment for what is still to be sent.
class DirectPlaySession final : public Session {
  public:
    /// The options must outlive the session.
    explicit DirectPlaySession(const DirectPlayOptions& options);
    ~DirectPlaySession() override;
    DirectPlaySession(const DirectPlaySession&) = delete;
    DirectPlaySession& operator=(const DirectPlaySession&) = delete;

    std::vector<Connection> GetDPEnumConnections() override;
    void InitializeConnection(const std::string& address) override;
    std::vector<SessionRecord> GetDPEnumSessions(const SessionRecord& wanted) override;
    void Open(const SessionRecord& session, OpenMode mode) override;
    std::int32_t CreatePlayer(const std::string& friendlyName, const std::string& formalName) override;
    void DestroyPlayer(std::int32_t playerId) override;
    void Close() override;
    std::vector<SessionMember> GetDPEnumGroups() override;
    std::int32_t CreateGroup(const std::string& name) override;
    void AddPlayerToGroup(std::int32_t groupId, std::int32_t playerId) override;
    std::vector<SessionMember> GetDPEnumPlayers() override;
    std::string GetPlayerFriendlyName(std::int32_t playerId) override;
    std::int32_t GetMessageCount(std::int32_t playerId) override;
    Envelope Receive(DirectPlayMessage& message) override;
    void Send(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) override;
    void SendUnguaranteed(std::int32_t from, std::int32_t to, const DirectPlayMessage& message) override;
    std::vector<std::string> TakeNotices() override;

    // ---- Beyond Session

    /// The ports in use; 0 when there are none. The name server's is that at which a host is searched.
    std::uint16_t TcpPort() const;
    std::uint16_t UdpPort() const;
    std::uint16_t NameServerPort() const;

    /// This machine is the session's host.
    bool IsHost() const;
    directplay::Dropped DroppedSoFar() const;

  private:
    struct Live;

    Live& Sockets();
    Live& Opened() const;
    directplay::SessionSearch::Wanted WhereToAsk(const SessionRecord& wanted);
    std::optional<directplay::Endpoint> Resolve(const std::string& host);
    void WaitFor(const std::function<bool(directplay::Participant&)>& done, directplay::TimePoint deadline);
    std::int32_t FinishRequest(const std::string& what);
    void Join(const SessionRecord& session);
    void Create(const SessionRecord& session);
    void ExplainSilence(const directplay::SessionSearch::Wanted& wanted, const std::string& streamTrouble);

    const DirectPlayOptions& options_;
    std::string connection_ = std::string(ConnectionAddress::TcpIp);
    std::optional<std::string> host_ = "";  ///< none: the operator gave up
    std::vector<directplay::FoundSession> found_;
    std::vector<std::string> notices_;
    bool open_ = false;
    std::unique_ptr<Live> live_;
};

class DirectPlayRoot final : public SessionRoot {
  public:
    explicit DirectPlayRoot(DirectPlayOptions options) : options_(std::move(options)) {}
    std::unique_ptr<Session> DirectPlayCreate() override {
        return std::make_unique<DirectPlaySession>(options_);
    }

  private:
    DirectPlayOptions options_;
};

}  // namespace corvenna
