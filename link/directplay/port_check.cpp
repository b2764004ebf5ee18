#include "link/directplay/port_check.h"

#include "link/directplay/datagram_port.h"
#include "link/directplay/listener.h"

namespace corvenna::directplay {

namespace {

template <class Socket>
std::vector<std::uint16_t> TakenPorts(std::uint32_t ip, const PortRange& range) {
    asio::io_context io;
    std::vector<std::uint16_t> taken;
    for (int number = range.First; number <= range.Last; ++number) {
        const auto port = static_cast<std::uint16_t>(number);
        const auto socket = std::make_unique<Socket>(io);
        if (socket->Open(ip, {port, port})) taken.push_back(port);
    }
    return taken;
}

}  // namespace

std::vector<std::uint16_t> TakenTcpPorts(std::uint32_t ip, const PortRange& range) {
    return TakenPorts<Listener>(ip, range);
}

std::vector<std::uint16_t> TakenUdpPorts(std::uint32_t ip, const PortRange& range) {
    return TakenPorts<DatagramPort>(ip, range);
}

}  // namespace corvenna::directplay
