#include "practice/practice_picture.h"

#include <gmock/gmock.h>

#include "practice/practice_session.h"
#include "support/test_field.h"

namespace corvenna {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view Vectors =
    ", You are 30 miles, northwest, expect vectors for runway 16 approach. Turn left heading 150 degrees. "
    "Choose one of the following options for the Approach frequency: 1-Acknowledge 2-Close ATC Services";

class PracticePictureTest : public testing::Test {
  protected:
    static std::unique_ptr<PracticePilot> PilotAt(std::string name, Place place) {
        PilotScript script;
        script.Name = std::move(name);
        script.Start = {place.Latitude, place.Longitude, 6000, 150, 200};
        return std::make_unique<PracticePilot>(nullptr, TestSessionName, "KTST", std::move(script));
    }

    /// From 30 miles out towards the field, with vectors on the way.
    void Arrives(const char* name) {
        const Place field{Field.S.RunwayLatitude, Field.S.RunwayLongitude};
        Log.Came(*PilotAt(name, PlaceBeyond(field, 230, 30)), 0ms);
        for (int mile = 0; mile < 20; ++mile) {
            Log.Flies(*PilotAt(name, PlaceBeyond(field, 230, 30 - mile)), mile * 20s);
            if (mile == 5) Log.Heard(name, std::string(name).append(Vectors), mile * 20s);
        }
    }

    TestField Field;
    PracticeLog Log{400, true};
};

TEST_F(PracticePictureTest, IsADocumentWithTheAirportEvenWhenNobodyHasFlown) {
    const std::string drawing = DrawPractice(Field.S, Log);
    EXPECT_THAT(drawing, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
    EXPECT_THAT(drawing, HasSubstr("<title>Test Field (KTST), runway 16</title>"));
    EXPECT_THAT(drawing, testing::EndsWith("</svg>\n"));
    EXPECT_THAT(drawing, Not(HasSubstr("nan")));
}

TEST_F(PracticePictureTest, ATrackIsColouredByTheService) {
    Arrives("N1");
    const std::string drawing = DrawPractice(Field.S, Log);
    const auto lines = [&](const std::string& color) {
        std::size_t count = 0;
        for (auto at = drawing.find(color); at != std::string::npos; at = drawing.find(color, at + 1))
            ++count;
        return count;
    };
    // On the map, in the larger view of the airport, and in the key.
    EXPECT_EQ(lines("stroke=\"#8a8a8a\""), 6u + 6u + 1u);    // before the text
    EXPECT_EQ(lines("stroke=\"#1565c0\""), 13u + 13u + 1u);  // with Approach
}

TEST_F(PracticePictureTest, TheFixesOfTheVectorsAreDrawn) {
    Arrives("N1");
    const std::string drawing = DrawPractice(Field.S, Log);
    EXPECT_THAT(drawing, HasSubstr(">Final Approach</text>"));
    EXPECT_THAT(drawing, HasSubstr("Downwind Leg</text>"));
    EXPECT_THAT(drawing, HasSubstr("Base Leg</text>"));
}

TEST_F(PracticePictureTest, TheInstructionsOfWhoWasAloneAreWrittenBesideIt) {
    Arrives("N1");
    EXPECT_THAT(DrawPractice(Field.S, Log), HasSubstr("N1, You are 30 miles, northwest,"));
    Arrives("N2");
    EXPECT_THAT(DrawPractice(Field.S, Log), Not(HasSubstr("N1, You are 30 miles")));
}

TEST_F(PracticePictureTest, ForeignNamesDoNotBreakTheDocument) {
    const Place field{Field.S.RunwayLatitude, Field.S.RunwayLongitude};
    Log.Came(*PilotAt("<N&1>", field), 0ms);
    Log.Flies(*PilotAt("<N&1>", field), 1s);
    EXPECT_THAT(DrawPractice(Field.S, Log), HasSubstr("&lt;N&amp;1&gt;"));
}

TEST_F(PracticePictureTest, FixesAreThoseOfTheChainForThePilotsSide) {
    const Place field{Field.S.RunwayLatitude, Field.S.RunwayLongitude};
    const Place place = PlaceBeyond(field, 340, 30);  // before the threshold of runway 16
    const auto fixes = FixesAssignedAt(Field.S, {place.Latitude, place.Longitude, 6000, 160, 200});
    ASSERT_EQ(fixes.size(), 1u);
    EXPECT_THAT(fixes[0].Name, StartsWith("Final Approach"));
    EXPECT_NEAR(MilesBetween(field, {fixes[0].Latitude, fixes[0].Longitude}), 7, 0.1);
}

}  // namespace
}  // namespace corvenna
