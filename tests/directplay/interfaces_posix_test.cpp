#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

#include "link/directplay/interfaces.h"

namespace corvenna::directplay {
namespace {

using testing::Contains;

/// What the system tells of one interface at a time.
class Interface {
  public:
    explicit Interface(const char* name) { std::snprintf(request_.ifr_name, IFNAMSIZ, "%s", name); }
    ~Interface() { close(socket_); }
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    /// The last address of its network, if all in it can be spoken to at once.
    std::optional<std::uint32_t> LastAddress() {
        if (!Asks(SIOCGIFFLAGS) || (request_.ifr_flags & IFF_BROADCAST) == 0) return std::nullopt;
        if (!Asks(SIOCGIFADDR)) return std::nullopt;
        const std::uint32_t address = Ip();
        if (!Asks(SIOCGIFNETMASK)) return std::nullopt;
        return address | ~Ip();
    }

  private:
    bool Asks(unsigned long what) { return ioctl(socket_, what, &request_) == 0; }
    std::uint32_t Ip() const {
        return ntohl(reinterpret_cast<const sockaddr_in*>(&request_.ifr_addr)->sin_addr.s_addr);
    }

    int socket_ = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request_{};
};

TEST(Interfaces, TheNetworkOfEachInterfaceIsSpokenTo) {
    const auto addresses = BroadcastAddresses();
    struct if_nameindex* const all = if_nameindex();
    ASSERT_NE(all, nullptr);
    for (const auto* entry = all; entry->if_index != 0; ++entry) {
        if (const auto last = Interface(entry->if_name).LastAddress()) {
            EXPECT_THAT(addresses, Contains(*last)) << entry->if_name;
        }
    }
    if_freenameindex(all);
}

}  // namespace
}  // namespace corvenna::directplay
