#include "link/directplay/interfaces.h"

#include <algorithm>

#ifdef _WIN32
// Each of these needs those before it.
// clang-format off
#include <winsock2.h>
#include <windows.h>
#include <iphlpapi.h>
// clang-format on

#include <vector>
#else
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#endif

namespace corvenna::directplay {

namespace {

constexpr std::uint32_t Everybody = 0xFFFFFFFF;
constexpr std::uint32_t ThisComputer = 0x7F000001;

#ifdef _WIN32
constexpr ULONG RoomForAdapters = 65536;

std::uint32_t HostBits(std::uint8_t prefixLength) {
    return prefixLength >= 32 ? 0 : Everybody >> prefixLength;
}

void AppendInterfaces(std::vector<std::uint32_t>& addresses) {
    constexpr ULONG skip = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
    ULONG size = RoomForAdapters;
    std::vector<IP_ADAPTER_ADDRESSES> room(size / sizeof(IP_ADAPTER_ADDRESSES));
    if (GetAdaptersAddresses(AF_INET, skip, nullptr, room.data(), &size) != NO_ERROR) return;
    for (const auto* adapter = room.data(); adapter != nullptr; adapter = adapter->Next) {
        if (adapter->OperStatus != IfOperStatusUp) continue;
        for (const auto* entry = adapter->FirstUnicastAddress; entry != nullptr; entry = entry->Next) {
            const auto* address = reinterpret_cast<const sockaddr_in*>(entry->Address.lpSockaddr);
            addresses.push_back(ntohl(address->sin_addr.s_addr) | HostBits(entry->OnLinkPrefixLength));
        }
    }
}
#else
std::uint32_t Ip(const sockaddr* address) {
    return ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr);
}

void AppendInterfaces(std::vector<std::uint32_t>& addresses) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) return;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        const bool usable = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET &&
                            entry->ifa_netmask != nullptr && (entry->ifa_flags & IFF_BROADCAST) != 0;
        if (usable) addresses.push_back(Ip(entry->ifa_addr) | ~Ip(entry->ifa_netmask));
    }
    freeifaddrs(first);
}
#endif

}  // namespace

std::vector<std::uint32_t> BroadcastAddresses() {
    std::vector<std::uint32_t> addresses{Everybody};
    AppendInterfaces(addresses);
    addresses.push_back(ThisComputer);
    std::sort(addresses.begin(), addresses.end());
    addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
    return addresses;
}

}  // namespace corvenna::directplay
