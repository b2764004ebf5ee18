#include "airspace/radar_state.h"

#include "airspace/radar_scene.h"

namespace corvenna {
namespace {

bool Never(Station& /*station*/, const PlayerRecord& /*pilot*/) { return false; }
void NoteTheOldPhase(Station& /*station*/, PlayerRecord& pilot) { pilot.Quadrant = "was " + pilot.Phase; }

constexpr StateRow Rows[] = {
    {.Phase = "a", .Input = "-Go", .When = &Never, .Text = "never"},
    {.Phase = "a", .Input = "-Go", .Text = "gone", .Act = &NoteTheOldPhase, .Next = "b"},
    {.Phase = "a", .Input = "-Go", .Text = "twice"},
    {.Phase = "b", .Input = StateRow::NoChoice, .Text = ""},
    {.Phase = "b", .Input = "-Stay"},
    {.Phase = "c", .Input = StateRow::EveryCall, .Text = "{callsign} {service} {artcc} {approach}"},
};

class RadarStates : public OnApproach {
  protected:
    bool Run() { return RunStates(S, N1(), "Centre", Rows); }
};

TEST_F(RadarStates, TheFirstRowThatFitsActsAndNoOther) {
    Phase("a");
    Reads("1-Go 2-Close ATC Services");
    Types(1);
    EXPECT_TRUE(Run());
    EXPECT_EQ(N1().MenuText, "gone");
    EXPECT_EQ(N1().Phase, "b");
    EXPECT_EQ(N1().Choice, 0);
}

TEST_F(RadarStates, TheNextPhaseComesBehindTheEffects) {
    Phase("a");
    Reads("1-Go");
    Types(1);
    Run();
    EXPECT_EQ(N1().Quadrant, "was a");
}

TEST_F(RadarStates, WithADigitStandingOnlyChoicesAreLookedAt) {
    Phase("b");
    Reads("1-Stay");
    Types(2);
    EXPECT_TRUE(Run());
    EXPECT_EQ(N1().MenuText, "1-Stay");
    EXPECT_EQ(N1().Choice, 2);
    Types(1);
    Run();
    EXPECT_EQ(N1().MenuText, "1-Stay");
    EXPECT_EQ(N1().Choice, 0);
    Run();
    EXPECT_EQ(N1().MenuText, "");
}

TEST_F(RadarStates, ClosingIsTriedLastInEveryPhaseOfTheTable) {
    Phase("b");
    Reads("1-Stay 2-Close ATC Services");
    Types(2);
    EXPECT_TRUE(Run());
    EXPECT_TRUE(IsReset());
}

TEST_F(RadarStates, APhaseThatTheTableHasNotIsNotEvenClosed) {
    Phase("d");
    Reads("2-Close ATC Services");
    Types(2);
    EXPECT_FALSE(Run());
    EXPECT_FALSE(IsReset());
    EXPECT_EQ(N1().Choice, 2);
}

TEST_F(RadarStates, ARowForEveryCallSwallowsTheDigit) {
    Phase("c");
    Reads("1-Close ATC Services");
    Types(1);
    EXPECT_TRUE(Run());
    EXPECT_EQ(N1().MenuText, "N1 Centre Air Route Traffic Control Center 124.2");
    EXPECT_EQ(N1().Choice, 0);
}

TEST_F(RadarStates, BracesInNamesAreOnlyCharacters) {
    Phase("c");
    N1().Name = "{artcc}{}";
    RunStates(S, S.Players[0], "Centre", Rows);
    EXPECT_EQ(S.Players[0].MenuText, "{artcc}{} Centre Air Route Traffic Control Center 124.2");
}

TEST(WholeNumbers, AreReadFromDecimalTextAndNothingElseCounts) {
    EXPECT_EQ(WholeNumber("2400"), 2400);
    EXPECT_EQ(WholeNumber("-5"), -5);
    EXPECT_EQ(WholeNumber(""), 0);
    EXPECT_EQ(WholeNumber("x"), 0);
    EXPECT_EQ(WholeNumber("123456789012345678901"), 0);
}

}  // namespace
}  // namespace corvenna
