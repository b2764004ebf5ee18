#pragma once

#include <string>

#include "support/shell_command.h"
#include "terrain/terrain_scene.h"

namespace corvenna {

struct ToolOutcome {
    int Status;
    std::string Printed;  // on both outputs
};

/// make-terrain with a line of arguments.
inline ToolOutcome RunTool(const std::string& arguments) {
    const TempFolder folder;
    const ShellOutcome outcome = RunInShell(folder, "\"" MAKE_TERRAIN "\" " + arguments);
    return {outcome.Status, WithoutReturns(outcome.Out) + outcome.Err};
}

inline constexpr const char* SmallGrid =
    "ncols 1\nnrows 1\nxllcorner 11\nyllcorner 46.9166666667\ncellsize 0.0833333333\n400\n";

}  // namespace corvenna
