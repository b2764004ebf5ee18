#include "station/text.h"

#include <gtest/gtest.h>

#include <string>

namespace corvenna {
namespace {

TEST(Text, CaseConcernsAsciiLettersOnly) {
    EXPECT_EQ(LowerCase("KJFK-7 [@`{] \xC9"), "kjfk-7 [@`{] \xC9");
    EXPECT_EQ(UpperCase("kjfk-7 [@`{] \xE9"), "KJFK-7 [@`{] \xE9");
    EXPECT_EQ(LowerCase('A'), 'a');
    EXPECT_EQ(LowerCase('Z'), 'z');
    EXPECT_EQ(UpperCase('a'), 'A');
    EXPECT_EQ(UpperCase('z'), 'Z');
}

TEST(Text, EqualIgnoringCaseWantsTheSameLength) {
    EXPECT_TRUE(EqualIgnoringCase("R", "r"));
    EXPECT_TRUE(EqualIgnoringCase("", ""));
    EXPECT_FALSE(EqualIgnoringCase("R", "rr"));
    EXPECT_FALSE(EqualIgnoringCase("rr", "R"));
    EXPECT_FALSE(EqualIgnoringCase("\xC9", "\xE9"));
}

TEST(Text, ContainsIgnoringCaseFindsANeedleAtEitherEnd) {
    EXPECT_TRUE(ContainsIgnoringCase("1-Close ATC Services", "1-cLOSE"));
    EXPECT_TRUE(ContainsIgnoringCase("1-Close ATC Services", "services"));
    EXPECT_FALSE(ContainsIgnoringCase("1-Close ATC Services", "2-close"));
    EXPECT_FALSE(ContainsIgnoringCase("Close", "Closer"));
}

TEST(Text, AnEmptyNeedleIsAlwaysContained) {
    EXPECT_TRUE(ContainsIgnoringCase("", ""));
    EXPECT_TRUE(ContainsIgnoringCase("a", ""));
    EXPECT_FALSE(ContainsIgnoringCase("", "a"));
}

TEST(Text, TrimTakesBlanksOffBothEndsAndNothingElse) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");
    EXPECT_EQ(Trim("\xA0 x"), "\xA0 x");  // the code page's no-break space is no blank
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim(""), "");
}

TEST(ReplyNumber, IsReadFromDigits) {
    EXPECT_EQ(ReadReplyNumber("0"), 0);
    EXPECT_EQ(ReadReplyNumber("3"), 3);
    EXPECT_EQ(ReadReplyNumber("12"), 12);
    EXPECT_EQ(ReadReplyNumber("007"), 7);
    EXPECT_EQ(ReadReplyNumber(std::string(500, '0') + "3"), 3);
}

TEST(ReplyNumber, MayHaveBlanksAndASignInFront) {
    EXPECT_EQ(ReadReplyNumber("  3"), 3);
    EXPECT_EQ(ReadReplyNumber("+3"), 3);
    EXPECT_EQ(ReadReplyNumber("  +3"), 3);
    EXPECT_EQ(ReadReplyNumber("-0"), 0);
}

TEST(ReplyNumber, RoundsAFractionHalfToEven) {
    EXPECT_EQ(ReadReplyNumber("2.5"), 2);
    EXPECT_EQ(ReadReplyNumber("3.5"), 4);
    EXPECT_EQ(ReadReplyNumber("2.51"), 3);
    EXPECT_EQ(ReadReplyNumber("-0.5"), 0);
}

TEST(ReplyNumber, LiesFrom0To255AfterRounding) {
    EXPECT_EQ(ReadReplyNumber("254"), 254);
    EXPECT_EQ(ReadReplyNumber("255"), 255);
    EXPECT_EQ(ReadReplyNumber("256"), std::nullopt);
    EXPECT_EQ(ReadReplyNumber("255.4"), 255);
    EXPECT_EQ(ReadReplyNumber("255.5"), std::nullopt);
    EXPECT_EQ(ReadReplyNumber("-0.51"), std::nullopt);
    EXPECT_EQ(ReadReplyNumber("-1"), std::nullopt);
    EXPECT_EQ(ReadReplyNumber(std::string(500, '7')), std::nullopt);
}

TEST(ReplyNumber, AFractionTooSmallForADoubleStillRoundsToNought) {
    EXPECT_EQ(ReadReplyNumber("0." + std::string(500, '0') + "1"), 0);
}

TEST(ReplyNumber, NothingElseIsANumber) {
    for (const char* text : {"",    " ",   "+",  "-",  "+-3", "- 3", "3 ",   "3 4",   "3.",    ".5", "1e3",
                             "0x1", "1,5", "3a", "a3", "inf", "nan", "\xB2", "3\xB2", "3.5.1", "&H3"}) {
        EXPECT_EQ(ReadReplyNumber(text), std::nullopt) << '"' << text << '"';
    }
}

}  // namespace
}  // namespace corvenna
