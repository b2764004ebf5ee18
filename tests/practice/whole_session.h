#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/fs_messages.h"
#include "link/memory/memory_session.h"
#include "link/station_window.h"
#include "practice/practice_host.h"
#include "station/spare_list.h"

namespace corvenna {

/// A running station in a session within this process, on a clock of the test's own: host, controller, and
/// whoever else is given a step, every tenth of a second or, for a crowd, every second.
class WholeSession final : private OperatorDesk {
  public:
    static constexpr const char* Name = "Whole Session";
    WholeSession(Station station, std::int32_t maxPlayers, std::chrono::milliseconds stepTime)
        : StepTime(stepTime),
          TheStation(std::move(station)),
          window_(TheStation, objects_, *this,
                  {.Repaint = {},
                   .Closed = {},
                   .Transmitted =
                       [this](auto frequency, auto text) {
                           if (Transmitted) Transmitted(frequency, text);
                       }}),
          host_(std::make_unique<MemorySession>(network_), Name, maxPlayers) {
        objects_.MakeRoot = [this] { return std::make_unique<MemoryRoot>(network_); };
        CreateSessionObjects(objects_);
        objects_.DpSessions = objects_.Dp->GetDPEnumSessions({});
        const SessionRecord session = objects_.DpSessions.at(0);
        TheStation.SessionGuid = session.GuidApplication;
        TheStation.SessionMaxPlayers = session.MaxPlayers;
        objects_.Dp->Open(session, OpenMode::Join);
        TheStation.ControllerId = objects_.Dp->CreatePlayer("Controller", "Player");
        window_.Load();
        window_.StartMonitoring();
    }

    ~WholeSession() override {
        if (window_.Loaded()) window_.Close();
    }

    std::unique_ptr<Session> MakeSession() { return std::make_unique<MemorySession>(network_); }

    /// One step; the others are moved between the host and the station.
    template <class MoveOthers>
    void Step(MoveOthers moveOthers) {
        host_.Step();
        moveOthers(Now);
        window_.RunConnectionTimer();
        if (Now % std::chrono::seconds(1) == std::chrono::seconds(0)) Tick();
        if (Now % std::chrono::seconds(30) == std::chrono::seconds(0)) window_.RunRefreshPlayers();
        Now += StepTime;
    }

    const std::chrono::milliseconds StepTime;
    std::chrono::milliseconds Now{0};
    Station TheStation;
    int SpoiltTicks = 0;  ///< cut short by a removal from an empty queue
    std::function<void(std::string_view frequency, std::string_view text)> Transmitted;

  private:
    void Tick() {
        try {
            window_.RunAtcTimer();
        } catch (const EmptyListError&) {
            ++SpoiltTicks;
        }
    }

    void ShowBox(BoxIcon /*icon*/, std::string_view /*text*/) override {}

    MemoryNetwork network_;
    SessionObjects objects_;
    StationWindow window_;
    PracticeHost host_;
};

}  // namespace corvenna
