#pragma once

#include <QLineEdit>

#include "link/operator_desk.h"
#include "shell/drive_list.h"
#include "shell/folder_list.h"
#include "shell/window.h"
#include "world/start_up.h"

namespace corvenna {

/// What Form7 asks of the program.
struct Form7Events {
    std::function<void()> FolderChosen;  ///< the next window's turn
    std::function<void()> ShowAbout;
};

/// The folder chooser: where the simulator is.
class Form7 final : public Window {
    Q_OBJECT

  public:
    Form7(HandlerGate& gate, ProgramFields& program, OperatorDesk& desk, Form7Events events);

    void Load();

  private:
    void LayOut();
    void DropRootSeparator();
    void CreateConfiguration();

    ProgramFields& program_;
    OperatorDesk& desk_;
    Form7Events events_;

    DriveList* drive1_;
    FolderList* dir1_;
    QLineEdit* text1_;
    QPushButton* command1_;
};

}  // namespace corvenna
