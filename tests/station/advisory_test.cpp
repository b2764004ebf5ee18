#include "station/advisory.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

#include "support/test_field.h"

namespace corvenna {
namespace {

constexpr const char* Menu =
    "): 1-Announce Taxi to Runway 2-Announce Takeoff 3-Announce Position 4-Announce Landing "
    "5-Announce Taxi to Gate or Parking 6-Close ATC Services";

/// A pilot under service at a field without a tower.
class Advisory : public testing::Test {
  protected:
    Advisory() : pilot(field.OnFrequency("N1", "", "")) {
        field.S.TowerFrequency.clear();
        field.S.GroundFrequency.clear();
        field.S.CtafFrequency = "122.8";
        field.S.DistanceToAirport = 12;
        pilot.Quadrant = "northeast";
        pilot.Altitude = 3456;
    }

    void Turn(int choice = 0) {
        pilot.Choice = static_cast<std::uint8_t>(choice);
        AdvisoryService(field.S, pilot);
    }

    static std::string WithMenu(std::string_view text, std::string_view tag = " - 122.8") {
        return std::string(text) + std::string(tag) + Menu;
    }

    TestField field;
    PlayerRecord& pilot;
};

constexpr const char* Ask = "N1. Choose one of the following options for the Advisory frequency (CTAF";

TEST_F(Advisory, OnTheFirstRunTheMenuReplacesTheOpeningText) {
    pilot.MenuText = "N1. Choose one of the following options: 1-Close ATC Services";
    Turn();
    EXPECT_EQ(pilot.MenuText, WithMenu(Ask));
}

TEST_F(Advisory, WithACtafFrequencyBlankHyphenBlankAndTheFrequencyStandBehindTheWordCtaf) {
    Turn();
    EXPECT_THAT(pilot.MenuText, testing::HasSubstr("frequency (CTAF - 122.8): 1-Announce"));
}

TEST_F(Advisory, WithoutACtafFrequencyNothingStandsBetweenTheWordCtafAndTheBracket) {
    field.S.CtafFrequency.clear();
    Turn();
    EXPECT_EQ(pilot.MenuText, WithMenu(Ask, ""));
    EXPECT_THAT(pilot.MenuText, testing::HasSubstr("frequency (CTAF): 1-Announce"));
}

struct AnnouncementRow {
    int Choice;
    const char* Text;
};

constexpr AnnouncementRow AnnouncementRows[] = {
    {1,
     "Traffic, N1, taxiing to runway 16 at Test Field airport. "
     "Choose one of the following options for the Advisory frequency (CTAF"},
    {2,
     "Traffic, N1, takingoff, runway 16 at Test Field airport. "
     "Choose one of the following options for the Advisory frequency (CTAF"},
    {3,
     "Traffic, N1, 12 miles, northeast, 3456 ft, at Test Field airport. "
     "Choose one of the following options for the Advisory frequency (CTAF"},
    {4,
     "Traffic, N1, landing, runway 16 at Test Field airport. "
     "Choose one of the following options for the Advisory frequency (CTAF"},
    {5,
     "Traffic, N1, taxiing to gate or parking at Test Field airport. "
     "Choose one of the following options for the Advisory frequency (CTAF"},
};

TEST_F(Advisory, EachChoiceMakesItsAnnouncementWithTheMenuBehind) {
    Turn();
    for (const AnnouncementRow& row : AnnouncementRows) {
        Turn(row.Choice);
        EXPECT_EQ(pilot.MenuText, WithMenu(row.Text));
        EXPECT_EQ(pilot.Choice, 0);
    }
}

TEST_F(Advisory, WithoutACtafFrequencyEachAnnouncementHasNoTag) {
    field.S.CtafFrequency.clear();
    Turn();
    for (const AnnouncementRow& row : AnnouncementRows) {
        Turn(row.Choice);
        EXPECT_EQ(pilot.MenuText, WithMenu(row.Text, ""));
    }
}

TEST_F(Advisory, NothingButMenuTextAndChoiceIsWritten) {
    Turn();
    for (const AnnouncementRow& row : AnnouncementRows) {
        PlayerRecord before = pilot;
        Turn(row.Choice);
        before.MenuText = pilot.MenuText;
        before.Choice = 0;
        EXPECT_EQ(pilot, before);
    }
}

TEST_F(Advisory, APositionIsInPlainDecimalAlsoBelowTheSea) {
    Turn();
    field.S.DistanceToAirport = 0;
    pilot.Altitude = -12;
    pilot.Quadrant.clear();
    Turn(3);
    EXPECT_THAT(pilot.MenuText,
                testing::StartsWith("Traffic, N1, 0 miles, , -12 ft, at Test Field airport."));
    pilot.Altitude = std::numeric_limits<std::int32_t>::min();
    Turn(3);
    EXPECT_THAT(pilot.MenuText, testing::HasSubstr(", -2147483648 ft,"));
}

TEST_F(Advisory, AnAnnouncementStands) {
    Turn();
    Turn(2);
    const std::string announcement = pilot.MenuText;
    Turn();
    EXPECT_EQ(pilot.MenuText, announcement);
}

TEST_F(Advisory, TheStandingMenuIsFoundWhateverItsCase) {
    pilot.MenuText = "CHOOSE ONE OF THE FOLLOWING OPTIONS FOR THE ADVISORY FREQUENCY (ctaf - 122.8):";
    const std::string before = pilot.MenuText;
    Turn();
    EXPECT_EQ(pilot.MenuText, before);
}

TEST_F(Advisory, AMenuOfAnotherCtafFrequencyIsReplaced) {
    Turn();
    field.S.CtafFrequency = "123.0";
    Turn();
    EXPECT_EQ(pilot.MenuText, WithMenu(Ask, " - 123.0"));
    field.S.CtafFrequency.clear();
    Turn();
    EXPECT_EQ(pilot.MenuText, WithMenu(Ask, ""));
}

TEST_F(Advisory, Choice7FitsNoOptionAndStaysUntilTheNextDigit) {
    Turn();
    const std::string menu = pilot.MenuText;
    Turn(7);
    EXPECT_EQ(pilot.Choice, 7);
    EXPECT_EQ(pilot.MenuText, menu);
    field.S.CtafFrequency.clear();  // even a menu that should be another stands
    AdvisoryService(field.S, pilot);
    EXPECT_EQ(pilot.MenuText, menu);
    Turn(4);
    EXPECT_EQ(pilot.Choice, 0);
    EXPECT_THAT(pilot.MenuText, testing::StartsWith("Traffic, N1, landing,"));
}

TEST_F(Advisory, Choice6ResetsThePilotAndTheNextTickWelcomesHimAgain) {
    field.Tick();
    field.Types("N1", "6");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N1"), "");
    EXPECT_EQ(pilot.InService, OpeningDialogue);
    field.Tick();
    EXPECT_THAT(field.LastHeard("N1"), testing::StartsWith("N1. Welcome to Corvenna v1.3 (by Dravik)."));
}

TEST_F(Advisory, Choice2TwiceSendsNoSecondChat) {
    field.Tick();
    field.Types("N1", "2");
    field.Tick();
    EXPECT_EQ(field.LastHeard("N1"), WithMenu(AnnouncementRows[1].Text));
    field.Types("N1", "2");
    field.Tick();
    EXPECT_THAT(field.Heard("N1"), testing::IsEmpty());
    EXPECT_EQ(pilot.Choice, 0);
}

TEST_F(Advisory, APositionWithOtherNumbersIsSentAgain) {
    field.Tick();
    field.Types("N1", "3");
    field.Tick();
    pilot.Altitude += 100;
    field.Types("N1", "3");
    field.Tick();
    EXPECT_THAT(field.LastHeard("N1"), testing::HasSubstr(", 3556 ft,"));
}

TEST_F(Advisory, EverybodyOnNoFrequencyHearsAnAnnouncement) {
    field.Enters("N2");
    field.Enters("N3", Role::Observer);
    field.OnFrequency("N4", "124.2", "").Role = Role::Observer;
    field.Tick();
    field.Types("N1", "1");
    field.Tick();
    EXPECT_THAT(field.Heard("N2"), testing::Contains(WithMenu(AnnouncementRows[0].Text)));
    EXPECT_THAT(field.Heard("N3"), testing::Contains(WithMenu(AnnouncementRows[0].Text)));
    EXPECT_THAT(field.Heard("N4"), testing::IsEmpty());
}

}  // namespace
}  // namespace corvenna
