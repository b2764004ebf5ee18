#include <unistd.h>

#include "terrain/terrain_tool.h"

namespace corvenna {
namespace {

TEST(MakeTerrain, AFullDiskLeavesTheOldFile) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
    const TempFolder folder;
    const std::string out = Written(folder, "out.db", "old");
    std::filesystem::create_symlink("/dev/full", out + ".new");
    const ToolOutcome outcome = RunTool(Written(folder, "grid.asc", SmallGrid) + " -o " + out);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_THAT(outcome.Printed, testing::HasSubstr("No space left on device"));
    EXPECT_EQ(BytesOf(out), "old");
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(out + ".new")));
}

}  // namespace
}  // namespace corvenna
