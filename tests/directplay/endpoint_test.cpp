#include "link/directplay/endpoint.h"

#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

TEST(EndpointWords, AddressesGoBothWays) {
    EXPECT_EQ(IpText(0x7F000001), "127.0.0.1");
    EXPECT_EQ(EndpointText({0xC0A80105, 2300}), "192.168.1.5:2300");
    EXPECT_EQ(ParseIp("192.168.1.5"), 0xC0A80105u);
    EXPECT_EQ(ParseIp("0.0.0.0"), 0u);
    EXPECT_EQ(ParseIp("255.255.255.255"), 0xFFFFFFFFu);
}

TEST(EndpointWords, OtherTextsAreNoAddress) {
    for (const char* text :
         {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.4 ", " 1.2.3.4", "1..2.3", "host", "-1.2.3.4"}) {
        EXPECT_FALSE(ParseIp(text)) << text;
    }
}

TEST(EndpointWords, ThisComputerIsAllOf127) {
    EXPECT_TRUE(IsLoopback(0x7F000001));
    EXPECT_TRUE(IsLoopback(0x7FFFFFFF));
    EXPECT_FALSE(IsLoopback(0x80000001));
    EXPECT_FALSE(IsLoopback(0x7EFFFFFF));
}

}  // namespace
}  // namespace corvenna::directplay
