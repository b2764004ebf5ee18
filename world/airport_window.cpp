#include "world/airport_window.h"

#include <fmt/format.h>

#include "world/airport_database.h"
#include "world/airport_selection.h"
#include "world/magnetic_table.h"
#include "world/terrain.h"

namespace corvenna {

namespace {

constexpr std::string_view FirstTime =
    "This is the first time you run this program. Now this program will create a database of all the "
    "airports of the FS world. This process can take a few minutes, please wait.";
constexpr std::string_view DatabaseCreated =
    "The creation process of the database was completed!. Now this program will display all the airports in "
    "a list. So you can select one of the airports.";

constexpr std::string_view ReadingMagdec = "Magdec.bgl file";
constexpr std::string_view ReadingAirports = "World_airports.dat file";
constexpr std::string_view ReadingScenery = "Scenery.cfg file";
constexpr std::string_view ReadingTerrain = "World_terrain.db file";
constexpr std::string_view AddingAirports = "Adding airports to list";
constexpr std::string_view CreatingDatabase = "Creating database";
constexpr std::string_view GettingInfo = "Getting Airport's Info";
constexpr std::string_view PleaseWait = "Please wait...";

template <class Event, class... Words>
void Tell(const Event& event, const Words&... words) {
    if (event) event(words...);
}

}  // namespace

AirportWindow::AirportWindow(ProgramFields& program, Station& station, AirportWindowEvents events)
    : program_(program), station_(station), events_(std::move(events)) {}

void AirportWindow::Repaint() { Tell(events_.Repaint); }

void AirportWindow::ShowStep(std::string_view step) {
    form_.Text1 = step;
    Repaint();
}

// ---- Opening

void AirportWindow::Load() {
    Tell(events_.Loading, ReadingMagdec);
    LoadMagVarOf(program_.SimFolder, station_);
    if (program_.DatabaseMissing == 0) {
        ReadDatabaseFile();
    } else {
        BeginScan();
    }
}

void AirportWindow::ReadDatabaseFile() {
    Tell(events_.Loading, ReadingAirports);
    airports_ = ReadAirports(program_.AppFolder, program_.AirportCount);
    Tell(events_.Loading, AddingAirports);
    ListAirports();
    Tell(events_.Loading, "");
    Repaint();
}

void AirportWindow::ListAirports() {
    std::vector<std::string> labels;
    labels.reserve(static_cast<std::size_t>(airports_.Count()));
    for (std::int32_t i = 0; i < airports_.Count(); ++i) labels.push_back(AirportLabel(airports_.Fields(i)));
    Tell(events_.List, labels);
}

// ---- The scan

void AirportWindow::BeginScan() {
    Tell(events_.Inform, FirstTime);
    Tell(events_.Loading, ReadingScenery);
    ScanObserver& observer = *this;
    scan_ = std::make_unique<SceneryScan>(station_, program_.SimFolder, observer);
    form_.ProgressMaximum = scan_->TotalBglFiles() + 1;
    form_.Label2 = AirportStatus::Processing;
    form_.ScanBgl = true;
    Repaint();
}

void AirportWindow::RunScanBgl() {
    if (!scan_->Tick()) FinishScan();
}

void AirportWindow::FinishScan() {
    form_.ScanBgl = false;
    ShowStep(CreatingDatabase);
    FinishDatabase(*scan_, program_.SimFolder, program_.AppFolder);
    airports_ = scan_->TakeAirports();
    scan_.reset();
    program_.AirportCount = airports_.Count();
    Tell(events_.Inform, DatabaseCreated);
    ShowStep(AddingAirports);
    ListAirports();
    form_.ProgressValue = 0;
    form_.Label2 = AirportStatus::Done;
    program_.DatabaseMissing = 0;
    ShowStep("");
}

void AirportWindow::EntersArea(std::string_view title) {
    if (form_.Text1 != title) ShowStep(title);
}

void AirportWindow::FilesDone(std::int32_t files) {
    form_.ProgressValue = files;
    Repaint();
}

void AirportWindow::Skipped(std::string_view path, std::string_view reason) {
    skips_.push_back(fmt::format("{}: {}", path, reason));
    Repaint();
}

// ---- The choice

/// The inputs stay locked: the next window comes when Wait_for_Close has run.
void AirportWindow::SelectAirport(const std::optional<std::string>& label) {
    if (!label) return;
    form_.ScanBgl = false;
    form_.Label2 = AirportStatus::Processing;
    ShowStep(GettingInfo);
    const auto box = corvenna::SelectAirport(station_, airports_, *label);
    airports_ = AirportList();
    ShowStep(ReadingTerrain);
    if (box) LoadTerrain(station_, program_.AppFolder, *box);
    form_.WaitForClose = true;
    Repaint();
}

// ---- The window goes

void AirportWindow::Exit() {
    ShowStep(PleaseWait);
    airports_ = AirportList();
    scan_.reset();
    Tell(events_.EndProgram);
}

void AirportWindow::Unload() {
    form_.ScanBgl = form_.WaitForClose = false;
    if (form_.InputsEnabled()) Exit();
}

}  // namespace corvenna
