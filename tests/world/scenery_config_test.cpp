#include "world/scenery_config.h"

#include <gmock/gmock.h>

#include "world/errors.h"
#include "world/temp_folder.h"

namespace corvenna {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> Titles(std::string_view content) {
    std::vector<std::string> titles;
    for (const SceneryArea& area : ParseSceneryText(content)) titles.push_back(area.Title);
    return titles;
}

// ---- Parsing

TEST(SceneryConfig, AnAreaHasSevenTextsAsTheyStand) {
    EXPECT_THAT(
        ParseSceneryText("[General]\r\nTitle=Not an area\r\n\r\n"
                         "[Area.001]\r\nTitle=Default Terrain \r\nTexture_ID=1\r\nLocal=Scenery\\World\r\n"
                         "Remote=r\r\nActive=TRUE\r\nRequired=FALSE\r\nLayer=7\r\n"),
        ElementsAre(SceneryArea{"Default Terrain ", "1", "TRUE", "7", "FALSE", "r", "Scenery\\World"}));
}

TEST(SceneryConfig, KeysThatAreMissingGiveEmptyTexts) {
    EXPECT_THAT(ParseSceneryText("[AREA.1]\r\n"), ElementsAre(SceneryArea{}));
}

TEST(SceneryConfig, AreasStandInTheOrderOfTheFileWhateverTheyAreCalled) {
    EXPECT_THAT(Titles("[Area.2]\nTitle=b\n[x]\nTitle=x\n[aReA.1]\nTitle=a\n[Subarea.]\nTitle=s\n"),
                ElementsAre("b", "a"));
}

TEST(SceneryConfig, AHeaderThatMerelyContainsTheWordIsAnAreaToo) {
    EXPECT_THAT(Titles("[my[area.3]\nTitle=a\n[ [Area.4 ]\nTitle=b\n"), ElementsAre("a", "b"));
}

TEST(SceneryConfig, LinesMayEndInCrLfOrLfAndTheLastOneInNothing) {
    for (const char* const content : {"[Area.1]\r\nTitle=a\r\nLocal=x\r\n", "[Area.1]\nTitle=a\nLocal=x\n",
                                      "[Area.1]\r\nTitle=a\nLocal=x"}) {
        EXPECT_THAT(ParseSceneryText(content), ElementsAre(SceneryArea{"a", "", "", "", "", "", "x"}))
            << content;
    }
}

TEST(SceneryConfig, AByteOrderMarkIsNoText) {
    EXPECT_THAT(Titles("\xEF\xBB\xBF[Area.1]\r\nTitle=a\r\n"), ElementsAre("a"));
}

TEST(SceneryConfig, EmptyLinesAtTheHeadVanish) {
    EXPECT_THAT(Titles("\r\n\r\n\r\n[Area.1]\r\n\r\nTitle=a"), ElementsAre("a"));
    EXPECT_THAT(Titles(""), IsEmpty());
    EXPECT_THAT(Titles("\r\n"), IsEmpty());
}

TEST(SceneryConfig, AHeaderMayHaveBlanksRoundItButNothingElse) {
    EXPECT_THAT(Titles("  [Area.1]  \nTitle=a\n[Area.2] ; remark\nTitle=b\nx[Area.3]\nTitle=c\n\t[Area.4]\n"),
                ElementsAre("a"));
    EXPECT_THAT(Titles("[Area.1]]\nTitle=a\n[Area.2\nTitle=b\n"), IsEmpty());
}

TEST(SceneryConfig, OfTwoEqualHeadersInARowTheFirstHasAnEmptySection) {
    EXPECT_THAT(Titles("[Area.1]\nTitle=a\n[Area.1]\nTitle=b\n[Area.2]\nTitle=c\n"),
                ElementsAre("", "a", "c"));
}

TEST(SceneryConfig, EqualHeadersApartEachHaveTheirSection) {
    EXPECT_THAT(Titles("[Area.1]\nTitle=a\n[Area.2]\nTitle=b\n[Area.1]\nTitle=c\n"),
                ElementsAre("a", "b", "c"));
}

TEST(SceneryConfig, OtherSectionsDoNotMoveTheSearchPosition) {
    // The header of the area stands in the other section's text, and there its section begins.
    EXPECT_THAT(Titles("[Other]\nNote=[Area.1]Title=early\n[Area.1]\nTitle=late\n"), ElementsAre("early"));
}

TEST(SceneryConfig, AHeaderIsFoundExactlyAsItStands) {
    EXPECT_THAT(Titles("[Other]\nNote=[AREA.1]Title=early\n[Area.1]\nTitle=late\n"), ElementsAre("late"));
}

TEST(SceneryConfig, ANextHeaderThatIsFoundAheadOfTheSectionLeavesItEmpty) {
    EXPECT_THAT(Titles("[Other]\nNote=[Area.2]\n[Area.1]\nTitle=a\n[Area.2]\nTitle=b\n"),
                ElementsAre("", "a"));
}

TEST(SceneryConfig, TooManyAreasAreRefused) {
    std::string content;
    for (int i = 0; i < 32767; ++i) content += "[Area." + std::to_string(i) + "]\n";
    EXPECT_THAT(ParseSceneryText(content), SizeIs(32767));
    EXPECT_THROW(ParseSceneryText(content + "[Area.x]\n"), std::overflow_error);
}

TEST(SceneryConfig, AMissingFileIsNamed) {
    TempFolder sim;
    EXPECT_THAT(WhatIsThrown<FileError>([&] { ParseSceneryCfg(sim.Path("scenery.cfg")); }),
                HasSubstr("scenery.cfg: is not there"));
}

// ---- Keys

TEST(SceneryKey, TakesTheRestOfTheLineWithItsCaseAndBlanks) {
    EXPECT_EQ(SceneryKey("[a]\r\nTITLE= My Area \r\nx=1", "Title"), " My Area ");
    EXPECT_EQ(SceneryKey("Title=last line", "title"), "last line");
    EXPECT_EQ(SceneryKey("Title=\r\nx", "Title"), "");
}

TEST(SceneryKey, IsFoundAnywhereAlsoInsideAnotherWord) {
    EXPECT_EQ(SceneryKey("MyLocal=a\r\nLocal=b", "Local"), "a");
    EXPECT_EQ(SceneryKey("Title=see Local=x\r\nLocal=b", "Local"), "x");
}

TEST(SceneryKey, ABlankAheadOfTheEqualsSignHidesIt) {
    EXPECT_EQ(SceneryKey("Local =a", "Local"), "");
    EXPECT_EQ(SceneryKey("Local =a\r\nLocal=b", "Local"), "b");
}

// ---- Paths

std::string Fixed(const TempFolder& sim, std::string_view local,
                  const std::vector<std::string>& drives = {}) {
    std::vector<SceneryArea> areas(1);
    areas[0].Local = local;
    FixSceneryPaths(areas, sim.Path(), drives);
    return areas[0].Local;
}

std::string Backslashed(std::string path) {
    for (char& c : path) c = c == '/' ? '\\' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return path;
}

TEST(SceneryPaths, RelativeOnesCountFromTheSimulatorsFolderAndPointAtItsSceneryFolder) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("Scenery/World/Scenery"));
    const std::string expected = Backslashed(sim.Path("scenery/world/scenery"));
    EXPECT_EQ(Fixed(sim, "Scenery\\World"), expected);
    EXPECT_EQ(Fixed(sim, "Scenery/World"), expected);
    EXPECT_EQ(Fixed(sim, "  SCENERY\\world  "), expected);
    EXPECT_EQ(Fixed(sim, "Scenery\\World\\SCENERY"), expected);
}

// The letters here are such as a folder could have anywhere, so that what is made of them can be found.
TEST(SceneryPaths, ADrivesNameGivesWayToItsLetters) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("zz/world/scenery"));
    const std::string expected = Backslashed(sim.Path("zz/world/scenery"));
    const std::vector<std::string> drives{"aa", "bb [Games]", "zz \\\\Server\\My Games"};
    EXPECT_EQ(Fixed(sim, "\\\\SERVER\\my games\\World", drives), expected);
    EXPECT_EQ(Fixed(sim, "//server/My Games/world/Scenery", drives), expected);
}

TEST(SceneryPaths, ADriveWithoutANameAndOneThatDoesNotOccurChangeNothing) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("Games/Scenery"));
    const std::string expected = Backslashed(sim.Path("games/scenery"));
    EXPECT_EQ(Fixed(sim, "Games", {"a:", "b: ", "c: [Games]", "z: \\\\server\\games"}), expected);
}

TEST(SceneryPaths, OneThatIsOrEndsInSceneryIsLeftAlone) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("Scenery"));
    std::filesystem::create_directories(sim.Path("MyScenery/Scenery"));
    EXPECT_EQ(Fixed(sim, "SCENERY"), Backslashed(sim.Path("scenery")));
    EXPECT_EQ(Fixed(sim, "MyScenery"), Backslashed(sim.Path("myscenery/scenery")));
}

TEST(SceneryPaths, AbsoluteOnesAreTakenAsTheyAre) {
    TempFolder sim, other;
    std::filesystem::create_directories(other.Path("Addon/Scenery"));
    EXPECT_EQ(Fixed(sim, other.Path("Addon")), Backslashed(other.Path("addon/scenery")));
    EXPECT_EQ(Fixed(sim, Backslashed(other.Path("ADDON"))), Backslashed(other.Path("addon/scenery")));
}

TEST(SceneryPaths, AFolderThatIsNotThereIsDropped) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("Scenery/NoInnerOne"));
    sim.Write("Scenery/File/scenery", "a file");
    EXPECT_EQ(Fixed(sim, "Scenery\\Gone"), "");
    EXPECT_EQ(Fixed(sim, "Scenery\\NoInnerOne"), "");
    EXPECT_EQ(Fixed(sim, "Scenery\\File"), "");
}

TEST(SceneryPaths, AnEmptyOneStaysEmptyAndBlanksMeanTheSimulatorsOwnSceneryFolder) {
    TempFolder sim;
    std::filesystem::create_directories(sim.Path("scenery"));
    EXPECT_EQ(Fixed(sim, ""), "");
    EXPECT_EQ(Fixed(sim, "   "), Backslashed(sim.Path()) + "\\\\scenery");
}

}  // namespace
}  // namespace corvenna
