#include "link/directplay/datagram_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "directplay/io_scene.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;

constexpr std::uint16_t LastPort = 65535;
constexpr std::size_t LargestDatagram = 65507;  // what an IP packet holds besides its two headers

struct DatagramPorts : IoScene, testing::Test {
    struct Came {
        Endpoint Source;
        Bytes What;
    };

    void Starts() {
        ASSERT_FALSE(Port.Open(ThisComputer, {}));
        Port.Start([this](const Endpoint& source, ByteSpan datagram) {
            Diary.push_back({source, Bytes(datagram.begin(), datagram.end())});
        });
    }
    std::vector<std::size_t> Sizes() const {
        std::vector<std::size_t> sizes;
        sizes.reserve(Diary.size());
        for (const Came& came : Diary) sizes.push_back(came.What.size());
        return sizes;
    }
    Endpoint Place() const { return {ThisComputer, Port.Port()}; }

    DatagramPort Port{Io};
    std::vector<Came> Diary;
};

// ---- The port

TEST_F(DatagramPorts, WithoutAWishAnyFreePortIsTaken) {
    EXPECT_EQ(Port.Port(), 0);
    EXPECT_FALSE(Port.Open(ThisComputer, {}));
    EXPECT_NE(Port.Port(), 0);
}

TEST_F(DatagramPorts, OfARangeTheFirstFreePortIsTaken) {
    DatagramPort first(Io);
    ASSERT_FALSE(first.Open(ThisComputer, {}));
    const std::uint16_t taken = first.Port();
    ASSERT_LT(taken, LastPort - 100);
    ASSERT_FALSE(Port.Open(ThisComputer, {taken, static_cast<std::uint16_t>(taken + 100)}));
    EXPECT_GT(Port.Port(), taken);
}

TEST_F(DatagramPorts, WithoutAFreePortTheReasonIsToldAndAnotherOneMayBeTried) {
    DatagramPort first(Io);
    ASSERT_FALSE(first.Open(ThisComputer, {}));
    EXPECT_EQ(Port.Open(ThisComputer, {first.Port(), first.Port()}), asio::error::address_in_use);
    EXPECT_EQ(Port.Port(), 0);
    EXPECT_FALSE(Port.Open(ThisComputer, {}));
}

TEST_F(DatagramPorts, ARangeMayEndAtTheLastPortThereIs) {
    DatagramPort first(Io);
    static_cast<void>(first.Open(ThisComputer, {LastPort, LastPort}));  // unless another program has it
    EXPECT_EQ(Port.Open(ThisComputer, {LastPort, LastPort}), asio::error::address_in_use);
}

// ---- What comes

TEST_F(DatagramPorts, ADatagramComesWithItsSource) {
    Starts();
    const RawPeer peer;
    const Bytes bytes{std::byte{1}, std::byte{0xFF}};
    peer.SendsDatagram(Port.Port(), bytes);
    ASSERT_TRUE(Until([&] { return Diary.size() == 1; }));
    EXPECT_EQ(Diary[0].Source, peer.Udp());
    EXPECT_EQ(Diary[0].What, bytes);
}

TEST_F(DatagramPorts, TheEmptyAndTheLargestComeWhole) {
    Starts();
    const RawPeer peer;
    peer.SendsDatagram(Port.Port(), {});
    peer.SendsDatagram(Port.Port(), Bytes(LargestDatagram));
    peer.SendsDatagram(Port.Port(), Bytes(1));
    ASSERT_TRUE(Until([&] { return Diary.size() == 3; }));
    EXPECT_THAT(Sizes(), ElementsAre(0, LargestDatagram, 1));
}

TEST_F(DatagramPorts, MoreThanAreTakenInAtOnceComeInTheirOrder) {
    Starts();
    const RawPeer peer;
    std::vector<std::size_t> sent(200);
    std::iota(sent.begin(), sent.end(), std::size_t{0});
    for (const std::size_t size : sent) peer.SendsDatagram(Port.Port(), Bytes(size));
    ASSERT_TRUE(Until([&] { return Diary.size() == sent.size(); }));
    EXPECT_EQ(Sizes(), sent);
}

// ---- What goes

TEST_F(DatagramPorts, WhatIsSentComesFromTheOpenPort) {
    Starts();
    DatagramPort writer(Io);
    ASSERT_FALSE(writer.Open(ThisComputer, {}));
    writer.Send(Place(), Bytes(7));
    ASSERT_TRUE(Until([&] { return Diary.size() == 1; }));
    EXPECT_EQ(Diary[0].Source, (Endpoint{ThisComputer, writer.Port()}));
}

TEST_F(DatagramPorts, WhatCannotBeSentIsLostAndTheNextOneArrives) {
    Starts();
    Port.Send(Place(), Bytes(LargestDatagram + 1));
    Port.Send({ThisComputer, 0}, Bytes(1));
    Port.Send({0xFFFFFFFF, 0}, Bytes(1));
    Port.Send(Place(), Bytes(7));
    ASSERT_TRUE(Until([&] { return !Diary.empty(); }));
    EXPECT_THAT(Sizes(), ElementsAre(7));
}

/// The system reports at the next call that nobody was there.
TEST_F(DatagramPorts, WhatReachesNobodyCostsNoOtherDatagram) {
    Starts();
    Endpoint nobody;
    {
        const RawPeer gone;
        nobody = gone.Udp();
    }
    for (int i = 0; i < 3; ++i) {
        Port.Send(nobody, Bytes(1));
        Port.Send(Place(), Bytes(7));
    }
    ASSERT_TRUE(Until([&] { return Diary.size() == 3; }));
    EXPECT_THAT(Sizes(), ElementsAre(7, 7, 7));
}

TEST_F(DatagramPorts, APortThatNeverOpenedSendsNothing) {
    Starts();
    DatagramPort closed(Io);
    closed.Send(Place(), Bytes(1));
    Port.Send(Place(), Bytes(7));
    ASSERT_TRUE(Until([&] { return !Diary.empty(); }));
    EXPECT_THAT(Sizes(), ElementsAre(7));
}

}  // namespace
}  // namespace corvenna::directplay
