#include "link/directplay/port_check.h"

#include <gmock/gmock.h>

#include "directplay/peers.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t ThisComputer = 0x7F000001;

PortRange Only(std::uint16_t port) { return {port, port}; }

TEST(PortCheck, TellsThePortsThatOthersHave) {
    std::uint16_t tcp = 0, udp = 0;
    {
        Peer other;
        other.Opens("Host");
        tcp = other.Dp.TcpPort();
        udp = other.Dp.UdpPort();
        EXPECT_THAT(TakenTcpPorts(ThisComputer, Only(tcp)), ElementsAre(tcp));
        EXPECT_THAT(TakenUdpPorts(ThisComputer, Only(udp)), ElementsAre(udp));
        const auto server = other.Dp.NameServerPort();
        EXPECT_THAT(TakenTcpPorts(ThisComputer, Only(server)), ElementsAre(server));
        EXPECT_THAT(TakenUdpPorts(ThisComputer, Only(server)), ElementsAre(server));
    }
    EXPECT_THAT(TakenTcpPorts(ThisComputer, Only(tcp)), IsEmpty());
    EXPECT_THAT(TakenUdpPorts(ThisComputer, Only(udp)), IsEmpty());
}

TEST(PortCheck, LeavesThemFree) {
    Peer here;
    here.Opens("Host");
    const std::uint16_t port = here.Dp.TcpPort();
    here.Dp.Close();
    EXPECT_THAT(TakenTcpPorts(ThisComputer, Only(port)), IsEmpty());
    EXPECT_THAT(TakenTcpPorts(ThisComputer, Only(port)), IsEmpty());
}

}  // namespace
}  // namespace corvenna::directplay
