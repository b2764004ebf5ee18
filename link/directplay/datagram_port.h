#pragma once

#include <array>
#include <asio.hpp>
#include <functional>

#include "link/directplay/network.h"
#include "link/directplay/socket_options.h"

namespace corvenna::directplay {

/// A port for datagrams. Input/output thread only, but for opening.
class DatagramPort {
  public:
    using OnDatagram = std::function<void(const Endpoint& source, ByteSpan datagram)>;

    explicit DatagramPort(asio::io_context& io) : socket_(io) {}

    /// Binds the first free port of a range. The error of the last one when there is none.
    asio::error_code Open(std::uint32_t ip, const PortRange& range);

    void Start(OnDatagram onDatagram);
    std::uint16_t Port() const { return port_; }

    /// A datagram that cannot be sent is lost, as any may be.
    void Send(const Endpoint& place, ByteSpan datagram);

  private:
    void Wait();
    void ReceiveAll();

    asio::ip::udp::socket socket_;
    std::uint16_t port_ = 0;
    OnDatagram onDatagram_;
    std::array<std::byte, 65536> buffer_{};
};

}  // namespace corvenna::directplay
