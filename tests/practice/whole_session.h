#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/fs_messages.h"
#include "link/station_window.h"
#include "practice/session_carrier.h"
#include "practice/simulator_peer.h"
#include "station/spare_list.h"

namespace corvenna {

/// A running station in a session, on a clock of the test's own: host, controller, and whoever else is given
/// a step, every tenth of a second or, for a crowd, every second.
class WholeSession final : private OperatorDesk {
  public:
    static constexpr const char* Name = "Whole Session";
    WholeSession(Station station, std::int32_t maxPlayers, std::chrono::milliseconds stepTime,
                 std::unique_ptr<SessionCarrier> carrier = std::make_unique<MemoryCarrier>())
        : StepTime(stepTime),
          TheStation(std::move(station)),
          carrier_(std::move(carrier)),
          host_(carrier_->MakeSession(), {.Name = "Practice_Host", .Observer = true, .Where = {}}),
          window_(TheStation, objects_, *this,
                  {.Repaint = {}, .Closed = {}, .Transmitted = [this](auto frequency, auto text) {
                       if (Transmitted) Transmitted(frequency, text);
                   }}) {
        host_.Host(Name, maxPlayers);
        objects_.MakeRoot = [this] { return std::make_unique<Root>(*carrier_); };
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

    std::unique_ptr<Session> MakeSession() { return carrier_->MakeSession(); }

    /// One step; the others are moved between the host and the station.
    template <class MoveOthers>
    void Step(MoveOthers moveOthers) {
        host_.Step(Now);
        carrier_->Settle();
        moveOthers(Now);
        carrier_->Settle();
        window_.RunConnectionTimer();
        if (Now % std::chrono::seconds(1) == std::chrono::seconds(0)) Tick();
        if (Now % std::chrono::seconds(30) == std::chrono::seconds(0)) window_.RunRefreshPlayers();
        carrier_->Settle();
        Now += StepTime;
    }

    const std::chrono::milliseconds StepTime;
    std::chrono::milliseconds Now{0};
    Station TheStation;
    int SpoiltTicks = 0;  ///< cut short by a removal from an empty queue
    std::function<void(std::string_view frequency, std::string_view text)> Transmitted;

  private:
    class Root final : public SessionRoot {
      public:
        explicit Root(SessionCarrier& carrier) : carrier_(carrier) {}
        std::unique_ptr<Session> DirectPlayCreate() override { return carrier_.MakeSession(); }

      private:
        SessionCarrier& carrier_;
    };

    void Tick() {
        try {
            window_.RunAtcTimer();
        } catch (const EmptyListError&) {
            ++SpoiltTicks;
        }
    }

    void ShowBox(BoxIcon /*icon*/, std::string_view /*text*/) override {}

    std::unique_ptr<SessionCarrier> carrier_;
    SimulatorPeer host_;
    SessionObjects objects_;
    StationWindow window_;
};

}  // namespace corvenna
