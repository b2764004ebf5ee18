// The tool itself, run as a person runs it.

#include "terrain/terrain_tool.h"

namespace corvenna {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(MakeTerrain, WritesTheFileAndSaysHowManyPointsItHas) {
    const TempFolder folder;
    const std::string grid = Written(folder, "grid.asc", SmallGrid);
    const std::string peaks = Written(folder, "peaks.csv", "lat,lon,elevation_m\n46.5,11.5,2000\n");
    const std::string out = folder.Path("out.db");
    const ToolOutcome outcome = RunTool(grid + " --peaks " + peaks + " -o " + out);
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Printed, out + ": 2 points\n");
    EXPECT_EQ(BytesOf(out), "46.5000 11.5000 2000\n46.958 11.042 590\n");
}

TEST(MakeTerrain, TakesRegionAndBlock) {
    const TempFolder folder;
    const std::string grid =
        Written(folder, "grid.asc",
                "ncols 2\nnrows 1\nxllcorner 11\nyllcorner 46.9166666667\ncellsize 0.0833333333\n400 401\n");
    const std::string out = folder.Path("out.db");
    EXPECT_EQ(RunTool(grid + " --block 5 -o " + out).Status, 0);
    EXPECT_EQ(BytesOf(out), "46.958 11.042 450\n46.958 11.125 451\n");
    EXPECT_EQ(RunTool(grid + " --block 5 --region 47,46,11.1,12 -o " + out).Status, 0);
    EXPECT_EQ(BytesOf(out), "46.958 11.125 451\n");
    EXPECT_EQ(RunTool(grid + " --block 5 --region=-46,-47,-12,-11.1 -o " + out).Status, 0);
    EXPECT_EQ(BytesOf(out), "");
}

TEST(MakeTerrain, ADamagedInputLeavesTheOldFileAndIsNamed) {
    const TempFolder folder;
    const std::string grid = Written(folder, "grid.asc", std::string(SmallGrid) + "x");
    const std::string out = Written(folder, "out.db", "old");
    const ToolOutcome outcome = RunTool(grid + " -o " + out);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Printed,
              "make-terrain: " + grid + ": line 7: \"x\" behind the last of 1 rows of 1 heights\n");
    EXPECT_EQ(BytesOf(out), "old");
}

TEST(MakeTerrain, AFileOfNoKnownKindIsRefused) {
    const TempFolder folder;
    const ToolOutcome outcome = RunTool(Written(folder, "grid.tif", "II*") + " -o " + folder.Path("out.db"));
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_THAT(outcome.Printed, HasSubstr("grid.tif: neither .hgt nor .asc"));
}

TEST(MakeTerrain, AFolderThatIsNotThereIsTold) {
    const TempFolder folder;
    const std::string out = folder.Path("missing/out.db");
    const ToolOutcome outcome = RunTool(Written(folder, "grid.asc", SmallGrid) + " -o " + out);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_THAT(outcome.Printed, StartsWith("make-terrain: " + out + ": "));
    EXPECT_THAT(outcome.Printed, HasSubstr("No such file or directory"));
}

TEST(MakeTerrain, AWrongCommandLineGivesTwoAndHelpGivesZero) {
    EXPECT_EQ(RunTool("").Status, 2);
    EXPECT_EQ(RunTool("-o out.db").Status, 2);
    EXPECT_EQ(RunTool("a.asc").Status, 2);
    EXPECT_EQ(RunTool("a.asc -o out.db --block 10").Status, 2);
    EXPECT_EQ(RunTool("a.asc -o out.db --region 1,2,3").Status, 2);
    EXPECT_EQ(RunTool("a.asc -o out.db --region 1,2,3,x").Status, 2);
    EXPECT_EQ(RunTool("a.asc -o out.db --region 40,40,3,4").Status, 2);
    EXPECT_EQ(RunTool("a.asc -o out.db --nonsense").Status, 2);
    const ToolOutcome help = RunTool("--help");
    EXPECT_EQ(help.Status, 0);
    for (const char* word :
         {"--raw", "--peaks", "--extra", "--region", "--block", "--output", "samples=cells"}) {
        EXPECT_THAT(help.Printed, HasSubstr(word));
    }
}

}  // namespace
}  // namespace corvenna
