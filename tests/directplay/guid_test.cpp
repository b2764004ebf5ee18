#include "link/directplay/guid.h"

#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

TEST(GuidWords, TextAndGuidGoBothWays) {
    const Guid guid{0xCC080A27, 0x6D4E, 0x11D0, {0x8E, 0x21, 0x00, 0xA0, 0xC9, 0x05, 0x42, 0xEF}};
    EXPECT_EQ(GuidText(guid), "{CC080A27-6D4E-11D0-8E21-00A0C90542EF}");
    EXPECT_EQ(ParseGuid("{CC080A27-6D4E-11D0-8E21-00A0C90542EF}"), guid);
    EXPECT_EQ(ParseGuid("{cc080a27-6d4e-11d0-8e21-00a0c90542ef}"), guid);
}

TEST(GuidWords, ATextOfAnotherShapeIsNone) {
    EXPECT_FALSE(ParseGuid(""));
    EXPECT_FALSE(ParseGuid("CC080A27-6D4E-11D0-8E21-00A0C90542EF"));
    EXPECT_FALSE(ParseGuid("{CC080A27-6D4E-11D0-8E21-00A0C90542EG}"));
    EXPECT_FALSE(ParseGuid("{CC080A27+6D4E-11D0-8E21-00A0C90542EF}"));
    EXPECT_FALSE(ParseGuid("{CC080A27-6D4E-11D0-8E21-00A0C90542EF} "));
}

TEST(GuidWords, RandomOnesDifferAndAreNotZero) {
    const Guid one = RandomGuid();
    EXPECT_FALSE(one.IsZero());
    EXPECT_NE(one, RandomGuid());
    EXPECT_TRUE(Guid{}.IsZero());
}

}  // namespace
}  // namespace corvenna::directplay
