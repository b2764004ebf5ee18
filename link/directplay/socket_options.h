#pragma once

#include <cstdint>

#include "link/directplay/limits.h"

namespace corvenna::directplay {

/// A range of ports of which the first free one is taken. 0 means any port.
struct PortRange {
    std::uint16_t First = 0;
    std::uint16_t Last = 0;
};

/// Where the sockets of one participant are. As they stand here they are the protocol's; others are for
/// tests, which want none that anybody else may have.
struct SocketOptions {
    std::uint32_t BindIp = 0;  ///< 0: all interfaces
    PortRange Tcp{2300, 2349};
    PortRange Udp{2350, 2399};
    std::uint16_t NameServer = 47624;  ///< where a host is searched. 0: any port, for hosts in tests
    Limits Bounds;
    Timing Times;
};

}  // namespace corvenna::directplay
