#include "link/directplay/listener.h"

namespace corvenna::directplay {

namespace {

/// How long to wait when a connection cannot be accepted, such as for want of descriptors.
constexpr milliseconds AcceptRetry(100);

asio::error_code Bind(asio::ip::tcp::acceptor& acceptor, const asio::ip::tcp::endpoint& place) {
    asio::error_code error;
    acceptor.open(asio::ip::tcp::v4(), error);
#ifndef _WIN32
    // A port in its waiting time after an earlier run may be taken again. On Windows the option would let two
    // programs share a port.
    if (!error) acceptor.set_option(asio::socket_base::reuse_address(true), error);
#endif
    if (!error) acceptor.bind(place, error);
    if (!error) acceptor.listen(asio::socket_base::max_listen_connections, error);
    asio::error_code ignored;
    if (error) acceptor.close(ignored);
    return error;
}

}  // namespace

asio::error_code Listener::Open(std::uint32_t ip, const PortRange& range) {
    asio::error_code error;
    for (int port = range.First; port <= range.Last; ++port) {
        error = Bind(acceptor_, {asio::ip::address_v4(ip), static_cast<std::uint16_t>(port)});
        if (error) continue;
        port_ = acceptor_.local_endpoint().port();
        break;
    }
    return error;
}

void Listener::Start(OnAccepted onAccepted) {
    onAccepted_ = std::move(onAccepted);
    Accept();
}

void Listener::Accept() {
    acceptor_.async_accept([this](const asio::error_code& error, asio::ip::tcp::socket socket) {
        if (error == asio::error::operation_aborted) return;
        if (error) {
            retry_.expires_after(AcceptRetry);
            retry_.async_wait([this](const asio::error_code& aborted) {
                if (!aborted) Accept();
            });
            return;
        }
        asio::error_code gone;
        const auto peer = socket.remote_endpoint(gone);
        if (!gone) onAccepted_(std::move(socket), peer.address().to_v4().to_uint());
        Accept();
    });
}

}  // namespace corvenna::directplay
