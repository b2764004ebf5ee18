#include "link/directplay/socket_network.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "link/session.h"

#ifndef _WIN32
#include <csignal>
#endif

namespace corvenna::directplay {

namespace {

constexpr milliseconds TimerInterval(100);

/// Datagrams that the input/output thread has not sent yet; any more are lost, as any may be.
constexpr std::size_t MaxDatagramsWaiting = 4096;

/// Tries to find a port that is free for both connections and datagrams, where any port will do.
constexpr int NameServerTries = 20;

/// Signals are for the program's own thread: one started while this lives gets none.
class SignalsHeldBack {
#ifndef _WIN32
  public:
    SignalsHeldBack() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

  private:
    sigset_t before_{};
#endif
};

std::string Words(const PortRange& range) {
    return range.First == range.Last ? fmt::format("{}", range.First)
                                     : fmt::format("from {} to {}", range.First, range.Last);
}

}  // namespace

SocketNetwork::SocketNetwork(const SocketOptions& options, NetworkEvents& events)
    : options_(options),
      events_(events),
      work_(asio::make_work_guard(io_)),
      listener_(io_),
      datagrams_(io_),
      timer_(io_),
      resolver_(io_) {
    if (const auto error = listener_.Open(options_.BindIp, options_.Tcp)) {
        throw SessionError(
            fmt::format("no TCP port {} can be opened at {} ({}); do other programs have them?",
                        Words(options_.Tcp), IpText(options_.BindIp), error.message()));
    }
    if (const auto error = datagrams_.Open(options_.BindIp, options_.Udp)) {
        throw SessionError(
            fmt::format("no UDP port {} can be opened at {} ({}); do other programs have them?",
                        Words(options_.Udp), IpText(options_.BindIp), error.message()));
    }
}

SocketNetwork::~SocketNetwork() { Stop(); }

void SocketNetwork::Stop() {
    io_.stop();
    if (thread_.joinable()) thread_.join();
}

void SocketNetwork::Start() {
    listener_.Start([this](auto socket, std::uint32_t ip) { Accepted(std::move(socket), ip); });
    datagrams_.Start([this](const Endpoint& source, ByteSpan bytes) { events_.OnDatagram(source, bytes); });
    ArmTimer();
    [[maybe_unused]] const SignalsHeldBack heldBack;
    thread_ = std::thread([this] { io_.run(); });
}

void SocketNetwork::Flush(milliseconds limit) {
    std::unique_lock lock(outboundMutex_);
    for (const auto& [place, connection] : outbound_) connection->CloseWhenSent();
    outboundEnded_.wait_for(lock, limit, [this] { return outbound_.empty(); });
}

// ---- Outbound

/// A connection that ended this moment is followed by a new one.
void SocketNetwork::SendFrame(const Endpoint& tcp, SharedBytes frame) {
    const std::lock_guard lock(outboundMutex_);
    const auto known = outbound_.find(tcp);
    if (known != outbound_.end() && known->second->Put(frame)) return;
    const auto connection = NewOutbound(tcp);
    outbound_[tcp] = connection;
    connection->Put(std::move(frame));
}

std::shared_ptr<OutboundConnection> SocketNetwork::NewOutbound(const Endpoint& tcp) {
    OutboundConnection::Events events{
        [this, tcp](ByteSpan frame) { events_.OnFrame(tcp.Ip, frame); },
        [this](const OutboundConnection& connection, OutboundConnection::End end, const std::string& why) {
            OutboundEnded(connection, end, why);
        }};
    return std::make_shared<OutboundConnection>(io_, tcp, options_, std::move(events));
}

/// By now there may be another connection to the same place.
void SocketNetwork::OutboundEnded(const OutboundConnection& connection, OutboundConnection::End end,
                                  const std::string& why) {
    const Endpoint tcp = connection.Place();
    {
        const std::lock_guard lock(outboundMutex_);
        const auto known = outbound_.find(tcp);
        if (known != outbound_.end() && known->second.get() == &connection) outbound_.erase(known);
        outboundEnded_.notify_all();
    }
    switch (end) {
        case OutboundConnection::End::Closed:
            return;
        case OutboundConnection::End::Disconnected:
            return events_.OnDisconnected(tcp);
        case OutboundConnection::End::Unreachable:
            return events_.OnUnreachable(tcp, why);
        case OutboundConnection::End::Stuck:
            return events_.OnMisbehaved(tcp, why);
    }
}

void SocketNetwork::SendDatagram(const Endpoint& udp, SharedBytes datagram) {
    if (datagramsWaiting_.load() >= MaxDatagramsWaiting) return;
    ++datagramsWaiting_;
    asio::post(io_, [this, udp, datagram = std::move(datagram)] {
        --datagramsWaiting_;
        datagrams_.Send(udp, *datagram);
    });
}

void SocketNetwork::Disconnect(const Endpoint& tcp) {
    const std::lock_guard lock(outboundMutex_);
    if (const auto known = outbound_.find(tcp); known != outbound_.end()) known->second->CloseWhenSent();
}

void SocketNetwork::CutOff(const Endpoint& tcp) {
    {
        const std::lock_guard lock(outboundMutex_);
        if (const auto known = outbound_.find(tcp); known != outbound_.end()) known->second->Abort();
    }
    asio::post(io_, [this, tcp] {
        std::erase_if(inbound_, [&](const auto& connection) {
            if (connection->Sender() != tcp) return false;
            connection->Close();
            return true;
        });
    });
}

// ---- Inbound

void SocketNetwork::Accepted(asio::ip::tcp::socket socket, std::uint32_t sourceIp) {
    MakeRoomForInbound();
    InboundConnection::Events events{
        [this](std::uint32_t ip, ByteSpan frame) { events_.OnFrame(ip, frame); },
        [this](InboundConnection& connection, const std::string& flood) { InboundEnded(connection, flood); }};
    const auto connection =
        std::make_shared<InboundConnection>(std::move(socket), sourceIp, options_, std::move(events));
    inbound_.push_back(connection);
    connection->Start();
}

/// The address with the most connections loses one: first of those that have not said anything yet, the one
/// that has been silent for the longest time. So whoever opens too many makes way for himself.
void SocketNetwork::MakeRoomForInbound() {
    if (inbound_.size() < options_.Bounds.InboundConnections) return;
    std::map<std::uint32_t, std::size_t> ofAddress;
    for (const auto& connection : inbound_) ++ofAddress[connection->Sender().Ip];
    const auto rank = [&](const auto& connection) {
        const std::size_t others = inbound_.size() - ofAddress[connection->Sender().Ip];
        return std::tuple(others, connection->Sender().Port != 0, connection->LastFrame());
    };
    const auto victim = std::min_element(inbound_.begin(), inbound_.end(),
                                         [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
    (*victim)->Close();
    inbound_.erase(victim);
}

/// When frames that never end take too much memory, the longest of them goes.
void SocketNetwork::CheckInboundBytes() {
    std::size_t bytes = 0;
    for (const auto& connection : inbound_) bytes += connection->Pending();
    if (bytes <= options_.Bounds.InboundBytes) return;
    const auto longest = std::max_element(inbound_.begin(), inbound_.end(), [](const auto& a, const auto& b) {
        return a->Pending() < b->Pending();
    });
    (*longest)->Close();
    inbound_.erase(longest);
}

void SocketNetwork::InboundEnded(InboundConnection& connection, const std::string& flood) {
    const Endpoint sender = connection.Sender();
    const auto self = connection.shared_from_this();
    inbound_.remove(self);
    if (!flood.empty()) {
        events_.OnMisbehaved(sender, flood);
    } else if (sender.Port != 0) {
        events_.OnConnectionLost(sender);
    }
}

// ---- Deadlines

void SocketNetwork::ArmTimer() {
    timer_.expires_after(TimerInterval);
    timer_.async_wait([this](const asio::error_code& aborted) {
        if (aborted) return;
        CheckDeadlines();
        events_.OnTimer();
        ArmTimer();
    });
}

void SocketNetwork::CheckDeadlines() {
    const TimePoint now = Clock::now();
    std::vector<std::shared_ptr<OutboundConnection>> outbound;
    {
        const std::lock_guard lock(outboundMutex_);
        for (const auto& [place, connection] : outbound_) outbound.push_back(connection);
    }
    for (const auto& connection : outbound) connection->Check(now);
    const auto inbound = inbound_;
    for (const auto& connection : inbound) connection->Check(now);
    CheckInboundBytes();
    const auto probes = probes_;
    for (const ProbeInProgress& probe : probes) {
        if (now >= probe.Deadline) ProbeEnded(probe.Socket, false);
    }
}

void SocketNetwork::Probe(const Endpoint& tcp) {
    asio::post(io_, [this, tcp] {
        const auto socket = std::make_shared<asio::ip::tcp::socket>(io_);
        probes_.push_back({socket, tcp, Clock::now() + options_.Times.Connect});
        asio::error_code unopened;
        socket->open(asio::ip::tcp::v4(), unopened);
        if (unopened) return ProbeEnded(socket, true);  // no socket is left here, which proves nothing there
        socket->async_connect({asio::ip::address_v4(tcp.Ip), tcp.Port},
                              [this, socket](const asio::error_code& error) { ProbeEnded(socket, !error); });
    });
}

void SocketNetwork::ProbeEnded(const std::shared_ptr<asio::ip::tcp::socket>& socket, bool reached) {
    const auto probe =
        std::find_if(probes_.begin(), probes_.end(), [&](const auto& p) { return p.Socket == socket; });
    if (probe == probes_.end()) return;
    const Endpoint place = probe->Place;
    probes_.erase(probe);
    asio::error_code ignored;
    socket->close(ignored);
    events_.OnProbed(place, reached);
}

// ---- The name server's ports

bool SocketNetwork::NameServer::Open(const SocketOptions& options) {
    const bool anyPort = options.NameServer == 0;
    if (Stream.Open(options.BindIp, {options.NameServer, options.NameServer})) return false;
    const std::uint16_t port = anyPort ? Stream.Port() : options.NameServer;
    return !Datagrams.Open(options.BindIp, {port, port});
}

/// Opened by whichever thread asks, started on the input/output thread.
bool SocketNetwork::OpenNameServerPorts() {
    if (nameServerPort_ != 0) return true;
    std::unique_ptr<NameServer> opened;
    for (int tries = options_.NameServer == 0 ? NameServerTries : 1; tries > 0; --tries) {
        opened = std::make_unique<NameServer>(io_);
        if (opened->Open(options_)) break;
        opened.reset();
    }
    if (!opened) return false;
    nameServerPort_ = opened->Stream.Port();
    asio::post(io_, [this, nameServer = std::move(opened)]() mutable {
        nameServer_ = std::move(nameServer);
        nameServer_->Stream.Start([this](auto socket, std::uint32_t ip) { Accepted(std::move(socket), ip); });
        nameServer_->Datagrams.Start(
            [this](const Endpoint& source, ByteSpan bytes) { events_.OnDatagram(source, bytes); });
    });
    return true;
}

void SocketNetwork::Resolve(const std::string& name,
                            std::function<void(std::optional<std::uint32_t> ip)> answer) {
    asio::post(io_, [this, name, answer = std::move(answer)]() mutable {
        resolver_.async_resolve(asio::ip::tcp::v4(), name, "",
                                [answer = std::move(answer)](const asio::error_code& error, auto results) {
                                    if (error || results.empty()) return answer(std::nullopt);
                                    answer(results.begin()->endpoint().address().to_v4().to_uint());
                                });
    });
}

}  // namespace corvenna::directplay
