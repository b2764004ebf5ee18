#include "link/directplay/interfaces.h"

#include <algorithm>

#ifndef _WIN32
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#endif

namespace corvenna::directplay {

namespace {

constexpr std::uint32_t Everybody = 0xFFFFFFFF;
constexpr std::uint32_t ThisComputer = 0x7F000001;

#ifndef _WIN32
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
#else
void AppendInterfaces(std::vector<std::uint32_t>&) {}
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
