#pragma once

#include <QLineEdit>
#include <QProgressBar>

#include "shell/airport_box.h"
#include "shell/drive_list.h"
#include "shell/form6.h"
#include "shell/gated_timer.h"
#include "shell/window.h"
#include "world/airport_window.h"

namespace corvenna {

/// What Form2 asks of the program.
struct Form2Events {
    std::function<void(std::string_view text)> Inform;  ///< an information box
    std::function<void()> AirportChosen;                ///< the next window's turn
    std::function<void()> EndProgram;
    std::function<void()> ShowAbout;
};

/// The airport window: the scan at the first run, and the choice of the airport.
class Form2 final : public Window {
    Q_OBJECT

  public:
    Form2(HandlerGate& gate, ProgramFields& program, Station& station, Form2Events events);

    /// Loads the database, or prepares the scan, with the progress window in front. Then the window is shown.
    void Load(Form6& progress);

  protected:
    void OnCloseBox() override;

  private:
    void LayOut();
    void ShowForm();
    void HandOver();

    Form2Events events_;
    Form6* progress_ = nullptr;
    AirportWindow window_;

    AirportBox* combo1_;
    QPushButton* command1_;
    QPushButton* command2_;
    QLabel* label2_;
    QLineEdit* text1_;
    QProgressBar* progressBar1_;
    DriveList* drive1_;
    GatedTimer scanBgl_;
    GatedTimer waitForClose_;
};

}  // namespace corvenna
