// Makes world_terrain.db, or a finer file for one region, from elevation grids and lists of known heights.

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tools/platform/platform.h"
#include "tools/terrain/ascii_grid.h"
#include "tools/terrain/hgt_tile.h"
#include "tools/terrain/input_file.h"
#include "tools/terrain/raw_grid.h"
#include "tools/terrain/terrain_points.h"
#include "world/errors.h"
#include "world/files.h"

namespace corvenna {
namespace {

struct Options {
    std::vector<std::string> Grids;
    std::vector<std::string> RawGrids;
    std::vector<std::string> Peaks;
    std::vector<std::string> Extra;
    std::vector<double> Region;
    int BlockMinutes = 15;
    std::string Output;
};

constexpr const char* About =
    "Makes a file of high terrain points out of elevation grids and lists of known heights.\n"
    "Every file that is read may be gzipped.\n";

constexpr const char* Footer =
    "\nThe keys of a raw grid, with the shipped grid's values, which hold for a key left out:\n"
    "  order=little     or big: the byte order of the 16-bit heights\n"
    "  rows=2160        how many rows, each from west to east\n"
    "  columns=4320     how many heights in a row\n"
    "  north=90 south=-90 west=-180 east=180   its extents, degrees\n"
    "  samples=cells    the extents are the outer edges of the samples' cells; or\n"
    "          points   the first and last samples stand on the extents\n"
    "  from=north       or south: where the first row lies\n"
    "  void=-32768      the height that means none\n"
    "\nThe shipped file again:\n"
    "  make-terrain --raw data/terrain-base-5min.i16.gz --peaks data/peaks.csv.gz \\\n"
    "      --extra data/terrain-extra.csv --output world_terrain.db\n"
    "\nOne region, finer, out of SRTM tiles:\n"
    "  make-terrain tiles/*.hgt --raw data/terrain-base-5min.i16.gz --peaks data/peaks.csv.gz \\\n"
    "      --extra data/terrain-extra.csv --region 50,44,3,17 --block 5 --output world_terrain.db\n"
    "\nExit status: 0 done, 1 a file can't be read or written, 2 a wrong command line.";

void Describe(CLI::App& app, Options& options) {
    app.add_option("GRID", options.Grids, "SRTM tiles (.hgt) and ESRI ASCII grids (.asc)");
    app.add_option("--raw", options.RawGrids, "A grid of 16-bit heights without a header; repeatable")
        ->type_name("FILE[,key=value...]")
        ->expected(1)
        ->take_all();
    app.add_option("--peaks", options.Peaks,
                   "Summits: csv with the columns lat, lon, elevation_m; repeatable")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.add_option("--extra", options.Extra, "More places of known height, likewise; repeatable")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.add_option("--region", options.Region, "Keep the points in this area only, degrees")
        ->type_name("NORTH,SOUTH,WEST,EAST")
        ->delimiter(',')
        ->expected(4);
    app.add_option("--block", options.BlockMinutes,
                   "Arc minutes for which the highest place is told (15 or 5)")
        ->type_name("MINUTES")
        ->check(CLI::IsMember({15, 5}))
        ->capture_default_str();
    app.add_option("-o,--output", options.Output, "The file to write")->type_name("FILE")->required();
    app.footer(Footer);
}

/// What the options have to be besides each one for itself.
void CheckTogether(const Options& options) {
    if (options.Grids.empty() && options.RawGrids.empty()) throw CLI::RequiredError("GRID or --raw");
    if (!options.Region.empty() && options.Region[0] <= options.Region[1]) {
        throw CLI::ValidationError("--region", "north must be above south");
    }
}

/// One line on a terminal that tells the step and how far it has come; nothing elsewhere.
class ProgressLine {
  public:
    void Show(std::string_view step, double done) {
        const auto now = std::chrono::steady_clock::now();
        if (!terminal_ || now < next_) return;
        next_ = now + std::chrono::milliseconds(100);
        std::fprintf(stderr, "\r\033[K%3.0f%% %.*s", done * 100, static_cast<int>(step.size()), step.data());
        shown_ = true;
    }

    void Clear() {
        if (shown_) std::fprintf(stderr, "\r\033[K");
        shown_ = false;
    }

  private:
    bool terminal_ = ErrorOutputIsTerminal();
    bool shown_ = false;
    std::chrono::steady_clock::time_point next_;
};

void AddGrid(CellGrid& cells, const std::string& path, const Progress& progress) {
    if (HasExtension(path, ".hgt")) {
        AddHgtTile(cells, path, progress);
    } else if (HasExtension(path, ".asc")) {
        AddAsciiGrid(cells, path, progress);
    } else {
        throw FileError(path, "neither .hgt nor .asc; a grid without a header is given with --raw");
    }
}

std::vector<Summit> ReadLists(const std::vector<std::string>& paths) {
    std::vector<Summit> summits;
    for (const std::string& path : paths) ReadSummits(path, summits);
    return summits;
}

/// Gives the number of points.
std::size_t MakeTerrain(const Options& options, const Progress& progress) {
    TerrainRecipe recipe;
    recipe.BlockRows = options.BlockMinutes * CellGrid::CellsPerDegree / 60;
    if (!options.Region.empty()) {
        recipe.Region = {options.Region[0], options.Region[1], options.Region[2], options.Region[3]};
    }
    const std::vector<Summit> peaks = ReadLists(options.Peaks);
    const std::vector<Summit> extra = ReadLists(options.Extra);
    CellGrid cells;
    for (const std::string& text : options.RawGrids) AddRawGrid(cells, ParseRawGridForm(text), progress);
    for (const std::string& path : options.Grids) AddGrid(cells, path, progress);
    const auto points = TerrainPoints(cells, peaks, extra, recipe, progress);
    ReplaceFile(options.Output, {TerrainText(points)});
    return points.size();
}

int Run(int argc, char** argv) {
    Options options;
    CLI::App app(About, "make-terrain");
    app.set_version_flag("--version", "make-terrain " CORVENNA_VERSION);
    Describe(app, options);
    const CommandLine words(argc, argv, Spelling::Files);
    try {
        app.parse(words.Count(), words.Words());
        CheckTogether(options);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    ProgressLine line;
    try {
        const std::size_t points =
            MakeTerrain(options, [&](std::string_view step, double done) { line.Show(step, done); });
        line.Clear();
        std::printf("%s: %zu points\n", options.Output.c_str(), points);
        return 0;
    } catch (const std::exception& error) {
        line.Clear();
        std::fprintf(stderr, "make-terrain: %s\n", error.what());
        return 1;
    }
}

}  // namespace
}  // namespace corvenna

int main(int argc, char** argv) {
    const corvenna::ConsoleSpelling spelling(corvenna::Spelling::Files);
    return corvenna::Run(argc, argv);
}
