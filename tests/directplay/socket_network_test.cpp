#include "link/directplay/socket_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <optional>

#include "directplay/raw_peer.h"
#include "support/system_limits.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Writes down what the sockets tell.
struct Diary final : NetworkEvents {
    void OnFrame(std::uint32_t, ByteSpan frame) override { Add("frame of " + std::to_string(frame.size())); }
    void OnDatagram(const Endpoint&, ByteSpan datagram) override {
        Add("datagram of " + std::to_string(datagram.size()));
    }
    void OnConnectionLost(const Endpoint&) override { Add("lost"); }
    void OnDisconnected(const Endpoint&) override { Add("disconnected"); }
    void OnUnreachable(const Endpoint&, const std::string& why) override { Add("unreachable: " + why); }
    void OnMisbehaved(const Endpoint&, const std::string& why) override { Add("misbehaved: " + why); }
    void OnProbed(const Endpoint&, bool reached) override { Add(reached ? "reached" : "not reached"); }
    void OnTimer() override {
        const std::lock_guard lock(Mutex);
        ++Ticks;
    }

    void Add(std::string line) {
        const std::lock_guard lock(Mutex);
        Lines.push_back(std::move(line));
    }

    std::vector<std::string> Read() {
        const std::lock_guard lock(Mutex);
        return Lines;
    }

    /// Waits until so many lines stand in it.
    std::vector<std::string> Wait(std::size_t count) {
        Eventually([&] { return Read().size() >= count; });
        return Read();
    }

    bool TicksGoOn() {
        int before = 0;
        {
            const std::lock_guard lock(Mutex);
            before = Ticks;
        }
        return Eventually([&] {
            const std::lock_guard lock(Mutex);
            return Ticks >= before + 3;
        });
    }

    std::mutex Mutex;
    std::vector<std::string> Lines;
    int Ticks = 0;
};

SharedBytes FrameOf(std::size_t payload) {
    return std::make_shared<const Bytes>(Frame(2300, Bytes(PlayerIdsSize + payload)));
}

struct Sockets : testing::Test {
    void SetUp() override {
        Options = TestOptions().Sockets;
        Net = std::make_unique<SocketNetwork>(Options, Events);
        Net->Start();
    }

    Endpoint Own() const { return {0x7F000001, Net->TcpPort()}; }

    SocketOptions Options;
    Diary Events;
    std::unique_ptr<SocketNetwork> Net;
};

TEST_F(Sockets, FramesGoOutInTheirOrderOverOneConnection) {
    for (std::size_t i = 0; i < 3; ++i) Net->SendFrame(Own(), FrameOf(i));
    EXPECT_THAT(Events.Wait(3), ElementsAre("frame of 28", "frame of 29", "frame of 30"));
}

TEST_F(Sockets, WhatIsPutInIsSentBeforeTheConnectionIsClosed) {
    Net->SendFrame(Own(), FrameOf(500000));
    Net->SendFrame(Own(), FrameOf(0));
    Net->Disconnect(Own());
    const auto lines = Events.Wait(3);
    EXPECT_THAT(lines, ElementsAre("frame of 500028", "frame of 28", "lost"));
}

TEST_F(Sockets, WhereNobodyListensTheReasonIsTold) {
    Endpoint nobody;
    {
        RawPeer gone;
        nobody = gone.Tcp();
    }
    Net->SendFrame(nobody, FrameOf(0));
    EXPECT_THAT(Events.Wait(1), ElementsAre(HasSubstr("nothing listens there")));
    Net->Probe(nobody);
    EXPECT_EQ(Events.Wait(2).back(), "not reached");
}

TEST_F(Sockets, AProbeReachesWhoListens) {
    RawPeer peer;
    Net->Probe(peer.Tcp());
    EXPECT_THAT(Events.Wait(1), ElementsAre("reached"));
}

TEST_F(Sockets, WithoutASocketToSpareNobodyIsTakenForGone) {
    RawPeer peer;
    std::optional<NothingMoreOpens> limit(std::in_place);
    if (!limit->Holds()) GTEST_SKIP() << NoSuchLimit;
    Net->SendFrame(peer.Tcp(), std::make_shared<const Bytes>(Frame(2300, EncodeSystemMessage(YouAreDead{}))));
    Net->Probe(peer.Tcp());
    const auto lines = Events.Wait(1);
    const bool goesOn = Events.TicksGoOn();
    limit.reset();
    EXPECT_TRUE(goesOn);
    EXPECT_THAT(lines, ElementsAre("reached"));
    EXPECT_NO_THROW(peer.Gets<YouAreDead>());
    EXPECT_THAT(Events.Read(), ElementsAre("reached"));
}

TEST_F(Sockets, WhoIsCutOffLosesItsConnectionsBothWays) {
    RawPeer peer;
    peer.Says(Net->TcpPort(), 1, 2, "x");
    Net->SendFrame(peer.Tcp(), std::make_shared<const Bytes>(Frame(2300, EncodeSystemMessage(YouAreDead{}))));
    peer.Gets<YouAreDead>();
    Events.Wait(1);
    Net->CutOff(peer.Tcp());
    EXPECT_TRUE(peer.IsCutOffBy(Net->TcpPort()));
}

TEST_F(Sockets, DatagramsArrive) {
    Net->SendDatagram({0x7F000001, Net->UdpPort()}, std::make_shared<const Bytes>(Bytes(60)));
    EXPECT_THAT(Events.Wait(1), ElementsAre("datagram of 60"));
}

TEST_F(Sockets, AtTheNameServersPortFramesAndDatagramsArriveToo) {
    ASSERT_TRUE(Net->OpenNameServerPorts());
    EXPECT_TRUE(Net->OpenNameServerPorts());
    Net->SendFrame({0x7F000001, Net->NameServerPort()}, FrameOf(0));
    EXPECT_THAT(Events.Wait(1), ElementsAre("frame of 28"));
    Net->SendDatagram({0x7F000001, Net->NameServerPort()}, std::make_shared<const Bytes>(Bytes(60)));
    EXPECT_EQ(Events.Wait(2).back(), "datagram of 60");

    SocketOptions options = Options;
    options.NameServer = Net->NameServerPort();
    Diary events;
    SocketNetwork second(options, events);
    EXPECT_FALSE(second.OpenNameServerPorts());
}

TEST_F(Sockets, AConnectionComesFromTheAddressThatIsListenedAt) {
    SocketOptions options = Options;
    options.BindIp = 0x7F000002;
    Diary events;
    struct Sources final : NetworkEvents {
        void OnFrame(std::uint32_t sourceIp, ByteSpan) override { Ip = sourceIp; }
        void OnDatagram(const Endpoint&, ByteSpan) override {}
        void OnConnectionLost(const Endpoint&) override {}
        void OnDisconnected(const Endpoint&) override {}
        void OnUnreachable(const Endpoint&, const std::string&) override {}
        void OnMisbehaved(const Endpoint&, const std::string&) override {}
        void OnProbed(const Endpoint&, bool) override {}
        void OnTimer() override {}
        std::atomic<std::uint32_t> Ip = 0;
    } sources;
    SocketNetwork reader(Options, sources);
    reader.Start();
    SocketNetwork writer(options, events);
    writer.Start();
    writer.SendFrame({0x7F000001, reader.TcpPort()}, FrameOf(0));
    EXPECT_TRUE(Eventually([&] { return sources.Ip.load() != 0; }));
    EXPECT_EQ(sources.Ip.load(), 0x7F000002u);
    reader.Stop();
}

}  // namespace
}  // namespace corvenna::directplay
