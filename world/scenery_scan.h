#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "world/airport_list.h"
#include "world/scenery_config.h"

namespace corvenna {

/// Who looks on while the scenery is scanned. Called in the midst of a step.
class ScanObserver {
  public:
    virtual ~ScanObserver() = default;

    /// The area that is being read.
    virtual void EntersArea(std::string_view) {}
    /// So many files are done with, whether they were used or not.
    virtual void FilesDone(std::int32_t) {}
    /// A file or folder gave nothing: its path, and why.
    virtual void Skipped(std::string_view, std::string_view) {}
};

/// The walk through the simulator's scenery library that finds all airports, in steps that a window can take
/// between two repaints. One thread, that of the station.
class SceneryScan {
  public:
    /// Reads the simulator's scenery.cfg and counts the BGL files. MagVarGrid of the station turns the
    /// runways' headings and must have been loaded. Throws FileError when scenery.cfg can't be read. The
    /// station and the observer must outlive the scan.
    SceneryScan(const Station& station, std::string_view simFolder, ScanObserver& observer);

    /// The number of files that the walk expects to pass.
    std::int32_t TotalBglFiles() const { return totalBglFiles_; }

    /// One step, of at most one file. False when all areas have been walked before this step.
    bool Tick();

    const AirportList& Airports() const { return airports_; }
    AirportList TakeAirports() { return std::exchange(airports_, {}); }  ///< when the scan is over
    std::int32_t AreaCount() const { return static_cast<std::int32_t>(areas_.size()); }

  private:
    void ListCurrentFolder();
    void ReadFile(const std::string& name);

    const Station& station_;
    ScanObserver& observer_;
    std::vector<SceneryArea> areas_;
    std::size_t currentArea_ = 0;
    std::string currentFolder_;
    std::filesystem::path foundFolder_;  // where currentFolder_ really is
    std::vector<std::string> listing_;
    std::size_t nextFile_ = 0;
    std::int32_t totalBglFiles_ = 0;
    std::int32_t filesDone_ = 0;
    std::vector<std::uint8_t> fileBuffer_;
    AirportList airports_;
};

/// The first step of the first run: makes sure that the folder is the simulator's, removes an earlier
/// database and notes the folder in a new Corvenna.cfg with no airports. Throws FileError; nothing has
/// changed when the folder is a wrong one.
void BeginDatabase(std::string_view simFolder, std::string_view appFolder);

/// The last step: writes the airports and then, because only that makes them valid, their number.
void FinishDatabase(const SceneryScan& scan, std::string_view simFolder, std::string_view appFolder);

}  // namespace corvenna
