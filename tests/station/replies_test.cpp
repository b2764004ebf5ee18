#include "station/replies.h"

#include <gtest/gtest.h>

#include <string>

#include "support/test_field.h"

namespace corvenna {
namespace {

/// One pilot, and what stands in his record after a reply.
class Replies : public testing::Test {
  protected:
    Replies() {
        station.AirportCode = "KJFK";
        pilot.Name = "N1";
        pilot.MenuText = "menu";
        pilot.Choice = Before;
    }

    void UnderWay() { pilot.InService = UnderService; }

    /// The pilot's Choice after he typed a text.
    int ChoiceAfter(std::string_view text) {
        pilot.Choice = Before;
        ApplyChatReply(station, pilot, text);
        return pilot.Choice;
    }

    void ExpectRefused(std::string_view text) {
        pilot.Choice = Before;
        const PlayerRecord before = pilot;
        EXPECT_THROW(ApplyChatReply(station, pilot, text), ReplyError) << '"' << text << '"';
        EXPECT_EQ(pilot, before) << '"' << text << '"';
    }

    static constexpr std::uint8_t Before = 77;
    Station station;
    PlayerRecord pilot;
};

// ---- The opening dialogue: he must address the station

TEST_F(Replies, AtTheWelcomeTheCodeAndADigitSetChoice) { EXPECT_EQ(ChoiceAfter("KJFK,1"), 1); }

TEST_F(Replies, AtTheWelcomeABlankStandsForTheComma) { EXPECT_EQ(ChoiceAfter("KJFK 1"), 1); }

TEST_F(Replies, AtTheWelcomeAnyOneCharacterStandsForTheComma) {
    EXPECT_EQ(ChoiceAfter("KJFKx1"), 1);
    EXPECT_EQ(ChoiceAfter("KJFK11"), 1);
    EXPECT_EQ(ChoiceAfter("KJFK\xE9"
                          "2"),
              2);
}

TEST_F(Replies, AtTheWelcomeAPlainDigitIsIgnored) { EXPECT_EQ(ChoiceAfter("1"), Before); }

TEST_F(Replies, AtTheWelcomeTheLowerCaseCodeWorks) {
    EXPECT_EQ(ChoiceAfter("kjfk,1"), 1);
    station.AirportCode = "kjfk";
    EXPECT_EQ(ChoiceAfter("KJFK,2"), 2);
}

TEST_F(Replies, AtTheWelcome9IsIgnored) { EXPECT_EQ(ChoiceAfter("KJFK,9"), Before); }

TEST_F(Replies, AtTheWelcome0And8AreTaken) {
    EXPECT_EQ(ChoiceAfter("KJFK,0"), 0);
    EXPECT_EQ(ChoiceAfter("KJFK,8"), 8);
}

TEST_F(Replies, AtTheWelcomeTextBehindTheDigitIsIgnored) {
    EXPECT_EQ(ChoiceAfter("KJFK,12"), 1);
    EXPECT_EQ(ChoiceAfter("KJFK,3 please"), 3);
}

TEST_F(Replies, AtTheWelcomeAnotherCodeIsIgnored) {
    EXPECT_EQ(ChoiceAfter("KLGA,1"), Before);
    EXPECT_EQ(ChoiceAfter("KJF,1"), Before);
    EXPECT_EQ(ChoiceAfter("KJF"), Before);
    EXPECT_EQ(ChoiceAfter(""), Before);
    EXPECT_EQ(ChoiceAfter("R"), Before);
    EXPECT_EQ(pilot.MenuText, "menu");
}

TEST_F(Replies, AtTheWelcomeALetterAfterTheCodeIsIgnored) {
    EXPECT_EQ(ChoiceAfter("KJFK,A"), Before);
    EXPECT_EQ(ChoiceAfter("KJFK,\xB2"), Before);
}

// No character sorts before "9", and a character below "0" does so too; neither is a number.
TEST_F(Replies, AtTheWelcomeTheCodeWithoutADigitIsAnError) {
    ExpectRefused("KJFK");
    ExpectRefused("KJFK,");
    ExpectRefused("KJFK,,1");
    ExpectRefused("KJFK  1");
    ExpectRefused("KJFK,-1");
}

TEST_F(Replies, WithoutAnAirportCodeTheSecondCharacterIsTheDigit) {
    station.AirportCode.clear();
    EXPECT_EQ(ChoiceAfter(",3"), 3);
    EXPECT_EQ(ChoiceAfter("14"), 4);
    ExpectRefused("");
}

// ---- Under service: the whole text is the number

TEST_F(Replies, UnderServiceADigitSetsChoice) {
    UnderWay();
    EXPECT_EQ(ChoiceAfter("1"), 1);
    EXPECT_EQ(ChoiceAfter("8"), 8);
}

TEST_F(Replies, UnderServiceTheWholeTextIsTheNumber) {
    UnderWay();
    EXPECT_EQ(ChoiceAfter("12"), 12);
    EXPECT_EQ(ChoiceAfter("255"), 255);
    EXPECT_EQ(ChoiceAfter("89"), 89);
}

TEST_F(Replies, UnderService9AndAllThatSortsBehindItIsIgnored) {
    UnderWay();
    for (const char* text : {"9", "90", "A", "hello", "\xB2", "\xFF", ":", "~"}) {
        EXPECT_EQ(ChoiceAfter(text), Before) << text;
    }
}

TEST_F(Replies, UnderService0LeavesChoice0) {
    UnderWay();
    EXPECT_EQ(ChoiceAfter("0"), 0);
    EXPECT_EQ(pilot.MenuText, "menu");
}

TEST_F(Replies, UnderServiceAFractionIsRoundedHalfToEven) {
    UnderWay();
    EXPECT_EQ(ChoiceAfter("2.5"), 2);
    EXPECT_EQ(ChoiceAfter("3.5"), 4);
}

TEST_F(Replies, UnderServiceATextThatQualifiesButIsNoNumberIsAnError) {
    UnderWay();
    for (const char* text : {"", "-1", "1e3", "256", "3 please", "1,5", "#2", "(3)", "!"})
        ExpectRefused(text);
    ExpectRefused(std::string(200, '7'));
}

TEST_F(Replies, TheErrorTellsWhatWasTyped) {
    UnderWay();
    try {
        ApplyChatReply(station, pilot, "1e3");
        FAIL() << "nothing was thrown";
    } catch (const ReplyError& error) {
        EXPECT_NE(std::string(error.what()).find("1e3"), std::string::npos);
    }
}

TEST_F(Replies, UnderServiceTheAddressedFormIsIgnored) {
    UnderWay();
    EXPECT_EQ(ChoiceAfter("KJFK,1"), Before);
}

// ---- The repeat

TEST_F(Replies, UnderServiceRAndLowerCaseRMarkTheTextAndClearChoice) {
    UnderWay();
    for (const char* text : {"R", "r"}) {
        pilot.MenuText = "menu";
        EXPECT_EQ(ChoiceAfter(text), 0);
        EXPECT_EQ(pilot.MenuText, "menu (Say Again)");
    }
}

TEST_F(Replies, ASecondRBeforeTheTickHasRunChangesNothing) {
    UnderWay();
    ApplyChatReply(station, pilot, "R");
    EXPECT_EQ(ChoiceAfter("R"), Before);
    EXPECT_EQ(pilot.MenuText, "menu (Say Again)");
}

TEST_F(Replies, OnlyPilotsUnderServiceCanAskForARepeat) {
    EXPECT_EQ(ChoiceAfter("R"), Before);
    EXPECT_EQ(pilot.MenuText, "menu");
}

TEST_F(Replies, OnlyTheWholeTextAsksForARepeat) {
    UnderWay();
    for (const char* text : {"RR", "R.", "repeat"}) EXPECT_EQ(ChoiceAfter(text), Before) << text;
    EXPECT_EQ(pilot.MenuText, "menu");
}

TEST_F(Replies, ARecordInNeitherStateTakesNothing) {
    pilot.InService = 2;
    EXPECT_EQ(ChoiceAfter("1"), Before);
    EXPECT_EQ(ChoiceAfter("KJFK,1"), Before);
    EXPECT_EQ(ChoiceAfter("R"), Before);
    EXPECT_EQ(ChoiceAfter(""), Before);
}

}  // namespace
}  // namespace corvenna
