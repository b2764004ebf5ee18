#include "practice/menu_reader.h"

#include <gmock/gmock.h>

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view Welcome =
    "N1. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at Test Field?: 1-Use ATC "
    "services";
constexpr std::string_view FlightType =
    "N1. What type of flight you want to fly?: 1-VFR 2-IFR 3-Close ATC Services";
constexpr std::string_view FrequencyMenu =
    "N1. Choose one of the following options: 1-Close ATC Services 2-Tune Seattle-Tacoma Intl Ground "
    "Frequency";
constexpr std::string_view Advisory =
    "Traffic, N1, taxiing to runway 16 at Test Field airport. Choose one of the following options for the "
    "Advisory frequency (CTAF - 122.8): 1-Announce Taxi to Runway 2-Announce Takeoff";

TEST(MenuReader, OptionsAreDigitsWithLabels) {
    EXPECT_THAT(ReadMenu(FlightType), ElementsAre(MenuOption{'1', "VFR"}, MenuOption{'2', "IFR"},
                                                  MenuOption{'3', "Close ATC Services"}));
}

TEST(MenuReader, ALabelMayHoldAHyphen) {
    EXPECT_THAT(ReadMenu(FrequencyMenu),
                ElementsAre(MenuOption{'1', "Close ATC Services"},
                            MenuOption{'2', "Tune Seattle-Tacoma Intl Ground Frequency"}));
}

TEST(MenuReader, TheMenuStandsBehindTheLastColon) {
    EXPECT_THAT(ReadMenu("N1, turn 2-times: no: 1-Acknowledge"), ElementsAre(MenuOption{'1', "Acknowledge"}));
}

TEST(MenuReader, ATextWithoutAMenuHasNoOptions) {
    EXPECT_THAT(ReadMenu(""), IsEmpty());
    EXPECT_THAT(ReadMenu("1-VFR"), IsEmpty());
    EXPECT_THAT(ReadMenu("N1: hello"), IsEmpty());
    EXPECT_THAT(ReadMenu("N1: "), IsEmpty());
    EXPECT_THAT(ReadMenu("N1: 1"), IsEmpty());
}

TEST(MenuReader, ACallsignIsAddressedAtTheBeginning) {
    EXPECT_TRUE(IsAddressedTo(Welcome, "N1"));
    EXPECT_TRUE(IsAddressedTo("N1, hold position", "N1"));
    EXPECT_TRUE(IsAddressedTo(Advisory, "N1"));
}

TEST(MenuReader, ACallsignThatBeginsAnotherIsNotAddressed) {
    EXPECT_FALSE(IsAddressedTo("N12. Welcome", "N1"));
    EXPECT_FALSE(IsAddressedTo("Traffic, N12, landing", "N1"));
}

TEST(MenuReader, ATextThatOnlyMentionsAPilotIsNotForHim) {
    EXPECT_FALSE(IsAddressedTo("N2, traffic N1, 3 miles", "N1"));
    EXPECT_FALSE(IsAddressedTo("N1", "N1"));
    EXPECT_FALSE(IsAddressedTo("", "N1"));
}

TEST(MenuReader, TheOpeningDialogueIsAnsweredWithTheAirportsCode) {
    EXPECT_EQ(ReplyFor(ReadMenu(Welcome), "Use ATC services", "KTST"), "KTST,1");
    EXPECT_EQ(ReplyFor(ReadMenu(FlightType), "IFR", "KTST"), "KTST,2");
    EXPECT_EQ(ReplyFor(ReadMenu(FlightType), "Close ATC Services", "KTST"), "KTST,3");
}

TEST(MenuReader, LaterMenusAreAnsweredWithTheDigitAlone) {
    EXPECT_EQ(ReplyFor(ReadMenu(FrequencyMenu), "Close ATC Services", "KTST"), "1");
    EXPECT_EQ(ReplyFor(ReadMenu(FrequencyMenu), "tune seattle-tacoma intl ground frequency", "KTST"), "2");
    EXPECT_EQ(ReplyFor(ReadMenu(Advisory), "Announce Takeoff", "KTST"), "2");
}

TEST(MenuReader, WhatIsNotOfferedHasNoReply) {
    EXPECT_EQ(ReplyFor(ReadMenu(FrequencyMenu), "VFR", "KTST"), std::nullopt);
    EXPECT_EQ(ReplyFor(ReadMenu(FrequencyMenu), "Tune", "KTST"), std::nullopt);
    EXPECT_EQ(ReplyFor(ReadMenu(""), "VFR", "KTST"), std::nullopt);
}

TEST(AirportOfWelcomeTest, IsTheNameBeforeTheMenu) {
    EXPECT_EQ(AirportOfWelcome("N1. Welcome to Corvenna v1.3 (by Dravik). Want to use our ATC services at "
                               "Seattle-Tacoma Intl?: 1-Use ATC services"),
              "Seattle-Tacoma Intl");
}

TEST(AirportOfWelcomeTest, IsNoneInOtherTextsAndInHalfOnes) {
    EXPECT_EQ(AirportOfWelcome(""), std::nullopt);
    EXPECT_EQ(AirportOfWelcome("N1. Choose one of the following options: 1-Close ATC Services"),
              std::nullopt);
    EXPECT_EQ(AirportOfWelcome("Want to use our ATC services at Seattle"), std::nullopt);
}

}  // namespace
}  // namespace corvenna
