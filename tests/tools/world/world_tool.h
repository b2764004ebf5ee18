#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/shell_command.h"
#include "world/bgl_builder.h"

namespace corvenna {

/// The program with a simulator's folder "sim" and an application folder "app", in which it runs.
class WorldTool : public testing::Test {
  protected:
    using Outcome = ShellOutcome;

    /// `before` is what the shell does ahead of the program.
    Outcome Run(const std::string& arguments, const std::string& before = "") {
        return RunInShell(folder, before + "\"" CORVENNA_WORLD_TOOL "\" " + arguments);
    }

    void MakeSim() {
        folder.Write("sim/FS2002.EXE", "");
        folder.Write("sim/SCENERY.CFG", "[Area.1]\r\nTitle=One\r\nLocal=Scenery\\One\r\n");
        folder.Write("sim/Scenery/Magdec.bgl", ByteWriter().ZerosTo(114).Get());
        const auto field = AirportBuilder()
                               .Position(47, -122)
                               .Ident("KTST")
                               .Com(6, 0x1183000)
                               .Runway(9000, 150, 16)
                               .RunwayEnd(47.01, -122, 100, 180, 16)
                               .TaxiBlock(TaxiBlockBuilder()
                                              .Points({{1, 0, 1100}, {1, 0, -1000}})
                                              .Spots({{200, 0, 26, PackedSpot(1, 10)}})
                                              .Paths({{1, 0, 1, 0}, {2, 0, 0, 0}})
                                              .Names({}));
        folder.Write("sim/Scenery/One/Scenery/AP.BGL",
                     BglBuilder()
                         .First("Early", AirportBuilder().Ident("X"))
                         .First("M\xFCnchen", field)
                         .First("Early", AirportBuilder().Position(5, 5).Ident("X"))
                         .Get());
        std::filesystem::create_directories(folder.Path("app"));
    }

    void ScanSim() {
        MakeSim();
        ASSERT_EQ(Run("scan sim app").Status, 0);
    }

    TempFolder folder;
};

}  // namespace corvenna
