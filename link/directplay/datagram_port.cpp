#include "link/directplay/datagram_port.h"

namespace corvenna::directplay {

namespace {

/// Datagrams taken in before connections get their turn again.
constexpr int MaxAtOnce = 64;

/// Room for what arrives while the thread is busy.
constexpr int ReceiveBufferBytes = 1 << 20;

}  // namespace

asio::error_code DatagramPort::Open(std::uint32_t ip, const PortRange& range) {
    asio::error_code error;
    for (int port = range.First; port <= range.Last; ++port) {
        error.clear();
        if (!socket_.is_open()) socket_.open(asio::ip::udp::v4(), error);
        if (!error) socket_.bind({asio::ip::address_v4(ip), static_cast<std::uint16_t>(port)}, error);
        if (error) continue;
        socket_.non_blocking(true);
        asio::error_code ignored;
        socket_.set_option(asio::socket_base::broadcast(true), ignored);
        socket_.set_option(asio::socket_base::receive_buffer_size(ReceiveBufferBytes), ignored);
        port_ = socket_.local_endpoint().port();
        break;
    }
    return error;
}

void DatagramPort::Start(OnDatagram onDatagram) {
    onDatagram_ = std::move(onDatagram);
    Wait();
}

void DatagramPort::Wait() {
    socket_.async_wait(asio::ip::udp::socket::wait_read, [this](const asio::error_code& error) {
        if (error == asio::error::operation_aborted) return;
        ReceiveAll();
        Wait();
    });
}

/// Some systems report here that an earlier datagram reached nobody; that is passed over.
void DatagramPort::ReceiveAll() {
    for (int i = 0; i < MaxAtOnce; ++i) {
        asio::ip::udp::endpoint source;
        asio::error_code error;
        const std::size_t size = socket_.receive_from(asio::buffer(buffer_), source, 0, error);
        if (error == asio::error::would_block || error == asio::error::bad_descriptor) return;
        if (error) continue;
        onDatagram_({source.address().to_v4().to_uint(), source.port()}, ByteSpan(buffer_).first(size));
    }
}

void DatagramPort::Send(const Endpoint& place, ByteSpan datagram) {
    asio::error_code ignored;
    socket_.send_to(asio::buffer(datagram.data(), datagram.size()),
                    {asio::ip::address_v4(place.Ip), place.Port}, 0, ignored);
}

}  // namespace corvenna::directplay
