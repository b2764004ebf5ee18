#pragma once

#include <QLineEdit>
#include <QListWidget>

#include "link/joining.h"
#include "shell/gated_timer.h"
#include "shell/window.h"

namespace corvenna {

/// What Form3 asks of the program.
struct Form3Events {
    std::function<void()> Connected;  ///< admitted: the station window's turn
    std::function<void()> EndProgram;
    std::function<void()> ShowAbout;
};

/// The connection window: finding a session and being admitted to it.
class Form3 final : public Window {
    Q_OBJECT

  public:
    Form3(HandlerGate& gate, Station& station, SessionObjects& objects, OperatorDesk& desk,
          Form3Events events);

    void Load();

    /// The session layer has been busy for so many seconds.
    void TellWaiting(int seconds);

    /// Leaves the session, unless a station is in it.
    void LeaveSession() { joining_.Unload(); }

  protected:
    void OnCloseBox() override { LeaveSession(); }

  private:
    void LayOut();
    void Connect();
    void ChooseConnection();
    void On(QPushButton* button, std::string_view name, void (Joining::*handler)());
    void ShowForm();

    Form3Events events_;
    Joining joining_;

    QLineEdit* text2_;
    QListWidget* list1_;
    QPushButton* command1_;
    QListWidget* list2_;
    QPushButton* command2_;
    QPushButton* command3_;
    QLabel* label6_;
    GatedTimer timer1_;
};

}  // namespace corvenna
