// A simulator to practise with, for everybody who doesn't have the real one.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "practice/made_up_airports.h"
#include "practice/magnetic_field.h"
#include "practice/practice_airports.h"
#include "practice/world_writer.h"
#include "tools/console/data_folder.h"
#include "tools/console/posix_terminal.h"
#include "tools/practice/host_program.h"

namespace {

using namespace corvenna;

constexpr double PracticeYear = 2002.0;

// ---- world

struct WorldOptions {
    std::string Folder;
    std::optional<std::string> Data;
    int MadeUp = 0;
    std::uint64_t Seed = 2002;
};

constexpr const char* WorldExamples =
    "Example:\n"
    "  corvenna-practice world w && mkdir app && corvenna-world scan w app && corvenna-world list app\n";

void AddWorldOptions(CLI::App& command, WorldOptions& options) {
    command.add_option("DIR", options.Folder, "The folder to make; it must be new or empty")->required();
    command.add_option("--airports", options.MadeUp, "So many made-up airports besides the real ones")
        ->check(CLI::Range(0, 100'000))
        ->capture_default_str();
    command.add_option("--seed", options.Seed, "What the made-up airports are made from")
        ->capture_default_str();
    command.add_option("--data", options.Data, "Folder of the data files");
    command.footer(WorldExamples);
}

void MakeWorld(const WorldOptions& options) {
    const std::filesystem::path data = FindDataFolder(options.Data, ProgramFolder());
    const auto airports = LoadPracticeAirports(data / "practice-airports.json");
    const auto magVarGrid = WholeDegreeTable(MagneticField::Load(data / "igrf.json"), PracticeYear);
    const auto madeUp = MakeUpAirports(options.MadeUp, options.Seed, magVarGrid);
    WritePracticeWorld(options.Folder, airports, madeUp, magVarGrid);
    std::cout << fmt::format("{}: a simulator folder with {} real and {} made-up airports\n", options.Folder,
                             airports.size(), madeUp.size());
}

// ---- host

constexpr const char* HostExamples = R"(Examples:
  corvenna-practice host                                          a session on this computer alone
  corvenna-practice host --bind 0.0.0.0 --name "Friday evening"   one for the local network
  corvenna-practice host --position 47.44,-122.31,433,160         the host stands at Seattle-Tacoma

Lines typed are said in the chat; "/at LAT,LON,FEET,HEADING" moves the host's aircraft and "/remove NAME"
puts somebody out of the session. Ctrl-C and SIGTERM end it.)";

void AddHostOptions(CLI::App& command, HostOptions& options) {
    command.add_option("--name", options.SessionName, "The session's name")->capture_default_str();
    command.add_option("--bind", options.Bind, "Address to listen at; 0.0.0.0: all interfaces")
        ->capture_default_str();
    command.add_option("--players", options.Players, "As many as the session takes, the host among them")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    command.add_option("--pilot", options.Pilot, "The host's own name in the session")->capture_default_str();
    command.add_flag("--observer", options.Observer, "The host only watches");
    command.add_option("--position", options.Position,
                       "Where the host's aircraft is: latitude,longitude,feet,heading");
    command.add_option("--port", options.Port, "Port at which the session is searched; 0: any")
        ->capture_default_str();
    command.footer(HostExamples);
}

void Host(const HostOptions& options) {
    PosixTerminal terminal;
    RunHost(options, {}, terminal, std::cout);
}

int Run(int argc, char** argv) {
    CLI::App app("A simulator to practise with, for everybody who doesn't have the real one.",
                 "corvenna-practice");
    app.require_subcommand(1);
    WorldOptions world;
    CLI::App* const worldCommand = app.add_subcommand("world", "Make a simulator folder with real airports");
    AddWorldOptions(*worldCommand, world);
    HostOptions host;
    CLI::App* const hostCommand = app.add_subcommand("host", "Host a practice session on real sockets");
    AddHostOptions(*hostCommand, host);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    try {
        if (worldCommand->parsed()) MakeWorld(world);
        if (hostCommand->parsed()) Host(host);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "corvenna-practice: " << error.what() << '\n';
        return 1;
    }
}

}  // namespace

int main(int argc, char** argv) { return Run(argc, argv); }
