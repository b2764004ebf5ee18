#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <iostream>

#include "station/code_page.h"
#include "station/geometry.h"
#include "tools/platform/platform.h"
#include "tools/world/world_json.h"
#include "world/airport_check.h"
#include "world/airport_database.h"
#include "world/airport_diagram.h"
#include "world/airport_selection.h"
#include "world/errors.h"
#include "world/files.h"
#include "world/magnetic_table.h"
#include "world/object_walker.h"
#include "world/scenery_scan.h"

/// Scenery and database files from the command line. Data go to standard output; all that is for people
/// goes to standard error.
namespace corvenna {
namespace {

constexpr int ExitFailed = 1;
constexpr int ExitWrongCommandLine = 2;

/// The command has failed and has said so already.
struct Failed {};

/// Shows a bar while standard error is a terminal, and a line for each file that was skipped.
class ScanDisplay final : public ScanObserver {
  public:
    void ExpectFiles(std::int32_t total) { total_ = total; }
    std::int32_t SkippedFiles() const { return skipped_; }

    void EntersArea(std::string_view title) override { title_ = CodePageToUtf8(title); }

    void FilesDone(std::int32_t done) override {
        if (terminal_) ShowBar(done);
    }

    void Skipped(std::string_view path, std::string_view reason) override {
        ClearLine();
        ++skipped_;
        fmt::print(stderr, "{}: skipped: {}\n", ReportToUtf8(path), ReportToUtf8(reason));
    }

    void ClearLine() const {
        if (terminal_) fmt::print(stderr, "\r\x1b[K");
    }

  private:
    void ShowBar(std::int32_t done) const {
        constexpr int Width = 40;
        const int filled = total_ > 0 ? static_cast<int>(std::int64_t{done} * Width / total_) : Width;
        fmt::print(stderr, "\r[{:#<{}}{:.<{}}] {}/{} {:.30}\x1b[K", "", filled, "", Width - filled, done,
                   total_, title_);
        std::fflush(stderr);
    }

    bool terminal_ = ErrorOutputIsTerminal();
    std::int32_t total_ = 0;
    std::int32_t skipped_ = 0;
    std::string title_;
};

void Scan(const std::string& simFolder, const std::string& appFolder) {
    const auto start = std::chrono::steady_clock::now();
    BeginDatabase(simFolder, appFolder);
    Station station;
    LoadMagVarOf(simFolder, station);
    ScanDisplay display;
    SceneryScan scan(station, simFolder, display);
    display.ExpectFiles(scan.TotalBglFiles());
    while (scan.Tick()) {
    }
    display.ClearLine();
    FinishDatabase(scan, simFolder, appFolder);

    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    fmt::print("{} airports in {} files of {} areas, {} skipped, {:.2f} s\n", scan.Airports().Count(),
               scan.TotalBglFiles(), scan.AreaCount(), display.SkippedFiles(), seconds.count());
}

void List(const std::string& appFolder) {
    const AirportList airports = ReadDatabase(appFolder);
    std::string lines;
    for (std::int32_t i = 0; i < airports.Count(); ++i) lines += AirportLabel(airports.Fields(i)) + '\n';
    std::cout << lines;
}

FileError NoSuchAirport(const std::string& appFolder, const std::string& label) {
    return FileError(appFolder, fmt::format("no airport \"{}\" in the database", label));
}

/// Of several airports with the label the last one counts, as in the selection.
Airport FindAirport(const std::string& appFolder, const std::string& label) {
    const AirportList airports = ReadDatabase(appFolder);
    const std::int32_t number = airports.FindLast(label);
    if (number < 0) throw NoSuchAirport(appFolder, label);
    return airports.Record(number);
}

void Dump(const std::string& appFolder, const std::string& label) {
    std::cout << AirportJson(FindAirport(appFolder, label)).dump(2) << '\n';
}

void ShowStation(const std::string& appFolder, const std::string& label) {
    Station station;
    const auto box = PrepareStation(station, appFolder, label);
    if (!box) throw NoSuchAirport(appFolder, label);
    std::cout << SelectionJson(station, *box).dump(2) << '\n';
}

/// Degrees east at the airport, if the simulator's table can still be read.
std::optional<std::int16_t> VariationAt(const std::string& appFolder, const Airport& airport) {
    try {
        Station station;
        LoadMagVarOf(ReadConfig(appFolder).SimFolder, station);
        const int ofNorth = TrueToMagnetic(station, 180, airport.Latitude, airport.Longitude);
        return static_cast<std::int16_t>(180 - ofNorth);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void Draw(const std::string& appFolder, const std::string& label, const std::string& file) {
    const Airport airport = FindAirport(appFolder, label);
    ReplaceFile(file, {DrawAirport(airport, VariationAt(appFolder, airport))});
}

void Check(const std::string& appFolder, const std::string& label) {
    Station station;
    if (!SelectAirport(station, ReadDatabase(appFolder), label)) throw NoSuchAirport(appFolder, label);
    const std::vector<AirportFinding> findings = CheckAirport(station);
    if (findings.empty()) std::cout << "nothing is wrong with this airport\n";
    for (const AirportFinding& finding : findings) {
        std::cout << CodePageToUtf8(finding.What) << '\n';
        for (const std::string& place : finding.Places) std::cout << "  " << CodePageToUtf8(place) << '\n';
    }
}

void Walk(const std::string& file, std::int64_t offset, const std::string& name) {
    std::vector<std::uint8_t> buffer;
    ReadFileStart(FindPath(file).value_or(file), std::numeric_limits<std::size_t>::max(), buffer);
    buffer.push_back(0);
    try {
        WalkObjects(buffer, offset, name, [](const std::string& log) { std::cout << log; });
    } catch (const OpcodeError& error) {
        OfferOnClipboard(error.Log());
        std::cout << error.Log() << '\n' << error.what() << '\n';
        throw Failed{};
    } catch (const DamagedData& damage) {
        throw FileError(file, damage.what());
    }
}

/// The library would read 010 as octal and 0x10 too.
std::int64_t DecimalOffset(const std::string& text) {
    std::int64_t offset = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), offset);
    if (failure != std::errc{} || end != text.data() + text.size())
        throw CLI::ConversionError(text, "OFFSET");
    return offset;
}

int Run(int argc, char** argv) {
    CLI::App app("Scenery and airport database files of Corvenna.");
    app.set_version_flag("--version", "corvenna-world " CORVENNA_VERSION);
    app.require_subcommand(1);
    std::string simFolder, appFolder, label;
    const CommandLine words(argc, argv, Spelling::Files);
    KeepLineEnds();

    CLI::App* const scan = app.add_subcommand("scan", "Build the airport database from the scenery");
    scan->add_option("SIMFOLDER", simFolder, "The simulator's main folder")->required();
    scan->add_option("APPFOLDER", appFolder, "Where the database goes")->required();
    scan->callback([&] { Scan(simFolder, appFolder); });

    CLI::App* const list = app.add_subcommand("list", "Print the labels of all airports");
    list->add_option("APPFOLDER", appFolder, "Where the database is")->required();
    list->callback([&] { List(appFolder); });

    const auto airportCommand = [&](const char* name, const char* help) {
        CLI::App* const command = app.add_subcommand(name, help);
        command->add_option("APPFOLDER", appFolder, "Where the database is")->required();
        command->add_option("LABEL", label, "The airport, as list prints it")->required();
        return command;
    };
    airportCommand("dump", "Print the record of an airport")->callback([&] { Dump(appFolder, label); });

    airportCommand("station", "Print the station that the selection of an airport gives")->callback([&] {
        ShowStation(appFolder, label);
    });

    airportCommand("check", "Tell what is wrong with an airport for a controller")->callback([&] {
        Check(appFolder, label);
    });

    std::string file, name;
    CLI::App* const draw = airportCommand("draw", "Draw the diagram of an airport");
    draw->add_option("FILE", file, "The SVG file to write")->required();
    draw->callback([&] { Draw(appFolder, label, file); });

    std::string offset;
    CLI::App* const walk = app.add_subcommand("walk", "Log the opcodes of the objects in a BGL file");
    walk->add_option("FILE", file, "The BGL file")->required();
    walk->add_option("OFFSET", offset, "Where the object list begins, decimal")->required();
    walk->add_option("NAME", name, "The file's name in the log")->required();
    walk->callback([&] { Walk(file, DecimalOffset(offset), name); });

    try {
        app.parse(words.Count(), words.Words());
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        fmt::print(stderr, "corvenna-world: {}\n", ReportToUtf8(error.what()));
        return ExitWrongCommandLine;
    } catch (const Failed&) {
        std::cout.flush();
        return ExitFailed;
    }
    if (!std::cout.flush()) throw std::runtime_error("standard output can't be written");
    return 0;
}

}  // namespace
}  // namespace corvenna

int main(int argc, char** argv) {
    const corvenna::ConsoleSpelling spelling(corvenna::Spelling::Files);
    try {
        return corvenna::Run(argc, argv);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", corvenna::ReportToUtf8(error.what()));
        return corvenna::ExitFailed;
    }
}
