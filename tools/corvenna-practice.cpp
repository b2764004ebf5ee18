// A simulator to practise with, for everybody who doesn't have the real one.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "practice/made_up_airports.h"
#include "practice/magnetic_field.h"
#include "practice/practice_airports.h"
#include "practice/practice_folder.h"
#include "practice/world_writer.h"
#include "station/code_page.h"
#include "tools/console/data_folder.h"
#include "tools/console/system_terminal.h"
#include "tools/platform/platform.h"
#include "tools/practice/fly_program.h"
#include "tools/practice/host_program.h"
#include "tools/practice/run_program.h"
#include "tools/practice/sit_program.h"
#include "world/files.h"

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
    WritePracticeWorld(PathOfUtf8(options.Folder), airports, madeUp, magVarGrid);
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
    SystemTerminal terminal;
    RunHost(options, {}, terminal, std::cout);
}

// ---- What fly and sit have in common

struct SessionOptions {
    std::string Host = "127.0.0.1";
    std::string Airport;
    std::string Bind;
    std::optional<std::string> App;
    std::optional<std::string> Data;
    int Speed = 1;
};

void AddFolders(CLI::App& command, std::optional<std::string>& app, std::optional<std::string>& data) {
    command
        .add_option("--app", app,
                    "Folder of the airport database; one for practice is made where there is none")
        ->default_str("corvenna in the user's cache");
    command.add_option("--data", data, "Folder of the data files");
}

CLI::Option* AddSpeed(CLI::App& command, int& speed) {
    return command
        .add_option("--speed", speed, "How many times faster time runs; the controller's must run as fast")
        ->check(CLI::Range(1, 60))
        ->capture_default_str();
}

void AddSessionOptions(CLI::App& command, SessionOptions& options) {
    command.add_option("HOST", options.Host, "Name or address of the session's host")->capture_default_str();
    command.add_option("--airport", options.Airport, "Code or label of the controller's airport")
        ->default_str("wherever one says welcome");
    command.add_option("--bind", options.Bind, "Own address, on a computer with several");
    AddSpeed(command, options.Speed);
    AddFolders(command, options.App, options.Data);
}

/// The folder with a database, made where there is none.
std::filesystem::path PracticeFolder(const std::optional<std::string>& app,
                                     const std::optional<std::string>& data) {
    std::filesystem::path folder = app ? PathOfUtf8(*app) : CacheFolder() / "corvenna";
    CompletePracticeFolder(folder, FindDataFolder(data, ProgramFolder()),
                           [](std::string_view what) { std::cerr << ReportToUtf8(what) << '\n'; });
    return folder;
}

SessionAccess Access(const SessionOptions& options) {
    SessionAccess access;
    access.Host = options.Host;
    access.Airport = options.Airport;
    access.App = PracticeFolder(options.App, options.Data);
    if (!options.Bind.empty()) access.Sockets.BindIp = OwnAddress(options.Bind);
    return access;
}

// ---- fly

struct FlyArguments {
    SessionOptions Join;
    TrafficPlan Traffic;
    std::optional<double> Minutes;
    std::string Picture;
};

constexpr const char* FlyExamples = R"(Examples:
  corvenna-practice fly                                  six pilots in the session on this computer
  corvenna-practice fly 192.168.1.5 --pilots 20 --unruly a crowd for a host on the network
  corvenna-practice fly --pilots 1 --seed 3 --speed 20 --picture arrival.svg

Without --airport they wait for a controller's welcome, come to his airport, and follow when he has left and another one
says welcome elsewhere.
The first pilots of seeds 0 to 7 fly a VFR circuit, an IFR round trip, a VFR arrival, an IFR arrival, one with a
missed approach, an IFR departure, a VFR round trip and an IFR arrival from 150 miles; their followers go on in that
order.
Ctrl-C, SIGTERM and the end of the minutes end it with a summary.)";

void AddTraffic(CLI::App& command, TrafficPlan& traffic) {
    command.add_option("--pilots", traffic.Pilots, "How many fly at a time")
        ->check(CLI::Range(1, MostPilots))
        ->capture_default_str();
    command.add_option("--seed", traffic.Seed, "Number of the first pilot; the same one, the same flights")
        ->check(CLI::Range(0, 100'000))
        ->capture_default_str();
    command.add_flag("--unruly", traffic.Unruly, "Every third pilot behaves badly");
}

void AddLength(CLI::App& command, std::optional<double>& minutes) {
    command.add_option("--minutes", minutes, "End after so many minutes by your clock")
        ->check(CLI::Range(0.0, 100000.0));
}

void AddPicture(CLI::App& command, std::string& picture) {
    command.add_option("--picture", picture, "Draw in the end what has happened")->type_name("FILE.svg");
}

std::optional<std::chrono::milliseconds> Length(const std::optional<double>& minutes, int speed) {
    if (!minutes) return std::nullopt;
    return std::chrono::milliseconds(std::llround(*minutes * 60000 * speed));
}

void AddFlyOptions(CLI::App& command, FlyArguments& options) {
    AddSessionOptions(command, options.Join);
    AddTraffic(command, options.Traffic);
    AddLength(command, options.Minutes);
    AddPicture(command, options.Picture);
    command.footer(FlyExamples);
}

void FlyInSession(const FlyArguments& arguments) {
    SystemTerminal keyboard;
    FasterTerminal terminal(keyboard, arguments.Join.Speed);
    FlyOptions options;
    options.Access = Access(arguments.Join);
    options.Traffic = arguments.Traffic;
    options.Length = Length(arguments.Minutes, arguments.Join.Speed);
    options.Picture = PathOfUtf8(arguments.Picture);
    RunFly(options, terminal, std::cout);
}

// ---- sit

struct SitArguments {
    SessionOptions Join;
    std::string Name;
    std::string Spot;
};

constexpr const char* SitExamples = R"(Examples:
  corvenna-practice sit N1                        in the session on this computer
  corvenna-practice sit N1 192.168.1.5 --spot "GATE A 1"

Type the digits of the controller's menus, and help for the commands that move the aircraft. Lines may come
from a file: then each digit waits until it is offered.)";

void AddSitOptions(CLI::App& command, SitArguments& options) {
    command.add_option("NAME", options.Name, "Your callsign")->required()->check([](const std::string& name) {
        return name.empty() ? "a callsign is needed" : "";
    });
    AddSessionOptions(command, options.Join);
    command.add_option("--spot", options.Spot, "The parking spot where you begin")
        ->default_str("the first one");
    command.footer(SitExamples);
}

void SitInSession(const SitArguments& arguments) {
    SystemTerminal keyboard;
    FasterTerminal terminal(keyboard, arguments.Join.Speed);
    SitOptions options;
    options.Access = Access(arguments.Join);
    options.Name = arguments.Name;
    options.Spot = arguments.Spot;
    options.Scripted = !InputIsTerminal();
    RunSit(options, terminal, std::cout);
}

// ---- run

struct RunArguments {
    RunOptions Run;
    std::optional<std::string> App;
    std::optional<std::string> Data;
    std::optional<double> Minutes;
    std::string Picture;
    std::string Folder;
    int Speed = 1;
    bool Desktop = false;
};

constexpr const char* RunExamples = R"(Examples:
  corvenna-practice run                                    until Ctrl-C
  corvenna-practice run --minutes 3 --speed 20 < /dev/null  an hour in three minutes
  corvenna-practice run --airport LOWI --pilots 12 --unruly
  corvenna-practice run --desktop                          you are the controller, at the airport you choose

While it runs, corvenna-practice sit NAME in another terminal takes you along.)";

void AddRunOptions(CLI::App& command, RunArguments& options) {
    auto* const airport =
        command.add_option("--airport", options.Run.Airport, "Code or label of the airport")
            ->capture_default_str();
    AddTraffic(command, options.Run.Traffic);
    auto* const speed = AddSpeed(command, options.Speed);
    AddLength(command, options.Minutes);
    AddPicture(command, options.Picture);
    auto* const desktop =
        command
            .add_flag("--desktop", options.Desktop,
                      "Open the desktop program for the controller, who chooses the airport and joins the "
                      "session by himself; the pilots come where he is")
            ->excludes(airport, speed);
    command.add_option("--folder", options.Folder, "The desktop program's own folder")
        ->default_str("that of the airport database")
        ->needs(desktop);
    command.add_option("--bind", options.Run.Bind, "Address of this computer at which the session is hosted")
        ->capture_default_str();
    AddFolders(command, options.App, options.Data);
    command.footer(RunExamples);
}

std::vector<std::string> ConsoleStation(const RunArguments& arguments) {
    const RunOptions& options = arguments.Run;
    std::vector<std::string> command{(ProgramFolder() / "corvenna-console").string(),
                                     "--join",
                                     options.Bind,
                                     "--airport",
                                     options.Airport,
                                     "--app",
                                     options.App.string(),
                                     "--speed",
                                     std::to_string(arguments.Speed)};
    if (arguments.Data) command.insert(command.end(), {"--data", *arguments.Data});
    return command;
}

/// The desktop program takes the current folder for its own.
std::vector<std::string> DesktopStation(RunOptions& options, const std::string& folder) {
    options.Airport.clear();
    options.App = std::filesystem::absolute(options.App);
    if (!options.Picture.empty()) options.Picture = std::filesystem::absolute(options.Picture);
    std::filesystem::current_path(folder.empty() ? options.App : PathOfUtf8(folder));
    return {(ProgramFolder() / "corvenna").string()};
}

void RunAll(RunArguments arguments) {
    SystemTerminal keyboard;
    FasterTerminal terminal(keyboard, arguments.Speed);
    RunOptions& options = arguments.Run;
    options.App = PracticeFolder(arguments.App, arguments.Data);
    options.Picture = PathOfUtf8(arguments.Picture);
    options.Length = Length(arguments.Minutes, arguments.Speed);
    options.Station =
        arguments.Desktop ? DesktopStation(options, arguments.Folder) : ConsoleStation(arguments);
    RunWholePractice(options, terminal, std::cout);
}

int Run(int argc, char** argv) {
    CLI::App app("A simulator to practise with, for everybody who doesn't have the real one.",
                 "corvenna-practice");
    app.set_version_flag("--version", "corvenna-practice " CORVENNA_VERSION);
    app.require_subcommand(1);
    WorldOptions world;
    CLI::App* const worldCommand = app.add_subcommand("world", "Make a simulator folder with real airports");
    AddWorldOptions(*worldCommand, world);
    HostOptions host;
    CLI::App* const hostCommand = app.add_subcommand("host", "Host a practice session on real sockets");
    AddHostOptions(*hostCommand, host);
    FlyArguments fly;
    CLI::App* const flyCommand = app.add_subcommand("fly", "Fly practice pilots in a session on sockets");
    AddFlyOptions(*flyCommand, fly);
    SitArguments sit;
    CLI::App* const sitCommand = app.add_subcommand("sit", "Be a pilot yourself in a session on sockets");
    AddSitOptions(*sitCommand, sit);
    RunArguments run;
    CLI::App* const runCommand =
        app.add_subcommand("run", "A whole practice: session, pilots and controller");
    AddRunOptions(*runCommand, run);
    const CommandLine words(argc, argv, Spelling::Utf8);
    try {
        app.parse(words.Count(), words.Words());
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    try {
        if (worldCommand->parsed()) MakeWorld(world);
        if (hostCommand->parsed()) Host(host);
        if (flyCommand->parsed()) FlyInSession(fly);
        if (sitCommand->parsed()) SitInSession(sit);
        if (runCommand->parsed()) RunAll(run);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "corvenna-practice: " << ReportToUtf8(error.what()) << '\n';
        return 1;
    }
}

}  // namespace

int main(int argc, char** argv) {
    const ConsoleSpelling spelling(Spelling::Utf8);
    return Run(argc, argv);
}
