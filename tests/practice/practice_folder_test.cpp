#include "practice/practice_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "world/airport_database.h"

namespace corvenna {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::SizeIs;
using testing::ThrowsMessage;

/// An app folder of the test's own.
class PracticeFolder : public testing::Test {
  protected:
    PracticeFolder() { fs::remove_all(folder); }
    ~PracticeFolder() override { fs::remove_all(folder); }

    void Complete() {
        CompletePracticeFolder(folder, CORVENNA_TEST_DATA,
                               [this](std::string_view what) { told.emplace_back(what); });
    }

    fs::path folder =
        fs::temp_directory_path() /
        (std::string("corvenna-") + testing::UnitTest::GetInstance()->current_test_info()->name());
    std::vector<std::string> told;
};

TEST_F(PracticeFolder, AnEmptyOneGetsWorldDatabaseAndTerrain) {
    Complete();
    EXPECT_THAT(told, SizeIs(1));
    EXPECT_TRUE(fs::exists(folder / AirportsName));
    EXPECT_TRUE(fs::exists(folder / ConfigName));
    EXPECT_EQ(fs::file_size(folder / TerrainName), fs::file_size(fs::path(CORVENNA_TEST_DATA) / TerrainName));
    EXPECT_THAT(AirportLabels(folder), SizeIs(8));
    EXPECT_THAT(AirportLabels(folder), Contains("Innsbruck Kranebitten (LOWI)"));
}

TEST_F(PracticeFolder, WhatIsThereAlreadyStays) {
    Complete();
    const auto made = fs::last_write_time(folder / AirportsName);
    Complete();
    EXPECT_THAT(told, SizeIs(1));
    EXPECT_EQ(fs::last_write_time(folder / AirportsName), made);
}

TEST_F(PracticeFolder, AnInterruptedFirstRunIsDoneAgain) {
    fs::create_directories(folder / "practice-world");
    std::ofstream(folder / "practice-world" / "half a file") << "x";
    Complete();
    EXPECT_THAT(AirportLabels(folder), SizeIs(8));
}

TEST_F(PracticeFolder, AnAirportIsSelectedByCodeOrLabelWithVariationAndTerrain) {
    Complete();
    Station byCode;
    SelectByName(byCode, folder, "LOWI");
    EXPECT_EQ(byCode.AirportName, "Innsbruck Kranebitten");
    EXPECT_EQ(byCode.RunwayHeading, 80);
    EXPECT_GT(byCode.MountainCount, 300);
    EXPECT_GT(byCode.HighestTerrain, 14000);
    EXPECT_EQ(byCode.MagVarGrid[11 * 181 + 47 + 90], 198);

    Station byLabel;
    SelectByName(byLabel, folder, "Innsbruck Kranebitten (LOWI)");
    EXPECT_EQ(byLabel.AirportCode, "LOWI");
}

TEST_F(PracticeFolder, AnUnknownAirportIsToldTheKnownOnes) {
    Complete();
    Station station;
    EXPECT_THAT([&] { SelectByName(station, folder, "XXXX"); },
                ThrowsMessage<std::runtime_error>(HasSubstr("there is no airport XXXX; known are Seattle")));
}

}  // namespace
}  // namespace corvenna
