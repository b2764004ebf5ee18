#pragma once

#include <cstdint>
#include <vector>

namespace corvenna::directplay {

/// Where to send what everybody on the local network is to hear: the address of all, the broadcast address of
/// each interface where the system tells them, and this computer. Any thread.
std::vector<std::uint32_t> BroadcastAddresses();

}  // namespace corvenna::directplay
