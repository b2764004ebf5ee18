#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <vector>

#include "tools/replay/replay.h"

namespace corvenna {

/// A script that cannot be read, or a step that cannot be done. The words hold file, line number and reason.
class ScriptError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// One line of a script, read and checked, ready to be done.
struct ScriptStep {
    int LineNumber = 0;
    std::function<void(Replay&)> Do;
};

struct Script {
    std::filesystem::path File;
    std::vector<ScriptStep> Steps;
};

/// Reads a script whole. Throws ScriptError for the first line that is wrong.
Script ReadScript(const std::filesystem::path& file);

/// Does the steps in order. Failures of the station's handlers are part of the output; what a step itself
/// needs and does not find is a ScriptError.
void RunScript(const Script& script, Replay& replay);

}  // namespace corvenna
