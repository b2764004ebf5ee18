#pragma once

#include <cstdint>
#include <vector>

#include "link/directplay/socket_options.h"

namespace corvenna::directplay {

/// The ports of a range that can't be opened here at the moment, for connections and for datagrams: another
/// program has them, or the system keeps them for itself. Opens and closes each of them. Any thread.
std::vector<std::uint16_t> TakenTcpPorts(std::uint32_t ip, const PortRange& range);
std::vector<std::uint16_t> TakenUdpPorts(std::uint32_t ip, const PortRange& range);

}  // namespace corvenna::directplay
