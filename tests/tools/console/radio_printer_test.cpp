#include "tools/console/radio_printer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace corvenna {
namespace {

using namespace std::chrono_literals;

class RadioPrinterTest : public testing::Test {
  protected:
    std::ostringstream Out;
    RadioPrinter Plain{Out, false};
    RadioPrinter Coloured{Out, true};
};

TEST_F(RadioPrinterTest, ALineHasTimeFrequencyAndText) {
    Plain.SetFrequencyWidth(5);
    Plain.Controller(65s, "121.7", "N1, hold position");
    EXPECT_EQ(Out.str(), "01:05  121.7  N1, hold position\n");
}

TEST_F(RadioPrinterTest, ThoseOnNoFrequencyAreOnThePartyLine) {
    Plain.SetFrequencyWidth(5);
    Plain.Controller(0s, "", "N1. Welcome");
    EXPECT_EQ(Out.str(), "00:00  ---    N1. Welcome\n");
}

TEST_F(RadioPrinterTest, APilotsReplyBearsHisCallsign) {
    Plain.Pilot(59999ms, "", "N1", "KSEA,1");
    EXPECT_EQ(Out.str(), "00:59  ---  N1: KSEA,1\n");
}

TEST_F(RadioPrinterTest, ALongerLabelTakesTheRoomItNeeds) {
    Plain.Controller(0s, "Air Route Traffic Control Center", "N1");
    EXPECT_EQ(Out.str(), "00:00  Air Route Traffic Control Center  N1\n");
}

TEST_F(RadioPrinterTest, AfterAnHourTheMinutesGoOn) {
    Plain.Note(100min + 1s, "x");
    EXPECT_EQ(Out.str(), "100:01       x\n");
}

TEST_F(RadioPrinterTest, RepliesHaveAColourOfTheirOwn) {
    Coloured.Controller(0s, "", "a");
    Coloured.Pilot(0s, "", "N1", "c");
    EXPECT_EQ(Out.str(),
              "00:00  ---  a\n"
              "\x1b[36m00:00  ---  N1: c\x1b[0m\n");
}

TEST_F(RadioPrinterTest, WithoutColourThereIsNoEscape) {
    Plain.Controller(0s, "", "b");
    Plain.Pilot(0s, "", "N1", "c");
    Plain.Note(0s, "d");
    EXPECT_EQ(Out.str().find('\x1b'), std::string::npos);
}

TEST_F(RadioPrinterTest, BytesOfTheCodePageAppearAsUtf8) {
    Plain.Pilot(0s, "", "J\xFCrg", "\x80 1");
    EXPECT_EQ(Out.str(), "00:00  ---  J\xC3\xBCrg: \xE2\x82\xAC 1\n");
}

TEST_F(RadioPrinterTest, ControlCharactersDoNotReachTheTerminal) {
    Plain.Pilot(0s, "", "N\n1", "\x1b[2J\x7F\x9D");
    EXPECT_EQ(Out.str(), "00:00  ---  N?1: ?[2J??\n");
}

TEST_F(RadioPrinterTest, AnOutputThatTakesNothingIsAnError) {
    Out.setstate(std::ios::badbit);
    EXPECT_THROW(Plain.Note(0s, "x"), std::runtime_error);
}

}  // namespace
}  // namespace corvenna
