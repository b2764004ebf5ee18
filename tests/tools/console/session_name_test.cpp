#include "tools/console/session_name.h"

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

namespace corvenna {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string WhyNot(const std::string& name) {
    try {
        NameInSession(name, "the session's name");
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

TEST(NameInSession, GoesIntoTheCodePage) {
    EXPECT_EQ(NameInSession("Friday evening?", "it"), "Friday evening?");
    EXPECT_EQ(NameInSession("Z\xC3\xBCrich \xE2\x82\xAC", "it"), "Z\xFCrich \x80");
    EXPECT_EQ(NameInSession("", "it"), "");
}

TEST(NameInSession, HasRoomFor255Characters) {
    EXPECT_EQ(WhyNot(std::string(254, 'x')), "");
    EXPECT_EQ(WhyNot(std::string(255, 'x')), "");
    EXPECT_EQ(WhyNot(std::string(256, 'x')),
              "the session's name has 256 characters; there is room for 255 at most");
    EXPECT_THAT(WhyNot(std::string(1000, 'x')), HasSubstr("1000 characters"));
}

TEST(NameInSession, OfCharactersThatTheCodePageLacksIsRefused) {
    EXPECT_THAT(WhyNot("\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0"), HasSubstr("Windows-1252"));
    EXPECT_THAT(WhyNot("broken \xC3"), StartsWith("the session's name"));
}

TEST(NameInSession, WithControlCharactersIsRefused) {
    for (const char* name : {"two\nlines", "tab\t", "\x7F", "\x1B[31m"}) {
        EXPECT_EQ(WhyNot(name), "the session's name has a control character in it");
    }
}

}  // namespace
}  // namespace corvenna
