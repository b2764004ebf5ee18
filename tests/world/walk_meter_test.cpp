#include "world/walk_meter.h"

#include <gmock/gmock.h>

#include "world/temp_folder.h"

namespace corvenna {
namespace {

constexpr std::int64_t Megabyte = 1 << 20;

TEST(WalkMeter, LetsASmallFileBeWalkedForAMegabyte) {
    WalkMeter meter(0);
    EXPECT_NO_THROW(meter.Walked(0, Megabyte));
    EXPECT_EQ(WhatIsThrown<DamagedData>([&] { meter.Walked(77, 1); }),
              "byte 77: the entries lead over the same data again and again");
}

TEST(WalkMeter, LetsALargeFileBeWalkedEightTimesMore) {
    WalkMeter meter(50 * Megabyte);
    for (int walk = 0; walk < 8; ++walk) EXPECT_NO_THROW(meter.Walked(0, 50 * Megabyte));
    EXPECT_NO_THROW(meter.Walked(0, Megabyte));
    EXPECT_THROW(meter.Walked(0, 1), DamagedData);
}

}  // namespace
}  // namespace corvenna
