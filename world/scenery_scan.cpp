#include "world/scenery_scan.h"

#include "world/airport_database.h"
#include "world/byte_reader.h"
#include "world/drives.h"
#include "world/errors.h"
#include "world/facility_decoder.h"
#include "world/facility_layout.h"
#include "world/files.h"

namespace corvenna {

namespace {

constexpr std::string_view SceneryConfigName = "scenery.cfg";

bool IsBglFile(std::span<const std::uint8_t> start) {
    using namespace facility;
    if (start.size() < header::MarkerEnd) return false;
    return static_cast<std::uint32_t>(ByteReader(start).ReadLong(header::Marker)) == header::MarkerWord;
}

/// Where a folder that was there when the scan began really is.
std::filesystem::path FoundFolder(const std::string& folder) {
    return FindFolder(folder).value_or(PathOf(folder));
}

}  // namespace

SceneryScan::SceneryScan(const Station& station, std::string_view simFolder, ScanObserver& observer)
    : station_(station),
      observer_(observer),
      areas_(ParseSceneryCfg(JoinPath(simFolder, SceneryConfigName))) {
    FixSceneryPaths(areas_, simFolder, ListDrives());
    for (const SceneryArea& area : areas_) {
        if (area.Local.empty()) continue;
        try {
            totalBglFiles_ += static_cast<std::int32_t>(ListBglFiles(FoundFolder(area.Local)).size());
        } catch (const FileError&) {  // told when its turn comes
        }
    }
}

/// An area with the same folder as the one before it does not start a new listing, so it has no files; one
/// that names an earlier folder again does, and its airports come twice.
bool SceneryScan::Tick() {
    if (currentArea_ >= areas_.size()) return false;
    const SceneryArea& area = areas_[currentArea_];
    if (area.Local.empty()) {
        ++currentArea_;
        return true;
    }
    observer_.EntersArea(area.Title);
    if (area.Local != currentFolder_) {
        currentFolder_ = area.Local;
        ListCurrentFolder();
    }
    if (nextFile_ == listing_.size()) {
        ++currentArea_;
        return true;
    }
    ReadFile(listing_[nextFile_++]);
    observer_.FilesDone(++filesDone_);
    return true;
}

void SceneryScan::ListCurrentFolder() {
    nextFile_ = 0;
    listing_.clear();
    foundFolder_ = FoundFolder(currentFolder_);
    try {
        listing_ = ListBglFiles(foundFolder_);
    } catch (const FileError& failure) {
        observer_.Skipped(BytesOf(foundFolder_), failure.Reason());
    }
}

void SceneryScan::ReadFile(const std::string& name) {
    const std::filesystem::path path = foundFolder_ / PathOf(name);
    try {
        ReadFileStart(path, facility::header::MarkerEnd, fileBuffer_);
        if (!IsBglFile(fileBuffer_)) return;
        ReadFileStart(path, std::numeric_limits<std::size_t>::max(), fileBuffer_);
        fileBuffer_.push_back(0);
        ScanFacilities(fileBuffer_, station_, airports_);
    } catch (const DamagedData& damage) {
        observer_.Skipped(BytesOf(path), damage.what());
    } catch (const FileError& failure) {
        observer_.Skipped(BytesOf(path), failure.Reason());
    }
}

void BeginDatabase(std::string_view simFolder, std::string_view appFolder) {
    if (!IsSimFolder(simFolder)) {
        throw FileError(simFolder, "is not the simulator's main folder, there is no fs2002.exe in it");
    }
    RemoveDatabase(appFolder);
    WriteConfig(appFolder, {.SimFolder = std::string(simFolder), .AirportCount = 0});
}

void FinishDatabase(const SceneryScan& scan, std::string_view simFolder, std::string_view appFolder) {
    WriteAirports(appFolder, scan.Airports());
    WriteConfig(appFolder, {.SimFolder = std::string(simFolder), .AirportCount = scan.Airports().Count()});
}

}  // namespace corvenna
