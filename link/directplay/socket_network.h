#pragma once

#include <asio.hpp>
#include <atomic>
#include <condition_variable>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "link/directplay/datagram_port.h"
#include "link/directplay/inbound_connection.h"
#include "link/directplay/listener.h"
#include "link/directplay/network.h"
#include "link/directplay/outbound_connection.h"
#include "link/directplay/socket_options.h"

namespace corvenna::directplay {

/// The sockets of one participant, and the one thread that reads and writes them. The operations of Network
/// may be called by any thread; the events come on the input/output thread.
class SocketNetwork final : public Network {
  public:
    /// Throws SessionError when no port is free.
    SocketNetwork(const SocketOptions& options, NetworkEvents& events);
    ~SocketNetwork() override;
    SocketNetwork(const SocketNetwork&) = delete;
    SocketNetwork& operator=(const SocketNetwork&) = delete;

    /// Events come from now on.
    void Start();

    /// No event comes any more once it returns.
    void Stop();

    /// Ends every connection once all that waits has been sent; gives up after a while.
    void Flush(milliseconds limit);

    std::uint16_t TcpPort() const override { return listener_.Port(); }
    std::uint16_t UdpPort() const override { return datagrams_.Port(); }
    void SendFrame(const Endpoint& tcp, SharedBytes frame) override;
    void SendDatagram(const Endpoint& udp, SharedBytes datagram) override;
    void Disconnect(const Endpoint& tcp) override;
    void CutOff(const Endpoint& tcp) override;
    void Probe(const Endpoint& tcp) override;
    bool OpenNameServerPorts() override;

    /// The port at which this host is searched; 0 as long as it is not.
    std::uint16_t NameServerPort() const { return nameServerPort_; }

    /// Looks a name up; no address when it is nobody's. The answer comes on the input/output thread.
    void Resolve(const std::string& name, std::function<void(std::optional<std::uint32_t> ip)> answer);

  private:
    struct NameServer {
        explicit NameServer(asio::io_context& io) : Stream(io), Datagrams(io) {}
        bool Open(const SocketOptions& options);

        Listener Stream;
        DatagramPort Datagrams;
    };
    struct ProbeInProgress {
        std::shared_ptr<asio::ip::tcp::socket> Socket;
        Endpoint Place;
        TimePoint Deadline;
    };

    std::shared_ptr<OutboundConnection> NewOutbound(const Endpoint& tcp);
    void OutboundEnded(const OutboundConnection& connection, OutboundConnection::End end,
                       const std::string& why);
    void Accepted(asio::ip::tcp::socket socket, std::uint32_t sourceIp);
    void InboundEnded(InboundConnection& connection, const std::string& flood);
    void MakeRoomForInbound();
    void CheckInboundBytes();
    void ArmTimer();
    void CheckDeadlines();
    void ProbeEnded(const std::shared_ptr<asio::ip::tcp::socket>& socket, bool reached);

    const SocketOptions& options_;
    NetworkEvents& events_;
    asio::io_context io_;
    asio::executor_work_guard<asio::io_context::executor_type> work_;
    Listener listener_;
    DatagramPort datagrams_;
    asio::steady_timer timer_;
    asio::ip::tcp::resolver resolver_;
    std::unique_ptr<NameServer> nameServer_;
    std::atomic<std::uint16_t> nameServerPort_ = 0;
    std::atomic<std::size_t> datagramsWaiting_ = 0;

    std::mutex outboundMutex_;
    std::condition_variable outboundEnded_;
    std::map<Endpoint, std::shared_ptr<OutboundConnection>> outbound_;

    std::list<std::shared_ptr<InboundConnection>> inbound_;
    std::list<ProbeInProgress> probes_;
    std::thread thread_;
};

}  // namespace corvenna::directplay
