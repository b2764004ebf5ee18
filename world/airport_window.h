#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "station/model.h"
#include "world/airport_list.h"
#include "world/scenery_scan.h"
#include "world/start_up.h"

namespace corvenna {

/// The words of Label2. They lock and free the inputs.
namespace AirportStatus {
inline constexpr std::string_view Done = "Done!";
inline constexpr std::string_view Processing = "Processing Please Wait...";
}  // namespace AirportStatus

/// What the airport window shows, and which of its timers run.
struct AirportForm {
    std::string_view Label2 = AirportStatus::Done;
    std::string Text1;  ///< the step in hand
    std::int32_t ProgressValue = 0;
    std::int32_t ProgressMaximum = 100;

    bool ScanBgl = false;       ///< 5 ms
    bool WaitForClose = false;  ///< 3000 ms, once

    /// Whether Combo1, Command1 and Command2 take anything.
    bool InputsEnabled() const { return Label2 != AirportStatus::Processing; }
};

/// How the window's surroundings hear of it.
struct AirportWindowEvents {
    std::function<void()> Repaint;                       ///< the form changed, and is to be seen at once
    std::function<void(std::string_view step)> Loading;  ///< the step of Load, for the progress window
    std::function<void(std::string_view text)> Inform;   ///< an information box; returns when it is closed
    std::function<void()> EndProgram;                    ///< the operator has had enough

    /// Combo1 is to be filled with these labels, which come in the order of the database.
    std::function<void(const std::vector<std::string>&)> List;
};

/// Scanning the scenery at the first run, and choosing the airport: the airport window without widgets.
/// Station's thread, one handler at a time, each to its end. What the files lack is thrown as FileError.
class AirportWindow final : private ScanObserver {
  public:
    /// All that is referred to must live as long as this.
    AirportWindow(ProgramFields& program, Station& station, AirportWindowEvents events = {});

    /// Loads the magnetic table, and then the database or, if there is none, the list of scenery files.
    void Load();

    void RunScanBgl();  ///< the body of Scan_Bgl: one step of the scan, at last the making of the database

    /// Command1, with the label selected in Combo1 if one is: prepares the station. The airports are given
    /// back, and Wait_for_Close runs.
    void SelectAirport(const std::optional<std::string>& label);

    void Exit();    ///< Command2
    void Unload();  ///< the close box. While the window is at work, it breaks the work off and no more

    const AirportForm& Form() const { return form_; }

    /// Files and folders that the scan passed over, a line each: path and reason.
    const std::vector<std::string>& Skips() const { return skips_; }

  private:
    void EntersArea(std::string_view title) override;
    void FilesDone(std::int32_t files) override;
    void Skipped(std::string_view path, std::string_view reason) override;

    void ReadDatabaseFile();
    void BeginScan();
    void FinishScan();
    void ListAirports();
    void ShowStep(std::string_view step);
    void Repaint();

    ProgramFields& program_;
    Station& station_;
    AirportWindowEvents events_;
    AirportForm form_;
    std::unique_ptr<SceneryScan> scan_;
    AirportList airports_;
    std::vector<std::string> skips_;
};

}  // namespace corvenna
