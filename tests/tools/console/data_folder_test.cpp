#include "tools/console/data_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <stdexcept>

namespace corvenna {
namespace {

namespace fs = std::filesystem;

class DataFolderTest : public testing::Test {
  protected:
    ~DataFolderTest() override { fs::remove_all(Root); }

    void PutData(const fs::path& folder) {
        fs::create_directories(folder);
        std::ofstream(folder / "practice-airports.json") << "{}";
    }

    fs::path Root = fs::temp_directory_path() / ("corvenna-" + std::to_string(std::random_device()()));
};

TEST_F(DataFolderTest, TheOneGivenIsTakenAndNoOther) {
    PutData(Root / "given");
    PutData(Root / "bin");
    EXPECT_EQ(FindDataFolder((Root / "given").string(), Root / "bin"), Root / "given");
    EXPECT_THROW(FindDataFolder((Root / "empty").string(), Root / "bin"), std::runtime_error);
}

TEST_F(DataFolderTest, TheInstalledOneComesBeforeTheOneInTheProgramsFolder) {
    PutData(Root / "share" / "corvenna");
    PutData(Root / "bin");
    EXPECT_TRUE(fs::equivalent(FindDataFolder({}, Root / "bin"), Root / "share" / "corvenna"));
}

TEST_F(DataFolderTest, TheOneInTheProgramsFolderComesNext) {
    PutData(Root / "bin");
    EXPECT_TRUE(fs::equivalent(FindDataFolder({}, Root / "bin"), Root / "bin"));
}

TEST_F(DataFolderTest, AProgramInItsBuildFolderTakesThatOfTheSourceTree) {
    EXPECT_TRUE(fs::equivalent(FindDataFolder({}, Root / "bin"), CORVENNA_TEST_DATA));
}

TEST_F(DataFolderTest, TheComplaintNamesThePlace) {
    try {
        FindDataFolder("nowhere", Root);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "there is no practice-airports.json in nowhere");
    }
}

}  // namespace
}  // namespace corvenna
