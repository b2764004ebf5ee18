#include "station/code_page.h"

#include <gtest/gtest.h>

namespace corvenna {
namespace {

TEST(CodePage, PlainLettersStay) {
    EXPECT_EQ(CodePageToUtf8("KSEA, 1-VFR"), "KSEA, 1-VFR");
    EXPECT_EQ(Utf8ToCodePage("KSEA, 1-VFR"), "KSEA, 1-VFR");
}

TEST(CodePage, UmlautsHaveTheNumberOfTheirCharacter) {
    EXPECT_EQ(CodePageToUtf8("Z\xFCrich"), "Z\xC3\xBCrich");
    EXPECT_EQ(Utf8ToCodePage("Z\xC3\xBCrich"), "Z\xFCrich");
}

TEST(CodePage, TheEuroSignStandsAt80h) {
    EXPECT_EQ(CodePageToUtf8("\x80"), "\xE2\x82\xAC");
    EXPECT_EQ(Utf8ToCodePage("\xE2\x82\xAC"), "\x80");
}

TEST(CodePage, EveryByteComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(Utf8ToCodePage(CodePageToUtf8(text)), text) << byte;
    }
}

TEST(CodePage, ACharacterOutsideItBecomesAQuestionMark) {
    EXPECT_EQ(Utf8ToCodePage("a\xE4\xB8\xAD"
                             "b"),
              "a?b");
    EXPECT_EQ(Utf8ToCodePage("a\xF0\x9F\x9B\xA9"
                             "b"),
              "a?b");
    EXPECT_EQ(Utf8ToCodePage("\xC4\x80"), "?");
}

TEST(CodePage, AControlCharacterThatThePageReplacesIsNoByteOfIt) {
    EXPECT_EQ(Utf8ToCodePage("\xC2\x80"), "?");
    EXPECT_EQ(Utf8ToCodePage("\xC2\x81"), "\x81");
}

TEST(CodePage, BrokenUtf8CostsNoMoreThanItsBytes) {
    EXPECT_EQ(Utf8ToCodePage("\xFC"
                             "1"),
              "?1");                              // a byte of the code page itself
    EXPECT_EQ(Utf8ToCodePage("\xC3"), "?");       // ends too early
    EXPECT_EQ(Utf8ToCodePage("\xE2\x82"), "??");  // ends too early
    EXPECT_EQ(Utf8ToCodePage("\xC3"
                             "1"),
              "?1");                                 // not continued
    EXPECT_EQ(Utf8ToCodePage("\xC0\x80"), "??");     // a longer form than needed
    EXPECT_EQ(Utf8ToCodePage("\xE0\x80\x80"), "?");  // likewise, with bytes that go together
    EXPECT_EQ(Utf8ToCodePage("\x80"), "?");          // continues nothing
    EXPECT_EQ(Utf8ToCodePage("\xFF\xFE"), "??");
}

TEST(CodePage, EveryByteComesBackFromUtf16) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(Utf16ToCodePage(CodePageToUtf16(text)), text) << byte;
    }
}

TEST(CodePage, Utf16HasTheCharactersOfTheMiddleBytes) {
    EXPECT_EQ(CodePageToUtf16("\x80\x85\x99\x9F"), u"\u20AC\u2026\u2122\u0178");
    EXPECT_EQ(CodePageToUtf16("\x7F\xA0\xE9\xFF"), u"\u007F\u00A0\u00E9\u00FF");
}

TEST(CodePage, WhatIsNotInTheCodePageComesFromUtf16AsAQuestionMark) {
    EXPECT_EQ(Utf16ToCodePage(u"\u65E5A\uFFFF"), "?A?");
    EXPECT_EQ(Utf16ToCodePage(u"\xD83D\xDE00"), "??");  // a pair for one character
    EXPECT_EQ(Utf16ToCodePage(u"\u0080"), "?");         // that number is the euro's byte
}

TEST(CodePage, NothingIsNothing) {
    EXPECT_EQ(CodePageToUtf8(""), "");
    EXPECT_EQ(Utf8ToCodePage(""), "");
}

TEST(Report, WhatIsUtf8StaysAndAnythingElseIsTextInTheCodePage) {
    EXPECT_EQ(ReportToUtf8("Pr\xC3\xBC"
                           "fung/Corvenna.cfg"),
              "Pr\xC3\xBC"
              "fung/Corvenna.cfg");
    EXPECT_EQ(ReportToUtf8("Pr\xFC"
                           "fung/Corvenna.cfg"),
              "Pr\xC3\xBC"
              "fung/Corvenna.cfg");
    EXPECT_EQ(ReportToUtf8("\xC3"), "\xC3\x83");
    EXPECT_EQ(ReportToUtf8(""), "");
}

}  // namespace
}  // namespace corvenna
