#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/platform/platform.h"
#include "tools/replay/script.h"
#include "world/files.h"

namespace {

constexpr int OutputUnwritable = 1;
constexpr int ScriptUnreadable = 2;

constexpr const char* Description =
    "Drives a whole station from a script, without clock or sockets, and prints what it does.\n"
    "Script and output are JSON Lines; docs/replay.md tells both.";

}  // namespace

int main(int argc, char** argv) {
    const corvenna::ConsoleSpelling spelling(corvenna::Spelling::Utf8);
    std::string file;
    CLI::App app(Description);
    app.set_version_flag("--version", "corvenna-replay " CORVENNA_VERSION);
    app.add_option("SCRIPT", file, "The script to run")->required();
    const corvenna::CommandLine words(argc, argv, corvenna::Spelling::Utf8);
    corvenna::KeepLineEnds();
    try {
        app.parse(words.Count(), words.Words());
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : ScriptUnreadable;
    }

    std::ios::sync_with_stdio(false);
    try {
        corvenna::Replay replay(std::cout);
        corvenna::RunScript(corvenna::ReadScript(corvenna::PathOfUtf8(file)), replay);
    } catch (const corvenna::ScriptError& error) {
        std::cout.flush();
        std::cerr << "corvenna-replay: " << error.what() << '\n';
        return ScriptUnreadable;
    }
    if (!std::cout.flush()) {
        std::cerr << "corvenna-replay: standard output can't be written\n";
        return OutputUnwritable;
    }
    return 0;
}
