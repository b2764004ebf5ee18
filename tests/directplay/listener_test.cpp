#include "link/directplay/listener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "directplay/io_scene.h"

namespace corvenna::directplay {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t NobodysAddress = 0xCB007101;  // 203.0.113.1, kept free for examples
constexpr std::uint16_t LastPort = 65535;

struct Listening : IoScene, testing::Test {
    asio::ip::tcp::socket ConnectsFrom(std::uint32_t ip) {
        asio::ip::tcp::socket socket(Io, {asio::ip::address_v4(ip), 0});
        socket.connect({asio::ip::address_v4(ThisComputer), Door.Port()});
        return socket;
    }
    void Starts() {
        ASSERT_FALSE(Door.Open(ThisComputer, {}));
        Door.Start([this](asio::ip::tcp::socket socket, std::uint32_t ip) {
            Sockets.push_back(std::move(socket));
            Sources.push_back(ip);
        });
    }

    Listener Door{Io};
    std::vector<asio::ip::tcp::socket> Sockets;
    std::vector<std::uint32_t> Sources;
};

// ---- The port

TEST_F(Listening, WithoutAWishItTakesAnyFreePort) {
    EXPECT_EQ(Door.Port(), 0);
    EXPECT_FALSE(Door.Open(ThisComputer, {}));
    EXPECT_NE(Door.Port(), 0);
}

TEST_F(Listening, OfARangeItTakesTheFirstFreePort) {
    Listener first(Io);
    ASSERT_FALSE(first.Open(ThisComputer, {}));
    const std::uint16_t taken = first.Port();
    ASSERT_LT(taken, LastPort - 100);
    ASSERT_FALSE(Door.Open(ThisComputer, {taken, static_cast<std::uint16_t>(taken + 100)}));
    EXPECT_GT(Door.Port(), taken);
}

TEST_F(Listening, WithoutAFreePortItSaysWhyAndMayTryElsewhere) {
    Listener first(Io);
    ASSERT_FALSE(first.Open(ThisComputer, {}));
    EXPECT_EQ(Door.Open(ThisComputer, {first.Port(), first.Port()}), asio::error::address_in_use);
    EXPECT_EQ(Door.Port(), 0);
    EXPECT_FALSE(Door.Open(ThisComputer, {}));
    EXPECT_NE(Door.Port(), 0);
}

TEST_F(Listening, ARangeMayEndAtTheLastPortThereIs) {
    Listener first(Io);
    static_cast<void>(first.Open(ThisComputer, {LastPort, LastPort}));  // unless another program has it
    EXPECT_EQ(Door.Open(ThisComputer, {LastPort, LastPort}), asio::error::address_in_use);
}

TEST_F(Listening, AnAddressThatIsNotThisComputersIsAnError) {
    EXPECT_TRUE(Door.Open(NobodysAddress, {}));
    EXPECT_EQ(Door.Port(), 0);
}

/// The end that closes first keeps the port for minutes, in case something of the connection is still under
/// way.
TEST_F(Listening, APortMayBeTakenAgainRightBehindAConnection) {
    auto earlier = std::make_unique<Listener>(Io);
    ASSERT_FALSE(earlier->Open(ThisComputer, {}));
    const std::uint16_t port = earlier->Port();
    bool hungUp = false;
    earlier->Start([&](asio::ip::tcp::socket socket, std::uint32_t) {
        socket.close();
        hungUp = true;
    });
    {
        const auto caller = RawPeer::Connects(port);
        ASSERT_TRUE(Until([&] { return hungUp; }));
        ASSERT_TRUE(caller->IsEndedByTheOther());
    }
    earlier.reset();
    EXPECT_FALSE(Door.Open(ThisComputer, {port, port}));
}

// ---- Those who come

TEST_F(Listening, TellsFromWhichAddressEachOneCame) {
    Starts();
    const auto one = ConnectsFrom(ThisComputer);
    ASSERT_TRUE(Until([&] { return Sources.size() == 1; }));
    const auto other = ConnectsFrom(0x7FFFFFFE);  // the last address of this computer
    ASSERT_TRUE(Until([&] { return Sources.size() == 2; }));
    EXPECT_THAT(Sources, ElementsAre(ThisComputer, 0x7FFFFFFE));
}

TEST_F(Listening, WhoHangsUpAtOnceKeepsNobodyElseOut) {
    Starts();
    RawPeer::Connects(Door.Port())->Resets();
    const auto other = ConnectsFrom(0x7F000002);
    ASSERT_TRUE(Until([&] { return !Sources.empty() && Sources.back() == 0x7F000002; }));
}

TEST_F(Listening, WithoutADescriptorToSpareItTriesAgain) {
    Starts();
    const auto caller = RawPeer::Connects(Door.Port());
    {
        const NothingMoreOpens none;
        if (!none.Holds()) GTEST_SKIP() << NoSuchLimit;
        Io.restart();
        ASSERT_EQ(Io.run_one_for(Patience), 1U);
        EXPECT_THAT(Sources, ElementsAre());
    }
    EXPECT_TRUE(Until([&] { return Sources.size() == 1; }));
}

}  // namespace
}  // namespace corvenna::directplay
