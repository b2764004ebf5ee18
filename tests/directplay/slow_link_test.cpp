#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef __linux__
#include <sched.h>
#include <unistd.h>
#endif

#include <future>

#include "directplay/peers.h"

/// A participant at the end of a slow, lossy line. Both ends get network namespaces of their own, which
/// vanish with their threads; a system that does not allow this skips the test.
namespace corvenna {
namespace {

#ifdef __linux__

constexpr std::uint32_t HostIp = 0x0A4D0001;
constexpr std::uint32_t ClientIp = 0x0A4D0002;

bool Runs(const std::string& command) { return std::system((command + " 2>/dev/null").c_str()) == 0; }

DirectPlayOptions OptionsAt(std::uint32_t ip) {
    DirectPlayOptions options = TestOptions();
    options.Sockets.BindIp = ip;
    return options;
}

/// What makes the line slow: delay and loss where the system has them, otherwise little room.
std::string SlownessOf(const std::string& device) {
    if (Runs("tc qdisc add dev " + device + " root netem delay 150ms 30ms loss 3%")) return "delay and loss";
    if (Runs("tc qdisc add dev " + device + " root tbf rate 64kbit burst 2kb latency 2s")) return "64 kbit/s";
    return "";
}

/// Runs in a thread of its own, because a namespace belongs to a thread.
class SlowLine {
  public:
    /// Empty when both ends are up, or why they are not.
    std::string HostEnd(std::future<int> clientThread) {
        const bool own = unshare(CLONE_NEWNET) == 0;
        const int client = clientThread.get();
        if (!own || client == 0) return "network namespaces are not allowed here";
        const std::string moved = "ip link set cvline1 netns " + std::to_string(client);
        if (!Runs("ip link add cvline0 type veth peer name cvline1") || !Runs(moved) ||
            !Runs("ip addr add 10.77.0.1/24 dev cvline0") || !Runs("ip link set cvline0 up")) {
            return "ip cannot make a line between two namespaces here";
        }
        return SlownessOf("cvline0").empty() ? "tc cannot make a line slow here" : "";
    }

    static std::string ClientEnd() {
        if (!Runs("ip addr add 10.77.0.2/24 dev cvline1") || !Runs("ip link set cvline1 up")) {
            return "ip cannot use its end of the line";
        }
        return SlownessOf("cvline1").empty() ? "tc cannot make a line slow here" : "";
    }
};

TEST(ASlowLine, LosesNothingThatIsGuaranteedAndKeepsItsOrder) {
    constexpr int count = 50;
    std::promise<int> clientThread;
    std::promise<std::string> hostEnd;
    std::promise<std::uint16_t> port;
    std::promise<void> heard;
    std::string skipped;
    std::vector<std::string> atHost;
    std::vector<std::string> atClient;

    std::thread hosting([&] {
        SlowLine line;
        const std::string trouble = line.HostEnd(clientThread.get_future());
        hostEnd.set_value(trouble);
        if (!trouble.empty()) return port.set_value(0);
        Peer host(OptionsAt(HostIp));
        host.Opens("Host");
        port.set_value(host.Dp.NameServerPort());
        if (!host.SeesSoon(2)) return;
        for (int i = 0; i < count; ++i) host.Says(0, std::to_string(i));
        for (int i = 0; i < count; ++i) atHost.push_back(host.Hears().Text);
        heard.get_future().wait();
    });
    std::thread joining([&] {
        clientThread.set_value(unshare(CLONE_NEWNET) == 0 ? gettid() : 0);
        skipped = hostEnd.get_future().get();
        if (skipped.empty()) skipped = SlowLine::ClientEnd();
        const std::uint16_t nameServer = port.get_future().get();
        if (!skipped.empty()) return heard.set_value();
        DirectPlayOptions options = OptionsAt(ClientIp);
        options.EnumerationTime = directplay::seconds(30);
        Peer client(options);
        client.Host = directplay::IpText(HostIp) + ":" + std::to_string(nameServer);
        client.Dp.InitializeConnection(std::string(ConnectionAddress::TcpIp));
        try {
            client.Dp.Open(client.Dp.GetDPEnumSessions({}).at(0), OpenMode::Join);
            client.Id = client.Dp.CreatePlayer("Client", "Player");
            for (int i = 0; i < count; ++i) client.Says(0, std::to_string(i));
            for (int i = 0; i < count; ++i) atClient.push_back(client.Hears().Text);
        } catch (const std::exception& error) {
            atClient.emplace_back(error.what());
        }
        heard.set_value();
    });
    hosting.join();
    joining.join();
    if (!skipped.empty()) GTEST_SKIP() << skipped;

    std::vector<std::string> expected;
    expected.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) expected.push_back(std::to_string(i));
    EXPECT_EQ(atHost, expected);
    EXPECT_EQ(atClient, expected);
}

#endif

}  // namespace
}  // namespace corvenna
