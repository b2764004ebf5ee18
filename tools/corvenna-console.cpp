#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <stdexcept>

#include "practice/practice_folder.h"
#include "station/code_page.h"
#include "tools/console/data_folder.h"
#include "tools/console/join_program.h"
#include "tools/console/join_report.h"
#include "tools/console/system_terminal.h"
#include "tools/platform/platform.h"
#include "world/airport_check.h"
#include "world/files.h"

namespace {

using namespace corvenna;

constexpr const char* Examples = R"(Examples:
  corvenna-console --list-airports              what can be controlled
  corvenna-console --search                     sessions on the local network
  corvenna-console --join 192.168.1.5 --airport LOWI --callsign Innsbruck
                                                serves the pilots of that session
  corvenna-console --join 192.168.1.5 --report join.txt
                                                what to send us when a join fails

In the session you are the operator: type "stop" and "start" for the monitoring of traffic, "close" to leave;
so does Ctrl-C. For a practice without a simulator: corvenna-practice run.)";

constexpr std::string_view WhatToType =
    "one of --join HOST, --search, --report FILE and --list-airports is needed; for a practice without a "
    "simulator type corvenna-practice run";

constexpr int Failed = 1;
constexpr int WrongCommandLine = 2;

struct Options {
    std::string Airport = "KSEA";
    std::string Callsign;
    std::optional<double> Minutes;
    std::optional<std::string> App;
    std::optional<std::string> Data;
    std::optional<std::string> JoinHost;
    std::optional<std::string> SearchHost;
    std::optional<std::string> ReportFile;
    std::string Session;
    int Speed = 1;
    bool ListAirports = false;
    bool NoColour = false;
};

void AddOptions(CLI::App& app, Options& options) {
    app.add_option("--airport", options.Airport, "Code or label of the airport to control")
        ->capture_default_str();
    app.add_option("--callsign", options.Callsign, "The controller's name in the session")
        ->default_str("CODE_Controller");
    app.add_option("--minutes", options.Minutes, "Leave after so many minutes by your clock")
        ->check(CLI::Range(0.0, 100000.0));
    app.add_option("--app", options.App,
                   "Folder of the airport database; one for practice is made in a folder without any")
        ->default_str("corvenna in the user's cache");
    app.add_option("--data", options.Data, "Folder of the data files");
    app.add_option("--speed", options.Speed,
                   "How many times faster time runs; it must do so for everybody in the session")
        ->check(CLI::Range(1, 60))
        ->capture_default_str();
    app.add_flag("--no-colour", options.NoColour, "No colours, even on a terminal");

    const auto network = "A session on the network";
    auto* const join =
        app.add_option("--join", options.JoinHost,
                       "Join the session at this host: name or address, with or without \":port\"; "
                       "\"\" looks for it on the local network")
            ->type_name("HOST")
            ->group(network);
    app.add_option("--session", options.Session, "The session's name, where several are found")
        ->needs(join)
        ->group(network);

    auto* const report =
        app.add_option("--report", options.ReportFile,
                       "Try a join for half a minute, write into FILE what it meets, and end: for "
                       "who helps you; without names and addresses")
            ->type_name("FILE")
            ->group(network);

    const auto lists = "Lists";
    auto* const search = app.add_option("--search", options.SearchHost,
                                        "List the sessions at a host, or on the local network, and end")
                             ->type_name("[HOST]")
                             ->expected(0, 1)
                             ->group(lists)
                             ->excludes(join, report);
    app.add_flag("--list-airports", options.ListAirports, "List the airports, and end")
        ->group(lists)
        ->excludes(join, report, search);
    app.footer(Examples);
}

void ListAirports(const std::filesystem::path& appFolder) {
    for (const std::string& label : AirportLabels(appFolder)) std::cout << CodePageToUtf8(label) << '\n';
    if (!std::cout.flush()) throw std::runtime_error("standard output can't be written");
}

/// What a controller or a pilot will stumble over there, in one line.
void TellFindings(const Station& station) {
    const std::string findings = FindingsInOneLine(CheckAirport(station));
    if (findings.empty()) return;
    std::cerr << CodePageToUtf8(
        fmt::format("{} ({}): {}\n", station.AirportName, station.AirportCode, findings));
}

/// By the program's own time.
std::optional<std::chrono::milliseconds> Length(const Options& options) {
    if (!options.Minutes) return std::nullopt;
    return std::chrono::milliseconds(std::llround(*options.Minutes * 60000 * options.Speed));
}

void Control(const Options& options, const std::filesystem::path& appFolder) {
    Station station;
    SelectByName(station, appFolder, Utf8ToCodePage(options.Airport));
    TellFindings(station);

    SystemTerminal keyboard;
    FasterTerminal terminal(keyboard, options.Speed);
    RadioPrinter printer(std::cout, !options.NoColour && OutputTakesColour());
    RunJoin(std::move(station), {*options.JoinHost, options.Session, options.Callsign, Length(options)}, {},
            terminal, printer);
}

void Search(const std::string& host) {
    SystemTerminal keyboard;
    RunSearch(host, {}, keyboard, std::cout);
    if (!std::cout.flush()) throw std::runtime_error("standard output can't be written");
}

/// That the file can be written is found out before anything else.
void WriteReport(const Options& options) {
    const std::string file = BytesOf(PathOfUtf8(*options.ReportFile));
    ReplaceFile(file, {"This report was not finished.\n"});
    SystemTerminal keyboard;
    ReplaceFile(file, {ReportOfJoin({.Host = options.JoinHost.value_or(""),
                                     .Session = options.Session,
                                     .System = SystemVersion(),
                                     .Sockets = {}},
                                    keyboard, [](std::string_view line) { std::cerr << line << '\n'; })});
    std::cout << *options.ReportFile << " tells what the join met; it has no names and no addresses in it\n";
}

int Fail(int status, std::string_view words) {
    std::cerr << "corvenna-console: " << words << '\n';
    return status;
}

void Run(const Options& options) {
    if (options.SearchHost) return Search(*options.SearchHost);
    if (options.ReportFile) return WriteReport(options);
    const auto data = FindDataFolder(options.Data, ProgramFolder());
    const std::filesystem::path appFolder =
        options.App ? PathOfUtf8(*options.App) : CacheFolder() / "corvenna";
    CompletePracticeFolder(appFolder, data,
                           [](std::string_view what) { std::cerr << ReportToUtf8(what) << '\n'; });
    if (options.ListAirports) return ListAirports(appFolder);
    Control(options, appFolder);
}

}  // namespace

int main(int argc, char** argv) {
    const ConsoleSpelling spelling(Spelling::Utf8);
    Options options;
    CLI::App app("An automatic air traffic controller for a multiplayer session, in a terminal.");
    app.set_version_flag("--version", "corvenna-console " CORVENNA_VERSION);
    AddOptions(app, options);
    try {
        const CommandLine words(argc, argv, Spelling::Utf8);
        app.parse(words.Count(), words.Words());
        if (!options.JoinHost && !options.SearchHost && !options.ReportFile && !options.ListAirports) {
            return Fail(WrongCommandLine, WhatToType);
        }
        Run(options);
        return 0;
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return Fail(WrongCommandLine, error.what());
    } catch (const std::exception& error) {
        return Fail(Failed, ReportToUtf8(error.what()));
    }
}
