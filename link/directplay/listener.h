#pragma once

#include <asio.hpp>
#include <functional>

#include "link/directplay/socket_options.h"

namespace corvenna::directplay {

/// A port that others connect to. Input/output thread only, but for opening.
class Listener {
  public:
    using OnAccepted = std::function<void(asio::ip::tcp::socket socket, std::uint32_t sourceIp)>;

    explicit Listener(asio::io_context& io) : acceptor_(io), retry_(io) {}

    /// Listens on the first free port of a range. The error of the last one when there is none.
    asio::error_code Open(std::uint32_t ip, const PortRange& range);

    void Start(OnAccepted onAccepted);
    std::uint16_t Port() const { return port_; }

  private:
    void Accept();

    asio::ip::tcp::acceptor acceptor_;
    asio::steady_timer retry_;
    std::uint16_t port_ = 0;
    OnAccepted onAccepted_;
};

}  // namespace corvenna::directplay
