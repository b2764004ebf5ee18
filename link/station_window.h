#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/operator_desk.h"
#include "link/player_directory.h"
#include "link/session_objects.h"
#include "station/tick.h"

namespace corvenna {

/// What the station window shows, and which of its timers run.
struct StationConsole {
    enum class Lamp { Solid = 0, CrossHatched = 7 };

    static constexpr std::int32_t DarkRed = 128;
    static constexpr std::int32_t Green = 32768;

    std::string_view Label1 = "NOT MONITORING TRAFFIC";
    std::int32_t Label1Colour = Green;
    Lamp Shape2 = Lamp::CrossHatched;  ///< the red lamp: monitoring
    Lamp Shape3 = Lamp::Solid;         ///< the green lamp: not monitoring
    bool Command1Enabled = false;      ///< Stop Monitoring Traffic
    bool Command2Enabled = true;       ///< Start Monitoring Traffic
    bool Command3Enabled = true;       ///< Close the ATC Station

    bool AtcTimer = false;         ///< 1000 ms
    bool ConnectionTimer = false;  ///< 100 ms
    bool RefreshPlayers = false;   ///< 30000 ms
};

/// How the window's surroundings hear of it.
struct StationWindowEvents {
    std::function<void()> Repaint;  ///< the console changed, and is to be seen at once
    std::function<void()> Closed;   ///< the window is gone; the airport selection comes next

    /// A text went out on a frequency (empty: to those on none), once for the whole audience.
    std::function<void(std::string_view frequency, std::string_view text)> Transmitted;

    /// Somebody said a text in the chat, while there was a pilot to serve at all.
    std::function<void(std::string_view name, std::string_view text)> Heard = {};
};

/// A running station and its operator's console, without widgets: loads, starts, stops and closes, and owns
/// the bodies of the three timers. Station's thread, one handler at a time, each to its end.
class StationWindow {
  public:
    /// All that is referred to must live as long as the window.
    StationWindow(Station& station, SessionObjects& objects, OperatorDesk& desk,
                  StationWindowEvents events = {});

    void Load();
    void StartMonitoring();  ///< Command2
    void StopMonitoring();   ///< Command1
    void Close();            ///< Command3
    void Unload();           ///< the window's close box; also the end of Close. Both do nothing unless loaded

    /// The bodies of the timers, run by their owner when due and enabled. The pump says why its pass
    /// failed; the other two throw.
    std::optional<std::string> RunConnectionTimer();
    void RunRefreshPlayers();
    void RunAtcTimer();

    const StationConsole& Console() const { return console_; }
    bool Loaded() const { return loaded_; }

  private:
    void ShowNotMonitoring(std::string_view label);
    void TakeStationDown();
    void LeaveSession();

    Station& station_;
    SessionObjects& objects_;
    OperatorDesk& desk_;
    StationWindowEvents events_;
    PlayerDirectory directory_;
    StationConsole console_;
    bool loaded_ = false;
};

/// Empties the fields of the airport and all lists, as a closing station leaves them. AirportLatitude,
/// AirportLongitude, RunwayWidth and HighestTerrain stay until the next selection.
void EmptyStation(Station& station);

}  // namespace corvenna
