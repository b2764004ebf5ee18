#include "link/station_window.h"

#include <exception>

#include "link/fs_messages.h"
#include "link/pump.h"
#include "link/refresh.h"
#include "link/services.h"
#include "station/geometry.h"

namespace corvenna {

namespace {

/// The tick's way into the session: one message for all its addressees.
class SessionChatSender final : public ChatSender {
  public:
    SessionChatSender(Session& dp, std::int32_t controllerId, const StationWindowEvents& events)
        : dp_(dp), controllerId_(controllerId), events_(events) {}

    void SendChat(std::string_view frequency, std::string_view text,
                  std::span<const std::int32_t> audience) override {
        const DirectPlayMessage message = WriteChat(text);
        for (const std::int32_t listener : audience) dp_.Send(controllerId_, listener, message);
        if (events_.Transmitted) events_.Transmitted(frequency, text);
    }

  private:
    Session& dp_;
    std::int32_t controllerId_;
    const StationWindowEvents& events_;
};

void Tell(const std::function<void()>& event) {
    if (event) event();
}

}  // namespace

StationWindow::StationWindow(Station& station, SessionObjects& objects, OperatorDesk& desk,
                             StationWindowEvents events)
    : station_(station), objects_(objects), desk_(desk), events_(std::move(events)) {}

void StationWindow::Load() {
    station_.SessionOpen = true;
    station_.SessionHost = false;
    ComputeSectorCentres(station_);
    console_ = StationConsole{};
    console_.ConnectionTimer = true;
    console_.RefreshPlayers = true;
    ClearTraffic(station_);
    loaded_ = true;
    Tell(events_.Repaint);
}

void StationWindow::StartMonitoring() {
    console_.Label1 = "MONITORING TRAFFIC";
    console_.Label1Colour = StationConsole::DarkRed;
    console_.Shape2 = StationConsole::Lamp::Solid;
    console_.Shape3 = StationConsole::Lamp::CrossHatched;
    console_.AtcTimer = true;
    console_.Command2Enabled = false;
    console_.Command1Enabled = console_.Command3Enabled = true;
    Tell(events_.Repaint);
}

void StationWindow::StopMonitoring() {
    ShowNotMonitoring("NOT MONITORING TRAFFIC");
    console_.AtcTimer = false;
    console_.Command1Enabled = false;
    console_.Command2Enabled = console_.Command3Enabled = true;
    Tell(events_.Repaint);
}

void StationWindow::Close() {
    if (!loaded_) return;
    TakeStationDown();
    Unload();
}

/// The second run of the closing steps, behind a Close, finds the session gone and changes nothing. A window
/// that is gone closes no more: by then the station may hold the next airport.
void StationWindow::Unload() {
    if (!loaded_) return;
    TakeStationDown();
    loaded_ = false;
    Tell(events_.Closed);
}

std::optional<std::string> StationWindow::RunConnectionTimer() {
    if (!objects_.Dp) return "there is no session";
    PumpContext pump{station_, *objects_.Dp, directory_, desk_, [this] { Close(); }, events_.Heard};
    return MessagePump(pump);
}

void StationWindow::RunRefreshPlayers() { RefreshPlayers(station_, objects_.OpenSession(), directory_); }

void StationWindow::RunAtcTimer() {
    SessionChatSender chat(objects_.OpenSession(), station_.ControllerId, events_);
    AtcTimer(station_, ControllerServices, chat);
}

void StationWindow::ShowNotMonitoring(std::string_view label) {
    console_.Label1 = label;
    console_.Label1Colour = StationConsole::Green;
    console_.Shape2 = StationConsole::Lamp::CrossHatched;
    console_.Shape3 = StationConsole::Lamp::Solid;
}

void StationWindow::TakeStationDown() {
    ShowNotMonitoring("PLEASE WAIT...");
    Tell(events_.Repaint);
    console_.AtcTimer = console_.ConnectionTimer = console_.RefreshPlayers = false;
    LeaveSession();
    EmptyStation(station_);
}

/// Whatever goes wrong here, the closing goes on: the session may be gone already.
void StationWindow::LeaveSession() {
    try {
        Session& dp = objects_.OpenSession();
        dp.DestroyPlayer(station_.ControllerId);
        dp.Close();
        ReleaseSessionObjects(objects_);
    } catch (const std::exception&) {
        return;
    }
}

void EmptyStation(Station& station) {
    station.AirportName.clear();
    station.AirportCode.clear();
    station.GroundFrequency.clear();
    station.TowerFrequency.clear();
    station.ApproachFrequency.clear();
    station.ArtccFrequency.clear();
    station.CtafFrequency.clear();
    station.ActiveRunway.clear();
    station.RunwayLatitude = station.RunwayLongitude = 0;
    station.RunwayElevation = station.RunwayLength = 0;
    station.RunwayHeading = station.RunwayHasIls = 0;
    station.MountainCount = 0;
    station.AirportTaxiPoints.assign(1, {});
    station.AirportParkingSpots.assign(1, {});
    station.AirportTaxiPaths.assign(1, {});
    station.Mountains.assign(1, {});
    ClearTraffic(station);
}

}  // namespace corvenna
