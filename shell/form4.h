#pragma once

#include "link/station_window.h"
#include "shell/gated_timer.h"
#include "shell/lamp.h"
#include "shell/window.h"

namespace corvenna {

/// The station window: the operator's console of a running station.
class Form4 final : public Window {
    Q_OBJECT

  public:
    /// closed: the station is closed and the window gone; the next window's turn.
    Form4(HandlerGate& gate, Station& station, SessionObjects& objects, OperatorDesk& desk,
          std::function<void()> closed);

    void Load();

    /// Closes the station for a program that ends; no other window follows.
    void LeaveSession();

  protected:
    void OnCloseBox() override;

  private:
    void LayOut();
    void Handle(const std::function<void()>& handler);
    void ShowConsole();

    SessionObjects& objects_;
    std::function<void()> closed_;
    bool stationClosed_ = false;
    StationWindow window_;

    QPushButton* command2_;
    QPushButton* command1_;
    QPushButton* command3_;
    QLabel* label1_;
    QFrame* shape1_;
    Lamp* shape2_;
    Lamp* shape3_;
    GatedTimer atcTimer_;
    GatedTimer connectionTimer_;
    GatedTimer refreshPlayers_;
};

}  // namespace corvenna
