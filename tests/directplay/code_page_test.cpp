#include "link/directplay/code_page.h"

#include <gtest/gtest.h>

namespace corvenna::directplay {
namespace {

TEST(CodePage, EveryByteComesBackFromUtf16) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(ToCodePage(ToUtf16(text)), text) << byte;
    }
}

TEST(CodePage, TheMiddleBlockHasItsOwnCharacters) {
    EXPECT_EQ(ToUtf16("\x80\x85\x99\x9F"), u"\u20AC\u2026\u2122\u0178");
    EXPECT_EQ(ToUtf16("\x7F\xA0\xE9\xFF"), u"\u007F\u00A0\u00E9\u00FF");
}

TEST(CodePage, WhatTheCodePageDoesNotHaveBecomesAQuestionMark) {
    EXPECT_EQ(ToCodePage(u"\u65E5A\uFFFF"), "?A?");
    EXPECT_EQ(ToCodePage(u"\xD83D\xDE00"), "??");  // a pair of units beyond the basic plane
    EXPECT_EQ(ToCodePage(u"\u0080"), "?");         // that number is the euro's byte
    EXPECT_EQ(ToCodePage(u"\u0081"), "\x81");      // that byte has no other character
}

}  // namespace
}  // namespace corvenna::directplay
