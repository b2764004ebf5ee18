#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <stdexcept>

#include "practice/practice_folder.h"
#include "station/code_page.h"
#include "tools/console/data_folder.h"
#include "tools/console/posix_terminal.h"
#include "tools/console/practice_console.h"
#include "world/airport_check.h"

namespace {

using namespace corvenna;

constexpr const char* Examples = R"(Examples:
  corvenna-console                              Seattle-Tacoma, until Ctrl-C or end of input
  corvenna-console --airport LOWI --pilots 6    Innsbruck with six practice pilots
  corvenna-console --minutes 1 < /dev/null      a minute of radio traffic, nobody at the keyboard
  corvenna-console --list-airports              what can be controlled

While it runs you are a pilot too: answer the welcome with the airport's code and the digit ("KSEA,1"),
every later menu with its digit, and "R" to hear the last text again.)";

struct Options {
    std::string Airport = "KSEA";
    std::string Callsign;
    std::string Person = "YOU1";
    std::optional<double> Minutes;
    std::optional<std::string> App;
    std::optional<std::string> Data;
    int Pilots = 4;
    int Speed = 1;
    bool ListAirports = false;
    bool NoColour = false;
};

void AddOptions(CLI::App& app, Options& options) {
    app.add_option("--airport", options.Airport, "Code or label of the airport to control")
        ->capture_default_str();
    app.add_option("--minutes", options.Minutes, "Leave after so many minutes by your clock")
        ->check(CLI::Range(0.0, 100000.0));
    app.add_option("--pilots", options.Pilots, "Number of practice pilots")
        ->check(CLI::Range(0, 100))
        ->capture_default_str();
    app.add_option("--speed", options.Speed, "How many times faster time runs, for everybody")
        ->check(CLI::Range(1, 60))
        ->capture_default_str();
    app.add_option("--callsign", options.Callsign, "The controller's name in the session")
        ->default_str("CODE_Controller");
    app.add_option("--pilot", options.Person, "Your own callsign")
        ->check([](const std::string& name) { return name.empty() ? "a callsign is needed" : ""; })
        ->capture_default_str();
    app.add_option("--app", options.App,
                   "Folder of the airport database; one for practice is made in a folder without any")
        ->default_str("corvenna in the user's cache");
    app.add_option("--data", options.Data, "Folder of the data files");
    app.add_flag("--list-airports", options.ListAirports, "List the airports, and end");
    app.add_flag("--no-colour", options.NoColour, "No colours, even on a terminal");
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

void Control(const Options& options, const std::filesystem::path& appFolder) {
    Station station;
    SelectByName(station, appFolder, Utf8ToCodePage(options.Airport));
    TellFindings(station);

    PosixTerminal keyboard;
    FasterTerminal terminal(keyboard, options.Speed);
    RadioPrinter printer(std::cout, !options.NoColour && OutputTakesColour());
    PracticeConsole practice(std::move(station),
                             {.Controller = Utf8ToCodePage(options.Callsign),
                              .Person = Utf8ToCodePage(options.Person),
                              .Pilots = options.Pilots},
                             printer);
    std::optional<std::chrono::milliseconds> length;
    if (options.Minutes)
        length = std::chrono::milliseconds(std::llround(*options.Minutes * 60000 * options.Speed));
    RunPractice(practice, terminal, length);
}

int Fail(std::string_view words) {
    std::cerr << "corvenna-console: " << words << '\n';
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("An automatic air traffic controller in a practice session within this program.");
    AddOptions(app, options);
    try {
        app.parse(argc, argv);
        const auto data = FindDataFolder(options.Data, ProgramFolder());
        const std::filesystem::path appFolder =
            options.App ? std::filesystem::path(*options.App) : CacheFolder() / "corvenna";
        CompletePracticeFolder(appFolder, data, [](std::string_view what) { std::cerr << what << '\n'; });
        if (options.ListAirports) {
            ListAirports(appFolder);
        } else {
            Control(options, appFolder);
        }
        return 0;
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
