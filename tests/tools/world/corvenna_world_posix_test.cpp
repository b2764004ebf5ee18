#include <gmock/gmock.h>

#include "tools/world/world_tool.h"

namespace corvenna {
namespace {

using testing::MatchesRegex;

/// A thousand airports of one file make a database of more than the 100 blocks that files may grow to.
TEST_F(WorldTool, ScanOntoAFullDiskLeavesNothingHalfWrittenAndSaysSo) {
    MakeSim();
    BglBuilder file;
    for (int i = 0; i < 1000; ++i) file.First("Field " + std::to_string(i), AirportBuilder().Ident("X"));
    folder.Write("sim/Scenery/One/Scenery/Many.bgl", file.Get());
    const Outcome scan = Run("scan sim app", "trap '' XFSZ && ulimit -f 100 && ");
    EXPECT_EQ(scan.Status, 1);
    EXPECT_THAT(scan.Err,
                MatchesRegex("app/world_airports.dat: can't be written: [^\n]*; nothing was changed\n"));
    EXPECT_FALSE(folder.Has("app/world_airports.dat"));
    EXPECT_FALSE(folder.Has("app/world_airports.dat.new"));
    EXPECT_EQ(folder.Read("app/Corvenna.cfg"), std::string("\3\0sim\0\0\0\0", 9));
}

TEST_F(WorldTool, OutputThatCanNotBeWrittenIsAFailureWithOneLine) {
    ScanSim();
    const std::string app = folder.Path("app"), err = folder.Path("err.txt");
    EXPECT_EQ(RunShell("'" CORVENNA_WORLD_TOOL "' list '" + app + "' >/dev/full 2>'" + err + "'"), 1);
    EXPECT_EQ(folder.Read("err.txt"), "standard output can't be written\n");
}

}  // namespace
}  // namespace corvenna
