#include "practice/world_writer.h"

#include <fmt/format.h>

#include <string_view>

#include "practice/bgl_writer.h"
#include "station/text.h"
#include "world/errors.h"
#include "world/files.h"

namespace corvenna {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t MadeUpAirportsPerFile = 250;

// ---- The scenery library

enum class LocalForm { Backslashes, Slashes, Absolute };

/// A part of the world with the airports whose place lies in it.
struct Region {
    std::string_view Title;
    std::string_view Folder;  // in the simulator's folder
    std::string_view File;
    LocalForm Local;
    bool (*Holds)(double latitude, double longitude);
};

// The first region that holds an airport has it.
constexpr Region Regions[] = {
    {"North America", "scenery/NAmer", "NAmer.bgl", LocalForm::Backslashes,
     [](double latitude, double longitude) { return latitude > 13 && longitude < -30; }},
    {"South America", "scenery/SAmer", "SAmer.BGL", LocalForm::Slashes,
     [](double, double longitude) { return longitude < -30; }},
    {"Europe and Africa", "Addon Scenery/Eurafrica", "Eurafrica.bgl", LocalForm::Absolute,
     [](double, double longitude) { return longitude < 60; }},
    {"Asia and Pacific", "scenery/Pacific/Scenery", "Pacific.bgl", LocalForm::Backslashes,
     [](double, double) { return true; }},
};

constexpr Region MadeUpRegion = {"Made-up airports", "scenery/MadeUp", "", LocalForm::Backslashes, nullptr};
/// The folder that the simulator's own scenery lies in, which bears its full name in the library.
constexpr std::string_view DefaultFolder = "scenery";
constexpr std::string_view MissingFolder = "scenery/NotInstalled";

/// A folder as scenery.cfg tells it, which does not care about upper and lower case.
std::string RelativeLocal(std::string_view folder, char separator) {
    std::string text(folder);
    text.front() = UpperCase(text.front());
    for (char& c : text) c = c == '/' ? separator : c;
    return text;
}

/// What scenery.cfg says about the folder of a region.
std::string LocalOf(const Region& region, const fs::path& simulator) {
    switch (region.Local) {
        case LocalForm::Backslashes:
            return RelativeLocal(region.Folder, '\\');
        case LocalForm::Slashes:
            return RelativeLocal(region.Folder, '/');
        case LocalForm::Absolute:
            return BytesOf(fs::absolute(simulator).lexically_normal() / region.Folder);
    }
    return {};
}

/// Text of scenery.cfg, with the line ends of its system.
class SceneryLibrary {
  public:
    SceneryLibrary() { text_ = "[General]\r\nTitle=Practice World\r\nDescription=Scenery Data\r\n\r\n"; }

    void AddArea(std::string_view title, std::string_view local, bool active) {
        ++areas_;
        text_ += fmt::format(
            "[Area.{0:03}]\r\nTitle={1}\r\nTexture_ID=\r\nLocal={2}\r\nRemote=\r\nActive={3}\r\n"
            "Required=FALSE\r\nLayer={0}\r\n\r\n",
            areas_, title, local, active ? "TRUE" : "FALSE");
    }

    const std::string& Text() const { return text_; }

  private:
    std::string text_;
    int areas_ = 0;
};

// ---- Folders and files

void WriteFile(const fs::path& path, std::string_view bytes) { ReplaceFile(BytesOf(path), {bytes}); }

void MakeFolder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw FileError(BytesOf(path), error.message());
}

/// A real simulator must not be written into, nor an older practice world, whose airports would stay.
void MakeEmptyFolder(const fs::path& path) {
    MakeFolder(path);
    std::error_code error;
    const bool empty = fs::is_empty(path, error);
    if (error) throw FileError(BytesOf(path), error.message());
    if (!empty) throw FileError(BytesOf(path), "is not empty; name a folder that is new or empty");
}

/// The folder of a region that holds its files.
fs::path SceneryFolder(const fs::path& simulator, const Region& region) {
    const fs::path folder = simulator / region.Folder;
    const bool complete = folder.filename() == "Scenery";
    return complete ? folder : folder / "Scenery";
}

/// The area without airports: the magnetic table, which is a BGL file like any other to a scan, and more
/// that a scan must pass over.
void WriteDefaultScenery(const fs::path& simulator, std::span<const std::int16_t> magVarGrid,
                         SceneryLibrary& library) {
    const fs::path folder = simulator / DefaultFolder;
    MakeFolder(folder);
    WriteFile(folder / "magdec.bgl", MagneticTableFile(magVarGrid));
    WriteFile(folder / "Objects.bgl", EmptySceneryFile());
    WriteFile(folder / "readme.txt", "A practice world for an air traffic controller.\r\n");
    library.AddArea("Default scenery", RelativeLocal(DefaultFolder, '\\'), false);
}

// ---- Airports

/// Airports take turns: the first one's name goes to the first chain, the next one's to the second.
std::string FileOf(std::span<const PracticeAirport> airports) {
    std::vector<PracticeAirport> chains[2];
    for (std::size_t i = 0; i < airports.size(); ++i) chains[i % 2].push_back(airports[i]);
    return FacilityFile(chains[0], chains[1]);
}

const Region& RegionOf(const PracticeAirport& airport) {
    const Region* region = Regions;
    while (!region->Holds(airport.Latitude, airport.Longitude)) ++region;
    return *region;
}

void WriteRegion(const fs::path& simulator, const Region& region, const std::vector<PracticeAirport>& all,
                 SceneryLibrary& library) {
    std::vector<PracticeAirport> airports;
    for (const PracticeAirport& airport : all) {
        if (&RegionOf(airport) == &region) airports.push_back(airport);
    }
    const fs::path folder = SceneryFolder(simulator, region);
    MakeFolder(folder);
    WriteFile(folder / region.File, FileOf(airports));
    library.AddArea(region.Title, LocalOf(region, simulator), true);
}

void WriteMadeUp(const fs::path& simulator, std::span<const PracticeAirport> airports,
                 SceneryLibrary& library) {
    if (airports.empty()) return;
    const fs::path folder = SceneryFolder(simulator, MadeUpRegion);
    MakeFolder(folder);
    for (std::size_t begin = 0; begin < airports.size(); begin += MadeUpAirportsPerFile) {
        const std::size_t count = std::min(MadeUpAirportsPerFile, airports.size() - begin);
        WriteFile(folder / fmt::format("MadeUp{:04}.bgl", begin / MadeUpAirportsPerFile),
                  FileOf(airports.subspan(begin, count)));
    }
    library.AddArea(MadeUpRegion.Title, LocalOf(MadeUpRegion, simulator), true);
}

}  // namespace

void WritePracticeWorld(const fs::path& folder, const std::vector<PracticeAirport>& airports,
                        const std::vector<PracticeAirport>& madeUp,
                        std::span<const std::int16_t> magVarGrid) {
    MakeEmptyFolder(folder);
    SceneryLibrary library;
    WriteDefaultScenery(folder, magVarGrid, library);
    for (const Region& region : Regions) WriteRegion(folder, region, airports, library);
    WriteMadeUp(folder, madeUp, library);
    library.AddArea("Not installed", RelativeLocal(MissingFolder, '\\'), true);
    WriteFile(folder / "scenery.cfg", library.Text());
    WriteFile(folder / "fs2002.exe", "");  // last: with it the folder counts as a simulator's
}

}  // namespace corvenna
