#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <memory>
#include <optional>
#include <set>

#include "directplay/peers.h"
#include "support/system_limits.h"

/// Sessions of many participants, each with a thread of its own, over real sockets.
namespace corvenna {
namespace {

/// Everybody has a connection each way to everybody else.
bool HasSocketsFor(std::size_t peers) { return MayOpen(2 * peers * peers + 20 * peers); }

/// What one participant saw and heard.
struct Story {
    std::string Trouble;
    std::set<std::string> Heard;
    std::size_t SeenAtTheEnd = 0;
};

class Meeting {
  public:
    explicit Meeting(std::size_t peers) : peers_(peers), together_(static_cast<std::ptrdiff_t>(peers)) {
        host_.Opens("Peer 0");
    }

    /// Everybody comes in at once, tells everybody his name, hears everybody, and all but the host leave.
    std::vector<Story> Takes() {
        std::vector<Story> stories(peers_);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < peers_; ++i) {
            threads.emplace_back([this, i, &story = stories[i]] { Attends(i, story); });
        }
        for (std::thread& thread : threads) thread.join();
        return stories;
    }

  private:
    void Attends(std::size_t number, Story& story) {
        std::optional<Peer> guest;
        Peer& me = number == 0 ? host_ : guest.emplace();
        try {
            if (number != 0) me.Joins(host_, "Peer " + std::to_string(number));
        } catch (const SessionError& error) {
            story.Trouble = error.what();
        }
        const bool seesAll = story.Trouble.empty() && me.SeesSoon(peers_);
        if (!seesAll && story.Trouble.empty()) story.Trouble = "somebody never came";
        together_.arrive_and_wait();
        if (story.Trouble.empty()) {
            me.Says(0, me.Dp.GetPlayerFriendlyName(me.Id));
            for (std::size_t i = 1; i < peers_; ++i) {
                const Peer::Heard heard = me.Hears();
                if (heard.From != 0 && heard.Text == me.Dp.GetPlayerFriendlyName(heard.From)) {
                    story.Heard.insert(heard.Text);
                }
            }
        }
        together_.arrive_and_wait();
        if (number != 0) {
            if (story.Trouble.empty()) me.Dp.Close();
        } else {
            me.SeesSoon(1);
            story.SeenAtTheEnd = me.Dp.GetDPEnumPlayers().size();
        }
    }

    std::size_t peers_;
    std::barrier<> together_;
    Peer host_;
};

struct ManyPeers : testing::TestWithParam<std::size_t> {};

TEST_P(ManyPeers, AllHearAllAndAreSeenToLeave) {
    if (!HasSocketsFor(GetParam())) GTEST_SKIP() << "this system allows too few open sockets";
    const std::vector<Story> stories = Meeting(GetParam()).Takes();
    for (std::size_t i = 0; i < stories.size(); ++i) {
        EXPECT_EQ(stories[i].Trouble, "") << i;
        EXPECT_EQ(stories[i].Heard.size(), GetParam() - 1) << i;
    }
    EXPECT_EQ(stories[0].SeenAtTheEnd, 1u);
}

INSTANTIATE_TEST_SUITE_P(Of, ManyPeers, testing::Values(2, 16, 64));

TEST(ASessionWhoseHostLeaves, GoesOnForAllUnderTheNextHost) {
    Peer host;
    host.Opens("Host");
    std::vector<std::unique_ptr<Peer>> others;
    for (int i = 0; i < 8; ++i) {
        others.push_back(std::make_unique<Peer>());
        others.back()->Joins(host, "Peer " + std::to_string(i));
    }
    for (const auto& peer : others) ASSERT_TRUE(peer->SeesSoon(9));
    host.Dp.Close();
    for (const auto& peer : others) ASSERT_TRUE(peer->SeesSoon(8));
    const auto isHost = [](const auto& peer) { return peer->Dp.IsHost(); };
    ASSERT_TRUE(Eventually([&] { return std::count_if(others.begin(), others.end(), isHost) == 1; }));
    Peer& next = **std::find_if(others.begin(), others.end(), isHost);
    for (const auto& peer : others) peer->Says(0, "still here");
    for (const auto& peer : others) {
        for (int i = 0; i < 7; ++i) EXPECT_EQ(peer->Hears().Text, "still here");
    }
    Peer newcomer;
    newcomer.Joins(next, "Newcomer");
    for (const auto& peer : others) EXPECT_TRUE(peer->SeesSoon(9));
}

}  // namespace
}  // namespace corvenna
