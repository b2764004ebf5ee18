#pragma once

#include <QPointer>
#include <optional>

#include "link/directplay/directplay_session.h"
#include "link/operator_desk.h"
#include "link/session_objects.h"
#include "shell/form1.h"
#include "shell/form2.h"
#include "shell/form3.h"
#include "shell/form4.h"
#include "shell/form5.h"
#include "shell/form7.h"
#include "shell/handler_gate.h"
#include "shell/patience.h"
#include "station/model.h"
#include "world/start_up.h"

namespace corvenna {

/// The desktop program: what lives longer than a window, and the way from one window to the next. The
/// windows decide nothing about each other. The thread of the application object.
class Shell final : public QObject, private OperatorDesk {
    Q_OBJECT

  public:
    /// How the session layer is used; the questions to the operator are the shell's own.
    explicit Shell(DirectPlayOptions session = {});
    ~Shell() override;

    /// Shows the first window. The folder of the program is the current directory.
    void Start();

    /// Leaves the session and ends, as soon as no handler runs; an open box is closed.
    void Stop();

    /// The exit status, once the program has ended: 0, or 1 after an error.
    std::optional<int> Status() const { return status_; }

    const Station& TheStation() const { return station_; }

  signals:
    void Ended(int status);

  private:
    void StartUp();
    void OpenFolderChooser();
    void OpenAirports();
    void OpenSessionSearch();
    void OpenStation();
    void ShowAbout();

    void ShowBox(BoxIcon icon, std::string_view text) override;
    void LeaveSession();
    void OnEscape(std::string_view name, const std::exception& error);
    void EndWithoutWindows();
    void End(int status);

    HandlerGate gate_;
    Patience patience_{gate_};
    ProgramFields program_;
    Station station_;
    SessionObjects objects_;
    std::optional<int> status_;

    QPointer<Form1> form1_;
    QPointer<Form3> form3_;
    QPointer<Form4> form4_;
    QPointer<Form5> form5_;
};

}  // namespace corvenna
