#include "link/directplay/interfaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace corvenna::directplay {
namespace {

using testing::Contains;

TEST(Interfaces, EverybodyAndThisComputerAreSpokenTo) {
    const auto addresses = BroadcastAddresses();
    EXPECT_THAT(addresses, Contains(0xFFFFFFFF));
    EXPECT_THAT(addresses, Contains(0x7F000001));
}

TEST(Interfaces, NobodyIsSpokenToTwice) {
    const auto addresses = BroadcastAddresses();
    EXPECT_TRUE(std::is_sorted(addresses.begin(), addresses.end()));
    EXPECT_EQ(std::adjacent_find(addresses.begin(), addresses.end()), addresses.end());
}

}  // namespace
}  // namespace corvenna::directplay
