#include "station/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace corvenna {
namespace {

TEST(Numbers, HalvesRoundToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(-1.5), -2);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
}

TEST(Numbers, WhatIsNoHalfRoundsToTheNearest) {
    EXPECT_EQ(RoundHalfEven(2.4999999), 2);
    EXPECT_EQ(RoundHalfEven(2.5000001), 3);
    EXPECT_EQ(RoundHalfEven(-2.5000001), -3);
}

TEST(Numbers, RoundingToDecimalsIsHalfToEvenToo) {
    EXPECT_EQ(RoundTo(0.125, 100), 0.12);
    EXPECT_EQ(RoundTo(0.375, 100), 0.38);
    EXPECT_EQ(RoundTo(-0.125, 100), -0.12);
    EXPECT_EQ(RoundTo5(47.123454), 47.12345);
    EXPECT_EQ(RoundTo5(47.123456), 47.12346);
    EXPECT_EQ(RoundTo5(-122.123456), -122.12346);
}

TEST(Numbers, AWholeNumberFitsUpToTheBoundsOfItsField) {
    EXPECT_EQ(ToWhole<std::int16_t>(32767.0), 32767);
    EXPECT_EQ(ToWhole<std::int16_t>(32767.4), 32767);
    EXPECT_EQ(ToWhole<std::int16_t>(-32768.5), -32768);
    EXPECT_EQ(ToWhole<std::uint8_t>(255.4), 255);
    EXPECT_EQ(ToWhole<std::int32_t>(2147483647.0), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(ToWhole<std::int32_t>(-2147483648.0), std::numeric_limits<std::int32_t>::min());
}

TEST(Numbers, AWholeNumberBeyondItsFieldIsAnOverflow) {
    EXPECT_THROW(ToWhole<std::int16_t>(32767.5), std::overflow_error);
    EXPECT_THROW(ToWhole<std::int16_t>(-32769.0), std::overflow_error);
    EXPECT_THROW(ToWhole<std::uint8_t>(-1.0), std::overflow_error);
    EXPECT_THROW(ToWhole<std::uint8_t>(255.6), std::overflow_error);
    EXPECT_THROW(ToWhole<std::int32_t>(2147483648.0), std::overflow_error);
    EXPECT_THROW(ToWhole<std::int32_t>(-2147483649.0), std::overflow_error);
}

TEST(Numbers, WhatIsNoNumberFitsNoField) {
    EXPECT_THROW(ToWhole<std::int32_t>(std::nan("")), std::overflow_error);
    EXPECT_THROW(ToWhole<std::int32_t>(HUGE_VAL), std::overflow_error);
    EXPECT_THROW(ToWhole<std::int32_t>(-HUGE_VAL), std::overflow_error);
}

TEST(Numbers, NarrowingKeepsWhatFitsAndRefusesTheRest) {
    EXPECT_EQ(Narrow<std::int16_t>(32767), 32767);
    EXPECT_EQ(Narrow<std::int16_t>(-32768), -32768);
    EXPECT_THROW(Narrow<std::int16_t>(32768), std::overflow_error);
    EXPECT_THROW(Narrow<std::int16_t>(-32769), std::overflow_error);
    EXPECT_THROW(Narrow<std::uint8_t>(-1), std::overflow_error);
    EXPECT_THROW(Narrow<std::int32_t>(std::size_t{2147483648}), std::overflow_error);
}

}  // namespace
}  // namespace corvenna
